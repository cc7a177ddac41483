#include "journal_format.h"

#include <charconv>
#include <cstdio>

#include "settings_access.h"

namespace orva::loopback {

void appendString(std::string& out, const char* text, size_t length) {
  out += '"';
  for (size_t i = 0; i < length; ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\b':
        out += "\\b";
        break;
      case '\f':
        out += "\\f";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (c < 0x20) {
          char escaped[8];
          std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
          out += escaped;
        } else {
          out += static_cast<char>(c);  // UTF-8 bytes pass unchanged
        }
    }
  }
  out += '"';
}

void appendArg(std::string& out, const char* text) {
  if (text == nullptr) {
    out += "null";
    return;
  }
  appendString(out, text, std::char_traits<char>::length(text));
}

void appendArg(std::string& out, const std::string& text) { appendString(out, text.data(), text.size()); }
void appendArg(std::string& out, bool value) { out += value ? "true" : "false"; }

template <class T>
static void appendNumber(std::string& out, T value) {
  char buffer[64];
  auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  out.append(buffer, result.ptr);
}

void appendArg(std::string& out, float value) { appendNumber(out, value); }
void appendArg(std::string& out, double value) { appendNumber(out, value); }
void appendArg(std::string& out, long long value) { appendNumber(out, value); }
void appendArg(std::string& out, unsigned long long value) { appendNumber(out, value); }

void appendPointer(std::string& out, const void* pointer) {
  if (pointer == nullptr) {
    out += "null";
    return;
  }
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "0x%llx", static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(pointer)));
  out += buffer;
}

void appendArg(std::string& out, rtc::Settings* settings) {
  if (settings == nullptr) {
    out += "null";
    return;
  }
  out += '{';
  bool first = true;
  for (const auto& entry : rtc::SettingsAccess::entries(settings)) {
    if (!first) out += ',';
    first = false;
    appendArg(out, entry.key);
    out += ':';
    if (entry.isPointer) {
      appendPointer(out, entry.pointer);
    } else {
      appendArg(out, entry.text);
    }
  }
  out += '}';
}

void appendArg(std::string& out, const std::map<std::string, std::string>& map) {
  out += '{';
  bool first = true;
  for (const auto& [key, value] : map) {
    if (!first) out += ',';
    first = false;
    appendArg(out, key);
    out += ':';
    appendArg(out, value);
  }
  out += '}';
}

void appendArg(std::string& out, const rtc::Rect& r) {
  RecordText{out}("x", r.x)("y", r.y)("width", r.width)("height", r.height);
}

void appendArg(std::string& out, const rtc::Window& w) {
  RecordText{out}("id", w.id)("title", w.title)("rect", w.rect);
}
void appendArg(std::string& out, const rtc::Screen& s) { RecordText{out}("id", s.id)("name", s.name)("rect", s.rect); }

void appendArg(std::string& out, const rtc::Speaker& s) {
  RecordText{out}("name", s.name)("guid", s.guid)("index", s.index)("isDefault", s.isDefault)("isCommunicationDefault",
                                                                                              s.isCommunicationDefault);
}

void appendArg(std::string& out, const rtc::Microphone& m) {
  RecordText{out}("name", m.name)("guid", m.guid)("index", m.index)("isDefault", m.isDefault)("isCommunicationDefault",
                                                                                              m.isCommunicationDefault);
}

void appendArg(std::string& out, const rtc::CameraResolution& r) {
  RecordText{out}("width", r.width)("height", r.height)("maxFps", r.maxFps)("type", r.type);
}

void appendArg(std::string& out, const rtc::Camera& c) {
  RecordText{out}("name", c.name)("guid", c.guid)("index", c.index)("cameraResolutions", c.cameraResolutions);
}

void appendArg(std::string& out, const rtc::SourceGreenInfo& g) {
  RecordText{out}("green_enable", g.green_enable)("green_threshold", g.green_threshold)("green_color", g.green_color);
}

void appendArg(std::string& out, const rtc::CameraCaptureParams& p) {
  RecordText{out}("mode", p.mode)("width", p.width)("height", p.height)("maxfps", p.maxfps)("captureType",
                                                                                            p.captureType);
}

