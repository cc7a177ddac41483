// The engine singleton's object graph: the working parts and every
// interface object over them. Created on first use and never destroyed.
#pragma once

#include "core_parts.h"
#include "engine_impl.h"
#include "services.h"

namespace orva::loopback {

class Core {
 public:
  Core();
  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;

  CoreParts parts;
  MediaDeviceImpl device{parts};
  ChannelImpl realtime{parts, "RealtimeChannel"};
  ChannelImpl live{parts, "LiveChannel"};
  ChannelImpl lightLive{parts, "LightLiveChannel"};
  ChannelImpl group{parts, "GroupChannel"};
  ChannelImpl fusion{parts, "FusionLiveRtcChannel"};
  AudioServiceImpl audio{parts};
  TranscoderImpl transcoder{parts};
  BeautyImpl beauty{parts};
  LiveImpl livePush{parts};
  MediaServiceImpl service{*this};
  EngineImpl engine{*this};
  RtcEngineImpl rtcEngine{*this};
};

Core& core();

// The crash-report client back to not created and enabled (statics.cpp).
void resetCrashReportClient();

}  // namespace orva::loopback
