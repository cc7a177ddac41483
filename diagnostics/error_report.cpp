#include "diagnostics/error_report.h"

#include <algorithm>
#include <span>

namespace orva::diagnostics {
namespace {

struct Category {
  int id;
  /// Sent as UTF-8 bytes; null for a category that is never reported.
  const char* prefix;
  /// Codes the engine raises in normal operation, not worth a report.
  std::span<const int> unreported;
};

// Screen capture: the source went away or was minimised or is slow.
constexpr int kRoutineScreenCodes[] = {1, 2, 5, 6};
// Camera: unplugged, busy, in use by another program, size not supported.
constexpr int kRoutineCameraCodes[] = {-8, -7, -6, -4};

// The prefixes are written as bytes so that no compiler's source or execution
// character set can change them.
constexpr Category kCategories[] = {
    // "录屏视频采集异常:" (screen-recording video capture fault)
    {1, "\xe5\xbd\x95\xe5\xb1\x8f\xe8\xa7\x86\xe9\xa2\x91\xe9\x87\x87\xe9\x9b\x86\xe5\xbc\x82\xe5\xb8\xb8:",
     kRoutineScreenCodes},
    // Microphone faults are never reported.
    {2, nullptr, {}},
    // "摄像头异常:" (camera fault)
    {3, "\xe6\x91\x84\xe5\x83\x8f\xe5\xa4\xb4\xe5\xbc\x82\xe5\xb8\xb8:", kRoutineCameraCodes},
    // Image-source events are never reported.
    {4, nullptr, {}},
    // "美颜错误:" (beauty-filter error)
    {5, "\xe7\xbe\x8e\xe9\xa2\x9c\xe9\x94\x99\xe8\xaf\xaf:", {}},
    // "加入频道失败:" (failed to join channel)
    {6, "\xe5\x8a\xa0\xe5\x85\xa5\xe9\xa2\x91\xe9\x81\x93\xe5\xa4\xb1\xe8\xb4\xa5:", {}},
    {7, "onConnectionLost:", {}},
    // "视频编码器错误:" (video encoder error)
    {8, "\xe8\xa7\x86\xe9\xa2\x91\xe7\xbc\x96\xe7\xa0\x81\xe5\x99\xa8\xe9\x94\x99\xe8\xaf\xaf:", {}},
};

// "其他错误:" (other error), for every category not listed above.
constexpr Category kOther = {0, "\xe5\x85\xb6\xe4\xbb\x96\xe9\x94\x99\xe8\xaf\xaf:", {}};

// The screen-capture message names the captured source, which may be private.
constexpr int kCategoryWithoutMessage = 1;

const Category& categoryOf(int id) {
  const auto* found = std::find_if(std::begin(kCategories), std::end(kCategories),
                                   [id](const Category& category) { return category.id == id; });
  return found == std::end(kCategories) ? kOther : *found;
}

}  // namespace

std::optional<std::string> errorReportText(int category, int code, const std::string& message) {
  const Category& chosen = categoryOf(category);
  if (chosen.prefix == nullptr ||
      std::find(chosen.unreported.begin(), chosen.unreported.end(), code) != chosen.unreported.end()) {
    return std::nullopt;
  }
  // The prefix already ends in ':'; the second one is part of the format.
  std::string text = chosen.prefix;
  text += ':';
  text += std::to_string(code);
  text += ':';
  if (category != kCategoryWithoutMessage) {
    text += message;
  }
  return text;
}

}  // namespace orva::diagnostics
