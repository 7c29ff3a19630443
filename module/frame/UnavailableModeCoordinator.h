#pragma once

#include "frame/IRadarSubmoduleCoordinator.h"

// The coordinator of a mode whose device, configuration and pipeline are
// not part of this build: it claims its (shield type, mode) pairs so the
// user can choose the mode, and refuses every board with a log line
// instead of pretending to stream. Never connected, never acquiring.
class UnavailableModeCoordinator : public IRadarSubmoduleCoordinator
{
    Q_OBJECT
public:
    UnavailableModeCoordinator(QList<Mode> modes, QObject* parent = nullptr);

    QString deviceUuid() const override { return {}; }
    vrn_Device_Shield_Type_t deviceType() const override { return VRN_SHIELD_UNKNOWN; }
    bool isConnected() const override { return false; }
    bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) override;
    void disconnectDevice() override {}
    void startAcquisition() override {}
    void stopAcquisition() override {}
    bool isAcquisitionActive() const override { return false; }
    QList<Mode> supportedModes() const override { return m_modes; }

public slots:
    void onRadarEvent(RadarEventCode code, QString message, QString details) override;

private:
    QList<Mode> m_modes;
};
