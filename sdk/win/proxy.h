// Proxy objects: the script objects that stand for native pointers, their
// records, and their finalisation by the collector.
//
// Functions that make a proxy answer an empty handle when V8 could not make
// the object (an exception is then pending, e.g. for an exhausted stack);
// an owned object is deleted then, never leaked.
#pragma once

#include <v8.h>

#include <memory>
#include <vector>

#include "records.h"

namespace orva::binding {

/// Flag of `attach` and `newProxy`: the script side owns the object.
inline constexpr int kOwn = 1;

/// Attaches `pointer` of `type` to `object` (internal field 0) and makes the
/// object weak with the finaliser that fits its ownership.
void attach(v8::Isolate* isolate, v8::Local<v8::Object> object, void* pointer, TypeDescriptor* type, int flags);

/// Attaches a new object that the proxy owns from now on.
template <class T>
void attachOwned(v8::Isolate* isolate, v8::Local<v8::Object> object, std::unique_ptr<T> native, TypeDescriptor* type) {
  attach(isolate, object, native.get(), type, kOwn);
  native.release();
}

/// A new proxy for `pointer` (null for a null pointer), made from the class
/// template of `type` or from the fallback template for types without one.
v8::Local<v8::Value> newProxy(v8::Isolate* isolate, void* pointer, TypeDescriptor* type, int flags);

/// A new proxy that owns `native`.
template <class T>
v8::Local<v8::Value> newOwnedProxy(v8::Isolate* isolate, std::unique_ptr<T> native, TypeDescriptor* type) {
  v8::Local<v8::Value> proxy = newProxy(isolate, native.get(), type, kOwn);
  if (!proxy.IsEmpty()) native.release();
  return proxy;
}

/// A new proxy for `pointer`, borrowed (`borrow`) from the object of the
/// proxy `owner`. The new proxy keeps `owner` alive, and reads as null once
/// the owner no longer backs `pointer`.
v8::Local<v8::Value> newBorrowedProxy(v8::Isolate* isolate, void* pointer, TypeDescriptor* type,
                                      v8::Local<v8::Object> owner, Borrow borrow);

/// A script array of owned proxies of copies of `values`.
template <class T>
v8::Local<v8::Value> ownedCopies(v8::Isolate* isolate, const std::vector<T>& values, TypeDescriptor* type) {
  v8::EscapableHandleScope scope(isolate);
  v8::Local<v8::Context> context = isolate->GetCurrentContext();
  v8::Local<v8::Array> array = v8::Array::New(isolate, static_cast<int>(values.size()));
  for (uint32_t i = 0; i < values.size(); ++i) {
    v8::Local<v8::Value> element = newOwnedProxy(isolate, std::make_unique<T>(values[i]), type);
    // Own data properties: a setter script put on Array.prototype is never run.
    if (element.IsEmpty() || array->CreateDataProperty(context, i, element).IsNothing()) return {};
  }
  return scope.Escape(array);
}

/// The record's native pointer, or null when it is borrowed and its owner
/// no longer backs it (then the record forgets it for good).
void* borrowedPointer(ProxyRecord* record);
inline void* livePointer(ProxyRecord* record) {
  if (record->owner == nullptr) [[likely]] {
    return record->ptr;
  }
  return borrowedPointer(record);
}

/// Deletes the native object when the record owns one, and forgets it.
void deleteOwnedObject(ProxyRecord* record);

/// Forgets a record: its handle, its place in the live list, its memory.
void releaseRecord(ProxyRecord* record, v8::Isolate* isolate);

/// Finaliser of records that do not own their object, and of types without
/// a class: forgets the record only.
void defaultFinalizer(const v8::WeakCallbackInfo<ProxyRecord>& data);

/// Deletes an owned object of class `T` (its possibly virtual destructor runs).
template <class T>
void destroyAs(void* object) {
  delete static_cast<T*>(object);
}

/// The per-class finaliser: deletes the native object when the proxy owns it.
template <class T>
void classFinalizer(const v8::WeakCallbackInfo<ProxyRecord>& data) {
  ProxyRecord* record = data.GetParameter();
  if (record->owned && record->ptr != nullptr) destroyAs<T>(record->ptr);
  releaseRecord(record, data.GetIsolate());
}

/// Sets up what proxies need in `isolate`: the fallback template for types
/// without a class, replacing the previous one, and (once per isolate) the
/// key by which a borrowed proxy holds its owner.
void setProxyTemplates(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> fallback);

/// Forgets the template and the key when their isolate goes away.
void resetProxyTemplates();

/// `equals(other)` and `getCPtr()`, prototype methods of every class.
void equalsMethod(const v8::FunctionCallbackInfo<v8::Value>& info);
void getCPtrMethod(const v8::FunctionCallbackInfo<v8::Value>& info);

}  // namespace orva::binding
