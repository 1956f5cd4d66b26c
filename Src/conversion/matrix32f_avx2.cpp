// Colour matrices at 32f, avx2 form. Eight pixels a step: the four registers of two pixels each
// are transposed within their 128-bit halves into one register per channel, so each output
// channel is three products and two sums with no broadcasts or blends, and transposed back. The
// products and sums are the body's, with the same operands in the same order (a coefficient of 0
// still multiplies, so infinities and NaNs come out as at the other levels); alpha is moved
// untouched, and the last few pixels go through the body.
#include "conversion/PixelVecIsa.h"

namespace OX::avx2 {
namespace {
struct Matrix3;
template <const Matrix3& M>
void Apply8(const void* in, void* out, int32_t width);
}  // namespace
#define OX_MATRIX32F_APPLY Apply8
#include "conversion/PixelVec.inl"
#include "conversion/matrix32f.inl"

namespace {

// Four registers of two four-float pixels each, transposed within each 128-bit half.
inline void Transpose(__m256& a, __m256& b, __m256& c, __m256& d) {
  const __m256 t0 = _mm256_unpacklo_ps(a, b), t1 = _mm256_unpacklo_ps(c, d);
  const __m256 t2 = _mm256_unpackhi_ps(a, b), t3 = _mm256_unpackhi_ps(c, d);
  a = _mm256_shuffle_ps(t0, t1, 0x44);
  b = _mm256_shuffle_ps(t0, t1, 0xEE);
  c = _mm256_shuffle_ps(t2, t3, 0x44);
  d = _mm256_shuffle_ps(t2, t3, 0xEE);
}

template <const Matrix3& M>
__m256 OutputLane(const __m256 (&ch)[4], int l) {
  auto k = [](float v) { return _mm256_set1_ps(v); };
  if constexpr (M.fFirst < 0) {
    return _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(ch[2], k(M.fK1[l])), _mm256_mul_ps(ch[1], k(M.fK2[l]))),
                         _mm256_mul_ps(ch[0], k(M.fK3[l])));
  } else if constexpr (M.fT1 == 1) {
    return _mm256_add_ps(_mm256_add_ps(ch[2], _mm256_mul_ps(ch[1], k(M.fK1[l]))), _mm256_mul_ps(ch[0], k(M.fK2[l])));
  } else {
    const __m256 first = _mm256_mul_ps(ch[l], k(l == 2 ? 1.0f : 0.0f));
    return _mm256_add_ps(_mm256_add_ps(first, _mm256_mul_ps(ch[0], k(M.fK1[l]))), _mm256_mul_ps(ch[1], k(M.fK2[l])));
  }
}

template <const Matrix3& M>
void Apply8(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  float* d = static_cast<float*>(out);
  int32_t i = 0;
  for (; i + 8 <= width; i += 8) {
    __m256 ch[4] = {_mm256_loadu_ps(s + 4 * i), _mm256_loadu_ps(s + 4 * i + 8), _mm256_loadu_ps(s + 4 * i + 16),
                    _mm256_loadu_ps(s + 4 * i + 24)};
    Transpose(ch[0], ch[1], ch[2], ch[3]);
    __m256 o[4] = {OutputLane<M>(ch, 0), OutputLane<M>(ch, 1), OutputLane<M>(ch, 2), ch[3]};
    Transpose(o[0], o[1], o[2], o[3]);
    for (int r = 0; r < 4; ++r) _mm256_storeu_ps(d + 4 * i + 8 * r, o[r]);
  }
  Apply<M>(s + 4 * i, d + 4 * i, width - i);
}

}  // namespace
}  // namespace OX::avx2
