// Colour matrices at 32f: YUV with RGB for both matrices, and 601 with 709 on YUV. One pixel a
// four-float vector; alpha passes through untouched.

namespace {

// out = first + c1 x term1 + c2 x term2, term by term in the order of the formula.
struct Matrix3 {
  int fFirst;         // lane of the input that comes in with weight 1 (-1: none)
  int fT1, fT2, fT3;  // lanes of the input for the weighted terms (fT3 < 0: two terms)
  float fK1[4], fK2[4], fK3[4];
};

// VUY? to BGR?: B = Y + 1.772 U; G = Y - 0.344136 U - 0.714136 V; R = Y + 1.402 V.
constexpr Matrix3 kYuv601ToRgb = {2, 1, 0, -1, {1.772f, -0.344136f, 0, 0}, {0, -0.714136f, 1.402f, 0}, {}};
constexpr Matrix3 kYuv709ToRgb = {2, 1, 0, -1, {1.8556f, -0.1873243f, 0, 0}, {0, -0.4681243f, 1.5748f, 0}, {}};
// BGR? to VUY?: R, G, B terms into lanes V, U, Y.
constexpr Matrix3 kRgbToYuv601 = {-1, 2, 1, 0, {0.5f, -0.168736f, 0.299f, 0}, {-0.418688f, -0.331264f, 0.587f, 0},
                                  {-0.081312f, 0.5f, 0.114f, 0}};
constexpr Matrix3 kRgbToYuv709 = {-1, 2, 1, 0, {0.5f, -0.114572f, 0.2126f, 0}, {-0.454153f, -0.385428f, 0.7152f, 0},
                                  {-0.045847f, 0.5f, 0.0722f, 0}};
// VUY? between matrices: V' = a V + b U; U' = c V + d U; Y' = Y + e V + f U.
constexpr Matrix3 kYuv601To709 = {2, 0, 1, -1, {1.0253271f, 0.114618f, -0.2079376f, 0},
                                  {0.0750495f, 1.0186397f, -0.1155498f, 0}, {}};
constexpr Matrix3 kYuv709To601 = {2, 0, 1, -1, {0.9833978f, -0.1106525f, 0.1916995f, 0},
                                  {-0.072453f, 0.9898538f, 0.0993117f, 0}, {}};

template <class V, int Lane>
V Term(V px, const float (&k)[4]) {
  return Mul(Bcast<Lane>(px), Vec<V>::Set(k[0], k[1], k[2], k[3]));
}
template <const Matrix3& M>
void Apply(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  float* d = static_cast<float*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadF32(s + 4 * i);
    V r;
    if constexpr (M.fFirst < 0) {
      r = Add(Add(Term<V, 2>(px, M.fK1), Term<V, 1>(px, M.fK2)), Term<V, 0>(px, M.fK3));
    } else if constexpr (M.fT1 == 1) {
      // Y + U term + V term, for all three colour lanes.
      r = Add(Add(Bcast<2>(px), Term<V, 1>(px, M.fK1)), Term<V, 0>(px, M.fK2));
    } else {
      // V' and U' are two weighted terms; Y' adds the terms to Y.
      const V first = Mul(px, Vec<V>::Set(0, 0, 1, 0));
      r = Add(Add(first, Term<V, 0>(px, M.fK1)), Term<V, 1>(px, M.fK2));
    }
    StoreF32(d + 4 * i, Select(Vec<V>::Lanes(false, false, false, true), r, px));
  });
}

}  // namespace

// A level with its own form of the step names it before including this body.
#if !defined(OX_MATRIX32F_APPLY)
#define OX_MATRIX32F_APPLY Apply
#endif
const RowConverter kMatrix32f[kMatrix32fCount] = {
    &OX_MATRIX32F_APPLY<kYuv601ToRgb>, &OX_MATRIX32F_APPLY<kYuv709ToRgb>, &OX_MATRIX32F_APPLY<kRgbToYuv601>,
    &OX_MATRIX32F_APPLY<kRgbToYuv709>, &OX_MATRIX32F_APPLY<kYuv601To709>, &OX_MATRIX32F_APPLY<kYuv709To601>};
