// 601 with 709 at 8u. The code values, less 128, 128, 16, go through the 32f matrix as they are:
// the matrix is not rescaled for the different 219 and 224 steps, on purpose, since that is what
// gives this step its values. + offsets + 0.5, truncated, clamped; the alpha byte is copied.
// At 4:2:2 the shared chroma of a pair serves both lumas.

namespace {

// Matrix of one direction: V' = a V + b U; U' = c V + d U; Y' = Y + e V + f U.
struct YuvMatrix {
  float a, b, c, d, e, f;
};
constexpr YuvMatrix k601To709 = {1.0253271f, 0.0750495f, 0.114618f, 1.0186397f, -0.2079376f, -0.1155498f};
constexpr YuvMatrix k709To601 = {0.9833978f, -0.072453f, -0.1106525f, 0.9898538f, 0.1916995f, 0.0993117f};

// Where each sample sits in a four-byte group.
enum class Layout { kVuya, kUyvy, kYuyv };

template <class V, Layout L>
V Convert(V px, const YuvMatrix& m) {
  V off, lumaLanes, k1, k2;
  if constexpr (L == Layout::kVuya) {
    off = Vec<V>::Set(128, 128, 16, 0);
    lumaLanes = Vec<V>::Set(0, 0, 1, 0);
    k1 = Vec<V>::Set(m.a, m.c, m.e, 0);
    k2 = Vec<V>::Set(m.b, m.d, m.f, 0);
  } else if constexpr (L == Layout::kUyvy) {
    off = Vec<V>::Set(128, 16, 128, 16);
    lumaLanes = Vec<V>::Set(0, 1, 0, 1);
    k1 = Vec<V>::Set(m.c, m.e, m.a, m.e);
    k2 = Vec<V>::Set(m.d, m.f, m.b, m.f);
  } else {
    off = Vec<V>::Set(16, 128, 16, 128);
    lumaLanes = Vec<V>::Set(1, 0, 1, 0);
    k1 = Vec<V>::Set(m.e, m.c, m.e, m.a);
    k2 = Vec<V>::Set(m.f, m.d, m.f, m.b);
  }
  constexpr int kV = L == Layout::kVuya ? 0 : L == Layout::kUyvy ? 2 : 3;
  constexpr int kU = L == Layout::kYuyv ? 1 : L == Layout::kUyvy ? 0 : 1;
  const V c = Sub(px, off);
  const V r = Add(Add(Mul(c, lumaLanes), Mul(Bcast<kV>(c), k1)), Mul(Bcast<kU>(c), k2));
  return TruncF(Clamp(Add(Add(r, off), Vec<V>::Set1(0.5f)), 0.0f, 255.0f));
}

template <Layout L, const YuvMatrix& M>
void Step(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  const int32_t groups = width <= 0 ? 0 : L == Layout::kVuya ? width : (width + 1) / 2;
  ForEachGroup(groups, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    V r = Convert<V, L>(px, M);
    if constexpr (L == Layout::kVuya) r = Select(Vec<V>::Lanes(false, false, false, true), r, px);
    StoreU8(d + 4 * i, r);
  });
}

}  // namespace

const RowConverter kYuv709_8u[kYuv709_8uCount] = {
    &Step<Layout::kVuya, k601To709>, &Step<Layout::kVuya, k709To601>, &Step<Layout::kUyvy, k601To709>,
    &Step<Layout::kUyvy, k709To601>, &Step<Layout::kYuyv, k601To709>, &Step<Layout::kYuyv, k709To601>};
