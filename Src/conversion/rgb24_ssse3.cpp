// R, G, B bytes to B, G, R, 255, SSSE3 form: single pixels until the destination is 16-byte
// aligned, then 16 pixels (48 bytes in, 64 out) a step with four shuffles, then single pixels.
#include <tmmintrin.h>

#include "conversion/SideConversions.h"

namespace OX::ssse3 {

void Rgb24ToBgra(const uint8_t* s, uint8_t* d, int32_t width) {
  int32_t i = 0;
  for (; i < width && (reinterpret_cast<uintptr_t>(d + 4 * i) & 15) != 0; ++i) Rgb24ToBgraPixel(s + 3 * i, d + 4 * i);
  // Output pixel j of a 16-byte store takes source bytes 3j + 2, 3j + 1, 3j, counted from the
  // load that holds them.
  const __m128i k0 = _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1);
  const __m128i opaque = _mm_set1_epi32(int32_t(0xFF000000u));
  for (; i + 16 <= width; i += 16) {
    const uint8_t* p = s + 3 * i;
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));       // bytes 0-15
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16));  // 16-31
    const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 32));  // 32-47
    // Pixels 0-3: bytes 0-11 of a. Pixels 4-7: bytes 12-23 (a 12-15, b 0-7). Pixels 8-11: bytes
    // 24-35 (b 8-15, c 0-3). Pixels 12-15: bytes 36-47 (c 4-15).
    const __m128i ab = _mm_alignr_epi8(b, a, 12);  // bytes 12-27
    const __m128i bc = _mm_alignr_epi8(c, b, 8);   // bytes 24-39
    const __m128i cc = _mm_srli_si128(c, 4);       // bytes 36-47
    uint8_t* o = d + 4 * i;
    _mm_store_si128(reinterpret_cast<__m128i*>(o), _mm_or_si128(_mm_shuffle_epi8(a, k0), opaque));
    _mm_store_si128(reinterpret_cast<__m128i*>(o + 16), _mm_or_si128(_mm_shuffle_epi8(ab, k0), opaque));
    _mm_store_si128(reinterpret_cast<__m128i*>(o + 32), _mm_or_si128(_mm_shuffle_epi8(bc, k0), opaque));
    _mm_store_si128(reinterpret_cast<__m128i*>(o + 48), _mm_or_si128(_mm_shuffle_epi8(cc, k0), opaque));
  }
  for (; i < width; ++i) Rgb24ToBgraPixel(s + 3 * i, d + 4 * i);
}

}  // namespace OX::ssse3
