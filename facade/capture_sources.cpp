// What can be shared (screens, then windows) and sharing one of them.
#include "facade/capture_modes.h"
#include "facade/orva_engine_wrapper.h"

namespace Orva::Rtc {
namespace {

ScreenCaptureSourceInfo sourceInfo(ScreenCaptureSourceType type, uint64_t id, const std::string& title,
                                   const Rect& rect) {
  ScreenCaptureSourceInfo info;
  info.type = type;
  info.id = std::to_string(id);
  info.title = title;
  info.rect = rect;
  info.mode = 0;
  return info;
}

}  // namespace

std::vector<ScreenCaptureSourceInfo> OrvaEngineWrapper::getScreenCaptureSources() {
  std::vector<ScreenCaptureSourceInfo> sources;
  if (engine_ == nullptr) return sources;
  for (const Screen& screen : engine_->getScreenList()) {
    sources.push_back(sourceInfo(ScreenCaptureSourceTypeScreen, screen.id, screen.name, screen.rect));
  }
  for (const Window& window : engine_->getWindowList()) {
    sources.push_back(sourceInfo(ScreenCaptureSourceTypeWindow, window.id, window.title, window.rect));
  }
  return sources;
}

std::vector<Screen> OrvaEngineWrapper::getScreenList() {
  return forward(std::vector<Screen>(), [](OrvaEngine& e) { return e.getScreenList(); });
}

std::vector<Window> OrvaEngineWrapper::getWindowList() {
  return forward(std::vector<Window>(), [](OrvaEngine& e) { return e.getWindowList(); });
}

void OrvaEngineWrapper::startScreenSource(const ScreenCaptureSourceInfo& info) {
  if (engine_ == nullptr) return;
  auto id = static_cast<uint64_t>(orva::facade::parseSourceId(info.id));
  if (info.type == ScreenCaptureSourceTypeScreen) {
    Screen screen;
    screen.id = id;
    engine_->StartCaptureScreen(screen, info.mode);
  } else if (info.type == ScreenCaptureSourceTypeWindow) {
    Window window;
    window.id = id;
    window.title = info.title;
    engine_->StartCaptureWindow(window, info.mode);
  }
}

void OrvaEngineWrapper::stopScreenSource(const ScreenCaptureSourceInfo& info) {
  if (engine_ == nullptr) return;
  if (info.type == ScreenCaptureSourceTypeScreen) {
    engine_->StopCaptureScreen(info.id.c_str());
  } else if (info.type == ScreenCaptureSourceTypeWindow) {
    engine_->StopCaptureWindow(info.id.c_str());
  }
}

void OrvaEngineWrapper::updateScreenCaptureProperty(const std::string& sourceId,
                                                    const ScreenCaptureProperty& property) {
  forward([&](OrvaEngine& e) { e.updateScreenCaptureProperty(sourceId.c_str(), property); });
}

}  // namespace Orva::Rtc
