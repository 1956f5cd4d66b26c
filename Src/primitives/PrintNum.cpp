// OX_PrintNum: a number in red seven-segment digits, one pixel thick, stamped on a frame for
// debugging. Segments are 1 top, 2 upper right, 3 lower right, 4 bottom, 5 lower left, 6 upper
// left, 7 middle; 1, 4 and 7 are the horizontal bars (the bits of 0x92).
#include <cmath>
#include <cstdio>
#include <cstring>

#include "Ombrix.h"
#include "frame/PixelFormat.h"

namespace OX {
namespace {

struct Glyph {
  char fChar;
  const char* fSegments;
};
constexpr Glyph kSevenSegmentGlyphs[] = {
    {'0', "123456"}, {'1', "23"},     {'2', "12754"},  {'3', "12734"},   {'4', "2367"},  {'5', "16734"},
    {'6', "134567"}, {'7', "123"},    {'8', "1234567"}, {'9', "12367"},  {'a', "123567"}, {'b', "34567"},
    {'c', "457"},    {'d', "23457"},  {'e', "16754"},  {'f', "1567"},
};
// The minus sign, and anything else without a glyph.
constexpr const char* kOtherSegments = "147";
constexpr unsigned kHorizontalSegments = 0x92;

const char* SegmentsOf(char c) {
  for (const Glyph& g : kSevenSegmentGlyphs)
    if (g.fChar == c) return g.fSegments;
  return kOtherSegments;
}

// Bytes a pixel by the format's depth field, as the draw loops address the rows.
int BytesPerPixel(OX_PixelFormat format) {
  const bool subsampledOrNoAlpha = SubsamplingOf(format) != 0 || AlphaOf(format) == 0;
  switch (DepthOf(format)) {
    case kDepth8u: return subsampledOrNoAlpha ? 2 : 4;
    case kDepth10u: return (format & 1) ? 0 : 4;
    case kDepth32f: return subsampledOrNoAlpha ? 8 : 16;
    default: return 0;
  }
}

// Where and what to write: a raw buffer walked top-down (a pixel, or for 4:2:2 a pair of pixels,
// of `fUnitBytes`), or the three planes of a planar 4:2:0 buffer.
struct Canvas {
  int32_t fWidth = 0, fHeight = 0;
  bool fPlanar = false;
  uint8_t* fRow0 = nullptr;
  int64_t fRowBytes = 0;
  int fBytesPerPixel = 0;
  bool fPairs = false;  // 4:2:2: a unit is two pixels
  uint8_t fUnit[16] = {};
  int fUnitBytes = 0;
  uint8_t* fPlanes[3] = {};
  int32_t fPlaneRowBytes[3] = {};

  bool Inside(int32_t x, int32_t y) const { return x >= 0 && y >= 0 && x < fWidth && y < fHeight; }

  void Luma(int32_t x, int32_t y) {
    if (Inside(x, y)) fPlanes[0][int64_t(y) * fPlaneRowBytes[0] + x] = 0x51;
  }
  void Chroma(int32_t cx, int32_t cy) {
    if (!Inside(2 * cx, 2 * cy)) return;
    fPlanes[1][int64_t(cy) * fPlaneRowBytes[1] + cx] = 0x5A;
    fPlanes[2][int64_t(cy) * fPlaneRowBytes[2] + cx] = 0xEF;
  }

  void Pixel(int32_t x, int32_t y) {
    if (fPlanar) {
      Luma(x, y);
      Chroma(x / 2, y / 2);
      return;
    }
    if (!Inside(x, y)) return;
    // A 4:2:2 pixel takes its whole pair, so the colour stays whole.
    const int32_t unitX = fPairs ? x & ~1 : x;
    std::memcpy(fRow0 + int64_t(y) * fRowBytes + int64_t(unitX) * fBytesPerPixel, fUnit, size_t(fUnitBytes));
  }

  // A 4:2:2 row writes the bar as length / 2 pairs, and the chroma planes of 4:2:0 take a bar of
  // half the length.
  void Horizontal(int32_t x, int32_t y, int32_t length) {
    if (fPlanar) {
      for (int32_t k = 0; k < length; ++k) Luma(x + k, y);
      for (int32_t k = 0; k < length / 2; ++k) Chroma(x / 2 + k, y / 2);
      return;
    }
    if (fPairs) {
      for (int32_t k = 0; k < length / 2; ++k) Pixel((x & ~1) + 2 * k, y);
      return;
    }
    for (int32_t k = 0; k < length; ++k) Pixel(x + k, y);
  }

