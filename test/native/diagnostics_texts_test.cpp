// Readable texts of check results and records, and error-report texts.
#include <gtest/gtest.h>

#include <climits>

#include "diagnostics/check_result_text.h"
#include "diagnostics/error_report.h"

namespace orva::diagnostics {
namespace {

TEST(CheckResultText, NamesOfVerdictsAndReasons) {
  const std::vector<std::string> verdicts = {"Unknown", "Good", "Normal", "Warning", "Disabled", "Unknown"};
  const std::vector<std::string> performance = {
      "Unknown", "System not supported", "Virtual machine", "ARM system",        "CPU undervoltage", "CPU blacklist",
      "Unknown", "No hardware encoding", "Low GPU memory",  "Low system memory", "Unknown"};
  const std::vector<std::string> driver = {"Unknown", "Driver version too old", "Unknown"};
  for (int value = -1; value <= 10; ++value) {
    const auto at = [value](const std::vector<std::string>& names) {
      return value >= 0 && value < static_cast<int>(names.size()) ? names[static_cast<size_t>(value)] : "Unknown";
    };
    EXPECT_EQ(checkResultName(value), at(verdicts)) << value;
    EXPECT_EQ(performanceReasonName(value), at(performance)) << value;
    EXPECT_EQ(driverReasonName(value), at(driver)) << value;
  }
}

TEST(CheckResultText, Records) {
  Orva::Rtc::EchoCheckResult result;
  result.network_result = Orva::Rtc::DISABLED;
  result.performance_result = {Orva::Rtc::WARNING, Orva::Rtc::NO_DEDICATED_GPU};
  result.driver_result = {static_cast<Orva::Rtc::EchoCheckResultType>(5), Orva::Rtc::DRIVER_VERSION_TOO_OLD};
  EXPECT_EQ(toText(result),
            "Network Result: Disabled\n"
            "Performance Result: Warning, Reason: Unknown\n"
            "Driver Result: Unknown, Reason: Driver version too old\n"
            "Info:\n");
  result.info = {{"gpu", "none"}, {"cpu", "8 cores"}};
  EXPECT_EQ(toText(result).substr(toText(result).find("Info:")), "Info:\n  cpu: 8 cores\n  gpu: none\n");
  EXPECT_EQ(toText(Orva::Rtc::AdapterInfo{"Intel(R) UHD Graphics 630", 32902, 16018, 1'048'575}),
            "Description: Intel(R) UHD Graphics 630\nVendorId: 32902\nDeviceId: 16018\n"
            "Dedicated Video Memory: 0 MB\n");
  EXPECT_EQ(toText(Orva::Rtc::AdapterInfo{"", -1, 0, 2'147'483'647}),
            "Description: \nVendorId: -1\nDeviceId: 0\nDedicated Video Memory: 2047 MB\n");
  EXPECT_EQ(toText(Orva::Rtc::VideoEncParam{1280, 720, 30, 600, 1920, 1080, 1280, 720, 4'294'967'295}),
            "VideoEncParam: {width:1280, height:720, fps:30, minBitrate:600, input_width:1920, input_height:1080, "
            "canvas_width:1280, canvas_height:720, targetBitrate:4294967295}");
  EXPECT_EQ(toText(Orva::Rtc::CameraResolution{1280, 720, 30, Orva::Rtc::CaptureDataType::CaptureDataTypeI420}),
            "CameraResolution: {width:1280, height:720, maxFps:30, type:3}");
}

TEST(ErrorReportText, CategoriesPrefixesAndUnreportedCodes) {
  const struct {
    int category;
    int code;
    const char* message;
    const char* text;  // null: not reported
  } cases[] = {
      {1, 3, "Display 1", "录屏视频采集异常::3:"},
      {1, -1, "", "录屏视频采集异常::-1:"},
      {1, 1, "", nullptr},
      {1, 2, "", nullptr},
      {1, 5, "", nullptr},
      {1, 6, "", nullptr},
      {2, 0, "", nullptr},
      {2, -1000, "", nullptr},
      {3, 3, "m", "摄像头异常::3:m"},
      {3, -5, "", "摄像头异常::-5:"},
      {3, -4, "", nullptr},
      {3, -6, "", nullptr},
      {3, -7, "", nullptr},
      {3, -8, "", nullptr},
      {4, 0, "image.png:started", nullptr},
      {5, 7, "face model", "美颜错误::7:face model"},
      {6, 0, "", "加入频道失败::0:"},
      {7, 0, "", "onConnectionLost::0:"},
      {8, INT_MIN, "h264", "视频编码器错误::-2147483648:h264"},
      {0, 1, "x", "其他错误::1:x"},
      {9, 2, "", "其他错误::2:"},
      {-1, -1, "é", "其他错误::-1:é"},
  };
  for (const auto& c : cases) {
    const std::optional<std::string> text = errorReportText(c.category, c.code, c.message);
    EXPECT_EQ(text.value_or("(not reported)"), c.text ? c.text : "(not reported)")
        << "category " << c.category << ", code " << c.code;
  }
}

}  // namespace
}  // namespace orva::diagnostics
