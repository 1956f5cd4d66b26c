// The eight float kernels of the plain composite: one scalar form serves every level.
#include <cstdint>
#include <cstring>

#include "composite/CompositeCommon.h"
#include "composite/CompositeKernels.h"

#pragma GCC optimize("fp-contract=off")

namespace OX {
namespace {

inline bool Tiny(float v) { return (v < 0 ? -v : v) < kTolerance; }

// Samples are four floats, index 3 alpha. Straight kernels (0-3) divide the mixed colour by the
// new alpha; premultiplied ones (4-7) add the source, scaled by the opacity, to the background
// scaled by what the source leaves. An opaque source (2, 3, 6, 7) has alpha o throughout the row;
// an opaque background (1, 3, 5, 7) alpha 1, and then 1 + a - a keeps the result's alpha at 1
// within the rounding of a.
template <int kIndex>
void FloatRow(const void* source, const void* background, void* output, int32_t count, float opacity) {
  constexpr bool kPremultiplied = (kIndex & 4) != 0, kOpaqueSource = (kIndex & 2) != 0,
                 kOpaqueBackground = (kIndex & 1) != 0;
  const float o = opacity + kTolerance > 1.0f ? 1.0f : opacity;
  const auto* s = static_cast<const float*>(source);
  const auto* b = static_cast<const float*>(background);
  auto* d = static_cast<float*>(output);
  for (int32_t i = 0; i < count; ++i, s += 4, b += 4, d += 4) {
    float sp[4], bp[4], out[4];
    std::memcpy(sp, s, 16);
    std::memcpy(bp, b, 16);
    const float a = kOpaqueSource ? o : sp[3] * o;
    if (Tiny(a)) {
      std::memcpy(out, bp, 16);
      if (kOpaqueBackground) out[3] = 1.0f;
    } else if (Tiny(1.0f - a)) {
      std::memcpy(out, sp, 12);
      out[3] = 1.0f;
    } else if (!kOpaqueBackground && Tiny(bp[3])) {
      for (int c = 0; c < 3; ++c) out[c] = kPremultiplied ? sp[c] * o : sp[c];
      out[3] = a;
    } else {
      const float ia = 1.0f - a;
      if (!kPremultiplied) {
        const float alpha = kOpaqueBackground ? 1.0f + a - a : ia * bp[3] + a;
        const float inverse = 1.0f / alpha;
        for (int c = 0; c < 3; ++c)
          out[c] = kOpaqueBackground ? (sp[c] * a + bp[c] * ia) * inverse : (sp[c] * a + bp[c] * ia * bp[3]) * inverse;
        out[3] = alpha;
      } else {
        for (int c = 0; c < 3; ++c) out[c] = sp[c] * o + bp[c] * ia;
        out[3] = kOpaqueBackground ? 1.0f + a - a : a + bp[3] * ia;
      }
    }
    std::memcpy(d, out, 16);
  }
}

constexpr CompositeKernel kFloatKernels[kCompositeFloatKernels] = {FloatRow<0>, FloatRow<1>, FloatRow<2>, FloatRow<3>,
                                                                    FloatRow<4>, FloatRow<5>, FloatRow<6>, FloatRow<7>};

}  // namespace

CompositeKernel CompositeFloatKernel(int index) {
  return index >= 0 && index < kCompositeFloatKernels ? kFloatKernels[index] : nullptr;
}

}  // namespace OX
