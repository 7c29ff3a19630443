#pragma once

#include <QString>

struct Vrn;

// The host broker: the way into the host's shared resources.
class IBroker
{
public:
    virtual ~IBroker() = default;
    // The radar SDK entry points the host loaded; null when there is none.
    virtual const Vrn* sdk() const = 0;
    // Directory of the host application (firmware images live below it).
    virtual QString applicationDirectory() const = 0;
};
