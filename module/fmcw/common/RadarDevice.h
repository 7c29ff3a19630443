#pragma once

#include "fmcw/common/IRadarConfigurator.h"
#include "fmcw/common/IRadarDataProvider.h"
#include "fmcw/common/IRadarTemperatureProvider.h"
#include "fmcw/common/IRadarTxPowerProvider.h"
#include "fmcw/common/IRecalcConfigurationHandler.h"
#include "fmcw/common/RadarDeviceBase.h"
#include "frame/RadarEventCode.h"

#include <QMutex>
#include <QObject>
#include <QString>
#include <QVector>

#include <atomic>

class QThread;

class DeviceInfo;
class RadarConfigurationUtils;

// One opened FMCW device. Every SDK call on the handle is serialised by the
// device's own mutex: the acquisition thread fetches frames while the GUI
// thread reads the temperature or stops acquisition.
class RadarDevice : public QObject,
                    public RadarDeviceBase,
                    public IRadarConfigurator,
                    public IRecalcConfigurationHandler,
                    public IRadarDataProvider,
                    public IRadarTemperatureProvider,
                    public IRadarTxPowerProvider
{
    Q_OBJECT
public:
    // The SDK's wait for one frame; the lock is held no longer than this.
    static constexpr quint16 kFrameWaitMs = 30;

    explicit RadarDevice(const Vrn* vrn, QObject* parent = nullptr);
    ~RadarDevice() override;

    // Opens the board; on failure the event says why and nothing stays open.
    bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t shieldType);
    bool createDeviceHandle();
    bool destroyDeviceHandle();
    bool isConnected() const;
    QString uuid() const { return m_uuid; }
    vrn_Device_Shield_Type_t shieldType() const { return m_shieldType; }

    vrn_Device_Handle sdkHandle() const override { return m_handle; }

    bool setConfiguration(RadarDeviceConfiguration& configuration) override;
    bool recalculateConfiguration(RadarDeviceConfiguration& configuration) override;
    RadarFrameResult getNextFrame(const RadarDeviceConfiguration& configuration) override;
    void stopAcquisition() override;
    float getTemperature() override;
    float getTxPower(int antennaIndex) override;

    int getNumRxAntennas();
    int getNumTxAntennas();
    QString getFirmwareVersion();
    void updateDeviceInfo(DeviceInfo& info);
    void updateTxPower(RadarDeviceConfiguration& configuration);
    // What the SDK's segmentation defaults may replace: everything when an
    // application is chosen afresh, only the chirp values it derives from
    // the scene when the user's own segmentation settings go to the board.
    enum class SegmentationDefaults { Everything, ChirpValuesOnly };
    void updateApplicationDefaults(RadarDeviceConfiguration& configuration,
                                   SegmentationDefaults segmentation = SegmentationDefaults::Everything);

    bool isFetchInProgress() const { return m_fetchInProgress.load(); }
    // True from the first frame asked of the board until it is stopped or
    // closed; an idle board has nothing to stop.
    bool isAcquiring() const { return m_acquiring.load(); }
    RadarConfigurationUtils& utils() const { return *m_utils; }

    // How long one fetch may wait in total before the device counts as
    // lost: three times the longer of 100 ms and 1.25 frame times.
    static double frameTimeLimitMs(float frameRepetitionTimeS);

signals:
    void triggerEvent(RadarEventCode code, QString message, QString details);

private slots:
    void forwardUtilsEvent(RadarEventCode code, QString message, QString details);

private:
    struct PendingEvent {
        RadarEventCode code;
        QString message;
        QString details;
    };

    bool applyConfiguration(RadarDeviceConfiguration& configuration, bool sendToDevice);
    // Emits, in order, the events held back while m_mutex was locked.
    void emitDeferredEvents();
    QString statusText(vrn_Status_t status) const;

    const Vrn* m_vrn;
    mutable QMutex m_mutex;
    vrn_Device_Handle m_handle = nullptr; // guarded by m_mutex
    QString m_uuid;
    vrn_Device_Shield_Type_t m_shieldType = VRN_SHIELD_UNKNOWN;
    std::atomic<int> m_fetchInProgress { 0 };
    std::atomic<bool> m_acquiring { false };
    RadarConfigurationUtils* m_utils;
    // Events the conversion raises while this thread holds m_mutex wait
    // here until it is released: a receiver calling back into the device
    // must not find it locked. Only the deferring thread touches the list.
    std::atomic<QThread*> m_deferringThread { nullptr };
    QVector<PendingEvent> m_pendingEvents;
};
