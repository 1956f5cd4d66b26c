// V210 both ways. A width that is not a multiple of 6 ends in a partial group: it is expanded as
// a whole group of six and only the pixels in use are written; going into V210 the samples past
// the row are zero. The vector levels unpack and pack whole groups with shuffles and leave the
// partial group to the same scalar code as the portable form; RGB is computed on ten-bit values
// through the four-float pixel body, so every level gives the same bytes.
// Needs PixelVec.inl, V210.h, Subsample.h and, at the vector levels, UpsampleSsse3.inl.

namespace {

int32_t Groups(int32_t width) { return width > 0 ? (width + 5) / 6 : 0; }
int32_t Pairs(int32_t width) { return width > 0 ? (width + 1) / 2 : 0; }

// V210 to UYVY 8u, each ten-bit sample shifted right by 2, for the pairs from `k0` (a multiple
// of 3) on.
void V210ToUyvy8uFrom(const uint32_t* s, uint8_t* d, int32_t width, int32_t k0) {
  const int32_t pairs = Pairs(width);
  V210Group g;
  for (int32_t k = k0; k < pairs; ++k) {
    const int j = k % 3;
    if (j == 0) UnpackV210(s + 4 * (k / 3), g);
    d[4 * k] = uint8_t(g.u[j] >> 2);
    d[4 * k + 1] = uint8_t(g.y[2 * j] >> 2);
    d[4 * k + 2] = uint8_t(g.v[j] >> 2);
    d[4 * k + 3] = uint8_t(g.y[2 * j + 1] >> 2);
  }
}

void V210ToUyvy8u(const void* in, void* out, int32_t width) {
  const uint32_t* s = static_cast<const uint32_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  int32_t g = 0;
#if !defined(OX_PIXELVEC_PORTABLE)
  // A group's twelve samples in memory order are word 0's three slots, then word 1's, and so on,
  // which is UYVY order: take bits 2-9 of each slot and close the gaps with one shuffle.
  const __m128i byteMask = _mm_set1_epi32(0xFF);
  const __m128i squeeze = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  for (; 6 * g + 6 <= width; ++g) {
    const __m128i w = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * g));
    const __m128i s0 = _mm_and_si128(_mm_srli_epi32(w, 2), byteMask);
    const __m128i s1 = _mm_and_si128(_mm_srli_epi32(w, 12), byteMask);
    const __m128i s2 = _mm_and_si128(_mm_srli_epi32(w, 22), byteMask);
    const __m128i t = _mm_shuffle_epi8(_mm_or_si128(s0, _mm_or_si128(_mm_slli_epi32(s1, 8), _mm_slli_epi32(s2, 16))), squeeze);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d + 12 * g), t);
    const int32_t last = _mm_cvtsi128_si32(_mm_srli_si128(t, 8));
    std::memcpy(d + 12 * g + 8, &last, 4);
  }
#endif
  V210ToUyvy8uFrom(s, d, width, 3 * g);
}

// Chroma (c - 512) x 0.0011160715 (1/896), luma (y - 64) x 0.0011415525 (1/876).
void V210ToUyvy32f(const void* in, void* out, int32_t width) {
  const uint32_t* s = static_cast<const uint32_t*>(in);
  const int32_t pairs = Pairs(width);
  V210Group g;
  for (int32_t k = 0; k < pairs; ++k) {
    const int j = k % 3;
    if (j == 0) UnpackV210(s + 4 * (k / 3), g);
    StoreAt(out, 4 * k, (float(g.u[j]) - 512.0f) * 0.0011160715f);
    StoreAt(out, 4 * k + 1, (float(g.y[2 * j]) - 64.0f) * 0.0011415525f);
    StoreAt(out, 4 * k + 2, (float(g.v[j]) - 512.0f) * 0.0011160715f);
    StoreAt(out, 4 * k + 3, (float(g.y[2 * j + 1]) - 64.0f) * 0.0011415525f);
  }
}

