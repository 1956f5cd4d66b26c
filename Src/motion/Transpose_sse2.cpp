// Transpose, SSE2: bands of source rows whose items fill 256 bytes of each destination row, moved
// as 4x4 blocks of 4-byte items, 2x2 blocks of 8-byte items or single 16-byte items.
#include <emmintrin.h>

#include <cstring>

#include "motion/Moves.h"

namespace OX {
namespace sse2 {
namespace {

inline __m128i Load(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void Store(uint8_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

#include "motion/TransposePlain.inl"

// Four source rows by four items become four destination rows of four items.
void Block4x4(const uint8_t* s, ptrdiff_t srb, uint8_t* d, ptrdiff_t drb) {
  const __m128i r0 = Load(s), r1 = Load(s + srb), r2 = Load(s + 2 * srb), r3 = Load(s + 3 * srb);
  const __m128i t0 = _mm_unpacklo_epi32(r0, r1), t1 = _mm_unpacklo_epi32(r2, r3);
  const __m128i t2 = _mm_unpackhi_epi32(r0, r1), t3 = _mm_unpackhi_epi32(r2, r3);
  Store(d, _mm_unpacklo_epi64(t0, t1));
  Store(d + drb, _mm_unpackhi_epi64(t0, t1));
  Store(d + 2 * drb, _mm_unpacklo_epi64(t2, t3));
  Store(d + 3 * drb, _mm_unpackhi_epi64(t2, t3));
}

void Block2x2(const uint8_t* s, ptrdiff_t srb, uint8_t* d, ptrdiff_t drb) {
  const __m128i r0 = Load(s), r1 = Load(s + srb);
  Store(d, _mm_unpacklo_epi64(r0, r1));
  Store(d + drb, _mm_unpackhi_epi64(r0, r1));
}

template <uint32_t kItem>
void Tiled(const uint8_t* source, ptrdiff_t srb, uint8_t* destination, ptrdiff_t drb, int32_t width,
           int32_t height) {
  constexpr int32_t kBandRows = int32_t(256 / kItem);
  constexpr int32_t kBlock = int32_t(16 / kItem);  // items a block side
  const int32_t bands = height / kBandRows;
  const int32_t blockWidth = width / kBlock * kBlock;
  for (int32_t band = 0; band < bands; ++band) {
    const int32_t y0 = band * kBandRows;
    for (int32_t x = 0; x < blockWidth; x += kBlock) {
      const uint8_t* s = source + y0 * srb + ptrdiff_t(x) * kItem;
      uint8_t* d = destination + x * drb + ptrdiff_t(y0) * kItem;
      for (int32_t y = 0; y < kBandRows; y += kBlock, s += kBlock * srb, d += 16) {
        if constexpr (kItem == 4) Block4x4(s, srb, d, drb);
        else if constexpr (kItem == 8) Block2x2(s, srb, d, drb);
        else Store(d, Load(s));
      }
    }
    Plain<kItem>(source, srb, destination, drb, blockWidth, width, y0, y0 + kBandRows);
  }
  // Rows after the last whole band.
  Plain<kItem>(source, srb, destination, drb, 0, width, bands * kBandRows, height);
}

}  // namespace

TransposeKernel TransposeKernelFor(uint32_t itemBytes) {
  switch (itemBytes) {
    case 4: return Tiled<4>;
    case 8: return Tiled<8>;
    case 16: return Tiled<16>;
    default: return nullptr;
  }
}

}  // namespace sse2
}  // namespace OX
