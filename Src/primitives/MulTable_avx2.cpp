// The multiply family, AVX2 form: sixteen table products a step, thirty-two bytes a step for the
// constant multiply; the scalar rules finish each row. Unpacks and packs both work within each
// 128-bit half, so they undo each other and keep the order.
#include <immintrin.h>

#include "primitives/PrimitiveForms.h"
#include "primitives/ScalarRules.h"

namespace OX {
namespace avx2 {
namespace {

inline void Products(__m256i t, __m256i b, __m256i& p0, __m256i& p1) {
  const __m256i lo = _mm256_mullo_epi16(t, b);
  const __m256i hi = _mm256_add_epi16(_mm256_mulhi_epi16(t, b), _mm256_and_si256(_mm256_srai_epi16(t, 15), b));
  p0 = _mm256_unpacklo_epi16(lo, hi);
  p1 = _mm256_unpackhi_epi16(lo, hi);
}

inline __m256i RoundShift(__m256i p, __m128i count, __m256i mask, __m256i halfLess1) {
  const __m256i q = _mm256_sra_epi32(p, count);
  const __m256i carry = _mm256_add_epi32(_mm256_add_epi32(_mm256_and_si256(p, mask), halfLess1),
                                         _mm256_and_si256(q, _mm256_set1_epi32(1)));
  return _mm256_add_epi32(q, _mm256_srl_epi32(carry, count));
}

inline __m256i Sign16(__m256i p) {
  const __m256i zero = _mm256_setzero_si256();
  return _mm256_or_si256(_mm256_and_si256(_mm256_cmpgt_epi32(p, zero), _mm256_set1_epi32(32767)),
                         _mm256_and_si256(_mm256_cmpgt_epi32(zero, p), _mm256_set1_epi32(-32768)));
}

inline __m256i ScaleBytes16(__m256i p, int32_t scaleFactor) {
  const __m256i limit = _mm256_set1_epi16(255);
  if (scaleFactor == 0) return _mm256_min_epu16(p, limit);
  if (scaleFactor < 0) {
    const int shift = scaleFactor < -8 ? 8 : -scaleFactor;
    return _mm256_min_epu16(_mm256_sll_epi16(_mm256_min_epu16(p, limit), _mm_cvtsi32_si128(shift)), limit);
  }
  const __m128i count = _mm_cvtsi32_si128(scaleFactor);
  const __m256i q = _mm256_srl_epi16(p, count);
  const __m256i remainder = _mm256_sub_epi16(p, _mm256_sll_epi16(q, count));
  const __m256i x = _mm256_add_epi16(remainder, _mm256_and_si256(q, _mm256_set1_epi16(1)));
  const __m256i notAbove = _mm256_cmpeq_epi16(
      _mm256_subs_epu16(x, _mm256_set1_epi16(int16_t(1 << (scaleFactor - 1)))), _mm256_setzero_si256());
  return _mm256_min_epu16(_mm256_add_epi16(q, _mm256_andnot_si256(notAbove, _mm256_set1_epi16(1))), limit);
}

}  // namespace

void MulTableRoundScaled(const uint16_t* table, int16_t* block, int32_t count, int32_t scale) {
  const __m128i shiftCount = _mm_cvtsi32_si128(scale);
  const __m256i mask = _mm256_set1_epi32(int32_t((1u << (scale > 0 && scale <= 30 ? scale : 1)) - 1));
  const __m256i halfLess1 = _mm256_set1_epi32(scale > 0 && scale <= 30 ? (1 << (scale - 1)) - 1 : 0);
  const __m128i leftCount = _mm_cvtsi32_si128(-scale);
  int32_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const __m256i t = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(table + i));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block + i));
    __m256i p0, p1, r;
    Products(t, b, p0, p1);
    if (scale == 0) {
      r = _mm256_packs_epi32(p0, p1);
    } else if (scale > 30) {
      r = _mm256_setzero_si256();
    } else if (scale > 0) {
      r = _mm256_packs_epi32(RoundShift(p0, shiftCount, mask, halfLess1),
                             RoundShift(p1, shiftCount, mask, halfLess1));
    } else if (scale >= -15) {
      const __m256i c = _mm256_packs_epi32(p0, p1);
      const __m256i c0 = _mm256_srai_epi32(_mm256_unpacklo_epi16(c, c), 16);
      const __m256i c1 = _mm256_srai_epi32(_mm256_unpackhi_epi16(c, c), 16);
      r = _mm256_packs_epi32(_mm256_sll_epi32(c0, leftCount), _mm256_sll_epi32(c1, leftCount));
    } else {
      r = _mm256_packs_epi32(Sign16(p0), Sign16(p1));
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(block + i), r);
  }
  for (; i < count; ++i) block[i] = MulRoundScaled(table[i], block[i], scale);
}

int32_t CountZeros64(const int16_t* block) {
  const __m256i zero = _mm256_setzero_si256();
  int32_t n = 0;
  for (int i = 0; i < 64; i += 32) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block + i));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(block + i + 16));
    const __m256i m = _mm256_packs_epi16(_mm256_cmpeq_epi16(a, zero), _mm256_cmpeq_epi16(b, zero));
    n += __builtin_popcount(unsigned(_mm256_movemask_epi8(m)));
  }
  return n;
}

void MulConstant8uC4(const uint8_t* source, int32_t sourceRowBytes, const uint8_t* constant, uint8_t* destination,
                     int32_t destinationRowBytes, int32_t width, int32_t height, int32_t scaleFactor) {
  int32_t k32;
  __builtin_memcpy(&k32, constant, 4);
  const __m256i k = _mm256_unpacklo_epi8(_mm256_set1_epi32(k32), _mm256_setzero_si256());
  const int64_t bytes = int64_t(width) * 4;
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* s = source + int64_t(y) * sourceRowBytes;
    uint8_t* d = destination + int64_t(y) * destinationRowBytes;
    int64_t i = 0;
    if (scaleFactor <= 16) {
      for (; i + 32 <= bytes; i += 32) {
        const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i));
        const __m256i lo = _mm256_mullo_epi16(_mm256_unpacklo_epi8(x, _mm256_setzero_si256()), k);
        const __m256i hi = _mm256_mullo_epi16(_mm256_unpackhi_epi8(x, _mm256_setzero_si256()), k);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i),
                            _mm256_packus_epi16(ScaleBytes16(lo, scaleFactor), ScaleBytes16(hi, scaleFactor)));
      }
    }
    for (; i < bytes; ++i) d[i] = MulConstantScaled(s[i], constant[i & 3], scaleFactor);
  }
}

}  // namespace avx2
}  // namespace OX
