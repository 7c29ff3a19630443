#pragma once

#include "host/FlasherStatus.h"

#include <QObject>
#include <QString>
#include <string>
#include <vector>

// The flashing library's operations a flashing job uses, with the library's
// status and progress reports turned into job messages and progress.
// Used from one thread at a time.
class ISdkRadarFlasher : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~ISdkRadarFlasher() override = default;

    virtual std::vector<std::string> findComPorts(const std::string& vendorId, const std::string& productId) = 0;
    virtual bool activateBootloader(const std::string& productId, const std::string& port,
                                    std::string& errorMessage) = 0;
    virtual bool flash(const std::string& port, const std::string& imagePath, std::string& errorMessage) = 0;
    // Blocks the calling thread.
    virtual void sleep_for(unsigned int milliseconds) = 0;

signals:
    void updateMessage(QString value);
    void updateProgress(int value);
    void updateStatus(FlasherStatus::Status status);
};
