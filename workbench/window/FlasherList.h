#pragma once

#include "host/FlasherStatus.h"

#include <QAbstractListModel>
#include <QStringList>
#include <memory>

class HostFlasherRegister;
class IFlasher;

// The flashers the module has offered to the host, for the flasher panel:
// each one's status, progress, phase, the image it would write and the
// messages of its last job as they came. Follows the register, so a board
// plugged or unplugged joins or leaves the list at once.
class FlasherList : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    // Some job runs: its board may be left in its bootloader if the window
    // closes now.
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
public:
    enum Role {
        NameRole = Qt::UserRole + 1,
        StatusRole,
        StatusNameRole,
        OutcomeRole,
        ProgressRole,
        PhaseRole,
        MessageRole,
        MessagesRole,
        ImageRole,
        FolderRole
    };

    explicit FlasherList(HostFlasherRegister& flashers, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return int(m_rows.size()); }
    bool busy() const { return m_busy; }
    // The row of the flasher of that name, -1 when there is none.
    Q_INVOKABLE int indexOf(const QString& name) const;

    // "idle" (no job yet), "running", "success" or "failure".
    static QString outcome(FlasherStatus::Status status);
    // "Write" for "WRITE: 42": the phase a message belongs to.
    static QString phaseOf(const QString& message);

signals:
    void countChanged();
    void busyChanged();
    // A job reached its final status.
    void jobEnded(const QString& name, FlasherStatus::Status status, const QString& message);

private:
    struct Row {
        std::shared_ptr<IFlasher> flasher;
        QString name;
        QString phase;
        QStringList messages;
        QString lastError;
        FlasherStatus::Status lastStatus;
    };

    void reload();
    void watch(IFlasher* flasher);
    int rowOf(const QObject* flasher) const;
    void onStatus(IFlasher* flasher);
    void onMessage(IFlasher* flasher);
    void changed(int row, const QVector<int>& roles);
    void updateBusy();

    HostFlasherRegister& m_register;
    QVector<Row> m_rows;
    bool m_busy = false;
};
