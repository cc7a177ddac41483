// Audio-file playback of the audio service: every file "plays" for the
// configured duration, reporting its start, its position every tick and its
// end; and the single file a media channel plays, which reports completion.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "config.h"
#include "events.h"

namespace orva::loopback {

class AudioFiles {
 public:
  explicit AudioFiles(Events& events) : events_(events) {}
  void configure(const Config& config);

  void start(int fileId, const rtc::AudioFileParam* param);
  void pause(int fileId);
  void resume(int fileId);
  // Ends the file early: OnPlayFileEnd(fileId, kEndStopped).
  void stop(int fileId);
  void seek(int fileId, int positionMs);
  int position(int fileId);  // -1 for a file that is not playing
  int duration(const char* path);
  // Stops every file without end callbacks and raises OnPlayFileTerminate.
  void terminate();
  void clear();  // engine shutdown: forget every file silently

  int startChannelFile(const char* file, bool loop);
  void stopChannelFile();

  static constexpr int kEndFinished = 0;
  static constexpr int kEndStopped = 1;

 private:
  struct File {
    uint64_t generation = 0;
    int positionMs = 0;
    int durationMs = 0;
    int endMs = 0;  // the param's `to`, else the duration
    int loopsLeft = 0;
    bool paused = false;
  };
  void tick(int fileId, uint64_t generation);

  Events& events_;
  std::mutex mutex_;  // guards every field below
  Config config_;
  std::map<int, File> files_;
  uint64_t nextGeneration_ = 0;
  uint64_t channelGeneration_ = 0;
};

}  // namespace orva::loopback
