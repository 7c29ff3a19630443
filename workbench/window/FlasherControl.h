#pragma once

#include "host/FlasherStatus.h"

#include <QObject>
#include <memory>

class BoardList;
class FlasherList;
class HostFlasherRegister;
class MessageLog;

// The flasher panel's commands: starts a job on a flasher with the image
// the user chose (or the newest one of its firmware folder), first
// disconnecting the board the window has open, and tells the user how each
// job ended. Published to the window's QML as "workbench.flashers".
class FlasherControl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject* list READ list CONSTANT)
public:
    FlasherControl(HostFlasherRegister& flashers, BoardList& boards, MessageLog& messages,
                   QObject* parent = nullptr);
    ~FlasherControl() override;

    QObject* list() const;
    FlasherList& flasherList() { return *m_list; }

    // Starts a job; `image` is a path or a "file://" URL, empty for the
    // flasher's newest image. False, with a message saying why, when there
    // is no such flasher, no image, or a job already runs on it.
    Q_INVOKABLE bool flash(const QString& name, const QString& image = QString());

private:
    void onJobEnded(const QString& name, FlasherStatus::Status status, const QString& message);

    HostFlasherRegister& m_register;
    BoardList& m_boards;
    MessageLog& m_messages;
    std::unique_ptr<FlasherList> m_list;
};
