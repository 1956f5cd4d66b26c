// Subsampling, AVX2 form: VUY? 8u to UYVY 8u eight pairs a step, the SSE2 form's arithmetic in
// 256-bit registers (the in-lane shuffles leave the pairs in the order 0 1 4 5 2 3 6 7, put back
// by one qword permute before the store). 4:2:2 8u straight to RGB 8u eight pixels a step with
// one channel a register. Luma, and the chroma of even pixels, come from the pairs; the chroma of odd pixels
// from the byte mean of the pairs and the pairs one on, rounded up as at SSSE3. The matrix terms
// are those of the 8u matrix step, summed in its order, so the bytes equal the SSSE3 form's
// up-sampling followed by the matrix. The 4:2:2 to 4:4:4 8u step is the SSSE3 shuffle body.
#include <immintrin.h>

#include <cstring>

#include "conversion/ConverterFamilies.h"
#include "conversion/Subsample.h"

namespace OX::avx2 {
namespace {

#include "conversion/UpsampleSsse3.inl"

template <bool LumaFirst>
void Yuv422ToVuy8u(const void* in, void* out, int32_t width) {
  Upsample422To444_8u<LumaFirst, true>(static_cast<const uint8_t*>(in), static_cast<uint8_t*>(out), width);
}

void Vuy8uToUyvy8u(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  DownsampleChroma8u(s, d, width < 2 ? width : 2, 0);  // the first pair, with its edge rule
  const __m256i lowBytes = _mm256_set1_epi32(0x00FF00FF), byte = _mm256_set1_epi32(0xFF), two = _mm256_set1_epi16(2);
  int32_t k = 1;
  for (; 2 * (k + 7) + 1 < width; k += 8) {
    const float* p = reinterpret_cast<const float*>(s + 8 * k);  // 32-bit pixels, moved as floats
    const __m256 a = _mm256_loadu_ps(p), b = _mm256_loadu_ps(p + 8);      // e0 o0 e1 o1 e2 o2 e3 o3 | e4 ..
    const __m256 c = _mm256_loadu_ps(p - 1), e = _mm256_loadu_ps(p + 7);  // o-1 e0 o0 e1 o1 e2 o2 e3 | o3 ..
    const __m256i even = _mm256_castps_si256(_mm256_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)));
    const __m256i odd = _mm256_castps_si256(_mm256_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)));
    const __m256i left = _mm256_castps_si256(_mm256_shuffle_ps(c, e, _MM_SHUFFLE(2, 0, 2, 0)));
    auto filter = [&](int shift) {
      const __m256i l = _mm256_and_si256(_mm256_srli_epi32(left, shift), lowBytes);
      const __m256i m = _mm256_and_si256(_mm256_srli_epi32(even, shift), lowBytes);
      const __m256i r = _mm256_and_si256(_mm256_srli_epi32(odd, shift), lowBytes);
      const __m256i sum = _mm256_add_epi16(_mm256_add_epi16(l, _mm256_add_epi16(m, m)), _mm256_add_epi16(r, two));
      return _mm256_and_si256(_mm256_srli_epi16(sum, 2), byte);
    };
    const __m256i v = filter(0), u = filter(8);
    const __m256i y0 = _mm256_and_si256(_mm256_srli_epi32(even, 16), byte);
    const __m256i y1 = _mm256_and_si256(_mm256_srli_epi32(odd, 16), byte);
    const __m256i o = _mm256_or_si256(_mm256_or_si256(u, _mm256_slli_epi32(y0, 8)),
                                      _mm256_or_si256(_mm256_slli_epi32(v, 16), _mm256_slli_epi32(y1, 24)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 4 * k), _mm256_permute4x64_epi64(o, _MM_SHUFFLE(3, 1, 2, 0)));
  }
  DownsampleChroma8u(s, d, width, k);
}

struct YuvToRgb8u {
  float fY, fUB, fUG, fVG, fVR;
};
constexpr YuvToRgb8u k601 = {1.1643828f, 2.0172305f, -0.3917617f, -0.8129687f, 1.5960274f};
constexpr YuvToRgb8u k709 = {1.1643835f, 2.1124017f, -0.2132486f, -0.5329093f, 1.7927411f};

