#pragma once

#include <chrono>

// How long a flashing job may take and waits. The defaults are the product's;
// tests shorten them.
struct RadarFlasherTiming
{
    // The whole job, from the request to its final status.
    std::chrono::milliseconds timeLimit { 300000 };
    // Lets a board that has just been plugged in finish its own start-up
    // before it is asked to enter its bootloader.
    std::chrono::milliseconds initialWait { 5000 };
    // How long a flashed board may take to come back in normal mode.
    std::chrono::milliseconds returnLimit { 60000 };
};
