#include "payloads.h"

#include <node_buffer.h>

#include <cstring>

namespace orva::bridge {
namespace {

// Sets one key; keys are literals, so they are made internalized.
class Setter {
 public:
  Setter(v8::Local<v8::Context> context, v8::Local<v8::Object> target)
      : context_(context), isolate_(context->GetIsolate()), target_(target) {}

  void operator()(const char* key, v8::Local<v8::Value> value) {
    v8::Local<v8::String> name =
        v8::String::NewFromUtf8(isolate_, key, v8::NewStringType::kInternalized).ToLocalChecked();
    target_->Set(context_, name, value).Check();
  }
  void integer(const char* key, int32_t value) { (*this)(key, v8::Integer::New(isolate_, value)); }
  void number(const char* key, double value) { (*this)(key, v8::Number::New(isolate_, value)); }
  void text(const char* key, const std::string& value) {
    (*this)(key, v8::String::NewFromUtf8(isolate_, value.data(), v8::NewStringType::kNormal,
                                         static_cast<int>(value.size())).ToLocalChecked());
  }

 private:
  v8::Local<v8::Context> context_;
  v8::Isolate* isolate_;
  v8::Local<v8::Object> target_;
};

void networkStats(v8::Local<v8::Context> context, const EventPayload& payload, v8::Local<v8::Object> target) {
  const Orva::Rtc::NetworkStats& s = payload.networkStats;
  Setter set(context, target);
  const int32_t integers[] = {
      s.OutBps, s.InBps, s.OutPps, s.InPps, s.Status, s.DownStatus, s.UpStatus, s.LiveUpPlr, s.LiveDownPlr,
      s.LiveRtt, s.RealtimeUpPlr, s.RealtimeDownPlr, s.RealtimeRtt, s.LiveVideoBitrate, s.LiveVideoEncFps,
      s.LiveVideoWidth, s.LiveVideoHeight, s.LiveVideoSentBytes, s.LiveAudioBitrate, s.LiveAudioSentBytes,
      s.LiveAudioLevel};
  static constexpr const char* kIntegerKeys[] = {
      "OutBps", "InBps", "OutPps", "InPps", "Status", "DownStatus", "UpStatus", "LiveUpPlr", "LiveDownPlr",
      "LiveRtt", "RealtimeUpPlr", "RealtimeDownPlr", "RealtimeRtt", "LiveVideoBitrate", "LiveVideoEncFps",
      "LiveVideoWidth", "LiveVideoHeight", "LiveVideoSentBytes", "LiveAudioBitrate", "LiveAudioSentBytes",
      "LiveAudioLevel"};
  static_assert(std::size(kIntegerKeys) == std::size(integers));
  for (size_t i = 0; i < std::size(kIntegerKeys); ++i) set.integer(kIntegerKeys[i], integers[i]);
  set.number("LiveAudioEnergy", s.LiveAudioEnergy);
  set.number("CpuAppUsage", s.CpuAppUsage);
  set.number("CpuTotalUsage", s.CpuTotalUsage);
  set.number("GpuAppUsage", s.GpuAppUsage);
  set.number("MemoryUsage", s.MemoryUsage);
  if (payload.remoteStatistics.empty()) return;

  v8::Isolate* isolate = context->GetIsolate();
  v8::Local<v8::Array> remote = v8::Array::New(isolate, static_cast<int>(payload.remoteStatistics.size()));
  uint32_t index = 0;
  for (const RemoteStatistics& user : payload.remoteStatistics) {
    const Orva::Rtc::OrvaRemoteStatistics& r = user.values;
    v8::Local<v8::Object> entry = v8::Object::New(isolate);
    Setter field(context, entry);
    field.text("userId", user.userId);
    // The second (video packet loss) and fifteenth (final loss) fields are not exported.
    field.integer("audioPacketLoss", static_cast<int32_t>(r.audioPacketLoss));
    field.integer("width", static_cast<int32_t>(r.width));
    field.integer("height", static_cast<int32_t>(r.height));
    field.integer("frameRate", static_cast<int32_t>(r.frameRate));
    field.integer("videoBitrate", static_cast<int32_t>(r.videoBitrate));
    field.integer("audioSampleRate", static_cast<int32_t>(r.audioSampleRate));
    field.integer("audioBitrate", static_cast<int32_t>(r.audioBitrate));
    field.integer("jitterBufferDelay", static_cast<int32_t>(r.jitterBufferDelay));
    field.integer("point2PointDelay", static_cast<int32_t>(r.point2PointDelay));
    field.integer("audioTotalBlockTime", static_cast<int32_t>(r.audioTotalBlockTime));
    field.integer("audioBlockRate", static_cast<int32_t>(r.audioBlockRate));
    field.integer("videoTotalBlockTime", static_cast<int32_t>(r.videoTotalBlockTime));
    field.integer("videoBlockRate", static_cast<int32_t>(r.videoBlockRate));
    field.integer("streamType", static_cast<int32_t>(r.streamType));
    remote->Set(context, index++, entry).Check();
  }
  set("remoteStatistics", remote);
}

void userVolumes(v8::Local<v8::Context> context, const EventPayload& payload, v8::Local<v8::Object> target) {
  v8::Isolate* isolate = context->GetIsolate();
  v8::Local<v8::Array> volumes = v8::Array::New(isolate, static_cast<int>(payload.userVolumes.size()));
  uint32_t index = 0;
  for (const Orva::Rtc::VolumeInfo& volume : payload.userVolumes) {
    v8::Local<v8::Object> entry = v8::Object::New(isolate);
    Setter field(context, entry);
    field.text("userId", volume.userId);
    field.integer("microphone_volume", volume.microphone_volume);
    field.integer("speaker_volume", volume.speaker_volume);
    volumes->Set(context, index++, entry).Check();
  }
  Setter set(context, target);
  set("userVolumes", volumes);
  set.integer("userVolumesCount", static_cast<int32_t>(payload.userVolumes.size()));
  set.integer("totalVolume", payload.resultInts[1]);
}

void echoResult(v8::Local<v8::Context> context, const EventPayload& payload, v8::Local<v8::Object> target) {
  Setter set(context, target);
  set.integer("networkResult", payload.resultInts[2]);
  set.integer("performanceResult", payload.resultInts[3]);
  set.integer("performanceReason", payload.resultInts[4]);
  set.integer("driverResult", payload.resultInts[5]);
  set.integer("driverReason", payload.resultInts[6]);
  // Details come after the results, so a detail named like a result wins.
  v8::Isolate* isolate = context->GetIsolate();
  for (const auto& [key, value] : payload.details) {
    v8::Local<v8::String> name =
        v8::String::NewFromUtf8(isolate, key.data(), v8::NewStringType::kNormal, static_cast<int>(key.size()))
            .ToLocalChecked();
    v8::Local<v8::String> text =
        v8::String::NewFromUtf8(isolate, value.data(), v8::NewStringType::kNormal, static_cast<int>(value.size()))
            .ToLocalChecked();
    target->Set(context, name, text).Check();
  }
}

v8::Local<v8::Uint8Array> emptyView(v8::Isolate* isolate) {
  return v8::Uint8Array::New(v8::ArrayBuffer::New(isolate, 0), 0, 0);
}

}  // namespace

void fillPayload(v8::Local<v8::Context> context, const char* name, const EventPayload& payload,
                 v8::Local<v8::Object> target) {
  if (std::strcmp(name, "OnNetworkStats") == 0) {
    networkStats(context, payload, target);
  } else if (std::strcmp(name, "OnUserVoiceVolume") == 0) {
    userVolumes(context, payload, target);
  } else if (std::strcmp(name, "OnEchoResult") == 0) {
    echoResult(context, payload, target);
  }
}

v8::Local<v8::Object> framePayload(v8::Local<v8::Context> context, const PendingEvent& event, const FrameSink& frames,
                                   std::array<v8::Persistent<v8::String>, 16>& keys) {
  static constexpr const char* kKeys[] = {"type",   "data",    "id",      "userId",  "valid", "size",
                                          "width",  "height",  "strideY", "strideU", "strideV", "dataY",
                                          "dataU",  "dataV",   "extra",   "handle"};
  static_assert(std::size(kKeys) == std::tuple_size_v<std::remove_reference_t<decltype(keys)>>);
  v8::Isolate* isolate = context->GetIsolate();
  // A payload is built for every frame: its keys are made once.
  if (keys[0].IsEmpty()) {
    for (size_t i = 0; i < std::size(kKeys); ++i) {
      keys[i].Reset(isolate,
                    v8::String::NewFromUtf8(isolate, kKeys[i], v8::NewStringType::kInternalized).ToLocalChecked());
    }
  }
  const v8::Local<v8::Value> values[] = {
      v8::Integer::New(isolate, event.frameType),
      node::Buffer::New(isolate, 0).ToLocalChecked(),
      v8::Number::New(isolate, static_cast<double>(frames.renderId)),
      v8::String::NewFromUtf8(isolate, frames.renderUserId.data(), v8::NewStringType::kNormal,
                              static_cast<int>(frames.renderUserId.size()))
          .ToLocalChecked(),
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
  for (size_t i = 0; i < std::size(kKeys); ++i) payload->Set(context, keys[i].Get(isolate), values[i]).Check();
  return payload;
}

}  // namespace orva::bridge
