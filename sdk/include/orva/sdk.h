// Everything the engine library declares.
#pragma once

#include "orva/defines.h"
#include "orva/engine.h"
#include "orva/export.h"
#include "orva/listeners.h"
#include "orva/lists.h"
#include "orva/records.h"
#include "orva/services.h"
