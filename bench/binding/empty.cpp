// The module-load baseline: an addon that registers the way orvaEngine.node
// does (a context-aware initialiser) and defines nothing.
#include <node.h>

namespace {

void initialize(v8::Local<v8::Object>, v8::Local<v8::Value>, v8::Local<v8::Context>, void*) {}

}  // namespace

NODE_MODULE_CONTEXT_AWARE(bench_empty, initialize)
