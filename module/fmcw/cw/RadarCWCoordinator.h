#pragma once

#include "frame/IRadarSubmoduleCoordinator.h"

// The FMCW boards' continuous-wave test mode: connects a board of a type it serves and runs its acquisition.
class RadarCWCoordinator : public IRadarSubmoduleCoordinator
{
    Q_OBJECT
public:
    explicit RadarCWCoordinator(QObject* parent = nullptr);

    QString deviceUuid() const override { return m_uuid; }
    vrn_Device_Shield_Type_t deviceType() const override { return m_type; }
    bool isConnected() const override { return m_connected; }
    bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) override;
    void disconnectDevice() override;
    void startAcquisition() override;
    void stopAcquisition() override;
    bool isAcquisitionActive() const override { return m_acquiring; }
    QList<Mode> supportedModes() const override;

public slots:
    void onRadarEvent(RadarEventCode code, QString message, QString details) override;

private:
    QString m_uuid;
    vrn_Device_Shield_Type_t m_type = VRN_SHIELD_UNKNOWN;
    bool m_connected = false;
    bool m_acquiring = false;
};
