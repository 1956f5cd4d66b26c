// DV operations of the primitive layer, SSE2 form: the DV50 and DV100 row packers and the sample
// store, eight signed samples a register, limited to bytes by the saturating pack.
#include <emmintrin.h>

#include "primitives/DVPrimitives.h"

namespace OX::sse2 {
namespace {

// One row of 16 YUYV pixels: luma from two 8-sample rows, chroma from one row each.
inline void PackRow(const int16_t* y0, const int16_t* y1, const int16_t* u, const int16_t* v, uint8_t* out) {
  const __m128i bias = _mm_set1_epi16(128);
  const __m128i luma = _mm_packus_epi16(_mm_add_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(y0)), bias),
                                        _mm_add_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(y1)), bias));
  const __m128i cb = _mm_add_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(u)), bias);
  const __m128i cr = _mm_add_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(v)), bias);
  const __m128i chroma = _mm_unpacklo_epi8(_mm_packus_epi16(cb, cb), _mm_packus_epi16(cr, cr));  // U V U V ...
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(luma, chroma));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 16), _mm_unpackhi_epi8(luma, chroma));
}

}  // namespace

// Eight samples a step; the saturating add keeps samples near the top of the 16-bit range from
// wrapping before the pack limits them. Rows narrower than eight finish one sample at a time.
void DVStoreSamples(const int16_t* source, int32_t sourceStep, uint8_t* destination, int32_t destinationRowBytes,
                    int32_t width, int32_t rows) {
  const __m128i bias = _mm_set1_epi16(128);
  for (int32_t r = 0; r < rows; ++r, source += sourceStep, destination += destinationRowBytes) {
    int32_t i = 0;
    for (; i + 8 <= width; i += 8) {
      const __m128i v = _mm_adds_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i)), bias);
      _mm_storel_epi64(reinterpret_cast<__m128i*>(destination + i), _mm_packus_epi16(v, v));
    }
    for (; i < width; ++i) {
      const int v = source[i] + 128;
      destination[i] = uint8_t(v < 0 ? 0 : v > 255 ? 255 : v);
    }
  }
}

#include "primitives/DVPackRows.inl"

}  // namespace OX::sse2
