#pragma once

#include "host/Constants.h"

#include <QObject>
#include <QString>
#include <QStringList>

class DeviceInfo;
class FrameRateMeter;
class IPlayback;
class IRadarFirmwareSource;
class RadarFirmwareNotice;
class ISeriesChartData;
class RecordingUserSettings;
class ZP7SConfig;
class ZP7SCoordinator;
class ZP7SDataProcessing;
class ZP7SDeviceConfig;
class ZP7SUserSettings;

// What the ZP7 pages and the workbench bind to ("zp7sView"). It holds no
// state beyond a few change flags and the frame-rate estimate: every
// operation goes to the coordinator, the configuration object, the
// processing or the playback. Members shared with the standard mode's view
// carry the same names, so the window and the command line can drive either.
class ZP7SView : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isConnected READ isConnected NOTIFY isConnectedChanged)
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged)
    Q_PROPERTY(bool isPlaybackActive READ isPlaybackActive NOTIFY playbackActiveChanged)
    Q_PROPERTY(ZP7SUserSettings* userSettings READ userSettings CONSTANT)
    Q_PROPERTY(ZP7SDeviceConfig* guiConfiguration READ guiConfiguration CONSTANT)
    Q_PROPERTY(ZP7SDeviceConfig* deviceConfiguration READ deviceConfiguration CONSTANT)
    Q_PROPERTY(DeviceInfo* deviceInfo READ deviceInfo CONSTANT)
    Q_PROPERTY(QString newFirmwareImage READ newFirmwareImage NOTIFY newFirmwareImageChanged)
    Q_PROPERTY(bool revertApplyAvailable READ revertApplyAvailable WRITE setRevertApplyAvailable
                   NOTIFY revertApplyAvailableChanged)
    Q_PROPERTY(int frameNumber READ frameNumber NOTIFY frameNumberChanged)
    Q_PROPERTY(quint32 totalFramesNumber READ totalFramesNumber NOTIFY totalFramesNumberChanged)
    Q_PROPERTY(bool isRecordingActive READ isRecordingActive NOTIFY isRecordingActiveChanged)
    Q_PROPERTY(bool isParsingActive READ isParsingActive NOTIFY isParsingActiveChanged)
    // The board has no FIFO the host can overrun: always 0.
    Q_PROPERTY(quint32 fifoOverflowCounter READ fifoOverflowCounter NOTIFY fifoOverflowCounterChanged)
    Q_PROPERTY(double frameRate READ frameRate NOTIFY frameRateChanged)
    Q_PROPERTY(RecordingUserSettings* recordingSettings READ recordingSettings CONSTANT)
    // Half the pulse repetition frequency of the running configuration, Hz:
    // the Doppler spectrum spans -maxDopplerFrequency .. +maxDopplerFrequency.
    Q_PROPERTY(double maxDopplerFrequency READ maxDopplerFrequency NOTIFY radarConfigurationUpdated)
public:
    ZP7SView(ZP7SCoordinator* coordinator, ZP7SConfig* config, ZP7SDataProcessing* processing,
             IPlayback* playback, QObject* parent = nullptr);
    ~ZP7SView() override;

    bool isConnected() const;
    bool isActive() const;
    bool isPlaybackActive() const;
    ZP7SUserSettings* userSettings() const;
    ZP7SDeviceConfig* guiConfiguration() const;
    ZP7SDeviceConfig* deviceConfiguration() const;
    DeviceInfo* deviceInfo() const;
    // Where newer firmware images are looked for; not owned, may be null.
    void setFirmwareSource(const IRadarFirmwareSource* source);
    // The image newer than the connected board's firmware, else empty.
    QString newFirmwareImage() const;
    bool revertApplyAvailable() const { return m_revertApplyAvailable; }
    void setRevertApplyAvailable(bool available);
    int frameNumber() const { return m_frameNumber; }
    quint32 totalFramesNumber() const;
    bool isRecordingActive() const;
    bool isParsingActive() const;
    quint32 fifoOverflowCounter() const { return 0; }
    // Frames per second over the last second.
    double frameRate() const;
    // The host's recording settings; null when the host has none. Set once,
    // before the pages are loaded.
    RecordingUserSettings* recordingSettings() const { return m_recordingSettings; }
    void setRecordingSettings(RecordingUserSettings* settings) { m_recordingSettings = settings; }
    double maxDopplerFrequency() const;

    Q_INVOKABLE bool applyDefaultConfiguration();
    Q_INVOKABLE bool applyGuiConfiguration();
    Q_INVOKABLE bool revertConfiguration();
    Q_INVOKABLE bool applyConfiguration(QString filePath);
    Q_INVOKABLE bool saveConfiguration(QString filePath);
    Q_INVOKABLE void applyRangeSpectrumConfigurationRuntime();
    Q_INVOKABLE QString suggestGeneralConfigFileName();
    // The pages pass the Constants.Chart value as a number: TimeDomain gives
    // the I/Q series, FrequencyDomain the Doppler spectrum.
    Q_INVOKABLE ISeriesChartData* getChartData(int chartType);
    Q_INVOKABLE void startAcquisition();
    Q_INVOKABLE void stopAcquisition();
    Q_INVOKABLE void startRecording();
    Q_INVOKABLE void stopRecording();
    Q_INVOKABLE void stopParsing();
    // The files the next recording writes under the recording settings:
    // configuration, frames, then the text copy when it is asked for.
    Q_INVOKABLE QStringList recordingFiles() const;
    // The frames the next recording holds at most.
    Q_INVOKABLE quint32 recordingFrameLimit() const;
    Q_INVOKABLE QString checkIfNewFirmwareIsAvailable();
    // Range rate in m/s of a target at `frequencyHz` of the Doppler
    // spectrum; negative = approaching.
    Q_INVOKABLE double radialSpeed(double frequencyHz) const;
    // The Doppler frequency in Hz of a range rate in m/s.
    Q_INVOKABLE double dopplerFrequency(double speedMPerS) const;

signals:
    void isConnectedChanged();
    void newFirmwareImageChanged();
    void isActiveChanged();
    void playbackActiveChanged(bool active);
    void revertApplyAvailableChanged();
    void frameNumberChanged(int frameNumber);
    void totalFramesNumberChanged();
    void isRecordingActiveChanged(bool value);
    void isParsingActiveChanged(bool value);
    void fifoOverflowCounterChanged();
    void frameRateChanged();
    void radarConfigurationUpdated();
    void chartsDataUpdated();
    void convertingToTxt(int progress);
    void enqueueUserMessage(Constants::UserMessageType type, QString msg, QString details);
    // The playback handed out its last frame.
    void finished();

public slots:
    void changeRevertApplyAvailability();

private:
    void onFrameNumberChanged(int frameNumber);

    ZP7SCoordinator* m_coordinator;
    ZP7SConfig* m_config;
    ZP7SDataProcessing* m_processing;
    IPlayback* m_playback;
    RecordingUserSettings* m_recordingSettings = nullptr;
    bool m_revertApplyAvailable = false;
    int m_frameNumber = 0;
    FrameRateMeter* m_frameRate = nullptr;
    RadarFirmwareNotice* m_firmware = nullptr;
};
