// The store family, SSE2 form: sixteen bytes a store. The channel set merges the value into
// whole vectors only where the vector lies within the samples it may touch (from the first
// sample to the last); the rest of the row is done sample by sample.
#include <emmintrin.h>

#include <cstring>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace sse2 {
namespace {

// Merges `value` under `mask` into the span of `spanBytes` bytes at `d`; returns where the
// vectors stopped.
inline int64_t MergeSpan(uint8_t* d, int64_t spanBytes, __m128i value, __m128i mask) {
  int64_t i = 0;
  for (; i + 16 <= spanBytes; i += 16) {
    __m128i* p = reinterpret_cast<__m128i*>(d + i);
    const __m128i old = _mm_loadu_si128(p);
    _mm_storeu_si128(p, _mm_or_si128(_mm_andnot_si128(mask, old), _mm_and_si128(mask, value)));
  }
  return i;
}

}  // namespace

void CopyChannel8uC4(uint8_t value, uint8_t* destination, int32_t rowBytes, int32_t width, int32_t height) {
  const __m128i v = _mm_set1_epi8(char(value));
  const __m128i mask = _mm_set1_epi32(0xFF);
  const int64_t span = 4 * int64_t(width - 1) + 1;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = destination + int64_t(y) * rowBytes;
    for (int64_t x = MergeSpan(d, span, v, mask) / 4; x < width; ++x) d[4 * x] = value;
  }
}

void CopyChannel16uC4(uint16_t value, uint16_t* destination, int32_t rowBytes, int32_t width, int32_t height) {
  const __m128i v = _mm_set1_epi16(int16_t(value));
  const __m128i mask = _mm_set1_epi64x(0xFFFF);
  const int64_t span = 8 * int64_t(width - 1) + 2;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = reinterpret_cast<uint8_t*>(destination) + int64_t(y) * rowBytes;
    for (int64_t x = MergeSpan(d, span, v, mask) / 8; x < width; ++x) std::memcpy(d + 8 * x, &value, 2);
  }
}

void CopyChannel32fC4(float value, float* destination, int32_t rowBytes, int32_t width, int32_t height) {
  uint32_t bits;
  std::memcpy(&bits, &value, 4);
  const __m128i v = _mm_set1_epi32(int32_t(bits));
  const __m128i mask = _mm_set_epi32(0, 0, 0, -1);
  const int64_t span = 16 * int64_t(width - 1) + 4;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = reinterpret_cast<uint8_t*>(destination) + int64_t(y) * rowBytes;
    for (int64_t x = MergeSpan(d, span, v, mask) / 16; x < width; ++x) std::memcpy(d + 16 * x, &bits, 4);
  }
}

void FillPattern(const void* pattern16, int32_t unitBytes, void* destination, int32_t rowBytes, int32_t width,
                 int32_t height) {
  const __m128i p = _mm_loadu_si128(static_cast<const __m128i*>(pattern16));
  const int64_t rowLength = int64_t(width) * unitBytes;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = static_cast<uint8_t*>(destination) + int64_t(y) * rowBytes;
    int64_t i = 0;
    for (; i + 64 <= rowLength; i += 64) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i), p);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i + 16), p);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i + 32), p);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i + 48), p);
    }
    for (; i + 16 <= rowLength; i += 16) _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i), p);
    std::memcpy(d + i, pattern16, size_t(rowLength - i));
  }
}

void Copy2D8u(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
              int32_t widthBytes, int32_t height) {
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* s = static_cast<const uint8_t*>(source) + int64_t(y) * sourceRowBytes;
    uint8_t* d = static_cast<uint8_t*>(destination) + int64_t(y) * destinationRowBytes;
    int64_t i = 0;
    for (; i + 64 <= widthBytes; i += 64) {
      const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
      const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 16));
      const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 32));
      const __m128i e = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 48));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i), a);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i + 16), b);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i + 32), c);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i + 48), e);
    }
    for (; i + 16 <= widthBytes; i += 16)
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i), _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i)));
    std::memcpy(d + i, s + i, size_t(widthBytes - i));
  }
}

}  // namespace sse2
}  // namespace OX
