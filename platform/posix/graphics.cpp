// Graphics adapters. Sharing a texture with the engine is a Direct3D feature,
// so no adapter qualifies here.
#include "platform/platform.h"

namespace orva::platform {

std::vector<GraphicsAdapter> graphicsAdapters() { return {}; }

}  // namespace orva::platform
