#pragma once

#include "flash/FlashRadarBaseboardKT4.h"

#include <QObject>
#include <string>
#include <vector>

// Owns the flashing library and forwards its operations.
class SdkRadarFlasher : public QObject
{
    Q_OBJECT
public:
    explicit SdkRadarFlasher(QObject* parent = nullptr);

    std::vector<std::string> findComPorts(const std::string& vendorId, const std::string& productId);

private:
    FlashRadarBaseboardKT4 m_library;
};
