#pragma once

#include "frame/RadarConstants.h"
#include "fmcw/standard/items/PolarChart.h"
#include "host/Constants.h"

#include <QObject>

class FrameRateMeter;
class IRadarConfiguration;
class IRadarFirmwareSource;
class RadarFirmwareNotice;
class IRadarDataProcessing;
class IRadarSCoordinator;
class IRadarUserSettings;
class IRangeDopplerChartData;
class ISeriesChartData;
class RadarDeviceConfiguration;
class RadarPlayback;
class RecordingUserSettings;

// What the standard mode's pages bind to. It holds no state of its own
// beyond a few change flags: every operation is forwarded to the
// coordinator, the configuration object, the pipeline or the playback.
class RadarView : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged)
    Q_PROPERTY(bool isConnected READ isConnected NOTIFY isConnectedChanged)
    Q_PROPERTY(bool isPlaybackActive READ isPlaybackActive NOTIFY playbackActiveChanged)
    Q_PROPERTY(RadarDeviceConfiguration* guiConfiguration READ guiConfiguration CONSTANT)
    Q_PROPERTY(RadarDeviceConfiguration* deviceConfiguration READ deviceConfiguration CONSTANT)
    Q_PROPERTY(IRadarUserSettings* userSettings READ userSettings CONSTANT)
    Q_PROPERTY(quint32 totalFramesNumber READ totalFramesNumber NOTIFY totalFramesNumberChanged)
    Q_PROPERTY(bool revertApplyAvailable READ revertApplyAvailable NOTIFY revertApplyAvailableChanged)
    Q_PROPERTY(bool isRecordingActive READ isRecordingActive NOTIFY isRecordingActiveChanged)
    Q_PROPERTY(bool isParsingActive READ isParsingActive NOTIFY isParsingActiveChanged)
    Q_PROPERTY(RadarConstants::RadarType radarType READ radarType NOTIFY radarTypeChanged)
    Q_PROPERTY(quint32 fifoOverflowCounter READ fifoOverflowCounter NOTIFY fifoOverflowCounterChanged)
    Q_PROPERTY(double frameRate READ frameRate NOTIFY frameRateChanged)
    Q_PROPERTY(RecordingUserSettings* recordingSettings READ recordingSettings CONSTANT)
    Q_PROPERTY(QString newFirmwareImage READ newFirmwareImage NOTIFY newFirmwareImageChanged)
public:
    RadarView(IRadarSCoordinator* coordinator, IRadarConfiguration* configuration, IRadarDataProcessing* processing,
              RadarPlayback* playback, IRadarUserSettings* userSettings, QObject* parent = nullptr);
    ~RadarView() override;

    bool isActive() const;
    bool isConnected() const;
    bool isPlaybackActive() const;
    RadarDeviceConfiguration* guiConfiguration() const;
    RadarDeviceConfiguration* deviceConfiguration() const;
    IRadarUserSettings* userSettings() const { return m_userSettings; }
    quint32 totalFramesNumber() const;
    bool revertApplyAvailable() const { return m_revertApplyAvailable; }
    bool isRecordingActive() const;
    bool isParsingActive() const { return m_parsingActive; }
    RadarConstants::RadarType radarType() const { return m_radarType; }
    quint32 fifoOverflowCounter() const;
    // Frames per second over the last second.
    double frameRate() const;
    // The host's recording settings, which the recordings follow; null
    // when the host has none. Set once, before the pages are loaded.
    RecordingUserSettings* recordingSettings() const { return m_recordingSettings; }
    void setRecordingSettings(RecordingUserSettings* settings) { m_recordingSettings = settings; }
    // Where newer firmware images are looked for; not owned, may be null.
    void setFirmwareSource(const IRadarFirmwareSource* source);
    // The firmware image newer than the connected board's firmware; empty
    // when there is none or no board.
    QString newFirmwareImage() const;

    Q_INVOKABLE bool applyDefaultConfiguration();
    Q_INVOKABLE bool applyGuiConfiguration();
    Q_INVOKABLE bool revertConfiguration();
    Q_INVOKABLE bool applyConfiguration(QString filePath);
    Q_INVOKABLE bool saveConfiguration(QString filePath);
    Q_INVOKABLE void applyRangeSpectrumConfigurationRuntime();
    Q_INVOKABLE void applyRangeDopplerMapConfigurationRuntime();
    Q_INVOKABLE QString suggestGeneralConfigFileName();
    Q_INVOKABLE void setDataForPolarChart(Constants::Chart chartType, PolarChart* chart);
    Q_INVOKABLE IRangeDopplerChartData* getRangeDopplerChartData();
    Q_INVOKABLE ISeriesChartData* getChartData(int chartType);
    Q_INVOKABLE void startRecording();
    Q_INVOKABLE void stopRecording();
    Q_INVOKABLE void stopParsing();
    // The files the next recording writes under the recording settings:
    // configuration, frames, then the text copy and the presence states
    // when these are written.
    Q_INVOKABLE QStringList recordingFiles() const;
    // The frames the next recording holds at most, from the settings' frame
    // count or their duration at the applied frame repetition time.
    Q_INVOKABLE quint32 recordingFrameLimit() const;
    Q_INVOKABLE QString checkIfNewFirmwareIsAvailable();

signals:
    void isActiveChanged();
    void isConnectedChanged();
    void playbackActiveChanged(bool active);
    void totalFramesNumberChanged();
    void revertApplyAvailableChanged();
    void isRecordingActiveChanged(bool value);
    void isParsingActiveChanged();
    void radarTypeChanged();
    void fifoOverflowCounterChanged();
    void frameRateChanged();
    void newFirmwareImageChanged();
    void radarConfigurationUpdated();
    void chartsDataUpdated();
    void frameNumberChanged(int frameNumber);
    void convertingToTxt(int progress);
    void enqueueUserMessage(Constants::UserMessageType type, QString message, QString details);
    // The playback handed out its last frame.
    void finished();

public slots:
    void changeRevertApplyAvailability();

private:
    void updateRadarType();

    IRadarSCoordinator* m_coordinator;
    IRadarConfiguration* m_configuration;
    IRadarDataProcessing* m_processing;
    RadarPlayback* m_playback;
    IRadarUserSettings* m_userSettings;
    RecordingUserSettings* m_recordingSettings = nullptr;
    RadarFirmwareNotice* m_firmware = nullptr;
    bool m_revertApplyAvailable = false;
    bool m_parsingActive = false;
    RadarConstants::RadarType m_radarType = RadarConstants::Unknown;
    FrameRateMeter* m_frameRate = nullptr;
};
