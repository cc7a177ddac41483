// Local transcoding's picture: a canvas of one colour with camera, screen
// and image sources drawn over it in ascending z-order, as an I420 frame
// (Y plane w*h, then U and V planes w/2*h/2, strides w and w/2).
//
// planLayout() decides where everything goes (pure); Composer draws one
// frame of a layout with row-wise memset/memcpy only, so a 4K frame costs a
// few milliseconds on one core.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "orva/records.h"

namespace orva::loopback {

struct Yuv {
  uint8_t y = 0;
  uint8_t u = 128;
  uint8_t v = 128;
  bool operator==(const Yuv&) const = default;
};

// 0xRRGGBB in the colour space of lib/renderer/colour-space.js.
Yuv rgbToYuv(uint32_t rgb);
// What names a transcoding source: its camera, screen, image path or user.
std::string sourceId(const Orva::Rtc::LocalMediaTranscodingSource& source);
// A stable colour for an image path: the loopback draws images as solid
// blocks of this colour.
uint32_t imageColour(std::string_view path);

enum class SourceKind { Camera, Screen, Image };

struct PlacedSource {
  SourceKind kind = SourceKind::Camera;
  std::string id;  // camera id, screen id or image path
  int zOrder = 0;
  // The visible part, clipped to the canvas, all four edges even so the
  // chroma planes cover exactly the same area: [x0, x1) x [y0, y1).
  int x0 = 0, y0 = 0, x1 = 0, y1 = 0;
  int originX = 0, originY = 0;  // the unclipped top-left; patterns start there
  int width = 0, height = 0;     // the unclipped size
  Yuv colour;                    // images only
};

struct Layout {
  int width = 0;   // even, > 0
  int height = 0;  // even, > 0
  int fps = 0;     // > 0
  Yuv canvas;
  std::vector<PlacedSource> sources;  // drawing order: ascending zOrder, stable
};

// Default and limits of the canvas.
constexpr int kDefaultWidth = 1280;
constexpr int kDefaultHeight = 720;
constexpr int kDefaultFps = 30;
constexpr int kMaxDimension = 7680;
constexpr int kMaxFps = 120;

// Where each source of `sources` lands on a canvas of `encoder`'s size
// (width/height/fps 0 take the canvas size, then the defaults). Sources
// wholly outside the canvas are kept with an empty visible part.
Layout planLayout(const std::vector<Orva::Rtc::LocalMediaTranscodingSource>& sources,
                  const Orva::Rtc::VideoEncParam& encoder, uint32_t canvasColor);

// Bytes of an I420 frame of the layout's size.
inline int frameBytes(const Layout& layout) { return layout.width * layout.height * 3 / 2; }

class Composer {
 public:
  // Builds the pattern rows the layout's sources need; call once per layout.
  void prepare(const Layout& layout);
  // Draws frame number `counter` of the prepared layout into `i420`
  // (frameBytes(layout) bytes). The camera pattern moves with `counter`.
  void compose(uint32_t counter, uint8_t* i420) const;

  // Pixels the camera bars move per frame (even, so chroma moves along).
  static constexpr int kCameraStep = 4;

 private:
  struct Planes {
    std::vector<uint8_t> y, u, v;
  };
  // One pattern row per plane; rows of a camera are offset copies of it.
  struct Pattern {
    int period = 2;  // luma pixels after which the row repeats (even)
    Planes rows[2];  // screens alternate two rows by cell; cameras use rows[0]
  };

  void drawSource(const PlacedSource& source, const Pattern& pattern, uint32_t counter, uint8_t* i420) const;

  Layout layout_;
  std::vector<Pattern> patterns_;  // one per layout_.sources entry
};

}  // namespace orva::loopback
