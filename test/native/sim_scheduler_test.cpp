// The engine's threading core: the event thread's task order and shutdown,
// and the listener registry's wait for calls in flight.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <set>
#include <thread>

#include "listener_registry.h"
#include "scheduler.h"

namespace {

using namespace std::chrono_literals;
using orva::loopback::ListenerRegistry;
using orva::loopback::Scheduler;
namespace rtc = Orva::Rtc;

// Test that tasks run by due time, ties in posting order, on one thread
// that is not the poster's, and that runAndWait from that thread runs in place.
TEST(Scheduler, RunsByDueTimeThenPostingOrder) {
  Scheduler scheduler;
  scheduler.start();
  std::mutex mutex;
  std::vector<int> order;
  std::set<std::thread::id> threads;
  auto note = [&](int n) {
    return [&, n] {
      std::lock_guard lock(mutex);
      order.push_back(n);
      threads.insert(std::this_thread::get_id());
    };
  };
  scheduler.post(30ms, note(3));
  scheduler.post(0ms, note(1));
  scheduler.post(0ms, note(2));
  scheduler.post(10ms, note(4));
  std::promise<void> last;
  scheduler.post(40ms, [&] { last.set_value(); });
  last.get_future().wait();
  bool inner = false;
  EXPECT_TRUE(scheduler.runAndWait([&] { EXPECT_TRUE(scheduler.runAndWait([&] { inner = true; })); }));
  EXPECT_TRUE(inner);
  scheduler.stop();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 4, 3}));
  ASSERT_EQ(threads.size(), 1u);
  EXPECT_NE(*threads.begin(), std::this_thread::get_id());
}

// Test that stop drops pending tasks, refuses new ones, and that a waiter
// whose task was dropped is released instead of left blocked.
TEST(Scheduler, StopDropsPendingTasksAndReleasesWaiters) {
  Scheduler scheduler;
  scheduler.start();
  std::atomic<int> ran{0};
  scheduler.post(1h, [&] { ++ran; });
  std::promise<void> blockerStarted;
  std::atomic<bool> release{false};
  scheduler.post(0ms, [&] {
    blockerStarted.set_value();
    while (!release) std::this_thread::sleep_for(1ms);
  });
  blockerStarted.get_future().wait();
  auto waiter = std::async(std::launch::async, [&] { return scheduler.runAndWait([&] { ++ran; }); });
  // Gives the waiter a chance to post before the stop; one that comes later
  // is refused at once, which the checks below accept too.
  std::this_thread::sleep_for(20ms);
  auto stopper = std::async(std::launch::async, [&] { scheduler.stop(); });
  while (scheduler.running()) std::this_thread::yield();  // stop has begun: nothing more will run
  release = true;
  stopper.get();
  EXPECT_FALSE(waiter.get());
  EXPECT_EQ(ran, 0);
  EXPECT_FALSE(scheduler.post(0ms, [&] { ++ran; }));
  EXPECT_FALSE(scheduler.runAndWait([&] { ++ran; }));
  scheduler.start();  // and it starts again
  EXPECT_TRUE(scheduler.runAndWait([&] { ++ran; }));
  EXPECT_EQ(ran, 1);
  scheduler.stop();
}

struct CombinedListener : rtc::OrvaEngineListener {
  std::atomic<bool> inside{false};
  std::atomic<bool> done{false};
  void OnSessionStateChanged(const char*, rtc::MediaSessionState, rtc::MediaSessionState) override {
    inside = true;
    std::this_thread::sleep_for(60ms);
    done = true;
  }
};

struct CountingProcessor : rtc::VideoFrameProcessor {
  std::atomic<int> frames{0};
  void OnVideoFrame(rtc::VideoFrame*) override { ++frames; }
};

// Test that forget() clears the faces of the listener or processor it is
// given at once, and no others, but returns only when a call already in
// flight on one of them has returned.
TEST(ListenerRegistry, ForgetClearsOnlyItsFacesAndWaitsForCallsInFlight) {
  ListenerRegistry registry;
  CombinedListener listener;
  CountingProcessor processor;
  registry.setAll(&listener);
  registry.set<rtc::VideoFrameProcessor>(&processor);
  EXPECT_TRUE(registry.invoke<rtc::VideoFrameProcessor>([](auto* p) { p->OnVideoFrame(nullptr); }));
  registry.forget(nullptr, &processor);
  EXPECT_FALSE(registry.invoke<rtc::VideoFrameProcessor>([](auto* p) { p->OnVideoFrame(nullptr); }));
  EXPECT_TRUE(registry.invoke<rtc::MediaLiveListener>([](auto*) {}));
  EXPECT_EQ(processor.frames, 1);

  std::thread caller([&] {
    registry.invoke<rtc::MediaServiceListener>([](auto* l) { l->OnSessionStateChanged("r", rtc::Joined, rtc::Init); });
  });
  while (!listener.inside) std::this_thread::yield();
  registry.forget(&listener, nullptr);
  EXPECT_TRUE(listener.done);
  EXPECT_FALSE(registry.invoke<rtc::MediaChannelListener>([](auto*) {}));
  caller.join();
}

}  // namespace
