// Building script classes: the template factory and member registration.
#pragma once

#include <v8.h>

namespace orva::binding {

/// A function template named `className` without call handler, with one
/// internal field per instance and the prototype methods `equals` and
/// `getCPtr`.
v8::Local<v8::FunctionTemplate> newClassTemplate(v8::Isolate* isolate, const char* className);

/// Sets a prototype method `name` calling `callback`.
void addMethod(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> classTemplate, const char* name,
               v8::FunctionCallback callback);

/// Adds an instance accessor `name`.
void addField(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> classTemplate, const char* name,
              v8::AccessorNameGetterCallback getter, v8::AccessorNameSetterCallback setter);

/// Gives every function made from `classObject` a property `name`: a
/// function named so, calling `callback`.
void addStaticFunction(v8::Isolate* isolate, v8::Local<v8::FunctionTemplate> classObject, const char* name,
                       v8::FunctionCallback callback);

/// Defines `target[name]` as a read-only accessor whose getter returns
/// `value`; false when `target` threw (its exception is pending).
bool addConstant(v8::Local<v8::Context> context, v8::Local<v8::Object> target, const char* name,
                 v8::Local<v8::Value> value);

/// An internalized string from a C literal (names of properties and classes).
v8::Local<v8::String> symbol(v8::Isolate* isolate, const char* text);

}  // namespace orva::binding
