// Alpha forms: premultiply and un-premultiply at 8u (RGB and YUV), 32f premultiply, 15u
// un-premultiply, opaque alpha at every depth, and the fused steps from 8u to premultiplied 32f.
// `Last` forms keep alpha in the fourth sample (BGRA, VUYA), `First` forms in the first (ARGB).
// One body over the four-float pixel vectors, so every level gives the same bytes.

namespace {

template <bool First>
constexpr int kAlphaLane = First ? 0 : 3;

template <class V, bool First>
V AlphaOf(V px) {
  if constexpr (First) return Bcast<0>(px);
  else return Bcast<3>(px);
}
template <class V, bool First>
auto AlphaLanes() {
  return Vec<V>::Lanes(First, false, false, !First);
}

// RGB 8u: c x A x 0.003921569, rounded, clamped. A = 0 gives zero colour, A = 255 gives the
// colour back (255 x 0.003921569 rounds to a hair above 1).
template <bool First>
void Premul8uRgb(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    const V c = RoundF(Clamp(Mul(Mul(px, AlphaOf<V, First>(px)), Vec<V>::Set1(0.003921569f)), 0.0f, 255.0f));
    StoreU8(d + 4 * i, Select(AlphaLanes<V, First>(), c, px));
  });
}

// YUV 8u: chroma about 128 and luma about 16 scale by a = A / 255, so a transparent pixel becomes
// neutral chroma at black level.
template <class V>
V YuvCentre() {
  return Vec<V>::Set(128, 128, 16, 0);
}

void Premul8uYuv(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    const V a = Div(Bcast<3>(px), Vec<V>::Set1(255.0f));
    const V c = RoundF(Clamp(Add(Mul(Sub(px, YuvCentre<V>()), a), YuvCentre<V>()), 0.0f, 255.0f));
    StoreU8(d + 4 * i, Select(AlphaLanes<V, false>(), c, px));
  });
}

// RGB 8u: A = 0 clears the pixel; otherwise c x 255 / A, rounded, clamped to 255.
template <bool First>
void Unpremul8uRgb(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    const V a = AlphaOf<V, First>(px);
    const V c = RoundF(Clamp(Div(Mul(px, Vec<V>::Set1(255.0f)), a), 0.0f, 255.0f));
    StoreU8(d + 4 * i, ZeroWhere(CmpEQ(a, Vec<V>::Set1(0.0f)), Select(AlphaLanes<V, First>(), c, px)));
  });
}

// YUV 8u: A = 0 gives the all-zero word, not neutral; otherwise the centred values times 255 / A.
void Unpremul8uYuv(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    const V a = Bcast<3>(px);
    const V c = RoundF(
        Clamp(Add(Div(Mul(Sub(px, YuvCentre<V>()), Vec<V>::Set1(255.0f)), a), YuvCentre<V>()), 0.0f, 255.0f));
    StoreU8(d + 4 * i, ZeroWhere(CmpEQ(a, Vec<V>::Set1(0.0f)), Select(AlphaLanes<V, false>(), c, px)));
  });
}

// 15u: A = 0 gives colour 0 with alpha copied (so all zero); otherwise c x 32768 / A, rounded,
// clamped to 32768.
template <bool First>
void Unpremul15u(const void* in, void* out, int32_t width) {
  const uint16_t* s = static_cast<const uint16_t*>(in);
  uint16_t* d = static_cast<uint16_t*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU16(s + 4 * i);
    const V a = AlphaOf<V, First>(px);
    const V c = RoundF(Clamp(Div(Mul(px, Vec<V>::Set1(32768.0f)), a), 0.0f, 32768.0f));
    StoreU16(d + 4 * i, ZeroWhere(CmpEQ(a, Vec<V>::Set1(0.0f)), Select(AlphaLanes<V, First>(), c, px)));
  });
}

// 32f: c x A, alpha copied. YUV samples are already centred, so no offsets arise.
template <bool First>
void Premul32f(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  float* d = static_cast<float*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadF32(s + 4 * i);
    StoreF32(d + 4 * i, Select(AlphaLanes<V, First>(), Mul(px, AlphaOf<V, First>(px)), px));
  });
}

// Opaque alpha: the colour samples are copied as they stand (premultiplied colour is not undone).
template <class T, bool First>
void Opaque(const void* in, void* out, int32_t width) {
  constexpr T kOpaque = sizeof(T) == 1 ? T(255) : sizeof(T) == 2 ? T(32768) : T(1);
  const ptrdiff_t n = width > 0 ? width : 0;
  std::memcpy(out, in, size_t(4 * n) * sizeof(T));
  for (ptrdiff_t i = 0; i < n; ++i) StoreAt(out, 4 * i + kAlphaLane<First>, kOpaque);
}

// The fused steps: the 8u to 32f range step, then the 32f premultiply, in one pass.
template <bool Yuv>
void Fused8uToPremul32f(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  float* d = static_cast<float*>(out);
  ForEachGroup(width, [&](auto tag, int32_t i) {
    using V = decltype(tag);
    const V px = Vec<V>::LoadU8(s + 4 * i);
    V v;
    if constexpr (Yuv)
      v = Mul(Sub(px, YuvCentre<V>()), Vec<V>::Set(0.004464286f, 0.004464286f, 0.00456621f, 0.003921569f));
    else
      v = Mul(px, Vec<V>::Set1(0.003921569f));
    StoreF32(d + 4 * i, Select(AlphaLanes<V, false>(), Mul(v, Bcast<3>(v)), v));
  });
}

}  // namespace

// A level with its own form of the YUV premultiply names it before including this body.
#if !defined(OX_ALPHA_PREMUL8U_YUV)
#define OX_ALPHA_PREMUL8U_YUV Premul8uYuv
#endif
const RowConverter kAlpha[kAlphaCount] = {
    &Premul8uRgb<false>,       &Premul8uRgb<true>,       &OX_ALPHA_PREMUL8U_YUV,
    &Unpremul8uRgb<false>,     &Unpremul8uRgb<true>,     &Unpremul8uYuv,
    &Unpremul15u<false>,       &Unpremul15u<true>,
    &Premul32f<false>,         &Premul32f<true>,
    &Opaque<uint8_t, false>,   &Opaque<uint8_t, true>,   &Opaque<uint16_t, false>, &Opaque<uint16_t, true>,
    &Opaque<float, false>,     &Opaque<float, true>,
    &Fused8uToPremul32f<true>, &Fused8uToPremul32f<false>};
