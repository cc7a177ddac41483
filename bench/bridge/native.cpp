// bench_bridge_native.node: the engine side of the event-bridge benchmarks.
// It links the same engine library as orvaEngine.node, so the listener and
// frame processor it finds registered are the facade's own handler.
//
//   - raiseBridge: bench threads raise OnPlayFilePosChanged(thread, seq, 0)
//     on the registered audio-service face, flat out or paced, stamping each
//     send time by sequence number;
//   - raiseLoopback: the loopback engine's own raiser threads (through its
//     listener registry), for information;
//   - floor*: the same seven values carried by the barest queue there is (a
//     vector swapped under a uv mutex, one uv_async wake-up), calling the
//     script handler through raw V8; the ceiling that the bridge is read
//     against when looking for where it loses time;
//   - raiseMixed: one paced producer taking turns between the bridge, the
//     baseline (whose sender the other addon hands over) and the floor;
//   - startFrames / joinFrames: 60 fps of I420 frames handed to the
//     registered frame processor on the engine's event thread, each timed,
//     next to a plain memcpy of the same frame timed on the same thread, and
//     to a memcpy followed by a wake of the script thread into a callback
//     that does nothing (what any hand-over to script costs at the least);
//   - mark(seq): the handlers' receive stamp, the same for every
//     implementation (it is called from script, so its cost is paid alike).
#include <node.h>
#include <unistd.h>
#include <uv.h>
#include <v8.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "control.h"
#include "raisers.h"

namespace {

namespace control = orva::loopback::control;
namespace rtc = Orva::Rtc;
using v8::FunctionCallbackInfo;
using v8::Isolate;
using v8::Local;
using v8::Value;

// --- helpers -------------------------------------------------------------------

void fail(Isolate* isolate, const char* message) {
  isolate->ThrowException(v8::Exception::TypeError(v8::String::NewFromUtf8(isolate, message).ToLocalChecked()));
}

int32_t intArg(const FunctionCallbackInfo<Value>& info, int index, int32_t fallback = 0) {
  if (info.Length() <= index || !info[index]->IsNumber()) return fallback;
  return static_cast<int32_t>(info[index].As<v8::Number>()->Value());
}

double numberArg(const FunctionCallbackInfo<Value>& info, int index, double fallback = 0) {
  if (info.Length() <= index || !info[index]->IsNumber()) return fallback;
  return info[index].As<v8::Number>()->Value();
}

// A Float64Array's memory, kept alive while native code writes it.
struct Table {
  std::shared_ptr<v8::BackingStore> store;
  double* data = nullptr;
  size_t length = 0;

  static Table of(Local<Value> value) {
    Table table;
    if (!value->IsFloat64Array()) return table;
    Local<v8::Float64Array> array = value.As<v8::Float64Array>();
    table.store = array->Buffer()->GetBackingStore();
    table.data = reinterpret_cast<double*>(static_cast<uint8_t*>(table.store->Data()) + array->ByteOffset());
    table.length = array->Length();
    return table;
  }
};

Local<v8::Float64Array> toArray(Isolate* isolate, const std::vector<double>& values) {
  Local<v8::ArrayBuffer> buffer = v8::ArrayBuffer::New(isolate, values.size() * sizeof(double));
  if (!values.empty()) std::memcpy(buffer->GetBackingStore()->Data(), values.data(), values.size() * sizeof(double));
  return v8::Float64Array::New(buffer, 0, values.size());
}

void set(Local<v8::Context> context, Local<v8::Object> object, const char* key, Local<Value> value) {
  object->Set(context, v8::String::NewFromUtf8(context->GetIsolate(), key).ToLocalChecked(), value).Check();
}

// Resident set size in KiB, from /proc/self/statm.
double residentKiB() {
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr) return 0;
  unsigned long size = 0;
  unsigned long resident = 0;
  const int read = std::fscanf(file, "%lu %lu", &size, &resident);
  std::fclose(file);
  if (read != 2) return 0;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024.0;
}

// --- receive stamps ------------------------------------------------------------

