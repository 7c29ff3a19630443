#pragma once

#include "recording/RadarBinFile.h"
#include "recording/RadarFrameRecord.h"
#include "recording/RadarTxtFile.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>
#include <vector>

class CyclicTaskWorker;

// Converts a binary recording into the text format on a thread of its own,
// a batch of frames per worker cycle so that stop() is answered quickly.
// Progress goes out as "convertingToTxt"(0..100), failures as
// "errorDetected"(message, details), and finished() closes every run, after
// any error of that run.
//
// The text is written beside the destination as "<txt>.part" and takes the
// destination's name only once it holds every whole frame of the binary
// file; a conversion that is stopped or fails says how far it got and
// leaves no text copy, so a partial one is never taken for the recording.
//
// start() and stop() belong to the owner's thread; the files and counters
// are touched only by the worker thread while it runs.
class RadarFileParsing : public QObject
{
    Q_OBJECT
public:
    explicit RadarFileParsing(QObject* parent = nullptr);
    ~RadarFileParsing() override;

    // False while a conversion is running.
    bool start(const QString& binPath, const QString& txtPath);
    // Ends the conversion: waits up to 3000 ms for the current batch, then
    // terminates the thread. An unfinished conversion is reported as such.
    void stop();
    // True from start() until the conversion has ended.
    bool isRunning() const;

signals:
    void convertingToTxt(int progress);
    void errorDetected(QString message, QString details);
    void finished();

private:
    bool step();
    bool openFiles();
    bool convertBatch();
    // The end of every run, on the worker or, when its thread had to be
    // terminated, on the owner's thread.
    void finish();
    bool publishText();
    void reportProgress();

    QString m_binPath;
    QString m_txtPath;
    QString m_partPath;
    // Why the text copy is short, empty while nothing went wrong.
    QString m_failure;
    // The run's failure has been reported where it happened.
    bool m_reported = false;
    std::atomic<bool> m_finishRan { false };
    RadarBinFile m_source;
    RadarTxtFile m_destination;
    quint32 m_samplesPerFrame = 0;
    quint64 m_totalFrames = 0;
    quint64 m_convertedFrames = 0;
    bool m_truncated = false;
    bool m_opened = false;
    int m_lastProgress = -1;
    std::vector<RadarFrameRecord> m_rows;
    std::atomic<bool> m_converting { false };
    std::unique_ptr<CyclicTaskWorker> m_worker;
};
