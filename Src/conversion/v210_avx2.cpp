// V210 both ways, AVX2 form. V210 to RGB 8u runs eight pixels a step with one channel a register:
// a chunk of groups is first spread to ten-bit samples in 16-bit words in UYVY order, the chroma
// of odd pixels is the mean of the pair and the pair one on (rounded down, as in the body), and
// the terms are those of the body summed in its order. The rest goes through the shared body.
#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"
#include "conversion/Subsample.h"
#include "conversion/V210.h"

#define OX_V210_OWN_TABLE
namespace OX::avx2 {
#include "conversion/PixelVec.inl"
namespace {
#include "conversion/UpsampleSsse3.inl"
}  // namespace
#include "conversion/v210.inl"

namespace {

// `groups` groups of six pixels to 12 ten-bit samples each, 16-bit words in UYVY order. Writes
// 8 bytes past the last group.
void SpreadTenBit(const uint32_t* s, uint16_t* d, int32_t groups) {
  const __m128i mask = _mm_set1_epi32(0x3FF);
  const __m128i fromA0 = _mm_setr_epi8(0, 1, 2, 3, -1, -1, 4, 5, 6, 7, -1, -1, 8, 9, 10, 11);
  const __m128i fromB0 = _mm_setr_epi8(-1, -1, -1, -1, 0, 1, -1, -1, -1, -1, 4, 5, -1, -1, -1, -1);
  const __m128i fromA1 = _mm_setr_epi8(-1, -1, 12, 13, 14, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i fromB1 = _mm_setr_epi8(8, 9, -1, -1, -1, -1, 12, 13, -1, -1, -1, -1, -1, -1, -1, -1);
  for (int32_t g = 0; g < groups; ++g) {
    const __m128i w = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * g));
    const __m128i a = _mm_or_si128(_mm_and_si128(w, mask), _mm_slli_epi32(_mm_and_si128(_mm_srli_epi32(w, 10), mask), 16));
    const __m128i b = _mm_and_si128(_mm_srli_epi32(w, 20), mask);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 12 * g), _mm_or_si128(_mm_shuffle_epi8(a, fromA0), _mm_shuffle_epi8(b, fromB0)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 12 * g + 8), _mm_or_si128(_mm_shuffle_epi8(a, fromA1), _mm_shuffle_epi8(b, fromB1)));
  }
}

inline __m128i Pick(__m128i x, __m128i idx) { return _mm_shuffle_epi8(x, idx); }

template <const TenBitMatrix& M>
void V210ToBgr8(const void* in, void* out, int32_t width) {
  const uint32_t* s = static_cast<const uint32_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  // Words of a pair: U 0, Y0 1, V 2, Y1 3. Four pixels (two pairs) a 128-bit half.
  const __m128i lumaIdx = _mm_setr_epi8(2, 3, -1, -1, 6, 7, -1, -1, 10, 11, -1, -1, 14, 15, -1, -1);
  const __m128i evenU = _mm_setr_epi8(0, 1, -1, -1, -1, -1, -1, -1, 8, 9, -1, -1, -1, -1, -1, -1);
  const __m128i oddU = _mm_setr_epi8(-1, -1, -1, -1, 0, 1, -1, -1, -1, -1, -1, -1, 8, 9, -1, -1);
  const __m128i evenV = _mm_setr_epi8(4, 5, -1, -1, -1, -1, -1, -1, 12, 13, -1, -1, -1, -1, -1, -1);
  const __m128i oddV = _mm_setr_epi8(-1, -1, -1, -1, 4, 5, -1, -1, -1, -1, -1, -1, 12, 13, -1, -1);
  alignas(32) uint16_t uyvy[2 * (kChunk + 6) + 16];
  for (int32_t x0 = 0; x0 < width; x0 += kChunk) {
    const int32_t n = width - x0 < kChunk ? width - x0 : kChunk;
    const int32_t span = width - x0 < n + 6 ? width - x0 : n + 6;  // one group more when the row goes on
    SpreadTenBit(s + 4 * (x0 / 6), uyvy, (span + 5) / 6);
    int32_t x = 0;
    // Eight pixels while the pixel after them lies inside the row.
    for (; x + 8 <= n && x0 + x + 8 < width; x += 8) {
      const uint16_t* p = uyvy + 2 * x;
      __m256 ch[3];  // y, u, v of the eight pixels
      __m128i half[2][3];
      for (int h = 0; h < 2; ++h) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8 * h));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8 * h + 4));
        const __m128i m = _mm_srli_epi16(_mm_add_epi16(a, b), 1);
        half[h][0] = Pick(a, lumaIdx);
        half[h][1] = _mm_or_si128(Pick(a, evenU), Pick(m, oddU));
        half[h][2] = _mm_or_si128(Pick(a, evenV), Pick(m, oddV));
      }
      for (int c = 0; c < 3; ++c) ch[c] = _mm256_cvtepi32_ps(_mm256_setr_m128i(half[0][c], half[1][c]));
      const __m256 y = _mm256_mul_ps(_mm256_sub_ps(ch[0], _mm256_set1_ps(64.0f)), _mm256_set1_ps(M.fY));
      const __m256 u = _mm256_sub_ps(ch[1], _mm256_set1_ps(512.0f));
      const __m256 v = _mm256_sub_ps(ch[2], _mm256_set1_ps(512.0f));
      const __m256 bf = _mm256_add_ps(y, _mm256_mul_ps(u, _mm256_set1_ps(M.fUB)));
      const __m256 gf = _mm256_add_ps(_mm256_add_ps(y, _mm256_mul_ps(u, _mm256_set1_ps(M.fUG))),
                                      _mm256_mul_ps(v, _mm256_set1_ps(M.fVG)));
      const __m256 rf = _mm256_add_ps(y, _mm256_mul_ps(v, _mm256_set1_ps(M.fVR)));
      auto to8u = [](__m256 f) {
        return _mm256_cvtps_epi32(_mm256_min_ps(_mm256_max_ps(f, _mm256_setzero_ps()), _mm256_set1_ps(255.0f)));
      };
      __m256i o = _mm256_set1_epi32(int32_t(0xFF000000u));
      o = _mm256_or_si256(o, to8u(bf));
      o = _mm256_or_si256(o, _mm256_slli_epi32(to8u(gf), 8));
      o = _mm256_or_si256(o, _mm256_slli_epi32(to8u(rf), 16));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 4 * (x0 + x)), o);
    }
    if (x < n) V210ToBgr8uRange<M>(s, d, width, x0 + x, n - x);
  }
}

}  // namespace

const RowConverter kV210[kV210Count] = {&Uyvy8uToV210, &Uyvy32fToV210,      &V210ToUyvy8u,     &V210ToUyvy32f,
                                        &V210ToVuy8u,  &V210_709ToVuy8u601, &V210ToBgr8<k601>, &V210ToBgr8<k709>};

}  // namespace OX::avx2
