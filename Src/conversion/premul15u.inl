// Premultiply at 15u: c x A x 3.0517578e-5, rounded, clamped to 32768; alpha copied.

namespace {

template <bool First>
void Premul15u(const void* in, void* out, int32_t width) {
  const uint16_t* s = static_cast<const uint16_t*>(in);
  uint16_t* d = static_cast<uint16_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU16(s + 4 * i);
    V a;
    if constexpr (First) a = Bcast<0>(px);
    else a = Bcast<3>(px);
    const V c = RoundF(Clamp(Mul(Mul(px, a), Vec<V>::Set1(3.0517578e-5f)), 0.0f, 32768.0f));
    StoreU16(d + 4 * i, Select(Vec<V>::Lanes(First, false, false, !First), c, px));
  });
}

}  // namespace

const RowConverter kPremul15u[kPremul15uCount] = {&Premul15u<false>, &Premul15u<true>};
