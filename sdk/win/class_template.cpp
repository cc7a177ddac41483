#include "class_template.h"

#include "errors.h"
#include "proxy.h"
#include "v8_compat.h"

namespace orva::binding {
namespace {

void constantGetter(v8::Local<v8::Name> /*property*/, const v8::PropertyCallbackInfo<v8::Value>& info) {
  info.GetReturnValue().Set(info.Data());
}

}  // namespace

v8::Local<v8::String> symbol(v8::Isolate* isolate, const char* text) {
  // Names are short literals of this module: no script can make this fail.
  return v8::String::NewFromUtf8(isolate, text, v8::NewStringType::kInternalized).ToLocalChecked();
}

v8::Local<v8::FunctionTemplate> newClassTemplate(v8::Isolate* isolate, const char* className) {
  v8::EscapableHandleScope scope(isolate);
  v8::Local<v8::FunctionTemplate> classTemplate = v8::FunctionTemplate::New(isolate);
  classTemplate->SetClassName(symbol(isolate, className));
  classTemplate->InstanceTemplate()->SetInternalFieldCount(1);
  addMethod(isolate, classTemplate, "equals", equalsMethod);
  addMethod(isolate, classTemplate, "getCPtr", getCPtrMethod);
  return scope.Escape(classTemplate);
}

void addMethod(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> classTemplate, const char* name,
               v8::FunctionCallback callback) {
  classTemplate->PrototypeTemplate()->Set(symbol(isolate, name), v8::FunctionTemplate::New(isolate, callback));
}

// Fields and constants are native data properties: own properties of each
// instance (of the exports object) that run native code when read or
// assigned, and that script sees as plain writable data properties.
void addField(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> classTemplate, const char* name,
              v8::AccessorNameGetterCallback getter, v8::AccessorNameSetterCallback setter) {
  classTemplate->InstanceTemplate()->SetNativeDataProperty(symbol(isolate, name), getter, setter);
}

void addStaticFunction(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> classObject, const char* name,
                       v8::FunctionCallback callback) {
  v8::Local<v8::FunctionTemplate> function = v8::FunctionTemplate::New(isolate, callback);
  function->SetClassName(symbol(isolate, name));
  classObject->Set(symbol(isolate, name), function);
}

bool addConstant(v8::Local<v8::Context> context, v8::Local<v8::Object> target, const char* name,
                 v8::Local<v8::Value> value) {
  v8::Isolate* isolate = isolateOf(context);
  return target->SetNativeDataProperty(context, symbol(isolate, name), constantGetter, readOnlySetter, value).IsJust();
}

}  // namespace orva::binding