// The tables that native code writes. Never destroyed: at exit V8 may be
// gone before static destructors run, and a backing store must not outlive it.
Table& received() {
  static Table* const table = new Table();
  return *table;
}

Table& sendStamps() {
  static Table* const table = new Table();
  return *table;
}

void setReceiveTable(const FunctionCallbackInfo<Value>& info) {
  received() = info.Length() > 0 ? Table::of(info[0]) : Table{};
}

// Called first thing in the script handler: the receive stamp of `seq`.
void mark(const FunctionCallbackInfo<Value>& info) {
  const uint64_t now = uv_hrtime();
  if (info.Length() < 1 || !info[0]->IsInt32()) return;
  const int32_t seq = info[0].As<v8::Int32>()->Value();
  Table& table = received();
  if (seq >= 0 && static_cast<size_t>(seq) < table.length) table.data[seq] = static_cast<double>(now);
}

void now(const FunctionCallbackInfo<Value>& info) { info.GetReturnValue().Set(static_cast<double>(uv_hrtime())); }

void residentKiBCall(const FunctionCallbackInfo<Value>& info) { info.GetReturnValue().Set(residentKiB()); }

// --- events through the bridge -------------------------------------------------

// The producers of the running sample; one sample at a time.
bench::Raisers gRaisers;

bench::RaisePlan planOf(const FunctionCallbackInfo<Value>& info) {
  bench::RaisePlan plan;
  plan.threads = std::max(1, intArg(info, 0, 1));
  plan.perThread = std::max(0, intArg(info, 1));
  plan.rate = numberArg(info, 2);
  Table& stamps = sendStamps();
  stamps = info.Length() > 3 ? Table::of(info[3]) : Table{};
  if (stamps.length >= static_cast<size_t>(plan.threads) * static_cast<size_t>(plan.perThread)) {
    plan.stamps = stamps.data;
  }
  return plan;
}

// The registered listener faces, read on the engine's event thread.
control::Registered registered() {
  control::Registered found;
  control::runOnEngineThread([&](const control::Registered& faces) { found = faces; });
  return found;
}

// raiseBridge(threads, perThread, rate, sendStamps?) -> whether a listener is registered
void raiseBridge(const FunctionCallbackInfo<Value>& info) {
  const bench::RaisePlan plan = planOf(info);
  rtc::AudioServiceListener* audio = registered().audio;
  if (audio == nullptr) return info.GetReturnValue().Set(false);
  gRaisers.start(plan, [audio](int thread, int seq) { audio->OnPlayFilePosChanged(thread, seq, 0); });
  info.GetReturnValue().Set(true);
}

void join(const FunctionCallbackInfo<Value>&) {
  gRaisers.join();
  sendStamps() = Table{};
}

// raiseLoopback(threads, perThread): the loopback engine's raisers.
void raiseLoopback(const FunctionCallbackInfo<Value>& info) {
  info.GetReturnValue().Set(control::raiseConcurrently(intArg(info, 0, 1), intArg(info, 1)));
}

void joinLoopback(const FunctionCallbackInfo<Value>&) { control::joinRaisers(); }

// --- the floor: a bare uv_async queue ----------------------------------------

struct Floor {
  uv_mutex_t mutex;
  std::vector<bench::Payload> queue;  // guarded by mutex
  std::vector<bench::Payload> taken;  // consumer only
  uv_async_t async{};
  Isolate* isolate = nullptr;
  v8::Global<v8::Context> context;
  v8::Global<v8::Function> handler;
  v8::Global<v8::String> name;
};

Floor* gFloor = nullptr;

v8::Local<v8::Value> floorText(Isolate* isolate, const std::string& value) {
  if (value.empty()) return v8::String::Empty(isolate);
  return v8::String::NewFromUtf8(isolate, value.data(), v8::NewStringType::kNormal, static_cast<int>(value.size()))
      .ToLocalChecked();
}

