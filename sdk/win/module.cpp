// Module registration and the initialiser that builds every script class.
//
// Loading the module only registers it with Node.js. Node.js then calls the
// initialiser once per context that requires the module; each run starts
// every class afresh, so that the latest initialisation is the one in use.
// A class's templates are built when script first reads the class from the
// exports object or a proxy of the class is first made: most scripts use a
// few of the seventy classes, and building all of them would make loading
// the module many times slower than loading Node.js's own modules.
//
// One JavaScript thread at a time: templates live in process-wide client
// data, and a template belongs to one isolate. The first isolate to
// initialise owns the binding until its environment is torn down; another
// isolate (a worker) that loads the module meanwhile gets a plain Error.
#include "module.h"

#include <node.h>

#include <mutex>

#include "class_template.h"
#include "errors.h"
#include "fatal.h"
#include "generated_module.h"
#include "live_records.h"
#include "platform/platform.h"
#include "proxy.h"
#include "registry.h"
#include "v8_compat.h"

namespace orva::binding {
namespace {

// The isolate that owns the binding, or null. Guarded by gOwnerMutex, since
// worker threads initialise on their own threads.
std::mutex gOwnerMutex;
v8::Isolate* gOwner = nullptr;

constexpr const char* kOtherThreadMessage =
    "orvaEngine is already in use by another JavaScript thread of this process; "
    "load it from one thread at a time";

const Surface& surface() { return generated::surface(); }

// Forgets every class's templates; they are built again on first use.
void forgetClasses() {
  const Surface& module = surface();
  for (size_t i = 0; i < module.classCount; ++i) {
    ClassClientData* data = module.classes[i].clientData;
    data->classTemplate.Reset();
    data->instanceTemplate.Reset();
    data->constructorTemplate.Reset();
  }
}

// Runs while the owning environment is torn down and its isolate is still
// alive: the native objects its proxies own, the records and the templates
// are released there, so a later isolate starts clean and nothing leaks.
void releaseOwnership(void* isolate) {
  releaseLiveRecords(static_cast<v8::Isolate*>(isolate));
  forgetClasses();
  resetProxyTemplates();
  std::lock_guard<std::mutex> lock(gOwnerMutex);
  if (gOwner == isolate) gOwner = nullptr;
}

bool claim(v8::Isolate* isolate) {
  std::lock_guard<std::mutex> lock(gOwnerMutex);
  if (gOwner == isolate) return true;
  if (gOwner != nullptr) return false;
  gOwner = isolate;
  node::AddEnvironmentCleanupHook(isolate, releaseOwnership, isolate);
  return true;
}

// Initialisations so far; a class read from the exports of an earlier one
// is that initialisation's own, not the latest's. Script thread only.
uint32_t gGeneration = 0;

struct Templates {
  v8::Local<v8::FunctionTemplate> classTemplate;
  v8::Local<v8::FunctionTemplate> constructorTemplate;
};

// The templates of one class: the class template with its members,
// inheriting `base`, and the class object's template with its statics.
// `base` is the base class's template, or empty.
Templates makeTemplates(v8::Isolate* isolate, const ClassEntry& cls, v8::Local<v8::FunctionTemplate> base) {
  v8::Local<v8::FunctionTemplate> classTemplate = newClassTemplate(isolate, cls.templateName);
  for (size_t m = 0; m < cls.methodCount; ++m) {
    addMethod(isolate, classTemplate, cls.methods[m].name, cls.methods[m].callback);
  }
  for (size_t f = 0; f < cls.fieldCount; ++f) {
    addField(isolate, classTemplate, cls.fields[f].name, cls.fields[f].getter, cls.fields[f].setter);
  }
  if (!base.IsEmpty()) classTemplate->Inherit(base);
  v8::Local<v8::FunctionTemplate> constructor = newClassTemplate(isolate, cls.name);
  if (cls.constructor != nullptr) {
    constructor->SetCallHandler(cls.constructor);
  } else {
    constructor->SetCallHandler(throwNotInstantiable,
                                v8::External::New(isolate, const_cast<char*>(cls.notInstantiable)));
  }
  constructor->Inherit(classTemplate);
  for (size_t s = 0; s < cls.staticCount; ++s) {
    addStaticFunction(isolate, constructor, cls.statics[s].name, cls.statics[s].callback);
  }
  return {classTemplate, constructor};
}

// Templates for exports of an earlier initialisation, made apart from the
// latest ones.
Templates staleTemplates(v8::Isolate* isolate, const ClassEntry& cls) {
  v8::Local<v8::FunctionTemplate> base;
  if (cls.baseIndex >= 0) base = staleTemplates(isolate, surface().classes[cls.baseIndex]).classTemplate;
  return makeTemplates(isolate, cls, base);
}

// The class object, built on first read. The data holds the class's index
// (low byte) and the initialisation that made the exports object.
void classGetter(v8::Local<v8::Name> /*property*/, const v8::PropertyCallbackInfo<v8::Value>& info) {
  v8::Isolate* isolate = info.GetIsolate();
  uint32_t data = info.Data().As<v8::Uint32>()->Value();
  const ClassEntry& cls = surface().classes[data & 0xff];
  v8::Local<v8::FunctionTemplate> constructor;
  if ((data >> 8) == gGeneration) {
    buildClass(isolate, *cls.clientData);
    constructor = cls.clientData->constructorTemplate.Get(isolate);
  } else {
    constructor = staleTemplates(isolate, cls).constructorTemplate;
  }
  // The class belongs to the context of the exports object, whichever
  // context reads it first (a `vm` context the exports were handed to):
  // its instances and their prototypes are that context's objects.
  v8::Local<v8::Context> context;
  if (!creationContextOf(isolate, holderOf(info)).ToLocal(&context)) context = isolate->GetCurrentContext();
  // An empty function (an exhausted stack, say) leaves its exception to script.
  info.GetReturnValue().Set(constructor->GetFunction(context).FromMaybe(v8::Local<v8::Function>()));
}

// V8 keeps an object with fast properties and sorts its descriptors again
// after each accessor added to it: hundreds of constants would take
// quadratic time. An object in dictionary mode takes them in linear time,
// and adding two properties and deleting the first switches it to that.
// The exports object is whatever the loading script's module object holds (a
// Proxy, say): where it throws, its exception is left to that script.
bool useDictionaryProperties(v8::Local<v8::Context> context, v8::Local<v8::Object> object) {
  v8::Isolate* isolate = isolateOf(context);
  v8::Local<v8::Symbol> first = v8::Symbol::New(isolate);
  v8::Local<v8::Symbol> second = v8::Symbol::New(isolate);
  return object->Set(context, first, v8::Undefined(isolate)).IsJust() &&
         object->Set(context, second, v8::Undefined(isolate)).IsJust() && object->Delete(context, first).IsJust() &&
         object->Delete(context, second).IsJust();
}

}  // namespace

void buildClass(v8::Isolate* isolate, ClassClientData& data) {
  if (!data.classTemplate.IsEmpty()) return;
  const ClassEntry& cls = *data.entry;
  v8::Local<v8::FunctionTemplate> base;
  if (cls.baseIndex >= 0) {
    ClassClientData& baseData = *surface().classes[cls.baseIndex].clientData;
    buildClass(isolate, baseData);
    base = baseData.classTemplate.Get(isolate);
  }
  Templates templates = makeTemplates(isolate, cls, base);
  data.classTemplate.Reset(isolate, templates.classTemplate);
  data.instanceTemplate.Reset(isolate, templates.classTemplate->InstanceTemplate());
  data.constructorTemplate.Reset(isolate, templates.constructorTemplate);
}

void initialize(v8::Local<v8::Object> exports, v8::Local<v8::Value> /*module*/, v8::Local<v8::Context> context,
                void* /*priv*/) {
  v8::Isolate* isolate = isolateOf(context);
  if (!claim(isolate)) return throwError(isolate, kOtherThreadMessage);
  const Surface& module = surface();
  check(module.classCount <= 0xff, "a class index fits the low byte of a class getter's data");

  // The type table, attached to this context.
  initTypeTable(module.typeTable, context);

  // The fallback template for types without a class.
  setProxyTemplates(isolate, newClassTemplate(isolate, "SwigProxy"));

  // Every class starts afresh. What a proxy needs before its class is built
  // (how owned objects are deleted) is set now.
  forgetClasses();
  gGeneration += 1;
  for (size_t i = 0; i < module.classCount; ++i) {
    const ClassEntry& cls = module.classes[i];
    cls.clientData->entry = &cls;
    cls.clientData->finalizer = cls.finalizer;
    TypeDescriptor* type = typeAt(cls.typeIndex);
    if (type->clientdata == nullptr) type->clientdata = cls.clientData;
  }

  // The constants, read-only, then the classes, in registration order.
  if (!useDictionaryProperties(context, exports)) return;
  for (size_t c = 0; c < module.constantCount; ++c) {
    if (!addConstant(context, exports, module.constants[c].name,
                     v8::Integer::New(isolate, module.constants[c].value))) {
      return;
    }
  }
  for (size_t i = 0; i < module.classCount; ++i) {
    if (exports
            ->SetLazyDataProperty(context, symbol(isolate, module.classes[i].name), classGetter,
                                  v8::Integer::NewFromUnsigned(isolate, (gGeneration << 8) | static_cast<uint32_t>(i)))
            .IsNothing()) {
      return;
    }
  }
}

}  // namespace orva::binding

