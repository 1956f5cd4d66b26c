// The 8-bit composite kernels, AVX2: eight pixels a group, one channel of eight pixels a register.
#include <immintrin.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "composite/CompositeCommon.h"
#include "composite/CompositeKernels.h"

#pragma GCC optimize("fp-contract=off")

namespace OX {
namespace avx2 {
namespace {
struct V {
  using F = __m256;
  using I = __m256i;
  static constexpr int kPixels = 8;
  static I Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
  static void Store(uint8_t* p, I v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
  static F Set(float x) { return _mm256_set1_ps(x); }
  static F Channel(I px, int c) {
    return _mm256_cvtepi32_ps(_mm256_and_si256(_mm256_srl_epi32(px, _mm_cvtsi32_si128(8 * c)), _mm256_set1_epi32(255)));
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
  static I Or(I a, I b) { return _mm256_or_si256(a, b); }
  static I AlphaMask() { return _mm256_set1_epi32(int32_t(0xFF000000u)); }
  static I SelectI(F m, I a, I b) {
    const I mi = _mm256_castps_si256(m);
    return _mm256_or_si256(_mm256_and_si256(mi, a), _mm256_andnot_si256(mi, b));
  }
  static I Pack(const F out[4]) {
    I r = _mm256_setzero_si256();
    for (int c = 0; c < 4; ++c) {
      const F v = _mm256_min_ps(_mm256_max_ps(out[c], _mm256_setzero_ps()), _mm256_set1_ps(255.0f));
      r = _mm256_or_si256(r, _mm256_sll_epi32(_mm256_cvtps_epi32(v), _mm_cvtsi32_si128(8 * c)));
    }
    return r;
  }
};
}  // namespace

#define OX_COMPOSITE_VECTOR
#include "composite/Composite8u.inl"

}  // namespace avx2
}  // namespace OX
