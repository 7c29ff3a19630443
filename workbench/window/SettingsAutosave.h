#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

// Saves the settings file shortly after any watched setting changed, so a
// crash loses at most the last moment's edit, and once more at the end.
// Watches every notifying property of the given objects and of the
// objects they hold as constant properties (the module's chart settings
// are such a tree).
class SettingsAutosave : public QObject
{
    Q_OBJECT
public:
    // `save` returns false when the file could not be written.
    explicit SettingsAutosave(std::function<bool()> save, QObject* parent = nullptr);

    void watch(QObject* settings);
    // Writes now when a change is pending, or always with `force`.
    bool saveNow(bool force = false);

signals:
    // The file could not be written; said once until a save works again.
    void saveFailed();

public slots:
    void scheduleSave();

private:
    void watchTree(QObject* object, int depth);

    std::function<bool()> m_save;
    QTimer m_delay;
    bool m_pending = false;
    bool m_failed = false;
};
