#pragma once

#include "common/SharedFrame.h"
#include "sdk/vrn.h"

#include <QtGlobal>

#include <memory>

class IBroker;
class RadarConfigurationUtils;
class RadarDeviceConfiguration;

using SharedPresenceResult = std::shared_ptr<const vrn_PresenceSensing_Result_t>;

// Runs the SDK's presence-sensing algorithm on each frame. All state between
// frames lives in the SDK's handle; a new configuration means a new
// calculator. Created on the GUI thread, run on the acquisition worker,
// never both at once.
class RadarPresenceSensingCalculator
{
public:
    using Handle = std::shared_ptr<vrn_PresenceSensing_s>;

    // None when the SDK refuses the configuration (logged).
    static std::unique_ptr<RadarPresenceSensingCalculator> create(IBroker& broker, RadarConfigurationUtils& utils,
                                                                  RadarDeviceConfiguration& configuration);

    // Looks at the first receive antenna only; none on failure (logged).
    SharedPresenceResult process(const SharedFrame& frame);

private:
    RadarPresenceSensingCalculator(IBroker& broker, Handle handle);

    IBroker* m_broker;
    Handle m_handle;
};
