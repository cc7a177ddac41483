#include "errors.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

#include "v8_compat.h"

namespace orva::binding {

namespace {

constexpr const char* kOutOfMemory = "out of memory";
constexpr const char* kUnknownException = "native code threw an exception that is not a std::exception";

}  // namespace

void throwError(v8::Isolate* isolate, const char* message, size_t length) {
  v8::Local<v8::String> text;
  // Only a text beyond V8's longest string can fail; its start still tells what failed.
  if (!v8::String::NewFromUtf8(isolate, message, v8::NewStringType::kNormal, static_cast<int>(length)).ToLocal(&text)) {
    text = v8::String::NewFromUtf8(isolate, message, v8::NewStringType::kNormal, 1024).ToLocalChecked();
  }
  isolate->ThrowException(v8::Exception::Error(text));
}

void throwError(v8::Isolate* isolate, const char* message) { throwError(isolate, message, std::strlen(message)); }

void throwNativeException(v8::Isolate* isolate) {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    throwError(isolate, kOutOfMemory);
  } catch (const std::exception& error) {
    throwError(isolate, error.what());
  } catch (...) {
    throwError(isolate, kUnknownException);
  }
}

void readOnlySetter(v8::Local<v8::Name> property, v8::Local<v8::Value> /*value*/,
                    const v8::PropertyCallbackInfo<void>& info) {
  v8::Isolate* isolate = info.GetIsolate();
  // The name is written through a bounded buffer: at most 256 bytes of it.
  char name[257];
  char message[320];
  v8::Local<v8::String> text;
  if (property->IsString() && property->ToString(isolate->GetCurrentContext()).ToLocal(&text)) {
    name[writeUtf8(isolate, text, name, 256)] = '\0';
    int length = std::snprintf(message, sizeof message, "Tried to write read-only variable: %s.", name);
    if (length > 0 && static_cast<size_t>(length) < sizeof message) {
      throwError(isolate, message, static_cast<size_t>(length));
      return;
    }
  }
  throwError(isolate, "Tried to write read-only variable.");
}

void throwNotInstantiable(const v8::FunctionCallbackInfo<v8::Value>& info) {
  auto* message = static_cast<const char*>(info.Data().As<v8::External>()->Value());
  throwError(info.GetIsolate(), message);
}

}  // namespace orva::binding
