#pragma once

#include "frame/IRadarSubmoduleCoordinator.h"
#include "host/Constants.h"

#include <QString>

// CW mode's coordinator as its view sees it: emission under the overheating
// protection, and the configuration operations that must not change the
// device under a running protector.
class IRadarCWCoordinator : public IRadarSubmoduleCoordinator
{
    Q_OBJECT
public:
    using IRadarSubmoduleCoordinator::IRadarSubmoduleCoordinator;
    ~IRadarCWCoordinator() override = default;

    virtual bool startEmission() = 0;
    virtual bool stopEmission() = 0;
    virtual bool isEmissionActive() const = 0;
    virtual bool applyDefaultConfig() = 0;
    virtual bool applyGuiConfig() = 0;

signals:
    void isEmissionActiveChanged(bool active);
    void enqueueUserMessage(Constants::UserMessageType type, QString message, QString details);
};
