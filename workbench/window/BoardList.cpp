#include "BoardList.h"

#include "HostServices.h"
#include "MessageLog.h"

#include "host/IDevice.h"
#include "sdk/vrn.h"

#include <QDebug>

BoardList::BoardList(HostDeviceRegister& devices, QObject* coordinator, MessageLog& messages, QObject* parent)
    : QAbstractListModel(parent)
    , m_devices(devices)
    , m_coordinator(coordinator)
    , m_messages(messages)
{
    connect(&m_devices, &HostDeviceRegister::devicesChanged, this, &BoardList::reload);
    reload();
}

int BoardList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_boards.size());
}

QVariant BoardList::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_boards.size())
        return {};
    const std::shared_ptr<IDevice>& board = m_boards.at(index.row());
    switch (role) {
    case NameRole:
    case Qt::DisplayRole:
        return board->name();
    case UuidRole:
        return board->property("uuid");
    case ShieldTypeRole:
        return board->property("shieldType");
    case TypeNameRole:
        return typeName(board->property("shieldType").toInt());
    case ConnectedRole:
        return board->name() == m_connected;
    default:
        return {};
    }
}

QHash<int, QByteArray> BoardList::roleNames() const
{
    return { { NameRole, "name" },
             { UuidRole, "uuid" },
             { ShieldTypeRole, "shieldType" },
             { TypeNameRole, "typeName" },
             { ConnectedRole, "connected" } };
}

QString BoardList::typeName(int shieldType)
{
    switch (shieldType) {
    case VRN_SHIELD_FMCW_512:
    case VRN_SHIELD_FMCW_513:
    case VRN_SHIELD_FMCW_514:
        return QStringLiteral("60 GHz FMCW (shield %1)").arg(shieldType);
    case VRN_SHIELD_ZP7_768:
        return QStringLiteral("24 GHz pulsed Doppler (shield %1)").arg(shieldType);
    default:
        return QStringLiteral("Unknown board type (shield %1)").arg(shieldType);
    }
}

void BoardList::reload()
{
    beginResetModel();
    for (const auto& board : qAsConst(m_boards))
        disconnect(board.get(), nullptr, this, nullptr);
    m_boards = m_devices.devices();
    // Every proxy relays the one coordinator: listening to one is enough,
    // but any of them may be the one that stays, so listen to all and let
    // the handler ignore repeats.
    for (const auto& board : qAsConst(m_boards))
        connect(board.get(), &IDevice::isConnectedChanged, this, &BoardList::onConnectionChanged, Qt::UniqueConnection);
    endResetModel();
    emit countChanged();
    bool refusedStillThere = false;
    for (const auto& board : qAsConst(m_boards))
        refusedStillThere = refusedStillThere || board->name() == m_refused;
    if (!refusedStillThere)
        setRefused(QString());
}

void BoardList::setConnected(const QString& name)
{
    if (name == m_connected)
        return;
    m_connected = name;
    if (!name.isEmpty())
        m_lastConnected = name;
    if (!m_boards.isEmpty())
        emit dataChanged(index(0), index(int(m_boards.size()) - 1), { ConnectedRole });
    emit connectedBoardChanged();
}

void BoardList::setRefused(const QString& name)
{
    if (name == m_refused)
        return;
    m_refused = name;
    emit refusedBoardChanged();
}

void BoardList::onConnectionChanged(bool connected)
{
    // A mode switch reconnects the board that was connected; nothing else
    // connects a board behind the list's back.
    const QString name = connected ? (m_connected.isEmpty() ? m_lastConnected : m_connected) : QString();
    if (connected)
        setRefused(QString());
    const bool changed = name != m_connected;
    setConnected(name);
    if (changed)
        emit connectionChanged(connected);
}

bool BoardList::connectBoard(const QString& name)
{
    const std::shared_ptr<IDevice> board = m_devices.device(name);
    if (!board)
        return false;
    m_lastConnected = name;
    qInfo().noquote() << "Connecting" << name << board->property("uuid").toString();
    const int messagesBefore = m_messages.count();
    if (!board->connectDevice()) {
        setRefused(name);
        // A mode that cannot serve the board only logs its refusal.
        if (m_messages.count() == messagesBefore) {
            const QString mode = m_coordinator ? m_coordinator->property("userMode").toString() : QString();
            m_messages.add(Constants::Error, QStringLiteral("%1 could not be connected in the %2 mode").arg(name, mode),
                           QStringLiteral("Choose another mode for it, or see the log for the reason."));
        }
        return false;
    }
    if (!board->isAcquisitionActive())
        board->startAcquisition();
    setRefused(QString());
    setConnected(name);
    return true;
}

void BoardList::disconnectBoard()
{
    const std::shared_ptr<IDevice> board = m_devices.device(m_connected);
    if (board) {
        qInfo().noquote() << "Disconnecting" << m_connected;
        board->disconnectDevice();
    }
    setConnected(QString());
    setRefused(QString());
}

void BoardList::selectMode(const QString& mode)
{
    if (!m_coordinator || mode.isEmpty() || m_coordinator->property("userMode").toString() == mode)
        return;
    const QString board = m_connected.isEmpty() ? m_refused : m_connected;
    if (board.isEmpty()) {
        // The module takes a mode only for a board it has or has refused.
        m_messages.add(Constants::Info, QStringLiteral("Connect a board to choose its mode"),
                       QStringLiteral("The mode %1 was not set.").arg(mode));
        return;
    }
    qInfo().noquote() << "Switching" << board << "to the" << mode << "mode";
    const int messagesBefore = m_messages.count();
    m_coordinator->setProperty("userMode", mode);
    bool connected = false;
    QMetaObject::invokeMethod(m_coordinator, "isConnected", Qt::DirectConnection, Q_RETURN_ARG(bool, connected));
    if (connected)
        return;
    setRefused(board);
    if (m_messages.count() == messagesBefore)
        m_messages.add(Constants::Warning, QStringLiteral("%1 could not be opened in the %2 mode").arg(board, mode),
                       QStringLiteral("The board stays listed; choose another mode to open it again."));
}

int BoardList::preferredIndex() const
{
    for (int i = 0; i < m_boards.size(); ++i) {
        if (m_boards.at(i)->name() == m_connected)
            return i;
    }
    return m_boards.isEmpty() ? -1 : 0;
}

QString BoardList::connectedUuid() const
{
    const std::shared_ptr<IDevice> board = m_devices.device(m_connected);
    return board ? board->property("uuid").toString() : QString();
}

int BoardList::connectedShieldType() const
{
    const std::shared_ptr<IDevice> board = m_devices.device(m_connected);
    return board ? board->property("shieldType").toInt() : 0;
}
