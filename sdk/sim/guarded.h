// A value and the mutex that guards it: with(fn) runs fn(value) under the
// lock, so no access can forget it.
#pragma once

#include <mutex>

namespace orva::loopback {

template <class T>
class Guarded {
 public:
  template <class Fn>
  auto with(Fn fn) {
    std::lock_guard lock(mutex_);
    return fn(value_);
  }

 private:
  std::mutex mutex_;
  T value_{};
};

}  // namespace orva::loopback
