// The script-thread end of the queue.
#pragma once

#include <uv.h>

namespace orva::bridge {

/// The async callback: delivers queued events to the script handler, one
/// event per lock hold, until the queue is empty or a frame was delivered.
void drain(uv_async_t* handle);

}  // namespace orva::bridge
