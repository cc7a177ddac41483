// Converters between script values and native values, used by every wrapper.
//
// Script to native: each converter answers a result code (registry.h) and
// stores the value only on success. Numbers are never parsed from strings,
// booleans are never taken from truthiness. Native to script: plain values.
#pragma once

#include <v8.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "registry.h"

namespace orva::binding {

/// A script number's integer value: truncated toward zero, NaN as 0, and
/// saturated at the ends of the signed 64-bit range.
inline int64_t integerValue(double number) {
  if (std::isnan(number)) return 0;
  if (number >= 9223372036854775808.0) return std::numeric_limits<int64_t>::max();
  if (number <= -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(number);
}

/// `int`, `int32_t`, `long` (32 bits on the engine's platform) and
/// enumerations: any number, keeping the low 32 bits without a range check.
inline int asInt(v8::Local<v8::Value> value, int32_t* out) {
  if (!value->IsNumber()) return kTypeError;
  *out = static_cast<int32_t>(static_cast<uint32_t>(integerValue(value.As<v8::Number>()->Value())));
  return kOk;
}

/// `int64_t`: any number, all 64 bits.
inline int asInt64(v8::Local<v8::Value> value, int64_t* out) {
  if (!value->IsNumber()) return kTypeError;
  *out = integerValue(value.As<v8::Number>()->Value());
  return kOk;
}

/// `uint32_t` and `unsigned long`: the truncated value must fit a signed
/// 32-bit integer and not be negative. The 31-bit ceiling is deliberate.
inline int asUInt32(v8::Local<v8::Value> value, uint32_t* out) {
  if (!value->IsNumber()) return kTypeError;
  double number = value.As<v8::Number>()->Value();
  if (std::isnan(number)) return kTypeError;
  double truncated = std::trunc(number);
  if (truncated < 0 || truncated > 2147483647.0) return kTypeError;
  *out = static_cast<uint32_t>(truncated);
  return kOk;
}

/// `uint64_t` and `size_t`: the truncated value must fit a signed 64-bit
/// integer and not be negative.
inline int asUInt64(v8::Local<v8::Value> value, uint64_t* out) {
  if (!value->IsNumber()) return kTypeError;
  double number = value.As<v8::Number>()->Value();
  if (std::isnan(number)) return kTypeError;
  double truncated = std::trunc(number);
  if (truncated < 0 || truncated >= 9223372036854775808.0) return kOverflow;
  *out = static_cast<uint64_t>(truncated);
  return kOk;
}

/// The most elements a container made or grown from script may hold: more
/// could not be allocated, and an allocation failure must not end the process.
inline constexpr uint64_t kMaxElementCount = uint64_t{1} << 20;

/// A number of elements: a size (as `asUInt64`) of at most kMaxElementCount.
inline int asCount(v8::Local<v8::Value> value, uint64_t* out) {
  uint64_t count = 0;
  int result = asUInt64(value, &count);
  if (result < 0) return result;
  if (count > kMaxElementCount) return kOverflow;
  *out = count;
  return kOk;
}

inline int asDouble(v8::Local<v8::Value> value, double* out) {
  if (!value->IsNumber()) return kTypeError;
  *out = value.As<v8::Number>()->Value();
  return kOk;
}

/// `float`: finite values beyond the single-precision range fail;
/// infinities and NaN pass unchanged.
inline int asFloat(v8::Local<v8::Value> value, float* out) {
  if (!value->IsNumber()) return kTypeError;
  double number = value.As<v8::Number>()->Value();
  if (std::isfinite(number) && std::fabs(number) > 3.4028234663852886e38) return kOverflow;
  *out = static_cast<float>(number);
  return kOk;
}

/// `bool`: only true and false.
inline int asBool(v8::Local<v8::Value> value, bool* out) {
  if (!value->IsBoolean()) return kTypeError;
  *out = value->IsTrue();
  return kOk;
}

/// A zero-terminated UTF-8 copy of a script string for the length of one
/// call, or null for script null. Short texts stay in the inline buffer.
class Utf8Arg {
 public:
  Utf8Arg() = default;
  Utf8Arg(const Utf8Arg&) = delete;
  Utf8Arg& operator=(const Utf8Arg&) = delete;
  ~Utf8Arg() {
    if (data_ != inline_ && data_ != borrowed_) delete[] data_;
  }

  const char* c_str() const { return data_; }

 private:
  friend int asCString(v8::Isolate*, v8::Local<v8::Value>, Utf8Arg*);
  char* data_ = nullptr;
  char* borrowed_ = nullptr;  // a native char buffer named by a proxy
  char inline_[120];
};

/// `char const *`: a script string, a proxy of a native char buffer, or null.
int asCString(v8::Isolate* isolate, v8::Local<v8::Value> value, Utf8Arg* out);

/// `std::string const &`: a script string or a proxy of a native char buffer
/// or string; null succeeds with `*isNull` set (the caller refuses it).
int asStdString(v8::Isolate* isolate, v8::Local<v8::Value> value, std::string* out, bool* isNull);

/// Script string from text up to its first zero byte; undefined for null
/// and for texts that decode to more than V8's longest string.
v8::Local<v8::Value> toScript(v8::Isolate* isolate, const char* text);

/// Script string from all bytes of `text`, zero bytes included; undefined
/// for texts of 2^31 bytes or more, or that decode to more than V8's longest
/// string.
v8::Local<v8::Value> toScript(v8::Isolate* isolate, const std::string& text);

/// A fresh heap copy of `text` (length plus one), or null for null. Used by
/// `char const *` fields, which hold their own copy.
char* copyText(const char* text);

/// Hands a proxy argument's object to the native side (no-op for null).
void disownArgument(v8::Local<v8::Value> value);

}  // namespace orva::binding
