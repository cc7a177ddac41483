// What becomes of an exception that the script handler throws.
#pragma once

#include <v8.h>

namespace orva::bridge {

/// Hands the exception in `caught` to the environment the way Node.js hands
/// it an uncaught exception, when `process` has 'uncaughtException' listeners
/// or an uncaught-exception capture callback (applications report crashes
/// there); otherwise writes it to standard error. Either way the drain goes
/// on with the next event. `process` may be empty.
void reportHandlerError(v8::Local<v8::Context> context, v8::Local<v8::Object> process, const v8::TryCatch& caught);

}  // namespace orva::bridge
