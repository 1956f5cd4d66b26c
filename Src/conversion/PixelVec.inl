// Pixel vectors for the four-channel converter bodies: one pixel as four floats (P), and at AVX and
// AVX2 two pixels in one 256-bit register (W), one pixel a 128-bit lane. Included inside the
// namespace of one instruction set (OX::portable, OX::sse2, ...), so every level compiles the same
// body with its own instructions. The portable P is four plain floats whose operations copy what
// the SSE instructions do, down to which operand a NaN comparison returns: every level computes the
// same operations in the same order and so gives the same bits.
//
// Rounding is done in the float domain on clamped values: adding and subtracting 1.5 * 2^23 rounds
// to nearest with ties to even for |x| < 2^22, exactly as the conversion instruction would, so the
// stores only ever convert exact integers.
//
// Needs, before inclusion: <cstdint>, <cstring>, and <immintrin.h> unless OX_PIXELVEC_PORTABLE.

constexpr float kRoundMagic = 12582912.0f;  // 1.5 * 2^23

#if defined(OX_PIXELVEC_PORTABLE)

struct P {
  float v[4];
};
struct PMask {
  bool b[4];
};
constexpr int kLanesP = 1;

inline P SetP(float a, float b, float c, float d) { return P{{a, b, c, d}}; }
inline P Set1P(float a) { return P{{a, a, a, a}}; }
#define OX_P_BINARY(name, expr)                                \
  inline P name(P x, P y) {                                    \
    P r;                                                       \
    for (int i = 0; i < 4; ++i) {                              \
      const float a = x.v[i], b = y.v[i];                      \
      r.v[i] = (expr);                                         \
    }                                                          \
    return r;                                                  \
  }
OX_P_BINARY(Add, a + b)
OX_P_BINARY(Sub, a - b)
OX_P_BINARY(Mul, a * b)
OX_P_BINARY(Div, a / b)
// As MINPS and MAXPS: the second operand when either is NaN.
OX_P_BINARY(Min, a < b ? a : b)
OX_P_BINARY(Max, a > b ? a : b)
#undef OX_P_BINARY
template <int c>
inline P Bcast(P x) {
  return Set1P(x.v[c]);
}
inline PMask CmpLT(P x, P y) { return PMask{{x.v[0] < y.v[0], x.v[1] < y.v[1], x.v[2] < y.v[2], x.v[3] < y.v[3]}}; }
inline PMask CmpEQ(P x, P y) {
  return PMask{{x.v[0] == y.v[0], x.v[1] == y.v[1], x.v[2] == y.v[2], x.v[3] == y.v[3]}};
}
inline PMask LaneMaskP(bool a, bool b, bool c, bool d) { return PMask{{a, b, c, d}}; }
// Lanes of `m` from `y`, others from `x`.
inline P Select(PMask m, P x, P y) {
  P r;
  for (int i = 0; i < 4; ++i) r.v[i] = m.b[i] ? y.v[i] : x.v[i];
  return r;
}
// Zero in the lanes of `m`, `x` elsewhere.
inline P ZeroWhere(PMask m, P x) {
  P r;
  for (int i = 0; i < 4; ++i) r.v[i] = m.b[i] ? 0.0f : x.v[i];
  return r;
}
inline P TruncF(P x) {
  P r;
  for (int i = 0; i < 4; ++i) r.v[i] = float(int32_t(x.v[i]));
  return r;
}
// The approximate reciprocal of the processor (RCPSS), unrefined.
inline P RcpApprox(P x) {
  P r;
  for (int i = 0; i < 4; ++i) r.v[i] = _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(x.v[i])));
  return r;
}
inline P LoadU8P(const uint8_t* p) { return SetP(p[0], p[1], p[2], p[3]); }
inline P LoadU16P(const uint16_t* p) {
  uint16_t v[4];
  std::memcpy(v, p, 8);
  return SetP(v[0], v[1], v[2], v[3]);
}
inline P LoadF32P(const float* p) {
  P r;
  std::memcpy(r.v, p, 16);
  return r;
}
// Stores exact integers already clamped to the sample's range.
inline void StoreU8(uint8_t* p, P x) {
  for (int i = 0; i < 4; ++i) p[i] = uint8_t(int32_t(x.v[i]));
}
inline void StoreU16(uint16_t* p, P x) {
  uint16_t v[4];
  for (int i = 0; i < 4; ++i) v[i] = uint16_t(int32_t(x.v[i]));
  std::memcpy(p, v, 8);
}
inline void StoreF32(float* p, P x) { std::memcpy(p, x.v, 16); }

