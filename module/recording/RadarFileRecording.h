#pragma once

#include "recording/RadarFrameRecord.h"
#include "recording/RadarRecordingHeader.h"
#include "recording/RecordingFrame.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

class CyclicTaskWorker;
class IRadarFileWriter;
class IRadarRecordingSource;

// Second stage of the recording chain: queues the recorder's buffers
// without bound and writes them to the binary file on a worker thread of
// its own, so a slow disk never reaches acquisition.
//
// Lives on the thread that owns it (normally the GUI thread); only the
// drain step runs on the worker. The queue mutex is held only to push or
// pop a buffer, the writer mutex only around file operations.
class RadarFileRecording : public QObject
{
    Q_OBJECT
public:
    RadarFileRecording(const IRadarRecordingSource* source, QString jsonPath, QString binPath,
                       QObject* parent = nullptr);
    ~RadarFileRecording() override;

    // Creates the binary file and the configuration document (neither may
    // exist yet), writes the header and starts writing. On failure reports
    // "Cannot write to recording file!" with the reason, removes what it
    // created and stays idle.
    bool start();
    bool isRunning() const;
    quint32 samplesPerFrame() const { return m_samplesPerFrame; }
    QString binPath() const { return m_binPath; }

signals:
    // The file is complete and closed.
    void finished();
    void errorDetected(QString message, QString details);
    // A frame could not be written (the disk is full): the file ends at the
    // last whole frame, the failure has been reported once, and nothing more
    // will be written. The owner should end the recording. Both this and
    // its errorDetected() come on the owner's thread, at the latest from
    // stop() before finished().
    void writeFailed();
    // The worker has stopped; what is still queued is written by stop().
    void collectingStopped();

public slots:
    void collectRadarBuffer(RadarBufferPtr buffer);
    // Writes everything still queued, closes the file, emits finished().
    void stop();

protected:
    // The writer for the binary file; tests replace it to force failures.
    virtual std::unique_ptr<IRadarFileWriter> createWriter() const;

private:
    // Each returns the reason for the user, empty on success.
    QString openWriter(const RadarRecordingHeader& header);
    QString writeConfiguration();
    // Closes the writer and removes the files start() created.
    void abandonStart();
    // Tells of a failed write once, on the owner's thread.
    void reportWriteFailure();
    bool drainStep();
    RadarBufferPtr takeBuffer();
    void writeBuffer(const RadarBuffer& buffer);
    // Flattens the frame into m_record in file order; false when any
    // antenna's data is missing or the frame does not hold a whole record.
    bool fillRecord(const vrn_Frame_R_t* frame);

    const IRadarRecordingSource* m_source;
    const QString m_jsonPath;
    const QString m_binPath;
    quint32 m_samplesPerFrame = 0;

    std::mutex m_queueMutex; // guards the queue and the two flags
    std::condition_variable m_queueChanged;
    std::deque<RadarBufferPtr> m_queue;
    // Buffers arrive on the acquisition thread, which must not look at
    // m_worker: the owner creates and destroys it without this mutex.
    bool m_accepting = false;
    bool m_stopRequested = false;

    std::mutex m_writerMutex; // guards the writer and the two below
    std::unique_ptr<IRadarFileWriter> m_writer;
    quint64 m_framesWritten = 0;
    // Set on the first failed write; nothing is written after it.
    bool m_writeFailed = false;
    bool m_failureReported = false;
    int m_failedFrame = 0;
    QString m_failureReason;

    // What start() created, so that a failed start leaves nothing behind.
    QStringList m_createdFiles;

    // Used by whichever thread drains: the worker, or after it has stopped
    // the thread running stop(); never both at once.
    RadarFrameRecord m_record;

    std::unique_ptr<CyclicTaskWorker> m_worker;
};
