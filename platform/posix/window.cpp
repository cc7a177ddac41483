// Native windows: a POSIX desktop gives the addon no window handles, so no
// number names a window.
#include "platform/platform.h"

namespace orva::platform {

bool isWindow(uint32_t /*handle*/) { return false; }

}  // namespace orva::platform
