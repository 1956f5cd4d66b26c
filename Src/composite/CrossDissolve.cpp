// The cross dissolve: image A at amount 0 to image B at amount 1, with straight, premultiplied and
// opaque kernels at 8 bits, 15 bits and in float, and a kernel of its own for V210 rows.
#include <xmmintrin.h>

#include <cmath>
#include <cstdint>
#include <cstring>

#include "Ombrix.h"
#include "composite/CompositeCommon.h"
#include "composite/CompositeRows.h"
#include "frame/FloatGuard.h"
#include "frame/Globals.h"
#include "frame/PixelFormat.h"

#pragma GCC optimize("fp-contract=off")

namespace OX {
namespace {

enum class Alpha { kStraight, kPremultiplied, kOpaque, kOpaqueAlphaFirst };

// Rounds to nearest, ties to even (the thread's mode, which the guard leaves at nearest).
inline int32_t Round(float v) { return _mm_cvtss_si32(_mm_set_ss(v)); }

// Samples of one depth class: bytes, 15-bit integers or floats, with their full value.
template <class T>
struct Depth;
template <>
struct Depth<uint8_t> {
  static constexpr float kFull = 255.0f;
  static uint8_t Store(float v) {
    v = v >= 0.0f ? v : 0.0f;
    v = v <= 255.0f ? v : 255.0f;
    return uint8_t(Round(v));
  }
  static bool Zero(uint8_t a) { return a == 0; }
  static bool Equal(uint8_t a, uint8_t b) { return a == b; }
};
template <>
struct Depth<uint16_t> {
  static constexpr float kFull = 32768.0f;
  static uint16_t Store(float v) {
    v = v >= 0.0f ? v : 0.0f;
    v = v <= 32768.0f ? v : 32768.0f;
    return uint16_t(Round(v));
  }
  static bool Zero(uint16_t a) { return a == 0; }
  static bool Equal(uint16_t a, uint16_t b) { return a == b; }
};
template <>
struct Depth<float> {
  static constexpr float kFull = 1.0f;
  static float Store(float v) { return v; }
  static bool Zero(float a) { return a < kTolerance; }
  static bool Equal(float a, float b) { return std::fabs(a - b) < kTolerance; }
};

// Pixels are four samples, alpha last (alpha first only in the opaque alpha-first kernel, which
// writes alpha and never reads it).
template <class T, Alpha kAlpha>
void DissolveRow(const void* imageA, const void* imageB, void* output, int32_t count, float w) {
  using D = Depth<T>;
  const float u = 1.0f - w;
  const auto* a = static_cast<const T*>(imageA);
  const auto* b = static_cast<const T*>(imageB);
  auto* d = static_cast<T*>(output);
  constexpr bool kOpaque = kAlpha == Alpha::kOpaque || kAlpha == Alpha::kOpaqueAlphaFirst;
  constexpr int kAlphaAt = kAlpha == Alpha::kOpaqueAlphaFirst ? 0 : 3;
  for (int32_t i = 0; i < count; ++i, a += 4, b += 4, d += 4) {
    T pa[4], pb[4], out[4];
    std::memcpy(pa, a, sizeof pa);
    std::memcpy(pb, b, sizeof pb);
    if constexpr (kOpaque) {
      const T* whole = w < kTolerance ? pb : w + kTolerance > 1.0f ? pa : nullptr;
      for (int c = 0; c < 4; ++c) out[c] = whole ? whole[c] : D::Store(float(pa[c]) * w + float(pb[c]) * u);
      out[kAlphaAt] = T(D::kFull);
    } else if (D::Zero(pa[3])) {
      for (int c = 0; c < 3; ++c) out[c] = pb[c];
      out[3] = D::Store(float(pb[3]) * u);
    } else if (D::Zero(pb[3])) {
      for (int c = 0; c < 3; ++c) out[c] = pa[c];
      out[3] = D::Store(float(pa[3]) * w);
    } else if (D::Equal(pa[3], pb[3])) {
      for (int c = 0; c < 3; ++c) out[c] = D::Store(float(pa[c]) * w + float(pb[c]) * u);
      out[3] = pa[3];
    } else if (kAlpha == Alpha::kStraight) {
      const float p = float(pa[3]) * w, q = float(pb[3]) * u, inverse = 1.0f / (p + q);
      for (int c = 0; c < 3; ++c) out[c] = D::Store((float(pa[c]) * p + float(pb[c]) * q) * inverse);
      out[3] = D::Store(p + q);
    } else {
      for (int c = 0; c < 3; ++c) out[c] = D::Store(float(pa[c]) * w + float(pb[c]) * u);
      out[3] = D::Store(float(pa[3]) * w + float(pb[3]) * u);
    }
    std::memcpy(d, out, sizeof out);
  }
}

template <class T>
CompositeKernel KernelFor(Alpha alpha) {
  switch (alpha) {
    case Alpha::kStraight: return DissolveRow<T, Alpha::kStraight>;
    case Alpha::kPremultiplied: return DissolveRow<T, Alpha::kPremultiplied>;
    case Alpha::kOpaque: return DissolveRow<T, Alpha::kOpaque>;
    default: return DissolveRow<T, Alpha::kOpaqueAlphaFirst>;
  }
}

// V210 rows as groups of 16 bytes: every 10-bit sample rint(a w + b u), spare bits zero.
void DissolveV210(const uint8_t* a, const uint8_t* b, uint8_t* d, int32_t width, float w) {
  const float u = 1.0f - w;
  const int32_t words = (width + 5) / 6 * 4;
  for (int32_t i = 0; i < words; ++i) {
    uint32_t x, y, out = 0;
    std::memcpy(&x, a + 4 * i, 4);
    std::memcpy(&y, b + 4 * i, 4);
    for (int s = 0; s < 3; ++s) {
      const float v = float((x >> (10 * s)) & 1023) * w + float((y >> (10 * s)) & 1023) * u;
      out |= uint32_t(Round(v)) << (10 * s);
    }
    std::memcpy(d + 4 * i, &out, 4);
  }
}

bool IsRawCode(OX_PixelFormat f) {
  for (OX_PixelFormat r : kRawFormats)
    if (r == f) return true;
  return false;
}

}  // namespace
}  // namespace OX

