// Subsampling, SSE2 form: VUY? 8u to UYVY 8u four pairs a step. The even pixels, the odd pixels
// and the odd pixels one to the left are gathered as 32-bit lanes; V and U are summed in 16-bit
// lanes, (a + 2 b + c + 2) >> 2, and the pair is built as U' Y0 V' Y1. The first pair and the end
// of the row take the scalar rule. The other members are the portable forms at this level.
#include <emmintrin.h>

#include "conversion/ConverterFamilies.h"
#include "conversion/Subsample.h"

namespace OX::sse2 {

void Vuy8uToUyvy8u(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  DownsampleChroma8u(s, d, width < 2 ? width : 2, 0);  // the first pair, with its edge rule
  const __m128i lowBytes = _mm_set1_epi32(0x00FF00FF), byte = _mm_set1_epi32(0xFF), two = _mm_set1_epi16(2);
  int32_t k = 1;
  for (; 2 * (k + 3) + 1 < width; k += 4) {
    const float* p = reinterpret_cast<const float*>(s + 8 * k);  // 32-bit pixels, moved as floats
    const __m128 a = _mm_loadu_ps(p), b = _mm_loadu_ps(p + 4);       // e0 o0 e1 o1 | e2 o2 e3 o3
    const __m128 c = _mm_loadu_ps(p - 1), e = _mm_loadu_ps(p + 3);   // o-1 e0 o0 e1 | o1 e2 o2 e3
    const __m128i even = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)));
    const __m128i odd = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128i left = _mm_castps_si128(_mm_shuffle_ps(c, e, _MM_SHUFFLE(2, 0, 2, 0)));
    // Low 16 bits of each lane: V in its low byte; the same after a shift by 8: U.
    auto filter = [&](int shift) {
      const __m128i l = _mm_and_si128(_mm_srli_epi32(left, shift), lowBytes);
      const __m128i m = _mm_and_si128(_mm_srli_epi32(even, shift), lowBytes);
      const __m128i r = _mm_and_si128(_mm_srli_epi32(odd, shift), lowBytes);
      const __m128i sum = _mm_add_epi16(_mm_add_epi16(l, _mm_add_epi16(m, m)), _mm_add_epi16(r, two));
      return _mm_and_si128(_mm_srli_epi16(sum, 2), byte);
    };
    const __m128i v = filter(0), u = filter(8);
    const __m128i y0 = _mm_and_si128(_mm_srli_epi32(even, 16), byte);
    const __m128i y1 = _mm_and_si128(_mm_srli_epi32(odd, 16), byte);
    const __m128i o = _mm_or_si128(_mm_or_si128(u, _mm_slli_epi32(y0, 8)), _mm_or_si128(_mm_slli_epi32(v, 16), _mm_slli_epi32(y1, 24)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 4 * k), o);
  }
  DownsampleChroma8u(s, d, width, k);
}

const RowConverter kSubsample[kSubsampleCount] = {
    &Vuy8uToUyvy8u,
    &portable::Vuy32fToUyvy32f,
    &portable::Yuv422ToVuy8u<false>,
    &portable::Yuv422ToVuy8u<true>,
    &portable::Uyvy32fToVuy32f<false>,
    &portable::Uyvy32fToVuy32f<true>,
    &portable::Yuv422ToBgr8u<false, kVuy8uToBgr8u601>,
    &portable::Yuv422ToBgr8u<false, kVuy8uToBgr8u709>,
    &portable::Yuv422ToBgr8u<true, kVuy8uToBgr8u601>,
    &portable::Yuv422ToBgr8u<true, kVuy8uToBgr8u709>};

}  // namespace OX::sse2
