// The half turn, SSE2: each row reversed four pixels at a time into the mirrored row.
#include <emmintrin.h>

#include <cstring>

#include "motion/Moves.h"

namespace OX {
namespace sse2 {

void HalfTurn(const uint8_t* source, ptrdiff_t srb, uint8_t* destination, ptrdiff_t drb, int32_t width,
              int32_t height) {
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* s = source + y * srb;
    uint8_t* d = destination + ptrdiff_t(height - 1 - y) * drb;
    int32_t x = 0;
    for (; x + 4 <= width; x += 4) {
      const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + ptrdiff_t(width - 4 - x) * 4));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + ptrdiff_t(x) * 4), _mm_shuffle_epi32(v, 0x1B));
    }
    for (; x < width; ++x) std::memcpy(d + ptrdiff_t(x) * 4, s + ptrdiff_t(width - 1 - x) * 4, 4);
  }
}

}  // namespace sse2
}  // namespace OX