void floorDrain(uv_async_t* handle) {
  auto* floor = static_cast<Floor*>(handle->data);
  uv_mutex_lock(&floor->mutex);
  floor->taken.swap(floor->queue);
  uv_mutex_unlock(&floor->mutex);
  if (floor->taken.empty()) return;
  Isolate* isolate = floor->isolate;
  v8::HandleScope scope(isolate);
  Local<v8::Context> context = floor->context.Get(isolate);
  v8::Context::Scope contextScope(context);
  node::CallbackScope callbackScope(isolate, v8::Object::New(isolate), node::async_context{0, 0});
  Local<v8::Function> handler = floor->handler.Get(isolate);
  Local<v8::String> name = floor->name.Get(isolate);
  for (const bench::Payload& event : floor->taken) {
    v8::HandleScope eventScope(isolate);
    Local<Value> arguments[] = {
        name,
        v8::Integer::New(isolate, event.int1),
        v8::Integer::New(isolate, event.int2),
        v8::Integer::New(isolate, event.int3),
        floorText(isolate, event.str1),
        floorText(isolate, event.str2),
        v8::Object::New(isolate),
    };
    v8::MaybeLocal<Value> result = handler->Call(context, v8::Undefined(isolate), 7, arguments);
    (void)result;
  }
  floor->taken.clear();
}

void floorPush(Floor* floor, int thread, int seq) {
  uv_mutex_lock(&floor->mutex);
  floor->queue.push_back(bench::positionChanged(thread, seq));
  uv_mutex_unlock(&floor->mutex);
  uv_async_send(&floor->async);
}

// floorOpen(handler)
void floorOpen(const FunctionCallbackInfo<Value>& info) {
  Isolate* isolate = info.GetIsolate();
  if (gFloor != nullptr || info.Length() < 1 || !info[0]->IsFunction()) return fail(isolate, "floorOpen(handler)");
  gFloor = new Floor();
  uv_mutex_init(&gFloor->mutex);
  gFloor->isolate = isolate;
  gFloor->context.Reset(isolate, isolate->GetCurrentContext());
  gFloor->handler.Reset(isolate, info[0].As<v8::Function>());
  gFloor->name.Reset(isolate,
                     v8::String::NewFromUtf8Literal(isolate, bench::kEventName, v8::NewStringType::kInternalized));
  gFloor->async.data = gFloor;
  uv_async_init(node::GetCurrentEventLoop(isolate), &gFloor->async, floorDrain);
}

// floorClose(): the handle goes; producers must have been joined.
void floorClose(const FunctionCallbackInfo<Value>&) {
  if (gFloor == nullptr) return;
  Floor* floor = gFloor;
  gFloor = nullptr;
  floor->handler.Reset();
  floor->context.Reset();
  floor->name.Reset();
  uv_close(reinterpret_cast<uv_handle_t*>(&floor->async), [](uv_handle_t* handle) {
    auto* closing = static_cast<Floor*>(handle->data);
    uv_mutex_destroy(&closing->mutex);
    delete closing;
  });
}

// raiseFloor(threads, perThread, rate, sendStamps?)
void raiseFloor(const FunctionCallbackInfo<Value>& info) {
  if (gFloor == nullptr) return fail(info.GetIsolate(), "floorOpen first");
  const bench::RaisePlan plan = planOf(info);
  Floor* floor = gFloor;
  gRaisers.start(plan, [floor](int thread, int seq) { floorPush(floor, thread, seq); });
  info.GetReturnValue().Set(true);
}

// --- the three side by side ----------------------------------------------------

// The baseline's sender, from the other addon: send(context, thread, seq).
using ForeignSend = void (*)(void* context, int thread, int seq);

uint64_t bigintArg(const FunctionCallbackInfo<Value>& info, int index) {
  if (info.Length() <= index || !info[index]->IsBigInt()) return 0;
  return info[index].As<v8::BigInt>()->Uint64Value();
}

