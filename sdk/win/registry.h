// The type registry: the module's table of descriptors, its attachment to
// each script context, and the conversion of script values back to native
// pointers along the declared casts.
#pragma once

#include <v8.h>

#include "proxy.h"
#include "record_arena.h"
#include "records.h"
#include "v8_compat.h"

namespace orva::binding {

/// Result codes of converters; any negative code is a failure.
enum Result : int {
  kOk = 0,
  kError = -1,             ///< no proxy record behind the value
  kTypeError = -5,         ///< wrong script type, or no cast between the types
  kOverflow = -7,          ///< value outside the target type's range
  kNullReference = -13,    ///< null where null is refused
  kReleaseRefused = -200,  ///< release of an object the script side does not own
};

/// Ownership flags of pointer conversion.
enum OwnershipFlags : int {
  kDisown = 1,      ///< the native side takes the object over
  kRefuseNull = 4,  ///< null fails with kNullReference
  kClear = 8,       ///< the proxy's pointer becomes null
  kRelease = kDisown | kClear,
};

/// The table in use: set by `initTypeTable`, read by generated code.
ModuleTypeTable* typeTable();

/// The descriptor at `index` of the table in use.
inline TypeDescriptor* typeAt(size_t index) { return typeTable()->types[index]; }

/// Installs `table` (once per process) and links it to `context` through the
/// context's private "swig_module_info_data" (once per context).
void initTypeTable(ModuleTypeTable* table, v8::Local<v8::Context> context);

/// The table attached to `context`, or null.
ModuleTypeTable* tableOfContext(v8::Local<v8::Context> context);

/// Binary search by mangled name over every table of the ring of `start`.
TypeDescriptor* findType(ModuleTypeTable* start, const char* mangledName);

/// The entry of `target`'s cast list that accepts `source`, moved to the
/// front of the list; null when `source` is not accepted.
CastEntry* findCast(TypeDescriptor* source, TypeDescriptor* target);

/// The proxy record of `object`, or null when the object is not one of this
/// module's proxies. Another addon's object, or one of Node.js's own, may
/// keep anything in an internal field: what is there is taken for a record
/// only once it is known to point at one of the record arena's slots. (Only
/// objects made from templates have their internal field read as a pointer
/// without a check that ends the process when it is none.)
inline ProxyRecord* recordOf(v8::Local<v8::Object> object) {
  if (object->InternalFieldCount() != 1 || !object->IsApiWrapper()) return nullptr;
  void* slot = alignedPointerAt(object, 0);
  if (!isRecordSlot(slot)) return nullptr;
  auto* record = static_cast<ProxyRecord*>(slot);
  return record->tag == kProxyTag ? record : nullptr;
}

/// Converts a proxy record's pointer to `expected` (null: no type check) and
/// applies `flags`. The slow half of `convertPointer`.
int convertRecord(ProxyRecord* record, void** out, TypeDescriptor* expected, int flags);

/// Script value to native pointer: null, or a proxy of `expected` or of a
/// type castable to it.
int convertPointer(v8::Local<v8::Value> value, void** out, TypeDescriptor* expected, int flags);

/// The pointer of a proxy without a type check, for `equals` and `getCPtr`.
int pointerOf(v8::Local<v8::Value> value, void** out);

/// Converts the receiver `object` of a wrapper; false when it is not a proxy
/// of `expected` (or of a type castable to it).
template <class T>
inline bool asSelf(v8::Local<v8::Object> object, TypeDescriptor* expected, T** out) {
  ProxyRecord* record = recordOf(object);
  if (record == nullptr) return false;
  if (record->type == expected) [[likely]] {
    *out = static_cast<T*>(livePointer(record));
    return true;
  }
  void* pointer = nullptr;
  if (convertRecord(record, &pointer, expected, 0) < 0) return false;
  *out = static_cast<T*>(pointer);
  return true;
}

}  // namespace orva::binding
