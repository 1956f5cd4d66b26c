// Alpha operations on whole images: invert the alpha, copy with a constant alpha, set the alpha in
// place, and the one-bit mask that picks each pixel from one of two images.
#include <cmath>
#include <cstdint>
#include <cstring>

#include "Ombrix.h"
#include "frame/PixelFormat.h"
#include "frame/Scratch.h"
#include "primitives/Primitives.h"

namespace OX {
namespace {

// Bytes of one sample at the depths these operations take: 8u, 15u, 32f.
int32_t SampleBytes(uint32_t depth) { return depth == kDepth8u ? 1 : depth == kDepth15u ? 2 : depth == kDepth32f ? 4 : 0; }

}  // namespace
}  // namespace OX

OX_Result OX_InvertAlpha(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
                         OX_PixelFormat format, int32_t width, int32_t height) {
  using namespace OX;
  const int32_t sample = SampleBytes(DepthOf(format));
  if (SubsamplingOf(format) != 0 || AlphaOf(format) == kAlphaNone || sample == 0 || IsContainerFormat(format))
    return OX_ErrBadSourceFormat;
  if (width < 1 || height < 1) return OX_Success;
  if (!source) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  // Only the alpha sample of the destination is written: sample 3, or 0 with the order bit.
  const ptrdiff_t at = (format & kOrderBit) ? 0 : 3 * sample;
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* s = static_cast<const uint8_t*>(source) + ptrdiff_t(y) * sourceRowBytes + at;
    uint8_t* d = static_cast<uint8_t*>(destination) + ptrdiff_t(y) * destinationRowBytes + at;
    for (int32_t x = 0; x < width; ++x, s += 4 * sample, d += 4 * sample) {
      if (sample == 1) {
        *d = uint8_t(~*s);
      } else if (sample == 2) {
        uint16_t a;
        std::memcpy(&a, s, 2);
        a = uint16_t(32768 - a);  // 16-bit arithmetic: 32768 becomes 0 and 0 becomes 32768
        std::memcpy(d, &a, 2);
      } else {
        float a;
        std::memcpy(&a, s, 4);
        a = 1.0f - a;
        std::memcpy(d, &a, 4);
      }
    }
  }
  return OX_Success;
}

OX_Result OX_CopyAndSetAlpha(const void* source, int32_t sourceRowBytes, void* destination,
                             int32_t destinationRowBytes, OX_PixelFormat format, int32_t width, int32_t height,
                             float alpha) {
  using namespace OX;
  const uint32_t depth = DepthOf(format);
  const bool first = (format & kOrderBit) != 0;
  if (SubsamplingOf(format) != 0 || AlphaOf(format) == kAlphaNone || IsContainerFormat(format))
    return OX_ErrUnsupported;
  if (first ? depth != kDepth8u : SampleBytes(depth) == 0) return OX_ErrUnsupported;
  if (width < 1 || height < 1) return OX_Success;
  if (!source) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  const int32_t sample = SampleBytes(depth), pixel = 4 * sample;
  // Row bytes count whole 32-bit words.
  const ptrdiff_t srb = ptrdiff_t(sourceRowBytes / 4) * 4, drb = ptrdiff_t(destinationRowBytes / 4) * 4;
  const ptrdiff_t at = first ? 0 : 3 * sample;
  uint8_t value[4];
  if (depth == kDepth8u) {
    value[0] = uint8_t(std::fmin(std::fmax(std::nearbyint(255.0f * alpha), 0.0f), 255.0f));
  } else if (depth == kDepth15u) {
    const uint16_t v = uint16_t(std::fmin(std::fmax(std::nearbyint(32768.0f * alpha), 0.0f), 32768.0f));
    std::memcpy(value, &v, 2);
  } else {
    std::memcpy(value, &alpha, 4);
  }
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* s = static_cast<const uint8_t*>(source) + y * srb;
    uint8_t* d = static_cast<uint8_t*>(destination) + y * drb;
    std::memmove(d, s, size_t(width) * size_t(pixel));
    for (int32_t x = 0; x < width; ++x) std::memcpy(d + ptrdiff_t(x) * pixel + at, value, size_t(sample));
  }
  return OX_Success;
}

