// 16u to 15u in place, vector form: round(s x 0.50000304), clamped to 0-65535. One pixel alone
// when the row does not start 16-byte aligned, then two pixels a step, then an odd last pixel
// alone; single pixels take the same arithmetic on a half register.

namespace {

inline __m128i Scale8(__m128i x, bool swapBytes) {
  if (swapBytes) x = _mm_shuffle_epi8(x, _mm_setr_epi8(1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14));
  const __m128i z = _mm_setzero_si128();
  const __m128 k = _mm_set1_ps(0.50000304f);
  const __m128i lo = _mm_cvtps_epi32(_mm_mul_ps(_mm_cvtepi32_ps(_mm_unpacklo_epi16(x, z)), k));
  const __m128i hi = _mm_cvtps_epi32(_mm_mul_ps(_mm_cvtepi32_ps(_mm_unpackhi_epi16(x, z)), k));
#if defined(__SSE4_1__)
  return _mm_packus_epi32(lo, hi);
#else
  // At most 32768 here: shift into the signed range, pack, shift back.
  const __m128i bias = _mm_set1_epi32(32768);
  return _mm_xor_si128(_mm_packs_epi32(_mm_sub_epi32(lo, bias), _mm_sub_epi32(hi, bias)), _mm_set1_epi16(-32768));
#endif
}

inline void ScalePixel(uint16_t* p, bool swapBytes) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), Scale8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), swapBytes));
}

}  // namespace

void Scale16uTo15u(uint16_t* row, int32_t width, bool swapBytes) {
  int32_t i = 0;
  if (width > 0 && (reinterpret_cast<uintptr_t>(row) & 15) != 0) ScalePixel(row, swapBytes), i = 1;
  for (; i + 2 <= width; i += 2) {
    __m128i* p = reinterpret_cast<__m128i*>(row + 4 * i);
    _mm_storeu_si128(p, Scale8(_mm_loadu_si128(p), swapBytes));
  }
  if (i < width) ScalePixel(row + 4 * i, swapBytes);
}
