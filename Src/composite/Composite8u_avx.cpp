// The 8-bit composite kernels, AVX: eight pixels a group in 256-bit float registers; the byte
// unpacking and packing, which need integer instructions AVX lacks at 256 bits, run on halves.
#include <immintrin.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "composite/CompositeCommon.h"
#include "composite/CompositeKernels.h"

#pragma GCC optimize("fp-contract=off")

namespace OX {
namespace avx {
namespace {
struct V {
  using F = __m256;
  using I = __m256i;
  static constexpr int kPixels = 8;
  static I Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
  static void Store(uint8_t* p, I v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
  static F Set(float x) { return _mm256_set1_ps(x); }
  static F Channel(I px, int c) {
    const __m128i shift = _mm_cvtsi32_si128(8 * c), mask = _mm_set1_epi32(255);
    const __m128 lo = _mm_cvtepi32_ps(_mm_and_si128(_mm_srl_epi32(_mm256_castsi256_si128(px), shift), mask));
    const __m128 hi = _mm_cvtepi32_ps(_mm_and_si128(_mm_srl_epi32(_mm256_extractf128_si256(px, 1), shift), mask));
    return _mm256_insertf128_ps(_mm256_castps128_ps256(lo), hi, 1);
  }
  static F Add(F a, F b) { return _mm256_add_ps(a, b); }
  static F Sub(F a, F b) { return _mm256_sub_ps(a, b); }
  static F Mul(F a, F b) { return _mm256_mul_ps(a, b); }
  static F Abs(F a) { return _mm256_andnot_ps(_mm256_set1_ps(-0.0f), a); }
  static F Rcp(F a) { return _mm256_rcp_ps(a); }
  static F Less(F a, F b) { return _mm256_cmp_ps(a, b, _CMP_LT_OQ); }
  static F LessEq(F a, F b) { return _mm256_cmp_ps(a, b, _CMP_LE_OQ); }
  static F Equal(F a, F b) { return _mm256_cmp_ps(a, b, _CMP_EQ_OQ); }
  static F AndNot(F m, F x) { return _mm256_andnot_ps(m, x); }
  static F Select(F m, F a, F b) { return _mm256_blendv_ps(b, a, m); }
  static bool All(F m) { return _mm256_movemask_ps(m) == 0xFF; }
  static I Or(I a, I b) { return _mm256_castps_si256(_mm256_or_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b))); }
  static I AlphaMask() { return _mm256_set1_epi32(int32_t(0xFF000000u)); }
  static I SelectI(F m, I a, I b) {
    return _mm256_castps_si256(_mm256_blendv_ps(_mm256_castsi256_ps(b), _mm256_castsi256_ps(a), m));
  }
  static I Pack(const F out[4]) {
    __m128i lo = _mm_setzero_si128(), hi = _mm_setzero_si128();
    for (int c = 0; c < 4; ++c) {
      const F v = _mm256_min_ps(_mm256_max_ps(out[c], _mm256_setzero_ps()), _mm256_set1_ps(255.0f));
      const I n = _mm256_cvtps_epi32(v);
      const __m128i shift = _mm_cvtsi32_si128(8 * c);
      lo = _mm_or_si128(lo, _mm_sll_epi32(_mm256_castsi256_si128(n), shift));
      hi = _mm_or_si128(hi, _mm_sll_epi32(_mm256_extractf128_si256(n, 1), shift));
    }
    return _mm256_insertf128_si256(_mm256_castsi128_si256(lo), hi, 1);
  }
};
}  // namespace

#define OX_COMPOSITE_VECTOR
#include "composite/Composite8u.inl"

}  // namespace avx
}  // namespace OX
