// Timing and identity of the loopback session, read from Settings. Every key
// is optional; see README.md for the list.
#pragma once

#include <string>

#include "orva/lists.h"

namespace orva::loopback {

struct Config {
  int joinDelayMs = 30;                    // "loopback.join.delay.ms": Joining -> Joined
  int peerDelayMs = 20;                    // "loopback.peer.delay.ms": Joined -> peer publishes
  int statsIntervalMs = 2000;              // "loopback.stats.interval.ms": OnNetworkStats period
  int volumeIntervalMs = 500;              // "loopback.volume.interval.ms": user volume period
  int echoDelayMs = 300;                   // "loopback.echo.delay.ms": echo test start -> result
  int fileDurationMs = 2000;               // "loopback.file.duration.ms": length of every audio file
  int fileTickMs = 250;                    // "loopback.file.tick.ms": OnPlayFilePosChanged period
  std::string localUser = "local-user";    // "loopback.local.user"
  std::string peerUser = "loopback-peer";  // "loopback.peer.user"
  std::string logFile;                     // "media.global.log.file"
};

// `base` with every key present in `settings` applied (null: `base`).
// Durations below 1 ms become 1 ms; malformed numbers keep the base value.
Config applySettings(Config base, Orva::Rtc::Settings* settings);

}  // namespace orva::loopback
