// What the generator writes for the runtime: the whole script surface as one
// table (classes, their members and constants, the type table).
#pragma once

#include "records.h"

namespace orva::generated {

/// Classes and constants in registration order, and the module's type table.
const binding::Surface& surface();

}  // namespace orva::generated
