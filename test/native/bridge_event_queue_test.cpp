// The queue between engine threads and the script thread, with real threads.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "bridge/event_queue.h"

namespace orva::bridge {
namespace {

PendingEvent numbered(int producer, int sequence) {
  PendingEvent event;
  event.id = EventId::kOnPlayFilePosChanged;
  event.int1 = producer;
  event.int2 = sequence;
  return event;
}

void countWake(void* context) { static_cast<std::atomic<int>*>(context)->fetch_add(1); }

// Test that events come out in the order they went in, one per pop, with
// their payloads, also while the storage wraps around and grows: take some,
// add more than fit, take the rest; an emptied queue says so and pops nothing.
TEST(EventQueue, DeliversInOrderAcrossWrapAndGrowth) {
  EventQueue queue;
  EXPECT_TRUE(queue.empty());
  PendingEvent event = numbered(0, 0);
  event.payload = std::make_unique<EventPayload>();
  event.payload->details.emplace("k", "v");
  event.str1 = std::string(100, 'x');
  EXPECT_TRUE(queue.push(std::move(event)));
  int pushed = 1;
  int popped = 0;
  PendingEvent out;
  for (int round = 0; round < 5; ++round) {
    for (int i = 0; i < 50 + 70 * round; ++i) EXPECT_TRUE(queue.push(numbered(0, pushed++)));
    EXPECT_FALSE(queue.empty());
    for (int i = 0; i < 40 + 20 * round; ++i) {
      ASSERT_TRUE(queue.pop(out));
      ASSERT_EQ(out.int2, popped++);
      if (out.int2 == 0) {
        ASSERT_NE(out.payload, nullptr);
        EXPECT_EQ(out.payload->details.at("k"), "v");
        EXPECT_EQ(out.str1.size(), 100u);
      }
    }
  }
  while (queue.pop(out)) ASSERT_EQ(out.int2, popped++);
  EXPECT_EQ(popped, pushed);
  EXPECT_TRUE(queue.empty());
  EXPECT_FALSE(queue.pop(out));
}

// Test that four producers and a concurrent consumer lose nothing, duplicate
// nothing and keep each producer's order.
TEST(EventQueue, ManyProducersOneConsumer) {
  constexpr int kProducers = 4;
  constexpr int kPerProducer = 50000;
  EventQueue queue;
  std::atomic<int> wakes{0};
  queue.attach(countWake, &wakes);
  std::atomic<bool> producing{true};
  std::vector<int> next(kProducers, 0);
  int delivered = 0;
  std::thread consumer([&] {
    PendingEvent out;
    while (producing.load() || !queue.empty()) {
      while (queue.pop(out)) {
        ASSERT_EQ(out.int2, next[out.int1]) << "producer " << out.int1 << " out of order";
        ++next[out.int1];
        ++delivered;
      }
      std::this_thread::yield();
    }
  });
  std::vector<std::thread> producers;
  for (int p = 0; p < kProducers; ++p) {
    producers.emplace_back([&queue, p] {
      for (int i = 0; i < kPerProducer; ++i) queue.push(numbered(p, i));
    });
  }
  for (auto& producer : producers) producer.join();
  producing.store(false);
  consumer.join();
  EXPECT_EQ(delivered, kProducers * kPerProducer);
  for (int p = 0; p < kProducers; ++p) EXPECT_EQ(next[p], kPerProducer);
  EXPECT_EQ(wakes.load(), kProducers * kPerProducer);
}

// Test that events pushed while no consumer is attached wait for the next
// one, which attaching wakes once for them all; that closing and detaching
// both wait for a wake still running on another thread before they return,
// so that the wake target may go away; and that closing drops waiting and
// later events where detaching keeps them.
TEST(EventQueue, EventsWaitForTheNextConsumerUnlessClosed) {
  struct Case {
    const char* label;
    void (EventQueue::*stop)();  // null: no consumer was ever attached
    bool keepsEvents;
  };
  const Case cases[] = {
      {"never attached", nullptr, true}, {"close", &EventQueue::close, false}, {"detach", &EventQueue::detach, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EventQueue queue;
    if (c.stop == nullptr) {
      EXPECT_TRUE(queue.push(numbered(0, 0)));
    } else {
      std::atomic<bool> inWake{false};
      std::atomic<bool> wakeDone{false};
      struct Context {
        std::atomic<bool>* inWake;
        std::atomic<bool>* wakeDone;
      } context{&inWake, &wakeDone};
      queue.attach(
          [](void* raw) {
            auto* running = static_cast<Context*>(raw);
            running->inWake->store(true);
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            running->wakeDone->store(true);
          },
          &context);
      std::thread producer([&] { queue.push(numbered(0, 0)); });
      while (!inWake.load()) std::this_thread::yield();
      (queue.*c.stop)();
      EXPECT_TRUE(wakeDone.load()) << "returned while a wake was running";
      producer.join();
    }
    EXPECT_EQ(queue.push(numbered(0, 1)), c.keepsEvents);
    std::atomic<int> wakes{0};
    queue.attach(countWake, &wakes);
    EXPECT_EQ(wakes.load(), c.keepsEvents ? 1 : 0) << "the next consumer is woken once for what waits";
    std::vector<int> delivered;
    PendingEvent out;
    while (queue.pop(out)) delivered.push_back(out.int2);
    EXPECT_EQ(delivered, c.keepsEvents ? std::vector<int>({0, 1}) : std::vector<int>());
  }
}

}  // namespace
}  // namespace orva::bridge
