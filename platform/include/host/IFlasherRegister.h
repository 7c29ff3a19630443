#pragma once

#include "host/IFlasher.h"

// Where modules announce their firmware flashers.
class IFlasherRegister : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IFlasherRegister() override = default;

public slots:
    virtual void registerFlasher(std::shared_ptr<IFlasher> flasher) = 0;
    virtual void unregisterFlasher(std::string name) = 0;
};

Q_DECLARE_METATYPE(std::string)
