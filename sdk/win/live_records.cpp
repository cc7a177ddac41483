#include "live_records.h"

#include "proxy.h"
#include "record_arena.h"

namespace orva::binding {

void releaseLiveRecords(v8::Isolate* isolate) {
  // Every live record sits in a slot of the arena, and only live ones carry the tag.
  forEachRecordSlot([isolate](void* slot) {
    auto* record = static_cast<ProxyRecord*>(slot);
    if (record->tag != kProxyTag) return;
    deleteOwnedObject(record);
    releaseRecord(record, isolate);
  });
}

}  // namespace orva::binding
