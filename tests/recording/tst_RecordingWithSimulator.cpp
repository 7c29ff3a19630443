// The recording chain fed by the simulated SDK at full speed: frames come
// from device_get_next_frame on an acquisition thread, shared with an SDK
// deleter, and must all reach the file unchanged.

#include "SignalLog.h"
#include "SimulatorSdk.h"

#include "recording/IRadarRecordingSource.h"
#include "recording/RadarBinFile.h"
#include "recording/RadarFileRecording.h"
#include "recording/RadarRecorder.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <cstring>

namespace {

// One board of the bench format, unpaced so frames come as fast as asked.
const char kBench[] = R"({ "boards": [ {
  "uuid": "rec-0001", "shield": 512, "chip": "KMR7A", "firmware": "2.5.1", "port": "ttyVRN0",
  "pacing": "unpaced", "noise": 0.002, "seed": 3,
  "scene": { "targets": [ { "kind": "reflector", "range_m": 3.0, "speed_m_s": 0.0, "angle_deg": 0.0, "rcs_m2": 5.0 } ] },
  "faults": [] } ] })";

class ConfigurationSource : public IRadarRecordingSource
{
public:
    RadarRecordingHeader header;
    RadarRecordingHeader recordingHeader() const override { return header; }
    QByteArray configurationJson() const override { return QByteArray(); }
};

std::vector<float> flatten(const vrn_Frame_R_t& frame)
{
    std::vector<float> out;
    for (uint32_t a = 0; a < frame.num_rx; ++a) {
        const vrn_Matrix_R_s* m = frame.rx_data[a];
        for (uint32_t r = 0; r < m->rows; ++r)
            out.insert(out.end(), m->data + size_t(r) * m->stride, m->data + size_t(r) * m->stride + m->cols);
    }
    return out;
}

}

class TestRecordingWithSimulator : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void everyFetchedFrameReachesTheFile();

private:
    SimulatorSdk m_sdk;
    vrn_Device_Handle m_device = nullptr;
};

void TestRecordingWithSimulator::initTestCase()
{
    QVERIFY2(m_sdk.vrn && m_sdk.sim, qPrintable(m_sdk.loadError()));
    const char* error = m_sdk.sim->load_bench_json(kBench);
    QVERIFY2(!error, error);
    QCOMPARE(m_sdk.vrn->device_create_by_uuid("rec-0001", &m_device), VRN_STATUS_OK);
}

void TestRecordingWithSimulator::cleanupTestCase()
{
    if (m_device)
        m_sdk.vrn->device_destroy(m_device);
}

void TestRecordingWithSimulator::everyFetchedFrameReachesTheFile()
{
    constexpr int kFrames = 400;
    vrn_Device_Config_t config {};
    QVERIFY(!m_sdk.vrn->device_get_config(m_device, &config));
    uint32_t numTx = 0, numRx = 0;
    QVERIFY(!m_sdk.vrn->device_get_num_tx_antennas(m_device, &numTx));
    QVERIFY(!m_sdk.vrn->device_get_num_rx_antennas(m_device, &numRx));
    float chirpTime = 0;
    QVERIFY(!m_sdk.vrn->device_get_chirp_time(m_device, &config, &chirpTime));

    ConfigurationSource source;
    source.header.numTxAntennas = numTx & 0xff;
    source.header.numRxAntennas = numRx & 0xff;
    source.header.maskTxAntennas = config.tx_mask;
    source.header.maskRxAntennas = config.rx_mask;
    source.header.lowerRfFrequencyKHz = float(config.lower_frequency_Hz / 1000.0);
    source.header.upperRfFrequencyKHz = float(config.upper_frequency_Hz / 1000.0);
    source.header.samplingFrequencyKHz = float(config.sample_rate_Hz / 1000.0);
    source.header.chirpsPerFrame = config.num_chirps_per_frame;
    source.header.samplesPerChirp = config.num_samples_per_chirp;
    source.header.chirpTimeSec = chirpTime;
    source.header.pulseRepetitionTimeSec = config.chirp_repetition_time_s;
    source.header.framePeriodSec = config.frame_repetition_time_s;
    const uint32_t channels = uint32_t(qPopulationCount(config.tx_mask) * qPopulationCount(config.rx_mask));

    QTemporaryDir dir;
    const QString bin = dir.filePath(QStringLiteral("sim.raw.bin"));
    RadarFileRecording recording(&source, dir.filePath(QStringLiteral("sim.json")), bin);
    RadarRecorder recorder(kFrames, 32);
    connect(&recorder, &RadarRecorder::bufferReady, &recording, &RadarFileRecording::collectRadarBuffer,
            Qt::QueuedConnection);
    connect(&recorder, &RadarRecorder::finished, &recording, &RadarFileRecording::stop, Qt::QueuedConnection);
    QSignalSpy finished(&recording, &RadarFileRecording::finished);
    SignalLog errors(&recording, &RadarFileRecording::errorDetected);
    QVERIFY(recording.start());
    recorder.start();

    // The acquisition loop keeps every frame alive so that the file can be
    // compared with what the SDK delivered.
    std::vector<SharedFrame> delivered;
    int failedFetches = 0;
    const Vrn* vrn = m_sdk.vrn;
    std::unique_ptr<QThread> acquisition(QThread::create([&] {
        for (int i = 0; i < kFrames && failedFetches == 0; ++i) {
            vrn_Frame_R_t* raw = nullptr;
            if (vrn->frame_r_create(channels, config.num_chirps_per_frame, config.num_samples_per_chirp, &raw)) {
                ++failedFetches;
                break;
            }
            SharedFrame frame(raw, [vrn](const vrn_Frame_R_t* f) { vrn->frame_r_destroy(const_cast<vrn_Frame_R_t*>(f)); });
            if (vrn->device_get_next_frame(m_device, raw, 1000) != VRN_STATUS_OK) {
                ++failedFetches;
                break;
            }
            delivered.push_back(frame);
            recorder.record(frame, i);
        }
    }));
    acquisition->start();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 120000);
    QVERIFY(acquisition->wait(60000));
    SignalLog::settle();
    QCOMPARE(failedFetches, 0);
    QCOMPARE(errors.count(), 0);

    const quint32 samplesPerFrame = channels * config.num_chirps_per_frame * config.num_samples_per_chirp;
    QCOMPARE(QFileInfo(bin).size(), 88 + kFrames * RadarBinFile::recordSize(samplesPerFrame));
    RadarBinFile reader;
    QVERIFY(reader.checkFile(bin));
    QVERIFY(reader.open(bin, QIODevice::ReadOnly));
    RadarRecordingHeader header;
    QVERIFY(reader.readHeader(header));
    QCOMPARE(header.samplesPerFrame, samplesPerFrame);
    std::vector<RadarFrameRecord> rows;
    QVERIFY(reader.readFrames(kFrames, samplesPerFrame, rows));
    for (int i = 0; i < kFrames; ++i) {
        QCOMPARE(rows[size_t(i)].frameNumber, i);
        const std::vector<float> expected = flatten(*delivered[size_t(i)]);
        QVERIFY(std::memcmp(rows[size_t(i)].samples.data(), expected.data(), expected.size() * sizeof(float)) == 0);
    }
}

QTEST_GUILESS_MAIN(TestRecordingWithSimulator)
#include "tst_RecordingWithSimulator.moc"
