#include "js_values.h"

namespace test_control {

napi_value JsArgs::at(size_t i) const { return first_ + i < values_.size() ? values_[first_ + i] : undefined(env_); }
bool JsArgs::isNullish(size_t i) const { return test_control::isNullish(env_, at(i)); }
std::string JsArgs::str(size_t i) const { return isNullish(i) ? std::string() : toString(env_, at(i)); }
std::optional<std::string> JsArgs::cstr(size_t i) const {
  if (isNullish(i)) return std::nullopt;
  return toString(env_, at(i));
}
int JsArgs::i32(size_t i) const { return toInt(env_, at(i)); }
bool JsArgs::boolean(size_t i) const {
  bool value = false;
  napi_value coerced;
  if (napi_coerce_to_bool(env_, at(i), &coerced) == napi_ok) napi_get_value_bool(env_, coerced, &value);
  return value;
}

bool isNullish(napi_env env, napi_value value) {
  napi_valuetype type;
  if (value == nullptr || napi_typeof(env, value, &type) != napi_ok) return true;
  return type == napi_undefined || type == napi_null;
}

napi_value undefined(napi_env env) {
  napi_value value;
  napi_get_undefined(env, &value);
  return value;
}

napi_value property(napi_env env, napi_value object, const char* key) {
  napi_value value = nullptr;
  if (isNullish(env, object) || napi_get_named_property(env, object, key, &value) != napi_ok) return undefined(env);
  return value;
}

std::string toString(napi_env env, napi_value value) {
  napi_value text;
  if (napi_coerce_to_string(env, value, &text) != napi_ok) return {};
  size_t length = 0;
  napi_get_value_string_utf8(env, text, nullptr, 0, &length);
  std::string out(length, '\0');
  napi_get_value_string_utf8(env, text, out.data(), length + 1, &length);
  return out;
}

int toInt(napi_env env, napi_value value) {
  int32_t result = 0;
  napi_value number;
  if (!isNullish(env, value) && napi_coerce_to_number(env, value, &number) == napi_ok) {
    napi_get_value_int32(env, number, &result);
  }
  return result;
}

int propInt(napi_env env, napi_value object, const char* key, int fallback) {
  napi_value value = property(env, object, key);
  return isNullish(env, value) ? fallback : toInt(env, value);
}

double propDouble(napi_env env, napi_value object, const char* key) {
  double result = 0;
  napi_value value = property(env, object, key);
  napi_value number;
  if (!isNullish(env, value) && napi_coerce_to_number(env, value, &number) == napi_ok) {
    napi_get_value_double(env, number, &result);
  }
  return result;
}

std::string propString(napi_env env, napi_value object, const char* key) {
  napi_value value = property(env, object, key);
  return isNullish(env, value) ? std::string() : toString(env, value);
}

std::vector<napi_value> arrayItems(napi_env env, napi_value array) {
  std::vector<napi_value> items;
  bool isArray = false;
  if (isNullish(env, array) || napi_is_array(env, array, &isArray) != napi_ok || !isArray) return items;
  uint32_t length = 0;
  napi_get_array_length(env, array, &length);
  for (uint32_t i = 0; i < length; ++i) {
    napi_value item;
    napi_get_element(env, array, i, &item);
    items.push_back(item);
  }
  return items;
}

rtc::NetworkStats toNetworkStats(napi_env env, napi_value o, std::vector<std::string>& userIds) {
  rtc::NetworkStats s;
  s.OutBps = propInt(env, o, "OutBps");
  s.InBps = propInt(env, o, "InBps");
  s.OutPps = propInt(env, o, "OutPps");
  s.InPps = propInt(env, o, "InPps");
  s.Status = static_cast<rtc::NetStatus>(propInt(env, o, "Status"));
  s.DownStatus = static_cast<rtc::NetStatus>(propInt(env, o, "DownStatus"));
  s.UpStatus = static_cast<rtc::NetStatus>(propInt(env, o, "UpStatus"));
  s.LiveUpPlr = propInt(env, o, "LiveUpPlr");
  s.LiveDownPlr = propInt(env, o, "LiveDownPlr");
  s.LiveRtt = propInt(env, o, "LiveRtt");
  s.RealtimeUpPlr = propInt(env, o, "RealtimeUpPlr");
  s.RealtimeDownPlr = propInt(env, o, "RealtimeDownPlr");
  s.RealtimeRtt = propInt(env, o, "RealtimeRtt");
  s.LiveVideoBitrate = propInt(env, o, "LiveVideoBitrate");
  s.LiveVideoEncFps = propInt(env, o, "LiveVideoEncFps");
  s.LiveVideoWidth = propInt(env, o, "LiveVideoWidth");
  s.LiveVideoHeight = propInt(env, o, "LiveVideoHeight");
  s.LiveVideoSentBytes = propInt(env, o, "LiveVideoSentBytes");
  s.LiveAudioBitrate = propInt(env, o, "LiveAudioBitrate");
  s.LiveAudioSentBytes = propInt(env, o, "LiveAudioSentBytes");
  s.LiveAudioLevel = propInt(env, o, "LiveAudioLevel");
  s.LiveAudioEnergy = propDouble(env, o, "LiveAudioEnergy");
  s.CpuAppUsage = propDouble(env, o, "CpuAppUsage");
  s.CpuSDKUsage = propDouble(env, o, "CpuSDKUsage");
  s.CpuTotalUsage = propDouble(env, o, "CpuTotalUsage");
  s.GpuAppUsage = propDouble(env, o, "GpuAppUsage");
  s.MemoryUsage = propDouble(env, o, "MemoryUsage");
  s.CpuOverloadTimes = propInt(env, o, "CpuOverloadTimes");
  for (napi_value l : arrayItems(env, property(env, o, "localStatistics"))) {
    rtc::OrvaLocalStatistics local;
    local.width = propInt(env, l, "width");
    local.height = propInt(env, l, "height");
    local.frameRate = propInt(env, l, "frameRate");
    local.videoBitrate = propInt(env, l, "videoBitrate");
    local.audioSampleRate = propInt(env, l, "audioSampleRate");
    local.audioBitrate = propInt(env, l, "audioBitrate");
    local.streamType = propInt(env, l, "streamType");
    local.audioCaptureState = propInt(env, l, "audioCaptureState");
    s.localStatistics.push_back(local);
  }
  const auto remotes = arrayItems(env, property(env, o, "remoteStatistics"));
  userIds.reserve(remotes.size());  // the records point into these strings
  for (napi_value r : remotes) {
    rtc::OrvaRemoteStatistics remote;
    const bool hasId = !isNullish(env, property(env, r, "userId"));
    userIds.push_back(propString(env, r, "userId"));
    remote.userId = hasId ? userIds.back().c_str() : nullptr;
    remote.audioPacketLoss = propInt(env, r, "audioPacketLoss");
    remote.videoPacketLoss = propInt(env, r, "videoPacketLoss");
    remote.width = propInt(env, r, "width");
    remote.height = propInt(env, r, "height");
    remote.frameRate = propInt(env, r, "frameRate");
    remote.videoBitrate = propInt(env, r, "videoBitrate");
    remote.audioSampleRate = propInt(env, r, "audioSampleRate");
    remote.audioBitrate = propInt(env, r, "audioBitrate");
    remote.jitterBufferDelay = propInt(env, r, "jitterBufferDelay");
    remote.point2PointDelay = propInt(env, r, "point2PointDelay");
    remote.audioTotalBlockTime = propInt(env, r, "audioTotalBlockTime");
    remote.audioBlockRate = propInt(env, r, "audioBlockRate");
    remote.videoTotalBlockTime = propInt(env, r, "videoTotalBlockTime");
    remote.videoBlockRate = propInt(env, r, "videoBlockRate");
    remote.finalLoss = propInt(env, r, "finalLoss");
    remote.streamType = propInt(env, r, "streamType");
    s.remoteStatistics.push_back(remote);
  }
  return s;
}

std::vector<rtc::VolumeInfo> toVolumes(napi_env env, napi_value array) {
  std::vector<rtc::VolumeInfo> volumes;
  for (napi_value v : arrayItems(env, array)) {
    volumes.push_back(
        {propString(env, v, "userId"), propInt(env, v, "microphone_volume"), propInt(env, v, "speaker_volume")});
  }
  return volumes;
}

rtc::EchoCheckResult toEchoResult(napi_env env, napi_value o) {
  rtc::EchoCheckResult r;
  r.network_result = static_cast<rtc::EchoCheckResultType>(propInt(env, o, "network_result"));
  napi_value performance = property(env, o, "performance_result");
  r.performance_result.result = static_cast<rtc::EchoCheckResultType>(propInt(env, performance, "result"));
  r.performance_result.reason = static_cast<rtc::PerformanceCheckReason>(propInt(env, performance, "reason"));
  napi_value driver = property(env, o, "driver_result");
  r.driver_result.result = static_cast<rtc::EchoCheckResultType>(propInt(env, driver, "result"));
  r.driver_result.reason = static_cast<rtc::DriverCheckReason>(propInt(env, driver, "reason"));
  r.info = toStringMap(env, property(env, o, "info"));
  return r;
}

rtc::MediaChannelErrInfo toErrInfo(napi_env env, napi_value o) {
  return {static_cast<rtc::StreamType>(propInt(env, o, "streamType")), propString(env, o, "errorMsg")};
}

std::vector<std::string> toStrings(napi_env env, napi_value array) {
  std::vector<std::string> texts;
  for (napi_value v : arrayItems(env, array)) texts.push_back(toString(env, v));
  return texts;
}

std::map<std::string, std::string> toStringMap(napi_env env, napi_value object) {
  std::map<std::string, std::string> map;
  napi_value keys;
  if (isNullish(env, object) || napi_get_property_names(env, object, &keys) != napi_ok) return map;
  for (napi_value key : arrayItems(env, keys)) {
    napi_value value;
    napi_get_property(env, object, key, &value);
    map[toString(env, key)] = toString(env, value);
  }
  return map;
}

napi_value fromString(napi_env env, const std::string& text) {
  napi_value value;
  napi_create_string_utf8(env, text.data(), text.size(), &value);
  return value;
}

napi_value fromStrings(napi_env env, const std::vector<std::string>& texts) {
  napi_value array;
  napi_create_array_with_length(env, texts.size(), &array);
  for (size_t i = 0; i < texts.size(); ++i) {
    napi_set_element(env, array, static_cast<uint32_t>(i), fromString(env, texts[i]));
  }
  return array;
}

napi_value fromBool(napi_env env, bool value) {
  napi_value result;
  napi_get_boolean(env, value, &result);
  return result;
}

}  // namespace test_control