void appendArg(std::string& out, const rtc::ScreenCaptureProperty& p) {
  RecordText{out}("enableCaptureMouse", p.enableCaptureMouse)("enableHighLight", p.enableHighLight)(
      "enableHighPerformance", p.enableHighPerformance)("highLightColor", p.highLightColor)(
      "highLightWidth", p.highLightWidth)("enableCaptureChildWindow", p.enableCaptureChildWindow);
}

void appendArg(std::string& out, const rtc::CameraRecordInfo& i) {
  RecordText{out}("fps", i.fps)("bitrate", i.bitrate)("path", i.path)("mp4path", i.mp4path)("mp4path2", i.mp4path2)(
      "pngpath", i.pngpath)("pngpath2", i.pngpath2);
}

void appendArg(std::string& out, const rtc::BeautyInfo& i) {
  RecordText{out}("aiModelPath", i.aiModelPath)("beautyResPathV2", i.beautyResPathV2)(
      "beautyResPathV3", i.beautyResPathV3)("filterResPath", i.filterResPath)("version", i.version)("skinSegPath",
                                                                                                    i.skinSegPath);
}

void appendArg(std::string& out, const rtc::VideoEncParam& p) {
  RecordText{out}("width", p.width)("height", p.height)("fps", p.fps)("minBitrate", p.minBitrate)(
      "input_width", p.input_width)("input_height", p.input_height)("canvas_width", p.canvas_width)(
      "canvas_height", p.canvas_height)("targetBitrate", p.targetBitrate);
}

void appendArg(std::string& out, const rtc::RenderParams& p) {
  RecordText{out}("mirror", p.mirror)("rotation", p.rotation)("alpha", p.alpha);
}

void appendArg(std::string& out, const rtc::LocalMediaTranscodingSource& s) {
  RecordText{out}("sourceType", s.sourceType)("cameraDeviceId", s.cameraDeviceId)("screenSourceId", s.screenSourceId)(
      "imagePath", s.imagePath)("userId", s.userId)("rect", s.rect)("zOrder", s.zOrder)("renderParams", s.renderParams)(
      "greenParams", s.greenParams)("enableGreen", s.enableGreen)("fillMode", s.fillMode);
}

void appendArg(std::string& out, const rtc::LocalMediaTranscodingParams& p) {
  RecordText{out}("inputSourceList", p.inputSourceList)("videoEncoderParams", p.videoEncoderParams)(
      "canvasColor", p.canvasColor)("addVisibility", p.addVisibility)("hideOther", p.hideOther)(
      "autoSized", p.autoSized)("updateVideoEncParam", p.updateVideoEncParam);
}

void appendArg(std::string& out, const rtc::DowngradeParam& p) {
  RecordText{out}("minFps", p.minFps)("maxFps", p.maxFps);
}

// The list classes have non-const accessors; a copy is cheap and deep.
template <class List>
static void appendList(std::string& out, const List& list) {
  List copy(list);
  out += '[';
  for (int i = 0; i < copy.Size(); ++i) {
    if (i != 0) out += ',';
    appendArg(out, *copy.Get(i));
  }
  out += ']';
}

void appendArg(std::string& out, const rtc::CameraResolutionList& list) { appendList(out, list); }
void appendArg(std::string& out, const rtc::LocalMediaTranscodingSourceList& list) { appendList(out, list); }

void appendArg(std::string& out, const rtc::AudioFileParam* p) {
  if (p == nullptr) {
    out += "null";
    return;
  }
  RecordText{out}("path", p->path)("pos", p->pos)("loopCount", p->loopCount)("from", p->from)("to", p->to)("publish",
                                                                                                           p->publish);
}

void appendArg(std::string& out, const rtc::AudioFrame* f) {
  if (f == nullptr) {
    out += "null";
    return;
  }
  RecordText{out}("data", f->data)("size", f->size)("freq", f->freq)("channels", f->channels)("extra", f->extra);
}

void appendArg(std::string& out, const rtc::VideoFrame* f) {
  if (f == nullptr) {
    out += "null";
    return;
  }
  RecordText{out}("type", f->type)("data", f->data)("size", f->size)("width", f->width)("height", f->height)(
      "strideY", f->strideY)("strideU", f->strideU)("strideV", f->strideV)("dataY", f->dataY)("dataU", f->dataU)(
      "dataV", f->dataV)("extra", f->extra)("sei", f->sei)("share_handle", f->share_handle);
}

}  // namespace orva::loopback
