// The 8-bit composite kernels, SSE2: four pixels a group, one channel of four pixels a register.
#include <emmintrin.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "composite/CompositeCommon.h"
#include "composite/CompositeKernels.h"

#pragma GCC optimize("fp-contract=off")

namespace OX {
namespace sse2 {
namespace {
struct V {
  using F = __m128;
  using I = __m128i;
  static constexpr int kPixels = 4;
  static I Load(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
  static void Store(uint8_t* p, I v) { _mm_store_si128(reinterpret_cast<__m128i*>(p), v); }
  static F Set(float x) { return _mm_set1_ps(x); }
  static F Channel(I px, int c) {
    return _mm_cvtepi32_ps(_mm_and_si128(_mm_srl_epi32(px, _mm_cvtsi32_si128(8 * c)), _mm_set1_epi32(255)));
  }
  static F Add(F a, F b) { return _mm_add_ps(a, b); }
  static F Sub(F a, F b) { return _mm_sub_ps(a, b); }
  static F Mul(F a, F b) { return _mm_mul_ps(a, b); }
  static F Abs(F a) { return _mm_andnot_ps(_mm_set1_ps(-0.0f), a); }
  static F Rcp(F a) { return _mm_rcp_ps(a); }
  static F Less(F a, F b) { return _mm_cmplt_ps(a, b); }
  static F LessEq(F a, F b) { return _mm_cmple_ps(a, b); }
  static F Equal(F a, F b) { return _mm_cmpeq_ps(a, b); }
  static F AndNot(F m, F x) { return _mm_andnot_ps(m, x); }
  static F Select(F m, F a, F b) { return _mm_or_ps(_mm_and_ps(m, a), _mm_andnot_ps(m, b)); }
  static bool All(F m) { return _mm_movemask_ps(m) == 0xF; }
  static I Or(I a, I b) { return _mm_or_si128(a, b); }
  static I AlphaMask() { return _mm_set1_epi32(int32_t(0xFF000000u)); }
  static I SelectI(F m, I a, I b) {
    const I mi = _mm_castps_si128(m);
    return _mm_or_si128(_mm_and_si128(mi, a), _mm_andnot_si128(mi, b));
  }
  static I Pack(const F out[4]) {
    I r = _mm_setzero_si128();
    for (int c = 0; c < 4; ++c) {
      const F v = _mm_min_ps(_mm_max_ps(out[c], _mm_setzero_ps()), _mm_set1_ps(255.0f));
      r = _mm_or_si128(r, _mm_sll_epi32(_mm_cvtps_epi32(v), _mm_cvtsi32_si128(8 * c)));
    }
    return r;
  }
};
}  // namespace

#define OX_COMPOSITE_VECTOR
#include "composite/Composite8u.inl"

}  // namespace sse2
}  // namespace OX
