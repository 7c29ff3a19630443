#pragma once

class CoreUserSettings;

// Host configuration services.
class ICoreConfiguration
{
public:
    virtual ~ICoreConfiguration() = default;
    virtual CoreUserSettings* coreUserSettings() = 0;
};
