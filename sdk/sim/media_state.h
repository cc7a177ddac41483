// What callers set on the media channels, live push, renders, remote
// transcoding and beauty filters: state the loopback keeps and reports back
// but that drives no callbacks. Guarded by Core::media.
#pragma once

#include <map>
#include <set>
#include <string>

#include "orva/sdk.h"

namespace orva::loopback {

namespace rtc = Orva::Rtc;

struct MediaState {
  // Local video and audio as published.
  rtc::VideoSource videoSource = rtc::CameraSource;
  std::string videoSourceId;
  rtc::AudioSource audioSource = rtc::MicrophoneSource;
  rtc::VideoEncParam encoder;
  bool simulcast = false;
  bool mirror = false;
  bool videoPaused = false;
  bool audioMuted = false;
  bool mixOutput = false;
  float fileVolume = 1;
  std::string muteImage;
  int muteImageFps = 0;
  int seiSent = 0;
  int videoFramesDelivered = 0;
  int audioFramesDelivered = 0;
  rtc::DowngradeParam downgrade;
  std::map<std::string, std::string> channelSettings;

  // Remote users as rendered and played.
  std::set<std::string> renders;
  std::set<std::string> playouts;
  std::set<std::string> mutedUsers;
  std::set<std::string> pausedRenders;
  std::set<std::string> pausedUsers;
  std::map<std::string, rtc::VideoFrameProcessor*> videoProcessors;
  std::map<std::string, rtc::AudioFrameProcessor*> audioProcessors;
  void* localRenderView = nullptr;

  // Transcoding views and remote transcoding.
  void* mixedView = nullptr;
  void* remoteView = nullptr;
  int renderFps = 0;
  bool remoteTranscoding = false;

  // Live push and service settings.
  bool liveInitialised = false;
  std::string liveUrl;
  void* liveView = nullptr;
  std::string rtmpUrl;
  rtc::NetworkType networkType = rtc::kNetworkTypeUnknown;
  std::map<std::string, std::string> serviceSettings;

  // Beauty filters.
  std::set<std::string> beautyCameras;
  std::map<std::string, std::string> beautyParams;
  std::map<std::string, rtc::BeautyInfo> beautyInfo;
  std::map<std::string, bool> skinSegmentation;
  std::string face2DPath;
};

}  // namespace orva::loopback
