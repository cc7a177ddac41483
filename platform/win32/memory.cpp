#include <windows.h>

#include "platform/platform.h"

namespace orva::platform {

void* reserveAddressSpace(size_t bytes) { return VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS); }

bool commitMemory(void* address, size_t bytes) {
  return VirtualAlloc(address, bytes, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}

}  // namespace orva::platform
