// The engine's working parts, shared by every interface object. Built once,
// on the heap, never destroyed: engine threads may outlive static
// destruction, so nothing they touch may be torn down at exit.
//
// Threads: the scheduler thread runs every callback but frames; the video
// pump's thread delivers frames; the control seam's raiser threads raise
// test events. Each part guards its own state with its own mutex, and no
// part calls a listener while holding one.
#pragma once

#include <mutex>

#include "audio_files.h"
#include "config.h"
#include "device_core.h"
#include "engine_log.h"
#include "events.h"
#include "guarded.h"
#include "listener_registry.h"
#include "media_state.h"
#include "raisers.h"
#include "scheduler.h"
#include "session_core.h"
#include "transcoder_core.h"

namespace orva::loopback {

class CoreParts {
 public:
  CoreParts();
  CoreParts(const CoreParts&) = delete;
  CoreParts& operator=(const CoreParts&) = delete;

  Scheduler scheduler;
  ListenerRegistry registry;
  Events events{scheduler, registry};
  EngineLog log;
  DeviceCore device{events};
  SessionCore session{events, device};
  AudioFiles files{events};
  TranscoderCore transcoder{events, session};
  Guarded<MediaState> media;
  Raisers raisers{registry};

  // Starts the engine threads (if not running) and applies `settings`
  // (null keeps the current configuration). Any thread but an engine one.
  void start(rtc::Settings* settings);
  // Leaves any session (Leaved is reported first), stops and joins every
  // engine thread and forgets every registration. Idempotent.
  void stop();
  // stop(), then every part's state back to what a fresh engine has: the
  // machine's devices and levels, no session, group, echo test, file or
  // media setting, and the settings of earlier initialisations forgotten.
  // Any thread but an engine one.
  void reset();
  bool running() { return scheduler.running(); }
  // removeEventHandler: forgets the registrations and waits out calls.
  void forget(rtc::OrvaEngineListener* listener, rtc::VideoFrameProcessor* processor);

  void logInfo(const std::string& text) { log.write("info", text); }

 private:
  void stopLocked();

  std::mutex lifecycle_;  // serialises start(), stop() and reset(); guards base_
  Config base_;
};

}  // namespace orva::loopback
