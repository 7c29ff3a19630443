#pragma once

// The user mode under which the FMCW boards run their continuous-wave test
// mode, as the user picks it in the window and on the command line. The
// coordinator registers its boards under it and the host's pages and
// commands compare against it, so the name lives here only.
namespace RadarCWMode {

constexpr const char kUserMode[] = "CW";

}
