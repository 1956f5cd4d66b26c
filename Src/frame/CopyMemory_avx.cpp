// Block move, AVX: 32-byte aligned destination, 128 bytes a step.
#include <immintrin.h>

#include <cstring>

#include "frame/CopyMemory.h"

namespace OX {
namespace avx {

void CopyMemory(uint8_t* d, const uint8_t* s, size_t bytes, bool stream) {
  const size_t head = (32 - (reinterpret_cast<uintptr_t>(d) & 31)) & 31;
  std::memcpy(d, s, head);
  d += head;
  s += head;
  bytes -= head;
  const size_t steps = bytes / 128;
  const bool alignedSource = (reinterpret_cast<uintptr_t>(s) & 31) == 0;
  for (size_t i = 0; i < steps; ++i, d += 128, s += 128) {
    __m256i v[4];
    for (int k = 0; k < 4; ++k)
      v[k] = alignedSource ? _mm256_load_si256(reinterpret_cast<const __m256i*>(s + 32 * k))
                           : _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 32 * k));
    if (stream) {
      for (int k = 0; k < 4; ++k) _mm256_stream_si256(reinterpret_cast<__m256i*>(d + 32 * k), v[k]);
    } else {
      for (int k = 0; k < 4; ++k) _mm256_store_si256(reinterpret_cast<__m256i*>(d + 32 * k), v[k]);
    }
  }
  _mm256_zeroupper();
  std::memcpy(d, s, bytes & 127);
}

}  // namespace avx
}  // namespace OX
