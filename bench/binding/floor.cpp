// The floor of the binding benchmarks: what a careful hand-written addon
// costs for the operations that run.sh measures. Each callback does the same
// conversion and the same engine call as the generated wrapper, with the
// checks such an addon would make (the receiver has an internal field, its
// pointer is set, the argument has the right script type) and nothing more:
// no type table, no casts, no ownership flags. The generated binding is
// measured against these figures.
//
// A proxy of the binding, borrowed or owned, is tracked until it is
// collected: a record, a weak handle and a fixed charge of external memory;
// and a proxy of a list's element keeps the list's proxy alive (a private
// property holds it). The floor's `Get` does the same, so that its figure is
// the cost of that contract; `GetUntracked` shows what skipping it would save.
//
// The script mechanisms are the generated binding's own (prototype methods
// from function templates, accessors on the instance template), so that the
// ratio shows the cost of the runtime and the wrappers, not of V8 choices.
#include <node.h>
#include <v8.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "orva/sdk.h"

namespace {

using v8::FunctionCallbackInfo;
using v8::Isolate;
using v8::Local;
using v8::Object;
using v8::PropertyCallbackInfo;
using v8::Value;

// One isolate only: the benchmark runs on the main thread. Eternal, so that
// nothing here touches V8 after it has shut down.
v8::Eternal<v8::ObjectTemplate> gCameraInstance;

v8::Local<v8::String> name(Isolate* isolate, const char* text) {
  return v8::String::NewFromUtf8(isolate, text, v8::NewStringType::kInternalized).ToLocalChecked();
}

void fail(Isolate* isolate, const char* message) {
  isolate->ThrowException(v8::Exception::TypeError(v8::String::NewFromUtf8(isolate, message).ToLocalChecked()));
}

// The native object behind a receiver, or null when it has none.
template <class T>
T* unwrap(Local<Object> object) {
  if (object->InternalFieldCount() < 1) {
    return nullptr;
  }
  return static_cast<T*>(object->GetAlignedPointerFromInternalField(0));
}

// The engine's `int` conversion: truncation toward zero, NaN as 0, saturated
// to 64 bits, then the low 32 bits.
bool toInt(Local<Value> value, int32_t* out) {
  if (!value->IsNumber()) {
    return false;
  }
  double number = value.As<v8::Number>()->Value();
  int64_t wide = 0;
  if (std::isnan(number)) {
    wide = 0;
  } else if (number >= 9223372036854775808.0) {
    wide = std::numeric_limits<int64_t>::max();
  } else if (number <= -9223372036854775808.0) {
    wide = std::numeric_limits<int64_t>::min();
  } else {
    wide = static_cast<int64_t>(number);
  }
  *out = static_cast<int32_t>(static_cast<uint32_t>(wide));
  return true;
}

// An object the script side owns: deleted when its proxy is collected.
template <class T>
struct Owned {
  T* object;
  v8::Global<Object> handle;
};

template <class T>
void finalize(const v8::WeakCallbackInfo<Owned<T>>& data) {
  Owned<T>* owned = data.GetParameter();
  owned->handle.Reset();
  delete owned->object;
  delete owned;
}

// The constructor of every class: a new native object owned by `this`.
template <class T>
void construct(const FunctionCallbackInfo<Value>& info) {
  Isolate* isolate = info.GetIsolate();
  if (!info.IsConstructCall() || info.This()->InternalFieldCount() < 1) {
    return fail(isolate, "use new");
  }
  auto* object = new T();
  info.This()->SetAlignedPointerInInternalField(0, object);
  auto* owned = new Owned<T>{object, v8::Global<Object>(isolate, info.This())};
  owned->handle.SetWeak(owned, finalize<T>, v8::WeakCallbackType::kParameter);
}

// --- ScreenCaptureModeList ---------------------------------------------------

void modeListGet(const FunctionCallbackInfo<Value>& info) {
  auto* self = unwrap<Orva::Rtc::ScreenCaptureModeList>(info.This());
  if (self == nullptr) {
    return fail(info.GetIsolate(), "not a ScreenCaptureModeList");
  }
  int32_t index = 0;
  if (info.Length() != 1 || !toInt(info[0], &index)) {
    return fail(info.GetIsolate(), "Get(index: number)");
  }
  info.GetReturnValue().Set(static_cast<int32_t>(self->Get(index)));
}

void modeListAdd(const FunctionCallbackInfo<Value>& info) {
  auto* self = unwrap<Orva::Rtc::ScreenCaptureModeList>(info.This());
  if (self == nullptr) {
    return fail(info.GetIsolate(), "not a ScreenCaptureModeList");
  }
  int32_t mode = 0;
  if (info.Length() != 1 || !toInt(info[0], &mode)) {
    return fail(info.GetIsolate(), "Add(mode: number)");
  }
  self->Add(mode);
}

// --- Rect ------------------------------------------------------------------

void rectXGet(Local<v8::Name>, const PropertyCallbackInfo<Value>& info) {
  auto* self = unwrap<Orva::Rtc::Rect>(info.Holder());
  if (self == nullptr) {
    return fail(info.GetIsolate(), "not a Rect");
  }
  info.GetReturnValue().Set(static_cast<int32_t>(self->x));
}

void rectXSet(Local<v8::Name>, Local<Value> value, const PropertyCallbackInfo<void>& info) {
  auto* self = unwrap<Orva::Rtc::Rect>(info.Holder());
  if (self == nullptr) {
    return fail(info.GetIsolate(), "not a Rect");
  }
  int32_t x = 0;
  if (!toInt(value, &x)) {
    return fail(info.GetIsolate(), "x: number");
  }
  self->x = x;
}

// --- VolumeInfo ------------------------------------------------------------

void volumeUserIdGet(Local<v8::Name>, const PropertyCallbackInfo<Value>& info) {
  auto* self = unwrap<Orva::Rtc::VolumeInfo>(info.Holder());
  if (self == nullptr) {
    return fail(info.GetIsolate(), "not a VolumeInfo");
  }
  const std::string& text = self->userId;
  info.GetReturnValue().Set(
      v8::String::NewFromUtf8(info.GetIsolate(), text.data(), v8::NewStringType::kNormal, static_cast<int>(text.size()))
          .ToLocalChecked());
}

void volumeUserIdSet(Local<v8::Name>, Local<Value> value, const PropertyCallbackInfo<void>& info) {
  Isolate* isolate = info.GetIsolate();
  auto* self = unwrap<Orva::Rtc::VolumeInfo>(info.Holder());
  if (self == nullptr) {
    return fail(isolate, "not a VolumeInfo");
  }
  if (!value->IsString()) {
    return fail(isolate, "userId: string");
  }
  // The engine's conversion: UTF-8, invalid sequences replaced.
  Local<v8::String> text = value.As<v8::String>();
  std::string converted(static_cast<size_t>(text->Utf8Length(isolate)), '\0');
  text->WriteUtf8(isolate, converted.data(), static_cast<int>(converted.size()), nullptr,
                  v8::String::NO_NULL_TERMINATION | v8::String::REPLACE_INVALID_UTF8);
  self->userId = std::move(converted);
}

// --- Camera and CameraList ---------------------------------------------------

void cameraGuidSet(Local<v8::Name>, Local<Value> value, const PropertyCallbackInfo<void>& info) {
  Isolate* isolate = info.GetIsolate();
  auto* self = unwrap<Orva::Rtc::Camera>(info.Holder());
  if (self == nullptr) {
    return fail(isolate, "not a Camera");
  }
  if (!value->IsString()) {
    return fail(isolate, "guid: string");
  }
  v8::String::Utf8Value text(isolate, value);
  self->guid.assign(*text, static_cast<size_t>(text.length()));
}

void cameraGuidGet(Local<v8::Name>, const PropertyCallbackInfo<Value>& info) {
  auto* self = unwrap<Orva::Rtc::Camera>(info.Holder());
  if (self == nullptr) {
    return fail(info.GetIsolate(), "not a Camera");
  }
  info.GetReturnValue().Set(v8::String::NewFromUtf8(info.GetIsolate(), self->guid.c_str()).ToLocalChecked());
}

void cameraListAdd(const FunctionCallbackInfo<Value>& info) {
  Isolate* isolate = info.GetIsolate();
  auto* self = unwrap<Orva::Rtc::CameraList>(info.This());
  if (self == nullptr) {
    return fail(isolate, "not a CameraList");
  }
  if (info.Length() != 1 || !info[0]->IsObject()) {
    return fail(isolate, "Add(camera: Camera)");
  }
  auto* camera = unwrap<Orva::Rtc::Camera>(info[0].As<Object>());
  if (camera == nullptr) {
    return fail(isolate, "Add(camera: Camera)");
  }
  self->Add(*camera);
}

// The key of the private property by which an element's proxy holds its list.
v8::Eternal<v8::Private> gOwnerKey;

// A borrowed element's proxy, tracked as the binding tracks every proxy.
struct Tracked {
  v8::Global<Object> handle;
};

void forget(const v8::WeakCallbackInfo<Tracked>& data) {
  Tracked* tracked = data.GetParameter();
  tracked->handle.Reset();
  data.GetIsolate()->AdjustAmountOfExternalAllocatedMemory(-1000);
  delete tracked;
}

template <bool kTrack>
void cameraListGet(const FunctionCallbackInfo<Value>& info) {
  Isolate* isolate = info.GetIsolate();
  auto* self = unwrap<Orva::Rtc::CameraList>(info.This());
  if (self == nullptr) {
    return fail(isolate, "not a CameraList");
  }
  int32_t index = 0;
  if (info.Length() != 1 || !toInt(info[0], &index)) {
    return fail(isolate, "Get(index: number)");
  }
  Orva::Rtc::Camera* camera = self->Get(index);
  if (camera == nullptr) {
    return info.GetReturnValue().SetNull();
  }
  Local<Object> proxy = gCameraInstance.Get(isolate)->NewInstance(isolate->GetCurrentContext()).ToLocalChecked();
  proxy->SetAlignedPointerInInternalField(0, camera);
  if constexpr (kTrack) {
    proxy->SetPrivate(isolate->GetCurrentContext(), gOwnerKey.Get(isolate), info.This()).Check();
    auto* tracked = new Tracked{v8::Global<Object>(isolate, proxy)};
    isolate->AdjustAmountOfExternalAllocatedMemory(1000);
    tracked->handle.SetWeak(tracked, forget, v8::WeakCallbackType::kParameter);
  }
  info.GetReturnValue().Set(proxy);
}

// --- registration ------------------------------------------------------------

template <class T>
v8::Local<v8::FunctionTemplate> newClass(Isolate* isolate, const char* className) {
  v8::Local<v8::FunctionTemplate> cls = v8::FunctionTemplate::New(isolate, construct<T>);
  cls->SetClassName(name(isolate, className));
  cls->InstanceTemplate()->SetInternalFieldCount(1);
  return cls;
}

void method(Isolate* isolate, v8::Local<v8::FunctionTemplate> cls, const char* methodName,
            v8::FunctionCallback callback) {
  cls->PrototypeTemplate()->Set(name(isolate, methodName), v8::FunctionTemplate::New(isolate, callback));
}

void field(Isolate* isolate, v8::Local<v8::FunctionTemplate> cls, const char* fieldName,
           v8::AccessorNameGetterCallback getter, v8::AccessorNameSetterCallback setter) {
  cls->InstanceTemplate()->SetAccessor(name(isolate, fieldName), getter, setter);
}

void publish(v8::Local<v8::Context> context, Local<Object> exports, const char* className,
             v8::Local<v8::FunctionTemplate> cls) {
  exports->Set(context, name(context->GetIsolate(), className), cls->GetFunction(context).ToLocalChecked()).Check();
}

void initialize(Local<Object> exports, Local<Value>, v8::Local<v8::Context> context, void*) {
  Isolate* isolate = context->GetIsolate();

  auto modeList = newClass<Orva::Rtc::ScreenCaptureModeList>(isolate, "ScreenCaptureModeList");
  method(isolate, modeList, "Get", modeListGet);
  method(isolate, modeList, "Add", modeListAdd);
  publish(context, exports, "ScreenCaptureModeList", modeList);

  auto rect = newClass<Orva::Rtc::Rect>(isolate, "Rect");
  field(isolate, rect, "x", rectXGet, rectXSet);
  publish(context, exports, "Rect", rect);

  auto volume = newClass<Orva::Rtc::VolumeInfo>(isolate, "VolumeInfo");
  field(isolate, volume, "userId", volumeUserIdGet, volumeUserIdSet);
  publish(context, exports, "VolumeInfo", volume);

  auto camera = newClass<Orva::Rtc::Camera>(isolate, "Camera");
  field(isolate, camera, "guid", cameraGuidGet, cameraGuidSet);
  gCameraInstance.Set(isolate, camera->InstanceTemplate());
  gOwnerKey.Set(isolate, v8::Private::New(isolate));
  publish(context, exports, "Camera", camera);

  auto cameraList = newClass<Orva::Rtc::CameraList>(isolate, "CameraList");
  method(isolate, cameraList, "Get", cameraListGet<true>);
  method(isolate, cameraList, "GetUntracked", cameraListGet<false>);
  method(isolate, cameraList, "Add", cameraListAdd);
  publish(context, exports, "CameraList", cameraList);
}

}  // namespace

NODE_MODULE_CONTEXT_AWARE(bench_floor, initialize)
