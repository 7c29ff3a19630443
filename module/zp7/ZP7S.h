#pragma once

#include "frame/UnavailableSubmodule.h"

// The pulsed-Doppler (ZP7) board's frame mode; its device, pipeline and
// pages are not part of this build yet.
class ZP7S : public UnavailableSubmodule
{
    Q_OBJECT
public:
    explicit ZP7S(QObject* parent = nullptr);
};
