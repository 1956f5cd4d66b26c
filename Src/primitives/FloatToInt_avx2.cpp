// Scaled float-to-integer conversions, AVX2 form: four floats a step widened to double, scaled
// exactly, NaN cleared to 0, then the saturating rules and one conversion instruction.
#include <immintrin.h>

#include "primitives/FloatToInt.h"
#include "primitives/PrimitiveForms.h"

namespace OX {
namespace avx2 {
namespace {

inline __m256d Scaled(const float* p, __m256d factor) {
  const __m256d v = _mm256_mul_pd(_mm256_cvtps_pd(_mm_loadu_ps(p)), factor);
  return _mm256_and_pd(v, _mm256_cmp_pd(v, v, _CMP_ORD_Q));
}

inline __m128i To32(__m256d v, bool round) {
  const __m128i i = round ? _mm256_cvtpd_epi32(v) : _mm256_cvttpd_epi32(v);
  const __m128i high = _mm256_cvtpd_epi32(
      _mm256_and_pd(_mm256_cmp_pd(v, _mm256_set1_pd(kInt32High), _CMP_GE_OQ), _mm256_set1_pd(-1.0)));
  // `high` is -1 in the lanes at or above the limit and 0 elsewhere.
  return _mm_or_si128(_mm_andnot_si128(high, i), _mm_and_si128(high, _mm_set1_epi32(INT32_MAX)));
}

inline __m128i To16Range(__m256d v, bool round) {
  v = _mm256_min_pd(_mm256_max_pd(v, _mm256_set1_pd(-32768.0)), _mm256_set1_pd(32767.0));
  return round ? _mm256_cvtpd_epi32(v) : _mm256_cvttpd_epi32(v);
}

}  // namespace

void Convert32fTo32sScaled(const float* source, int32_t* destination, int32_t length, int32_t roundMode,
                           int32_t scaleFactor) {
  const double f = ConversionFactor(scaleFactor);
  const __m256d factor = _mm256_set1_pd(f);
  const bool round = roundMode == 1;
  int32_t i = 0;
  for (; i + 8 <= length; i += 8) {
    const __m128i a = To32(Scaled(source + i, factor), round);
    const __m128i b = To32(Scaled(source + i + 4, factor), round);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination + i), _mm256_set_m128i(b, a));
  }
  for (; i < length; ++i) destination[i] = ConvertTo32s(source[i], f, round);
}

void Convert32fTo16sScaled(const float* source, int16_t* destination, int32_t length, int32_t roundMode,
                           int32_t scaleFactor) {
  const double f = ConversionFactor(scaleFactor);
  const __m256d factor = _mm256_set1_pd(f);
  const bool round = roundMode == 1;
  int32_t i = 0;
  for (; i + 8 <= length; i += 8) {
    const __m128i a = To16Range(Scaled(source + i, factor), round);
    const __m128i b = To16Range(Scaled(source + i + 4, factor), round);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i), _mm_packs_epi32(a, b));
  }
  for (; i < length; ++i) destination[i] = ConvertTo16s(source[i], f, round);
}

}  // namespace avx2
}  // namespace OX
