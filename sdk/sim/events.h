// Raising a listener callback: the call is posted to the event thread and
// made there through the registry, so it never runs on the caller's thread
// and removeEventHandler can wait for it. Whatever `fn` captures must be
// owned by it (copies), since the caller's arguments are gone by then.
#pragma once

#include <chrono>
#include <utility>

#include "listener_registry.h"
#include "scheduler.h"

namespace orva::loopback {

class Events {
 public:
  Events(Scheduler& scheduler, ListenerRegistry& registry) : scheduler_(scheduler), registry_(registry) {}

  template <class Face, class Fn>
  void raise(Fn fn, std::chrono::milliseconds delay = std::chrono::milliseconds(0)) {
    scheduler_.post(delay, [this, fn = std::move(fn)] { registry_.invoke<Face>(fn); });
  }
  template <class Fn>
  void later(std::chrono::milliseconds delay, Fn fn) {
    scheduler_.post(delay, std::move(fn));
  }

  Scheduler& scheduler() { return scheduler_; }
  ListenerRegistry& registry() { return registry_; }

 private:
  Scheduler& scheduler_;
  ListenerRegistry& registry_;
};

}  // namespace orva::loopback