// raiseMixed(run, perPath, rate, sendStamps, tsfnSend, tsfnContext): one
// producer thread, paced; events go in runs of `run` to the bridge, then the
// thread-safe function, then the floor, and again, so that the three see the
// same machine at the same moments. Path of event seq: (seq / run) % 3.
void raiseMixed(const FunctionCallbackInfo<Value>& info) {
  Isolate* isolate = info.GetIsolate();
  const int run = std::max(1, intArg(info, 0, 1));
  const int perPath = std::max(0, intArg(info, 1));
  const double rate = numberArg(info, 2);
  // The other addon hands its sender over as numbers: script has no other
  // way to carry a native pointer between two addons.
  auto send =
      reinterpret_cast<ForeignSend>(static_cast<uintptr_t>(bigintArg(info, 4)));  // NOLINT(performance-no-int-to-ptr)
  auto* context =
      reinterpret_cast<void*>(static_cast<uintptr_t>(bigintArg(info, 5)));  // NOLINT(performance-no-int-to-ptr)
  rtc::AudioServiceListener* audio = registered().audio;
  if (gFloor == nullptr || send == nullptr || audio == nullptr) {
    return fail(isolate, "raiseMixed needs floorOpen, a registered listener and the baseline's sender");
  }
  bench::RaisePlan plan;
  plan.threads = 1;
  plan.perThread = 3 * perPath;
  plan.rate = rate;
  Table& stamps = sendStamps();
  stamps = info.Length() > 3 ? Table::of(info[3]) : Table{};
  if (stamps.length >= static_cast<size_t>(plan.perThread)) plan.stamps = stamps.data;
  Floor* floor = gFloor;
  gRaisers.start(plan, [=](int thread, int seq) {
    switch ((seq / run) % 3) {
      case 0:
        audio->OnPlayFilePosChanged(thread, seq, 0);
        break;
      case 1:
        send(context, thread, seq);
        break;
      default:
        floorPush(floor, thread, seq);
        break;
    }
  });
}

// --- frames --------------------------------------------------------------------

struct FrameRun {
  int width = 0;
  int height = 0;
  int fps = 60;
  int count = 0;
  int rssEvery = 0;  // frames between two RSS samples; 0: none
  Table stamps;      // send stamps by frame number
  std::vector<uint8_t> source;
  // The destinations of the plain memcpy and of the memcpy + wake, each
  // written once a frame like the registered buffer: a destination written
  // more often stays warmer in the caches and copies faster. Script's
  // memory when it gives some, else memory of our own.
  std::vector<uint8_t> ownTargets[2];
  std::shared_ptr<v8::BackingStore> targetStores[2];
  uint8_t* targets[2] = {nullptr, nullptr};
  // Wakes the script thread into a callback that does nothing: the part of
  // a frame's cost that any cross-thread hand-over pays.
  uv_async_t* idleWake = nullptr;
  std::vector<double> offerNs;  // OnVideoFrame on the engine thread
  std::vector<double> copyNs;   // memcpy of the same frame, same thread
  // The same two in CPU time of the engine thread: the wall time above also
  // holds whatever ran on its CPU meanwhile.
  std::vector<double> offerCpuNs;
  std::vector<double> copyCpuNs;
  std::vector<double> wakeNs;  // memcpy + uv_async_send into an idle loop
  std::vector<double> rssAtMs;
  std::vector<double> rssKiB;
  int missed = 0;             // ticks without a registered processor
  std::atomic<int> ticks{0};  // ticks done, read by script while the thread runs
  std::thread thread;
};

FrameRun* gFrames = nullptr;

// CPU time this thread has run. The kernel's per-thread clock reads the
// scheduler's running total; the usage counters lag it by up to a tick and
// would make a single copy read as free.
uint64_t threadCpuNs() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

// What the engine does before it hands a frame over: the frame is written.
// Every timed copy starts from this state, so none finds the source warmer.
void compose(std::vector<uint8_t>& frame, int number) { std::memset(frame.data(), number & 0xff, frame.size()); }

