#pragma once

#include "host/FlasherStatus.h"

#include <QMetaType>
#include <QObject>
#include <QString>
#include <memory>
#include <string>

// A firmware flasher for one attached board.
class IFlasher : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(FlasherStatus::Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(QString firmwareDir READ firmwareDir CONSTANT)
    Q_PROPERTY(QString filenamePattern READ filenamePattern CONSTANT)
public:
    using QObject::QObject;
    ~IFlasher() override = default;

    virtual std::string name() const = 0;
    virtual int progress() const = 0;
    virtual FlasherStatus::Status status() const = 0;
    virtual QString message() const = 0;
    virtual QString firmwareDir() const = 0;
    virtual QString filenamePattern() const = 0;
    // Starts flashing the image; progress and the outcome arrive by signal.
    virtual void flash(const QString& imagePath) = 0;

public slots:
    virtual void clear() = 0;

signals:
    void progressChanged();
    void statusChanged();
    void messageChanged();
    void finished();
};

Q_DECLARE_METATYPE(std::shared_ptr<IFlasher>)
