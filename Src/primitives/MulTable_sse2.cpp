// The multiply family, SSE2 form: eight table products a step, sixteen bytes a step for the
// constant multiply; the scalar rules finish each row.
#include <emmintrin.h>

#include "primitives/PrimitiveForms.h"
#include "primitives/ScalarRules.h"

namespace OX {
namespace sse2 {
namespace {

// The 32-bit products of unsigned table entries and signed block entries: the signed high half
// is corrected by the block value where the table entry has its top bit set.
inline void Products(__m128i t, __m128i b, __m128i& p0, __m128i& p1) {
  const __m128i lo = _mm_mullo_epi16(t, b);
  const __m128i hi = _mm_add_epi16(_mm_mulhi_epi16(t, b), _mm_and_si128(_mm_srai_epi16(t, 15), b));
  p0 = _mm_unpacklo_epi16(lo, hi);
  p1 = _mm_unpackhi_epi16(lo, hi);
}

inline __m128i RoundShift(__m128i p, __m128i count, __m128i mask, __m128i halfLess1) {
  const __m128i q = _mm_sra_epi32(p, count);
  const __m128i carry = _mm_add_epi32(_mm_add_epi32(_mm_and_si128(p, mask), halfLess1),
                                      _mm_and_si128(q, _mm_set1_epi32(1)));
  return _mm_add_epi32(q, _mm_srl_epi32(carry, count));
}

inline __m128i Sign16(__m128i p) {
  const __m128i zero = _mm_setzero_si128();
  return _mm_or_si128(_mm_and_si128(_mm_cmpgt_epi32(p, zero), _mm_set1_epi32(32767)),
                      _mm_and_si128(_mm_cmplt_epi32(p, zero), _mm_set1_epi32(-32768)));
}

inline __m128i Widen16(__m128i x, bool high) {
  return _mm_srai_epi32(high ? _mm_unpackhi_epi16(x, x) : _mm_unpacklo_epi16(x, x), 16);
}

// min(x, 255) on unsigned 16-bit lanes.
inline __m128i Min255(__m128i x) { return _mm_sub_epi16(x, _mm_subs_epu16(x, _mm_set1_epi16(255))); }

inline __m128i ScaleBytes16(__m128i p, int32_t scaleFactor) {
  if (scaleFactor == 0) return Min255(p);
  if (scaleFactor < 0) {
    const int shift = scaleFactor < -8 ? 8 : -scaleFactor;
    // Held at 255 first: anything at or above it stays 255 after the shift, and 255 << 8 fits.
    return Min255(_mm_sll_epi16(Min255(p), _mm_cvtsi32_si128(shift)));
  }
  const __m128i count = _mm_cvtsi32_si128(scaleFactor);
  const __m128i q = _mm_srl_epi16(p, count);
  const __m128i remainder = _mm_sub_epi16(p, _mm_sll_epi16(q, count));
  // Round up when remainder + (q & 1) exceeds half the divisor.
  const __m128i x = _mm_add_epi16(remainder, _mm_and_si128(q, _mm_set1_epi16(1)));
  const __m128i notAbove = _mm_cmpeq_epi16(_mm_subs_epu16(x, _mm_set1_epi16(int16_t(1 << (scaleFactor - 1)))),
                                           _mm_setzero_si128());
  return Min255(_mm_add_epi16(q, _mm_andnot_si128(notAbove, _mm_set1_epi16(1))));
}

}  // namespace

void MulTableRoundScaled(const uint16_t* table, int16_t* block, int32_t count, int32_t scale) {
  const __m128i shiftCount = _mm_cvtsi32_si128(scale);
  const __m128i mask = _mm_set1_epi32(int32_t((1u << (scale > 0 && scale <= 30 ? scale : 1)) - 1));
  const __m128i halfLess1 = _mm_set1_epi32(scale > 0 && scale <= 30 ? (1 << (scale - 1)) - 1 : 0);
  const __m128i leftCount = _mm_cvtsi32_si128(-scale);
  int32_t i = 0;
  for (; i + 8 <= count; i += 8) {
    const __m128i t = _mm_loadu_si128(reinterpret_cast<const __m128i*>(table + i));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
    __m128i p0, p1, r;
    Products(t, b, p0, p1);
    if (scale == 0) {
      r = _mm_packs_epi32(p0, p1);
    } else if (scale > 30) {
      r = _mm_setzero_si128();
    } else if (scale > 0) {
      r = _mm_packs_epi32(RoundShift(p0, shiftCount, mask, halfLess1), RoundShift(p1, shiftCount, mask, halfLess1));
    } else if (scale >= -15) {
      const __m128i c = _mm_packs_epi32(p0, p1);
      r = _mm_packs_epi32(_mm_sll_epi32(Widen16(c, false), leftCount), _mm_sll_epi32(Widen16(c, true), leftCount));
    } else {
      r = _mm_packs_epi32(Sign16(p0), Sign16(p1));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(block + i), r);
  }
  for (; i < count; ++i) block[i] = MulRoundScaled(table[i], block[i], scale);
}

int32_t CountZeros64(const int16_t* block) {
  const __m128i zero = _mm_setzero_si128();
  int32_t n = 0;
  for (int i = 0; i < 64; i += 16) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + i + 8));
    const __m128i m = _mm_packs_epi16(_mm_cmpeq_epi16(a, zero), _mm_cmpeq_epi16(b, zero));
    n += __builtin_popcount(unsigned(_mm_movemask_epi8(m)));
  }
  return n;
}

void MulConstant8uC4(const uint8_t* source, int32_t sourceRowBytes, const uint8_t* constant, uint8_t* destination,
                     int32_t destinationRowBytes, int32_t width, int32_t height, int32_t scaleFactor) {
  int32_t k32;
  __builtin_memcpy(&k32, constant, 4);
  const __m128i k = _mm_unpacklo_epi8(_mm_set1_epi32(k32), _mm_setzero_si128());
  const int64_t bytes = int64_t(width) * 4;
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* s = source + int64_t(y) * sourceRowBytes;
    uint8_t* d = destination + int64_t(y) * destinationRowBytes;
    int64_t i = 0;
    if (scaleFactor <= 16) {
      for (; i + 16 <= bytes; i += 16) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
        const __m128i lo = _mm_mullo_epi16(_mm_unpacklo_epi8(x, _mm_setzero_si128()), k);
        const __m128i hi = _mm_mullo_epi16(_mm_unpackhi_epi8(x, _mm_setzero_si128()), k);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i),
                         _mm_packus_epi16(ScaleBytes16(lo, scaleFactor), ScaleBytes16(hi, scaleFactor)));
      }
    }
    for (; i < bytes; ++i) d[i] = MulConstantScaled(s[i], constant[i & 3], scaleFactor);
  }
}

}  // namespace sse2
}  // namespace OX
