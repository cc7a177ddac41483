// The node-addon-api baseline of the binding benchmarks: the operations that
// run.sh measures, written the way a user of that library writes them.
// ObjectWrap classes around the same engine objects, instance methods and
// accessors, errors thrown without C++ exceptions.
#include <napi.h>

#include <memory>
#include <string>

#include "orva/sdk.h"

namespace {

// Constructors that wrappers need after initialisation, per environment.
struct AddonData {
  Napi::FunctionReference camera;
};

Napi::Value typeError(Napi::Env env, const char* message) {
  Napi::TypeError::New(env, message).ThrowAsJavaScriptException();
  return env.Undefined();
}

class ScreenCaptureModeListWrap : public Napi::ObjectWrap<ScreenCaptureModeListWrap> {
 public:
  static Napi::Function define(Napi::Env env) {
    return DefineClass(env, "ScreenCaptureModeList",
                       {InstanceMethod<&ScreenCaptureModeListWrap::get>("Get"),
                        InstanceMethod<&ScreenCaptureModeListWrap::add>("Add")});
  }

  explicit ScreenCaptureModeListWrap(const Napi::CallbackInfo& info) : ObjectWrap(info) {}

 private:
  Napi::Value get(const Napi::CallbackInfo& info) {
    if (info.Length() != 1 || !info[0].IsNumber()) {
      return typeError(info.Env(), "Get(index: number)");
    }
    return Napi::Number::New(info.Env(), list_.Get(info[0].As<Napi::Number>().Int32Value()));
  }

  Napi::Value add(const Napi::CallbackInfo& info) {
    if (info.Length() != 1 || !info[0].IsNumber()) {
      return typeError(info.Env(), "Add(mode: number)");
    }
    list_.Add(info[0].As<Napi::Number>().Int32Value());
    return info.Env().Undefined();
  }

  Orva::Rtc::ScreenCaptureModeList list_;
};

class RectWrap : public Napi::ObjectWrap<RectWrap> {
 public:
  static Napi::Function define(Napi::Env env) {
    return DefineClass(env, "Rect", {InstanceAccessor<&RectWrap::getX, &RectWrap::setX>("x")});
  }

  explicit RectWrap(const Napi::CallbackInfo& info) : ObjectWrap(info) {}

 private:
  Napi::Value getX(const Napi::CallbackInfo& info) { return Napi::Number::New(info.Env(), rect_.x); }

  void setX(const Napi::CallbackInfo& info, const Napi::Value& value) {
    if (!value.IsNumber()) {
      typeError(info.Env(), "x: number");
      return;
    }
    rect_.x = value.As<Napi::Number>().Int32Value();
  }

  Orva::Rtc::Rect rect_;
};

class VolumeInfoWrap : public Napi::ObjectWrap<VolumeInfoWrap> {
 public:
  static Napi::Function define(Napi::Env env) {
    return DefineClass(env, "VolumeInfo",
                       {InstanceAccessor<&VolumeInfoWrap::getUserId, &VolumeInfoWrap::setUserId>("userId")});
  }

  explicit VolumeInfoWrap(const Napi::CallbackInfo& info) : ObjectWrap(info) {}

 private:
  Napi::Value getUserId(const Napi::CallbackInfo& info) { return Napi::String::New(info.Env(), volume_.userId); }

  void setUserId(const Napi::CallbackInfo& info, const Napi::Value& value) {
    if (!value.IsString()) {
      typeError(info.Env(), "userId: string");
      return;
    }
    volume_.userId = value.As<Napi::String>().Utf8Value();
  }

  Orva::Rtc::VolumeInfo volume_;
};

// A camera of its own (`new Camera()`) or one borrowed from a list, which
// the list keeps; a borrowed camera is passed to the constructor as an
// External.
class CameraWrap : public Napi::ObjectWrap<CameraWrap> {
 public:
  static Napi::Function define(Napi::Env env) {
    return DefineClass(env, "Camera", {InstanceAccessor<&CameraWrap::getGuid, &CameraWrap::setGuid>("guid")});
  }

  explicit CameraWrap(const Napi::CallbackInfo& info) : ObjectWrap(info) {
    if (info.Length() == 1 && info[0].IsExternal()) {
      camera_ = info[0].As<Napi::External<Orva::Rtc::Camera>>().Data();
    } else {
      owned_ = std::make_unique<Orva::Rtc::Camera>();
      camera_ = owned_.get();
    }
  }

  Orva::Rtc::Camera* camera() const { return camera_; }

 private:
  Napi::Value getGuid(const Napi::CallbackInfo& info) { return Napi::String::New(info.Env(), camera_->guid); }

  void setGuid(const Napi::CallbackInfo& info, const Napi::Value& value) {
    if (!value.IsString()) {
      typeError(info.Env(), "guid: string");
      return;
    }
    camera_->guid = value.As<Napi::String>().Utf8Value();
  }

  std::unique_ptr<Orva::Rtc::Camera> owned_;
  Orva::Rtc::Camera* camera_ = nullptr;
};

class CameraListWrap : public Napi::ObjectWrap<CameraListWrap> {
 public:
  static Napi::Function define(Napi::Env env) {
    return DefineClass(env, "CameraList",
                       {InstanceMethod<&CameraListWrap::get>("Get"), InstanceMethod<&CameraListWrap::add>("Add")});
  }

  explicit CameraListWrap(const Napi::CallbackInfo& info) : ObjectWrap(info) {}

 private:
  Napi::Value get(const Napi::CallbackInfo& info) {
    Napi::Env env = info.Env();
    if (info.Length() != 1 || !info[0].IsNumber()) {
      return typeError(env, "Get(index: number)");
    }
    Orva::Rtc::Camera* camera = list_.Get(info[0].As<Napi::Number>().Int32Value());
    if (camera == nullptr) {
      return env.Null();
    }
    return env.GetInstanceData<AddonData>()->camera.New({Napi::External<Orva::Rtc::Camera>::New(env, camera)});
  }

  Napi::Value add(const Napi::CallbackInfo& info) {
    Napi::Env env = info.Env();
    if (info.Length() != 1 || !info[0].IsObject()) {
      return typeError(env, "Add(camera: Camera)");
    }
    CameraWrap* camera = CameraWrap::Unwrap(info[0].As<Napi::Object>());
    if (camera == nullptr) {
      return env.Undefined();
    }
    list_.Add(*camera->camera());
    return env.Undefined();
  }

  Orva::Rtc::CameraList list_;
};

Napi::Object init(Napi::Env env, Napi::Object exports) {
  auto* data = new AddonData();
  env.SetInstanceData(data);
  exports.Set("ScreenCaptureModeList", ScreenCaptureModeListWrap::define(env));
  exports.Set("Rect", RectWrap::define(env));
  exports.Set("VolumeInfo", VolumeInfoWrap::define(env));
  Napi::Function camera = CameraWrap::define(env);
  data->camera = Napi::Persistent(camera);
  exports.Set("Camera", camera);
  exports.Set("CameraList", CameraListWrap::define(env));
  return exports;
}

}  // namespace

NODE_API_MODULE(bench_napi, init)
