#pragma once

// Definitions of the SDK's opaque handles.

#include "CorvixHandle.h"
#include "CwHandle.h"
#include "DeviceHandle.h"
#include "DeviceListHandle.h"
