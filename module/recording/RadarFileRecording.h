#pragma once

#include "recording/RadarFrameRecord.h"
#include "recording/RadarRecordingHeader.h"
#include "recording/RecordingFrame.h"

#include <QObject>
#include <QString>

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

    // Opens the file, writes the header and the configuration document and
    // starts writing. On failure reports "Cannot write to recording file!"
    // and stays idle.
    bool start();
    bool isRunning() const;
    quint32 samplesPerFrame() const { return m_samplesPerFrame; }
    QString binPath() const { return m_binPath; }

signals:
    // The file is complete and closed.
    void finished();
    void errorDetected(QString message, QString details);
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
    bool openWriter();
    bool writeConfiguration();
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

    std::mutex m_writerMutex;
    std::unique_ptr<IRadarFileWriter> m_writer;

    // Used by whichever thread drains: the worker, or after it has stopped
    // the thread running stop(); never both at once.
    RadarFrameRecord m_record;

    std::unique_ptr<CyclicTaskWorker> m_worker;
};
