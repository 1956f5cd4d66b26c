// The bilinear blend span, SSE2: two pixels a round, the four channels of each interpolated in
// one register with the scalar form's operations in its order, so the bytes are the portable ones.
#include <emmintrin.h>

#include <cstring>

#include "composite/CompositeCommon.h"
#include "motion/Warp.h"

namespace OX {
namespace sse2 {
namespace {

inline __m128 Pixel(const uint8_t* p) {
  int32_t v;
  std::memcpy(&v, p, 4);
  const __m128i zero = _mm_setzero_si128();
  return _mm_cvtepi32_ps(_mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(v), zero), zero));
}

// top = p00 + (p01 - p00) fb, bottom = p10 + (p11 - p10) fb, top + (bottom - top) fa, rounded.
inline __m128i Interpolate(const WarpFetch& f) {
  const __m128 fb = _mm_set1_ps(f.fFb), fa = _mm_set1_ps(f.fFa);
  const __m128 p00 = Pixel(f.fP00), p01 = Pixel(f.fP01), p10 = Pixel(f.fP10), p11 = Pixel(f.fP11);
  const __m128 top = _mm_add_ps(p00, _mm_mul_ps(_mm_sub_ps(p01, p00), fb));
  const __m128 bottom = _mm_add_ps(p10, _mm_mul_ps(_mm_sub_ps(p11, p10), fb));
  return _mm_cvtps_epi32(_mm_add_ps(top, _mm_mul_ps(_mm_sub_ps(bottom, top), fa)));
}

inline void Blend(const WarpSpanContext& c, uint8_t* d, const uint8_t p[4], float alpha) {
  const int32_t rounded = RoundToInt(alpha);
  const int32_t va = rounded & 255;
  const int32_t plain = rounded < 0 ? 0 : rounded > 255 ? 255 : rounded;
  WarpBlendPixel(c, d, p, Mul255(va, p[3]), plain);
}

}  // namespace

void BilinearBlendSpan(const WarpSpanContext& c, const WarpSpan& span) {
  uint8_t* d = c.fDestination + ptrdiff_t(span.fRow) * c.fDestinationStride * 4 + ptrdiff_t(span.fX0) * 4;
  const int32_t count = span.fX1 - span.fX0 + 1;
  int32_t i = 0;
  alignas(16) uint8_t bytes[16];
  for (; i + 2 <= count; i += 2, d += 8) {
    const float f0 = float(i + span.fSkip), f1 = float(i + 1 + span.fSkip);
    const WarpFetch a = WarpBilinearFetch(c, span.fSourceX + f0 * span.fStepX, span.fSourceY + f0 * span.fStepY);
    const WarpFetch b = WarpBilinearFetch(c, span.fSourceX + f1 * span.fStepX, span.fSourceY + f1 * span.fStepY);
    // Both pixels' channels rounded, then clamped to bytes by the saturating packs.
    const __m128i packed = _mm_packs_epi32(Interpolate(a), Interpolate(b));
    _mm_store_si128(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(packed, packed));
    Blend(c, d, bytes, span.fAlpha + f0 * span.fStepAlpha);
    Blend(c, d + 4, bytes + 4, span.fAlpha + f1 * span.fStepAlpha);
  }
  if (i < count) {  // the odd last pixel through the same code
    const float f0 = float(i + span.fSkip);
    const WarpFetch a = WarpBilinearFetch(c, span.fSourceX + f0 * span.fStepX, span.fSourceY + f0 * span.fStepY);
    const __m128i packed = _mm_packs_epi32(Interpolate(a), Interpolate(a));
    _mm_store_si128(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(packed, packed));
    Blend(c, d, bytes, span.fAlpha + f0 * span.fStepAlpha);
  }
}

}  // namespace sse2
}  // namespace OX
