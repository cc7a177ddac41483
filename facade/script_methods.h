// The wrapper's two hand-written script methods, registered on
// `OrvaEngineWrapper` through the same tables as its generated members. Both
// act on the event handler of the process-wide wrapper, whichever wrapper
// script calls them on.
#pragma once

#include <v8.h>

namespace orva::facade {

/// `setCallback(handler)`: the one script function that receives every
/// engine event, as handler(name, int1, int2, int3, str1, str2, payload).
void setCallback(const v8::FunctionCallbackInfo<v8::Value>& info);

/// `setVideoFrameRenderBuffer({buffer, id, userId, width, height})`: the
/// buffer that frames of that size are copied into; undefined or null
/// clears it.
void setVideoFrameRenderBuffer(const v8::FunctionCallbackInfo<v8::Value>& info);

}  // namespace orva::facade
