#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <memory>

// A device the host lists and lets the user connect.
class IDevice : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IDevice() override = default;

    virtual QString name() const = 0;
    virtual bool connectDevice() = 0;
    virtual void disconnectDevice() = 0;
    virtual void startAcquisition() = 0;
    virtual void stopAcquisition() = 0;
    virtual bool isAcquisitionActive() const = 0;
    // Whether the device can be offered to the user at all.
    virtual bool isAvailable() const = 0;

signals:
    void isConnectedChanged(bool connected);
    void isAcquisitionActiveChanged();
};

Q_DECLARE_METATYPE(std::shared_ptr<IDevice>)
