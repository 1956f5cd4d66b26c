// The fills: black and white, transparent or opaque, in every raw family, planar 4:2:0 and the
// DV25 frames, and a fill with one caller's pixel.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <vector>

#include "Ombrix.h"
#include "frame/PixelFormat.h"
#include "primitives/Primitives.h"

namespace OX {
namespace {

enum FillKind { kFillTransparentBlack = 0, kFillOpaqueBlack = 1, kFillTransparentWhite = 2, kFillOpaqueWhite = 3 };

// Sample values by family and kind, bytes or samples in memory order. RGB is full range; 8-bit
// YUV is studio range; 15-bit YUV takes the RGB values; float YUV has U and V about 0.
struct Pattern8 {
  uint8_t fKind[4][4];
};
constexpr Pattern8 kRGB8 = {{{0, 0, 0, 0}, {0, 0, 0, 255}, {255, 255, 255, 0}, {255, 255, 255, 255}}};
constexpr Pattern8 kRGB8First = {{{0, 0, 0, 0}, {255, 0, 0, 0}, {0, 255, 255, 255}, {255, 255, 255, 255}}};
constexpr Pattern8 kYUV8 = {{{128, 128, 16, 0}, {128, 128, 16, 255}, {128, 128, 235, 0}, {128, 128, 235, 255}}};
constexpr Pattern8 kYUV8First = {{{0, 16, 128, 128}, {255, 16, 128, 128}, {0, 235, 128, 128}, {255, 235, 128, 128}}};
// Two pixels of 4:2:2 (transparent kinds are refused before they get here).
constexpr Pattern8 k422 = {{{0, 0, 0, 0}, {128, 16, 128, 16}, {0, 0, 0, 0}, {128, 235, 128, 235}}};
constexpr Pattern8 k422First = {{{0, 0, 0, 0}, {16, 128, 16, 128}, {0, 0, 0, 0}, {235, 128, 235, 128}}};

struct Pattern16 {
  uint16_t fKind[4][4];
};
constexpr uint16_t kOne15 = 32768;
constexpr Pattern16 k15 = {{{0, 0, 0, 0}, {0, 0, 0, kOne15}, {kOne15, kOne15, kOne15, 0}, {kOne15, kOne15, kOne15, kOne15}}};
constexpr Pattern16 k15First = {{{0, 0, 0, 0}, {kOne15, 0, 0, 0}, {0, kOne15, kOne15, kOne15}, {kOne15, kOne15, kOne15, kOne15}}};

struct Pattern32 {
  float fKind[4][4];
};
constexpr Pattern32 kRGB32 = {{{0, 0, 0, 0}, {0, 0, 0, 1}, {1, 1, 1, 0}, {1, 1, 1, 1}}};
constexpr Pattern32 kRGB32First = {{{0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 1, 1}, {1, 1, 1, 1}}};
constexpr Pattern32 kYUV32 = {{{0, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 1, 0}, {0, 0, 1, 1}}};
constexpr Pattern32 kYUV32First = {{{0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}, {1, 1, 0, 0}}};
constexpr Pattern32 k42232 = {{{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 1, 0, 1}}};
constexpr Pattern32 k42232First = {{{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {1, 0, 1, 0}}};

// Fills `units` units of `unitBytes` on each of `height` rows: the vector fill for rows walking
// forward, plain loops for rows walking backward (bottom-up images addressed from their top).
OX_Result Set(void* destination, int32_t rowBytes, int32_t units, int32_t height, const void* pattern,
              int32_t unitBytes) {
  if (units <= 0 || height <= 0) return OX_Success;
  if (rowBytes < 0) {
    auto* row = static_cast<uint8_t*>(destination);
    for (int32_t y = 0; y < height; ++y, row += rowBytes)
      for (int32_t i = 0; i < units; ++i) std::memcpy(row + ptrdiff_t(i) * unitBytes, pattern, size_t(unitBytes));
    return OX_Success;
  }
  int32_t status;
  switch (unitBytes) {
    case 4: status = VecFill8uC4(static_cast<const uint8_t*>(pattern), destination, rowBytes, units, height); break;
    case 8: status = VecFill16uC4(static_cast<const uint16_t*>(pattern), destination, rowBytes, units, height); break;
    default: status = VecFill32fC4(static_cast<const float*>(pattern), destination, rowBytes, units, height); break;
  }
  return status == 0 ? OX_Success : OX_ErrNoRoute;
}

bool IsPlanarCode(OX_PixelFormat f) {
  const uint32_t container = f & kContainerMask;
  return IsYUV(f) && container >= 0x9000000 && container <= 0xC000000;
}
// 601 for YUV codes without the 709 bit and the reserved bit, else 709.
bool Uses601(OX_PixelFormat f) { return IsYUV(f) && (f & (k709Bit | kReservedBit)) == 0; }

// Luma and chroma bytes fill the three planes: `width` by `height` luma, (width + 1) / 2 by
// (height + 1) / 2 chroma (the odd last column and row have chroma of their own), within the
// planes' row bytes.
OX_Result FillPlanes(void* destination, int32_t width, int32_t height, uint8_t luma, uint8_t u, uint8_t v) {
  void* planes[3];
  int32_t rowBytes[3];
  OX_GetPlanarBuffers(destination, 0, width, height, planes, rowBytes);
  const int32_t chromaWidth = std::min((width + 1) / 2, rowBytes[1]);
  if (VecFill8u(luma, planes[0], rowBytes[0], width, height) != 0) return OX_ErrNoRoute;
  if (chromaWidth > 0 && (VecFill8u(u, planes[1], rowBytes[1], chromaWidth, (height + 1) / 2) != 0 ||
                          VecFill8u(v, planes[2], rowBytes[2], chromaWidth, (height + 1) / 2) != 0))
    return OX_ErrNoRoute;
  return OX_Success;
}

// A stored black DV25 frame, encoded once by our encoder from a black picture.
const std::vector<uint8_t>& BlackDVFrame(OX_PixelFormat format) {
  static std::once_flag once[2];
  static std::vector<uint8_t> frames[2];
  const int i = format == OX_PixelFormat_PALDV25 ? 1 : 0;
  std::call_once(once[i], [&] {
    const int32_t width = 720, height = i ? 576 : 480;
    std::vector<uint8_t> picture(size_t(width) * 2 * height);
    for (size_t p = 0; p < picture.size(); p += 2) picture[p] = 128, picture[p + 1] = 16;  // UYVY black
    frames[i].assign(size_t(OX_PixelFormatSize(format, width, height)), 0);
    OX_Convert(picture.data(), width * 2, OX_PixelFormat_UYVY_422_8u, frames[i].data(), 0, format, width, height, 4);
  });
  return frames[i];
}

OX_Result FillBody(void* destination, int32_t rowBytes, int32_t width, int32_t height, OX_PixelFormat f, int kind) {
  if (IsPlanarCode(f)) {
    if (SubsamplingOf(f) != kSub420) return OX_ErrBadSourceFormat;
    if (width <= 0 || height <= 0) return OX_Success;
    if (!destination) return OX_ErrNullDest;
    return FillPlanes(destination, width, height, kind == kFillOpaqueWhite ? 235 : 16, 128, 128);
  }
  if (IsContainerFormat(f)) return OX_ErrBadSourceFormat;
  if (width <= 0 || height <= 0) return OX_Success;
  if (!destination) return OX_ErrNullDest;
  // A colour cannot exceed its alpha: transparent white is transparent black when premultiplied.
  if (kind == kFillTransparentWhite && AlphaOf(f) == kAlphaPremultiplied) kind = kFillTransparentBlack;
  const bool first = (f & kOrderBit) != 0, is422 = SubsamplingOf(f) == kSub422;
  switch (DepthOf(f)) {
    case kDepth8u: {
      const Pattern8& p = is422 ? (first ? k422First : k422) : IsYUV(f) ? (first ? kYUV8First : kYUV8)
                                                                         : (first ? kRGB8First : kRGB8);
      return Set(destination, rowBytes, is422 ? (width + 1) / 2 : width, height, p.fKind[kind], 4);
    }
    case kDepth10u: {
      // V210 from one pixel of the kind in 8-bit premultiplied YUV, repeated to a group of six;
      // RGB_444_10u from its own one-pixel conversion.
      uint8_t six[6][4];
      for (auto& px : six) std::memcpy(px, kYUV8.fKind[kind], 4);
      uint8_t group[16] = {};
      if (is422) {
        const OX_PixelFormat from = Uses601(f) ? OX_PixelFormat_VUYP_4444_8u : OX_PixelFormat_VUYP_4444_8u_709;
        if (OX_Result r = OX_Convert(six, 24, from, group, 16, f, 6, 1, 4); r != OX_Success) return r;
        return Set(destination, rowBytes, (width + 5) / 6, height, group, 16);
      }
      if (OX_Result r = OX_Convert(kRGB8.fKind[kind], 4, OX_PixelFormat_BGRA_4444_8u, group, 4, f, 1, 1, 4);
          r != OX_Success)
        return r;
      return Set(destination, rowBytes, width, height, group, 4);
    }
    case kDepth15u:
      return Set(destination, rowBytes, width, height, (first ? k15First : k15).fKind[kind], 8);
    case kDepth32f: {
      const Pattern32& p = is422 ? (first ? k42232First : k42232) : IsYUV(f) ? (first ? kYUV32First : kYUV32)
                                                                             : (first ? kRGB32First : kRGB32);
      return Set(destination, rowBytes, is422 ? (width + 1) / 2 : width, height, p.fKind[kind], 16);
    }
    default: return OX_ErrUnsupported;
  }
}

}  // namespace
}  // namespace OX

using OX::FillBody;

OX_Result OX_FillWithTransparentBlack(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                      OX_PixelFormat format) {
  if (OX::AlphaOf(format) != OX::kAlphaStraight && OX::AlphaOf(format) != OX::kAlphaPremultiplied)
    return OX_ErrBadDestFormat;
  return FillBody(destination, rowBytes, width, height, format, OX::kFillTransparentBlack);
}

OX_Result OX_FillWithTransparentWhite(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                      OX_PixelFormat format) {
  if (OX::AlphaOf(format) != OX::kAlphaStraight && OX::AlphaOf(format) != OX::kAlphaPremultiplied)
    return OX_ErrBadDestFormat;
  return FillBody(destination, rowBytes, width, height, format, OX::kFillTransparentWhite);
}

OX_Result OX_FillWithOpaqueWhite(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                 OX_PixelFormat format) {
  return FillBody(destination, rowBytes, width, height, format, OX::kFillOpaqueWhite);
}

OX_Result OX_FillWithOpaqueBlack(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                 OX_PixelFormat format) {
  switch (format) {
    case OX_PixelFormat_NTSCDV25:
    case OX_PixelFormat_PALDV25: {
      if (!destination) return OX_ErrNullDest;
      const std::vector<uint8_t>& frame = OX::BlackDVFrame(format);
      return OX_CopyMemory(destination, frame.data(), uint32_t(frame.size()));
    }
    case OX_PixelFormat_NTSC_DV100_720p: case OX_PixelFormat_PAL_DV100_720p:
    case OX_PixelFormat_NTSC_DV100_1080i: case OX_PixelFormat_PAL_DV100_1080i:
    case OX_PixelFormat_NTSCDV50: case OX_PixelFormat_PALDV50:
      return OX_Success;  // no stored black frame for these: nothing is written
    default:
      return FillBody(destination, rowBytes, width, height, format, OX::kFillOpaqueBlack);
  }
}

OX_Result OX_FillWithColor(void* destination, int32_t rowBytes, int32_t width, int32_t height, OX_PixelFormat format,
                           const void* color, OX_PixelFormat colorFormat) {
  using namespace OX;
  if (!color) return OX_ErrNullSource;
  if (IsContainerFormat(colorFormat) || TightRowBytes(colorFormat, 1) <= 0) return OX_ErrBadSourceFormat;
  if (width <= 0 || height <= 0) return OX_Success;
  if (!destination) return OX_ErrNullDest;
  // The caller's pixel, copied first (it may lie inside the destination).
  uint8_t pixel[1][16] = {};
  std::memcpy(pixel[0], color, size_t(std::min(TightRowBytes(colorFormat, 1), 16)));
  const uint32_t depth = DepthOf(format);
  if (IsPlanarCode(format)) {
    if (SubsamplingOf(format) != kSub420) return OX_ErrBadDestFormat;
    uint8_t yuv[4];
    const OX_PixelFormat to = Uses601(format) ? OX_PixelFormat_VUYP_4444_8u : OX_PixelFormat_VUYP_4444_8u_709;
    if (OX_Result r = OX_Convert(pixel[0], 16, colorFormat, yuv, 4, to, 1, 1, 4); r != OX_Success) return r;
    return FillPlanes(destination, width, height, yuv[2], yuv[1], yuv[0]);
  }
  if (IsContainerFormat(format)) return OX_ErrBadDestFormat;
  if (SubsamplingOf(format) == kSub444 && AlphaOf(format) != kAlphaNone) {
    if (depth != kDepth8u && depth != kDepth15u && depth != kDepth32f) return OX_ErrBadDestFormat;
    uint8_t converted[16];
    if (OX_Result r = OX_Convert(pixel[0], 16, colorFormat, converted, 16, format, 1, 1, 4); r != OX_Success) return r;
    return Set(destination, rowBytes, width, height, converted, depth == kDepth8u ? 4 : depth == kDepth15u ? 8 : 16);
  }
  if (SubsamplingOf(format) == kSub422 && depth == kDepth8u) {
    const int32_t size = std::min(TightRowBytes(colorFormat, 1), 16);
    uint8_t two[32];
    std::memcpy(two, pixel[0], size_t(size));
    std::memcpy(two + size, pixel[0], size_t(size));
    uint8_t pair[4];
    if (OX_Result r = OX_Convert(two, 2 * size, colorFormat, pair, 4, format, 2, 1, 4); r != OX_Success) return r;
    return Set(destination, rowBytes, (width + 1) / 2, height, pair, 4);
  }
  if (SubsamplingOf(format) == kSub422 && depth == kDepth10u) {
    // Packed by hand from the 8-bit YUV pixel, each 10-bit sample the byte times 4, in groups of
    // six: words U Y V, Y U Y, V Y U, Y V Y with samples at bits 0, 10 and 20. Row 0 gets every
    // group including a last partial one; later rows copy row 0's whole groups only. The call
    // then reports -4 though the picture is filled: hosts rely on both.
    uint8_t vuya[4];
    const OX_PixelFormat to = Uses601(format) ? OX_PixelFormat_VUYA_4444_8u : OX_PixelFormat_VUYA_4444_8u_709;
    if (OX_Result r = OX_Convert(pixel[0], 16, colorFormat, vuya, 4, to, 1, 1, 4); r != OX_Success) return r;
    const uint32_t v = vuya[0] * 4u, u = vuya[1] * 4u, y = vuya[2] * 4u;
    auto word = [](uint32_t a, uint32_t b, uint32_t c) { return a | (b << 10) | (c << 20); };
    const uint32_t group[4] = {word(u, y, v), word(y, u, y), word(v, y, u), word(y, v, y)};
    auto* row0 = static_cast<uint8_t*>(destination);
    const int32_t groups = (width + 5) / 6;
    for (int32_t g = 0; g < groups; ++g) std::memcpy(row0 + 16 * ptrdiff_t(g), group, 16);
    const size_t whole = size_t(width / 6) * 16;
    for (int32_t r = 1; r < height; ++r) std::memcpy(row0 + ptrdiff_t(r) * rowBytes, row0, whole);
    return OX_ErrBadDestFormat;
  }
  return OX_ErrBadDestFormat;
}
