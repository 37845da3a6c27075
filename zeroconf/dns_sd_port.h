// SPDX-License-Identifier: MIT
#pragma once

// The one place that includes the dns_sd calls, wherever CMake found them: the system's library where it is
// complete, else the library in zeroconf/avahi/. Both offer the same calls under the same header name.
#include <dns_sd.h>
