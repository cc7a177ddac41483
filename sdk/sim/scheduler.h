// The engine's event thread: runs tasks at their due time, in due order
// (ties in posting order). Every listener callback except video frames runs
// here, so callbacks never run on a caller's thread and never overlap.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <queue>
#include <thread>
#include <vector>

namespace orva::loopback {

class Scheduler {
 public:
  using Clock = std::chrono::steady_clock;
  using Task = std::function<void()>;

  Scheduler() = default;
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;

  // Starts the thread unless it runs. Any thread but the scheduler's own.
  void start();
  // Drops every pending task, then stops and joins the thread. Called on the
  // scheduler's own thread it only asks the thread to end after the current
  // task; the next start() or stop() from another thread joins it.
  void stop();

  // Runs `task` after `delay`. False, and the task is dropped, when the
  // thread is not running.
  bool post(std::chrono::milliseconds delay, Task task);
  // Runs `task` on the scheduler thread and waits for it; runs it in place
  // when called on the scheduler thread. False when the thread is not running.
  bool runAndWait(const Task& task);

  bool running() const;
  // Whether the calling thread is this scheduler's thread.
  bool onThread() const;

 private:
  struct Entry {
    Clock::time_point due;
    uint64_t sequence;
    Task task;
  };
  struct Later {
    bool operator()(const Entry& a, const Entry& b) const {
      return a.due != b.due ? a.due > b.due : a.sequence > b.sequence;
    }
  };

  void run();

  mutable std::mutex mutex_;  // guards every field below
  std::condition_variable wake_;
  std::priority_queue<Entry, std::vector<Entry>, Later> tasks_;
  uint64_t nextSequence_ = 0;
  bool running_ = false;   // accepting tasks
  bool stopping_ = false;  // the thread should end
  std::thread thread_;
  std::thread::id threadId_;
};

}  // namespace orva::loopback