OX_Result OX_SetAlphaChannel(uint32_t width, uint32_t height, void* buffer, int32_t rowBytes, OX_PixelFormat format,
                             bool opaque) {
  using namespace OX;
  if (width > 0x7FFFFFFFu) return OX_ErrBadWidth;
  if (height > 0x7FFFFFFFu) return OX_ErrBadHeight;
  int32_t status;
  auto* p = static_cast<uint8_t*>(buffer);
  const int32_t w = int32_t(width), h = int32_t(height);
  const bool known = format == OX_PixelFormat_BGRA_4444_8u || format == OX_PixelFormat_VUYA_4444_8u ||
                     format == OX_PixelFormat_BGRA_4444_15u || format == OX_PixelFormat_BGRA_4444_32f ||
                     format == OX_PixelFormat_BGRA_4444_32f_Linear || format == OX_PixelFormat_VUYA_4444_32f ||
                     format == OX_PixelFormat_ARGB_4444_32f || format == OX_PixelFormat_ARGB_4444_32f_Linear;
  if (!known) return OX_ErrUnsupported;
  if (w == 0 || h == 0) return OX_Success;
  if (!p) return OX_ErrNullDest;
  switch (format) {
    case OX_PixelFormat_BGRA_4444_8u:
    case OX_PixelFormat_VUYA_4444_8u:
      status = VecCopyChannel8uC4(opaque ? 255 : 0, p + 3, rowBytes, w, h);
      break;
    case OX_PixelFormat_BGRA_4444_15u:
      status = VecCopyChannel16uC4(opaque ? 32768 : 0, reinterpret_cast<uint16_t*>(p + 6), rowBytes, w, h);
      break;
    case OX_PixelFormat_BGRA_4444_32f:
    case OX_PixelFormat_BGRA_4444_32f_Linear:
    case OX_PixelFormat_VUYA_4444_32f:
    case OX_PixelFormat_ARGB_4444_32f:
    case OX_PixelFormat_ARGB_4444_32f_Linear: {
      const ptrdiff_t at = (format & kOrderBit) ? 0 : 12;
      status = VecCopyChannel32fC4(opaque ? 1.0f : 0.0f, reinterpret_cast<float*>(p + at), rowBytes, w, h);
      break;
    }
    default: return OX_ErrUnsupported;
  }
  return status == 0 ? OX_Success : OX_ErrNoRoute;
}

OX_Result OX_OneBitMaskComposite(const void* imageA, int32_t imageARowBytes, OX_PixelFormat imageAFormat,
                                 const void* imageB, int32_t imageBRowBytes, OX_PixelFormat imageBFormat,
                                 const void* mask, int32_t maskRowBytes, int32_t maskBitOffset, void* destination,
                                 int32_t destinationRowBytes, OX_PixelFormat destinationFormat, int32_t width,
                                 int32_t height, int32_t quality) {
  using namespace OX;
  if (IsContainerFormat(imageAFormat) || IsContainerFormat(imageBFormat)) return OX_ErrBadSourceFormat;
  const int32_t pixel = TightRowBytes(destinationFormat, 1);
  if (IsContainerFormat(destinationFormat) || SubsamplingOf(destinationFormat) == kSub422 ||
      (pixel != 4 && pixel != 8 && pixel != 16))
    return OX_ErrBadDestFormat;
  if (width < 1 || height < 1) return OX_Success;
  if (!imageA || !imageB || !mask) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  // Images are paired with the destination by picture, as a conversion would pair them.
  const bool bottomUp = OX_IsOriginBottomLeft(destinationFormat);
  auto place = [&](const void* p, int32_t rowBytes, OX_PixelFormat f, int32_t& outRowBytes) {
    const auto* row = static_cast<const uint8_t*>(p);
    outRowBytes = rowBytes;
    if (OX_IsOriginBottomLeft(f) != bottomUp) {
      row += ptrdiff_t(height - 1) * rowBytes;
      outRowBytes = -rowBytes;
    }
    return row;
  };
  int32_t arb, brb;
  const uint8_t* a = place(imageA, imageARowBytes, imageAFormat, arb);
  const uint8_t* b = place(imageB, imageBRowBytes, imageBFormat, brb);
  const size_t scratchRow = (size_t(width) + 1) * 16;
  ScratchBuffer scratchA(imageAFormat != destinationFormat ? scratchRow : 0);
  ScratchBuffer scratchB(imageBFormat != destinationFormat ? scratchRow : 0);
  if ((scratchA.Size() && !scratchA.Get()) || (scratchB.Size() && !scratchB.Get())) return OX_ErrNoMemory;
  const int32_t firstBit = maskBitOffset & 7;
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* rowA = a + ptrdiff_t(y) * arb;
    const uint8_t* rowB = b + ptrdiff_t(y) * brb;
    if (scratchA.Get()) {
      if (OX_Result r = OX_Convert(rowA, arb, imageAFormat, scratchA.Get(), int32_t(scratchRow), destinationFormat, width, 1, quality); r)
        return r;
      rowA = scratchA.Get();
    }
    if (scratchB.Get()) {
      if (OX_Result r = OX_Convert(rowB, brb, imageBFormat, scratchB.Get(), int32_t(scratchRow), destinationFormat, width, 1, quality); r)
        return r;
      rowB = scratchB.Get();
    }
    const uint8_t* bits = static_cast<const uint8_t*>(mask) + ptrdiff_t(y) * maskRowBytes;
    uint8_t* d = static_cast<uint8_t*>(destination) + ptrdiff_t(y) * destinationRowBytes;
    // Most significant bit first; a row may start in mid-byte.
    for (int32_t x = 0; x < width; ++x) {
      const int32_t bit = firstBit + x;
      const bool takeA = (bits[bit >> 3] & (0x80 >> (bit & 7))) != 0;
      std::memcpy(d + ptrdiff_t(x) * pixel, (takeA ? rowA : rowB) + ptrdiff_t(x) * pixel, size_t(pixel));
    }
  }
  return OX_Success;
}
