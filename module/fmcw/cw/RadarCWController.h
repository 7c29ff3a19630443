#pragma once

#include "common/SharedFrame.h"
#include "fmcw/common/IRadarTemperatureProvider.h"
#include "fmcw/common/IRadarTxPowerProvider.h"
#include "fmcw/cw/IRadarCWEmission.h"
#include "fmcw/cw/config/IRadarCWConfigurator.h"
#include "frame/RadarEventCode.h"
#include "sdk/vrn.h"

#include <QMutex>
#include <QObject>
#include <QString>

#include <utility>

// The SDK's CW controller of one opened FMCW device. Every call into it
// holds the one mutex: the pages, the temperature and Tx-power monitors and
// the overheating protector's thread all call in. Failures are answered as
// false or NaN and told through triggerEvent, emitted after the lock is let go.
class RadarCWController : public QObject,
                          public IRadarCWConfigurator,
                          public IRadarCWEmission,
                          public IRadarTemperatureProvider,
                          public IRadarTxPowerProvider
{
    Q_OBJECT
public:
    using FrameResult = std::pair<bool, SharedFrame>;

    explicit RadarCWController(const Vrn* vrn, QObject* parent = nullptr);
    ~RadarCWController() override;

    // The opened device the next handle is created for; not owned.
    void setDevice(vrn_Device_Handle device);
    bool createHandle();
    void destroyHandle();
    bool hasHandle() const;

    bool setConfiguration(const RadarDeviceCWConfig& config) override;
    bool getConfiguration(RadarDeviceCWConfig& config) override;
    bool getDefaultConfiguration(RadarDeviceCWConfig& config) override;
    bool getSamplingRateLimits(const vrn_Device_ADC_Config_t& adc, quint32& minHz, quint32& maxHz) override;
    bool getLimits(RadarCWParamsLimits& limits) override;

    bool startEmission() override;
    bool stopEmission() override;
    bool isEmissionActive();

    float getTemperature() override;
    float getTxPower(int antennaIndex) override;

    // One chirp per enabled Rx antenna of `config`; (false, empty) on failure.
    FrameResult fetchFrame(const RadarDeviceCWConfig& config);

signals:
    void triggerEvent(RadarEventCode code, QString message, QString details);

private:
    // Logs and tells `message` with the SDK's text; always false.
    bool report(const char* message, const QString& details);
    QString statusText(vrn_Status_t status) const;
    bool isEmissionActiveLocked(bool& active, QString& failure);

    const Vrn* m_vrn;
    mutable QMutex m_mutex;
    vrn_Device_Handle m_device = nullptr;
    vrn_CW_Handle m_handle = nullptr; // guarded by m_mutex
};
