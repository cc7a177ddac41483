// Where proxy records live: one reserved range of address space, slot by slot.
//
// Any object may reach the binding as an argument, and another addon (or
// Node.js itself) may keep anything in its internal field: a pointer to an
// object of its own, a small integer, a script value. The binding reads a
// candidate record only after it has found the pointer to be the start of one
// of its own slots, which two comparisons tell; asking V8 whether the object
// came from one of the binding's templates costs several times a whole call.
//
// Script thread of the isolate that owns the binding; nothing is locked.
#pragma once

#include <cstddef>
#include <cstdint>

#include "records.h"

namespace orva::binding {

namespace arena {
/// One slot per record, a power of two so that a slot start is a mask away.
inline constexpr size_t kSlotBytes = 64;
static_assert(sizeof(ProxyRecord) <= kSlotBytes, "a record fits its slot");

/// Start of the reservation and how much of it holds slots handed out so far.
extern char* gBase;
extern size_t gUsedBytes;
}  // namespace arena

/// A slot for a new record (not yet constructed). Throws std::bad_alloc when
/// the reservation is exhausted or the system gives no memory.
void* allocateRecordSlot();

/// Gives a record's slot back (the record is already destroyed); the slot
/// reads as zeros from now on.
void freeRecordSlot(void* slot);

/// Calls `visit(slot)` for every slot handed out so far, free ones included
/// (their tag reads zero).
template <class Visit>
void forEachRecordSlot(Visit&& visit) {
  for (size_t offset = 0; offset < arena::gUsedBytes; offset += arena::kSlotBytes) {
    visit(static_cast<void*>(arena::gBase + offset));
  }
}

/// Whether `pointer` is the start of a slot of the arena, so that reading a
/// record there is safe (a free slot reads a tag of zero).
inline bool isRecordSlot(const void* pointer) {
  const uintptr_t offset = reinterpret_cast<uintptr_t>(pointer) - reinterpret_cast<uintptr_t>(arena::gBase);
  return offset < arena::gUsedBytes && (offset & (arena::kSlotBytes - 1)) == 0;
}

}  // namespace orva::binding
