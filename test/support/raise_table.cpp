#include "raise_table.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace test_control {

namespace {

template <class Face>
Face* pick(const control::Registered& r);
template <> rtc::RtcEngineListener* pick(const control::Registered& r) { return r.rtc; }
template <> rtc::MediaServiceListener* pick(const control::Registered& r) { return r.service; }
template <> rtc::AudioServiceListener* pick(const control::Registered& r) { return r.audio; }
template <> rtc::ILocalMediaTranscoderCallback* pick(const control::Registered& r) { return r.transcoder; }
template <> rtc::IMediaDeviceCallback* pick(const control::Registered& r) { return r.device; }
template <> rtc::MediaChannelListener* pick(const control::Registered& r) { return r.channel; }
template <> rtc::MediaLiveListener* pick(const control::Registered& r) { return r.live; }
template <> rtc::VideoFrameProcessor* pick(const control::Registered& r) { return r.processor; }

template <class Face, class Fn>
Raise on(Fn fn) {
  return [fn](const control::Registered& r) {
    Face* face = pick<Face>(r);
    if (face == nullptr) return false;
    fn(face);
    return true;
  };
}

const char* ptr(const std::optional<std::string>& s) { return s ? s->c_str() : nullptr; }

template <class E>
E as(int value) {
  return static_cast<E>(value);
}

rtc::MediaChannel* channelArg(const JsArgs& a, size_t i) {
  return a.isNullish(i) ? nullptr : control::loopbackChannel();
}

using Builder = Raise (*)(const JsArgs&);
using Rtc = rtc::RtcEngineListener;
using Service = rtc::MediaServiceListener;
using Audio = rtc::AudioServiceListener;
using Transcoder = rtc::ILocalMediaTranscoderCallback;
using Device = rtc::IMediaDeviceCallback;
using Channel = rtc::MediaChannelListener;
using Live = rtc::MediaLiveListener;
using Processor = rtc::VideoFrameProcessor;
using Err = rtc::LocalMediaTranscodingError;

// Device callbacks of the shape (sourceId, code, message).
template <void (Device::*Member)(const std::string&, Err, const std::string&)>
Raise sourceStarted(const JsArgs& a) {
  auto id = a.str(0);
  auto code = a.i32(1);
  auto message = a.str(2);
  return on<Device>([=](Device* l) { (l->*Member)(id, as<Err>(code), message); });
}

// Device callbacks of the shape (sourceId).
template <void (Device::*Member)(const std::string&)>
Raise sourceOnly(const JsArgs& a) {
  auto id = a.str(0);
  return on<Device>([=](Device* l) { (l->*Member)(id); });
}

// Device callbacks of the shape (sourceId, enum code).
template <class E, void (Device::*Member)(const std::string&, E)>
Raise sourceCode(const JsArgs& a) {
  auto id = a.str(0);
  auto code = a.i32(1);
  return on<Device>([=](Device* l) { (l->*Member)(id, as<E>(code)); });
}

const std::map<std::string, Builder>& table() {
  static const auto* const entries = new std::map<std::string, Builder>{
      // RtcEngineListener
      {"RtcEngineListener.OnEngineEvent",
       [](const JsArgs& a) {
         auto event = a.str(0);
         auto code = a.i32(1);
         auto info = toStringMap(a.env(), a.at(2));
         return on<Rtc>([=](Rtc* l) { l->OnEngineEvent(event, code, info); });
       }},
      {"RtcEngineListener.OnEngineLog",
       [](const JsArgs& a) {
         auto level = a.i32(0);
         auto tag = a.str(1);
         auto message = a.str(2);
         return on<Rtc>([=](Rtc* l) { l->OnEngineLog(level, tag, message); });
       }},
      {"RtcEngineListener.OnExtHeatBeatEvent",
       [](const JsArgs&) { return on<Rtc>([](Rtc* l) { l->OnExtHeatBeatEvent(); }); }},
      {"RtcEngineListener.OnMediaChannelStateChanged",
       [](const JsArgs& a) {
         auto state = a.i32(0);
         auto reason = a.i32(1);
         auto info = toErrInfo(a.env(), a.at(2));
         return on<Rtc>([=](Rtc* l) { l->OnMediaChannelStateChanged(state, reason, info); });
       }},
      // MediaServiceListener
      {"MediaServiceListener.OnSessionStateChanged",
       [](const JsArgs& a) {
         auto session = a.cstr(0);
         auto state = a.i32(1);
         auto reason = a.i32(2);
         return on<Service>([=](Service* l) {
           l->OnSessionStateChanged(ptr(session), as<rtc::MediaSessionState>(state), as<rtc::MediaSessionState>(reason));
         });
       }},
      {"MediaServiceListener.OnGroupStateChanged",
       [](const JsArgs& a) {
         auto group = a.cstr(0);
         auto state = a.i32(1);
         auto reason = a.i32(2);
         return on<Service>([=](Service* l) {
           l->OnGroupStateChanged(ptr(group), as<rtc::GroupState>(state), as<rtc::GroupState>(reason));
         });
       }},
      {"MediaServiceListener.OnNetworkStats",
       [](const JsArgs& a) {
         // The records point into the ids; both travel together.
         auto ids = std::make_shared<std::vector<std::string>>();
         auto stats = std::make_shared<rtc::NetworkStats>(toNetworkStats(a.env(), a.at(0), *ids));
         return on<Service>([ids, stats](Service* l) { l->OnNetworkStats(*stats); });
       }},
      {"MediaServiceListener.OnAlternateServerAvailable",
       [](const JsArgs& a) {
         auto servers = toStrings(a.env(), a.at(0));
         return on<Service>([=](Service* l) {
           rtc::StringVector vector;
           for (auto& s : servers) vector.add(s);
           l->OnAlternateServerAvailable(vector);
         });
       }},
      {"MediaServiceListener.OnPerformanceAlarms",
       [](const JsArgs& a) {
         auto event = a.i32(0);
         return on<Service>([=](Service* l) { l->OnPerformanceAlarms(as<rtc::PerformanceAlarmEvent>(event)); });
       }},
      {"MediaServiceListener.OnUserVoiceVolume",
       [](const JsArgs& a) {
         auto volumes = toVolumes(a.env(), a.at(0));
         auto users = a.i32(1);
         auto total = a.i32(2);
         return on<Service>([=](Service* l) { l->OnUserVoiceVolume(volumes, users, total); });
       }},
      {"MediaServiceListener.onEchoResult",
       [](const JsArgs& a) {
         auto result = toEchoResult(a.env(), a.at(0));
         return on<Service>([=](Service* l) { l->onEchoResult(result); });
       }},
      {"MediaServiceListener.OnTerminate",
       [](const JsArgs&) { return on<Service>([](Service* l) { l->OnTerminate(); }); }},
      // AudioServiceListener
      {"AudioServiceListener.OnPlayFileStart",
       [](const JsArgs& a) {
         auto id = a.i32(0);
         auto duration = a.i32(1);
         return on<Audio>([=](Audio* l) { l->OnPlayFileStart(id, duration); });
       }},
      {"AudioServiceListener.OnPlayFileEnd",
       [](const JsArgs& a) {
         auto id = a.i32(0);
         auto reason = a.i32(1);
         return on<Audio>([=](Audio* l) { l->OnPlayFileEnd(id, reason); });
       }},
      {"AudioServiceListener.OnPlayFilePosChanged",
       [](const JsArgs& a) {
         auto id = a.i32(0);
         auto position = a.i32(1);
         auto duration = a.i32(2);
         return on<Audio>([=](Audio* l) { l->OnPlayFilePosChanged(id, position, duration); });
       }},
      {"AudioServiceListener.OnPlayFileTerminate",
       [](const JsArgs&) { return on<Audio>([](Audio* l) { l->OnPlayFileTerminate(); }); }},
      // ILocalMediaTranscoderCallback
      {"ILocalMediaTranscoderCallback.onTranscodingStarted",
       [](const JsArgs& a) {
         auto code = a.i32(0);
         auto message = a.str(1);
         return on<Transcoder>([=](Transcoder* l) { l->onTranscodingStarted(as<Err>(code), message); });
       }},
      {"ILocalMediaTranscoderCallback.onTranscodingStopped",
       [](const JsArgs& a) {
         auto code = a.i32(0);
         auto message = a.str(1);
         return on<Transcoder>([=](Transcoder* l) { l->onTranscodingStopped(code, message); });
       }},
      // IMediaDeviceCallback
      {"IMediaDeviceCallback.onCameraSourceStarted", sourceStarted<&Device::onCameraSourceStarted>},
      {"IMediaDeviceCallback.onCameraSourceStopped",
       [](const JsArgs& a) {
         auto id = a.str(0);
         auto message = a.str(1);
         return on<Device>([=](Device* l) { l->onCameraSourceStopped(id, message); });
       }},
      {"IMediaDeviceCallback.onCameraSourceError", sourceCode<rtc::OrvaVideoCaptureError, &Device::onCameraSourceError>},
      {"IMediaDeviceCallback.onMicSourceError", sourceCode<rtc::OrvaAudioCaptureError, &Device::onMicSourceError>},
      {"IMediaDeviceCallback.onScreenSourceStarted", sourceStarted<&Device::onScreenSourceStarted>},
      {"IMediaDeviceCallback.onScreenSourcePaused",
       sourceCode<rtc::OrvaScreenCapturePauseReason, &Device::onScreenSourcePaused>},
      {"IMediaDeviceCallback.onScreenSourceResumed",
       sourceCode<rtc::OrvaScreenCaptureResumeReason, &Device::onScreenSourceResumed>},
      {"IMediaDeviceCallback.onScreenSourceCovered", sourceOnly<&Device::onScreenSourceCovered>},
      {"IMediaDeviceCallback.onScreenSourceStopped", sourceCode<int, &Device::onScreenSourceStopped>},
      {"IMediaDeviceCallback.onScreenSourceError", sourceCode<rtc::OrvaScreenCaptureError, &Device::onScreenSourceError>},
      {"IMediaDeviceCallback.onImageSourceStarted", sourceStarted<&Device::onImageSourceStarted>},
      {"IMediaDeviceCallback.onImageSourceStopped", sourceOnly<&Device::onImageSourceStopped>},
      {"IMediaDeviceCallback.onCameraDidReady",
       [](const JsArgs&) { return on<Device>([](Device* l) { l->onCameraDidReady(); }); }},
      {"IMediaDeviceCallback.onMicDidReady",
       [](const JsArgs&) { return on<Device>([](Device* l) { l->onMicDidReady(); }); }},
      {"IMediaDeviceCallback.onUserVoiceVolume",
       [](const JsArgs& a) {
         auto volumes = toVolumes(a.env(), a.at(0));
         auto users = a.i32(1);
         auto total = a.i32(2);
         return on<Device>([=](Device* l) { l->onUserVoiceVolume(volumes, users, total); });
       }},
      {"IMediaDeviceCallback.onDeviceChange",
       [](const JsArgs& a) {
         auto id = a.str(0);
         auto type = a.i32(1);
         auto state = a.i32(2);
         return on<Device>(
             [=](Device* l) { l->onDeviceChange(id, as<rtc::DeviceType>(type), as<rtc::DeviceState>(state)); });
       }},
      {"IMediaDeviceCallback.onTestMicVolume",
       [](const JsArgs& a) {
         auto volume = a.i32(0);
         return on<Device>([=](Device* l) { l->onTestMicVolume(volume); });
       }},
      {"IMediaDeviceCallback.onTestSpeakerVolume",
       [](const JsArgs& a) {
         auto volume = a.i32(0);
         return on<Device>([=](Device* l) { l->onTestSpeakerVolume(volume); });
       }},
      {"IMediaDeviceCallback.onAudioDeviceCaptureVolumeChanged",
       [](const JsArgs& a) {
         auto volume = a.i32(0);
         auto muted = a.boolean(1);
         return on<Device>([=](Device* l) { l->onAudioDeviceCaptureVolumeChanged(volume, muted); });
       }},
      {"IMediaDeviceCallback.onAudioDevicePlayoutVolumeChanged",
       [](const JsArgs& a) {
         auto volume = a.i32(0);
         auto muted = a.boolean(1);
         return on<Device>([=](Device* l) { l->onAudioDevicePlayoutVolumeChanged(volume, muted); });
       }},
      {"IMediaDeviceCallback.onSourceSized",
       [](const JsArgs& a) {
         auto id = a.str(0);
         auto type = a.i32(1);
         auto width = a.i32(2);
         auto height = a.i32(3);
         return on<Device>([=](Device* l) {
           l->onSourceSized(id, as<rtc::LocalMediaTranscodingSourceType>(type), width, height);
         });
       }},
      {"IMediaDeviceCallback.onBeautyError",
       [](const JsArgs& a) {
         auto id = a.str(0);
         auto error = a.i32(1);
         auto message = a.str(2);
         return on<Device>([=](Device* l) { l->onBeautyError(id, error, message); });
       }},
      {"IMediaDeviceCallback.onCameraSourceRecordStarted", sourceOnly<&Device::onCameraSourceRecordStarted>},
      {"IMediaDeviceCallback.onCameraSourceRecordStopped", sourceOnly<&Device::onCameraSourceRecordStopped>},
      {"IMediaDeviceCallback.onCameraSourceRecordError",
       sourceCode<rtc::OrvaVideoRecordError, &Device::onCameraSourceRecordError>},
      {"IMediaDeviceCallback.onEncoderError",
       [](const JsArgs& a) {
         auto error = a.i32(0);
         return on<Device>([=](Device* l) { l->onEncoderError(error); });
       }},
      // MediaChannelListener
      {"MediaChannelListener.OnStreamAdd",
       [](const JsArgs& a) {
         auto user = a.cstr(0);
         auto type = a.i32(1);
         auto index = a.i32(2);
         auto streams = toStrings(a.env(), a.at(3));
         auto* channel = channelArg(a, 4);
         return on<Channel>([=](Channel* l) {
           rtc::StringVector vector;
           for (auto& s : streams) vector.add(s);
           l->OnStreamAdd(ptr(user), as<rtc::StreamType>(type), index, vector, channel);
         });
       }},
      {"MediaChannelListener.OnStreamRemove",
       [](const JsArgs& a) {
         auto user = a.cstr(0);
         auto type = a.i32(1);
         auto index = a.i32(2);
         auto* channel = channelArg(a, 3);
         return on<Channel>(
             [=](Channel* l) { l->OnStreamRemove(ptr(user), as<rtc::StreamType>(type), index, channel); });
       }},
      {"MediaChannelListener.OnAudioEvent",
       [](const JsArgs& a) {
         auto user = a.cstr(0);
         auto event = a.i32(1);
         return on<Channel>([=](Channel* l) { l->OnAudioEvent(ptr(user), as<rtc::AudioEvent>(event)); });
       }},
      {"MediaChannelListener.OnVideoEvent",
       [](const JsArgs& a) {
         auto user = a.cstr(0);
         auto event = a.i32(1);
         return on<Channel>([=](Channel* l) { l->OnVideoEvent(ptr(user), as<rtc::VideoEvent>(event)); });
       }},
      {"MediaChannelListener.OnAudioLevelChanged",
       [](const JsArgs& a) {
         auto user = a.cstr(0);
         auto level = a.i32(1);
         return on<Channel>([=](Channel* l) { l->OnAudioLevelChanged(ptr(user), level); });
       }},
      {"MediaChannelListener.OnVideoSizeFirst",
       [](const JsArgs& a) {
         auto user = a.str(0);
         auto width = a.i32(1);
         auto height = a.i32(2);
         return on<Channel>([=](Channel* l) { l->OnVideoSizeFirst(user, width, height); });
       }},
      {"MediaChannelListener.OnVideoSizeChanged",
       [](const JsArgs& a) {
         auto user = a.str(0);
         auto width = a.i32(1);
         auto height = a.i32(2);
         return on<Channel>([=](Channel* l) { l->OnVideoSizeChanged(user, width, height); });
       }},
      {"MediaChannelListener.OnVideoLevelChanged",
       [](const JsArgs& a) {
         auto user = a.str(0);
         auto level = a.str(1);
         auto detail = a.str(2);
         return on<Channel>([=](Channel* l) { l->OnVideoLevelChanged(user, level, detail); });
       }},
      {"MediaChannelListener.OnAudioFilePlayError",
       [](const JsArgs& a) {
         auto file = a.cstr(0);
         auto error = a.i32(1);
         return on<Channel>([=](Channel* l) { l->OnAudioFilePlayError(ptr(file), error); });
       }},
      {"MediaChannelListener.OnAudioFilePlayCompleted",
       [](const JsArgs& a) {
         auto file = a.cstr(0);
         return on<Channel>([=](Channel* l) { l->OnAudioFilePlayCompleted(ptr(file)); });
       }},
      {"MediaChannelListener.OnMediaChannelTerminate",
       [](const JsArgs&) { return on<Channel>([](Channel* l) { l->OnMediaChannelTerminate(); }); }},
      // MediaLiveListener
      {"MediaLiveListener.OnVideoEvent",
       [](const JsArgs& a) {
         auto event = a.i32(0);
         return on<Live>([=](Live* l) { l->OnVideoEvent(as<rtc::VideoEvent>(event)); });
       }},
      {"MediaLiveListener.OnAudioEvent",
       [](const JsArgs& a) {
         auto event = a.i32(0);
         return on<Live>([=](Live* l) { l->OnAudioEvent(as<rtc::AudioEvent>(event)); });
       }},
      // VideoFrameProcessor (frames go through deliverFrame)
      {"VideoFrameProcessor.OnVideoFormatChanged",
       [](const JsArgs& a) {
         auto width = a.i32(0);
         auto height = a.i32(1);
         return on<Processor>([=](Processor* l) { l->OnVideoFormatChanged(width, height); });
       }},
  };
  return *entries;
}

}  // namespace

Raise findRaise(const std::string& face, const std::string& method, const JsArgs& args) {
  auto it = table().find(face + "." + method);
  return it != table().end() ? it->second(args) : Raise();
}

}  // namespace test_control
