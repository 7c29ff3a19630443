#pragma once

#include <QObject>
#include <QString>

// Which of the module's embedded pages serves a user mode on a board
// family. The one place that knows the pages' addresses; a board of no
// family known here gets the standard page of its mode.
class ModulePages : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    // `shieldType` 0 means no board: the mode's page for the FMCW boards,
    // which also plays recordings.
    Q_INVOKABLE static QString pageFor(const QString& mode, int shieldType);
    // The page that plays a recording through the playback of that name:
    // the page of the board family that made it.
    Q_INVOKABLE static QString pageForPlayback(const QString& mode, const QString& playbackName);
};
