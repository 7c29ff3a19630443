#pragma once

#include "sdk/vrn.h"

#include <QObject>

class DeviceInfo;
class MathAxis;
class ZP7SFrameParams;
class ZP7SLimits;
class ZP7SPulseConfigParams;

// Everything that configures the ZP7 mode of one board: the frame and the
// pulse groups, the board's bounds, its device information and the axis of
// the Doppler spectrum (Hz, -PRF/2 .. +PRF/2). The device information may
// be shared with other configurations of the mode (then not owned, it must
// outlive this object); without one given, the configuration owns its own.
class ZP7SDeviceConfig : public QObject
{
    Q_OBJECT
    Q_PROPERTY(MathAxis* frequencyDomainAxis READ frequencyDomainAxis CONSTANT)
    Q_PROPERTY(ZP7SFrameParams* frameParams READ frameParams CONSTANT)
    Q_PROPERTY(ZP7SPulseConfigParams* pulseConfigParams READ pulseConfigParams CONSTANT)
    Q_PROPERTY(ZP7SLimits* limits READ limits CONSTANT)
    Q_PROPERTY(DeviceInfo* deviceInfo READ deviceInfo CONSTANT)
public:
    explicit ZP7SDeviceConfig(DeviceInfo* deviceInfo = nullptr, QObject* parent = nullptr);
    ~ZP7SDeviceConfig() override;

    MathAxis* frequencyDomainAxis() const { return m_frequencyDomainAxis; }
    ZP7SFrameParams* frameParams() const { return m_frameParams; }
    ZP7SPulseConfigParams* pulseConfigParams() const { return m_pulseConfigParams; }
    ZP7SLimits* limits() const { return m_limits; }
    DeviceInfo* deviceInfo() const { return m_deviceInfo; }

    // Limits, parameters and axis through the setters; the device
    // information too when it is not the same object.
    void copyFrom(const ZP7SDeviceConfig& other);
    // Frame and pulse groups equal (what a file or the board would hold).
    bool sameSettings(const ZP7SDeviceConfig& other) const;

    // False after the critical log "Invalid channel settings": then
    // neither record is touched.
    bool toSdk(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse) const;
    void fromSdk(const vrn_Corvix_Frame_Config_t& frame, const vrn_Corvix_Pulse_Config_t& pulse);
    void setLimits(const vrn_Corvix_Limits_t& limits);
    // 0 = Tx1/Rx1, 1 = Tx2/Rx2, -1 when the antenna sets name no pair.
    int channel() const;

    // The pulse repetition frequency (1 / PRT), 0 without a PRT.
    double pulseRepetitionFrequency() const;
    // The Doppler axis for a spectrum of `bins` points over the current
    // PRT: -PRF/2 .. +PRF/2 in steps of PRF / bins.
    void updateFrequencyDomainAxis(quint32 bins);

    // True when every parameter lies within the limits and the pulses of
    // one frame fit in its repetition time; else false with the first
    // offender ("Number of samples outside the device's limits") in
    // `message` and the range in `details`.
    bool checkWithinLimits(QString& message, QString& details) const;

private:
    DeviceInfo* m_deviceInfo;
    MathAxis* m_frequencyDomainAxis;
    ZP7SFrameParams* m_frameParams;
    ZP7SPulseConfigParams* m_pulseConfigParams;
    ZP7SLimits* m_limits;
};
