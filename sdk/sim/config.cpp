#include "config.h"

#include <algorithm>

namespace orva::loopback {
namespace {

void readMs(Orva::Rtc::Settings& s, const char* key, int& value) { value = std::max(1, s.get(key, value)); }

void readText(Orva::Rtc::Settings& s, const char* key, std::string& value) { value = s.get(key, value.c_str()); }

}  // namespace

Config applySettings(Config c, Orva::Rtc::Settings* settings) {
  if (settings == nullptr) return c;
  auto& s = *settings;
  readMs(s, "loopback.join.delay.ms", c.joinDelayMs);
  readMs(s, "loopback.peer.delay.ms", c.peerDelayMs);
  readMs(s, "loopback.stats.interval.ms", c.statsIntervalMs);
  readMs(s, "loopback.volume.interval.ms", c.volumeIntervalMs);
  readMs(s, "loopback.echo.delay.ms", c.echoDelayMs);
  readMs(s, "loopback.file.duration.ms", c.fileDurationMs);
  readMs(s, "loopback.file.tick.ms", c.fileTickMs);
  readText(s, "loopback.local.user", c.localUser);
  readText(s, "loopback.peer.user", c.peerUser);
  readText(s, "media.global.log.file", c.logFile);
  return c;
}

}  // namespace orva::loopback
