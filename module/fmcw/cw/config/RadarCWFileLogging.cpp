#include "fmcw/cw/config/RadarCWFileLogging.h"

#include "core/CSVFile.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/cw/config/RadarCWChips.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

#include <QCoreApplication>
#include <QDebug>

namespace {

const QString kHeaderFailed = QStringLiteral("Cannot write header data to csv file!");

// Up to `decimals` places, without trailing zeros ("60.5", "100000").
QString plainNumber(double value, int decimals)
{
    QString text = QString::number(value, 'f', decimals);
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    return text;
}

}

RadarCWFileLogging::RadarCWFileLogging(const RadarDeviceCWConfig& config, const DeviceInfo& deviceInfo,
                                       SharedFrame frame, QObject* parent)
    : CSVFileLogging(parent)
    , m_config(config)
    , m_deviceInfo(deviceInfo)
    , m_frame(std::move(frame))
    , m_version(QCoreApplication::applicationVersion())
{
}

RadarCWFileLogging::~RadarCWFileLogging() = default;

QStringList RadarCWFileLogging::headerLines() const
{
    const RadarCWParams& params = *m_config.params();
    const QDateTime timestamp = m_timestamp.isValid() ? m_timestamp : QDateTime::currentDateTime();
    const QString version = m_version.isEmpty() ? QStringLiteral("unknown") : m_version;
    const QString antiAlias = RadarCWChips::hasAntiAliasFilter(m_deviceInfo.radarType())
        ? QStringLiteral("%1 [kHz]").arg(params.basebandAafCutoffFreq())
        : QStringLiteral("N/A");

    return {
        QStringLiteral("# Tavrin Workbench Radar"),
        QStringLiteral("# Version: %1").arg(version),
        QStringLiteral("# Date & time: %1").arg(timestamp.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))),
        QStringLiteral("# Device Name: %1").arg(m_deviceInfo.deviceName()),
        QStringLiteral("# Base Board: %1").arg(m_deviceInfo.deviceFirmwareName()),
        QStringLiteral("# Min RF Freq: %1 [Hz]").arg(m_deviceInfo.minRfFrequencyHz()),
        QStringLiteral("# Max RF Freq: %1 [Hz]").arg(m_deviceInfo.maxRfFrequencyHz()),
        QStringLiteral("# TX Antennas: %1").arg(m_deviceInfo.numTxAntennas()),
        QStringLiteral("# RX Antennas: %1").arg(m_deviceInfo.numRxAntennas()),
        QStringLiteral("## Tx Parameters"),
        // Three decimals of a GHz: the carrier is set in MHz steps.
        QStringLiteral("# Rf Center Frequency [GHz]: %1").arg(plainNumber(double(params.rfCenterFrequency()) / 1e9, 3)),
        QStringLiteral("# DAC: %1").arg(params.dac()),
        QStringLiteral("# Tx Mask: %1").arg(m_config.txAntennas()->mask()),
        QStringLiteral("# Duty Cycle [%]: %1").arg(params.dutyCycle()),
        QStringLiteral("## Test Signal Generator"),
        QStringLiteral("# Mode: %1").arg(params.testSignalMode()),
        QStringLiteral("# Frequency [Hz]: %1").arg(plainNumber(double(params.testSignalFrequency()), 3)),
        QStringLiteral("## Rx Parameters"),
        QStringLiteral("# Rx Mask: %1").arg(m_config.rxAntennas()->mask()),
        QStringLiteral("# Num Samples: %1").arg(params.rxNumSamples()),
        QStringLiteral("# Sampling Rate [Hz]: %1").arg(params.samplingRate()),
        QStringLiteral("## Baseband Parameters"),
        QStringLiteral("# Gain of the High Pass Filter: +%1 [dB]").arg(params.basebandGainHighPass()),
        QStringLiteral("# Cutoff frequency of the High Pass Filter: %1 [kHz]").arg(params.basebandHpCutoffFreq()),
        QStringLiteral("# Gain of the Bandpass amplifier: +%1 [dB]").arg(params.basebandGainAmplifier()),
        QStringLiteral("# Cutoff frequency of the of the Anti-Alias Filter: ") + antiAlias,
        QStringLiteral("## ADC Parameters"),
        QStringLiteral("# Sampling time: %1 [ns]").arg(params.adcSamplingTime()),
        QStringLiteral("# Num of Conversions: %1").arg(params.adcNumOfConversions()),
        QStringLiteral("# Oversampling Factor: %1").arg(params.adcOversamplingFactor()),
        QStringLiteral("# Double MSB time: %1").arg(params.adcDoubleMSB() ? QStringLiteral("TRUE")
                                                                          : QStringLiteral("FALSE")),
    };
}

QStringList RadarCWFileLogging::columnNames() const
{
    QString txPrefix;
    for (int antenna : m_config.txAntennas()->activeAntennas())
        txPrefix += QStringLiteral("Tx%1").arg(antenna);
    QStringList names;
    for (int antenna : m_config.rxAntennas()->activeAntennas())
        names.append(QStringLiteral("%1Rx%2").arg(txPrefix).arg(antenna));
    return names;
}

CSVLoggerBuffer RadarCWFileLogging::dataRows() const
{
    CSVLoggerBuffer rows;
    if (!m_frame || m_frame->num_rx == 0 || !m_frame->rx_data)
        return rows;
    // The frame holds one channel per enabled receiver, in antenna order.
    const int columns = m_config.rxAntennas()->activeCount();
    const int channels = qMin(int(m_frame->num_rx), columns);
    if (channels != columns)
        qWarning() << "The CW frame holds" << m_frame->num_rx << "receive channels for" << columns
                   << "enabled receivers; the missing columns stay empty";
    const vrn_Matrix_R_s* first = m_frame->rx_data[0];
    if (!first)
        return rows;
    rows.reserve(int(first->rows * first->cols));
    for (quint32 row = 0; row < first->rows; ++row) {
        for (quint32 col = 0; col < first->cols; ++col) {
            QStringList line;
            line.reserve(columns);
            for (int channel = 0; channel < columns; ++channel) {
                const vrn_Matrix_R_s* matrix = channel < channels ? m_frame->rx_data[channel] : nullptr;
                if (matrix && row < matrix->rows && col < matrix->cols)
                    line.append(QString::number(double(matrix->data[size_t(row) * matrix->stride + col]), 'f', 6));
                else
                    line.append(QString());
            }
            rows.append(line);
        }
    }
    return rows;
}

bool RadarCWFileLogging::write(const LoggingConfiguration& configuration)
{
    if (!startLogging(configuration))
        return false;

    CSVLoggerBuffer header;
    for (const QString& line : headerLines())
        header.append(QStringList { line });
    if (!writer()->writeRows(header)) {
        // A frame without its description is no test record.
        qWarning().noquote() << kHeaderFailed << filePath();
        emit errorDetected(kHeaderFailed, QString());
        stopLogging();
        return false;
    }

    bool failed = false;
    const QMetaObject::Connection watch
        = connect(this, &CSVFileLogging::errorDetected, this, [&failed] { failed = true; });
    CSVLoggerBuffer rows;
    rows.append(columnNames());
    rows += dataRows();
    writeRows(rows);
    disconnect(watch);
    if (failed) {
        stopLogging();
        return false;
    }
    finishLogging();
    return true;
}
