// What generated wrappers use: the runtime records, converters, proxies and
// the call state. Hand-written members that register through the same tables
// use it too.
#pragma once

#include <v8.h>

#include "call.h"
#include "convert.h"
#include "errors.h"
#include "proxy.h"
#include "records.h"
#include "registry.h"
#include "v8_compat.h"