// Into V210 from pairs given by `sample(k, i)` (i: 0 U, 1 Y0, 2 V, 3 Y1) as ten-bit codes, for
// the groups from `g0` on.
template <class SampleFn>
void PackRow(void* out, int32_t width, int32_t g0, SampleFn sample) {
  uint32_t* d = static_cast<uint32_t*>(out);
  for (int32_t gi = g0; gi < Groups(width); ++gi) {
    V210Group g = {};
    for (int j = 0; j < 3; ++j) {
      const int32_t k = 3 * gi + j;
      if (2 * k >= width) break;
      g.u[j] = sample(k, 0);
      g.y[2 * j] = sample(k, 1);
      g.v[j] = sample(k, 2);
      if (2 * k + 1 < width) g.y[2 * j + 1] = sample(k, 3);
    }
    PackV210(g, d + 4 * gi);
  }
}

void Uyvy8uToV210(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  int32_t g = 0;
#if !defined(OX_PIXELVEC_PORTABLE)
  // Twelve bytes a group become four words of three slots: spread each word's three bytes into
  // 32-bit lanes, then shift each into its slot (x 4 puts the 8-bit code in the ten-bit place).
  uint32_t* d = static_cast<uint32_t*>(out);
  const __m128i spread0 = _mm_setr_epi8(0, -1, -1, -1, 3, -1, -1, -1, 6, -1, -1, -1, 9, -1, -1, -1);
  const __m128i spread1 = _mm_setr_epi8(1, -1, -1, -1, 4, -1, -1, -1, 7, -1, -1, -1, 10, -1, -1, -1);
  const __m128i spread2 = _mm_setr_epi8(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1);
  for (; 6 * g + 6 <= width; ++g) {
    int32_t tail;
    std::memcpy(&tail, s + 12 * g + 8, 4);
    const __m128i b = _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(s + 12 * g)), _mm_cvtsi32_si128(tail));
    const __m128i w = _mm_or_si128(_mm_slli_epi32(_mm_shuffle_epi8(b, spread0), 2),
                                   _mm_or_si128(_mm_slli_epi32(_mm_shuffle_epi8(b, spread1), 12),
                                                _mm_slli_epi32(_mm_shuffle_epi8(b, spread2), 22)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 4 * g), w);
  }
#endif
  PackRow(out, width, g, [&](int32_t k, int i) { return uint32_t(s[4 * k + i]) * 4; });
}

// Chroma c x 896 + 512.5, luma y x 876 + 64.5, truncated; out-of-range values saturate to the
// ten-bit range.
void Uyvy32fToV210(const void* in, void* out, int32_t width) {
  PackRow(out, width, 0, [&](int32_t k, int i) {
    const bool luma = i & 1;
    const P x = Add(Mul(Set1P(LoadAt<float>(in, 4 * k + i)), Set1P(luma ? 876.0f : 896.0f)), Set1P(luma ? 64.5f : 512.5f));
    float f;
    std::memcpy(&f, &x, 4);
    const float c = f > 0.0f ? (f < 1023.0f ? f : 1023.0f) : 0.0f;  // NaN fails both tests: 0
    return uint32_t(int32_t(c));
  });
}

// Pixels x0 .. x0 + n - 1 of a V210 row as (v, u, y, 0) ten-bit samples with every pixel's own
// chroma: odd pixels take the mean of the two neighbouring pairs, rounded down, or their own
// pair's at the end of the row.
void ExpandTenBit(const uint32_t* s, int32_t width, int32_t x0, int32_t n, uint16_t* out) {
  V210Group g, next;
  for (int32_t x = x0; x < x0 + n; ++x) {
    const int32_t gi = x / 6, p = x % 6, j = p / 2;
    if (p == 0 || x == x0) UnpackV210(s + 4 * gi, g);
    uint32_t u = g.u[j], v = g.v[j];
    if ((p & 1) && x + 1 < width) {
      const V210Group* ng = &g;
      int jn = j + 1;
      if (j == 2) {
        UnpackV210(s + 4 * (gi + 1), next);
        ng = &next;
        jn = 0;
      }
      u = (u + ng->u[jn]) >> 1;
      v = (v + ng->v[jn]) >> 1;
    }
    uint16_t* o = out + 4 * (x - x0);
    o[0] = uint16_t(v);
    o[1] = uint16_t(u);
    o[2] = uint16_t(g.y[p]);
    o[3] = 0;
  }
}

constexpr int32_t kChunk = 240;  // pixels, a multiple of 6

void UpsampleRoundDown(const uint8_t* s, uint8_t* d, int32_t width) {
#if defined(OX_PIXELVEC_PORTABLE)
  UpsampleChroma8u<false>(s, d, width, [](int a, int b) { return (a + b) >> 1; });
#else
  Upsample422To444_8u<false, false>(s, d, width);
#endif
}

