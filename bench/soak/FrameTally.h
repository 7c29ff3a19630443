#pragma once

#include <QObject>
#include <QSet>

// The frames a view counted while its recording ran, by number: what the
// user saw go into the file.
class FrameTally : public QObject
{
    Q_OBJECT
public:
    explicit FrameTally(QObject* view);

    bool isConnected() const { return m_connected; }
    const QSet<int>& recorded() const { return m_recorded; }
    bool recordingActive() const { return m_recording; }
    void reset();

signals:
    void countedWhileRecording(int count);

public slots:
    void onFrameNumberChanged(int frameNumber);
    void onRecordingActiveChanged(bool active);

private:
    QObject* m_view;
    bool m_connected = false;
    bool m_recording = false;
    QSet<int> m_recorded;
};
