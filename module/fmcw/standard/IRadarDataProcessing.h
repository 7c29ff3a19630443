#pragma once

#include "frame/RadarEventCode.h"
#include "host/Constants.h"

#include <QObject>
#include <QString>
#include <memory>

class IRadarDataProvider;
class IRadarRecordingSource;
class IRangeDopplerChartData;
class ISeriesChartData;
class PolarChart;
class RadarDeviceConfiguration;
class RadarFileParsing;
class RadarFileRecording;
class RadarPresenceSensingRecorder;
class RadarRecorder;

// The standard mode's processing engine: frames from a provider, numbered,
// recorded and fed to the application calculators on a worker thread;
// charts recomputed from the newest frame on the owner's thread.
class IRadarDataProcessing : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IRadarDataProcessing() override = default;

    virtual bool isAcquisitionRunning() const = 0;
    virtual bool isRecordingActive() const = 0;
    virtual void startAcquisition() = 0;
    virtual void stopAcquisition() = 0;
    virtual quint32 frameNumber() const = 0;
    virtual void resetFrameCounter() = 0;
    virtual void resetCalculators() = 0;
    // Only the polar chart (type 4) is attached; not owned.
    virtual void attachChartItem(Constants::Chart chartType, PolarChart* item) = 0;
    virtual IRangeDopplerChartData* rangeDopplerChartData() = 0;
    virtual ISeriesChartData* chartData(Constants::Chart chartType) = 0;
    virtual void resetPresenceChart() = 0;
    virtual void startRecording() = 0;
    virtual void stopRecording() = 0;
    virtual bool convertRecordingToText(const QString& binPath, const QString& txtPath) = 0;
    virtual void stopConvertingToText() = 0;
    // Not owned; null detaches.
    virtual void setDataProvider(IRadarDataProvider* provider) = 0;
    virtual IRadarDataProvider* dataProvider() const = 0;

    // The recording chain; overridden to replace it.
    virtual std::shared_ptr<RadarRecorder> createRecorder(quint32 frameLimit, int bufferSize) = 0;
    virtual std::unique_ptr<RadarFileRecording> createFileRecording(const IRadarRecordingSource* source,
                                                                    const QString& jsonPath,
                                                                    const QString& binPath) = 0;
    virtual std::unique_ptr<RadarFileParsing> createFileConverter() = 0;
    virtual std::shared_ptr<RadarPresenceSensingRecorder> createPresenceRecorder(const QString& filePath) = 0;

signals:
    void triggerEvent(RadarEventCode code, QString message, QString details);
    void chartsDataUpdated();
    void convertingToTxt(int progress);
    void frameNumberChanged(int frameNumber);
    void isRecordingActiveChanged(bool value);
    // A text copy is scheduled or being written: true at the latest when
    // the recording it belongs to ends (before isRecordingActiveChanged
    // (false)), false once the conversion has ended, after its errors.
    void isParsingActiveChanged(bool value);
    // The processing cycle ended by itself (the provider has no more
    // frames) and the pipeline is idle again; not emitted for
    // stopAcquisition().
    void acquisitionEnded();

public slots:
    virtual void onRadarConfigurationUpdated(RadarDeviceConfiguration* configuration) = 0;
    virtual void onRadarConfigurationRuntimeUpdated(RadarDeviceConfiguration* configuration) = 0;
};
