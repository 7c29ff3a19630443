#include "frame/RadarCoordinator.h"

#include "core/JSONConfigurationBinding.h"
#include "frame/IRadarSubmoduleCoordinator.h"

#include <QMutexLocker>

namespace {
const QString standardMode = QStringLiteral("Standard");
}

RadarCoordinator::RadarCoordinator(QObject* parent)
    : IRadarCoordinator(parent)
{
}

RadarCoordinator::~RadarCoordinator() = default;

std::unique_ptr<JSONConfigurationObject> RadarCoordinator::configurationNode()
{
    auto radar = std::make_unique<JSONConfigurationObject>(QStringLiteral("radar"));
    JSONConfigurationBinding::bindValue(
        *radar, QStringLiteral("userMode"), this, &RadarCoordinator::userMode, &RadarCoordinator::setUserMode,
        [](const QString& mode) {
            return mode.trimmed().isEmpty() ? QStringLiteral("User mode must not be empty") : QString();
        });
    return radar;
}

IRadarSubmoduleCoordinator* RadarCoordinator::coordinatorFor(const Key& key)
{
    // An absent key is inserted with no coordinator, so the table also
    // remembers the combinations that were asked for.
    return m_table[key];
}

QSet<QString> RadarCoordinator::modesOf(vrn_Device_Shield_Type_t type) const
{
    QSet<QString> modes;
    for (auto it = m_table.cbegin(); it != m_table.cend(); ++it) {
        if (it.key().first == type)
            modes.insert(it.key().second);
    }
    return modes;
}

bool RadarCoordinator::forwardConnect(IRadarSubmoduleCoordinator* coordinator, const QString& uuid,
                                      vrn_Device_Shield_Type_t type)
{
    // The SDK stops listing a board once it is opened, which happens inside
    // the call below; a rescan running meanwhile must keep it in the list.
    setConnectingDevice(uuid);
    const bool connected = coordinator->connectDevice(uuid, type);
    setConnectingDevice(QString());
    if (connected && coordinator->isConnected() && m_active != coordinator) {
        // A mode coordinator that still held a board lets it go before it
        // takes the new one; that disconnection cleared the active
        // coordinator here and its "connected" went unheard. Take it back,
        // or the pages would show no board while this one streams.
        activate(coordinator);
        emit userModesChanged(modesOf(type));
        emit isConnectedChanged(true);
    } else if (!connected && m_active == coordinator && !coordinator->isConnected()) {
        // A board that could not be opened leaves nothing active, so the
        // next board is routed by its own type; the modes of this board stay
        // on offer, since choosing another one retries it (setUserMode).
        deactivate();
    }
    refreshConnectedDevice();
    return connected;
}

bool RadarCoordinator::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    const bool connected = routeConnect(uuid, type);
    // Without a board nothing can be switched; a refused one is kept so the
    // user can still choose another mode for it.
    if (connected || m_active)
        m_refusedBoard = {};
    else
        m_refusedBoard = { uuid, type };
    return connected;
}

bool RadarCoordinator::routeConnect(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    if (m_active)
        return forwardConnect(m_active, uuid, type);

    IRadarSubmoduleCoordinator* coordinator = nullptr;
    const Key key { type, m_userMode };
    if (m_table.contains(key)) {
        coordinator = m_table.value(key);
    } else {
        m_userMode = standardMode;
        emit userModeChanged(m_userMode);
        coordinator = coordinatorFor({ type, standardMode });
    }

    activate(coordinator);
    emit userModesChanged(modesOf(type));

    if (!m_active)
        return false;
    return forwardConnect(m_active, uuid, type);
}

void RadarCoordinator::disconnectDevice()
{
    if (m_active)
        m_active->disconnectDevice();
    refreshConnectedDevice();
}

bool RadarCoordinator::isConnected() const
{
    return m_active && m_active->isConnected();
}

bool RadarCoordinator::isDeviceConnected(const QString& uuid) const
{
    QMutexLocker lock(&m_connectedMutex);
    return !uuid.isEmpty() && (m_connectedUuid == uuid || m_connectingUuid == uuid);
}

void RadarCoordinator::startAcquisition()
{
    if (m_active)
        m_active->startAcquisition();
}