#else  // vector levels

using P = __m128;
using PMask = __m128;
constexpr int kLanesP = 1;

inline P SetP(float a, float b, float c, float d) { return _mm_setr_ps(a, b, c, d); }
inline P Set1P(float a) { return _mm_set1_ps(a); }
inline P Add(P x, P y) { return _mm_add_ps(x, y); }
inline P Sub(P x, P y) { return _mm_sub_ps(x, y); }
inline P Mul(P x, P y) { return _mm_mul_ps(x, y); }
inline P Div(P x, P y) { return _mm_div_ps(x, y); }
inline P Min(P x, P y) { return _mm_min_ps(x, y); }
inline P Max(P x, P y) { return _mm_max_ps(x, y); }
template <int c>
inline P Bcast(P x) {
  return _mm_shuffle_ps(x, x, c * 0x55);
}
inline PMask CmpLT(P x, P y) { return _mm_cmplt_ps(x, y); }
inline PMask CmpEQ(P x, P y) { return _mm_cmpeq_ps(x, y); }
inline PMask LaneMaskP(bool a, bool b, bool c, bool d) {
  return _mm_castsi128_ps(_mm_setr_epi32(-int(a), -int(b), -int(c), -int(d)));
}
inline P Select(PMask m, P x, P y) {
#if defined(__SSE4_1__)
  return _mm_blendv_ps(x, y, m);
#else
  return _mm_or_ps(_mm_and_ps(m, y), _mm_andnot_ps(m, x));
#endif
}
inline P ZeroWhere(PMask m, P x) { return _mm_andnot_ps(m, x); }
inline P TruncF(P x) { return _mm_cvtepi32_ps(_mm_cvttps_epi32(x)); }
inline P RcpApprox(P x) { return _mm_rcp_ps(x); }
inline P LoadU8P(const uint8_t* p) {
  int32_t w;
  std::memcpy(&w, p, 4);
  const __m128i z = _mm_setzero_si128();
  return _mm_cvtepi32_ps(_mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(w), z), z));
}
inline P LoadU16P(const uint16_t* p) {
  return _mm_cvtepi32_ps(
      _mm_unpacklo_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), _mm_setzero_si128()));
}
inline P LoadF32P(const float* p) { return _mm_loadu_ps(p); }
inline __m128i PackU16(__m128i lo, __m128i hi) {
#if defined(__SSE4_1__)
  return _mm_packus_epi32(lo, hi);
#else
  // Values lie in 0..65535: shift into the signed range, pack, shift back.
  const __m128i bias = _mm_set1_epi32(32768);
  return _mm_xor_si128(_mm_packs_epi32(_mm_sub_epi32(lo, bias), _mm_sub_epi32(hi, bias)), _mm_set1_epi16(-32768));
#endif
}
inline void StoreU8(uint8_t* p, P x) {
  const __m128i i = _mm_cvttps_epi32(x);
  const __m128i b = _mm_packus_epi16(_mm_packs_epi32(i, i), _mm_setzero_si128());
  const int32_t w = _mm_cvtsi128_si32(b);
  std::memcpy(p, &w, 4);
}
inline void StoreU16(uint16_t* p, P x) {
  const __m128i i = _mm_cvttps_epi32(x);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), PackU16(i, i));
}
inline void StoreF32(float* p, P x) { _mm_storeu_ps(p, x); }

#if defined(__AVX__)
// Two pixels, one a 128-bit lane.
using W = __m256;
using WMask = __m256;
constexpr int kLanesW = 2;

