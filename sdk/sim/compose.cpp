#include "compose.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "colour_space_autogen.h"

namespace orva::loopback {

namespace rtc = Orva::Rtc;

namespace {

// The conversion in 8-bit fixed point (coefficients scaled by 256 and
// rounded), derived from the colour space the renderer states.
struct FixedPointRow {
  int r, g, b;
};

constexpr int scaled(double value) { return static_cast<int>(value * 256 + (value < 0 ? -0.5 : 0.5)); }

constexpr double kKg = 1 - colour::kKr - colour::kKb;

constexpr FixedPointRow lumaRow() {
  const double scale = (colour::kLumaWhite - colour::kLumaBlack) / 255.0;
  return {scaled(scale * colour::kKr), scaled(scale * kKg), scaled(scale * colour::kKb)};
}

// U is (B - Y) scaled to the chroma range, V is (R - Y).
constexpr FixedPointRow chromaRow(bool blue) {
  const double k = blue ? colour::kKb : colour::kKr;
  const double scale = (colour::kChromaMax - colour::kChromaMin) / 2.0 / 255.0 / (1 - k);
  return {scaled(scale * ((blue ? 0 : 1) - colour::kKr)), scaled(scale * -kKg),
          scaled(scale * ((blue ? 1 : 0) - colour::kKb))};
}

constexpr FixedPointRow kToY = lumaRow();
constexpr FixedPointRow kToU = chromaRow(true);
constexpr FixedPointRow kToV = chromaRow(false);

}  // namespace

Yuv rgbToYuv(uint32_t rgb) {
  const int r = static_cast<int>((rgb >> 16) & 0xff);
  const int g = static_cast<int>((rgb >> 8) & 0xff);
  const int b = static_cast<int>(rgb & 0xff);
  auto clamp = [](int value) { return static_cast<uint8_t>(std::clamp(value, 0, 255)); };
  auto apply = [&](const FixedPointRow& row) { return (row.r * r + row.g * g + row.b * b + 128) >> 8; };
  return {clamp(colour::kLumaBlack + apply(kToY)), clamp(colour::kChromaZero + apply(kToU)),
          clamp(colour::kChromaZero + apply(kToV))};
}

uint32_t imageColour(std::string_view path) {
  uint32_t hash = 2166136261u;  // FNV-1a
  for (char c : path) {
    hash ^= static_cast<uint8_t>(c);
    hash *= 16777619u;
  }
  return hash & 0xffffff;
}

namespace {

int evenDown(int value) { return value & ~1; }
int evenUp(int value) { return (value + 1) & ~1; }

int pickDimension(uint32_t wanted, uint32_t canvas, int fallback) {
  int64_t value = wanted != 0 ? wanted : (canvas != 0 ? canvas : fallback);
  value = std::clamp<int64_t>(value, 2, kMaxDimension);
  return evenDown(static_cast<int>(value));
}

SourceKind kindOf(rtc::LocalMediaTranscodingSourceType type) {
  switch (type) {
    case rtc::kLocalMediaTranscodingSourceType_MediaSourceScreen:
      return SourceKind::Screen;
    case rtc::kLocalMediaTranscodingSourceType_MediaSourceImage:
      return SourceKind::Image;
    default:
      return SourceKind::Camera;  // cameras and the peer's remote video
  }
}

}  // namespace

std::string sourceId(const rtc::LocalMediaTranscodingSource& s) {
  switch (s.sourceType) {
    case rtc::kLocalMediaTranscodingSourceType_MediaSourceScreen:
      return s.screenSourceId;
    case rtc::kLocalMediaTranscodingSourceType_MediaSourceImage:
      return s.imagePath;
    case rtc::kLocalMediaTranscodingSourceType_MediaSourceRemoteVideo:
      return s.userId;
    default:
      return s.cameraDeviceId;
  }
}

Layout planLayout(const std::vector<rtc::LocalMediaTranscodingSource>& sources, const rtc::VideoEncParam& encoder,
                  uint32_t canvasColor) {
  Layout layout;
  layout.width = pickDimension(encoder.width, encoder.canvas_width, kDefaultWidth);
  layout.height = pickDimension(encoder.height, encoder.canvas_height, kDefaultHeight);
  layout.fps = encoder.fps != 0 ? static_cast<int>(std::min<uint32_t>(encoder.fps, kMaxFps)) : kDefaultFps;
  layout.canvas = rgbToYuv(canvasColor);

  for (const auto& s : sources) {
    PlacedSource placed;
    placed.kind = kindOf(s.sourceType);
    placed.id = sourceId(s);
    placed.zOrder = s.zOrder;
    placed.originX = s.rect.x;
    placed.originY = s.rect.y;
    placed.width = std::max(0, s.rect.width);
    placed.height = std::max(0, s.rect.height);
    // 64-bit edges: script can pass any int, and x + width must not overflow.
    const int64_t right = int64_t{s.rect.x} + placed.width;
    const int64_t bottom = int64_t{s.rect.y} + placed.height;
    placed.x0 = evenDown(static_cast<int>(std::clamp<int64_t>(s.rect.x, 0, layout.width)));
    placed.y0 = evenDown(static_cast<int>(std::clamp<int64_t>(s.rect.y, 0, layout.height)));
    placed.x1 = std::min(layout.width, evenUp(static_cast<int>(std::clamp<int64_t>(right, 0, layout.width))));
    placed.y1 = std::min(layout.height, evenUp(static_cast<int>(std::clamp<int64_t>(bottom, 0, layout.height))));
    if (placed.width == 0 || placed.height == 0) placed.x1 = placed.x0, placed.y1 = placed.y0;
    placed.colour = rgbToYuv(imageColour(s.imagePath));
    layout.sources.push_back(std::move(placed));
  }
  std::stable_sort(layout.sources.begin(), layout.sources.end(),
                   [](const PlacedSource& a, const PlacedSource& b) { return a.zOrder < b.zOrder; });
  return layout;
}

namespace {

// Eight colour bars, the classic test card order.
constexpr uint32_t kBars[8] = {0xffffff, 0xffff00, 0x00ffff, 0x00ff00, 0xff00ff, 0xff0000, 0x0000ff, 0x000000};
// Screens: a two-tone checkerboard of square cells.
constexpr uint32_t kScreenTones[2] = {0x2050a0, 0xd0d8e0};
constexpr int kScreenCell = 32;

void fillRow(std::vector<uint8_t>& row, size_t length, int period, auto colourAt) {
  row.resize(length);
  for (size_t i = 0; i < length; ++i) row[i] = colourAt(static_cast<int>(i % period));
}

}  // namespace

void Composer::prepare(const Layout& layout) {
  layout_ = layout;
  patterns_.assign(layout.sources.size(), {});
  for (size_t i = 0; i < layout.sources.size(); ++i) {
    const auto& s = layout.sources[i];
    auto& p = patterns_[i];
    if (s.kind == SourceKind::Image || s.x1 <= s.x0) continue;
    if (s.kind == SourceKind::Camera) {
      const int bar = std::max(2, evenDown(s.width / 8));
      p.period = bar * 8;
      // Long enough for any visible offset plus any shift within a period.
      const size_t length = static_cast<size_t>(s.width) + static_cast<size_t>(p.period) + 2;
      fillRow(p.rows[0].y, length, p.period, [&](int x) { return rgbToYuv(kBars[x / bar]).y; });
      fillRow(p.rows[0].u, length / 2 + 1, p.period / 2, [&](int x) { return rgbToYuv(kBars[2 * x / bar]).u; });
      fillRow(p.rows[0].v, length / 2 + 1, p.period / 2, [&](int x) { return rgbToYuv(kBars[2 * x / bar]).v; });
    } else {
      p.period = 2 * kScreenCell;
      const size_t length = static_cast<size_t>(s.width) + 2;
      for (int r = 0; r < 2; ++r) {
        auto tone = [&](int x, int cell) { return rgbToYuv(kScreenTones[(x / cell + r) % 2]); };
        fillRow(p.rows[r].y, length, p.period, [&](int x) { return tone(x, kScreenCell).y; });
        fillRow(p.rows[r].u, length / 2 + 1, p.period / 2, [&](int x) { return tone(x, kScreenCell / 2).u; });
        fillRow(p.rows[r].v, length / 2 + 1, p.period / 2, [&](int x) { return tone(x, kScreenCell / 2).v; });
      }
    }
  }
}

void Composer::compose(uint32_t counter, uint8_t* i420) const {
  const size_t w = layout_.width;
  const size_t h = layout_.height;
  std::memset(i420, layout_.canvas.y, w * h);
  std::memset(i420 + w * h, layout_.canvas.u, w * h / 4);
  std::memset(i420 + w * h + w * h / 4, layout_.canvas.v, w * h / 4);
  for (size_t i = 0; i < layout_.sources.size(); ++i) drawSource(layout_.sources[i], patterns_[i], counter, i420);
}

void Composer::drawSource(const PlacedSource& s, const Pattern& p, uint32_t counter, uint8_t* i420) const {
  if (s.x1 <= s.x0 || s.y1 <= s.y0) return;
  // Offsets into the planes are computed in the pointer's own width.
  const std::ptrdiff_t w = layout_.width;
  const std::ptrdiff_t h = layout_.height;
  uint8_t* planeY = i420;
  uint8_t* planeU = i420 + w * h;
  uint8_t* planeV = planeU + w * h / 4;
  const int spanY = s.x1 - s.x0;
  const int spanC = spanY / 2;

  if (s.kind == SourceKind::Image) {
    for (int y = s.y0; y < s.y1; ++y) std::memset(planeY + y * w + s.x0, s.colour.y, spanY);
    for (int y = s.y0 / 2; y < s.y1 / 2; ++y) {
      std::memset(planeU + y * (w / 2) + s.x0 / 2, s.colour.u, spanC);
      std::memset(planeV + y * (w / 2) + s.x0 / 2, s.colour.v, spanC);
    }
    return;
  }

  // Pattern column of the first visible pixel, and for cameras the shift
  // that makes the bars move left by kCameraStep pixels a frame.
  const int skipX = std::max(0, s.x0 - s.originX);
  const int shift =
      s.kind == SourceKind::Camera ? static_cast<int>((static_cast<uint64_t>(counter) * kCameraStep) % p.period) : 0;
  const int startY = evenDown(skipX + shift);
  auto rowOf = [&](int y) -> const Planes& {
    if (s.kind == SourceKind::Camera) return p.rows[0];
    return p.rows[((y - s.originY) / kScreenCell) & 1];
  };
  for (int y = s.y0; y < s.y1; ++y) std::memcpy(planeY + y * w + s.x0, rowOf(y).y.data() + startY, spanY);
  for (int y = s.y0 / 2; y < s.y1 / 2; ++y) {
    const Planes& row = rowOf(y * 2);
    std::memcpy(planeU + y * (w / 2) + s.x0 / 2, row.u.data() + startY / 2, spanC);
    std::memcpy(planeV + y * (w / 2) + s.x0 / 2, row.v.data() + startY / 2, spanC);
  }
}

}  // namespace orva::loopback
