// Graphics adapters as DXGI enumerates them.
#include <dxgi.h>
#include <windows.h>

#include <cstdio>

#include "platform/platform.h"

namespace orva::platform {
namespace {

// Capacity of the narrow description, terminator included.
constexpr size_t kDescriptionCapacity = 256;

template <typename T>
void release(T*& object) {
  if (object != nullptr) {
    object->Release();
    object = nullptr;
  }
}

}  // namespace

std::vector<GraphicsAdapter> graphicsAdapters() {
  std::vector<GraphicsAdapter> adapters;
  IDXGIFactory1* factory = nullptr;
  if (FAILED(::CreateDXGIFactory1(__uuidof(IDXGIFactory1), reinterpret_cast<void**>(&factory)))) {
    return adapters;
  }
  IDXGIAdapter1* adapter = nullptr;
  for (UINT index = 0; SUCCEEDED(factory->EnumAdapters1(index, &adapter)); ++index) {
    DXGI_ADAPTER_DESC1 desc{};
    if (SUCCEEDED(adapter->GetDesc1(&desc))) {
      // "%S" narrows the UTF-16 description with the C library's current
      // locale. A description it cannot narrow is left out: it could never
      // be named in a key.
      char description[kDescriptionCapacity] = {};
      if (std::snprintf(description, sizeof(description), "%S", desc.Description) >= 0) {
        adapters.push_back({description, desc.AdapterLuid.LowPart, desc.AdapterLuid.HighPart});
      }
    }
    release(adapter);
  }
  release(factory);
  return adapters;
}

}  // namespace orva::platform
