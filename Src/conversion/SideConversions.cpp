// The side conversions: exports for buffers outside the format codes, their portable row forms
// and the choosers of their vector forms. None checks its arguments; all return 0.
#include "conversion/SideConversions.h"

#include <cmath>
#include <cstring>

#include "Ombrix.h"
#include "conversion/V210.h"
#include "frame/Globals.h"

namespace OX {

namespace portable {

void Rgb24ToBgra(const uint8_t* source, uint8_t* destination, int32_t width) {
  for (int32_t i = 0; i < width; ++i) Rgb24ToBgraPixel(source + 3 * i, destination + 4 * i);
}

// round(sample x 32.03128) in floats, clamped to 0-65535; the X word is 0.
int32_t Rgb16uToXrgb15u(const uint16_t* source, uint16_t* destination, int32_t width) {
  const int32_t pixels = (width + 1) & ~1;  // groups of two, no tail
  for (int32_t i = 0; i < pixels; ++i) {
    destination[4 * i] = 0;
    for (int c = 0; c < 3; ++c) {
      const float x = std::nearbyint(float(source[3 * i + c]) * 32.03128f);
      destination[4 * i + 1 + c] = uint16_t(x > 65535.0f ? 65535.0f : x);
    }
  }
  return pixels;
}

// (s x 32768) / 65535, truncated.
void Scale16uTo15u(uint16_t* row, int32_t width, bool swapBytes) {
  for (int32_t i = 0; i < 4 * width; ++i) {
    uint32_t s = row[i];
    if (swapBytes) s = ((s & 0xFF) << 8) | (s >> 8);
    row[i] = uint16_t(s * 32768u / 65535u);
  }
}

}  // namespace portable

Rgb24ToBgraRow ChooseRgb24ToBgra() { return gHasSSSE3 ? &ssse3::Rgb24ToBgra : &portable::Rgb24ToBgra; }
Rgb16uToXrgb15uRow ChooseRgb16uToXrgb15u() {
  if (gHasAVX2) return &avx2::Rgb16uToXrgb15u;
  if (gHasSSE2) return &sse2::Rgb16uToXrgb15u;
  return &portable::Rgb16uToXrgb15u;
}
Scale16uRow ChooseScale16uTo15u() {
  if (gHasSSE41) return &sse41::Scale16uTo15u;
  if (gHasSSSE3) return &ssse3::Scale16uTo15u;
  return &portable::Scale16uTo15u;
}

namespace {

// Pixels of a contiguous width x height buffer; none when either is not positive.
int64_t PixelCount(int32_t width, int32_t height) { return width > 0 && height > 0 ? int64_t(width) * height : 0; }

uint16_t Word16(const uint8_t* p) {
  uint16_t v;
  std::memcpy(&v, p, 2);
  return v;
}

}  // namespace

}  // namespace OX

using namespace OX;

OX_Result OX_ConvertW210toV210(const void* const planes[3], const int32_t rowBytes[3], int32_t width, int32_t height,
                               void* destination, int32_t destinationRowBytes) {
  const uint8_t* p[3] = {static_cast<const uint8_t*>(planes[0]), static_cast<const uint8_t*>(planes[1]),
                         static_cast<const uint8_t*>(planes[2])};
  uint8_t* d = static_cast<uint8_t*>(destination);
  const int32_t groups = (width + 5) / 6;
  for (int32_t row = 0; row < height; ++row) {
    for (int32_t g = 0; g < groups; ++g) {
      V210Group v;
      for (int i = 0; i < 6; ++i) v.y[i] = Word16(p[0] + 2 * (6 * g + i));
      for (int j = 0; j < 3; ++j) {
        v.u[j] = Word16(p[1] + 2 * (3 * g + j));
        v.v[j] = Word16(p[2] + 2 * (3 * g + j));
      }
      uint32_t words[4];
      PackV210(v, words);
      std::memcpy(d + 16 * g, words, 16);
    }
    // Row bytes count 16-bit words: half of them, rounded down.
    for (int i = 0; i < 3; ++i) p[i] += 2 * ptrdiff_t(rowBytes[i] / 2);
    d += destinationRowBytes;
  }
  return OX_Success;
}

