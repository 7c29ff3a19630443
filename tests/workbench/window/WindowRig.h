#pragma once

// The window as a tester meets it: the module started by the reference host
// on a simulated bench, the window opened offscreen, and its items found by
// object name, clicked and typed into as a person would.

#include "SimulatedHost.h"
#include "WindowPicture.h"
#include "WorkbenchWindow.h"

#include "ModuleHost.h"
#include "vrn_sim.h"

#include <QDir>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QtTest>
#include <limits>
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

    // With WORKBENCH_WINDOW_PICTURES set, the window as the test left it, for
    // a person to look at.
    void keepPicture(QString name)
    {
        const QString folder = qEnvironmentVariable("WORKBENCH_WINDOW_PICTURES");
        if (!folder.isEmpty())
            QVERIFY(picture().save(QDir(folder).filePath(name.replace(QLatin1Char(' '), QLatin1Char('-')) + ".png")));
    }

    // An object the module put into the pages' context ("radarCWView", ...).
    QObject* contextObject(const char* name)
    {
        return m_host.host().engine()->rootContext()->contextProperty(QLatin1String(name)).value<QObject*>();
    }

    // The series chart inside a chart view, and how many points it shows
    // (-1 without the chart).
    QQuickItem* seriesChart(const QString& chart) const
    {
        QQuickItem* view = item(chart);
        return view ? view->findChild<QQuickItem*>(QStringLiteral("seriesChart")) : nullptr;
    }
    int pointCount(const QString& chart) const
    {
        QQuickItem* series = seriesChart(chart);
        return series ? series->property("pointCount").toInt() : -1;
    }

    // The highest point a chart draws, found pixel by pixel as a mouse
    // would: {x, y, itemX, ...}; empty when it draws nothing.
    QVariantMap peak(const QString& chart) const
    {
        QQuickItem* series = seriesChart(chart);
        QVariantMap best;
        double bestY = -std::numeric_limits<double>::infinity();
        for (int x = 0; series && x < int(series->width()); ++x) {
            QVariantMap point;
            QMetaObject::invokeMethod(series, "nearest", Q_RETURN_ARG(QVariantMap, point), Q_ARG(qreal, x));
            if (!point.isEmpty() && point.value("y").toDouble() > bestY) {
                bestY = point.value("y").toDouble();
                best = point;
            }
        }
        return best;
    }

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