namespace {

node::node_module gModuleRecord = {
    NODE_MODULE_VERSION,            // nm_version
    0,                              // nm_flags
    nullptr,                        // nm_dso_handle
    "sdk/win/interface_swig_wrap",  // nm_filename
    nullptr,                        // nm_register_func
    orva::binding::initialize,      // nm_context_register_func
    "orva_swig",                    // nm_modname
    nullptr,                        // nm_priv
    nullptr,                        // nm_link
};

// Loading the module registers it. It also stays loaded for good: engine
// threads run its code, so it must outlive a worker that loaded it and ended.
bool registerModule() {
  node_module_register(&gModuleRecord);
  orva::platform::pinThisModule();
  return true;
}

// The initialiser of a namespace-scope object runs when the module is loaded
// with every compiler; a compiler's own constructor attribute does not (MSVC
// ignores the GNU one).
[[maybe_unused]] const bool gRegistered = registerModule();

}  // namespace

// A module that stays loaded does not register again when it is loaded
// again (after the worker that first loaded it ended); Node.js then looks
// for this entry point by its well-known name.
extern "C" NODE_MODULE_EXPORT void NODE_MODULE_INITIALIZER(v8::Local<v8::Object> exports, v8::Local<v8::Value> module,
                                                           v8::Local<v8::Context> context) {
  orva::binding::initialize(exports, module, context, nullptr);
}
