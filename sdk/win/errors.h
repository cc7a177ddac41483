// Script errors raised by wrappers: always a plain `Error` with a fixed text,
// thrown on the current isolate. Building the exception is the cold path of
// every wrapper, so it lives out of line.
#pragma once

#include <v8.h>

#include <cstddef>

namespace orva::binding {

/// Throws `Error(message)`; the message is UTF-8 and taken whole.
[[gnu::cold]] void throwError(v8::Isolate* isolate, const char* message);
[[gnu::cold]] void throwError(v8::Isolate* isolate, const char* message, size_t length);

/// Inside a `catch (...)`: throws the native exception being handled as a
/// script Error, so that no C++ exception leaves a V8 callback. An
/// allocation failure reads "out of memory"; another `std::exception` its
/// own text (the containers' "key not found", "vector index out of range").
[[gnu::cold]] void throwNativeException(v8::Isolate* isolate);

/// Setter of every constant: assignment throws
/// "Tried to write read-only variable: <name>." and changes nothing.
void readOnlySetter(v8::Local<v8::Name> property, v8::Local<v8::Value> value,
                    const v8::PropertyCallbackInfo<void>& info);

/// Call handler of classes that script cannot construct; the handler data
/// holds the class's "Class <name> can not be instantiated" text.
void throwNotInstantiable(const v8::FunctionCallbackInfo<v8::Value>& info);

}  // namespace orva::binding
