// What the wrapper's two hand-written script methods do in the bridge. The
// methods themselves, which find the wrapper, are the facade's.
#pragma once

#include <v8.h>

namespace orva::bridge {

struct WrapperState;

/// Makes `handler` the one script function of `isolate`'s environment that
/// receives every event of `state`, as handler(name, int1, int2, int3, str1,
/// str2, payload). Nothing without a state, or after the environment's 'exit'.
void bindScriptHandler(WrapperState* state, v8::Isolate* isolate, v8::Local<v8::Value> handler);

/// Reads `options` ({buffer, id, userId, width, height}) and makes its buffer
/// the one that frames of that size are copied into; anything but an object
/// clears the registration. Nothing without a state. What script's getters
/// and conversions throw is left for script.
void registerRenderBuffer(WrapperState* state, v8::Isolate* isolate, v8::Local<v8::Value> options);

}  // namespace orva::bridge
