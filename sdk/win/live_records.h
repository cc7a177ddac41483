// The records of every proxy alive in the environment that owns the binding.
//
// V8 runs no weak callbacks when an isolate is disposed: a worker that ends,
// or an Electron renderer that reloads, would leave every record and every
// native object its proxies own behind. The environment's teardown releases
// them here instead, while its isolate is still alive.
//
// Script thread of the owning isolate only (module.cpp); nothing is locked.
#pragma once

#include <v8.h>

namespace orva::binding {

/// Deletes the native object of every owning record, then every record:
/// the environment goes away and no script will use them again.
void releaseLiveRecords(v8::Isolate* isolate);

}  // namespace orva::binding
