#include "FlashJob.h"

#include "ConsoleProgress.h"

#include "host/IFlasher.h"

#include <QEventLoop>
#include <QRegularExpression>
#include <QMetaEnum>
#include <QTextStream>

FlashJob::FlashJob(std::shared_ptr<IFlasher> flasher, QTextStream& out)
    : m_flasher(std::move(flasher))
    , m_out(out)
{
}

bool FlashJob::isFinal(FlasherStatus::Status status)
{
    switch (status) {
    case FlasherStatus::NO_DEVICE:
    case FlasherStatus::BOOTLOADER_FAILURE:
    case FlasherStatus::FLASHING_FAILURE:
    case FlasherStatus::FINISHED_SUCCESS:
    case FlasherStatus::FINISHED_FAILURE:
    case FlasherStatus::TIMEOUT:
        return true;
    default:
        return false;
    }
}

QString FlashJob::statusName(FlasherStatus::Status status)
{
    const char* key = QMetaEnum::fromType<FlasherStatus::Status>().valueToKey(status);
    return key ? QString::fromLatin1(key) : QString::number(int(status));
}

FlasherStatus::Status FlashJob::run(const QString& image)
{
    connect(m_flasher.get(), &IFlasher::progressChanged, this, &FlashJob::onProgress);
    connect(m_flasher.get(), &IFlasher::messageChanged, this, &FlashJob::onMessage);
    connect(m_flasher.get(), &IFlasher::statusChanged, this, &FlashJob::onStatus);
    QEventLoop loop;
    connect(this, &FlashJob::ended, &loop, &QEventLoop::quit);
    m_flasher->flash(image);
    // A flasher that refused the job at once (one is already running) has
    // changed nothing.
    if (m_flasher->status() == FlasherStatus::NOT_STARTED || isFinal(m_flasher->status())) {
        endBar();
        return m_flasher->status();
    }
    loop.exec();
    endBar();
    return m_flasher->status();
}

void FlashJob::onInterrupted(int)
{
    m_interrupted = true;
    emit ended();
}

void FlashJob::onProgress()
{
    drawBar();
}

void FlashJob::onMessage()
{
    const QString message = m_flasher->message();
    if (message.isEmpty())
        return;
    // The messages read "PHASE: detail"; the phase labels the bar. While
    // writing and verifying, the flasher repeats its percentage as a
    // message ("WRITE: 42"): the bar shows that already.
    static const QRegularExpression progressEcho(QStringLiteral("^[A-Z]+: \\d+$"));
    const int colon = message.indexOf(QLatin1Char(':'));
    if (colon > 0 && colon < 16)
        m_phase = message.left(colon);
    if (progressEcho.match(message).hasMatch()) {
        drawBar();
        return;
    }
    static const QString errorPrefix = QStringLiteral("ERROR: ");
    if (message.startsWith(errorPrefix))
        m_lastError = message.mid(errorPrefix.size());
    endBar();
    m_out << message << Qt::endl;
}

QString FlashJob::failure() const
{
    return m_lastError.isEmpty() ? m_flasher->message() : m_lastError;
}

void FlashJob::onStatus()
{
    const FlasherStatus::Status status = m_flasher->status();
    endBar();
    m_out << "Status: " << statusName(status) << Qt::endl;
    if (isFinal(status))
        emit ended();
}

void FlashJob::drawBar()
{
    drawProgress(m_out, m_flasher->progress());
    // Padded so that a shorter phase overwrites a longer one.
    m_out << "  " << m_phase.leftJustified(12);
    m_out.flush();
    m_barShown = true;
}

void FlashJob::endBar()
{
    if (!m_barShown)
        return;
    m_out << Qt::endl;
    m_barShown = false;
}
