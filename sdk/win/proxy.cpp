#include "proxy.h"

#include <cstdint>

#include "errors.h"
#include "module.h"
#include "registry.h"

namespace orva::binding {
namespace {

// The `SwigProxy` template of the latest initialisation; script thread only.
v8::Persistent<v8::FunctionTemplate> gFallbackTemplate;
v8::Persistent<v8::ObjectTemplate> gFallbackInstance;

}  // namespace

void releaseRecord(ProxyRecord* record, v8::Isolate* isolate) {
  record->handle.ClearWeak();
  record->handle.Reset();
  isolate->AdjustAmountOfExternalAllocatedMemory(-kProxyExternalBytes);
  record->tag = 0;
  delete record;
}

void defaultFinalizer(const v8::WeakCallbackInfo<ProxyRecord>& data) {
  if (ProxyRecord* record = data.GetParameter()) releaseRecord(record, data.GetIsolate());
}

void attach(v8::Isolate* isolate, v8::Local<v8::Object> object, void* pointer, TypeDescriptor* type, int flags) {
  auto* record = new ProxyRecord{};
  isolate->AdjustAmountOfExternalAllocatedMemory(kProxyExternalBytes);
  record->tag = kProxyTag;
  record->ptr = pointer;
  record->owned = (flags & kOwn) != 0;
  record->type = type;
  object->SetAlignedPointerInInternalField(0, record);
  record->handle.Reset(isolate, object);
  Finalizer finalizer = record->owned && type->clientdata != nullptr ? type->clientdata->finalizer : defaultFinalizer;
  record->handle.SetWeak(record, finalizer, v8::WeakCallbackType::kParameter);
}

// Callers are API callbacks, which run inside a handle scope of their own.
v8::Local<v8::Value> newProxy(v8::Isolate* isolate, void* pointer, TypeDescriptor* type, int flags) {
  if (pointer == nullptr) return v8::Null(isolate);
  ClassClientData* data = type->clientdata;
  if (data != nullptr && data->instanceTemplate.IsEmpty()) buildClass(isolate, *data);
  v8::Local<v8::ObjectTemplate> instanceTemplate =
      data != nullptr ? data->instanceTemplate.Get(isolate) : gFallbackInstance.Get(isolate);
  v8::Local<v8::Object> object = instanceTemplate->NewInstance(isolate->GetCurrentContext()).ToLocalChecked();
  attach(isolate, object, pointer, type, flags);
  return object;
}

void setFallbackTemplate(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> proxyTemplate) {
  gFallbackTemplate.Reset(isolate, proxyTemplate);
  gFallbackInstance.Reset(isolate, proxyTemplate->InstanceTemplate());
}

void resetFallbackTemplate() {
  gFallbackTemplate.Reset();
  gFallbackInstance.Reset();
}

void equalsMethod(const v8::FunctionCallbackInfo<v8::Value>& info) {
  v8::Isolate* isolate = info.GetIsolate();
  if (info.Length() != 1) return throwError(isolate, "Illegal number of arguments for equals.");
  void* self = nullptr;
  if (pointerOf(info.This(), &self) < 0) return throwError(isolate, "Could not get pointer from 'this' object for equals.");
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
