// Colour matrices between RGB and YUV that start or end at 8u. The constants are folded: the
// range scaling of studio YUV and of 8-bit RGB is inside each coefficient, so each step is one
// pass and not a chain through 32f. A pixel sits in one four-float vector; each output channel is
// a column of coefficients times a broadcast input channel, summed in the order of the formula.

namespace {

struct Columns {
  float fA[4], fB[4], fC[4];  // coefficients of the first, second and third term, by output lane
  float fOffset[4];
};
template <class V>
V Col(const float (&c)[4]) {
  return Vec<V>::Set(c[0], c[1], c[2], c[3]);
}

// BGR? 8u to VUY? 8u: R, G, B terms, + offset, + 0.5, truncated, clamped; alpha copied.
// Output lanes V, U, Y, A.
constexpr Columns kRgbToYuv601 = {{0.4392149f, -0.1482227f, 0.2567891f, 0},
                                  {-0.3677891f, -0.2909922f, 0.5041289f, 0},
                                  {-0.0714258f, 0.4392149f, 0.0979062f, 0},
                                  {128, 128, 16, 0}};
constexpr Columns kRgbToYuv709 = {{0.4392157f, -0.1006437f, 0.1825859f, 0},
                                  {-0.3989422f, -0.338572f, 0.6142306f, 0},
                                  {-0.0402735f, 0.4392157f, 0.0620071f, 0},
                                  {128, 128, 16, 0}};
// YUV 8u to BGR: (Y - 16), (U - 128), (V - 128) terms. Output lanes B, G, R, A.
constexpr Columns kYuvToRgb601 = {{1.1643828f, 1.1643828f, 1.1643828f, 0},
                                  {2.0172305f, -0.3917617f, 0, 0},
                                  {0, -0.8129687f, 1.5960274f, 0},
                                  {0, 0, 0, 0}};
constexpr Columns kYuvToRgb709 = {{1.1643835f, 1.1643835f, 1.1643835f, 0},
                                  {2.1124017f, -0.2132486f, 0, 0},
                                  {0, -0.5329093f, 1.7927411f, 0},
                                  {0, 0, 0, 0}};
constexpr Columns kYuvToRgb32f601 = {{0.00456621f, 0.00456621f, 0.00456621f, 0},
                                     {0.007910715f, -0.00153632f, 0, 0},
                                     {0, -0.003188108f, 0.006258927f, 0},
                                     {0, 0, 0, 0}};
constexpr Columns kYuvToRgb32f709 = {{0.00456621f, 0.00456621f, 0.00456621f, 0},
                                     {0.00828393f, -0.00083627f, 0, 0},
                                     {0, -0.00208984f, 0.00703036f, 0},
                                     {0, 0, 0, 0}};
// BGRA 32f to VUYA 8u: R, G, B terms, + offset; alpha 255 A; + 0.5, truncated, clamped.
constexpr Columns kRgb32fToYuv601 = {{112.0f, -37.79686f, 65.481f, 0},
                                     {-93.78611f, -74.20313f, 128.553f, 0},
                                     {-18.21389f, 112.0f, 24.966f, 0},
                                     {128, 128, 16, 0}};
constexpr Columns kRgb32fToYuv709 = {{112.0f, -25.66413f, 46.5594f, 0},
                                     {-101.73027f, -86.33588f, 156.6288f, 0},
                                     {-10.26973f, 112.0f, 15.8118f, 0},
                                     {128, 128, 16, 0}};

// RGB terms in R, G, B order from a BGR? pixel: lanes 2, 1, 0.
template <class V>
V RgbTerms(V px, const Columns& m) {
  return Add(Add(Add(Mul(Bcast<2>(px), Col<V>(m.fA)), Mul(Bcast<1>(px), Col<V>(m.fB))), Mul(Bcast<0>(px), Col<V>(m.fC))),
             Col<V>(m.fOffset));
}
// YUV terms in Y, U, V order from a VUY? pixel of 8u codes.
template <class V>
V YuvTerms(V px, const Columns& m) {
  const V y = Sub(Bcast<2>(px), Vec<V>::Set1(16.0f));
  const V u = Sub(Bcast<1>(px), Vec<V>::Set1(128.0f));
  const V v = Sub(Bcast<0>(px), Vec<V>::Set1(128.0f));
  return Add(Add(Mul(y, Col<V>(m.fA)), Mul(u, Col<V>(m.fB))), Mul(v, Col<V>(m.fC)));
}
template <class V>
V TruncClamp8u(V x) {
  return TruncF(Clamp(Add(x, Vec<V>::Set1(0.5f)), 0.0f, 255.0f));
}
template <const Columns& M>
void RgbToYuv(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    StoreU8(d + 4 * i, Select(Vec<V>::Lanes(false, false, false, true), TruncClamp8u(RgbTerms(px, M)), px));
  });
}

// Opaque: alpha of the result is 255 (the fast step from VUYX); otherwise alpha is copied.
template <const Columns& M, bool Opaque>
void YuvToRgb(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    const V rgb = RoundF(Clamp(YuvTerms(px, M), 0.0f, 255.0f));
    StoreU8(d + 4 * i, Select(Vec<V>::Lanes(false, false, false, true), rgb, Opaque ? Vec<V>::Set1(255.0f) : px));
  });
}

// To 32f: alpha A / 255 as a multiplication by the reciprocal.
template <const Columns& M>
void YuvToRgb32f(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  float* d = static_cast<float*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    const V a = Mul(px, Vec<V>::Set1(0.003921569f));
    StoreF32(d + 4 * i, Select(Vec<V>::Lanes(false, false, false, true), YuvTerms(px, M), a));
  });
}

template <const Columns& M>
void Rgb32fToYuv(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadF32(s + 4 * i);
    const V a = Mul(px, Vec<V>::Set1(255.0f));
    StoreU8(d + 4 * i, TruncClamp8u(Select(Vec<V>::Lanes(false, false, false, true), RgbTerms(px, M), a)));
  });
}

}  // namespace

#if !defined(OX_MATRIX8U_OWN_TABLE)
const RowConverter kMatrix8u[kMatrix8uCount] = {
    &RgbToYuv<kRgbToYuv601>,           &RgbToYuv<kRgbToYuv709>,
    &YuvToRgb<kYuvToRgb601, false>,    &YuvToRgb<kYuvToRgb709, false>,
    &YuvToRgb<kYuvToRgb601, true>,     &YuvToRgb<kYuvToRgb709, true>,
    &YuvToRgb32f<kYuvToRgb32f601>,     &YuvToRgb32f<kYuvToRgb32f709>,
    &Rgb32fToYuv<kRgb32fToYuv601>,     &Rgb32fToYuv<kRgb32fToYuv709>};
#endif
