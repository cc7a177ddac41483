#include "payloads.h"

#include <node_buffer.h>

#include <cstring>
#include <vector>

#include "sdk/win/v8_compat.h"

namespace orva::bridge {
namespace {

template <class T>
v8::MaybeLocal<v8::Value> widen(v8::MaybeLocal<T> made) {
  v8::Local<T> value;
  if (!made.ToLocal(&value)) return {};
  return value;
}

// Defines fields on a fresh object, one own data property each. The first
// failure sticks and every later field is skipped.
class Fields {
 public:
  Fields(v8::Local<v8::Context> context, v8::Local<v8::Object> target)
      : context_(context), isolate_(binding::isolateOf(context)), target_(target) {}

  Fields& value(v8::Local<v8::Name> key, v8::MaybeLocal<v8::Value> value) {
    v8::Local<v8::Value> made;
    if (ok_ && !(value.ToLocal(&made) && target_->CreateDataProperty(context_, key, made).FromMaybe(false))) {
      ok_ = false;
    }
    return *this;
  }
  Fields& value(const char* key, v8::MaybeLocal<v8::Value> made) {
    v8::Local<v8::String> name;
    if (!v8::String::NewFromUtf8(isolate_, key, v8::NewStringType::kInternalized).ToLocal(&name)) ok_ = false;
    return ok_ ? value(name, made) : *this;
  }
  Fields& integer(const char* key, int32_t number) { return value(key, v8::Integer::New(isolate_, number)); }
  Fields& number(const char* key, double number) { return value(key, v8::Number::New(isolate_, number)); }
  Fields& text(const char* key, const std::string& text) { return value(key, widen(scriptText(isolate_, text))); }

  bool ok() const { return ok_; }

