// The two symbols the host looks up in the module library.
#include "frame/Radar.h"

#include <new>

extern "C" {

__attribute__((visibility("default"))) const char* CoreVersion()
{
    static const char version[] = "1.0";
    return version;
}

__attribute__((visibility("default"))) IModule* CreateModule()
{
    return new (std::nothrow) Radar();
}
}
