#pragma once

#include "frame/IRadarSubmoduleCoordinator.h"

#include <QStringList>

#include <functional>

// A mode coordinator that records what it was asked and connects any board
// unless told to refuse.
class FakeSubmoduleCoordinator : public IRadarSubmoduleCoordinator
{
    Q_OBJECT
public:
    explicit FakeSubmoduleCoordinator(QList<Mode> modes, QObject* parent = nullptr)
        : IRadarSubmoduleCoordinator(parent)
        , m_modes(std::move(modes))
    {
    }

    QString deviceUuid() const override { return m_uuid; }
    vrn_Device_Shield_Type_t deviceType() const override { return m_type; }
    bool isConnected() const override { return m_connected; }
    bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) override
    {
        calls << QStringLiteral("connect %1").arg(uuid);
        if (whileConnecting)
            whileConnecting(uuid);
        // As the real mode coordinators do: the board held so far goes
        // first, with its own "disconnected".
        if (releasesHeldBoard && m_connected) {
            m_connected = false;
            emit isConnectedChanged(false);
        }
        if (refuse)
            return false;
        m_uuid = uuid;
        m_type = type;
        m_connected = true;
        emit isConnectedChanged(true);
        return true;
    }
    void disconnectDevice() override
    {
        calls << QStringLiteral("disconnect");
        if (!m_connected)
            return;
        m_connected = false;
        emit isConnectedChanged(false);
    }
    void startAcquisition() override
    {
        m_acquiring = true;
        emit isAcquisitionActiveChanged(true);
    }
    void stopAcquisition() override
    {
        m_acquiring = false;
        emit isAcquisitionActiveChanged(false);
    }
    bool isAcquisitionActive() const override { return m_acquiring; }
    QList<Mode> supportedModes() const override { return m_modes; }

    QStringList calls;
    QStringList events;
    bool refuse = false;
    bool releasesHeldBoard = false;
    // Runs inside connectDevice, as the board is being opened.
    std::function<void(const QString&)> whileConnecting;

public slots:
    void onRadarEvent(RadarEventCode code, QString message, QString) override
    {
        events << QStringLiteral("%1 %2").arg(static_cast<int>(code)).arg(message);
    }

private:
    QList<Mode> m_modes;
    QString m_uuid;
    vrn_Device_Shield_Type_t m_type = VRN_SHIELD_UNKNOWN;
    bool m_connected = false;
    bool m_acquiring = false;
};
