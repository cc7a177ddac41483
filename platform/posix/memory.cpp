#include <sys/mman.h>

#include "platform/platform.h"

namespace orva::platform {

void* reserveAddressSpace(size_t bytes) {
  void* address = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return address == MAP_FAILED ? nullptr : address;
}

bool commitMemory(void* address, size_t bytes) { return mprotect(address, bytes, PROT_READ | PROT_WRITE) == 0; }

}  // namespace orva::platform
