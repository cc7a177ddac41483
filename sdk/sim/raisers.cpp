#include "raisers.h"

namespace orva::loopback {

bool Raisers::start(int threads, int perThread) {
  if (threads < 1 || perThread < 0) return false;
  std::lock_guard lock(mutex_);
  stopping_ = false;
  for (int index = 0; index < threads; ++index) {
    threads_.emplace_back([this, index, perThread] {
      for (int seq = 0; seq < perThread && !stopping_.load(); ++seq) {
        registry_.invoke<rtc::AudioServiceListener>([&](auto* l) { l->OnPlayFilePosChanged(index, seq, 0); });
      }
    });
  }
  return true;
}

void Raisers::join() {
  std::vector<std::thread> threads;
  {
    std::lock_guard lock(mutex_);
    threads.swap(threads_);
  }
  for (auto& thread : threads) {
    if (thread.get_id() == std::this_thread::get_id()) {
      thread.detach();  // joined from its own callback: it ends on return
    } else {
      thread.join();
    }
  }
}

void Raisers::stop() {
  stopping_ = true;
  join();
}

}  // namespace orva::loopback
