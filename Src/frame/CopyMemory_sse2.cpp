// Block move, SSE2: 16-byte aligned destination, 64 bytes a step.
#include <emmintrin.h>

#include <cstring>

#include "frame/CopyMemory.h"

namespace OX {
namespace sse2 {

void CopyMemory(uint8_t* d, const uint8_t* s, size_t bytes, bool stream) {
  const size_t head = (16 - (reinterpret_cast<uintptr_t>(d) & 15)) & 15;
  std::memcpy(d, s, head);
  d += head;
  s += head;
  bytes -= head;
  const size_t steps = bytes / 64;
  const bool alignedSource = (reinterpret_cast<uintptr_t>(s) & 15) == 0;
  for (size_t i = 0; i < steps; ++i, d += 64, s += 64) {
    __m128i a, b, c, e;
    if (alignedSource) {
      a = _mm_load_si128(reinterpret_cast<const __m128i*>(s));
      b = _mm_load_si128(reinterpret_cast<const __m128i*>(s + 16));
      c = _mm_load_si128(reinterpret_cast<const __m128i*>(s + 32));
      e = _mm_load_si128(reinterpret_cast<const __m128i*>(s + 48));
    } else {
      a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
      b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 16));
      c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 32));
      e = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 48));
    }
    if (stream) {
      _mm_stream_si128(reinterpret_cast<__m128i*>(d), a);
      _mm_stream_si128(reinterpret_cast<__m128i*>(d + 16), b);
      _mm_stream_si128(reinterpret_cast<__m128i*>(d + 32), c);
      _mm_stream_si128(reinterpret_cast<__m128i*>(d + 48), e);
    } else {
      _mm_store_si128(reinterpret_cast<__m128i*>(d), a);
      _mm_store_si128(reinterpret_cast<__m128i*>(d + 16), b);
      _mm_store_si128(reinterpret_cast<__m128i*>(d + 32), c);
      _mm_store_si128(reinterpret_cast<__m128i*>(d + 48), e);
    }
  }
  std::memcpy(d, s, bytes & 63);
}

}  // namespace sse2
}  // namespace OX
