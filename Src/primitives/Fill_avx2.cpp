// The store family, AVX2 form: thirty-two bytes a store, with the same rule as the SSE2 form for
// where the channel set may merge whole vectors.
#include <immintrin.h>

#include <cstring>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace avx2 {
namespace {

inline int64_t MergeSpan(uint8_t* d, int64_t spanBytes, __m256i value, __m256i mask) {
  int64_t i = 0;
  for (; i + 32 <= spanBytes; i += 32) {
    __m256i* p = reinterpret_cast<__m256i*>(d + i);
    _mm256_storeu_si256(p, _mm256_blendv_epi8(_mm256_loadu_si256(p), value, mask));
  }
  return i;
}

}  // namespace

void CopyChannel8uC4(uint8_t value, uint8_t* destination, int32_t rowBytes, int32_t width, int32_t height) {
  const __m256i v = _mm256_set1_epi8(char(value));
  const __m256i mask = _mm256_set1_epi32(0xFF);
  const int64_t span = 4 * int64_t(width - 1) + 1;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = destination + int64_t(y) * rowBytes;
    for (int64_t x = MergeSpan(d, span, v, mask) / 4; x < width; ++x) d[4 * x] = value;
  }
}

void CopyChannel16uC4(uint16_t value, uint16_t* destination, int32_t rowBytes, int32_t width, int32_t height) {
  const __m256i v = _mm256_set1_epi16(int16_t(value));
  const __m256i mask = _mm256_set1_epi64x(0xFFFF);
  const int64_t span = 8 * int64_t(width - 1) + 2;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = reinterpret_cast<uint8_t*>(destination) + int64_t(y) * rowBytes;
    for (int64_t x = MergeSpan(d, span, v, mask) / 8; x < width; ++x) std::memcpy(d + 8 * x, &value, 2);
  }
}

void CopyChannel32fC4(float value, float* destination, int32_t rowBytes, int32_t width, int32_t height) {
  uint32_t bits;
  std::memcpy(&bits, &value, 4);
  const __m256i v = _mm256_set1_epi32(int32_t(bits));
  const __m256i mask = _mm256_setr_epi32(-1, 0, 0, 0, -1, 0, 0, 0);
  const int64_t span = 16 * int64_t(width - 1) + 4;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = reinterpret_cast<uint8_t*>(destination) + int64_t(y) * rowBytes;
    for (int64_t x = MergeSpan(d, span, v, mask) / 16; x < width; ++x) std::memcpy(d + 16 * x, &bits, 4);
  }
}

void FillPattern(const void* pattern16, int32_t unitBytes, void* destination, int32_t rowBytes, int32_t width,
                 int32_t height) {
  const __m256i p = _mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(pattern16)));
  const int64_t rowLength = int64_t(width) * unitBytes;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = static_cast<uint8_t*>(destination) + int64_t(y) * rowBytes;
    int64_t i = 0;
    for (; i + 128 <= rowLength; i += 128) {
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i), p);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i + 32), p);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i + 64), p);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i + 96), p);
    }
    for (; i + 32 <= rowLength; i += 32) _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i), p);
    if (i + 16 <= rowLength) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i), _mm256_castsi256_si128(p));
      i += 16;
    }
    std::memcpy(d + i, pattern16, size_t(rowLength - i));
  }
}

void Copy2D8u(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
              int32_t widthBytes, int32_t height) {
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* s = static_cast<const uint8_t*>(source) + int64_t(y) * sourceRowBytes;
    uint8_t* d = static_cast<uint8_t*>(destination) + int64_t(y) * destinationRowBytes;
    int64_t i = 0;
    for (; i + 128 <= widthBytes; i += 128) {
      const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i));
      const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i + 32));
      const __m256i c = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i + 64));
      const __m256i e = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i + 96));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i), a);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i + 32), b);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i + 64), c);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i + 96), e);
    }
    for (; i + 32 <= widthBytes; i += 32)
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i),
                          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i)));
    std::memcpy(d + i, s + i, size_t(widthBytes - i));
  }
}

}  // namespace avx2
}  // namespace OX