 private:
  v8::Local<v8::Context> context_;
  v8::Isolate* isolate_;
  v8::Local<v8::Object> target_;
  bool ok_ = true;
};

// An array of `entries` made as its own elements; empty when one is missing.
v8::MaybeLocal<v8::Value> arrayOf(v8::Isolate* isolate, std::vector<v8::Local<v8::Value>>& entries, bool complete) {
  if (!complete) return {};
  return v8::Array::New(isolate, entries.data(), entries.size());
}

bool networkStats(v8::Local<v8::Context> context, const EventPayload& payload, v8::Local<v8::Object> target) {
  const Orva::Rtc::NetworkStats& s = payload.networkStats;
  Fields set(context, target);
  const int32_t integers[] = {s.OutBps,           s.InBps,
                              s.OutPps,           s.InPps,
                              s.Status,           s.DownStatus,
                              s.UpStatus,         s.LiveUpPlr,
                              s.LiveDownPlr,      s.LiveRtt,
                              s.RealtimeUpPlr,    s.RealtimeDownPlr,
                              s.RealtimeRtt,      s.LiveVideoBitrate,
                              s.LiveVideoEncFps,  s.LiveVideoWidth,
                              s.LiveVideoHeight,  s.LiveVideoSentBytes,
                              s.LiveAudioBitrate, s.LiveAudioSentBytes,
                              s.LiveAudioLevel};
  static constexpr const char* kIntegerKeys[] = {"OutBps",           "InBps",
                                                 "OutPps",           "InPps",
                                                 "Status",           "DownStatus",
                                                 "UpStatus",         "LiveUpPlr",
                                                 "LiveDownPlr",      "LiveRtt",
                                                 "RealtimeUpPlr",    "RealtimeDownPlr",
                                                 "RealtimeRtt",      "LiveVideoBitrate",
                                                 "LiveVideoEncFps",  "LiveVideoWidth",
                                                 "LiveVideoHeight",  "LiveVideoSentBytes",
                                                 "LiveAudioBitrate", "LiveAudioSentBytes",
                                                 "LiveAudioLevel"};
  static_assert(std::size(kIntegerKeys) == std::size(integers));
  for (size_t i = 0; i < std::size(kIntegerKeys); ++i) set.integer(kIntegerKeys[i], integers[i]);
  set.number("LiveAudioEnergy", s.LiveAudioEnergy)
      .number("CpuAppUsage", s.CpuAppUsage)
      .number("CpuTotalUsage", s.CpuTotalUsage)
      .number("GpuAppUsage", s.GpuAppUsage)
      .number("MemoryUsage", s.MemoryUsage);
  if (payload.remoteStatistics.empty()) return set.ok();

  v8::Isolate* isolate = binding::isolateOf(context);
  std::vector<v8::Local<v8::Value>> users;
  users.reserve(payload.remoteStatistics.size());
  bool complete = true;
  for (const RemoteStatistics& user : payload.remoteStatistics) {
    const Orva::Rtc::OrvaRemoteStatistics& r = user.values;
    v8::Local<v8::Object> entry = v8::Object::New(isolate);
    // The second (video packet loss) and fifteenth (final loss) fields are not exported.
    complete = complete && Fields(context, entry)
                               .text("userId", user.userId)
                               .integer("audioPacketLoss", static_cast<int32_t>(r.audioPacketLoss))
                               .integer("width", static_cast<int32_t>(r.width))
                               .integer("height", static_cast<int32_t>(r.height))
                               .integer("frameRate", static_cast<int32_t>(r.frameRate))
                               .integer("videoBitrate", static_cast<int32_t>(r.videoBitrate))
                               .integer("audioSampleRate", static_cast<int32_t>(r.audioSampleRate))
                               .integer("audioBitrate", static_cast<int32_t>(r.audioBitrate))
                               .integer("jitterBufferDelay", static_cast<int32_t>(r.jitterBufferDelay))
                               .integer("point2PointDelay", static_cast<int32_t>(r.point2PointDelay))
                               .integer("audioTotalBlockTime", static_cast<int32_t>(r.audioTotalBlockTime))
                               .integer("audioBlockRate", static_cast<int32_t>(r.audioBlockRate))
                               .integer("videoTotalBlockTime", static_cast<int32_t>(r.videoTotalBlockTime))
                               .integer("videoBlockRate", static_cast<int32_t>(r.videoBlockRate))
                               .integer("streamType", static_cast<int32_t>(r.streamType))
                               .ok();
    users.push_back(entry);
  }
  return set.value("remoteStatistics", arrayOf(isolate, users, complete)).ok();
}

bool userVolumes(v8::Local<v8::Context> context, const EventPayload& payload, v8::Local<v8::Object> target) {
  v8::Isolate* isolate = binding::isolateOf(context);
  std::vector<v8::Local<v8::Value>> volumes;
  volumes.reserve(payload.userVolumes.size());
  bool complete = true;
  for (const Orva::Rtc::VolumeInfo& volume : payload.userVolumes) {
    v8::Local<v8::Object> entry = v8::Object::New(isolate);
    complete = complete && Fields(context, entry)
                               .text("userId", volume.userId)
                               .integer("microphone_volume", volume.microphone_volume)
                               .integer("speaker_volume", volume.speaker_volume)
                               .ok();
    volumes.push_back(entry);
  }
  return Fields(context, target)
      .value("userVolumes", arrayOf(isolate, volumes, complete))
      .integer("userVolumesCount", static_cast<int32_t>(payload.userVolumes.size()))
      .integer("totalVolume", payload.resultInts[1])
      .ok();
}

bool echoResult(v8::Local<v8::Context> context, const EventPayload& payload, v8::Local<v8::Object> target) {
  Fields set(context, target);
  set.integer("networkResult", payload.resultInts[2])
      .integer("performanceResult", payload.resultInts[3])
      .integer("performanceReason", payload.resultInts[4])
      .integer("driverResult", payload.resultInts[5])
      .integer("driverReason", payload.resultInts[6]);
  // Details come after the results, so a detail named like a result wins.
  v8::Isolate* isolate = binding::isolateOf(context);
  for (const auto& [key, value] : payload.details) {
    v8::Local<v8::String> name;
    if (!scriptText(isolate, key).ToLocal(&name)) return false;
    set.value(name, widen(scriptText(isolate, value)));
  }
  return set.ok();
}

v8::Local<v8::Value> emptyView(v8::Isolate* isolate) {
  return v8::Uint8Array::New(v8::ArrayBuffer::New(isolate, 0), 0, 0);
}

}  // namespace

v8::MaybeLocal<v8::String> scriptText(v8::Isolate* isolate, const std::string& value) {
  if (value.empty()) return v8::String::Empty(isolate);
  // Beyond this V8 makes no string; the length would not even fit its argument.
  if (value.size() > static_cast<size_t>(v8::String::kMaxLength)) return {};
  return v8::String::NewFromUtf8(isolate, value.data(), v8::NewStringType::kNormal, static_cast<int>(value.size()));
}

bool fillPayload(v8::Local<v8::Context> context, const char* name, const EventPayload& payload,
                 v8::Local<v8::Object> target) {
  if (std::strcmp(name, "OnNetworkStats") == 0) return networkStats(context, payload, target);
  if (std::strcmp(name, "OnUserVoiceVolume") == 0) return userVolumes(context, payload, target);
  if (std::strcmp(name, "OnEchoResult") == 0) return echoResult(context, payload, target);
  return true;
}

v8::MaybeLocal<v8::Object> framePayload(v8::Local<v8::Context> context, const PendingEvent& event,
                                        const FrameSink& frames, std::array<v8::Global<v8::String>, 16>& keys) {
  static constexpr const char* kKeys[] = {"type",  "data",   "id",      "userId",  "valid",   "size",
                                          "width", "height", "strideY", "strideU", "strideV", "dataY",
                                          "dataU", "dataV",  "extra",   "handle"};
  static_assert(std::size(kKeys) == std::tuple_size_v<std::remove_reference_t<decltype(keys)>>);
  v8::Isolate* isolate = binding::isolateOf(context);
  // A payload is built for every frame: its keys are made once.
  if (keys[0].IsEmpty()) {
    for (size_t i = 0; i < std::size(kKeys); ++i) {
      v8::Local<v8::String> key;
      if (!v8::String::NewFromUtf8(isolate, kKeys[i], v8::NewStringType::kInternalized).ToLocal(&key)) return {};
      keys[i].Reset(isolate, key);
    }
  }
  v8::Local<v8::Object> data;
  if (!node::Buffer::New(isolate, 0).ToLocal(&data)) return {};
  const v8::MaybeLocal<v8::Value> values[] = {
      v8::Integer::New(isolate, event.frameType),
      data,
      v8::Number::New(isolate, static_cast<double>(frames.renderId)),
      widen(scriptText(isolate, frames.renderUserId)),
      v8::Boolean::New(isolate, frames.frameValid != 0),
      v8::Integer::New(isolate, event.frameSize),
      v8::Integer::New(isolate, event.frameWidth),
      v8::Integer::New(isolate, event.frameHeight),
      v8::Integer::New(isolate, event.strideY),
      v8::Integer::New(isolate, event.strideU),
      v8::Integer::New(isolate, event.strideV),
      emptyView(isolate),
      emptyView(isolate),
      emptyView(isolate),
      v8::Integer::New(isolate, event.frameExtra),
      v8::Number::New(isolate, static_cast<double>(event.frameHandle)),
  };
  v8::Local<v8::Object> payload = v8::Object::New(isolate);
  Fields set(context, payload);
  for (size_t i = 0; i < std::size(kKeys); ++i) set.value(keys[i].Get(isolate), values[i]);
  if (!set.ok()) return {};
  return payload;
}

}  // namespace orva::bridge
