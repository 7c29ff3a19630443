#include "zp7/ZP7S.h"

ZP7S::ZP7S(QObject* parent)
    : UnavailableSubmodule({ { VRN_SHIELD_ZP7_768, QStringLiteral("Standard") } }, parent)
{
}