void RadarCoordinator::stopAcquisition()
{
    if (m_active)
        m_active->stopAcquisition();
}

bool RadarCoordinator::isAcquisitionActive() const
{
    return m_active && m_active->isAcquisitionActive();
}

QStringList RadarCoordinator::userModes() const
{
    QStringList modes;
    for (auto it = m_table.cbegin(); it != m_table.cend(); ++it) {
        if (!modes.contains(it.key().second))
            modes.append(it.key().second);
    }
    return modes;
}

void RadarCoordinator::registerSubmoduleCoordinator(IRadarSubmoduleCoordinator* coordinator)
{
    if (!coordinator)
        return;
    for (const auto& mode : coordinator->supportedModes())
        m_table[mode] = coordinator;
}

void RadarCoordinator::setUserMode(const QString& mode)
{
    // Choosing the mode already in use must not reset the board and its
    // acquisition; like every property, nothing changes, nothing is said.
    if (mode == m_userMode)
        return;
    if (!m_active) {
        // A mode is chosen for a board. Without a connected one the only
        // board there is to choose for is one the last mode refused: it is
        // tried under the new mode.
        if (m_refusedBoard.first.isEmpty())
            return;
        const QPair<QString, vrn_Device_Shield_Type_t> board = m_refusedBoard;
        m_userMode = mode;
        emit userModeChanged(mode);
        connectDevice(board.first, board.second);
        return;
    }

    IRadarSubmoduleCoordinator* next = coordinatorFor({ m_active->deviceType(), mode });

    QString uuid;
    vrn_Device_Shield_Type_t type = VRN_SHIELD_UNKNOWN;
    if (m_active->isConnected()) {
        uuid = m_active->deviceUuid();
        type = m_active->deviceType();
        IRadarSubmoduleCoordinator* previous = m_active;
        deactivate();
        previous->disconnectDevice();
        // Its own announcement went nowhere: it is no longer active.
        refreshConnectedDevice();
        emit isConnectedChanged(false);
    }

    activate(next);
    m_userMode = mode;
    emit userModeChanged(mode);

    if (!uuid.isEmpty() && type != VRN_SHIELD_UNKNOWN && !connectDevice(uuid, type)) {
        // The new mode refused the board: it is closed, so the host lists
        // it again, ready for another mode or another connect.
        emit triggerDetectDevices();
    }
    refreshConnectedDevice();
}

void RadarCoordinator::onSubmoduleCoordinatorIsConnectedChanged(bool isConnected)
{
    // The rescan asked for below runs on the detection thread and may ask
    // isDeviceConnected before this slot returns: the board must already
    // count as gone, or it would be kept in the host's list.
    if (!isConnected) {
        deactivate();
        refreshConnectedDevice();
        emit userModesChanged({});
        emit triggerDetectDevices();
    }
    refreshConnectedDevice();
    emit isConnectedChanged(isConnected);
}

void RadarCoordinator::activate(IRadarSubmoduleCoordinator* coordinator)
{
    deactivate();
    m_active = coordinator;
    if (!m_active)
        return;
    m_activeConnections = {
        connect(m_active, &IRadarSubmoduleCoordinator::isConnectedChanged, this,
                &RadarCoordinator::onSubmoduleCoordinatorIsConnectedChanged),
        connect(m_active, &IRadarSubmoduleCoordinator::isAcquisitionActiveChanged, this,
                &RadarCoordinator::isAcquisitionActiveChanged),
        connect(this, &RadarCoordinator::triggerEvent, m_active, &IRadarSubmoduleCoordinator::onRadarEvent),
    };
}

void RadarCoordinator::deactivate()
{
    for (const auto& connection : qAsConst(m_activeConnections))
        disconnect(connection);
    m_activeConnections.clear();
    m_active = nullptr;
}

void RadarCoordinator::refreshConnectedDevice()
{
    const QString uuid = (m_active && m_active->isConnected()) ? m_active->deviceUuid() : QString();
    QMutexLocker lock(&m_connectedMutex);
    m_connectedUuid = uuid;
}

void RadarCoordinator::setConnectingDevice(const QString& uuid)
{
    QMutexLocker lock(&m_connectedMutex);
    m_connectingUuid = uuid;
}
