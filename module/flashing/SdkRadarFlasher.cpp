#include "flashing/SdkRadarFlasher.h"

SdkRadarFlasher::SdkRadarFlasher(QObject* parent)
    : QObject(parent)
{
}

std::vector<std::string> SdkRadarFlasher::findComPorts(const std::string& vendorId, const std::string& productId)
{
    return m_library.findComPorts(vendorId, productId);
}
