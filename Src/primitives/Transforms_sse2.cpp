// Transforms, SSE2 form: each row of eight 32-bit lanes in two registers. SSE2 has no 32-bit
// low multiply, so the products are formed from two widening unsigned multiplies, whose low
// halves are the same as the signed ones; the first inverse pass multiplies 16-bit pairs.
#include <emmintrin.h>

#include <cstdint>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace sse2 {
namespace {

struct V {
  __m128i lo, hi;
};

inline __m128i Mul32(__m128i a, __m128i k) {
  const __m128i even = _mm_mul_epu32(a, k);
  const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(a, 32), _mm_srli_epi64(k, 32));
  return _mm_unpacklo_epi32(_mm_shuffle_epi32(even, _MM_SHUFFLE(0, 0, 2, 0)),
                            _mm_shuffle_epi32(odd, _MM_SHUFFLE(0, 0, 2, 0)));
}
inline V Add(V a, V b) { return {_mm_add_epi32(a.lo, b.lo), _mm_add_epi32(a.hi, b.hi)}; }
inline V Sub(V a, V b) { return {_mm_sub_epi32(a.lo, b.lo), _mm_sub_epi32(a.hi, b.hi)}; }
inline V MulK(V a, int32_t k) {
  const __m128i kk = _mm_set1_epi32(k);
  return {Mul32(a.lo, kk), Mul32(a.hi, kk)};
}
template <int n>
inline V Sra(V a) {
  return {_mm_srai_epi32(a.lo, n), _mm_srai_epi32(a.hi, n)};
}
template <int n>
inline V Sll(V a) {
  return {_mm_slli_epi32(a.lo, n), _mm_slli_epi32(a.hi, n)};
}
inline V Splat(int32_t x) { return {_mm_set1_epi32(x), _mm_set1_epi32(x)}; }
inline V LoadRow(const int16_t* p) {
  const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  return {_mm_srai_epi32(_mm_unpacklo_epi16(x, x), 16), _mm_srai_epi32(_mm_unpackhi_epi16(x, x), 16)};
}
inline void StoreRowSat(int16_t* p, V v) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_packs_epi32(v.lo, v.hi));
}
// Two rows interleaved sample by sample, columns 0-3 and 4-7; one multiply-add makes each lane's
// x kx + y ky.
struct P {
  __m128i lo, hi;
};
inline P MakePair(const int16_t* x, const int16_t* y) {
  const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(x));
  const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(y));
  return {_mm_unpacklo_epi16(a, b), _mm_unpackhi_epi16(a, b)};
}
inline V MulPair(const P& p, int32_t kx, int32_t ky) {
  const __m128i k = _mm_set1_epi32(int32_t((uint32_t(ky) << 16) | (uint32_t(kx) & 0xFFFF)));
  return {_mm_madd_epi16(p.lo, k), _mm_madd_epi16(p.hi, k)};
}
inline void Transpose4x4(__m128i& r0, __m128i& r1, __m128i& r2, __m128i& r3) {
  const __m128i t0 = _mm_unpacklo_epi32(r0, r1), t1 = _mm_unpacklo_epi32(r2, r3);
  const __m128i t2 = _mm_unpackhi_epi32(r0, r1), t3 = _mm_unpackhi_epi32(r2, r3);
  r0 = _mm_unpacklo_epi64(t0, t1);
  r1 = _mm_unpackhi_epi64(t0, t1);
  r2 = _mm_unpacklo_epi64(t2, t3);
  r3 = _mm_unpackhi_epi64(t2, t3);
}
// [A B; C D] -> [A' C'; B' D'] over the four 4 x 4 quarters.
inline void Transpose8x8(V* v) {
  Transpose4x4(v[0].lo, v[1].lo, v[2].lo, v[3].lo);
  Transpose4x4(v[0].hi, v[1].hi, v[2].hi, v[3].hi);
  Transpose4x4(v[4].lo, v[5].lo, v[6].lo, v[7].lo);
  Transpose4x4(v[4].hi, v[5].hi, v[6].hi, v[7].hi);
  for (int i = 0; i < 4; ++i) {
    const __m128i b = v[i].hi;
    v[i].hi = v[4 + i].lo;
    v[4 + i].lo = b;
  }
}

#include "primitives/DCTCore.inc"

}  // namespace

void DCT8x8Forward(int16_t* block) { Forward8x8(block); }
void DCT8x8Inverse(int16_t* block) { Inverse8x8(block); }
void DCT248Forward(int16_t* block) { Forward248(block); }
void DCT248Inverse(int16_t* block) { Inverse248(block); }

}  // namespace sse2
}  // namespace OX
