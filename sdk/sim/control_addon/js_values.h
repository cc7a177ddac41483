// Conversions between Node-API values and the engine's types, for the
// test-control addon. Failures throw a JavaScript TypeError and return a
// default value; callers check napi_is_exception_pending where it matters.
#pragma once

#include <node_api.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "orva/sdk.h"

namespace test_control {

namespace rtc = Orva::Rtc;

// The arguments of one call, from `first` on.
class JsArgs {
 public:
  JsArgs(napi_env env, std::vector<napi_value> values, size_t first)
      : env_(env), values_(std::move(values)), first_(first) {}

  napi_value at(size_t i) const;
  bool isNullish(size_t i) const;
  std::string str(size_t i) const;                  // nullish: ""
  std::optional<std::string> cstr(size_t i) const;  // nullish: none (a null char pointer)
  int i32(size_t i) const;
  bool boolean(size_t i) const;
  napi_env env() const { return env_; }

 private:
  napi_env env_;
  std::vector<napi_value> values_;
  size_t first_;
};

// Object helpers.
napi_value property(napi_env env, napi_value object, const char* key);  // undefined when absent
int propInt(napi_env env, napi_value object, const char* key, int fallback = 0);
double propDouble(napi_env env, napi_value object, const char* key);
std::string propString(napi_env env, napi_value object, const char* key);
std::string toString(napi_env env, napi_value value);
int toInt(napi_env env, napi_value value);
bool isNullish(napi_env env, napi_value value);
std::vector<napi_value> arrayItems(napi_env env, napi_value array);

// Records as plain objects.
rtc::NetworkStats toNetworkStats(napi_env env, napi_value object, std::vector<std::string>& userIds);
std::vector<rtc::VolumeInfo> toVolumes(napi_env env, napi_value array);
rtc::EchoCheckResult toEchoResult(napi_env env, napi_value object);
rtc::MediaChannelErrInfo toErrInfo(napi_env env, napi_value object);
std::vector<std::string> toStrings(napi_env env, napi_value array);
std::map<std::string, std::string> toStringMap(napi_env env, napi_value object);

// Results.
napi_value fromString(napi_env env, const std::string& text);
napi_value fromStrings(napi_env env, const std::vector<std::string>& texts);
napi_value fromBool(napi_env env, bool value);
napi_value undefined(napi_env env);

}  // namespace test_control
