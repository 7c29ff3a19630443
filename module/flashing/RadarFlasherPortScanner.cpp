#include "flashing/RadarFlasherPortScanner.h"

#include "flashing/RadarBaseboardIdentity.h"

#include <QDebug>

RadarFlasherPortScanner::RadarFlasherPortScanner(std::unique_ptr<ISdkRadarFlasher> library, QObject* parent)
    : QObject(parent)
    , m_library(library.release())
{
    m_library->setParent(this);
}

void RadarFlasherPortScanner::scan(const QString& vendorId, const QStringList& productIds)
{
    QMap<QString, QString> normalPorts;
    for (const QString& productId : productIds) {
        for (const std::string& port : m_library->findComPorts(vendorId.toStdString(), productId.toStdString()))
            normalPorts.insert(QString::fromStdString(port), productId);
    }
    QStringList bootloaderPorts;
    for (const std::string& port : m_library->findComPorts(RadarBaseboardIdentity::kBootloaderVendorId,
                                                           RadarBaseboardIdentity::kBootloaderProductId))
        bootloaderPorts << QString::fromStdString(port);
    if (!bootloaderPorts.isEmpty())
        qDebug() << "Detected devices in bootloader mode.";
    emit scanned(normalPorts, bootloaderPorts);
}
