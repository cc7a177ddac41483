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

// Test that events come out in the order they went in, one per pop, also
// while the storage wraps around and grows: take some, add more than fit,
// take the rest; an emptied queue says so and pops nothing.
TEST(EventQueue, DeliversInOrderAcrossWrapAndGrowth) {
  EventQueue queue;
  EXPECT_TRUE(queue.empty());
  int pushed = 0;
  int popped = 0;
  PendingEvent out;
  for (int round = 0; round < 5; ++round) {
    for (int i = 0; i < 50 + 70 * round; ++i) EXPECT_TRUE(queue.push(numbered(0, pushed++)));
    EXPECT_FALSE(queue.empty());
    for (int i = 0; i < 40 + 20 * round; ++i) {
      ASSERT_TRUE(queue.pop(out));
      ASSERT_EQ(out.int2, popped++);
    }
  }
  while (queue.pop(out)) ASSERT_EQ(out.int2, popped++);
  EXPECT_EQ(popped, pushed);
  EXPECT_TRUE(queue.empty());
  EXPECT_FALSE(queue.pop(out));
}

// Test that events raised before a consumer attaches wait, and that
// attaching wakes the consumer once for them.
TEST(EventQueue, KeepsEventsUntilAConsumerAttaches) {
  EventQueue queue;
  std::atomic<int> wakes{0};
  queue.push(numbered(0, 0));
  queue.push(numbered(0, 1));
  EXPECT_EQ(wakes.load(), 0);
  queue.attach(countWake, &wakes);
  EXPECT_EQ(wakes.load(), 1);
  queue.push(numbered(0, 2));
  EXPECT_EQ(wakes.load(), 2) << "one wake per push once attached";
  PendingEvent out;
  int delivered = 0;
  while (queue.pop(out)) EXPECT_EQ(out.int2, delivered++);
  EXPECT_EQ(delivered, 3);
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

// Test that closing and detaching both wait for a wake that is still running
// on another thread before they return, so that the wake target may go away;
// closing drops waiting and later events, detaching keeps them for the next
// consumer.
TEST(EventQueue, CloseAndDetachWaitForWakes) {
  struct Case {
    const char* label;
    void (EventQueue::*stop)();
    bool keepsEvents;
  };
  const Case cases[] = {{"close", &EventQueue::close, false}, {"detach", &EventQueue::detach, true}};
  for (const Case& c : cases) {
    EventQueue queue;
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
    EXPECT_TRUE(wakeDone.load()) << c.label << " returned while a wake was running";
    producer.join();
    EXPECT_EQ(queue.push(numbered(0, 1)), c.keepsEvents) << c.label;
    std::atomic<int> wakes{0};
    queue.attach(countWake, &wakes);
    EXPECT_EQ(wakes.load(), c.keepsEvents ? 1 : 0) << c.label << ": the next consumer is woken for what waits";
    std::vector<int> delivered;
    PendingEvent out;
    while (queue.pop(out)) delivered.push_back(out.int2);
    EXPECT_EQ(delivered, c.keepsEvents ? std::vector<int>({0, 1}) : std::vector<int>()) << c.label;
  }
}

// Test that an event's payload moves with it.
TEST(EventQueue, MovesPayloads) {
  EventQueue queue;
  PendingEvent event = numbered(0, 0);
  event.payload = std::make_unique<EventPayload>();
  event.payload->details.emplace("k", "v");
  event.str1 = std::string(100, 'x');
  queue.push(std::move(event));
  PendingEvent out;
  ASSERT_TRUE(queue.pop(out));
  ASSERT_NE(out.payload, nullptr);
  EXPECT_EQ(out.payload->details.at("k"), "v");
  EXPECT_EQ(out.str1.size(), 100u);
}

}  // namespace
}  // namespace orva::bridge
