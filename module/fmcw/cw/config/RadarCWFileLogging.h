#pragma once

#include "common/SharedFrame.h"
#include "core/CSVFileLogging.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

class DeviceInfo;
class LoggingConfiguration;
class RadarDeviceCWConfig;

// One captured CW frame in one CSV file: a commented header describing the
// device and the whole CW configuration, a column row naming each enabled
// receiver, then one line per sample position with every receiver's sample.
// Created for one write; the configuration, device info and frame must
// outlive it.
class RadarCWFileLogging : public CSVFileLogging
{
    Q_OBJECT
public:
    RadarCWFileLogging(const RadarDeviceCWConfig& config, const DeviceInfo& deviceInfo, SharedFrame frame,
                       QObject* parent = nullptr);
    ~RadarCWFileLogging() override;

    // What "# Version:" and "# Date & time:" say; by default the
    // application's version and the time of writing.
    void setVersionText(const QString& version) { m_version = version; }
    void setTimestamp(const QDateTime& timestamp) { m_timestamp = timestamp; }

    // Opens the file `configuration` names, writes everything and closes it.
    // False when the file could not be opened or a write failed;
    // errorDetected() has then said why, and the file ends where the
    // failure happened.
    bool write(const LoggingConfiguration& configuration);

    // The rows of the file, for the writer and for tests: the header lines,
    // the column row, the data rows.
    QStringList headerLines() const;
    QStringList columnNames() const;
    CSVLoggerBuffer dataRows() const;

private:
    const RadarDeviceCWConfig& m_config;
    const DeviceInfo& m_deviceInfo;
    SharedFrame m_frame;
    QString m_version;
    QDateTime m_timestamp;
};
