// The settings file, read from real files.
#include <gtest/gtest.h>

#include <cstdio>
#include <utility>
#include <vector>

#include "diagnostics/settings_file.h"
#include "diagnostics/testing/temp_dir.h"

namespace orva::diagnostics {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;
using testing::writeFile;
using Pairs = std::vector<std::pair<std::string, std::string>>;

AddSetting collectInto(Pairs& pairs) {
  return [&pairs](const std::string& key, const std::string& value) { pairs.emplace_back(key, value); };
}

Pairs readLines(const std::string& content) {
  TempDir dir;
  writeFile(dir / "settings", content);
  std::FILE* file = std::fopen((dir / "settings").c_str(), "rb");
  Pairs pairs;
  readSettingsLines(file, collectInto(pairs));
  std::fclose(file);
  return pairs;
}

TEST(SettingsFile, LinesBecomeKeyValuePairs) {
  const std::string longValue(1021, 'v');  // "k:" and these fill one 1023-byte piece
  const struct {
    const char* name;
    std::string content;
    Pairs expected;
  } cases[] = {
      {"one line", "environment:dev\n", {{"environment", "dev"}}},
      {"second colon belongs to the value", "a:b:c\n", {{"a", "b:c"}}},
      {"blanks are kept", " key : value\n", {{" key ", " value"}}},
      {"CR LF and LF", "k1:v1\r\nk2:v2\n", {{"k1", "v1"}, {"k2", "v2"}}},
      {"no final line end", "k1:v1\nk2:v2", {{"k1", "v1"}, {"k2", "v2"}}},
      {"value ends at first CR", "k:v\rrest:x\n", {{"k", "v"}}},
      {"empty key and value", ":\n", {{"", ""}}},
      {"empty file", "", {}},
      {"lines without colon", "no colon\n\nanother\n", {}},
      {"in file order, duplicates too", "k:1\nk:2\n", {{"k", "1"}, {"k", "2"}}},
      {"long line is cut into pieces", "k:" + longValue + "tail:x\n", {{"k", longValue}, {"tail", "x"}}},
      {"long line rest without colon", "k:" + longValue + "rest\nn:1\n", {{"k", longValue}, {"n", "1"}}},
      {"NUL ends a piece's text", std::string("k\0:v\nn:1\n", 9), {{"n", "1"}}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(readLines(c.content), c.expected) << c.name;
  }
}

TEST(SettingsFile, FoundBesideTheModuleAfterItsLastSeparator) {
  TempDir dir;
  fs::create_directory(dir / "addon.d");
  writeFile(dir / "orva_setting.txt", "from:parent\n");
  writeFile(dir / "addon.d" / "orva_setting.txt", "from:beside\n");
  Pairs pairs;
  loadSettingsFileBeside((dir / "addon.d" / "orva.node").string(), '/', collectInto(pairs));
  EXPECT_EQ(pairs, (Pairs{{"from", "beside"}}));
}

TEST(SettingsFile, LoadIsSilentWhenThereIsNothingToRead) {
  TempDir dir;
  fs::create_directory(dir / "empty");
  fs::create_directory(dir / "unreadable");
  // A directory of that name exists and opens, but reading it fails.
  fs::create_directory(dir / "unreadable" / "orva_setting.txt");
  const std::string modules[] = {
      "orva.node",                                  // no separator at all
      (dir / "empty" / "orva.node").string(),       // no file
      (dir / "unreadable" / "orva.node").string(),  // read error
  };
  for (const std::string& module : modules) {
    Pairs pairs;
    loadSettingsFileBeside(module, '/', collectInto(pairs));
    EXPECT_TRUE(pairs.empty()) << module;
  }
}

}  // namespace
}  // namespace orva::diagnostics
