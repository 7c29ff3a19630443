#pragma once

#include "fmcw/common/IRadarTemperatureProvider.h"
#include "frame/RadarEventCode.h"
#include "zp7/IZP7SDataProvider.h"
#include "zp7/config/IZP7SController.h"

#include <QMutex>
#include <QObject>
#include <QString>

#include <atomic>

// One opened pulsed-Doppler board. Every SDK call on the handle is
// serialised by the device's mutex: the acquisition worker fetches frames
// while the GUI thread configures the board or reads its temperature.
// Failures are told through triggerEvent, always after the mutex is
// released, so a receiver may call back into the device.
class ZP7SDevice : public QObject, public IZP7SController, public IZP7SDataProvider, public IRadarTemperatureProvider
{
    Q_OBJECT
public:
    // The SDK's wait for one frame; the lock is held no longer than this.
    static constexpr quint16 kFrameWaitMs = 30;

    explicit ZP7SDevice(const Vrn* vrn, QObject* parent = nullptr);
    ~ZP7SDevice() override;

    // Opens the board; on failure the event says why and nothing stays open.
    bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t shieldType);
    // Closes the handle (also of a board that is gone); true when the SDK
    // let it go without complaint.
    bool disconnectDevice();
    QString uuid() const { return m_uuid; }
    vrn_Device_Shield_Type_t shieldType() const { return m_shieldType; }
    // True from the first frame asked of the board until it is stopped or
    // closed: an idle board has nothing to stop.
    bool isAcquiring() const { return m_acquiring.load(); }

    // IZP7SController
    bool isConnected() const override;
    bool getDefaultConfig(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse) override;
    bool getConfig(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse) override;
    bool setConfig(const vrn_Corvix_Frame_Config_t& frame, const vrn_Corvix_Pulse_Config_t& pulse) override;
    bool getLimits(vrn_Corvix_Limits_t& limits) override;
    bool readDeviceInfo(DeviceInfo& into) override;

    // IZP7SDataProvider: one channel, the selected one, of as many samples
    // as `configuration` has.
    ZP7SFrameResult getNextFrame(const ZP7SDeviceConfig& configuration) override;
    void stopAcquisition() override;

    // IRadarTemperatureProvider: NaN when there is no reading.
    float getTemperature() override;

    // How long one fetch may wait in total before the board counts as
    // silent: three times the longer of 100 ms and 1.25 frame times.
    static double frameTimeLimitMs(float frameRepetitionTimeS);

signals:
    void isConnectedChanged(bool connected);
    void triggerEvent(RadarEventCode code, QString message, QString details);

private:
    ZP7SFrame createFrame(quint16 samples);
    QString statusText(vrn_Status_t status) const;
    // The failure of a call that returns an error text: a lost board is a
    // communication failure, anything else `message`.
    void reportError(const QString& message, const char* error);

    const Vrn* m_vrn;
    mutable QMutex m_mutex;
    vrn_Corvix_Handle m_handle = nullptr; // guarded by m_mutex
    QString m_uuid;
    vrn_Device_Shield_Type_t m_shieldType = VRN_SHIELD_UNKNOWN;
    std::atomic<bool> m_acquiring { false };
};
