// bench_bridge_tsfn.node: the baseline of the event benchmarks, Node-API's
// thread-safe function carrying the same seven values as the bridge (a
// string name, three integers, two strings, an empty object) from the same
// producer threads into a script callback, written the way its
// documentation suggests: one heap-allocated item per call, converted in the
// call_js callback. The name is made once and kept, as a careful user would:
// Node-API of this version references objects only, so it is element 0 of
// a referenced array.
//
//   open(handler, maxQueueSize, blocking)  // 0: unbounded
//   raise(threads, perThread, rate, sendStamps?)
//   join()
//   close()
//   sender() -> [send, context] as BigInts: a C function
//     send(context, thread, seq) that queues one event, for a producer that
//     lives in another addon
#include <node_api.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <string>

#include "raisers.h"

namespace {

struct Baseline {
  napi_threadsafe_function function = nullptr;
  napi_ref name = nullptr;
  napi_threadsafe_function_call_mode mode = napi_tsfn_nonblocking;
  bench::Raisers raisers;
  std::atomic<int> failed{0};
  std::atomic<int> lastFailure{0};
};

Baseline* gBaseline = nullptr;

napi_value text(napi_env env, const std::string& value) {
  napi_value out = nullptr;
  napi_create_string_utf8(env, value.data(), value.size(), &out);
  return out;
}

void callJs(napi_env env, napi_value callback, void* context, void* data) {
  auto* item = static_cast<bench::Payload*>(data);
  auto* baseline = static_cast<Baseline*>(context);
  if (env != nullptr && callback != nullptr) {
    napi_value arguments[7];
    napi_value names = nullptr;
    napi_get_reference_value(env, baseline->name, &names);
    napi_get_element(env, names, 0, &arguments[0]);
    napi_create_int32(env, item->int1, &arguments[1]);
    napi_create_int32(env, item->int2, &arguments[2]);
    napi_create_int32(env, item->int3, &arguments[3]);
    arguments[4] = text(env, item->str1);
    arguments[5] = text(env, item->str2);
    napi_create_object(env, &arguments[6]);
    napi_value receiver = nullptr;
    napi_get_undefined(env, &receiver);
    napi_call_function(env, receiver, callback, 7, arguments, nullptr);
  }
  delete item;
}

// Once the function is released and its queue is empty.
void finalize(napi_env env, void*, void* context) {
  auto* baseline = static_cast<Baseline*>(context);
  napi_delete_reference(env, baseline->name);
  delete baseline;
}

napi_value undefined(napi_env env) {
  napi_value out = nullptr;
  napi_get_undefined(env, &out);
  return out;
}

int32_t intArg(napi_env env, napi_value value, int32_t fallback) {
  int32_t out = fallback;
  if (napi_get_value_int32(env, value, &out) != napi_ok) return fallback;
  return out;
}

napi_value open(napi_env env, napi_callback_info info) {
  size_t count = 3;
  napi_value args[3] = {nullptr, nullptr, nullptr};
  napi_get_cb_info(env, info, &count, args, nullptr, nullptr);
  if (gBaseline != nullptr || count < 1) {
    napi_throw_type_error(env, nullptr, "open(handler, maxQueueSize, blocking)");
    return nullptr;
  }
  auto* baseline = new Baseline();
  const size_t maxQueue = static_cast<size_t>(std::max(0, count > 1 ? intArg(env, args[1], 0) : 0));
  bool blocking = false;
  if (count > 2) napi_get_value_bool(env, args[2], &blocking);
  baseline->mode = blocking ? napi_tsfn_blocking : napi_tsfn_nonblocking;
  napi_value name = nullptr;
  napi_value names = nullptr;
  napi_create_string_utf8(env, bench::kEventName, NAPI_AUTO_LENGTH, &name);
  napi_create_array_with_length(env, 1, &names);
  napi_set_element(env, names, 0, name);
  napi_create_reference(env, names, 1, &baseline->name);
  napi_value resource = nullptr;
  napi_create_string_utf8(env, "bench-tsfn", NAPI_AUTO_LENGTH, &resource);
  if (napi_create_threadsafe_function(env, args[0], nullptr, resource, maxQueue, 1, nullptr, finalize, baseline, callJs,
                                      &baseline->function) != napi_ok) {
    napi_delete_reference(env, baseline->name);
    delete baseline;
    napi_throw_error(env, nullptr, "napi_create_threadsafe_function failed");
    return nullptr;
  }
  gBaseline = baseline;
  return undefined(env);
}

void sendOne(void* context, int thread, int seq) {
  auto* baseline = static_cast<Baseline*>(context);
  auto* item = new bench::Payload(bench::positionChanged(thread, seq));
  const napi_status status = napi_call_threadsafe_function(baseline->function, item, baseline->mode);
  if (status != napi_ok) {
    delete item;
    baseline->failed.fetch_add(1, std::memory_order_relaxed);
    baseline->lastFailure.store(status, std::memory_order_relaxed);
  }
}

napi_value raise(napi_env env, napi_callback_info info) {
  size_t count = 4;
  napi_value args[4] = {nullptr, nullptr, nullptr, nullptr};
  napi_get_cb_info(env, info, &count, args, nullptr, nullptr);
  if (gBaseline == nullptr || count < 2) {
    napi_throw_type_error(env, nullptr, "open first; raise(threads, perThread, rate, stamps?)");
    return nullptr;
  }
  bench::RaisePlan plan;
  plan.threads = std::max(1, intArg(env, args[0], 1));
  plan.perThread = std::max(0, intArg(env, args[1], 0));
  if (count > 2) napi_get_value_double(env, args[2], &plan.rate);
  if (count > 3) {
    bool isTypedArray = false;
    napi_is_typedarray(env, args[3], &isTypedArray);
    if (isTypedArray) {
      napi_typedarray_type type;
      size_t length = 0;
      void* data = nullptr;
      napi_get_typedarray_info(env, args[3], &type, &length, &data, nullptr, nullptr);
      if (type == napi_float64_array &&
          length >= static_cast<size_t>(plan.threads) * static_cast<size_t>(plan.perThread)) {
        plan.stamps = static_cast<double*>(data);
      }
    }
  }
  Baseline* baseline = gBaseline;
  baseline->raisers.start(plan, [baseline](int thread, int seq) { sendOne(baseline, thread, seq); });
  return undefined(env);
}

napi_value sender(napi_env env, napi_callback_info) {
  if (gBaseline == nullptr) {
    napi_throw_error(env, nullptr, "open first");
    return nullptr;
  }
  napi_value out = nullptr;
  napi_value send = nullptr;
  napi_value context = nullptr;
  napi_create_bigint_uint64(env, reinterpret_cast<uintptr_t>(&sendOne), &send);
  napi_create_bigint_uint64(env, reinterpret_cast<uintptr_t>(gBaseline), &context);
  napi_create_array_with_length(env, 2, &out);
  napi_set_element(env, out, 0, send);
  napi_set_element(env, out, 1, context);
  return out;
}

napi_value join(napi_env env, napi_callback_info) {
  if (gBaseline != nullptr) gBaseline->raisers.join();
  return undefined(env);
}

// failures() -> [calls that did not queue their item, the last status]
napi_value failures(napi_env env, napi_callback_info) {
  napi_value out = nullptr;
  napi_create_array_with_length(env, 2, &out);
  napi_value count = nullptr;
  napi_value status = nullptr;
  napi_create_int32(env, gBaseline != nullptr ? gBaseline->failed.load() : 0, &count);
  napi_create_int32(env, gBaseline != nullptr ? gBaseline->lastFailure.load() : 0, &status);
  napi_set_element(env, out, 0, count);
  napi_set_element(env, out, 1, status);
  return out;
}

napi_value close(napi_env env, napi_callback_info) {
  if (gBaseline == nullptr) return undefined(env);
  Baseline* baseline = gBaseline;
  gBaseline = nullptr;
  baseline->raisers.join();
  napi_release_threadsafe_function(baseline->function, napi_tsfn_release);
  return undefined(env);
}

napi_value init(napi_env env, napi_value exports) {
  const napi_property_descriptor methods[] = {
      {"open", nullptr, open, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"raise", nullptr, raise, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"join", nullptr, join, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"failures", nullptr, failures, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"sender", nullptr, sender, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"close", nullptr, close, nullptr, nullptr, nullptr, napi_default, nullptr},
  };
  napi_define_properties(env, exports, sizeof methods / sizeof methods[0], methods);
  return exports;
}

}  // namespace

NAPI_MODULE(NODE_GYP_MODULE_NAME, init)