inline W SetW(float a, float b, float c, float d) { return _mm256_setr_ps(a, b, c, d, a, b, c, d); }
inline W Set1W(float a) { return _mm256_set1_ps(a); }
inline W Add(W x, W y) { return _mm256_add_ps(x, y); }
inline W Sub(W x, W y) { return _mm256_sub_ps(x, y); }
inline W Mul(W x, W y) { return _mm256_mul_ps(x, y); }
inline W Div(W x, W y) { return _mm256_div_ps(x, y); }
inline W Min(W x, W y) { return _mm256_min_ps(x, y); }
inline W Max(W x, W y) { return _mm256_max_ps(x, y); }
template <int c>
inline W Bcast(W x) {
  return _mm256_permute_ps(x, c * 0x55);
}
inline WMask CmpLT(W x, W y) { return _mm256_cmp_ps(x, y, _CMP_LT_OQ); }
inline WMask CmpEQ(W x, W y) { return _mm256_cmp_ps(x, y, _CMP_EQ_OQ); }
inline WMask LaneMaskW(bool a, bool b, bool c, bool d) {
  return _mm256_castsi256_ps(_mm256_setr_epi32(-int(a), -int(b), -int(c), -int(d), -int(a), -int(b), -int(c), -int(d)));
}
inline W Select(WMask m, W x, W y) { return _mm256_blendv_ps(x, y, m); }
inline W ZeroWhere(WMask m, W x) { return _mm256_andnot_ps(m, x); }
inline W TruncF(W x) { return _mm256_cvtepi32_ps(_mm256_cvttps_epi32(x)); }
inline W RcpApprox(W x) { return _mm256_rcp_ps(x); }
inline W LoadU8W(const uint8_t* p) {
#if defined(__AVX2__)
  return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
#else
  const __m128i z = _mm_setzero_si128();
  const __m128i w = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), z);
  return _mm256_cvtepi32_ps(_mm256_setr_m128i(_mm_unpacklo_epi16(w, z), _mm_unpackhi_epi16(w, z)));
#endif
}
inline W LoadU16W(const uint16_t* p) {
#if defined(__AVX2__)
  return _mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
#else
  const __m128i z = _mm_setzero_si128();
  const __m128i w = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  return _mm256_cvtepi32_ps(_mm256_setr_m128i(_mm_unpacklo_epi16(w, z), _mm_unpackhi_epi16(w, z)));
#endif
}
inline W LoadF32W(const float* p) { return _mm256_loadu_ps(p); }
inline void StoreU8(uint8_t* p, W x) {
  const __m256i i = _mm256_cvttps_epi32(x);
  const __m128i h = _mm_packs_epi32(_mm256_castsi256_si128(i), _mm256_extractf128_si256(i, 1));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_packus_epi16(h, h));
}
inline void StoreU16(uint16_t* p, W x) {
  const __m256i i = _mm256_cvttps_epi32(x);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), PackU16(_mm256_castsi256_si128(i), _mm256_extractf128_si256(i, 1)));
}
inline void StoreF32(float* p, W x) { _mm256_storeu_ps(p, x); }
#endif  // __AVX__

#endif  // vector levels

// Typed access so one body serves P and W.
template <class V>
struct Vec;
template <>
struct Vec<P> {
  static constexpr int kPixels = 1;
  static P Set(float a, float b, float c, float d) { return SetP(a, b, c, d); }
  static P Set1(float a) { return Set1P(a); }
  static PMask Lanes(bool a, bool b, bool c, bool d) { return LaneMaskP(a, b, c, d); }
  static P LoadU8(const uint8_t* p) { return LoadU8P(p); }
  static P LoadU16(const uint16_t* p) { return LoadU16P(p); }
  static P LoadF32(const float* p) { return LoadF32P(p); }
};
#if !defined(OX_PIXELVEC_PORTABLE) && defined(__AVX__)
template <>
struct Vec<W> {
  static constexpr int kPixels = 2;
  static W Set(float a, float b, float c, float d) { return SetW(a, b, c, d); }
  static W Set1(float a) { return Set1W(a); }
  static WMask Lanes(bool a, bool b, bool c, bool d) { return LaneMaskW(a, b, c, d); }
  static W LoadU8(const uint8_t* p) { return LoadU8W(p); }
  static W LoadU16(const uint16_t* p) { return LoadU16W(p); }
  static W LoadF32(const float* p) { return LoadF32W(p); }
};
using Wide = W;
#else
using Wide = P;
#endif

// Round to nearest, ties to even, for |x| < 2^22.
template <class V>
inline V RoundF(V x) {
  const V m = Vec<V>::Set1(kRoundMagic);
  return Sub(Add(x, m), m);
}
template <class V>
inline V Clamp(V x, float lo, float hi) {
  return Min(Max(x, Vec<V>::Set1(lo)), Vec<V>::Set1(hi));
}
template <class V>
inline V ClampV(V x, V lo, V hi) {
  return Min(Max(x, lo), hi);
}

// Runs `step` over a row of four-sample groups: the widest vector first, single groups for the
// rest. `step` is a generic callable taking a vector tag and the group index.
template <class Step>
inline void ForEachGroup(int32_t count, Step&& step) {
  int32_t i = 0;
  constexpr int kWide = Vec<Wide>::kPixels;
  if constexpr (kWide > 1)
    for (; i + kWide <= count; i += kWide) step(Wide{}, i);
  for (; i < count; ++i) step(P{}, i);
}
