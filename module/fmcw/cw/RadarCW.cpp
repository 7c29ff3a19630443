#include "fmcw/cw/RadarCW.h"

RadarCW::RadarCW(QObject* parent)
    : UnavailableSubmodule({ { VRN_SHIELD_FMCW_512, QStringLiteral("CW") },
                             { VRN_SHIELD_FMCW_513, QStringLiteral("CW") },
                             { VRN_SHIELD_FMCW_514, QStringLiteral("CW") } },
                           parent)
{
}
