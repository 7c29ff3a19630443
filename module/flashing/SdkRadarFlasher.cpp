#include "flashing/SdkRadarFlasher.h"

#include <QDebug>

SdkRadarFlasher::SdkRadarFlasher(QObject* parent)
    : ISdkRadarFlasher(parent)
{
    m_library.setStatusCallback([this](const std::string& status) { onLibraryStatus(status); });
    m_library.setProgressCallback([this](std::size_t done, std::size_t total) { onLibraryProgress(done, total); });
}

std::vector<std::string> SdkRadarFlasher::findComPorts(const std::string& vendorId, const std::string& productId)
{
    return m_library.findComPorts(vendorId, productId);
}

bool SdkRadarFlasher::activateBootloader(const std::string& productId, const std::string& port,
                                         std::string& errorMessage)
{
    return m_library.activateBootloader(productId, port, errorMessage);
}

bool SdkRadarFlasher::activateBootloaderFF(const std::string& port, std::string& errorMessage, int argument)
{
    return m_library.activateBootloaderFF(port, errorMessage, argument);
}

bool SdkRadarFlasher::activateBootloaderRadarBaseboardKT4(const std::string& port, std::string& errorMessage,
                                                          int argument)
{
    return m_library.activateBootloaderRadarBaseboardKT4(port, errorMessage, argument);
}

bool SdkRadarFlasher::activateBootloaderRadarBaseboardKT4Legacy(const std::string& port, std::string& errorMessage,
                                                                int argument)
{
    return m_library.activateBootloaderRadarBaseboardKT4Legacy(port, errorMessage, argument);
}

bool SdkRadarFlasher::flash(const std::string& port, const std::string& imagePath, std::string& errorMessage)
{
    m_phase.clear();
    return m_library.flash(port, imagePath, errorMessage);
}

void SdkRadarFlasher::sleep_for(unsigned int milliseconds)
{
    FlashRadarBaseboardKT4::sleep_for(milliseconds);
}

// The library names its phases in words whose capitals it has changed
// between releases, so phases are recognised without regard to case.
void SdkRadarFlasher::onLibraryStatus(const std::string& status)
{
    const QString text = QString::fromStdString(status);
    qDebug().noquote() << QStringLiteral("Flash status is: %1").arg(text);
    if (text.contains(QLatin1String("erase"), Qt::CaseInsensitive))
        emit updateMessage(QStringLiteral("ERASE: %1").arg(text));
    else if (text.contains(QLatin1String("reset"), Qt::CaseInsensitive))
        emit updateMessage(QStringLiteral("RESET: %1").arg(text));
    m_phase = text;
}

// Writing fills the first half of the bar and verifying the second.
void SdkRadarFlasher::onLibraryProgress(std::size_t done, std::size_t total)
{
    if (total == 0)
        return;
    const int percent = int(done * 100 / total);
    qDebug().noquote() << QStringLiteral("Flash progres is: ") + QStringLiteral("%1 %2").arg(percent).arg(m_phase);
    if (m_phase.contains(QLatin1String("Write"), Qt::CaseInsensitive)) {
        emit updateProgress(percent / 2);
        emit updateMessage(QStringLiteral("WRITE: %1").arg(percent));
    } else if (m_phase.contains(QLatin1String("Verify"), Qt::CaseInsensitive)) {
        emit updateProgress(percent / 2 + 50);
        emit updateMessage(QStringLiteral("VERIFY: %1").arg(percent));
    }
}
