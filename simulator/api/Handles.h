#pragma once

// Definitions of the SDK's opaque handles.

#include "CorvixHandle.h"
#include "CwHandle.h"
#include "DeviceHandle.h"
#include "DeviceListHandle.h"
#include "PresenceHandle.h"
#include "RangeDopplerHandle.h"
#include "RangeSpectrumHandle.h"
#include "SegmentationHandle.h"
