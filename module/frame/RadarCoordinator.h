#pragma once

#include "frame/IRadarCoordinator.h"
#include "frame/IRadarSubmoduleCoordinatorRegister.h"

#include <QMap>
#include <QMetaObject>
#include <QMutex>
#include <QPair>
#include <QSet>
#include <QVector>

class IRadarSubmoduleCoordinator;

// Keeps the table (shield type, user mode) -> submodule coordinator and
// forwards device and acquisition operations to the active one. Lives on
// the GUI thread; only isDeviceConnected is called from elsewhere.
class RadarCoordinator : public IRadarCoordinator, public IRadarSubmoduleCoordinatorRegister
{
    Q_OBJECT
    Q_PROPERTY(QString userMode READ userMode WRITE setUserMode NOTIFY userModeChanged)
    Q_PROPERTY(QStringList submodules READ userModes NOTIFY userModesChanged)
public:
    using Key = QPair<vrn_Device_Shield_Type_t, QString>;

    explicit RadarCoordinator(QObject* parent = nullptr);
    ~RadarCoordinator() override;

    std::unique_ptr<JSONConfigurationObject> configurationNode() override;
    Q_INVOKABLE bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) override;
    Q_INVOKABLE void disconnectDevice() override;
    Q_INVOKABLE bool isConnected() const override;
    bool isDeviceConnected(const QString& uuid) const override;
    Q_INVOKABLE void startAcquisition() override;
    Q_INVOKABLE void stopAcquisition() override;
    Q_INVOKABLE bool isAcquisitionActive() const override;
    QStringList userModes() const override;

    void registerSubmoduleCoordinator(IRadarSubmoduleCoordinator* coordinator) override;

    QString userMode() const { return m_userMode; }
    void setUserMode(const QString& mode);

signals:
    void userModeChanged(QString newMode);
    void userModesChanged(QSet<QString> modes);

public slots:
    void onSubmoduleCoordinatorIsConnectedChanged(bool isConnected) override;

private:
    IRadarSubmoduleCoordinator* coordinatorFor(const Key& key);
    // Picks the mode coordinator for the board and hands it over.
    bool routeConnect(const QString& uuid, vrn_Device_Shield_Type_t type);
    // Hands the board to a mode coordinator and keeps the active
    // coordinator in step with what that coordinator then reports.
    bool forwardConnect(IRadarSubmoduleCoordinator* coordinator, const QString& uuid,
                        vrn_Device_Shield_Type_t type);
    QSet<QString> modesOf(vrn_Device_Shield_Type_t type) const;
    void activate(IRadarSubmoduleCoordinator* coordinator);
    void deactivate();
    // Copies the active coordinator's connection into the snapshot that the
    // detection thread reads.
    void refreshConnectedDevice();
    void setConnectingDevice(const QString& uuid);

    QMap<Key, IRadarSubmoduleCoordinator*> m_table;
    IRadarSubmoduleCoordinator* m_active = nullptr;
    QString m_userMode = QStringLiteral("Standard");
    QVector<QMetaObject::Connection> m_activeConnections;
    // The board the last connect could not open, empty uuid when none; a
    // mode chosen meanwhile is tried on it.
    QPair<QString, vrn_Device_Shield_Type_t> m_refusedBoard { QString(), VRN_SHIELD_UNKNOWN };

    mutable QMutex m_connectedMutex;
    QString m_connectedUuid; // empty when no board is connected
    QString m_connectingUuid; // the board being opened, empty otherwise
};
