#pragma once

#include "common/SharedFrame.h"
#include "frame/RadarEventCode.h"
#include "host/Constants.h"

#include <QObject>
#include <QString>

#include <memory>
#include <mutex>

class IBroker;
class ISeriesChartData;
class RadarCWConfig;
class RadarCWController;
class RadarDeviceCWConfig;
class RadarFrequencyDomainChartData;
class RadarRangeSpectrumCalculator;
class RadarTimeDomainChartData;

// CW mode's frames: captures one on request, keeps the latest, turns it
// into the time-domain and spectrum chart data, and logs it to a CSV file.
// The frame is exchanged under the mutex as a shared reference, so the
// charts and the log never copy samples under the lock. GUI thread, apart
// from the frame exchange.
class RadarCWDataProcessing : public QObject
{
    Q_OBJECT
public:
    // Nothing is owned; all must outlive this object. `broker` may be null
    // (no spectrum then).
    RadarCWDataProcessing(IBroker* broker, RadarCWController* controller, RadarCWConfig* config,
                          QObject* parent = nullptr);
    ~RadarCWDataProcessing() override;

    // Fetches a frame with the device configuration; true when one arrived.
    // A failed fetch leaves the previous frame in place.
    bool captureFrame();
    // Writes the latest frame to a new file named after the logging prefix
    // and the time; true when written.
    bool logOneFrame();
    // The file the last successful logOneFrame() wrote.
    QString lastLogFile() const { return m_lastLogFile; }

    bool isFrameAvailable() const;
    SharedFrame latestFrame() const;
    quint64 frameSequence() const;
    ISeriesChartData* chartData(Constants::Chart chartType) const;
    // Drops the frame and what the charts show of it.
    void clear();

signals:
    void updateChartsData();
    void chartsDataUpdated(bool value);
    void triggerEvent(RadarEventCode code, QString message, QString details);

public slots:
    // A new device configuration: new frames, a new spectrum calculator.
    void onRadarConfigurationUpdated();
    // New chart settings: a new calculator over the same frame.
    void onRadarConfigurationRuntimeUpdated();
    void onUpdateChartsData();

private:
    void buildCalculator();

    IBroker* m_broker;
    RadarCWController* m_controller;
    RadarCWConfig* m_config;
    mutable std::mutex m_frameMutex;
    SharedFrame m_frame;       // guarded by m_frameMutex
    quint64 m_sequence = 0;    // guarded by m_frameMutex
    std::unique_ptr<RadarRangeSpectrumCalculator> m_calculator;
    std::unique_ptr<RadarTimeDomainChartData> m_timeDomain;
    std::unique_ptr<RadarFrequencyDomainChartData> m_frequencyDomain;
    QString m_lastLogFile;
};
