// What the session trusts about a finished recording: the whole frames of
// the binary file and the frames of its text copy, counted from disk.
#include "RecordingCheck.h"

#include "recording/RadarBinFile.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr quint32 kSamples = 4;

bool writeBinary(const QString& path, int frames)
{
    RadarRecordingHeader header;
    header.chirpsPerFrame = 1;
    header.samplesPerChirp = kSamples;
    header.samplesPerFrame = kSamples;
    RadarBinFile file;
    if (!file.open(path, QIODevice::WriteOnly) || !file.writeHeader(header))
        return false;
    std::vector<RadarFrameRecord> rows(static_cast<size_t>(frames));
    for (int i = 0; i < frames; ++i)
        rows[size_t(i)] = RadarFrameRecord { i, std::vector<float>(kSamples, 0.0f) };
    return file.writeFrames(quint32(frames), kSamples, rows) && file.close();
}

// A text copy as the converter lays it out; `keyAt` puts the line end in
// front of the second frame's key at that byte, when not negative.
QByteArray textCopy(int frames, qint64 keyAt)
{
    QByteArray text = "\r\nVNRT\r\n# Version = 1.000000\r\n\r\n";
    for (int i = 0; i < frames; ++i) {
        if (i == 1 && keyAt >= 0) {
            text.chop(2);
            text += QByteArray(int(keyAt - 1 - text.size()), ' ') + "\r\n";
        }
        text += "# Frame_Number = " + QByteArray::number(i) + "\r\n";
        for (quint32 s = 0; s < kSamples; ++s)
            text += "0.000000\r\n";
    }
    return text;
}

} // namespace

class TestRecordingCheck : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private slots:
    void textCopyMustHoldEveryWholeFrame_data()
    {
        QTest::addColumn<int>("textFrames");
        QTest::addColumn<qint64>("keyAt");
        QTest::addColumn<QString>("message");
        QTest::newRow("complete") << 3 << qint64(-1) << QString();
        QTest::newRow("a frame short") << 2 << qint64(-1) << "is incomplete: it holds 2 of the 3 frames of";
        QTest::newRow("no text copy") << -1 << qint64(-1) << "cannot be read";
        // The text is read in blocks of 1 MiB; a key cut in two by a block
        // end still counts once.
        QTest::newRow("key across a block end") << 3 << qint64((1 << 20) - 5) << QString();
    }

    void textCopyMustHoldEveryWholeFrame()
    {
        QFETCH(int, textFrames);
        QFETCH(qint64, keyAt);
        QFETCH(QString, message);
        const QString base = m_dir.filePath(QTest::currentDataTag());
        QVERIFY(writeBinary(base + ".raw.bin", 3));
        if (textFrames >= 0) {
            QFile text(base + ".raw.txt");
            QVERIFY(text.open(QIODevice::WriteOnly));
            const QByteArray content = textCopy(textFrames, keyAt);
            QVERIFY(keyAt < 0 || content.indexOf("\n# Frame_Number = 1") == keyAt);
            QCOMPARE(text.write(content), qint64(content.size()));
        }
        const QString result = RecordingCheck::checkTextCopy(base + ".raw.bin", base + ".raw.txt");
        if (message.isEmpty())
            QCOMPARE(result, QString());
        else
            QVERIFY2(result.contains(message), qPrintable(result));
    }
};

QTEST_GUILESS_MAIN(TestRecordingCheck)
#include "tst_RecordingCheck.moc"
