// Recording through the whole plug-in, loaded by the reference host on the
// simulated SDK and driven through the "radarView" object the pages use:
// what the user and a waiting host see when a recording is refused, when the
// disk fills up and while its text copy is written.

#include "FileSizeLimit.h"
#include "ModuleHost.h"
#include "SimulatedHost.h"
#include "TestFrames.h"

#include "host/Constants.h"
#include "host/CoreUserSettings.h"
#include "host/IDevice.h"
#include "host/RecordingUserSettings.h"
#include "recording/RadarBinFile.h"
#include "recording/RecordingFiles.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const char* const kBoard = "1f3c-0001";

} // namespace

class TestRecordingSession : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        qRegisterMetaType<Constants::UserMessageType>();
    }

    void init()
    {
        m_parsingWhenRecordingEnded.clear();
        m_messagesWhenRecordingEnded = -1;
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_sim = std::make_unique<SimulatedHost>();
        const QString error = m_sim->start(SimulatedHost::oneBoardBench(QLatin1String(kBoard), QStringLiteral("KMR7A"),
                                                                        QStringLiteral("unpaced")),
                                           m_dir->path());
        QVERIFY2(error.isEmpty(), qPrintable(error));
        const QString connected = m_sim->connectFirstBoard();
        QVERIFY2(connected.isEmpty(), qPrintable(connected));
        m_device = m_sim->device();
        settings().setRecordingPath(m_dir->path());
        settings().setTimeLimitOnRecording(false);
    }

    void cleanup()
    {
        m_device.reset();
        m_sim.reset();
        m_dir.reset();
    }

    void existingFilesRefuseTheRecording_data()
    {
        QTest::addColumn<QStringList>("suffixes");
        QTest::newRow("an earlier binary file") << QStringList { ".raw.bin" };
        QTest::newRow("a stale text copy") << QStringList { ".raw.txt" };
        QTest::newRow("configuration and frames") << QStringList { ".json", ".raw.bin" };
    }

    void existingFilesRefuseTheRecording()
    {
        QFETCH(QStringList, suffixes);
        const QString rec = base(QStringLiteral("rec"));
        QStringList existing;
        for (const QString& suffix : suffixes) {
            QFile file(rec + suffix);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("earlier");
            existing.append(rec + suffix);
        }
        settings().setFileName(QStringLiteral("rec"));
        settings().setNumOfFrames(5);
        QSignalSpy messages(view(), SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QSignalSpy active(view(), SIGNAL(isRecordingActiveChanged(bool)));
        QVERIFY(QMetaObject::invokeMethod(view(), "startRecording"));

        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.at(0).at(0).value<Constants::UserMessageType>(), Constants::Error);
        QCOMPARE(messages.at(0).at(1).toString(),
                 QStringLiteral("Recording files already exist: ") + existing.join(QStringLiteral(", ")));
        QVERIFY(!messages.at(0).at(2).toString().isEmpty());
        QCOMPARE(active.count(), 0);
        QVERIFY(!view()->property("isRecordingActive").toBool());
        QCOMPARE(RecordingFiles::existingSiblings(rec), existing);
        for (const QString& path : existing)
            QCOMPARE(TestFrames::readAll(path), QByteArray("earlier"));
    }

    void textCopyRunsFromTheEndOfTheRecordingUntilItIsWhole()
    {
        constexpr int kFrames = 40;
        const QString rec = base(QStringLiteral("text"));
        settings().setFileName(QStringLiteral("text"));
        settings().setNumOfFrames(kFrames);
        settings().setTxtFile(true);
        // A host that waits for the text copy looks when the recording ends.
        QObject* radarView = view();
        QVERIFY(connect(radarView, SIGNAL(isRecordingActiveChanged(bool)), this, SLOT(noteRecordingActive(bool))));
        QSignalSpy parsingChanges(radarView, SIGNAL(isParsingActiveChanged()));
        QSignalSpy messages(radarView, SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QVERIFY(QMetaObject::invokeMethod(radarView, "startRecording"));

        QTRY_COMPARE_WITH_TIMEOUT(m_parsingWhenRecordingEnded.size(), 1, 20000);
        QCOMPARE(m_parsingWhenRecordingEnded.first(), true);
        QTRY_VERIFY_WITH_TIMEOUT(!radarView->property("isParsingActive").toBool(), 30000);
        QCOMPARE(parsingChanges.count(), 2);
        // Nothing went wrong: at most the board's newer-firmware notice.
        for (const QList<QVariant>& message : messages)
            QCOMPARE(message.at(1).toString(), QStringLiteral("A newer firmware image is available"));
        // Once the conversion is over the copy holds every frame of the recording.
        qint64 frames = -1;
        const QString problem = TestFrames::layoutProblem(RecordingFiles::binPath(rec), frames, -1);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QCOMPARE(frames, qint64(kFrames));
        const QByteArray text = TestFrames::readAll(RecordingFiles::txtPath(rec));
        QCOMPARE(text.count("# Frame_Number = "), kFrames);
    }

    void fullDiskEndsTheRecordingWhileAcquisitionGoesOn()
    {
        QObject* radarView = view();
        QSignalSpy active(radarView, SIGNAL(isRecordingActiveChanged(bool)));
        // A one-frame recording tells the size of a record.
        settings().setFileName(QStringLiteral("probe"));
        settings().setNumOfFrames(1);
        QVERIFY(QMetaObject::invokeMethod(radarView, "startRecording"));
        QTRY_COMPARE_WITH_TIMEOUT(active.count(), 2, 20000);
        active.clear();
        RadarBinFile reader;
        RadarRecordingHeader recorded;
        QVERIFY(reader.open(RecordingFiles::binPath(base(QStringLiteral("probe"))), QIODevice::ReadOnly)
                && reader.readHeader(recorded));
        reader.close();
        QVERIFY(recorded.samplesPerFrame > 0);
        const qint64 record = RadarBinFile::recordSize(recorded.samplesPerFrame);

        const QString bin = RecordingFiles::binPath(base(QStringLiteral("full")));
        settings().setFileName(QStringLiteral("full"));
        settings().setNumOfFrames(0); // until stopped
        QSignalSpy messages(radarView, SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QSignalSpy numbers(radarView, SIGNAL(frameNumberChanged(int)));
        m_messages = &messages;
        QVERIFY(connect(radarView, SIGNAL(isRecordingActiveChanged(bool)), this, SLOT(noteRecordingActive(bool))));
        {
            // The disk fills up in the middle of the third frame.
            FileSizeLimit limit(rlim_t(88 + 2 * record + record / 3));
            QVERIFY(limit.isValid());
            QVERIFY(QMetaObject::invokeMethod(radarView, "startRecording"));
            QCOMPARE(active.count(), 1);
            QTRY_COMPARE_WITH_TIMEOUT(active.count(), 2, 20000);
        }
        m_messages = nullptr;
        QCOMPARE(active.at(1).at(0).toBool(), false);
        QVERIFY(!radarView->property("isRecordingActive").toBool());
        // One message, and it came before the recording ended.
        QCOMPARE(m_messagesWhenRecordingEnded, 1);
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.at(0).at(0).value<Constants::UserMessageType>(), Constants::Error);
        QCOMPARE(messages.at(0).at(1).toString(), QStringLiteral("Cannot write to recording file!"));
        const QString details = messages.at(0).at(2).toString();
        QVERIFY2(details.contains(QStringLiteral("2 frames")) && details.contains(bin), qPrintable(details));

        // Acquisition goes on without the recording.
        const int counted = numbers.count();
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() > counted + 50, 20000);
        QCOMPARE(messages.count(), 1);

        // The file ends at the last whole frame (its layout is checked where
        // the recording is tested on its own).
        QCOMPARE(QFileInfo(bin).size(), 88 + 2 * record);
    }

public slots:
    void noteRecordingActive(bool active)
    {
        if (active)
            return;
        m_parsingWhenRecordingEnded.append(view()->property("isParsingActive").toBool());
        m_messagesWhenRecordingEnded = m_messages ? m_messages->count() : -1;
    }

private:
    QObject* view() const
    {
        return m_sim->view();
    }

    RecordingUserSettings& settings()
    {
        return *m_sim->core().recordingUserSettings();
    }

    QString base(const QString& name) const { return m_dir->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<SimulatedHost> m_sim;
    std::shared_ptr<IDevice> m_device;
    // What the host could see when the recording ended.
    QList<bool> m_parsingWhenRecordingEnded;
    QSignalSpy* m_messages = nullptr;
    int m_messagesWhenRecordingEnded = -1;
};

QTEST_MAIN(TestRecordingSession)
#include "tst_RecordingSession.moc"
