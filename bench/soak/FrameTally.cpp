#include "FrameTally.h"

#include "ViewConnection.h"

#include <QVariant>

FrameTally::FrameTally(QObject* view)
    : m_view(view)
{
    m_connected = connectByName(view, "frameNumberChanged(int)", this, "onFrameNumberChanged(int)")
        && connectByName(view, "isRecordingActiveChanged(bool)", this, "onRecordingActiveChanged(bool)");
}

void FrameTally::reset()
{
    m_recorded.clear();
    m_recording = m_view->property("isRecordingActive").toBool();
}

void FrameTally::onFrameNumberChanged(int frameNumber)
{
    // Number 0 only announces a reset counter.
    if (!m_recording || frameNumber <= 0)
        return;
    m_recorded.insert(frameNumber);
    emit countedWhileRecording(m_recorded.size());
}

void FrameTally::onRecordingActiveChanged(bool active)
{
    m_recording = active;
}
