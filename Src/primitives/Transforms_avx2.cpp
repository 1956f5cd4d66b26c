// Transforms, AVX2 form: each row of eight 32-bit lanes in one register.
#include <immintrin.h>

#include <cstdint>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace avx2 {
namespace {

using V = __m256i;

inline V Add(V a, V b) { return _mm256_add_epi32(a, b); }
inline V Sub(V a, V b) { return _mm256_sub_epi32(a, b); }
inline V MulK(V a, int32_t k) { return _mm256_mullo_epi32(a, _mm256_set1_epi32(k)); }
template <int n>
inline V Sra(V a) {
  return _mm256_srai_epi32(a, n);
}
template <int n>
inline V Sll(V a) {
  return _mm256_slli_epi32(a, n);
}
inline V Splat(int32_t x) { return _mm256_set1_epi32(x); }
inline V LoadRow(const int16_t* p) {
  return _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
}
inline void StoreRowSat(int16_t* p, V v) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p),
                   _mm_packs_epi32(_mm256_castsi256_si128(v), _mm256_extracti128_si256(v, 1)));
}
// Two rows interleaved sample by sample, columns 0-3 in the low half and 4-7 in the high; one
// multiply-add makes each lane's x kx + y ky.
using P = __m256i;
inline P MakePair(const int16_t* x, const int16_t* y) {
  const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(x));
  const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(y));
  return _mm256_set_m128i(_mm_unpackhi_epi16(a, b), _mm_unpacklo_epi16(a, b));
}
inline V MulPair(const P& p, int32_t kx, int32_t ky) {
  return _mm256_madd_epi16(p, _mm256_set1_epi32(int32_t((uint32_t(ky) << 16) | (uint32_t(kx) & 0xFFFF))));
}
inline void Transpose8x8(V* r) {
  V t[8], u[8];
  for (int i = 0; i < 8; i += 2) {
    t[i] = _mm256_unpacklo_epi32(r[i], r[i + 1]);
    t[i + 1] = _mm256_unpackhi_epi32(r[i], r[i + 1]);
  }
  for (int i = 0; i < 8; i += 4) {
    u[i] = _mm256_unpacklo_epi64(t[i], t[i + 2]);
    u[i + 1] = _mm256_unpackhi_epi64(t[i], t[i + 2]);
    u[i + 2] = _mm256_unpacklo_epi64(t[i + 1], t[i + 3]);
    u[i + 3] = _mm256_unpackhi_epi64(t[i + 1], t[i + 3]);
  }
  for (int i = 0; i < 4; ++i) {
    r[i] = _mm256_permute2x128_si256(u[i], u[i + 4], 0x20);
    r[i + 4] = _mm256_permute2x128_si256(u[i], u[i + 4], 0x31);
  }
}

#include "primitives/DCTCore.inc"

}  // namespace

#include "primitives/DCTForms.inc"

}  // namespace avx2
}  // namespace OX
