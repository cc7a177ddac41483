#include "proxy.h"

#include <cstdint>

#include "errors.h"
#include "generated_module.h"
#include "module.h"
#include "record_arena.h"
#include "registry.h"
#include "v8_compat.h"

namespace orva::binding {
namespace {

// Script thread of the owning isolate. The `SwigProxy` template of the
// latest initialisation, and the private key by which a borrowed proxy holds
// its owner (kept for the isolate's whole ownership).
v8::Persistent<v8::ObjectTemplate> gFallbackInstance;
v8::Persistent<v8::Private> gOwnerKey;

// The class data of this module for `type`, or null for a type without a
// class. A descriptor may be shared with another copy of this module loaded
// into the same context (the descriptors of a context's modules are shared
// by name), and then names that copy's class: its templates call that copy's
// wrappers, which know only that copy's records, and its finaliser gives
// records back to that copy's arena. Proxies of this module are made and
// finalised with this module's own classes.
ClassClientData* ownClass(TypeDescriptor* type) {
  ClassClientData* data = type->clientdata;
  const Surface& module = generated::surface();
  const bool own =
      data == nullptr || (data->entry >= module.classes && data->entry < module.classes + module.classCount);
  if (own) [[likely]] {
    return data;
  }
  for (size_t i = 0; i < module.classCount; ++i) {
    if (typeAt(module.classes[i].typeIndex) == type) return module.classes[i].clientData;
  }
  return nullptr;
}

}  // namespace

void deleteOwnedObject(ProxyRecord* record) {
  if (!record->owned || record->ptr == nullptr) return;
  ClassClientData* data = ownClass(record->type);
  if (data != nullptr && data->entry != nullptr) data->entry->destroy(record->ptr);
  record->owned = false;
  record->ptr = nullptr;
}

void releaseRecord(ProxyRecord* record, v8::Isolate* isolate) {
  record->handle.ClearWeak();
  record->handle.Reset();
  isolate->AdjustAmountOfExternalAllocatedMemory(-kProxyExternalBytes);
  record->~ProxyRecord();
  freeRecordSlot(record);
}

void defaultFinalizer(const v8::WeakCallbackInfo<ProxyRecord>& data) {
  if (ProxyRecord* record = data.GetParameter()) releaseRecord(record, data.GetIsolate());
}

namespace {

ProxyRecord* attachRecord(v8::Isolate* isolate, v8::Local<v8::Object> object, void* pointer, TypeDescriptor* type,
                          int flags) {
  auto* record = new (allocateRecordSlot()) ProxyRecord{};
  isolate->AdjustAmountOfExternalAllocatedMemory(kProxyExternalBytes);
  record->tag = kProxyTag;
  record->ptr = pointer;
  record->owned = (flags & kOwn) != 0;
  record->type = type;
  setAlignedPointerAt(object, 0, record);
  record->handle.Reset(isolate, object);
  ClassClientData* data = record->owned ? ownClass(type) : nullptr;
  Finalizer finalizer = data != nullptr ? data->finalizer : defaultFinalizer;
  record->handle.SetWeak(record, finalizer, v8::WeakCallbackType::kParameter);
  return record;
}

// A new object of `type`'s class (or the fallback class) for a non-null
// pointer, made in `context`; empty when V8 could not make it.
v8::Local<v8::Object> newInstance(v8::Isolate* isolate, TypeDescriptor* type, v8::Local<v8::Context> context) {
  ClassClientData* data = ownClass(type);
  if (data != nullptr && data->instanceTemplate.IsEmpty()) buildClass(isolate, *data);
  v8::Local<v8::ObjectTemplate> instanceTemplate =
      data != nullptr ? data->instanceTemplate.Get(isolate) : gFallbackInstance.Get(isolate);
  return instanceTemplate->NewInstance(context).FromMaybe(v8::Local<v8::Object>());
}

}  // namespace

void attach(v8::Isolate* isolate, v8::Local<v8::Object> object, void* pointer, TypeDescriptor* type, int flags) {
  attachRecord(isolate, object, pointer, type, flags);
}

// Callers are API callbacks, which run inside a handle scope of their own.
v8::Local<v8::Value> newProxy(v8::Isolate* isolate, void* pointer, TypeDescriptor* type, int flags) {
  if (pointer == nullptr) return v8::Null(isolate);
  v8::Local<v8::Object> object = newInstance(isolate, type, isolate->GetCurrentContext());
  if (!object.IsEmpty()) attachRecord(isolate, object, pointer, type, flags);
  return object;
}

v8::Local<v8::Value> newBorrowedProxy(v8::Isolate* isolate, void* pointer, TypeDescriptor* type,
                                      v8::Local<v8::Object> owner, Borrow borrow) {
  if (pointer == nullptr) return v8::Null(isolate);
  // A method runs in the context it was made in, its class's. A part is read
  // through an accessor, which runs in the context of the code reading it (a
  // `vm` context the owner was handed to): the part is made beside its owner.
  v8::Local<v8::Context> context = isolate->GetCurrentContext();
  if (borrow == kPart) {
    v8::Local<v8::Context> ownerContext;
    if (creationContextOf(isolate, owner).ToLocal(&ownerContext)) context = ownerContext;
  }
  v8::Local<v8::Object> object = newInstance(isolate, type, context);
  if (object.IsEmpty()) return object;
  ProxyRecord* record = attachRecord(isolate, object, pointer, type, 0);
  // The owner is this module's proxy: the wrapper converted it as its receiver.
  record->owner = recordOf(owner);
  record->borrow = borrow;
  if (object->SetPrivate(context, gOwnerKey.Get(isolate), owner).IsNothing()) return {};
  return object;
}

void* borrowedPointer(ProxyRecord* record) {
  if (record->ptr == nullptr) return nullptr;
  ProxyRecord* owner = record->owner;
  void* container = livePointer(owner);
  bool backed = container != nullptr;
  if (backed && record->borrow == kElement) {
    // Only containers hand out elements, and every container class says how
    // to tell whether it still holds one.
    ClassClientData* data = ownClass(owner->type);
    const ClassEntry* entry = data != nullptr ? data->entry : nullptr;
    backed = entry != nullptr && entry->holds != nullptr && entry->holds(container, record->ptr);
  }
  if (!backed) record->ptr = nullptr;
  return record->ptr;
}

void setProxyTemplates(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> fallback) {
  if (gOwnerKey.IsEmpty()) gOwnerKey.Reset(isolate, v8::Private::New(isolate));
  gFallbackInstance.Reset(isolate, fallback->InstanceTemplate());
}

void resetProxyTemplates() {
  gFallbackInstance.Reset();
  gOwnerKey.Reset();
}

void equalsMethod(const v8::FunctionCallbackInfo<v8::Value>& info) {
  v8::Isolate* isolate = info.GetIsolate();
  if (info.Length() != 1) return throwError(isolate, "Illegal number of arguments for equals.");
  void* self = nullptr;
  if (pointerOf(info.This(), &self) < 0) {
    return throwError(isolate, "Could not get pointer from 'this' object for equals.");
  }
  void* other = nullptr;
  if (pointerOf(info[0], &other) < 0) return throwError(isolate, "in method 'equals', argument 1 of type 'void *'");
  info.GetReturnValue().Set(self == other);
}

void getCPtrMethod(const v8::FunctionCallbackInfo<v8::Value>& info) {
  void* self = nullptr;
  if (pointerOf(info.This(), &self) < 0) {
    return throwError(info.GetIsolate(), "in method 'getCPtr', argument 1 of type 'void *'");
  }
  // An identifying number, not an address: the low 32 bits, signed.
  info.GetReturnValue().Set(static_cast<int32_t>(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(self))));
}

}  // namespace orva::binding
