// Every record of the binding runtime, in one place.
//
// Threads: everything here is touched only on the thread of the isolate that
// owns the binding (see module.cpp); nothing is locked. Lifetimes: type
// descriptors, cast entries, the type table and class client data are static
// and live until the process ends; proxy records live from proxy creation to
// finalisation, or to the teardown of the environment that made them.
#pragma once

#include <v8.h>

#include <cstddef>
#include <cstdint>

namespace orva::binding {

struct CastEntry;
struct ClassClientData;
struct ProxyRecord;

/// One native pointer type that can cross into script.
struct TypeDescriptor {
  /// Mangled name, e.g. "_p_Orva__Rtc__Camera"; the table is sorted by it.
  const char* name;
  /// Readable alternatives joined by '|', e.g. "Orva::Rtc::Camera *|p_Orva__Rtc__Camera".
  const char* str;
  /// Dynamic down-cast hook; null for every type of this module.
  void* (*dcast)(void**);
  /// Head of the list of source types accepted where this type is expected.
  /// Filled when the table is first initialised; reordered move-to-front.
  CastEntry* cast;
  /// The script class of this type, or null for types without one.
  ClassClientData* clientdata;
  /// Whether the table owns `clientdata`; always 0 here.
  int owndata;
};

/// A cast converter: adjusts `ptr` and sets `*newmemory` when it allocated.
using CastConverter = void* (*)(void* ptr, int* newmemory);

/// One accepted source type in a descriptor's cast list.
struct CastEntry {
  /// The source type whose pointers are accepted.
  TypeDescriptor* type;
  /// Pointer adjustment; null means the pointer passes unchanged.
  CastConverter converter;
  CastEntry* next;
  CastEntry* prev;
};

/// The module's table of descriptors; tables of modules that share a context
/// form a ring through `next`.
struct ModuleTypeTable {
  /// The descriptors in use, sorted by mangled name, ended by a null entry.
  TypeDescriptor** types;
  /// Number of descriptors (without the null end).
  size_t size;
  /// Next table of the ring; null until the first initialisation, then the
  /// table itself when it is alone.
  ModuleTypeTable* next;
  /// This module's own descriptors, in the order of `types`.
  TypeDescriptor** typeInitial;
  /// Per descriptor, its initial cast entries: an array ended by an entry
  /// whose `type` is null.
  CastEntry** castInitial;
  /// Unused; kept for other modules that might share the ring.
  void* clientdata;
};

/// Weak-callback finaliser of one class.
using Finalizer = void (*)(const v8::WeakCallbackInfo<ProxyRecord>& data);

/// Deletes an owned native object of one class.
using Destroyer = void (*)(void* object);

/// Whether a container still holds an element it handed out.
using HoldsTest = bool (*)(void* container, const void* element);

struct ClassEntry;

/// Per script class: its templates and how its owned objects are deleted.
/// A class is built when script first reads it from the exports object or a
/// proxy of it is first made; until then its templates are empty.
/// `Persistent` on purpose: its destructor never touches V8, so process exit
/// after V8 has shut down leaves these alone.
struct ClassClientData {
  /// The `_exports_<Class>` template of the latest initialisation.
  v8::Persistent<v8::FunctionTemplate> classTemplate;
  /// Instance template of `classTemplate`, cached for proxy creation.
  v8::Persistent<v8::ObjectTemplate> instanceTemplate;
  /// The template of the class object script sees as `<Class>`.
  v8::Persistent<v8::FunctionTemplate> constructorTemplate;
  /// Deletes an owned native object of this class.
  Finalizer finalizer;
  /// What the class is made of; set at initialisation.
  const ClassEntry* entry;
};

/// How a proxy's object is borrowed from the proxy it was taken from.
enum Borrow : uint8_t {
  kNotBorrowed = 0,
  /// One of the owner's elements: valid while the owner still holds it.
  kElement = 1,
  /// A record embedded in the owner: valid while the owner is.
  kPart = 2,
};

/// The record behind every proxy: internal field 0 of the script object.
/// Ownership changes only in `applyOwnership` (type_registry.cpp).
struct ProxyRecord {
  /// `kProxyTag` while the record is alive.
  uint32_t tag;
  /// The script side owns `ptr`: the finaliser deletes it.
  bool owned;
  /// Whether and how `ptr` is borrowed from `owner`'s object.
  Borrow borrow;
  /// The native object; may be null. Read through `livePointer`, which
  /// turns a borrowed pointer its owner no longer backs into null.
  void* ptr;
  /// Type of `ptr`.
  TypeDescriptor* type;
  /// The proxy itself, weak so that the collector can reclaim it.
  v8::Persistent<v8::Object> handle;
  /// The record of the proxy `ptr` was borrowed from, or null. That proxy is
  /// kept alive by this one (a private property of this proxy holds it), so
  /// the record stays valid as long as this proxy can be used.
  ProxyRecord* owner;
};

inline constexpr uint32_t kProxyTag = 0x4f525641;  // "ORVA"

// Five words: a million proxies cost 40 MB of records (in 64-byte slots).
static_assert(sizeof(ProxyRecord) == 40, "ProxyRecord must stay five words");

/// External memory charged to V8 per proxy, whatever the native size: a
/// fixed figure keeps collection pressure proportional to proxy count.
inline constexpr int64_t kProxyExternalBytes = 1000;

/// A prototype method or static function of a script class.
struct MethodEntry {
  const char* name;
  v8::FunctionCallback callback;
};

/// An instance accessor of a script class.
struct FieldEntry {
  const char* name;
  v8::AccessorNameGetterCallback getter;
  v8::AccessorNameSetterCallback setter;
};

/// Everything the module initialiser needs to build one script class.
struct ClassEntry {
  /// Exported name, e.g. "Camera".
  const char* name;
  /// Template name, e.g. "_exports_Camera".
  const char* templateName;
  /// Index of the class's descriptor in the type table.
  size_t typeIndex;
  ClassClientData* clientData;
  Finalizer finalizer;
  Destroyer destroy;
  /// For containers that hand out elements: whether one is still held.
  HoldsTest holds;
  /// Constructor wrapper; null for classes script cannot construct.
  v8::FunctionCallback constructor;
  /// "Class <name> can not be instantiated", for classes without constructor.
  const char* notInstantiable;
  const MethodEntry* methods;
  size_t methodCount;
  const FieldEntry* fields;
  size_t fieldCount;
  const MethodEntry* statics;
  size_t staticCount;
  /// Registration index of the base class, or -1.
  int baseIndex;
};

/// A read-only integer property of the exports object.
struct ConstantEntry {
  const char* name;
  int32_t value;
};

/// The generated surface: classes and constants in registration order.
struct Surface {
  const ClassEntry* classes;
  size_t classCount;
  const ConstantEntry* constants;
  size_t constantCount;
  ModuleTypeTable* typeTable;
  /// Type-table indices of `char` and `std::string`: proxies of native text
  /// buffers are accepted wherever text is.
  size_t charTypeIndex;
  size_t stringTypeIndex;
};

}  // namespace orva::binding
