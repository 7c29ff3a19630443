#pragma once

// What the page tests of the window share: the warnings a page must not
// log, and answering the file dialog a page opens.

#include "WindowRig.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>

#include <algorithm>

// Collects every warning logged while a test runs; a page test fails on any.
namespace PageWarnings {

inline QStringList& collected()
{
    static QStringList warnings;
    return warnings;
}

inline QtMessageHandler& previous()
{
    static QtMessageHandler handler = nullptr;
    return handler;
}

inline void collect(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    // The offscreen platform says this whenever a dialog window shows.
    if (type != QtDebugMsg && type != QtInfoMsg
        && message != QLatin1String("This plugin does not support propagateSizeHints()"))
        collected().append(message);
    if (previous())
        previous()(type, context, message);
}

inline void install()
{
    previous() = qInstallMessageHandler(collect);
}

// Keeps only the pages' own (QML) warnings: where the module logs a
// failure itself, that is no fault of the page.
inline void keepPageWarnings()
{
    QStringList& warnings = collected();
    warnings.erase(std::remove_if(warnings.begin(), warnings.end(),
                                  [](const QString& warning) { return !warning.startsWith("qrc:"); }),
                   warnings.end());
}

} // namespace PageWarnings

// The file dialog a page has shown, once it shows; null when none does.
inline QFileDialog* shownFileDialog()
{
    QFileDialog* dialog = nullptr;
    (void)QTest::qWaitFor([&dialog] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto candidate = qobject_cast<QFileDialog*>(widget); candidate && candidate->isVisible())
                dialog = candidate;
        }
        return dialog != nullptr;
    });
    return dialog;
}

// Types the path into the dialog, confirms it and gives the window the
// keyboard back.
inline bool chooseFile(WindowRig& rig, QFileDialog* dialog, const QString& path)
{
    auto* name = dialog ? dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")) : nullptr;
    if (!name)
        return false;
    name->setText(path);
    QTest::keyClick(name, Qt::Key_Return);
    if (!QTest::qWaitFor([dialog] { return !dialog->isVisible(); }))
        return false;
    rig.window()->requestActivate();
    return QTest::qWaitForWindowActive(rig.window());
}

inline bool chooseFile(WindowRig& rig, const QString& path)
{
    return chooseFile(rig, shownFileDialog(), path);
}
