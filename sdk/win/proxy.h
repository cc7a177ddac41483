// Proxy objects: the script objects that stand for native pointers, their
// records, and their finalisation by the collector.
#pragma once

#include <v8.h>

#include "records.h"

namespace orva::binding {

/// Flag of `attach` and `newProxy`: the script side owns the object.
inline constexpr int kOwn = 1;

/// Attaches `pointer` of `type` to `object` (internal field 0) and makes the
/// object weak with the finaliser that fits its ownership.
void attach(v8::Isolate* isolate, v8::Local<v8::Object> object, void* pointer, TypeDescriptor* type, int flags);

/// A new proxy for `pointer` (null for a null pointer), made from the class
/// template of `type` or from the fallback template for types without one.
v8::Local<v8::Value> newProxy(v8::Isolate* isolate, void* pointer, TypeDescriptor* type, int flags);

/// Finaliser of records that do not own their object, and of types without
/// a class: forgets the record only.
void defaultFinalizer(const v8::WeakCallbackInfo<ProxyRecord>& data);

/// Drops the record of a collected proxy; shared by every finaliser.
void releaseRecord(ProxyRecord* record, v8::Isolate* isolate);

/// The per-class finaliser: deletes the native object when the proxy owns it.
/// `T` is the native class; `delete` runs its (possibly virtual) destructor.
template <class T>
void classFinalizer(const v8::WeakCallbackInfo<ProxyRecord>& data) {
  ProxyRecord* record = data.GetParameter();
  if (record->owned && record->ptr != nullptr) delete static_cast<T*>(record->ptr);
  releaseRecord(record, data.GetIsolate());
}

/// Replaces the fallback template (disposing the previous one).
void setFallbackTemplate(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> proxyTemplate);

/// Forgets the fallback template when its isolate goes away.
void resetFallbackTemplate();

/// `equals(other)` and `getCPtr()`, prototype methods of every class.
void equalsMethod(const v8::FunctionCallbackInfo<v8::Value>& info);
void getCPtrMethod(const v8::FunctionCallbackInfo<v8::Value>& info);

}  // namespace orva::binding
