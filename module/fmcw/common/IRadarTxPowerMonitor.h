#pragma once

#include <QObject>

// Refreshes the per-antenna transmit power shown by the pages on demand.
class IRadarTxPowerMonitor : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IRadarTxPowerMonitor() override = default;

public slots:
    virtual void update() = 0;
};
