// Transforms, SSE4.1 form: the 128-bit layout of the SSE2 form with the 32-bit low multiply.
#include <smmintrin.h>

#include <cstdint>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace sse41 {
namespace {

inline __m128i Mul32(__m128i a, __m128i k) { return _mm_mullo_epi32(a, k); }

#include "primitives/Transforms128.inc"

}  // namespace

#include "primitives/DCTForms.inc"

}  // namespace sse41
}  // namespace OX
