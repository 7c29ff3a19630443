#pragma once

#include "frame/UnavailableSubmodule.h"

// The FMCW boards' continuous-wave test mode ("CW"); its controller,
// configuration and pages are not part of this build yet.
class RadarCW : public UnavailableSubmodule
{
    Q_OBJECT
public:
    explicit RadarCW(QObject* parent = nullptr);
};
