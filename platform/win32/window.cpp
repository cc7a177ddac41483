// Native windows. Script passes a window handle as a 32-bit number, which is
// all of a handle's meaningful bits on 64-bit Windows.
#include <windows.h>

#include <cstdint>

#include "platform/platform.h"

namespace orva::platform {

bool isWindow(uint32_t handle) { return ::IsWindow(reinterpret_cast<HWND>(static_cast<uintptr_t>(handle))) != FALSE; }

}  // namespace orva::platform
