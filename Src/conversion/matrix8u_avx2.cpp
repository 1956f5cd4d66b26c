// Colour matrices at 8u, AVX2 form. The 8u-to-8u steps run eight pixels a step with one channel
// a register (each channel pulled out of the 32-bit pixels by shifts and masks), which spends
// nothing on broadcasts; the rest, and the last few pixels, go through the four-float body. The
// terms are the same products summed in the same order as the body's, and a coefficient of 0 only
// ever adds a signed zero to a value that is not -0, so the bytes are the same.
#include "conversion/PixelVecIsa.h"

#define OX_MATRIX8U_OWN_TABLE
namespace OX::avx2 {
#include "conversion/PixelVec.inl"
#include "conversion/matrix8u.inl"

namespace {

inline __m256 Channel(__m256i px, int shift) {
  return _mm256_cvtepi32_ps(_mm256_and_si256(_mm256_srli_epi32(px, shift), _mm256_set1_epi32(0xFF)));
}
inline __m256i Byte(__m256 x, int shift) { return _mm256_slli_epi32(_mm256_cvttps_epi32(x), shift); }
inline __m256 ClampTo8u(__m256 x) { return _mm256_min_ps(_mm256_max_ps(x, _mm256_setzero_ps()), _mm256_set1_ps(255.0f)); }
inline __m256 K(float c) { return _mm256_set1_ps(c); }

template <const Columns& M>
void RgbToYuv8(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  int32_t i = 0;
  for (; i + 8 <= width; i += 8) {
    const __m256i px = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * i));
    const __m256 b = Channel(px, 0), g = Channel(px, 8), r = Channel(px, 16);
    __m256i o = _mm256_and_si256(px, _mm256_set1_epi32(int32_t(0xFF000000u)));
    for (int lane = 0; lane < 3; ++lane) {  // V, U, Y
      const __m256 x = _mm256_add_ps(
          _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(r, K(M.fA[lane])), _mm256_mul_ps(g, K(M.fB[lane]))),
                        _mm256_mul_ps(b, K(M.fC[lane]))),
          K(M.fOffset[lane]));
      o = _mm256_or_si256(o, Byte(ClampTo8u(_mm256_add_ps(x, K(0.5f))), 8 * lane));
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 4 * i), o);
  }
  RgbToYuv<M>(s + 4 * i, d + 4 * i, width - i);
}

template <const Columns& M, bool Opaque>
void YuvToRgb8(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  const __m256 ky = K(M.fA[0]);  // the luma weight is the same for B, G and R
  int32_t i = 0;
  for (; i + 8 <= width; i += 8) {
    const __m256i px = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * i));
    const __m256 v = _mm256_sub_ps(Channel(px, 0), K(128.0f));
    const __m256 u = _mm256_sub_ps(Channel(px, 8), K(128.0f));
    const __m256 y = _mm256_mul_ps(_mm256_sub_ps(Channel(px, 16), K(16.0f)), ky);
    const __m256 b = _mm256_add_ps(y, _mm256_mul_ps(u, K(M.fB[0])));
    const __m256 g = _mm256_add_ps(_mm256_add_ps(y, _mm256_mul_ps(u, K(M.fB[1]))), _mm256_mul_ps(v, K(M.fC[1])));
    const __m256 r = _mm256_add_ps(y, _mm256_mul_ps(v, K(M.fC[2])));
    // Clamped first, the conversion rounds to nearest with ties to even, as the body's rounding.
    __m256i o = Opaque ? _mm256_set1_epi32(int32_t(0xFF000000u)) : _mm256_and_si256(px, _mm256_set1_epi32(int32_t(0xFF000000u)));
    o = _mm256_or_si256(o, _mm256_cvtps_epi32(ClampTo8u(b)));
    o = _mm256_or_si256(o, _mm256_slli_epi32(_mm256_cvtps_epi32(ClampTo8u(g)), 8));
    o = _mm256_or_si256(o, _mm256_slli_epi32(_mm256_cvtps_epi32(ClampTo8u(r)), 16));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 4 * i), o);
  }
  YuvToRgb<M, Opaque>(s + 4 * i, d + 4 * i, width - i);
}

}  // namespace

const RowConverter kMatrix8u[kMatrix8uCount] = {
    &RgbToYuv8<kRgbToYuv601>,          &RgbToYuv8<kRgbToYuv709>,
    &YuvToRgb8<kYuvToRgb601, false>,   &YuvToRgb8<kYuvToRgb709, false>,
    &YuvToRgb8<kYuvToRgb601, true>,    &YuvToRgb8<kYuvToRgb709, true>,
    &YuvToRgb32f<kYuvToRgb32f601>,     &YuvToRgb32f<kYuvToRgb32f709>,
    &Rgb32fToYuv<kRgb32fToYuv601>,     &Rgb32fToYuv<kRgb32fToYuv709>};

}  // namespace OX::avx2
