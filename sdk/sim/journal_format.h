// How one call is written into the journal:
//
//   Interface.member(arg, arg, ...)
//
// strings as JSON string literals (null char pointers as null), integers and
// enumerations in decimal, bools as true/false, floating point in shortest
// round-trip form, opaque pointers as null or 0x<hex>, Settings as
// {"key":"value",...} in first-insertion order, records as {field:value,...}
// in declaration order, lists and vectors as [...]. Records passed by pointer
// are written as the record they point to (or null).
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "orva/sdk.h"

namespace orva::loopback {

namespace rtc = Orva::Rtc;

void appendString(std::string& out, const char* text, size_t length);

void appendArg(std::string& out, const char* text);
void appendArg(std::string& out, const std::string& text);
void appendArg(std::string& out, bool value);
void appendArg(std::string& out, float value);
void appendArg(std::string& out, double value);
void appendArg(std::string& out, long long value);
void appendArg(std::string& out, unsigned long long value);
void appendPointer(std::string& out, const void* pointer);

void appendArg(std::string& out, rtc::Settings* settings);
void appendArg(std::string& out, const std::map<std::string, std::string>& map);
void appendArg(std::string& out, const rtc::Rect& rect);
void appendArg(std::string& out, const rtc::Window& window);
void appendArg(std::string& out, const rtc::Screen& screen);
void appendArg(std::string& out, const rtc::Speaker& speaker);
void appendArg(std::string& out, const rtc::Microphone& microphone);
void appendArg(std::string& out, const rtc::CameraResolution& resolution);
void appendArg(std::string& out, const rtc::Camera& camera);
void appendArg(std::string& out, const rtc::SourceGreenInfo& info);
void appendArg(std::string& out, const rtc::CameraCaptureParams& params);
void appendArg(std::string& out, const rtc::ScreenCaptureProperty& property);
void appendArg(std::string& out, const rtc::CameraRecordInfo& info);
void appendArg(std::string& out, const rtc::BeautyInfo& info);
void appendArg(std::string& out, const rtc::VideoEncParam& param);
void appendArg(std::string& out, const rtc::RenderParams& params);
void appendArg(std::string& out, const rtc::LocalMediaTranscodingSource& source);
void appendArg(std::string& out, const rtc::LocalMediaTranscodingParams& params);
void appendArg(std::string& out, const rtc::DowngradeParam& param);
void appendArg(std::string& out, const rtc::CameraResolutionList& list);
void appendArg(std::string& out, const rtc::LocalMediaTranscodingSourceList& list);
void appendArg(std::string& out, const rtc::AudioFileParam* param);
void appendArg(std::string& out, const rtc::AudioFrame* frame);
void appendArg(std::string& out, const rtc::VideoFrame* frame);
inline void appendArg(std::string& out, rtc::AudioFrame* frame) {
  appendArg(out, static_cast<const rtc::AudioFrame*>(frame));
}
inline void appendArg(std::string& out, rtc::VideoFrame* frame) {
  appendArg(out, static_cast<const rtc::VideoFrame*>(frame));
}

template <class T>
requires(std::is_integral_v<T> && !std::is_same_v<T, bool>) void appendArg(std::string& out, T value) {
  if constexpr (std::is_signed_v<T>) {
    appendArg(out, static_cast<long long>(value));
  } else {
    appendArg(out, static_cast<unsigned long long>(value));
  }
}

template <class T>
requires std::is_enum_v<T>
void appendArg(std::string& out, T value) { appendArg(out, static_cast<std::underlying_type_t<T>>(value)); }

// Opaque pointers: window handles, listeners, processors, raw buffers.
template <class T>
void appendArg(std::string& out, T* pointer) {
  appendPointer(out, static_cast<const void*>(pointer));
}

template <class T>
void appendArg(std::string& out, const std::vector<T>& items) {
  out += '[';
  for (size_t i = 0; i < items.size(); ++i) {
    if (i != 0) out += ',';
    appendArg(out, items[i]);
  }
  out += ']';
}

// Writes `{name:value,...}`: construct, chain one call per field, destroy.
class RecordText {
 public:
  explicit RecordText(std::string& out) : out_(out) { out_ += '{'; }
  ~RecordText() { out_ += '}'; }
  RecordText(const RecordText&) = delete;
  RecordText& operator=(const RecordText&) = delete;

  template <class T>
  RecordText& operator()(const char* name, const T& value) {
    if (!first_) out_ += ',';
    first_ = false;
    out_ += name;
    out_ += ':';
    appendArg(out_, value);
    return *this;
  }

 private:
  std::string& out_;
  bool first_ = true;
};

template <class... Args>
std::string formatCall(const char* iface, const char* member, const Args&... args) {
  std::string out = iface;
  out += '.';
  out += member;
  out += '(';
  [[maybe_unused]] bool first = true;
  ((out += first ? "" : ", ", first = false, appendArg(out, args)), ...);
  out += ')';
  return out;
}

}  // namespace orva::loopback
