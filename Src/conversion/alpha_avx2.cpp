// Alpha forms, avx2 form. The YUV 8u premultiply (the middle step of the RGB to 4:2:2 chain) runs
// eight pixels a step with one channel a register, pulled out of the 32-bit pixels by shifts and
// masks, so the broadcasts and blends of the four-float body drop out. It computes the body's
// operations in the body's order: a = A / 255 by a true division, (c - centre) x a + centre,
// clamped to 0..255, rounded by adding 1.5 x 2^23; the rounded integer is then the low byte of
// the sum's bits. The bytes are the same; the last few pixels go through the body.
#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"

namespace OX::avx2 {
namespace {
void Premul8uYuv8(const void* in, void* out, int32_t width);
}  // namespace
#define OX_ALPHA_PREMUL8U_YUV Premul8uYuv8
#include "conversion/PixelVec.inl"
#include "conversion/alpha.inl"

namespace {

inline __m256 ChannelOf(__m256i px, int shift) {
  return _mm256_cvtepi32_ps(_mm256_and_si256(_mm256_srli_epi32(px, shift), _mm256_set1_epi32(0xFF)));
}
// (c - centre) x a + centre, clamped, rounded; the result byte moved to its place in the pixel.
inline __m256i PremulChannel(__m256i px, int shift, float centre, __m256 a) {
  const __m256 k = _mm256_set1_ps(centre);
  __m256 x = _mm256_add_ps(_mm256_mul_ps(_mm256_sub_ps(ChannelOf(px, shift), k), a), k);
  x = _mm256_min_ps(_mm256_max_ps(x, _mm256_setzero_ps()), _mm256_set1_ps(255.0f));
  const __m256i r = _mm256_and_si256(_mm256_castps_si256(_mm256_add_ps(x, _mm256_set1_ps(kRoundMagic))),
                                     _mm256_set1_epi32(0xFF));
  return _mm256_slli_epi32(r, shift);
}

void Premul8uYuv8(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  int32_t i = 0;
  for (; i + 8 <= width; i += 8) {
    const __m256i px = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * i));
    const __m256 a = _mm256_div_ps(_mm256_cvtepi32_ps(_mm256_srli_epi32(px, 24)), _mm256_set1_ps(255.0f));
    __m256i o = _mm256_and_si256(px, _mm256_set1_epi32(int32_t(0xFF000000u)));
    o = _mm256_or_si256(o, PremulChannel(px, 0, 128.0f, a));   // V
    o = _mm256_or_si256(o, PremulChannel(px, 8, 128.0f, a));   // U
    o = _mm256_or_si256(o, PremulChannel(px, 16, 16.0f, a));   // Y
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 4 * i), o);
  }
  Premul8uYuv(s + 4 * i, d + 4 * i, width - i);
}

}  // namespace

}  // namespace OX::avx2
