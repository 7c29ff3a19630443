// A pulsed-Doppler recording made from the simulated board through the
// recording session every mode uses: what the files hold, what --inspect
// and --convert make of them, the playback handing the frames back one for
// one at the recorded pace, and FMCW and ZP7 recordings kept apart.

#include "SimulatorSdk.h"

#include "RecordingCommands.h"
#include "fmcw/standard/RadarPlayback.h"
#include "host/RecordingUserSettings.h"
#include "recording/RadarBinFile.h"
#include "recording/RadarRecordingSession.h"
#include "recording/RecordingFiles.h"
#include "zp7/ZP7SDevice.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SPulseConfigParams.h"
#include "zp7/recording/ZP7SPlayback.h"
#include "zp7/recording/ZP7SRecordFrame.h"
#include "zp7/recording/ZP7SRecordingSource.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <future>

namespace {

constexpr int kFrames = 6;
constexpr int kSamples = 32;
constexpr float kFrameRateHz = 20.0f;

// The I/Q values of a frame's first channel in file order.
std::vector<float> interleaved(const vrn_Corvix_Frame_C_t& frame)
{
    std::vector<float> out;
    const vrn_Matrix_C_s& m = *frame.channel_data[0];
    for (uint32_t c = 0; c < m.cols; ++c) {
        out.push_back(m.data[c].re);
        out.push_back(m.data[c].im);
    }
    return out;
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

// A recording of `header` with one frame of zeros, beside a configuration.
bool writeRecording(const QString& base, const RadarRecordingHeader& header)
{
    RadarBinFile file;
    std::vector<RadarFrameRecord> rows { { 0, std::vector<float>(header.samplesPerFrame, 0.0f) } };
    return writeFile(RecordingFiles::jsonPath(base), "{}")
        && file.open(RecordingFiles::binPath(base), QIODevice::WriteOnly | QIODevice::Truncate)
        && file.writeHeader(header) && file.writeFrames(1, header.samplesPerFrame, rows) && file.close();
}

} // namespace

class TestZP7SRecording : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY2(m_sdk.vrn && m_sdk.sim, qPrintable(m_sdk.loadError()));
        QVERIFY(m_dir.isValid());
    }

    void recordedFramesAreInspectedConvertedAndPlayedBackOneForOne()
    {
        // An approaching target on the second channel of a fast frame.
        QVERIFY(!m_sdk.sim->load_bench_json(
            oneBoardBench("zp7-rec", QStringLiteral("ZP7"),
                          QStringLiteral(R"({ "range_m": 3.0, "speed_m_s": -1.5, "rcs_m2": 2.0 })"), 0.001)
                .constData()));
        ZP7SDevice device(m_sdk.vrn);
        QVERIFY(device.connectDevice(QStringLiteral("zp7-rec"), VRN_SHIELD_ZP7_768));
        ZP7SConfig config(&device);
        QVERIFY(config.loadFromDevice());
        config.guiConfig()->frameParams()->setNumOfSamples(kSamples);
        config.guiConfig()->frameParams()->setFrameRepetitionRate(kFrameRateHz);
        config.guiConfig()->pulseConfigParams()->selectChannel(1);
        QVERIFY(config.applyGuiConfig());

        std::vector<ZP7SFrame> frames;
        for (int attempt = 0; attempt < 100 && frames.size() < size_t(kFrames); ++attempt) {
            const ZP7SFrameResult result = device.getNextFrame(*config.deviceConfig());
            QVERIFY(result.success);
            if (result.frame)
                frames.push_back(result.frame);
        }
        QCOMPARE(int(frames.size()), kFrames);

        const QString base = m_dir.filePath(QStringLiteral("zp7"));
        RecordingUserSettings settings;
        settings.setRecordingPath(m_dir.path());
        settings.setFileName(QStringLiteral("zp7"));
        settings.setTimeLimitOnRecording(false);
        settings.setTxtFile(true);
        RadarRecordingSession session;
        session.setRecordingSettings(&settings);
        QSignalSpy recording(&session, &RadarRecordingSession::isRecordingActiveChanged);
        QSignalSpy errors(&session, &RadarRecordingSession::errorDetected);
        QVERIFY(session.start(std::make_shared<ZP7SRecordingSource>(config), kFrames));
        for (int i = 0; i < kFrames; ++i)
            session.record(ZP7SRecordFrame::wrap(frames[size_t(i)]), 10 + i);
        QCOMPARE(recording.count(), 2); // the limit ended it
        QTRY_VERIFY_WITH_TIMEOUT(!session.isParsingActive(), 10000);
        QCOMPARE(errors.count(), 0);

        // --inspect: Doppler I/Q of the second channel, never FMCW chirps.
        QString outText, errText;
        QTextStream out(&outText), err(&errText);
        QCOMPARE(inspectRecording(base, out, err), 0);
        const QStringList lines = outText.split('\n');
        for (const char* line :
             { "Modulation_Type_Enum = 0", "Data_Format_Enum = 2", "Chirps_per_Frame = 1", "Samples_per_Chirp = 32",
               "Samples_per_Frame = 64", "Num_Rx_Antennas = 1", "Mask_Rx_Antennas = 2", "Mask_Tx_Antennas = 2",
               "Lower_RF_Frequency_kHz = 24125000.000000", "Sampling_Frequency_kHz = 2.000000",
               "Pulse_Repetition_Time_sec = 0.000500", "Frame_Period_sec = 0.050000",
               "Layout = Doppler, complex interleaved I/Q, one chirp per frame", "Channels = 1", "Frames = 6" })
            QVERIFY2(lines.contains(QLatin1String(line)), line);

        // The text copy made when the recording ended holds every I/Q value.
        const QList<QByteArray> text = [&] {
            QFile file(RecordingFiles::txtPath(base));
            return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
        }();
        int at = text.indexOf("# Frame_Number = 10\r");
        QVERIFY(at > 0);
        for (const ZP7SFrame& frame : frames) {
            for (float value : interleaved(*frame))
                QVERIFY(std::abs(text.value(++at).trimmed().toDouble() - double(value)) <= 5e-7);
            ++at; // the next frame's number
        }
        // --convert writes the same text again.
        QVERIFY(QFile::remove(RecordingFiles::txtPath(base)));
        QCOMPARE(convertRecording(base, out, err), 0);
        QVERIFY(outText.contains(QStringLiteral("Layout = Doppler, complex interleaved I/Q")));
        QCOMPARE(QFile(RecordingFiles::txtPath(base)).size(), qint64(text.join('\n').size()));
        QVERIFY(device.disconnectDevice());

        // Played back without the board: the recorded configuration runs,
        // and each frame comes back bit for bit at the recorded pace.
        ZP7SConfig replayed(nullptr);
        ZP7SPlayback playback(m_sdk.vrn, &replayed, nullptr);
        QSignalSpy finished(&playback, &ZP7SPlayback::finished);
        QVERIFY(playback.accepts(base));
        QVERIFY(playback.open(base));
        QCOMPARE(playback.totalFramesNumber(), quint32(kFrames));
        QCOMPARE(replayed.deviceConfig()->frameParams()->numOfSamples(), quint16(kSamples));
        QCOMPARE(replayed.deviceConfig()->channel(), 1);
        QVERIFY(replayed.isPlaybackActive());
        playback.play();
        QElapsedTimer clock;
        clock.start();
        for (const ZP7SFrame& original : frames) {
            const ZP7SFrameResult result = playback.getNextFrame(*replayed.deviceConfig());
            QVERIFY(result.success && result.frame);
            QCOMPARE(result.frame->num_channels, 1u);
            QVERIFY(interleaved(*result.frame) == interleaved(*original));
        }
        QVERIFY(clock.elapsed() >= qint64((kFrames - 1) * 1000 / kFrameRateHz * 0.9));
        QVERIFY(!playback.getNextFrame(*replayed.deviceConfig()).success);
        QCOMPARE(finished.count(), 1);

        // Paused, a fetch waits until a step lets exactly one frame out.
        QVERIFY(playback.open(base));
        playback.play();
        playback.pause();
        auto fetch = std::async(std::launch::async, [&] { return playback.getNextFrame(*replayed.deviceConfig()); });
        QVERIFY(fetch.wait_for(std::chrono::milliseconds(300)) == std::future_status::timeout);
        playback.stepFrame();
        QVERIFY(fetch.wait_for(std::chrono::seconds(5)) == std::future_status::ready);
        const ZP7SFrameResult stepped = fetch.get();
        QVERIFY(stepped.success && interleaved(*stepped.frame) == interleaved(*frames.front()));
        playback.close();
        QVERIFY(!playback.getNextFrame(*replayed.deviceConfig()).success);
    }

    void fmcwAndDopplerRecordingsAreNeverConfused_data()
    {
        QTest::addColumn<bool>("doppler");
        QTest::newRow("FMCW recording") << false;
        QTest::newRow("ZP7 recording") << true;
    }

    void fmcwAndDopplerRecordingsAreNeverConfused()
    {
        QFETCH(bool, doppler);
        const QString base = m_dir.filePath(doppler ? QStringLiteral("kindD") : QStringLiteral("kindF"));
        QVERIFY(writeRecording(base, doppler ? dopplerHeader() : fmcwHeader()));

        RadarPlayback fmcwPlayback(m_sdk.vrn, nullptr, nullptr);
        ZP7SConfig replayed(nullptr);
        ZP7SPlayback zp7Playback(m_sdk.vrn, &replayed, nullptr);
        QCOMPARE(fmcwPlayback.accepts(base), !doppler);
        QCOMPARE(zp7Playback.accepts(base), doppler);

        // The playback of the other kind refuses it and says what it holds.
        IPlayback& other = doppler ? static_cast<IPlayback&>(fmcwPlayback) : zp7Playback;
        QSignalSpy messages(&other, SIGNAL(enqueueUserMessage(QString, QString)));
        QVERIFY(!other.open(base));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.at(0).at(0).toString(), QStringLiteral("This file for playback is not supported"));
        QVERIFY2(messages.at(0).at(1).toString().contains(doppler ? QStringLiteral("pulsed-Doppler frames")
                                                                   : QStringLiteral("FMCW chirps")),
                 qPrintable(messages.at(0).at(1).toString()));
        QVERIFY(!replayed.isPlaybackActive());

        QString outText, errText;
        QTextStream out(&outText), err(&errText);
        QCOMPARE(inspectRecording(base, out, err), 0);
        QVERIFY(outText.contains(doppler ? QStringLiteral("Layout = Doppler") : QStringLiteral("Layout = FMCW")));
    }

private:
    static RadarRecordingHeader fmcwHeader()
    {
        RadarRecordingHeader h;
        h.maskTxAntennas = h.maskRxAntennas = 1;
        h.chirpsPerFrame = 2;
        h.samplesPerChirp = 8;
        h.samplesPerFrame = 16;
        h.framePeriodSec = 0.05f;
        return h;
    }

    static RadarRecordingHeader dopplerHeader()
    {
        RadarRecordingHeader h = fmcwHeader();
        h.modulationTypeEnum = RadarRecordingHeader::kModulationDoppler;
        h.dataFormatEnum = RadarRecordingHeader::kDataComplexInterleaved;
        h.chirpsPerFrame = 1;
        h.samplesPerChirp = kSamples;
        h.samplesPerFrame = 2 * kSamples;
        return h;
    }

    SimulatorSdk m_sdk;
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestZP7SRecording)
#include "tst_ZP7SRecording.moc"
