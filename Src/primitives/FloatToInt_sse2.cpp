// Scaled float-to-integer conversions, SSE2 form: two floats a step widened to double, scaled
// exactly, NaN cleared to 0, then the saturating rules and one conversion instruction.
#include <emmintrin.h>

#include "primitives/FloatToInt.h"
#include "primitives/PrimitiveForms.h"

namespace OX {
namespace sse2 {
namespace {

// Four floats scaled to doubles in two halves, NaN lanes cleared.
inline void Scaled(const float* p, __m128d factor, __m128d& a, __m128d& b) {
  const __m128 f = _mm_loadu_ps(p);
  a = _mm_mul_pd(_mm_cvtps_pd(f), factor);
  b = _mm_mul_pd(_mm_cvtps_pd(_mm_movehl_ps(f, f)), factor);
  a = _mm_and_pd(a, _mm_cmpord_pd(a, a));
  b = _mm_and_pd(b, _mm_cmpord_pd(b, b));
}

// Two doubles to two 32-bit values in the low half; values at or below -2^31 give the
// conversion's own 0x80000000, the high limit is set by hand.
inline __m128i To32(__m128d v, bool round) {
  const __m128i i = round ? _mm_cvtpd_epi32(v) : _mm_cvttpd_epi32(v);
  const __m128d high = _mm_cmpge_pd(v, _mm_set1_pd(kInt32High));
  const __m128i highMask = _mm_shuffle_epi32(_mm_castpd_si128(high), _MM_SHUFFLE(3, 3, 2, 0));
  return _mm_or_si128(_mm_andnot_si128(highMask, i), _mm_and_si128(highMask, _mm_set1_epi32(INT32_MAX)));
}

inline __m128i To16Range(__m128d v, bool round) {
  v = _mm_min_pd(_mm_max_pd(v, _mm_set1_pd(-32768.0)), _mm_set1_pd(32767.0));
  return round ? _mm_cvtpd_epi32(v) : _mm_cvttpd_epi32(v);
}

}  // namespace

void Convert32fTo32sScaled(const float* source, int32_t* destination, int32_t length, int32_t roundMode,
                           int32_t scaleFactor) {
  const double f = ConversionFactor(scaleFactor);
  const __m128d factor = _mm_set1_pd(f);
  const bool round = roundMode == 1;
  int32_t i = 0;
  for (; i + 4 <= length; i += 4) {
    __m128d a, b;
    Scaled(source + i, factor, a, b);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i), _mm_unpacklo_epi64(To32(a, round), To32(b, round)));
  }
  for (; i < length; ++i) destination[i] = ConvertTo32s(source[i], f, round);
}

void Convert32fTo16sScaled(const float* source, int16_t* destination, int32_t length, int32_t roundMode,
                           int32_t scaleFactor) {
  const double f = ConversionFactor(scaleFactor);
  const __m128d factor = _mm_set1_pd(f);
  const bool round = roundMode == 1;
  int32_t i = 0;
  for (; i + 8 <= length; i += 8) {
    __m128d a, b, c, d;
    Scaled(source + i, factor, a, b);
    Scaled(source + i + 4, factor, c, d);
    const __m128i lo = _mm_unpacklo_epi64(To16Range(a, round), To16Range(b, round));
    const __m128i hi = _mm_unpacklo_epi64(To16Range(c, round), To16Range(d, round));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i), _mm_packs_epi32(lo, hi));
  }
  for (; i < length; ++i) destination[i] = ConvertTo16s(source[i], f, round);
}

}  // namespace sse2
}  // namespace OX
