#pragma once

#include <QAbstractListModel>
#include <memory>

class HostDeviceRegister;
class IDevice;
class MessageLog;

// The boards the module has announced to the host, for the board list:
// name, uuid, a readable type and whether it is the connected one. Follows
// the register, so a board unplugged and removed by the module is gone from
// the list at once. Connecting starts acquisition, as a session does.
class BoardList : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(QString connectedBoard READ connectedBoard NOTIFY connectedBoardChanged)
    // The last board that could not be opened (also by a mode switch); a
    // mode may be chosen for it, which tries it again.
    Q_PROPERTY(int connectedShieldType READ connectedShieldType NOTIFY connectedBoardChanged)
    Q_PROPERTY(QString refusedBoard READ refusedBoard NOTIFY refusedBoardChanged)
public:
    enum Role { NameRole = Qt::UserRole + 1, UuidRole, ShieldTypeRole, TypeNameRole, ConnectedRole };

    // `coordinator` is the module's "radarCoordinator", for the user mode.
    BoardList(HostDeviceRegister& devices, QObject* coordinator, MessageLog& messages, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return int(m_boards.size()); }
    QString connectedBoard() const { return m_connected; }
    QString refusedBoard() const { return m_refused; }
    // The connected board's uuid, empty when none.
    QString connectedUuid() const;
    int connectedShieldType() const;

    // False when the board is unknown or could not be opened; the module
    // has then said why in a user message, or the log has.
    Q_INVOKABLE bool connectBoard(const QString& name);
    Q_INVOKABLE void disconnectBoard();
    // Switches the user mode; the module reconnects the board under the new
    // mode, or refuses it, which is then said in the messages.
    Q_INVOKABLE void selectMode(const QString& mode);
    // The board to offer first: the connected one, else the first.
    Q_INVOKABLE int preferredIndex() const;

    // Readable name of a shield type, e.g. "FMCW (shield 512)".
    static QString typeName(int shieldType);

signals:
    void countChanged();
    void connectedBoardChanged();
    void refusedBoardChanged();
    // The module (re)connected or lost a board.
    void connectionChanged(bool connected);

private:
    void reload();
    void onConnectionChanged(bool connected);
    void setConnected(const QString& name);
    void setRefused(const QString& name);

    HostDeviceRegister& m_devices;
    QObject* m_coordinator;
    MessageLog& m_messages;
    QList<std::shared_ptr<IDevice>> m_boards;
    QString m_connected;
    QString m_lastConnected;
    QString m_refused;
};
