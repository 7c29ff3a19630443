#pragma once

#include "frame/IRadarSubmoduleCoordinator.h"
#include "host/Constants.h"

#include <QString>

// The standard mode's coordinator as its view sees it: configuration
// operations that may have to pause acquisition, the FIFO-overflow count and
// the user messages it makes of the collaborators' events.
class IRadarSCoordinator : public IRadarSubmoduleCoordinator
{
    Q_OBJECT
public:
    using IRadarSubmoduleCoordinator::IRadarSubmoduleCoordinator;
    ~IRadarSCoordinator() override = default;

    virtual bool applyDefaultConfiguration() = 0;
    virtual bool applyGuiConfiguration() = 0;
    virtual bool applyConfiguration(const QString& filePath) = 0;
    virtual bool revertConfiguration() = 0;
    virtual quint32 fifoOverflowCounter() const = 0;

signals:
    void fifoOverflowCounterChanged(quint32 counter);
    void enqueueUserMessage(Constants::UserMessageType type, QString message, QString details);

public slots:
    virtual void onPlaybackActiveChanged(bool value) = 0;
};
