// The module initialiser and the on-demand building of classes.
#pragma once

#include <v8.h>

#include "records.h"

namespace orva::binding {

/// Node.js's context-aware entry: attaches the type table and puts every
/// constant and class on `exports`.
void initialize(v8::Local<v8::Object> exports, v8::Local<v8::Value> module, v8::Local<v8::Context> context, void* priv);

/// Builds the templates of the class behind `data` (and of its base) unless
/// they exist.
void buildClass(v8::Isolate* isolate, ClassClientData& data);

}  // namespace orva::binding
