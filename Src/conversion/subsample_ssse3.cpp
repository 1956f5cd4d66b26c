// Subsampling, SSSE3 form of 4:2:2 8u to 4:4:4 8u and of 4:2:2 8u straight to RGB 8u. Eight
// pixels a step: the pairs and the pairs one on are loaded, their byte mean gives the chroma of
// the odd pixels, and one shuffle for each source places the samples. The mean here is rounded
// up, (a | b) - ((a ^ b) >> 1), which is what the average instruction computes; the portable form
// rounds down and the one-count difference between the levels is accepted.
#include <tmmintrin.h>

#include <cstring>

#include "conversion/ConverterFamilies.h"
#include "conversion/Subsample.h"

namespace OX::ssse3 {
namespace {

template <bool LumaFirst>
void Yuv422ToVuy8u(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  const int32_t pairs = width > 0 ? (width + 1) / 2 : 0;
  // Byte places of U, Y0, V, Y1 in a pair.
  constexpr int u = LumaFirst ? 1 : 0, y0 = LumaFirst ? 0 : 1, v = LumaFirst ? 3 : 2, y1 = LumaFirst ? 2 : 3;
  const __m128i fromPairsLo = _mm_setr_epi8(v, u, y0, -1, -1, -1, y1, -1, v + 4, u + 4, y0 + 4, -1, -1, -1, y1 + 4, -1);
  const __m128i fromMeanLo = _mm_setr_epi8(-1, -1, -1, -1, v, u, -1, -1, -1, -1, -1, -1, v + 4, u + 4, -1, -1);
  const __m128i fromPairsHi = _mm_add_epi8(fromPairsLo, _mm_and_si128(_mm_set1_epi8(8), _mm_cmpgt_epi8(fromPairsLo, _mm_set1_epi8(-1))));
  const __m128i fromMeanHi = _mm_add_epi8(fromMeanLo, _mm_and_si128(_mm_set1_epi8(8), _mm_cmpgt_epi8(fromMeanLo, _mm_set1_epi8(-1))));
  const __m128i opaque = _mm_set1_epi32(int32_t(0xFF000000u));
  int32_t k = 0;
  // Four pairs a step while the pair after them lies inside the row (its chroma is needed).
  for (; k + 4 < pairs; k += 4) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * k));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * k + 4));
    const __m128i m = _mm_avg_epu8(a, b);
    const __m128i lo = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(a, fromPairsLo), _mm_shuffle_epi8(m, fromMeanLo)), opaque);
    const __m128i hi = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(a, fromPairsHi), _mm_shuffle_epi8(m, fromMeanHi)), opaque);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 8 * k), lo);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 8 * k + 16), hi);
  }
  UpsampleChroma8u<LumaFirst>(s, d, width, [](int a, int b) { return (a | b) - ((a ^ b) >> 1); }, 2 * k);
}

template <bool LumaFirst, int Matrix>
void Yuv422ToBgr8u(const void* in, void* out, int32_t width) {
  Yuv422ToBgr8uInChunks(&Yuv422ToVuy8u<LumaFirst>, Matrix, in, out, width);
}

}  // namespace

extern const RowConverter kSubsample[kSubsampleCount] = {
    portable::kSubsample[kVuy8uToUyvy8u],         portable::kSubsample[kVuy32fToUyvy32f],
    &Yuv422ToVuy8u<false>,                        &Yuv422ToVuy8u<true>,
    portable::kSubsample[kUyvy32fToVuy32fRepeat], portable::kSubsample[kUyvy32fToVuy32fFilter],
    &Yuv422ToBgr8u<false, kVuy8uToBgr8u601>,      &Yuv422ToBgr8u<false, kVuy8uToBgr8u709>,
    &Yuv422ToBgr8u<true, kVuy8uToBgr8u601>,       &Yuv422ToBgr8u<true, kVuy8uToBgr8u709>};

}  // namespace OX::ssse3