// To VUY? 8u: samples shifted right by 2, then the chroma of odd pixels the mean of the shifted
// neighbours, rounded down; alpha 255. A chunk is unpacked with one group more when the row goes
// on, so that its last odd pixel sees the next pair.
void V210ToVuy8u(const void* in, void* out, int32_t width) {
  const uint32_t* s = static_cast<const uint32_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  alignas(16) uint8_t uyvy[2 * (kChunk + 6) + 16];
  alignas(16) uint8_t vuya[4 * (kChunk + 6)];
  for (int32_t x = 0; x < width; x += kChunk) {
    const int32_t n = width - x < kChunk ? width - x : kChunk;
    const int32_t span = width - x < n + 6 ? width - x : n + 6;
    V210ToUyvy8u(s + 4 * (x / 6), uyvy, span);
    UpsampleRoundDown(uyvy, vuya, span);
    std::memcpy(d + 4 * x, vuya, 4 * size_t(n));
  }
}

// V210 709 to VUY? 8u 601: the same expansion, then the 709 to 601 step at 8u.
void V210_709ToVuy8u601(const void* in, void* out, int32_t width) {
  V210ToVuy8u(in, out, width);
  uint8_t* d = static_cast<uint8_t*>(out);
  alignas(16) uint8_t chunk[4 * kChunk];
  const RowConverter cross = ChooseYuv709_8u()[kVuy709To601_8u];
  for (int32_t x = 0; x < width; x += kChunk) {
    const int32_t n = width - x < kChunk ? width - x : kChunk;
    std::memcpy(chunk, d + 4 * x, 4 * size_t(n));
    cross(chunk, d + 4 * x, n);
  }
}

// To BGR? 8u on ten-bit values; rounded, clamped to 255; alpha 255.
struct TenBitMatrix {
  float fY, fUB, fUG, fVG, fVR;
};
constexpr TenBitMatrix k601 = {0.2910957f, 0.5043076f, -0.0979404f, -0.2032422f, 0.3990068f};
constexpr TenBitMatrix k709 = {0.2910957f, 0.5281004f, -0.0533122f, -0.1332273f, 0.4481853f};

// Pixels x0 .. x0 + n - 1 of the row, n at most kChunk.
template <const TenBitMatrix& M>
void V210ToBgr8uRange(const uint32_t* s, uint8_t* d, int32_t width, int32_t x0, int32_t n) {
  alignas(16) uint16_t tenBit[4 * kChunk];
  ExpandTenBit(s, width, x0, n, tenBit);
  ForEachGroup(n, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU16(tenBit + 4 * i);
    const V y = Sub(Bcast<2>(px), Vec<V>::Set1(64.0f));
    const V u = Sub(Bcast<1>(px), Vec<V>::Set1(512.0f));
    const V v = Sub(Bcast<0>(px), Vec<V>::Set1(512.0f));
    const V rgb = Add(Add(Mul(y, Vec<V>::Set(M.fY, M.fY, M.fY, 0)), Mul(u, Vec<V>::Set(M.fUB, M.fUG, 0, 0))),
                      Mul(v, Vec<V>::Set(0, M.fVG, M.fVR, 0)));
    StoreU8(d + 4 * (x0 + i),
            Select(Vec<V>::Lanes(false, false, false, true), RoundF(Clamp(rgb, 0.0f, 255.0f)), Vec<V>::Set1(255.0f)));
  });
}

template <const TenBitMatrix& M>
void V210ToBgr8u(const void* in, void* out, int32_t width) {
  for (int32_t x = 0; x < width; x += kChunk)
    V210ToBgr8uRange<M>(static_cast<const uint32_t*>(in), static_cast<uint8_t*>(out), width, x,
                        width - x < kChunk ? width - x : kChunk);
}

}  // namespace

#if !defined(OX_V210_OWN_TABLE)
const RowConverter kV210[kV210Count] = {&Uyvy8uToV210, &Uyvy32fToV210,      &V210ToUyvy8u,      &V210ToUyvy32f,
                                        &V210ToVuy8u,  &V210_709ToVuy8u601, &V210ToBgr8u<k601>, &V210ToBgr8u<k709>};
#endif