void runFrames(FrameRun* run) {
  prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
  const int lumaBytes = run->width * run->height;
  const int size = lumaBytes * 3 / 2;
  run->source.assign(static_cast<size_t>(size), 0);
  for (int i = 0; i < 2; ++i) {
    if (run->targets[i] != nullptr) continue;
    run->ownTargets[i].assign(static_cast<size_t>(size), 0);
    run->targets[i] = run->ownTargets[i].data();
  }
  run->offerNs.reserve(static_cast<size_t>(run->count));
  run->copyNs.reserve(static_cast<size_t>(run->count));
  run->wakeNs.reserve(static_cast<size_t>(run->count));
  const uint64_t period = 1000000000u / static_cast<uint64_t>(run->fps);
  const uint64_t origin = uv_hrtime() + period;
  for (int number = 0; number < run->count; ++number) {
    bench::sleepUntil(origin + period * static_cast<uint64_t>(number));
    if (run->rssEvery > 0 && number % run->rssEvery == 0) {
      run->rssAtMs.push_back(static_cast<double>(uv_hrtime() - origin) / 1e6);
      run->rssKiB.push_back(residentKiB());
    }
    const bool ran = control::runOnEngineThread([&](const control::Registered& faces) {
      if (faces.processor == nullptr) {
        ++run->missed;
        return;
      }
      rtc::VideoFrame frame;
      frame.type = rtc::kI420;
      frame.data = run->source.data();
      frame.size = size;
      frame.width = run->width;
      frame.height = run->height;
      frame.strideY = run->width;
      frame.strideU = frame.strideV = run->width / 2;
      frame.dataY = run->source.data();
      frame.dataU = run->source.data() + lumaBytes;
      frame.dataV = run->source.data() + lumaBytes + lumaBytes / 4;
      frame.extra = static_cast<uint32_t>(number);
      auto offer = [&] {
        compose(run->source, number);
        const uint64_t start = uv_hrtime();
        if (run->stamps.data != nullptr && static_cast<size_t>(number) < run->stamps.length) {
          run->stamps.data[number] = static_cast<double>(start);
        }
        const uint64_t cpu = threadCpuNs();
        faces.processor->OnVideoFrame(&frame);
        run->offerCpuNs.push_back(static_cast<double>(threadCpuNs() - cpu));
        run->offerNs.push_back(static_cast<double>(uv_hrtime() - start));
      };
      auto copy = [&] {
        compose(run->source, number);
        const uint64_t start = uv_hrtime();
        const uint64_t cpu = threadCpuNs();
        std::memcpy(run->targets[0], run->source.data(), static_cast<size_t>(size));
        run->copyCpuNs.push_back(static_cast<double>(threadCpuNs() - cpu));
        run->copyNs.push_back(static_cast<double>(uv_hrtime() - start));
      };
      auto copyAndWake = [&] {
        compose(run->source, number);
        const uint64_t start = uv_hrtime();
        std::memcpy(run->targets[1], run->source.data(), static_cast<size_t>(size));
        uv_async_send(run->idleWake);
        run->wakeNs.push_back(static_cast<double>(uv_hrtime() - start));
      };
      // The order rotates: whatever one measurement leaves behind (caches, a
      // script thread still busy with the previous wake) falls on each alike.
      switch (number % 3) {
        case 0:
          offer();
          copy();
          copyAndWake();
          break;
        case 1:
          copy();
          copyAndWake();
          offer();
          break;
        default:
          copyAndWake();
          offer();
          copy();
          break;
      }
    });
    if (!ran) ++run->missed;
    run->ticks.fetch_add(1, std::memory_order_release);
  }
  run->rssAtMs.push_back(static_cast<double>(uv_hrtime() - origin) / 1e6);
  run->rssKiB.push_back(residentKiB());
}

