// Capture-mode lists by Windows version, and source identifiers.
#include "facade/capture_modes.h"

#include <gtest/gtest.h>

namespace orva::facade {
namespace {

using platform::OsVersion;

// Test the lists on each side of the two versions that add modes (6.2.9200
// and 10.0.18362), compared field by field: a higher major or minor wins
// whatever follows it, the build counts only under the same major and minor.
TEST(CaptureModes, ListsByVersion) {
  const struct {
    OsVersion version;
    std::vector<int> screen;
    std::vector<int> window;
  } cases[] = {
      {{0, 0, 0}, {0, 3}, {0, 2}},           {{6, 1, 7601}, {0, 3}, {0, 2}},
      {{6, 1, 99999}, {0, 3}, {0, 2}},       {{6, 2, 9200}, {0, 2, 3}, {0, 2}},
      {{6, 3, 0}, {0, 2, 3}, {0, 2}},        {{9, 99, 99999}, {0, 2, 3}, {0, 2}},
      {{10, 0, 18361}, {0, 2, 3}, {0, 2}},   {{10, 0, 18362}, {0, 1, 2, 3}, {0, 1, 2}},
      {{10, 1, 0}, {0, 1, 2, 3}, {0, 1, 2}}, {{11, 0, 0}, {0, 1, 2, 3}, {0, 1, 2}},
  };
  for (const auto& c : cases) {
    const std::string version =
        std::to_string(c.version.major) + "." + std::to_string(c.version.minor) + "." + std::to_string(c.version.build);
    EXPECT_EQ(screenCaptureModes(c.version), c.screen) << version;
    EXPECT_EQ(windowCaptureModes(c.version), c.window) << version;
  }
}

TEST(CaptureModes, SourceIdParsesLikeStrtoll) {
  const struct {
    const char* text;
    int64_t id;
  } cases[] = {
      {"65537", 65537},
      {"  \t42abc", 42},
      {"-7", -7},
      {"+5", 5},
      {"12 34", 12},
      {"", 0},
      {"abc", 0},
      {"-", 0},
      {"9223372036854775807", INT64_MAX},
      {"9223372036854775808", INT64_MAX},
      {"18446744073709551615", INT64_MAX},
      {"-9223372036854775808", INT64_MIN},
      {"-99999999999999999999", INT64_MIN},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(parseSourceId(c.text), c.id) << '"' << c.text << '"';
  }
}

}  // namespace
}  // namespace orva::facade
