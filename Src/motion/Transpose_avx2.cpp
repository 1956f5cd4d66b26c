// Transpose, AVX2: 8x8 blocks of 4-byte items and 4x4 blocks of 8-byte items within bands of
// source rows whose items fill 256 bytes of each destination row.
#include <immintrin.h>

#include <cstring>

#include "motion/Moves.h"

namespace OX {
namespace avx2 {
namespace {

inline __m256i Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
inline void Store(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

#include "motion/TransposePlain.inl"

void Block8x8(const uint8_t* s, ptrdiff_t srb, uint8_t* d, ptrdiff_t drb) {
  __m256i r[8];
  for (int i = 0; i < 8; ++i) r[i] = Load(s + i * srb);
  // Pairs of rows interleaved by items, then by item pairs, then the 128-bit halves swapped.
  const __m256i a0 = _mm256_unpacklo_epi32(r[0], r[1]), a1 = _mm256_unpackhi_epi32(r[0], r[1]);
  const __m256i a2 = _mm256_unpacklo_epi32(r[2], r[3]), a3 = _mm256_unpackhi_epi32(r[2], r[3]);
  const __m256i a4 = _mm256_unpacklo_epi32(r[4], r[5]), a5 = _mm256_unpackhi_epi32(r[4], r[5]);
  const __m256i a6 = _mm256_unpacklo_epi32(r[6], r[7]), a7 = _mm256_unpackhi_epi32(r[6], r[7]);
  const __m256i b0 = _mm256_unpacklo_epi64(a0, a2), b1 = _mm256_unpackhi_epi64(a0, a2);
  const __m256i b2 = _mm256_unpacklo_epi64(a1, a3), b3 = _mm256_unpackhi_epi64(a1, a3);
  const __m256i b4 = _mm256_unpacklo_epi64(a4, a6), b5 = _mm256_unpackhi_epi64(a4, a6);
  const __m256i b6 = _mm256_unpacklo_epi64(a5, a7), b7 = _mm256_unpackhi_epi64(a5, a7);
  Store(d + 0 * drb, _mm256_permute2x128_si256(b0, b4, 0x20));
  Store(d + 1 * drb, _mm256_permute2x128_si256(b1, b5, 0x20));
  Store(d + 2 * drb, _mm256_permute2x128_si256(b2, b6, 0x20));
  Store(d + 3 * drb, _mm256_permute2x128_si256(b3, b7, 0x20));
  Store(d + 4 * drb, _mm256_permute2x128_si256(b0, b4, 0x31));
  Store(d + 5 * drb, _mm256_permute2x128_si256(b1, b5, 0x31));
  Store(d + 6 * drb, _mm256_permute2x128_si256(b2, b6, 0x31));
  Store(d + 7 * drb, _mm256_permute2x128_si256(b3, b7, 0x31));
}

void Block4x4Wide(const uint8_t* s, ptrdiff_t srb, uint8_t* d, ptrdiff_t drb) {
  const __m256i r0 = Load(s), r1 = Load(s + srb), r2 = Load(s + 2 * srb), r3 = Load(s + 3 * srb);
  const __m256i a0 = _mm256_unpacklo_epi64(r0, r1), a1 = _mm256_unpackhi_epi64(r0, r1);
  const __m256i a2 = _mm256_unpacklo_epi64(r2, r3), a3 = _mm256_unpackhi_epi64(r2, r3);
  Store(d + 0 * drb, _mm256_permute2x128_si256(a0, a2, 0x20));
  Store(d + 1 * drb, _mm256_permute2x128_si256(a1, a3, 0x20));
  Store(d + 2 * drb, _mm256_permute2x128_si256(a0, a2, 0x31));
  Store(d + 3 * drb, _mm256_permute2x128_si256(a1, a3, 0x31));
}

template <uint32_t kItem>
void Tiled(const uint8_t* source, ptrdiff_t srb, uint8_t* destination, ptrdiff_t drb, int32_t width,
           int32_t height) {
  constexpr int32_t kBandRows = int32_t(256 / kItem);
  constexpr int32_t kBlock = int32_t(32 / kItem);
  const int32_t bands = height / kBandRows;
  const int32_t blockWidth = width / kBlock * kBlock;
  for (int32_t band = 0; band < bands; ++band) {
    const int32_t y0 = band * kBandRows;
    for (int32_t x = 0; x < blockWidth; x += kBlock) {
      const uint8_t* s = source + y0 * srb + ptrdiff_t(x) * kItem;
      uint8_t* d = destination + x * drb + ptrdiff_t(y0) * kItem;
      for (int32_t y = 0; y < kBandRows; y += kBlock, s += kBlock * srb, d += 32) {
        if constexpr (kItem == 4) Block8x8(s, srb, d, drb);
        else Block4x4Wide(s, srb, d, drb);
      }
    }
    Plain<kItem>(source, srb, destination, drb, blockWidth, width, y0, y0 + kBandRows);
  }
  Plain<kItem>(source, srb, destination, drb, 0, width, bands * kBandRows, height);
}

}  // namespace

TransposeKernel TransposeKernelFor(uint32_t itemBytes) {
  switch (itemBytes) {
    case 4: return Tiled<4>;
    case 8: return Tiled<8>;
    default: return nullptr;
  }
}

}  // namespace avx2
}  // namespace OX