inline __m256 Widen(__m128i bytes8) { return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(bytes8)); }
inline __m256i To8u(__m256 x) {
  return _mm256_cvtps_epi32(_mm256_min_ps(_mm256_max_ps(x, _mm256_setzero_ps()), _mm256_set1_ps(255.0f)));
}

template <bool LumaFirst, const YuvToRgb8u& M, int MatrixMember>
void Yuv422ToBgr8u(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  constexpr int u = LumaFirst ? 1 : 0, y0 = LumaFirst ? 0 : 1, v = LumaFirst ? 3 : 2, y1 = LumaFirst ? 2 : 3;
  const __m128i lumaIdx = _mm_setr_epi8(y0, y1, y0 + 4, y1 + 4, y0 + 8, y1 + 8, y0 + 12, y1 + 12, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i evenU = _mm_setr_epi8(u, -1, u + 4, -1, u + 8, -1, u + 12, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i oddU = _mm_setr_epi8(-1, u, -1, u + 4, -1, u + 8, -1, u + 12, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i evenV = _mm_setr_epi8(v, -1, v + 4, -1, v + 8, -1, v + 12, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i oddV = _mm_setr_epi8(-1, v, -1, v + 4, -1, v + 8, -1, v + 12, -1, -1, -1, -1, -1, -1, -1, -1);
  const int32_t pairs = width > 0 ? (width + 1) / 2 : 0;
  int32_t k = 0;
  for (; k + 4 < pairs; k += 4) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * k));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * k + 4));
    const __m128i m = _mm_avg_epu8(a, b);
    const __m256 yv = _mm256_mul_ps(_mm256_sub_ps(Widen(_mm_shuffle_epi8(a, lumaIdx)), _mm256_set1_ps(16.0f)),
                                    _mm256_set1_ps(M.fY));
    const __m256 uv = _mm256_sub_ps(Widen(_mm_or_si128(_mm_shuffle_epi8(a, evenU), _mm_shuffle_epi8(m, oddU))),
                                    _mm256_set1_ps(128.0f));
    const __m256 vv = _mm256_sub_ps(Widen(_mm_or_si128(_mm_shuffle_epi8(a, evenV), _mm_shuffle_epi8(m, oddV))),
                                    _mm256_set1_ps(128.0f));
    const __m256 bf = _mm256_add_ps(yv, _mm256_mul_ps(uv, _mm256_set1_ps(M.fUB)));
    const __m256 gf = _mm256_add_ps(_mm256_add_ps(yv, _mm256_mul_ps(uv, _mm256_set1_ps(M.fUG))),
                                    _mm256_mul_ps(vv, _mm256_set1_ps(M.fVG)));
    const __m256 rf = _mm256_add_ps(yv, _mm256_mul_ps(vv, _mm256_set1_ps(M.fVR)));
    __m256i o = _mm256_set1_epi32(int32_t(0xFF000000u));
    o = _mm256_or_si256(o, To8u(bf));
    o = _mm256_or_si256(o, _mm256_slli_epi32(To8u(gf), 8));
    o = _mm256_or_si256(o, _mm256_slli_epi32(To8u(rf), 16));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 8 * k), o);
  }
  // The rest of the row, from an even pixel, looks only to its right: the chunked path.
  Yuv422ToBgr8uInChunks(&Yuv422ToVuy8u<LumaFirst>, MatrixMember, s + 4 * k, d + 8 * k, width - 2 * k);
}

}  // namespace

const RowConverter kSubsample[kSubsampleCount] = {
    &Vuy8uToUyvy8u,                    &portable::Vuy32fToUyvy32f,
    &Yuv422ToVuy8u<false>,             &Yuv422ToVuy8u<true>,
    &portable::Uyvy32fToVuy32f<false>, &portable::Uyvy32fToVuy32f<true>,
    &Yuv422ToBgr8u<false, k601, kVuy8uToBgr8u601>, &Yuv422ToBgr8u<false, k709, kVuy8uToBgr8u709>,
    &Yuv422ToBgr8u<true, k601, kVuy8uToBgr8u601>,  &Yuv422ToBgr8u<true, k709, kVuy8uToBgr8u709>};

}  // namespace OX::avx2