OX_Result OX_CrossDissolve(const void* imageA, int32_t imageARowBytes, OX_PixelFormat imageAFormat, const void* imageB,
                           int32_t imageBRowBytes, OX_PixelFormat imageBFormat, void* destination,
                           int32_t destinationRowBytes, OX_PixelFormat destinationFormat, int32_t width,
                           int32_t height, float amount, int32_t quality) {
  using namespace OX;
  FloatGuard guard;
  if (IsContainerFormat(imageAFormat) || IsContainerFormat(imageBFormat)) return OX_ErrBadSourceFormat;
  if (IsContainerFormat(destinationFormat)) return OX_ErrBadDestFormat;
  if (width < 0) return OX_ErrBadWidth;
  if (width == 0 || height <= 0) return OX_Success;
  // The ends are conversions: amount 0 never reads B, amount 1 never reads A.
  if (amount < kTolerance)
    return OX_Convert(imageA, imageARowBytes, imageAFormat, destination, destinationRowBytes, destinationFormat, width,
                      height, quality);
  if (amount + kTolerance > 1.0f)
    return OX_Convert(imageB, imageBRowBytes, imageBFormat, destination, destinationRowBytes, destinationFormat, width,
                      height, quality);
  if (!imageA || !imageB) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;

  CompositeRows rows;
  auto topDown = [&](const void* p, int32_t rowBytes, OX_PixelFormat f, int32_t& outRowBytes) {
    const auto* row = static_cast<const uint8_t*>(p);
    outRowBytes = rowBytes;
    if (OX_IsOriginBottomLeft(f)) {
      row += ptrdiff_t(height - 1) * rowBytes;
      outRowBytes = -rowBytes;
    }
    return row;
  };
  rows.fSource = topDown(imageA, imageARowBytes, imageAFormat, rows.fSourceRowBytes);
  rows.fBackground = topDown(imageB, imageBRowBytes, imageBFormat, rows.fBackgroundRowBytes);
  rows.fDestination = const_cast<uint8_t*>(topDown(destination, destinationRowBytes, destinationFormat,
                                                   rows.fDestinationRowBytes));
  rows.fWidth = width;
  rows.fHeight = height;
  const float w = 1.0f - amount;  // A's weight
  rows.fOpacity = w;

  const OX_PixelFormat v210 = OX_PixelFormat_V210_422_10u;
  if (gHasSSE2 && (imageAFormat & ~k709Bit) == v210 && imageAFormat == imageBFormat &&
      imageAFormat == destinationFormat) {
    for (int32_t y = 0; y < height; ++y)
      DissolveV210(rows.fSource + ptrdiff_t(y) * rows.fSourceRowBytes,
                   rows.fBackground + ptrdiff_t(y) * rows.fBackgroundRowBytes,
                   rows.fDestination + ptrdiff_t(y) * rows.fDestinationRowBytes, width, w);
    return OX_Success;
  }

  const uint32_t da = DepthOf(imageAFormat), db = DepthOf(imageBFormat), dd = DepthOf(destinationFormat);
  uint32_t depth = (da == db && db == dd) || quality == 2 ? dd : kDepth32f;
  const bool opaqueA = IsOpaqueFormat(imageAFormat), opaqueB = IsOpaqueFormat(imageBFormat);
  Alpha alpha;
  OX_PixelFormat working;
  auto settle = [&] {
    if (!opaqueA || !opaqueB) {
      const OX_PixelFormat base = !opaqueA && AlphaOf(imageBFormat) != kAlphaPremultiplied ? imageAFormat : imageBFormat;
      working = WithDepth(base & ~(kOrderBit | kSubsamplingMask), depth);
      alpha = AlphaOf(base) == kAlphaPremultiplied ? Alpha::kPremultiplied : Alpha::kStraight;
    } else {
      working = WithAlpha(WithDepth(destinationFormat & ~kSubsamplingMask, depth), kAlphaIgnored);
      if (gHasSSE2 || !(working & kOrderBit)) working &= ~kOrderBit, alpha = Alpha::kOpaque;
      else alpha = Alpha::kOpaqueAlphaFirst;
    }
  };
  settle();
  // A depth or order that no raw format has (10-bit, 15-bit YUV, alpha-first YUV) works in float
  // without the order bit.
  if (!IsRawCode(working)) {
    depth = kDepth32f;
    settle();
    working &= ~kOrderBit;
    if (alpha == Alpha::kOpaqueAlphaFirst) alpha = Alpha::kOpaque;
  }
  rows.fKernel = depth == kDepth8u    ? KernelFor<uint8_t>(alpha)
                 : depth == kDepth15u ? KernelFor<uint16_t>(alpha)
                                      : KernelFor<float>(alpha);
  if (!rows.SetSourceConversion(imageAFormat, working, quality) ||
      !rows.SetBackgroundConversion(imageBFormat, working, quality) ||
      !rows.SetDestinationConversion(working, destinationFormat, quality))
    return OX_ErrNoRoute;
  return rows.RunRows(0, height - 1);
}
