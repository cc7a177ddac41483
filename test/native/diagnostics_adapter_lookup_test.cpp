// Adapter keys against injected adapter lists.
#include <gtest/gtest.h>

#include "diagnostics/adapter_lookup.h"

namespace orva::diagnostics {
namespace {

using platform::GraphicsAdapter;

TEST(AdapterKey, ParsesTheFirstMarkerUnlessRejected) {
  const struct {
    const char* key;
    std::optional<KeyLuid> luid;
  } cases[] = {
      {"", std::nullopt},
      {"NVIDIA GeForce RTX 3060", std::nullopt},
      {"Google SwiftShader luid_1_2", std::nullopt},
      {"ANGLE (Direct3D9Ex) luid_1_2", std::nullopt},
      {"OpenGL luid_1_2", std::nullopt},
      {"opengl luid_1_2", KeyLuid{1, 2}},  // the renderer names are case-sensitive
      {"ANGLE (NVIDIA, Direct3D11) luid_4660_0", KeyLuid{4660, 0}},
      {"luid_-5_-1", KeyLuid{-5, -1}},
      {"luid_+7_ 8", KeyLuid{7, 8}},
      {"luid_4294967295_0", KeyLuid{-1, 0}},
      {"luid_1_2 luid_3_4", KeyLuid{1, 2}},
      {"luid_12", KeyLuid{12, 0}},
      {"luid_x_3", KeyLuid{0, 0}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(parseAdapterKey(c.key), c.luid) << c.key;
  }
}

TEST(AdapterKey, MatchesDescriptionAndBothLuidParts) {
  const std::vector<GraphicsAdapter> adapters = {
      {"NVIDIA GeForce RTX 3060", 0x1234, 0},
      {"Intel(R) UHD Graphics 630", 0xFFFF'FFFB, -1},
  };
  const struct {
    const char* key;
    const char* match;  // description of the adapter found, or null
    int listings;       // how often the adapter list was asked for
  } cases[] = {
      {"ANGLE (NVIDIA GeForce RTX 3060 Direct3D11) luid_4660_0", "NVIDIA GeForce RTX 3060", 1},
      {"luid_4660_0", nullptr, 1},
      {"NVIDIA GeForce RTX 3060 luid_4660_1", nullptr, 1},
      {"NVIDIA GeForce RTX 3060 OpenGL luid_4660_0", nullptr, 0},
      {"NVIDIA GeForce RTX 3060 luid 4660 0", nullptr, 0},
      {"Intel(R) UHD Graphics 630 luid_-5_-1", "Intel(R) UHD Graphics 630", 1},
      {"Intel(R) UHD Graphics 630 luid_4294967291_-1", "Intel(R) UHD Graphics 630", 1},
      {"Intel(R) UHD Graphics 630 luid_-5_4294967295", "Intel(R) UHD Graphics 630", 1},
      {"Intel(R) UHD Graphics 630 luid_-5_1", nullptr, 1},
  };
  for (const auto& c : cases) {
    int listings = 0;
    const AdapterSource source = [&] {
      ++listings;
      return std::vector<GraphicsAdapter>(adapters);
    };
    const std::optional<GraphicsAdapter> found = findAdapter(c.key, source);
    EXPECT_EQ(found ? found->description : "(none)", c.match ? c.match : "(none)") << c.key;
    EXPECT_EQ(isSupportShareTexture(c.key, source), c.match != nullptr) << c.key;
    EXPECT_EQ(listings, 2 * c.listings) << c.key;
  }
}

}  // namespace
}  // namespace orva::diagnostics