  void Vertical(int32_t x, int32_t y, int32_t length) {
    for (int32_t k = 0; k < length; ++k) Pixel(x, y + k);
  }
};

void Floats(uint8_t* out, float a, float b, float c, float d) {
  const float v[4] = {a, b, c, d};
  std::memcpy(out, v, 16);
}

// The fixed red of each family. Returns false where the format has no colour to draw in.
bool ChooseColour(OX_PixelFormat format, Canvas& c) {
  const bool yuv = IsYUV(format), order = (format & kOrderBit) != 0;
  c.fBytesPerPixel = BytesPerPixel(format);
  const uint32_t sub = SubsamplingOf(format), depth = DepthOf(format);
  if (sub == kSub422 && depth == kDepth8u) {
    const uint8_t yuyv[4] = {0x51, 0x5A, 0x51, 0xEF}, uyvy[4] = {0x5A, 0x51, 0xEF, 0x51};
    std::memcpy(c.fUnit, order ? yuyv : uyvy, 4);
    c.fUnitBytes = 4;
    c.fPairs = true;
    return c.fBytesPerPixel == 2;
  }
  if (sub == kSub422 && depth == kDepth32f) {
    const float y = 0.299f, u = -0.168736f, v = 0.5f;
    if (order)
      Floats(c.fUnit, y, u, y, v);
    else
      Floats(c.fUnit, u, y, v, y);
    c.fUnitBytes = 16;
    c.fPairs = true;
    return c.fBytesPerPixel == 8;
  }
  if (sub != 0) return false;
  if (depth == kDepth10u) {
    const uint32_t red = 1023u << 22;  // red in bits 22-31
    std::memcpy(c.fUnit, &red, 4);
    c.fUnitBytes = 4;
    return c.fBytesPerPixel == 4;
  }
  if (depth == kDepth8u) {
    const uint8_t vuya[4] = {0xEF, 0x5A, 0x51, 0xFF}, bgra[4] = {0, 0, 0xFF, 0xFF}, argb[4] = {0xFF, 0xFF, 0, 0};
    std::memcpy(c.fUnit, yuv ? vuya : order ? argb : bgra, 4);
    c.fUnitBytes = 4;
    return c.fBytesPerPixel == 4;
  }
  if (depth == kDepth32f) {
    if (yuv)
      Floats(c.fUnit, 0.5f, -0.168736f, 0.299f, 1.0f);
    else if (order)
      Floats(c.fUnit, 1.0f, 1.0f, 0.0f, 0.0f);
    else
      Floats(c.fUnit, 0.0f, 0.0f, 1.0f, 1.0f);
    c.fUnitBytes = 16;
    return c.fBytesPerPixel == 16;
  }
  return false;
}

bool FractionOK(float f) { return f >= 0.0f && f <= 1.0f; }  // false for NaN too

}  // namespace
}  // namespace OX

using namespace OX;

OX_Result OX_PrintNum(void* buffer, int32_t rowBytes, OX_PixelFormat format, int32_t width, int32_t height,
                      int32_t number, float sizeFraction, float xFraction, float yFraction, bool decimal) {
  if (IsContainerFormat(format)) {
    const uint32_t top = ContainerByte(format);
    if (!(format & kYUVBit) || top < 9 || top > 12 || (format & kSubsamplingMask) < 48) return OX_ErrBadDestFormat;
  }
  if ((format & kDepthMask) == kDepth15u) return OX_ErrBadDestFormat;
  if (width < 0) return OX_ErrBadWidth;
  if (height < 0) return OX_ErrBadHeight;
  if (!FractionOK(sizeFraction) || !FractionOK(xFraction) || !FractionOK(yFraction)) return OX_ErrNoRoute;

  char text[16];
  const int n = decimal ? std::snprintf(text, sizeof text, "%d", number)
                        : std::snprintf(text, sizeof text, "%x", static_cast<unsigned>(number));
  if (n <= 0 || !buffer) return OX_Success;

  // Geometry: the first cell at least 4 pixels in; cells of even width, shrunk until the text
  // and one more cell fit across and two cells fit down.
  const int32_t x0 = std::max(int32_t(std::trunc(double(width) * xFraction)), 4);
  const int32_t y0 = std::max(int32_t(std::trunc(double(height) * yFraction)), 4);
  int32_t w = int32_t(std::trunc(double(width) * sizeFraction)) & ~1;
  if (int64_t(width) < int64_t(w) * (n + 1) + x0) w = (width - x0) / (n + 1);
  if (y0 + 2 * int64_t(w) > height) w = (height - y0) / 2;
  const int32_t s = (w * 3 / 4) & ~1;
  if (s <= 0) return OX_Success;

  Canvas canvas;
  canvas.fWidth = width;
  canvas.fHeight = height;
  if (IsPlanarContainer(format)) {
    canvas.fPlanar = true;
    void* planes[3];
    OX_GetPlanarBuffers(buffer, rowBytes, width, height, planes, canvas.fPlaneRowBytes);
    for (int i = 0; i < 3; ++i) canvas.fPlanes[i] = static_cast<uint8_t*>(planes[i]);
  } else {
    if (!ChooseColour(format, canvas)) return OX_Success;
    canvas.fRow0 = static_cast<uint8_t*>(buffer);
    canvas.fRowBytes = rowBytes;
    if (OX_IsOriginBottomLeft(format)) {  // picture row 0 is the buffer's last row
      canvas.fRow0 += int64_t(height - 1) * rowBytes;
      canvas.fRowBytes = -int64_t(rowBytes);
    }
  }

  for (int i = 0; i < n; ++i) {
    const int32_t x = x0 + i * w, y = y0;
    for (const char* seg = SegmentsOf(text[i]); *seg; ++seg) {
      const int k = *seg - '0';
      if ((1u << k) & kHorizontalSegments) {
        const int32_t row = k == 1 ? y : k == 7 ? y + s : y + 2 * s;
        canvas.Horizontal(x, row, s);
      } else {
        const int32_t column = (k == 2 || k == 3) ? x + s : x;
        const int32_t top = (k == 5 || k == 3) ? y + s : y;
        canvas.Vertical(column, top, s);
      }
    }
  }
  return OX_Success;
}
