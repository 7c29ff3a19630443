#include "SessionStatus.h"

#include "ViewConnection.h"

#include <QVariant>
#include <cmath>

namespace {
// The status line follows the eye, not every frame.
constexpr int kPollMs = 500;
}

SessionStatus::SessionStatus(QObject* view, QObject* parent)
    : QObject(parent)
{
    setView(view);
    connect(&m_poll, &QTimer::timeout, this, &SessionStatus::refresh);
    m_poll.start(kPollMs);
}

void SessionStatus::setView(QObject* view)
{
    if (view == m_view)
        return;
    if (m_view)
        disconnect(m_view, nullptr, this, nullptr);
    m_view = view;
    if (m_view) {
        connectByName(m_view, "frameNumberChanged(int)", this, "onFrameNumberChanged(int)");
        connectByName(m_view, "isRecordingActiveChanged(bool)", this, "onRecordingActiveChanged(bool)");
        connectByName(m_view, "frameRateChanged()", this, "refresh()");
        connectByName(m_view, "fifoOverflowCounterChanged()", this, "refresh()");
        // The temperature monitor writes the board's readings into the
        // running (applied) configuration's device information.
        if (auto* configuration = m_view->property("deviceConfiguration").value<QObject*>())
            watchTemperature(configuration->property("deviceInfo").value<QObject*>());
    }
    emit changed();
}

double SessionStatus::frameRate() const
{
    return m_view ? m_view->property("frameRate").toDouble() : 0.0;
}

quint32 SessionStatus::fifoOverflows() const
{
    return m_view ? m_view->property("fifoOverflowCounter").toUInt() : 0;
}

bool SessionStatus::recording() const
{
    return m_view && m_view->property("isRecordingActive").toBool();
}

void SessionStatus::watchTemperature(QObject* deviceInfo)
{
    if (!deviceInfo || m_deviceInfos.contains(deviceInfo))
        return;
    m_deviceInfos.append(deviceInfo);
    connectByName(deviceInfo, "deviceTemperatureChanged()", this, "refresh()");
}

QString SessionStatus::temperature() const
{
    // Only the active mode's monitor runs; the others hold no reading.
    for (QObject* deviceInfo : m_deviceInfos) {
        const QVariant reading = deviceInfo->property("deviceTemperature");
        bool ok = false;
        const double celsius = reading.toDouble(&ok);
        if (reading.isValid() && ok && !std::isnan(celsius))
            return QStringLiteral("%1 °C").arg(celsius, 0, 'f', 1);
    }
    return {};
}

void SessionStatus::restart(const QString& uuid)
{
    m_uuid = uuid;
    m_frames = 0;
    m_lastFrameNumber = -1;
    // The board counts from the moment it was plugged; the session's share
    // is what it dropped since now.
    m_droppedAtStart = (m_dropCounter && !uuid.isEmpty()) ? m_dropCounter(uuid) : -1;
    m_dropped = m_droppedAtStart >= 0 ? 0 : -1;
    emit framesChanged();
    emit changed();
}

void SessionStatus::onFrameNumberChanged(int frameNumber)
{
    // Count advances, not the counter: it restarts at 0 with every applied
    // configuration.
    if (frameNumber > m_lastFrameNumber && frameNumber > 0)
        m_frames += quint64(frameNumber - qMax(m_lastFrameNumber, 0));
    m_lastFrameNumber = frameNumber;
    emit framesChanged();
}

void SessionStatus::onRecordingActiveChanged(bool active)
{
    // The file of the recording that runs, not where the next one would go.
    if (active && m_recordingBase)
        m_recordingFile = m_recordingBase() + QStringLiteral(".raw.bin");
    emit changed();
}

void SessionStatus::refresh()
{
    if (m_dropCounter && !m_uuid.isEmpty() && m_droppedAtStart >= 0) {
        const qint64 now = m_dropCounter(m_uuid);
        if (now >= m_droppedAtStart)
            m_dropped = now - m_droppedAtStart;
    }
    emit changed();
}
