// The thin engine calls of diagnostics/ against the loopback engine: settings
// read and written through the engine's Settings, reports through its
// crash-report statics.
#include <gtest/gtest.h>

#include "control.h"
#include "diagnostics/engine_calls.h"
#include "diagnostics/testing/temp_dir.h"
#include "orva/lists.h"

namespace orva::diagnostics {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const char* kUnset = "(unset)";

TEST(PrepareEngineLog, EmptyDirectoryNamesNoLogFile) {
  Orva::Rtc::Settings settings;
  prepareEngineLog(settings, "");
  EXPECT_EQ(settings.get("media.global.log.file", kUnset), kUnset);
}

TEST(PrepareEngineLog, ReadsCleanupSettingsAndAddsTheLogFile) {
  const struct {
    const char* threshold;
    bool deletes;
  } cases[] = {{"4096", true}, {"2048", false}};
  for (const auto& c : cases) {
    testing::TempDir dir;
    testing::writeFile(dir / "old.log", "old");
    Orva::Rtc::Settings settings;
    settings.add("orva.log.clear.enable", "1");
    settings.add("orva.log.size.threshold", c.threshold);

    prepareEngineLog(settings, dir.path().string());

    EXPECT_EQ(fs::exists(dir / "old.log"), !c.deletes) << c.threshold;
    const std::string logFile = settings.get("media.global.log.file", kUnset);
    const std::string prefix = dir.path().string() + "/orva_sdk_";
    EXPECT_EQ(logFile.substr(0, prefix.size()), prefix);
    EXPECT_EQ(logFile.size(), prefix.size() + std::string("20240131_0905.log").size()) << logFile;
  }
}

TEST(ReportError, SendsReportedTextsTaggedOrva) {
  loopback::control::reset();
  reportError(Orva::Rtc::ERROR_TYPE_WARNING, 3, 3, "m");
  reportError(Orva::Rtc::ERROR_TYPE_WARNING, 3, -4, "routine");
  reportError(Orva::Rtc::ERROR_TYPE_WARNING, 2, -1, "microphone");
  reportError(Orva::Rtc::ERROR_TYPE_CRITICAL, 7, 0, "");

  const std::vector<loopback::control::CrashReport> reports = loopback::control::crashReports();
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_EQ(reports[0].type, 2);
  EXPECT_EQ(reports[0].tag, "orva");
  EXPECT_EQ(reports[0].message, "摄像头异常::3:m");
  EXPECT_EQ(reports[1].type, 3);
  EXPECT_EQ(reports[1].tag, "orva");
  EXPECT_EQ(reports[1].message, "onConnectionLost::0:");
}

}  // namespace
}  // namespace orva::diagnostics
