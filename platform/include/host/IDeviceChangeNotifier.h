#pragma once

#include <QObject>

// Tells modules that the set of attached devices may have changed.
class IDeviceChangeNotifier : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IDeviceChangeNotifier() override = default;

signals:
    void deviceChangeNotify();
};