OX_Result OX_ConvertW210toQuarterResVUYX_8u(const void* const planes[3], const int32_t rowBytes[3], int32_t width,
                                            int32_t height, void* destination, int32_t destinationRowBytes,
                                            int32_t field) {
  const uint8_t* p[3];
  for (int i = 0; i < 3; ++i) {
    p[i] = static_cast<const uint8_t*>(planes[i]);
    if (field == 2) p[i] += rowBytes[i] & ~1;  // the second field starts one row on
  }
  const int32_t rows = height / 2, pixels = width / 2;
  uint8_t* d = static_cast<uint8_t*>(destination) + ptrdiff_t(rows - 1) * destinationRowBytes;
  for (int32_t row = 0; row < rows; ++row) {
    for (int32_t i = 0; i < pixels; ++i) {
      d[4 * i] = uint8_t(Word16(p[2] + 2 * i) >> 2);
      d[4 * i + 1] = uint8_t(Word16(p[1] + 2 * i) >> 2);
      // The mean of the two lumas, truncated: (a + b) >> 3 of ten-bit samples.
      d[4 * i + 2] = uint8_t((Word16(p[0] + 4 * i) + Word16(p[0] + 4 * i + 2)) >> 3);
      d[4 * i + 3] = 255;
    }
    for (int i = 0; i < 3; ++i) p[i] += 2 * ptrdiff_t(rowBytes[i]);
    d -= destinationRowBytes;
  }
  return OX_Success;
}

OX_Result OX_ConvertRGB_444_8uToBGRA_4444_8u(const void* source, int32_t sourceRowBytes, void* destination,
                                             int32_t destinationRowBytes, int32_t width, int32_t height) {
  const Rgb24ToBgraRow row = ChooseRgb24ToBgra();
  const uint8_t* s = static_cast<const uint8_t*>(source);
  uint8_t* d = static_cast<uint8_t*>(destination);
  for (int32_t r = 0; r < height; ++r, s += sourceRowBytes, d += destinationRowBytes) row(s, d, width);
  return OX_Success;
}

OX_Result OX_Convert_DNxHD16u_To_RGB_444_10u(const void* source, void* destination, int32_t width, int32_t height) {
  const uint16_t* s = static_cast<const uint16_t*>(source);
  uint32_t* d = static_cast<uint32_t*>(destination);
  for (int64_t i = 0; i < PixelCount(width, height); ++i)
    d[i] = (uint32_t(s[4 * i] >> 6) << 2) | (uint32_t(s[4 * i + 1] >> 6) << 12) | (uint32_t(s[4 * i + 2] >> 6) << 22);
  return OX_Success;
}

OX_Result OX_Convert_RGB_444_10u_To_DNxHD16u(const void* source, void* destination, int32_t width, int32_t height) {
  const uint32_t* s = static_cast<const uint32_t*>(source);
  uint16_t* d = static_cast<uint16_t*>(destination);
  for (int64_t i = 0; i < PixelCount(width, height); ++i)
    for (int c = 0; c < 3; ++c) d[4 * i + c] = uint16_t(((s[i] >> (2 + 10 * c)) & 0x3FF) * 65535u / 1023u);
  return OX_Success;
}

OX_Result OX_ConvertRGB_444_16u_To_XRGB_4444_15u(const void* source, void* destination, int32_t width, int32_t height) {
  const Rgb16uToXrgb15uRow row = ChooseRgb16uToXrgb15u();
  const ptrdiff_t srcRow = ptrdiff_t(width) * 3;  // 16-bit words
  const uint16_t* s = static_cast<const uint16_t*>(source) + ptrdiff_t(height - 1) * srcRow;
  uint16_t* d = static_cast<uint16_t*>(destination);
  // The picture turns over: the last source row comes first.
  for (int32_t r = 0; r < height; ++r, s -= srcRow) d += 4 * ptrdiff_t(row(s, d, width));
  return OX_Success;
}

OX_Result OX_Scale16uBufferTo15uSIMD(void* buffer, int32_t rowBytes, int32_t width, int32_t height, bool swapBytes) {
  const Scale16uRow row = ChooseScale16uTo15u();
  uint8_t* base = static_cast<uint8_t*>(buffer);
  const ptrdiff_t step = rowBytes & ~1;
  if (row == &portable::Scale16uTo15u) {
    for (int32_t r = height - 1; r >= 0; --r) row(reinterpret_cast<uint16_t*>(base + r * step), width, swapBytes);
  } else {
    for (int32_t r = 0; r < height; ++r) row(reinterpret_cast<uint16_t*>(base + r * step), width, swapBytes);
  }
  return OX_Success;
}
