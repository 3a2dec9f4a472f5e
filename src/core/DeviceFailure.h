#pragma once

#include "WriteResult.h"

class QFileDevice;

/// Why the last operation on the device failed: it tells its trouble in words only.
WriteResult failureOfDevice(const QFileDevice &device);
