#pragma once

// The window as a tester meets it: the module started by the reference host
// on a simulated bench, the window opened offscreen, and its items found by
// object name, clicked and typed into as a person would.

#include "SimulatedHost.h"
#include "WindowPicture.h"
#include "WorkbenchWindow.h"

#include "ModuleHost.h"
#include "vrn_sim.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

class WindowRig
{
public:
    // Starts the module on `benchJson` and opens the window; empty text
    // when both worked.
    QString start(const QString& benchJson)
    {
        if (!m_dir.isValid())
            return QStringLiteral("No temporary directory");
        const QString error = m_host.start(benchJson, m_dir.path());
        if (!error.isEmpty())
            return error;
        m_window = std::make_unique<WorkbenchWindow>(m_host.host(), nullptr);
        const QString windowError = m_window->open();
        if (!windowError.isEmpty())
            return windowError;
        if (!QTest::qWaitForWindowExposed(window()))
            return QStringLiteral("The window was never shown");
        return {};
    }

    ~WindowRig()
    {
        if (m_window)
            m_window->finishSession();
        m_window.reset();
        m_host.stop();
    }

    QString directory() const { return m_dir.path(); }
    SimulatedHost& host() { return m_host; }
    WorkbenchWindow& workbench() { return *m_window; }
    QQuickWindow* window() const { return m_window->window(); }
    QObject* view() const { return m_host.view(); }
    const VrnSimControl* simulator() { return m_host.host().sdkLibrary().control(); }

    // The first item of that name in the window, popups included; null when
    // there is none.
    QQuickItem* item(const QString& name) const { return find(window()->contentItem(), name); }

    // The item's "text" property, or the empty text.
    QString text(const QString& name) const
    {
        QQuickItem* found = item(name);
        return found ? found->property("text").toString() : QString();
    }

    // Clicks the middle of a visible, enabled item; false when it cannot be
    // clicked.
    bool click(const QString& name)
    {
        QQuickItem* target = item(name);
        if (!target || !target->isVisible() || !target->isEnabled())
            return false;
        const QPointF centre = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
        QTest::mouseClick(window(), Qt::LeftButton, Qt::NoModifier, centre.toPoint());
        return true;
    }

    // Replaces the text of a field by typing, then presses Enter.
    bool type(const QString& name, const QString& text)
    {
        QQuickItem* field = item(name);
        if (!field || !field->isVisible() || !field->isEnabled())
            return false;
        field->forceActiveFocus();
        QMetaObject::invokeMethod(field, "selectAll");
        QTest::keyClick(window(), Qt::Key_Backspace);
        for (const QChar character : text)
            QTest::keyClick(window(), character.toLatin1());
        QTest::keyClick(window(), Qt::Key_Return);
        return true;
    }

    // Sends a key to the item, after giving it the focus.
    void key(const QString& name, Qt::Key key)
    {
        if (QQuickItem* target = item(name)) {
            target->forceActiveFocus();
            QTest::keyClick(window(), key);
        }
    }

    // The number at the end of a status field's text ("Frames 12" gives 12).
    qint64 number(const QString& name) const
    {
        return text(name).section(QLatin1Char(' '), -1).toLongLong();
    }

    // The window's next frame as it reached the screen.
    QImage picture() { return renderedWindow(*window()); }

private:
    static QQuickItem* find(QQuickItem* parent, const QString& name)
    {
        if (!parent)
            return nullptr;
        if (parent->objectName() == name)
            return parent;
        for (QQuickItem* child : parent->childItems()) {
            if (QQuickItem* found = find(child, name))
                return found;
        }
        return nullptr;
    }

    QTemporaryDir m_dir;
    SimulatedHost m_host;
    std::unique_ptr<WorkbenchWindow> m_window;
};
