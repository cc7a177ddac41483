#include "payloads.h"

#include <node_buffer.h>

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
  // The values in the order of their keys: the integers, the doubles, then
  // the remote users' entries when there are any.
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
  const double numbers[] = {s.LiveAudioEnergy, s.CpuAppUsage, s.CpuTotalUsage, s.GpuAppUsage, s.MemoryUsage};
  constexpr auto& keys = kNetworkStatsPayloadKeys;
  static_assert(std::size(integers) + std::size(numbers) + 1 == keys.size());
  Fields set(context, target);
  size_t key = 0;
  for (int32_t value : integers) set.integer(keys[key++], value);
  for (double value : numbers) set.number(keys[key++], value);
  if (payload.remoteStatistics.empty()) return set.ok();

  v8::Isolate* isolate = binding::isolateOf(context);
  std::vector<v8::Local<v8::Value>> users;
  users.reserve(payload.remoteStatistics.size());
  bool complete = true;
  for (const RemoteStatistics& user : payload.remoteStatistics) {
    const Orva::Rtc::OrvaRemoteStatistics& r = user.values;
    // The user id first. The second (video packet loss) and fifteenth (final
    // loss) fields are not exported.
    const uint32_t integers[] = {r.audioPacketLoss,  r.width,
                                 r.height,           r.frameRate,
                                 r.videoBitrate,     r.audioSampleRate,
                                 r.audioBitrate,     r.jitterBufferDelay,
                                 r.point2PointDelay, r.audioTotalBlockTime,
                                 r.audioBlockRate,   r.videoTotalBlockTime,
                                 r.videoBlockRate,   r.streamType};
    constexpr auto& userKeys = kRemoteStatisticsPayloadKeys;
    static_assert(std::size(integers) + 1 == userKeys.size());
    v8::Local<v8::Object> entry = v8::Object::New(isolate);
    Fields fill(context, entry);
    fill.text(userKeys[0], user.userId);
    for (size_t i = 0; i < std::size(integers); ++i) fill.integer(userKeys[i + 1], static_cast<int32_t>(integers[i]));
    complete = complete && fill.ok();
    users.push_back(entry);
  }
  return set.value(keys[key], arrayOf(isolate, users, complete)).ok();
}

bool userVolumes(v8::Local<v8::Context> context, const EventPayload& payload, v8::Local<v8::Object> target) {
  v8::Isolate* isolate = binding::isolateOf(context);
  constexpr auto& entryKeys = kUserVolumePayloadKeys;
  std::vector<v8::Local<v8::Value>> volumes;
  volumes.reserve(payload.userVolumes.size());
  bool complete = true;
  for (const Orva::Rtc::VolumeInfo& volume : payload.userVolumes) {
    v8::Local<v8::Object> entry = v8::Object::New(isolate);
    complete = complete && Fields(context, entry)
                               .text(entryKeys[0], volume.userId)
                               .integer(entryKeys[1], volume.microphone_volume)
                               .integer(entryKeys[2], volume.speaker_volume)
                               .ok();
    volumes.push_back(entry);
  }
  constexpr auto& keys = kUserVoiceVolumePayloadKeys;
  static_assert(entryKeys.size() == 3 && keys.size() == 3);
  return Fields(context, target)
      .value(keys[0], arrayOf(isolate, volumes, complete))
      .integer(keys[1], static_cast<int32_t>(payload.userVolumes.size()))
      .integer(keys[2], payload.resultInts[1])
      .ok();
}

bool echoResult(v8::Local<v8::Context> context, const EventPayload& payload, v8::Local<v8::Object> target) {
  constexpr auto& keys = kEchoResultPayloadKeys;
  static_assert(keys.size() == 5);
  Fields set(context, target);
  for (size_t i = 0; i < keys.size(); ++i) set.integer(keys[i], payload.resultInts[i + 2]);
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

bool fillPayload(v8::Local<v8::Context> context, PayloadKind kind, const EventPayload& payload,
                 v8::Local<v8::Object> target) {
  switch (kind) {
    case PayloadKind::kNetworkStats:
      return networkStats(context, payload, target);
    case PayloadKind::kUserVolumes:
      return userVolumes(context, payload, target);
    case PayloadKind::kEchoResult:
      return echoResult(context, payload, target);
    case PayloadKind::kNone:
    case PayloadKind::kVideoFrame:
      break;
  }
  return true;
}

v8::MaybeLocal<v8::Object> framePayload(v8::Local<v8::Context> context, const PendingEvent& event,
                                        const FrameSink& frames,
                                        std::array<v8::Global<v8::String>, kVideoFramePayloadKeys.size()>& keys) {
  constexpr auto& kKeys = kVideoFramePayloadKeys;
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
  static_assert(std::size(values) == kKeys.size());
  v8::Local<v8::Object> payload = v8::Object::New(isolate);
  Fields set(context, payload);
  for (size_t i = 0; i < std::size(kKeys); ++i) set.value(keys[i].Get(isolate), values[i]);
  if (!set.ok()) return {};
  return payload;
}

}  // namespace orva::bridge
