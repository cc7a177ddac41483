// The system version. The capture-mode tables compare against Windows
// releases; no POSIX version is comparable, so the lowest one is reported.
#include "platform/platform.h"

namespace orva::platform {

OsVersion osVersion() { return {0, 0, 0}; }

}  // namespace orva::platform
