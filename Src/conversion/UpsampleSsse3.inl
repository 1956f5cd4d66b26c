// 4:2:2 8u to VUYA 8u with byte shuffles, eight pixels a step, for the SSSE3 and AVX2 files.
// RoundUp picks the chroma mean of the odd pixels: rounded up as the average instruction gives
// it, or rounded down as the portable form computes it (average less the low bit of a ^ b).
// Needs <tmmintrin.h> and conversion/Subsample.h.

template <bool LumaFirst, bool RoundUp>
void Upsample422To444_8u(const uint8_t* s, uint8_t* d, int32_t width) {
  const int32_t pairs = width > 0 ? (width + 1) / 2 : 0;
  constexpr int u = LumaFirst ? 1 : 0, y0 = LumaFirst ? 0 : 1, v = LumaFirst ? 3 : 2, y1 = LumaFirst ? 2 : 3;
  const __m128i fromPairsLo = _mm_setr_epi8(v, u, y0, -1, -1, -1, y1, -1, v + 4, u + 4, y0 + 4, -1, -1, -1, y1 + 4, -1);
  const __m128i fromMeanLo = _mm_setr_epi8(-1, -1, -1, -1, v, u, -1, -1, -1, -1, -1, -1, v + 4, u + 4, -1, -1);
  const __m128i fromPairsHi =
      _mm_setr_epi8(v + 8, u + 8, y0 + 8, -1, -1, -1, y1 + 8, -1, v + 12, u + 12, y0 + 12, -1, -1, -1, y1 + 12, -1);
  const __m128i fromMeanHi = _mm_setr_epi8(-1, -1, -1, -1, v + 8, u + 8, -1, -1, -1, -1, -1, -1, v + 12, u + 12, -1, -1);
  const __m128i opaque = _mm_set1_epi32(int32_t(0xFF000000u));
  int32_t k = 0;
  // Four pairs a step while the pair after them lies inside the row (its chroma is needed).
  for (; k + 4 < pairs; k += 4) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * k));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * k + 4));
    __m128i m = _mm_avg_epu8(a, b);
    if constexpr (!RoundUp) m = _mm_sub_epi8(m, _mm_and_si128(_mm_xor_si128(a, b), _mm_set1_epi8(1)));
    const __m128i lo = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(a, fromPairsLo), _mm_shuffle_epi8(m, fromMeanLo)), opaque);
    const __m128i hi = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(a, fromPairsHi), _mm_shuffle_epi8(m, fromMeanHi)), opaque);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 8 * k), lo);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 8 * k + 16), hi);
  }
  if constexpr (RoundUp)
    UpsampleChroma8u<LumaFirst>(s, d, width, [](int a, int b) { return (a | b) - ((a ^ b) >> 1); }, 2 * k);
  else
    UpsampleChroma8u<LumaFirst>(s, d, width, [](int a, int b) { return (a + b) >> 1; }, 2 * k);
}
