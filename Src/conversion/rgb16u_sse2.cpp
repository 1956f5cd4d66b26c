// Ten-bit R, G, B words to 0, R, G, B words on the 15u scale, SSE2 form: two pixels a group, one
// 16-byte load at each 12-byte step (4 bytes past the pair), no tail.
#include <emmintrin.h>

#include "conversion/SideConversions.h"

namespace OX::sse2 {

int32_t Rgb16uToXrgb15u(const uint16_t* s, uint16_t* d, int32_t width) {
  const __m128 k = _mm_set1_ps(32.03128f), top = _mm_set1_ps(65535.0f);
  const __m128i z = _mm_setzero_si128(), bias = _mm_set1_epi32(32768);
  int32_t i = 0;
  for (; i < width; i += 2) {
    const __m128i w = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 3 * i));  // R0 G0 B0 R1 G1 B1 . .
    // 0 R0 G0 B0 | 0 R1 G1 B1: each 64-bit half moves its three words up by one.
    const __m128i x = _mm_unpacklo_epi64(_mm_slli_epi64(w, 16), _mm_slli_epi64(_mm_srli_si128(w, 6), 16));
    const __m128i lo = _mm_cvtps_epi32(_mm_min_ps(_mm_mul_ps(_mm_cvtepi32_ps(_mm_unpacklo_epi16(x, z)), k), top));
    const __m128i hi = _mm_cvtps_epi32(_mm_min_ps(_mm_mul_ps(_mm_cvtepi32_ps(_mm_unpackhi_epi16(x, z)), k), top));
    const __m128i r = _mm_xor_si128(_mm_packs_epi32(_mm_sub_epi32(lo, bias), _mm_sub_epi32(hi, bias)), _mm_set1_epi16(-32768));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 4 * i), r);
  }
  return i;
}

}  // namespace OX::sse2
