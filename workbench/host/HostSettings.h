#pragma once

#include "core/Logging.h"

#include <memory>

class CoreUserSettings;
class JSONConfigurationObject;

// The host's own settings in the settings file, under "workbench": the
// chart refresh interval, the recording settings and the clean-up of the
// host's log files. An older file without "workbench" still loads and keeps
// the defaults; only a "workbench" object that is there but wrong is an error.
class HostSettings
{
public:
    explicit HostSettings(CoreUserSettings& core);

    std::unique_ptr<JSONConfigurationObject> configurationNode();
    Logging& logging() { return m_logging; }

    // Accepted chart refresh intervals, milliseconds.
    static constexpr int kMinRefreshMs = 10;
    static constexpr int kMaxRefreshMs = 5000;

private:
    CoreUserSettings& m_core;
    Logging m_logging;
};
