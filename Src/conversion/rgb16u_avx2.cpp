// Ten-bit R, G, B words to 0, R, G, B words on the 15u scale, AVX2 form: four pixels a group, two
// 16-byte loads at 12-byte steps (4 bytes past each pair), no tail.
#include <immintrin.h>

#include "conversion/SideConversions.h"

namespace OX::avx2 {

int32_t Rgb16uToXrgb15u(const uint16_t* s, uint16_t* d, int32_t width) {
  const __m256 k = _mm256_set1_ps(32.03128f), top = _mm256_set1_ps(65535.0f);
  int32_t i = 0;
  for (; i < width; i += 4) {
    const __m256i w = _mm256_setr_m128i(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 3 * i)),
                                        _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 3 * i + 6)));
    const __m256i x = _mm256_unpacklo_epi64(_mm256_slli_epi64(w, 16), _mm256_slli_epi64(_mm256_srli_si256(w, 6), 16));
    // x: lane 0 pixels 0-1, lane 1 pixels 2-3, 16 words in pixel order.
    const __m256i a = _mm256_cvtepu16_epi32(_mm256_castsi256_si128(x));
    const __m256i b = _mm256_cvtepu16_epi32(_mm256_extracti128_si256(x, 1));
    const __m256i ra = _mm256_cvtps_epi32(_mm256_min_ps(_mm256_mul_ps(_mm256_cvtepi32_ps(a), k), top));
    const __m256i rb = _mm256_cvtps_epi32(_mm256_min_ps(_mm256_mul_ps(_mm256_cvtepi32_ps(b), k), top));
    // packus works within lanes: order the quarters back to pixel order.
    const __m256i r = _mm256_permute4x64_epi64(_mm256_packus_epi32(ra, rb), 0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 4 * i), r);
  }
  return i;
}

}  // namespace OX::avx2
