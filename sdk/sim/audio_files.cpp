#include "audio_files.h"

#include <algorithm>
#include <chrono>

#include "status.h"

namespace orva::loopback {

using std::chrono::milliseconds;

void AudioFiles::configure(const Config& config) {
  std::lock_guard lock(mutex_);
  config_ = config;
}

void AudioFiles::start(int fileId, const rtc::AudioFileParam* param) {
  if (param == nullptr || param->path == nullptr || *param->path == '\0') return;
  std::lock_guard lock(mutex_);
  File file;
  file.generation = ++nextGeneration_;
  file.durationMs = config_.fileDurationMs;
  file.endMs = param->to > 0 ? std::min(param->to, file.durationMs) : file.durationMs;
  file.positionMs = std::clamp(std::max(param->pos, param->from), 0, file.endMs);
  file.loopsLeft = std::max(param->loopCount, 1) - 1;
  files_[fileId] = file;  // restarting an id replaces its old run
  const int duration = file.durationMs;
  events_.raise<rtc::AudioServiceListener>([=](auto* l) { l->OnPlayFileStart(fileId, duration); });
  const uint64_t generation = file.generation;
  events_.later(milliseconds(config_.fileTickMs), [this, fileId, generation] { tick(fileId, generation); });
}

void AudioFiles::tick(int fileId, uint64_t generation) {
  int position = 0;
  int duration = 0;
  bool ended = false;
  int interval = 0;
  {
    std::lock_guard lock(mutex_);
    auto it = files_.find(fileId);
    if (it == files_.end() || it->second.generation != generation) return;
    File& file = it->second;
    interval = config_.fileTickMs;
    if (!file.paused) {
      file.positionMs = std::min(file.positionMs + interval, file.endMs);
      if (file.positionMs >= file.endMs && file.loopsLeft > 0) {
        --file.loopsLeft;
        file.positionMs = 0;
      }
    }
    position = file.positionMs;
    duration = file.durationMs;
    ended = !file.paused && file.positionMs >= file.endMs;
    if (ended) files_.erase(it);
  }
  auto& registry = events_.registry();
  registry.invoke<rtc::AudioServiceListener>([&](auto* l) { l->OnPlayFilePosChanged(fileId, position, duration); });
  if (ended) {
    registry.invoke<rtc::AudioServiceListener>([&](auto* l) { l->OnPlayFileEnd(fileId, kEndFinished); });
    return;
  }
  events_.later(milliseconds(interval), [this, fileId, generation] { tick(fileId, generation); });
}

void AudioFiles::pause(int fileId) {
  std::lock_guard lock(mutex_);
  if (auto it = files_.find(fileId); it != files_.end()) it->second.paused = true;
}

void AudioFiles::resume(int fileId) {
  std::lock_guard lock(mutex_);
  if (auto it = files_.find(fileId); it != files_.end()) it->second.paused = false;
}

void AudioFiles::stop(int fileId) {
  {
    std::lock_guard lock(mutex_);
    if (files_.erase(fileId) == 0) return;
  }
  events_.raise<rtc::AudioServiceListener>([=](auto* l) { l->OnPlayFileEnd(fileId, kEndStopped); });
}

void AudioFiles::seek(int fileId, int positionMs) {
  std::lock_guard lock(mutex_);
  if (auto it = files_.find(fileId); it != files_.end()) {
    it->second.positionMs = std::clamp(positionMs, 0, it->second.endMs);
  }
}

int AudioFiles::position(int fileId) {
  std::lock_guard lock(mutex_);
  auto it = files_.find(fileId);
  return it != files_.end() ? it->second.positionMs : -1;
}

int AudioFiles::duration(const char* path) {
  if (path == nullptr || *path == '\0') return kInvalidArgument;
  std::lock_guard lock(mutex_);
  return config_.fileDurationMs;
}

void AudioFiles::terminate() {
  clear();
  events_.raise<rtc::AudioServiceListener>([](auto* l) { l->OnPlayFileTerminate(); });
}

void AudioFiles::clear() {
  std::lock_guard lock(mutex_);
  files_.clear();
  ++channelGeneration_;
}

int AudioFiles::startChannelFile(const char* file, bool loop) {
  if (file == nullptr || *file == '\0') return kInvalidArgument;
  std::lock_guard lock(mutex_);
  const uint64_t generation = ++channelGeneration_;
  if (loop) return kOk;  // a looping file never completes
  const std::string path = file;
  events_.later(milliseconds(config_.fileDurationMs), [this, generation, path] {
    {
      std::lock_guard inner(mutex_);
      if (generation != channelGeneration_) return;
    }
    events_.registry().invoke<rtc::MediaChannelListener>([&](auto* l) { l->OnAudioFilePlayCompleted(path.c_str()); });
  });
  return kOk;
}

void AudioFiles::stopChannelFile() {
  std::lock_guard lock(mutex_);
  ++channelGeneration_;
}

}  // namespace orva::loopback
