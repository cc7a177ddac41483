// Whether the engine can share a texture with a script-side graphics adapter.
//
// The script side names its adapter by a key text that holds the adapter's
// description and, after the marker "luid_", its locally unique identifier as
// two signed decimals "<low>_<high>". Sharing works exactly when a system
// adapter has that description (anywhere in the key) and that identifier.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace orva::diagnostics {

/// An adapter identifier as the key writes it.
struct KeyLuid {
  int32_t low;
  int32_t high;

  bool operator==(const KeyLuid&) const = default;
};

/// The identifier in `key`, or nothing when the key is empty, has no
/// "luid_", or names a renderer that cannot share textures ("SwiftShader",
/// "Direct3D9", "OpenGL"). The numbers are read as scanf's "luid_%d_%d" reads
/// them from the first marker on; a number that is missing reads as 0.
std::optional<KeyLuid> parseAdapterKey(const std::string& key);

/// True when the adapter's description occurs in `key` and its identifier
/// equals `luid` bit for bit.
bool adapterMatches(const platform::GraphicsAdapter& adapter, const std::string& key, KeyLuid luid);

/// Lists the system's adapters.
using AdapterSource = std::function<std::vector<platform::GraphicsAdapter>()>;

/// The first adapter that matches `key`. The list is only asked for when the
/// key itself can match at all.
std::optional<platform::GraphicsAdapter> findAdapter(const std::string& key, const AdapterSource& adapters);

/// True when an adapter matches `key`.
bool isSupportShareTexture(const std::string& key, const AdapterSource& adapters = platform::graphicsAdapters);

}  // namespace orva::diagnostics
