#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>

// The figures of the status line, gathered from the module's view and, for
// what the module cannot know, from the SDK:
// - frames: frames the pipeline received since the board connected or the
//   playback opened (advances of the view's frame counter, which restarts
//   at 0 whenever a configuration is applied);
// - frame rate: the view's own measure over the last second;
// - FIFO overflows: frame fetches the board answered with a failure, as
//   the module counts them for the running acquisition;
// - dropped frames: frames the board itself discarded because they were
//   fetched too late. The SDK reports no such count with the frames, so
//   only an SDK that offers it (the simulator's control table) can tell;
//   otherwise it is unknown (-1), never a guess;
// - recording: on or off and the file being written;
// - temperature: the board's last reading, unknown when there is none.
class SessionStatus : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint64 frames READ frames NOTIFY framesChanged)
    Q_PROPERTY(double frameRate READ frameRate NOTIFY changed)
    Q_PROPERTY(quint32 fifoOverflows READ fifoOverflows NOTIFY changed)
    Q_PROPERTY(qint64 droppedFrames READ droppedFrames NOTIFY changed)
    Q_PROPERTY(bool recording READ recording NOTIFY changed)
    Q_PROPERTY(QString recordingFile READ recordingFile NOTIFY changed)
    Q_PROPERTY(QString temperature READ temperature NOTIFY changed)
public:
    // Frames the board with this uuid dropped since it was plugged; -1 when
    // the SDK cannot tell.
    using DropCounter = std::function<qint64(const QString& uuid)>;

    explicit SessionStatus(QObject* view, QObject* parent = nullptr);

    // Follows another mode's view (each board family and recording has its
    // own); the counts go on until restart().
    void setView(QObject* view);
    QObject* view() const { return m_view; }

    void setDropCounter(DropCounter counter) { m_dropCounter = std::move(counter); }
    // Where the host's recording settings point a recording that starts now.
    void setRecordingBase(std::function<QString()> base) { m_recordingBase = std::move(base); }

    quint64 frames() const { return m_frames; }
    double frameRate() const;
    quint32 fifoOverflows() const;
    qint64 droppedFrames() const { return m_dropped; }
    bool recording() const;
    QString recordingFile() const { return m_recordingFile; }
    QString temperature() const;

    // Another mode's device information whose temperature the line shows
    // while that mode's monitor runs (the standard view's is watched from
    // the start).
    void watchTemperature(QObject* deviceInfo);

    // A new source: the counts start again. `uuid` names the board, empty
    // for a playback.
    void restart(const QString& uuid);

public slots:
    void onFrameNumberChanged(int frameNumber);
    void onRecordingActiveChanged(bool active);
    void refresh();

signals:
    void framesChanged();
    void changed();

private:
    QObject* m_view = nullptr;
    QList<QObject*> m_deviceInfos;
    DropCounter m_dropCounter;
    std::function<QString()> m_recordingBase;
    QString m_uuid;
    quint64 m_frames = 0;
    int m_lastFrameNumber = -1;
    qint64 m_dropped = -1;
    qint64 m_droppedAtStart = 0;
    QString m_recordingFile;
    QTimer m_poll;
};
