#include "diagnostics/check_result_text.h"

#include <span>

namespace orva::diagnostics {
namespace {

constexpr const char* kUnknown = "Unknown";

constexpr const char* kVerdictNames[] = {kUnknown, "Good", "Normal", "Warning", "Disabled"};

// Reason 6 has no name of its own and reads as unknown.
constexpr const char* kPerformanceReasonNames[] = {
    kUnknown, "System not supported", "Virtual machine", "ARM system",        "CPU undervoltage", "CPU blacklist",
    kUnknown, "No hardware encoding", "Low GPU memory",  "Low system memory",
};

constexpr const char* kDriverReasonNames[] = {kUnknown, "Driver version too old"};

constexpr int kBytesPerMebibyte = 1024 * 1024;

std::string nameIn(std::span<const char* const> names, int value) {
  if (value < 0 || static_cast<size_t>(value) >= names.size()) {
    return kUnknown;
  }
  return names[static_cast<size_t>(value)];
}

}  // namespace

std::string checkResultName(int verdict) { return nameIn(kVerdictNames, verdict); }

std::string performanceReasonName(int reason) { return nameIn(kPerformanceReasonNames, reason); }

std::string driverReasonName(int reason) { return nameIn(kDriverReasonNames, reason); }

std::string toText(const Orva::Rtc::EchoCheckResult& result) {
  std::string text = "Network Result: " + checkResultName(result.network_result) + '\n';
  text += "Performance Result: " + checkResultName(result.performance_result.result) +
          ", Reason: " + performanceReasonName(result.performance_result.reason) + '\n';
  text += "Driver Result: " + checkResultName(result.driver_result.result) +
          ", Reason: " + driverReasonName(result.driver_result.reason) + '\n';
  text += "Info:\n";
  for (const auto& [key, value] : result.info) {
    text.append("  ").append(key).append(": ").append(value).append(1, '\n');
  }
  return text;
}

std::string toText(const Orva::Rtc::AdapterInfo& info) {
  return "Description: " + info.description + '\n' +            //
         "VendorId: " + std::to_string(info.vendorId) + '\n' +  //
         "DeviceId: " + std::to_string(info.deviceId) + '\n' +  //
         "Dedicated Video Memory: " + std::to_string(info.dedicatedVideoMemory / kBytesPerMebibyte) + " MB\n";
}

std::string toText(const Orva::Rtc::VideoEncParam& param) {
  return "VideoEncParam: {width:" + std::to_string(param.width) + ", height:" + std::to_string(param.height) +
         ", fps:" + std::to_string(param.fps) + ", minBitrate:" + std::to_string(param.minBitrate) +
         ", input_width:" + std::to_string(param.input_width) + ", input_height:" + std::to_string(param.input_height) +
         ", canvas_width:" + std::to_string(param.canvas_width) +
         ", canvas_height:" + std::to_string(param.canvas_height) +
         ", targetBitrate:" + std::to_string(param.targetBitrate) + "}";
}

std::string toText(const Orva::Rtc::CameraResolution& resolution) {
  return "CameraResolution: {width:" + std::to_string(resolution.width) +
         ", height:" + std::to_string(resolution.height) + ", maxFps:" + std::to_string(resolution.maxFps) +
         ", type:" + std::to_string(static_cast<int>(resolution.type)) + "}";
}

}  // namespace orva::diagnostics
