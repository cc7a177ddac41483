// Native windows and graphics adapters as the system offers them, through
// platform/ and the adapter lookup. The Windows build runs this program twice
// under Wine: under a virtual X display, where Wine offers one adapter and
// real top-level windows, and without a display (no DISPLAY), where it offers
// no adapter and message-only windows. POSIX offers neither.
#ifdef _WIN32
#include <windows.h>
#endif

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "diagnostics/adapter_lookup.h"
#include "platform/platform.h"

namespace orva::platform {
namespace {

// What the system offers this program.
struct Offered {
  size_t adapters;
  bool topLevelWindows;
  bool messageOnlyWindows;
};

Offered offered() {
#ifdef _WIN32
  if (std::getenv("DISPLAY") != nullptr) {
    return {1, true, true};
  }
  return {0, false, true};
#else
  return {0, false, false};
#endif
}

// A window of this process, top-level or message-only, or none where the
// system makes none.
class TestWindow {
 public:
  explicit TestWindow(bool messageOnly) {
#ifdef _WIN32
    window_ = ::CreateWindowExW(0, L"STATIC", L"orva-test", messageOnly ? 0 : WS_OVERLAPPEDWINDOW, 0, 0, 64, 64,
                                messageOnly ? HWND_MESSAGE : nullptr, nullptr, nullptr, nullptr);
#else
    (void)messageOnly;
#endif
  }
  ~TestWindow() { close(); }
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;

  bool made() const { return window_ != nullptr; }
  /// The handle as script passes it: its low 32 bits.
  uint32_t handle() const { return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(window_)); }
  void close() {
#ifdef _WIN32
    if (window_ != nullptr) {
      ::DestroyWindow(window_);
    }
#endif
    window_ = nullptr;
  }

 private:
#ifdef _WIN32
  HWND window_ = nullptr;
#else
  void* window_ = nullptr;
#endif
};

TEST(Display, WindowsAreLiveFromCreationToDestruction) {
  EXPECT_FALSE(isWindow(0));
  for (const bool messageOnly : {true, false}) {
    TestWindow window(messageOnly);
    ASSERT_EQ(window.made(), messageOnly ? offered().messageOnlyWindows : offered().topLevelWindows) << messageOnly;
    if (!window.made()) {
      continue;
    }
    const uint32_t handle = window.handle();
    EXPECT_TRUE(isWindow(handle)) << messageOnly;
    window.close();
    EXPECT_FALSE(isWindow(handle)) << messageOnly;
  }
}

// A key as a renderer writes it: its name, which holds the adapter's
// description, then the identifier.
std::string adapterKey(const std::string& renderer, uint32_t luidLow, int32_t luidHigh) {
  std::string key = renderer;
  key.append(" luid_").append(std::to_string(static_cast<int32_t>(luidLow)));
  key.append("_").append(std::to_string(luidHigh));
  return key;
}

TEST(Display, EachAdapterIsFoundByItsOwnKeyOnly) {
  const std::vector<GraphicsAdapter> adapters = graphicsAdapters();
  EXPECT_EQ(adapters.size(), offered().adapters);
  for (const GraphicsAdapter& adapter : adapters) {
    ASSERT_FALSE(adapter.description.empty());
    const std::string renderer = "ANGLE (" + adapter.description + " Direct3D11)";
    const uint32_t low = adapter.luidLow;
    const int32_t high = adapter.luidHigh;
    const struct {
      std::string key;
      bool shared;
    } cases[] = {
        {adapterKey(renderer, low, high), true},
        {adapterKey("ANGLE (Direct3D11)", low, high), false},
        {adapterKey(renderer, low + 1, high), false},
        {adapterKey(renderer, low, high + 1), false},
        {adapterKey(renderer + " OpenGL", low, high), false},
    };
    for (const auto& c : cases) {
      EXPECT_EQ(diagnostics::isSupportShareTexture(c.key), c.shared) << c.key;
    }
  }
}

}  // namespace
}  // namespace orva::platform
