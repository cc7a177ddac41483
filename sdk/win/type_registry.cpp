#include <cstring>

#include "fatal.h"
#include "proxy.h"
#include "registry.h"
#include "v8_compat.h"

namespace orva::binding {
namespace {

// The table of this module once installed. Script thread only.
ModuleTypeTable* gTable = nullptr;

v8::Local<v8::Private> tablePrivate(v8::Isolate* isolate) {
  return v8::Private::ForApi(isolate, v8::String::NewFromUtf8Literal(isolate, "swig_module_info_data"));
}

bool inRing(ModuleTypeTable* ring, ModuleTypeTable* table) {
  ModuleTypeTable* at = ring;
  do {
    if (at == table) return true;
    at = at->next;
  } while (at != ring);
  return false;
}

// Binary search by mangled name in one table.
TypeDescriptor* searchTable(ModuleTypeTable* table, const char* name) {
  size_t low = 0;
  size_t high = table->size;
  while (low < high) {
    size_t middle = low + (high - low) / 2;
    int order = std::strcmp(name, table->types[middle]->name);
    if (order == 0) return table->types[middle];
    if (order < 0) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return nullptr;
}

bool listHasSource(TypeDescriptor* type, TypeDescriptor* source) {
  for (CastEntry* entry = type->cast; entry != nullptr; entry = entry->next) {
    if (entry->type == source) return true;
  }
  return false;
}

// Fills the table on first use: shares the descriptors that other modules of
// the ring already have, then builds every cast list.
void installDescriptors(ModuleTypeTable* table) {
  for (size_t i = 0; i < table->size; ++i) table->types[i] = table->typeInitial[i];
  table->types[table->size] = nullptr;
  for (size_t i = 0; i < table->size; ++i) {
    TypeDescriptor* own = table->typeInitial[i];
    for (ModuleTypeTable* other = table->next; other != table; other = other->next) {
      if (TypeDescriptor* shared = searchTable(other, own->name)) {
        if (own->clientdata != nullptr) shared->clientdata = own->clientdata;
        table->types[i] = shared;
        break;
      }
    }
  }
  for (size_t i = 0; i < table->size; ++i) {
    TypeDescriptor* type = table->types[i];
    for (CastEntry* cast = table->castInitial[i]; cast->type != nullptr; ++cast) {
      TypeDescriptor* source = findType(table, cast->type->name);
      if (source == nullptr || listHasSource(type, source)) continue;
      cast->type = source;
      cast->prev = nullptr;
      cast->next = type->cast;
      if (type->cast != nullptr) type->cast->prev = cast;
      type->cast = cast;
    }
  }
}

}  // namespace

ModuleTypeTable* typeTable() { return gTable; }

ModuleTypeTable* tableOfContext(v8::Local<v8::Context> context) {
  v8::Isolate* isolate = isolateOf(context);
  v8::Local<v8::Value> stored;
  if (!context->Global()->GetPrivate(context, tablePrivate(isolate)).ToLocal(&stored)) return nullptr;
  if (stored->IsUndefined() || stored->IsNull() || !stored->IsExternal()) return nullptr;
  void* pointer = stored.As<v8::External>()->Value();
  check(pointer != nullptr, "ptr");
  return static_cast<ModuleTypeTable*>(pointer);
}

void initTypeTable(ModuleTypeTable* table, v8::Local<v8::Context> context) {
  bool first = table->next == nullptr;
  if (first) table->next = table;
  gTable = table;

  if (ModuleTypeTable* found = tableOfContext(context)) {
    if (!inRing(found, table)) {
      table->next = found->next;
      found->next = table;
    }
  } else {
    v8::Isolate* isolate = isolateOf(context);
    v8::Local<v8::External> value = v8::External::New(isolate, table);
    check(!value.IsEmpty(), "!mod.IsEmpty()");
    check(context->Global()->SetPrivate(context, tablePrivate(isolate), value).FromMaybe(false), "!mod.IsEmpty()");
    check(tableOfContext(context) == table, "retptr");
  }
  if (first) installDescriptors(table);
}

TypeDescriptor* findType(ModuleTypeTable* start, const char* mangledName) {
  ModuleTypeTable* table = start;
  do {
    if (TypeDescriptor* found = searchTable(table, mangledName)) return found;
    table = table->next;
  } while (table != nullptr && table != start);
  return nullptr;
}

CastEntry* findCast(TypeDescriptor* source, TypeDescriptor* target) {
  CastEntry* head = target->cast;
  for (CastEntry* entry = head; entry != nullptr; entry = entry->next) {
    if (entry->type == source) {
      if (entry != head) {
        // Move to front: the next conversion from this type finds it first.
        entry->prev->next = entry->next;
        if (entry->next != nullptr) entry->next->prev = entry->prev;
        entry->next = head;
        entry->prev = nullptr;
        head->prev = entry;
        target->cast = entry;
      }
      return entry;
    }
  }
  for (CastEntry* entry = head; entry != nullptr; entry = entry->next) {
    if (std::strcmp(entry->type->name, source->name) == 0) return entry;
  }
  return nullptr;
}

// The one place where a proxy's ownership changes.
static int applyOwnership(ProxyRecord* record, int flags) {
  if ((flags & kRelease) == kRelease && !record->owned) return kReleaseRefused;
  if (flags & kDisown) record->owned = false;
  if (flags & kClear) record->ptr = nullptr;
  return kOk;
}

int convertRecord(ProxyRecord* record, void** out, TypeDescriptor* expected, int flags) {
  void* pointer = livePointer(record);
  if (expected != nullptr && record->type != expected) {
    CastEntry* cast = findCast(record->type, expected);
    if (cast == nullptr) return kTypeError;
    if (cast->converter != nullptr) {
      int newMemory = 0;
      pointer = cast->converter(pointer, &newMemory);
      check(newMemory == 0, "!newmemory");
    }
  }
  if (flags != 0) {
    int result = applyOwnership(record, flags);
    if (result < 0) return result;
  }
  if (out != nullptr) *out = pointer;
  return kOk;
}

int convertPointer(v8::Local<v8::Value> value, void** out, TypeDescriptor* expected, int flags) {
  if (value->IsNull()) {
    if (flags & kRefuseNull) return kNullReference;
    if (out != nullptr) *out = nullptr;
    return kOk;
  }
  if (!value->IsObject()) return kTypeError;
  ProxyRecord* record = recordOf(value.As<v8::Object>());
  if (record == nullptr) return kError;
  return convertRecord(record, out, expected, flags);
}

int pointerOf(v8::Local<v8::Value> value, void** out) {
  if (value->IsNull()) {
    *out = nullptr;
    return kOk;
  }
  if (!value->IsObject()) return kError;
  ProxyRecord* record = recordOf(value.As<v8::Object>());
  if (record == nullptr) return kError;
  *out = livePointer(record);
  return kOk;
}

}  // namespace orva::binding
