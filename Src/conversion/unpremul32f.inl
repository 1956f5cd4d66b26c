// Un-premultiply at 32f. BGR and VUY order multiply by the processor's approximate reciprocal of
// alpha, unrefined, for speed; ARGB order divides exactly. The two differ in precision on purpose.
// Alpha below 8e-6 gives an all-zero pixel in both.

namespace {

constexpr float kAlphaFloor = 8e-6f;

template <bool First>
void Unpremul32f(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  float* d = static_cast<float*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadF32(s + 4 * i);
    V r;
    if constexpr (First) {
      const V a = Bcast<0>(px);
      r = Select(Vec<V>::Lanes(true, false, false, false), Mul(px, Div(Vec<V>::Set1(1.0f), a)), px);
      r = ZeroWhere(CmpLT(a, Vec<V>::Set1(kAlphaFloor)), r);
    } else {
      const V a = Bcast<3>(px);
      r = Select(Vec<V>::Lanes(false, false, false, true), Mul(px, RcpApprox(a)), px);
      r = ZeroWhere(CmpLT(a, Vec<V>::Set1(kAlphaFloor)), r);
    }
    StoreF32(d + 4 * i, r);
  });
}

}  // namespace

const RowConverter kUnpremul32f[kUnpremul32fCount] = {&Unpremul32f<false>, &Unpremul32f<true>};
