#include "scheduler.h"

#include <memory>
#include <utility>

namespace orva::loopback {

void Scheduler::start() {
  std::unique_lock lock(mutex_);
  if (running_) return;
  if (thread_.joinable()) {
    // A thread told to stop from inside itself: wait for its end first.
    lock.unlock();
    thread_.join();
    lock.lock();
  }
  running_ = true;
  stopping_ = false;
  thread_ = std::thread([this] { run(); });
  threadId_ = thread_.get_id();
}

void Scheduler::stop() {
  std::thread finished;
  {
    std::lock_guard lock(mutex_);
    running_ = false;
    stopping_ = true;
    tasks_ = {};
    wake_.notify_all();
    if (std::this_thread::get_id() == threadId_) return;
    finished = std::move(thread_);
    threadId_ = {};
  }
  if (finished.joinable()) finished.join();
}

bool Scheduler::post(std::chrono::milliseconds delay, Task task) {
  std::lock_guard lock(mutex_);
  if (!running_) return false;
  tasks_.push({Clock::now() + delay, nextSequence_++, std::move(task)});
  wake_.notify_all();
  return true;
}

namespace {

// Tells a runAndWait() caller that its task is finished with: run, or dropped
// by stop(). The notifier lives inside the queued task, so it dies exactly
// when the scheduler lets go of the task, whichever way that happens.
struct Completion {
  std::mutex mutex;
  std::condition_variable signal;
  bool finished = false;  // guarded by mutex
  bool ran = false;       // written before finished, read after it
};

struct Notifier {
  explicit Notifier(std::shared_ptr<Completion> c) : completion(std::move(c)) {}
  Notifier(const Notifier&) = delete;
  Notifier& operator=(const Notifier&) = delete;
  ~Notifier() {
    std::lock_guard lock(completion->mutex);
    completion->finished = true;
    completion->signal.notify_all();
  }
  std::shared_ptr<Completion> completion;
};

}  // namespace

bool Scheduler::runAndWait(const Task& task) {
  if (onThread()) {
    task();
    return true;
  }
  auto completion = std::make_shared<Completion>();
  {
    auto notifier = std::make_shared<Notifier>(completion);
    std::lock_guard lock(mutex_);
    if (!running_) return false;
    tasks_.push({Clock::now(), nextSequence_++, [notifier, &task] {
                   task();
                   notifier->completion->ran = true;
                 }});
    wake_.notify_all();
  }
  std::unique_lock lock(completion->mutex);
  completion->signal.wait(lock, [&] { return completion->finished; });
  return completion->ran;
}

bool Scheduler::running() const {
  std::lock_guard lock(mutex_);
  return running_;
}

bool Scheduler::onThread() const {
  std::lock_guard lock(mutex_);
  return thread_.joinable() && std::this_thread::get_id() == threadId_;
}

void Scheduler::run() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    if (tasks_.empty()) {
      wake_.wait(lock);
      continue;
    }
    const auto due = tasks_.top().due;
    if (Clock::now() < due) {
      wake_.wait_until(lock, due);
      continue;
    }
    {
      Task task = std::move(const_cast<Entry&>(tasks_.top()).task);
      tasks_.pop();
      lock.unlock();
      task();
    }  // the task (and what it captured) dies before the lock is taken again
    lock.lock();
  }
}

}  // namespace orva::loopback
