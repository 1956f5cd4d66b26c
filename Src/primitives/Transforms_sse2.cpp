// Transforms, SSE2 form: each row of eight 32-bit lanes in two registers. SSE2 has no 32-bit
// low multiply, so the products are formed from two widening unsigned multiplies, whose low
// halves are the same as the signed ones; the first inverse pass multiplies 16-bit pairs.
#include <emmintrin.h>

#include <cstdint>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace sse2 {
namespace {

inline __m128i Mul32(__m128i a, __m128i k) {
  const __m128i even = _mm_mul_epu32(a, k);
  const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(a, 32), _mm_srli_epi64(k, 32));
  return _mm_unpacklo_epi32(_mm_shuffle_epi32(even, _MM_SHUFFLE(0, 0, 2, 0)),
                            _mm_shuffle_epi32(odd, _MM_SHUFFLE(0, 0, 2, 0)));
}

#include "primitives/Transforms128.inc"

}  // namespace

#include "primitives/DCTForms.inc"

}  // namespace sse2
}  // namespace OX
