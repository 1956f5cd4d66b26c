// The warped quad: vertices, the span context every span routine reads, and the span routines.
#pragma once

#include <xmmintrin.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace OX {

struct WarpVertex {
  float fX, fY;           // destination position
  float fSourceX, fSourceY;
  float fAlpha;           // 0 to 255
};

// What a span routine reads; set once a call.
struct WarpSpanContext {
  uint8_t* fDestination;
  ptrdiff_t fDestinationStride;  // pixels a row (row bytes / 4, toward zero, sign kept)
  const uint8_t* fSource;
  ptrdiff_t fSourceStride;
  int32_t fOpacity;              // 0 to 255
  bool fCompositeOver, fMultiplyAlpha;
  int32_t fFieldMode;
  bool fSourceIsFrame;
  uint32_t fFormat;
  int32_t fSourceLeft, fSourceTop, fSourceRight, fSourceBottom;  // inclusive
};

// One span: pixels x0..x1 of row `row`; source position and vertex alpha at the span's unclipped
// first pixel x0 - skip, and their steps. Pixel x is at start + (x - x0 + skip) x step, so every
// form, and a span cut by the destination rectangle, computes the same positions.
struct WarpSpan {
  int32_t fRow, fX0, fX1, fSkip;
  float fSourceX, fSourceY, fAlpha;
  float fStepX, fStepY, fStepAlpha;
};

using WarpSpanRoutine = void (*)(const WarpSpanContext& c, const WarpSpan& span);

namespace portable {
void NearestCopySpan(const WarpSpanContext& c, const WarpSpan& span);
void NearestBlendSpan(const WarpSpanContext& c, const WarpSpan& span);
void BilinearDirectSpan(const WarpSpanContext& c, const WarpSpan& span);
void BilinearBlendSpan(const WarpSpanContext& c, const WarpSpan& span);
}  // namespace portable
namespace sse2 {
void BilinearBlendSpan(const WarpSpanContext& c, const WarpSpan& span);
}

WarpSpanRoutine ChooseWarpSpanRoutine(bool useBilinear, bool directBlend);

// The blend of one source pixel (colour bytes s0..s2, alpha sa already scaled by the vertex
// alpha) into destination pixel d. `plainAlpha` is the alpha written when neither opacity nor
// multiplyAlpha applies. Shared by every blend form so that they agree byte for byte.
void WarpBlendPixel(const WarpSpanContext& c, uint8_t* d, const uint8_t s[3], int32_t sa, int32_t plainAlpha);

// The processor's float-to-integer conversion under the thread's rounding mode (to nearest, ties
// to even, as a rule): the one rounding every form of the warp uses. Out-of-range values give
// INT32_MIN, which every caller clamps.
inline int32_t RoundToInt(float v) { return _mm_cvtss_si32(_mm_set_ss(v)); }
// Clamps to [lo, hi]; a NaN becomes lo, so a fetch never leaves the rectangle.
inline float ClampFloat(float v, float lo, float hi) {
  v = v >= lo ? v : lo;
  return v <= hi ? v : hi;
}

// The bilinear fetch: four channels in float, before rounding.
struct WarpFetch {
  const uint8_t *fP00, *fP01, *fP10, *fP11;  // [column][line]: p01 is the next line
  float fFa, fFb;
};
inline WarpFetch WarpBilinearFetch(const WarpSpanContext& c, float sx, float sy) {
  const float a = ClampFloat(sx - 0.5f, float(c.fSourceLeft), float(c.fSourceRight));
  const float b = ClampFloat(sy - 0.5f, float(c.fSourceTop), float(c.fSourceBottom));
  const int32_t ia = RoundToInt(a);
  const float fa = a - float(ia);
  int32_t ib, nextLine;
  float fb;
  if (c.fFieldMode == 0 || c.fSourceIsFrame) {
    ib = RoundToInt(b);
    fb = b - float(ib);
    nextLine = ib < c.fSourceBottom ? ib + 1 : ib;
  } else {
    const float h = c.fFieldMode == 1 ? b * 0.5f : b * 0.5f + 0.5f;
    const int32_t r = RoundToInt(h);
    fb = h - float(r);
    ib = c.fFieldMode == 1 ? 2 * r : 2 * r - 1;
    nextLine = ib + 2 <= c.fSourceBottom ? ib + 2 : ib;
  }
  // Field rounding can land one line past either end of the rectangle; reads stay inside it.
  ib = ib < c.fSourceTop ? c.fSourceTop : ib > c.fSourceBottom ? c.fSourceBottom : ib;
  nextLine = nextLine < c.fSourceTop ? c.fSourceTop : nextLine > c.fSourceBottom ? c.fSourceBottom : nextLine;
  const int32_t nextColumn = ia < c.fSourceRight ? ia + 1 : ia;
  const uint8_t* line0 = c.fSource + ptrdiff_t(ib) * c.fSourceStride * 4;
  const uint8_t* line1 = c.fSource + ptrdiff_t(nextLine) * c.fSourceStride * 4;
  return {line0 + ptrdiff_t(ia) * 4, line1 + ptrdiff_t(ia) * 4, line0 + ptrdiff_t(nextColumn) * 4,
          line1 + ptrdiff_t(nextColumn) * 4, fa, fb};
}

}  // namespace OX
