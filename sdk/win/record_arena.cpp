#include "record_arena.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "platform/platform.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
// Everything of a free slot but its tag word is out of bounds, so that the
// address sanitizer still reports a record used after it was freed.
#define ORVA_POISON_SLOT(slot) ASAN_POISON_MEMORY_REGION(static_cast<char*>(slot) + 8, arena::kSlotBytes - 8)
#define ORVA_UNPOISON_SLOT(slot) ASAN_UNPOISON_MEMORY_REGION(slot, arena::kSlotBytes)
#else
#define ORVA_POISON_SLOT(slot) ((void)(slot))
#define ORVA_UNPOISON_SLOT(slot) ((void)(slot))
#endif

namespace orva::binding {

namespace arena {
char* gBase = nullptr;
size_t gUsedBytes = 0;
}  // namespace arena

namespace {

// Reservations tried in turn: the first the system grants is kept. The
// largest holds over a hundred million records; a process limited in address
// space gets a smaller one.
constexpr size_t kReservations[] = {size_t{8} << 30, size_t{1} << 30, size_t{128} << 20, size_t{16} << 20};
// Memory is put behind the reservation this much at a time.
constexpr size_t kCommitStep = size_t{1} << 20;

size_t gReservedBytes = 0;
size_t gCommittedBytes = 0;
// Slots given back, reused before the arena grows.
std::vector<void*> gFreeSlots;

void reserve() {
  for (size_t bytes : kReservations) {
    if (void* base = platform::reserveAddressSpace(bytes)) {
      arena::gBase = static_cast<char*>(base);
      gReservedBytes = bytes;
      return;
    }
  }
  throw std::bad_alloc();
}

}  // namespace

void* allocateRecordSlot() {
  if (!gFreeSlots.empty()) {
    void* slot = gFreeSlots.back();
    gFreeSlots.pop_back();
    ORVA_UNPOISON_SLOT(slot);
    return slot;
  }
  if (gReservedBytes == 0) reserve();
  if (arena::gUsedBytes == gCommittedBytes) {
    if (gCommittedBytes == gReservedBytes || !platform::commitMemory(arena::gBase + gCommittedBytes, kCommitStep)) {
      throw std::bad_alloc();
    }
    gCommittedBytes += kCommitStep;
  }
  // Room for the slot in the list of free ones, before the slot is handed out:
  // giving it back can then never fail.
  const size_t slots = arena::gUsedBytes / arena::kSlotBytes + 1;
  if (gFreeSlots.capacity() < slots) gFreeSlots.reserve(std::max(slots, 2 * gFreeSlots.capacity()));
  void* slot = arena::gBase + arena::gUsedBytes;
  arena::gUsedBytes += arena::kSlotBytes;
  return slot;
}

void freeRecordSlot(void* slot) {
  // Zeroed after the record's lifetime has ended, so that no store of the
  // record's own is dropped as dead: a free slot reads a tag of zero.
  std::memset(slot, 0, arena::kSlotBytes);
  gFreeSlots.push_back(slot);
  ORVA_POISON_SLOT(slot);
}

}  // namespace orva::binding