// startFrames(width, height, fps, count, sendStamps?, rssEveryFrames?, copyTarget?, wakeTarget?)
// copyTarget, wakeTarget: Uint8Arrays of at least the frame's size for the
// plain memcpy and for the memcpy + wake; without them, memory of its own.
void startFrames(const FunctionCallbackInfo<Value>& info) {
  Isolate* isolate = info.GetIsolate();
  if (gFrames != nullptr) return fail(isolate, "joinFrames first");
  auto run = std::make_unique<FrameRun>();
  run->width = intArg(info, 0);
  run->height = intArg(info, 1);
  run->fps = std::max(1, intArg(info, 2, 60));
  run->count = std::max(0, intArg(info, 3));
  if (info.Length() > 4) run->stamps = Table::of(info[4]);
  run->rssEvery = std::max(0, intArg(info, 5));
  if (run->width <= 0 || run->height <= 0 || run->width % 2 != 0 || run->height % 2 != 0) {
    return fail(isolate, "startFrames(width, height, fps, count, stamps?, rssEvery?, copyTarget?, wakeTarget?)");
  }
  const size_t frameBytes = static_cast<size_t>(run->width) * static_cast<size_t>(run->height) * 3 / 2;
  for (int i = 0; i < 2; ++i) {
    if (info.Length() <= 6 + i || !info[6 + i]->IsUint8Array()) continue;
    Local<v8::Uint8Array> view = info[6 + i].As<v8::Uint8Array>();
    if (view->ByteLength() < frameBytes) continue;
    run->targetStores[i] = view->Buffer()->GetBackingStore();
    run->targets[i] = static_cast<uint8_t*>(run->targetStores[i]->Data()) + view->ByteOffset();
  }
  run->idleWake = new uv_async_t();
  uv_async_init(node::GetCurrentEventLoop(isolate), run->idleWake, [](uv_async_t*) {});
  gFrames = run.release();
  gFrames->thread = std::thread(runFrames, gFrames);
}

// joinFrames() -> {offerNs, copyNs, wakeNs, offerCpuNs, copyCpuNs, rssAtMs, rssKiB, missed}
void joinFrames(const FunctionCallbackInfo<Value>& info) {
  Isolate* isolate = info.GetIsolate();
  if (gFrames == nullptr) return fail(isolate, "startFrames first");
  std::unique_ptr<FrameRun> run(gFrames);
  gFrames = nullptr;
  run->thread.join();
  uv_close(reinterpret_cast<uv_handle_t*>(run->idleWake),
           [](uv_handle_t* handle) { delete reinterpret_cast<uv_async_t*>(handle); });
  Local<v8::Context> context = isolate->GetCurrentContext();
  Local<v8::Object> result = v8::Object::New(isolate);
  set(context, result, "offerNs", toArray(isolate, run->offerNs));
  set(context, result, "copyNs", toArray(isolate, run->copyNs));
  set(context, result, "wakeNs", toArray(isolate, run->wakeNs));
  set(context, result, "offerCpuNs", toArray(isolate, run->offerCpuNs));
  set(context, result, "copyCpuNs", toArray(isolate, run->copyCpuNs));
  set(context, result, "rssAtMs", toArray(isolate, run->rssAtMs));
  set(context, result, "rssKiB", toArray(isolate, run->rssKiB));
  set(context, result, "missed", v8::Integer::New(isolate, run->missed));
  info.GetReturnValue().Set(result);
}

// framesDone() -> whether the frame thread has delivered every frame
// (script polls it instead of blocking its own loop in joinFrames).
void framesDone(const FunctionCallbackInfo<Value>& info) {
  const bool done = gFrames == nullptr || gFrames->ticks.load(std::memory_order_acquire) >= gFrames->count;
  info.GetReturnValue().Set(done);
}

// --- registration --------------------------------------------------------------

void initialize(Local<v8::Object> exports, Local<Value>, Local<v8::Context> context, void*) {
  Isolate* isolate = context->GetIsolate();
  auto method = [&](const char* name, v8::FunctionCallback callback) {
    Local<v8::FunctionTemplate> tmpl = v8::FunctionTemplate::New(isolate, callback);
    exports
        ->Set(context, v8::String::NewFromUtf8(isolate, name, v8::NewStringType::kInternalized).ToLocalChecked(),
              tmpl->GetFunction(context).ToLocalChecked())
        .Check();
  };
  method("now", now);
  method("residentKiB", residentKiBCall);
  method("setReceiveTable", setReceiveTable);
  method("mark", mark);
  method("raiseBridge", raiseBridge);
  method("join", join);
  method("raiseLoopback", raiseLoopback);
  method("joinLoopback", joinLoopback);
  method("floorOpen", floorOpen);
  method("floorClose", floorClose);
  method("raiseFloor", raiseFloor);
  method("raiseMixed", raiseMixed);
  method("startFrames", startFrames);
  method("joinFrames", joinFrames);
  method("framesDone", framesDone);
}

}  // namespace

NODE_MODULE_CONTEXT_AWARE(bench_bridge_native, initialize)
