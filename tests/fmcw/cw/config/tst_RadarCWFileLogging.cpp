#include "FakeCWConfigurator.h"

#include "core/LoggingConfiguration.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/cw/config/RadarCWFileLogging.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <vector>

namespace {

// The defaults of FakeCWConfigurator on a KMR7C board, duty cycle 30 %.
const char kExpectedHeader[] = R"(# Tavrin Workbench Radar
# Version: 2.4.1
# Date & time: 2024-03-05 14:07:09
# Device Name: KMR7C
# Base Board: Radar baseboard firmware for KMR7C
# Min RF Freq: 57000000000 [Hz]
# Max RF Freq: 64000000000 [Hz]
# TX Antennas: 1
# RX Antennas: 3
## Tx Parameters
# Rf Center Frequency [GHz]: 60.5
# DAC: 90
# Tx Mask: 1
# Duty Cycle [%]: 30
## Test Signal Generator
# Mode: Baseband Test
# Frequency [Hz]: 100000
## Rx Parameters
# Rx Mask: 5
# Num Samples: 128
# Sampling Rate [Hz]: 1000000
## Baseband Parameters
# Gain of the High Pass Filter: +30 [dB]
# Cutoff frequency of the High Pass Filter: 80 [kHz]
# Gain of the Bandpass amplifier: +25 [dB]
# Cutoff frequency of the of the Anti-Alias Filter: 1000 [kHz]
## ADC Parameters
# Sampling time: 100 [ns]
# Num of Conversions: 3 conversions
# Oversampling Factor: 2x
# Double MSB time: TRUE
Tx1Rx1,Tx1Rx3
)";

// A CW frame as the SDK hands it out: one 1 x samples matrix per receiver;
// receiver r holds r + sample / 1000 at every sample.
SharedFrame makeFrame(int receivers, quint32 samples)
{
    struct Storage {
        vrn_Frame_R_t frame {};
        std::vector<vrn_Matrix_R_s> matrices;
        std::vector<vrn_Matrix_R_s*> pointers;
        std::vector<std::vector<float>> data;
    };
    auto storage = std::make_shared<Storage>();
    storage->matrices.resize(size_t(receivers));
    storage->data.resize(size_t(receivers));
    for (int r = 0; r < receivers; ++r) {
        for (quint32 s = 0; s < samples; ++s)
            storage->data[size_t(r)].push_back(float(r) + float(s) / 1000.0f);
        storage->matrices[size_t(r)] = { 1, samples, samples, storage->data[size_t(r)].data() };
        storage->pointers.push_back(&storage->matrices[size_t(r)]);
    }
    storage->frame = { quint32(receivers), storage->pointers.data() };
    return SharedFrame(storage, &storage->frame);
}

// Writes to a device that is always full, as a full disk would behave.
class FullDiskLogging : public RadarCWFileLogging
{
public:
    using RadarCWFileLogging::RadarCWFileLogging;

protected:
    std::unique_ptr<QFile> openFile(const QString&) override
    {
        auto file = std::make_unique<QFile>(QStringLiteral("/dev/full"));
        return file->open(QIODevice::WriteOnly) ? std::move(file) : nullptr;
    }
};

QStringList readLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"));
}

}

class tst_RadarCWFileLogging : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        describeBoard(m_info, QStringLiteral("KMR7C"));
        m_config = std::make_unique<RadarDeviceCWConfig>(&m_info);
        m_config->setFromSdkConfig(m_board.defaults);
        m_config->params()->setDutyCycle(30);
        m_target.setLoggingPath(m_dir.path());
        m_target.setIsCustomFileName(true);
        m_target.setLoggingFileName(QStringLiteral("frame"));
    }

    void headerDescribesConfigurationLineByLine()
    {
        auto logging = makeLogging(makeFrame(2, 4));
        QVERIFY(logging->write(m_target));

        const QStringList expected = QString::fromUtf8(kExpectedHeader).split(QLatin1Char('\n'));
        QCOMPARE(readLines(m_dir.filePath(QStringLiteral("frame.csv"))).mid(0, expected.size() - 1), expected.mid(0, expected.size() - 1));
    }

    void chipWithoutAntiAliasFilterSaysNotAvailable()
    {
        m_info.setDeviceName(QStringLiteral("KMR7A"));
        const QStringList header = makeLogging(SharedFrame())->headerLines();
        QCOMPARE(header.filter(QStringLiteral("Anti-Alias")),
                 QStringList { QStringLiteral("# Cutoff frequency of the of the Anti-Alias Filter: N/A") });
    }

    void twoReceiversGiveOneLinePerSampleWithTwoColumns()
    {
        QCOMPARE(m_config->rxAntennas()->activeAntennas(), QVector<int>({ 1, 3 }));
        auto logging = makeLogging(makeFrame(2, 128));
        QSignalSpy finished(logging.get(), &CSVFileLogging::finishedLogging);
        QVERIFY(logging->write(m_target));
        QCOMPARE(finished.count(), 1);

        QStringList lines = readLines(m_dir.filePath(QStringLiteral("frame.csv")));
        QCOMPARE(lines.takeLast(), QString()); // the last line ends like every other
        const int columnRow = lines.indexOf(QStringLiteral("Tx1Rx1,Tx1Rx3"));
        QVERIFY(columnRow > 0);
        const QStringList data = lines.mid(columnRow + 1);
        QCOMPARE(data.size(), 128);
        QCOMPARE(data.first(), QStringLiteral("0.000000,1.000000"));
        QCOMPARE(data.at(5), QStringLiteral("0.005000,1.005000"));
        QCOMPARE(data.last(), QStringLiteral("0.127000,1.127000"));
        QCOMPARE(data.filter(QRegularExpression("^[^,]+,[^,]+$")).size(), 128);
    }

    void fullDiskEndsTheFileAndKeepsEarlierOnes()
    {
        QVERIFY(makeLogging(makeFrame(2, 128))->write(m_target));
        const QString earlier = m_dir.filePath(QStringLiteral("frame.csv"));
        const QStringList earlierLines = readLines(earlier);

        m_target.setLoggingFileName(QStringLiteral("second"));
        FullDiskLogging full(*m_config, m_info, makeFrame(2, 128));
        QSignalSpy errors(&full, &CSVFileLogging::errorDetected);
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^Cannot write header data to csv file!")));
        QVERIFY(!full.write(m_target));
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("Cannot write header data to csv file!"));
        QVERIFY(!full.isLogging());
        QCOMPARE(readLines(earlier), earlierLines);
    }

private:
    std::unique_ptr<RadarCWFileLogging> makeLogging(SharedFrame frame);

    QTemporaryDir m_dir;
    FakeCWConfigurator m_board;
    DeviceInfo m_info;
    std::unique_ptr<RadarDeviceCWConfig> m_config;
    LoggingConfiguration m_target;
};

std::unique_ptr<RadarCWFileLogging> tst_RadarCWFileLogging::makeLogging(SharedFrame frame)
{
    auto logging = std::make_unique<RadarCWFileLogging>(*m_config, m_info, std::move(frame));
    logging->setVersionText(QStringLiteral("2.4.1"));
    logging->setTimestamp(QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9)));
    return logging;
}

QTEST_GUILESS_MAIN(tst_RadarCWFileLogging)
#include "tst_RadarCWFileLogging.moc"
