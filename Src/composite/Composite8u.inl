// The 8-bit composite kernels: the scalar pixel (the portable form, and the head and tail of the
// vector forms) and, where OX_COMPOSITE_VECTOR is defined, the vector body over a lane type V.
// Included inside one instruction set's namespace, so each level compiles its own copy.
//
// Needs, before inclusion: <array>, <cstdint>, <cstring>, <utility>, <xmmintrin.h>,
// "composite/CompositeCommon.h" and "composite/CompositeKernels.h". Defines Composite8uKernel.

namespace {

struct Kind {
  bool fYUV, fPremultiplied, fOpaqueSource, fOpaqueBackground;
};
constexpr Kind KindOf(int index) { return {(index & 8) != 0, (index & 4) != 0, (index & 2) != 0, (index & 1) != 0}; }

// Zero-point of each byte in the VUY forms: V and U about 128, Y about 16.
constexpr float kOffset[3] = {128.0f, 128.0f, 16.0f};

inline uint8_t StoreByte(float v) {
  v = v >= 0.0f ? v : 0.0f;  // NaN to 0
  v = v <= 255.0f ? v : 255.0f;
  return uint8_t(_mm_cvtss_si32(_mm_set_ss(v)));
}

// The opacity the kernels use: 1 once it comes within the tolerance of 1.
inline float ClampedOpacity(float opacity) { return opacity + kTolerance > 1.0f ? 1.0f : opacity; }
inline bool Tiny(float v) { return (v < 0 ? -v : v) < kTolerance; }

template <int kIndex>
inline void ScalarPixel(const uint8_t* s, const uint8_t* b, uint8_t* d, float o) {
  constexpr Kind k = KindOf(kIndex);
  const float a = k.fOpaqueSource ? o : float(s[3]) * o / 255.0f;
  const float sa255 = (k.fOpaqueSource ? 255.0f : float(s[3])) * o;
  const float ba255 = k.fOpaqueBackground ? 255.0f : float(b[3]);
  if (Tiny(a)) {
    if (k.fOpaqueBackground) {
      const uint8_t p[4] = {b[0], b[1], b[2], 255};
      std::memcpy(d, p, 4);
    } else {
      std::memmove(d, b, 4);
    }
    return;
  }
  uint8_t out[4];
  if (Tiny(1.0f - a)) {
    out[0] = s[0], out[1] = s[1], out[2] = s[2], out[3] = 255;
  } else if (!k.fOpaqueBackground && b[3] == 0) {
    for (int c = 0; c < 3; ++c) {
      const float sc = float(s[c]);
      if (!k.fPremultiplied) out[c] = s[c];
      else if (k.fYUV) out[c] = StoreByte((sc - kOffset[c]) * o + kOffset[c]);
      else out[c] = StoreByte(sc * o);
    }
    out[3] = StoreByte(sa255);
  } else {
    const float ia = 1.0f - a;
    if (!k.fPremultiplied) {
      const float a255 = sa255 + ba255 * ia;
      for (int c = 0; c < 3; ++c)
        out[c] = StoreByte((float(s[c]) * a + float(b[c]) * ia * ba255 / 255.0f) * 255.0f / a255);
      out[3] = StoreByte(a255);
    } else {
      for (int c = 0; c < 3; ++c) {
        const float sc = float(s[c]), bc = float(b[c]);
        out[c] = k.fYUV ? StoreByte((sc - kOffset[c]) * o + kOffset[c] + (bc - kOffset[c]) * ia)
                        : StoreByte(sc * o + bc * ia);
      }
      out[3] = StoreByte(sa255 + ba255 * ia);
    }
  }
  std::memcpy(d, out, 4);
}

template <int kIndex>
void ScalarRow(const uint8_t* s, const uint8_t* b, uint8_t* d, int32_t count, float o) {
  for (int32_t i = 0; i < count; ++i) ScalarPixel<kIndex>(s + 4 * i, b + 4 * i, d + 4 * i, o);
}

#if defined(OX_COMPOSITE_VECTOR)
// The same tree on V::kPixels pixels at once. Each lane takes the branch the scalar form takes;
// only 1/255 (multiplied) and the straight forms' division (approximate reciprocal) differ.
template <int kIndex>
inline void VectorGroup(const uint8_t* s, const uint8_t* b, uint8_t* d, float o) {
  constexpr Kind k = KindOf(kIndex);
  using F = typename V::F;
  const typename V::I sp = V::Load(s), bp = V::Load(b);
  const F one = V::Set(1.0f), tol = V::Set(kTolerance), k255 = V::Set(255.0f), vo = V::Set(o);
  const F sA = k.fOpaqueSource ? k255 : V::Channel(sp, 3);
  const F a = k.fOpaqueSource ? vo : V::Mul(V::Mul(sA, vo), V::Set(0.003921569f));
  const F sa255 = V::Mul(sA, vo);
  const F ba255 = k.fOpaqueBackground ? k255 : V::Channel(bp, 3);
  const F ia = V::Sub(one, a);
  const auto aTiny = V::Less(V::Abs(a), tol);
  const auto iaTiny = V::Less(V::Abs(ia), tol);
  // Whole-group shortcuts: every source transparent, or every one opaque.
  if (V::All(aTiny)) {
    if (k.fOpaqueBackground) V::Store(d, V::Or(bp, V::AlphaMask()));
    else V::Store(d, bp);
    return;
  }
  F out[4];
  if (!k.fPremultiplied) {
    const F a255 = V::Add(sa255, V::Mul(ba255, ia));
    F scale = V::Mul(V::Rcp(a255), k255);
    scale = V::AndNot(V::LessEq(a255, V::Set(7.62939453125e-06f)), scale);  // 2^-17 and below: 0
    const F bw = V::Mul(V::Mul(ia, ba255), V::Set(0.003921569f));
    for (int c = 0; c < 3; ++c)
      out[c] = V::Mul(V::Add(V::Mul(V::Channel(sp, c), a), V::Mul(V::Channel(bp, c), bw)), scale);
    out[3] = a255;
  } else {
    for (int c = 0; c < 3; ++c) {
      const F sc = V::Channel(sp, c), bc = V::Channel(bp, c);
      if (k.fYUV) {
        const F off = V::Set(kOffset[c]);
        out[c] = V::Add(V::Add(V::Mul(V::Sub(sc, off), vo), off), V::Mul(V::Sub(bc, off), ia));
      } else {
        out[c] = V::Add(V::Mul(sc, vo), V::Mul(bc, ia));
      }
    }
    out[3] = V::Add(sa255, V::Mul(ba255, ia));
  }
  if (!k.fOpaqueBackground) {
    // A background of zero alpha: the source colour (scaled in the premultiplied forms).
    const auto bZero = V::Equal(V::Channel(bp, 3), V::Set(0.0f));
    for (int c = 0; c < 3; ++c) {
      F alone = V::Channel(sp, c);
      if (k.fPremultiplied)
        alone = k.fYUV ? V::Add(V::Mul(V::Sub(alone, V::Set(kOffset[c])), vo), V::Set(kOffset[c])) : V::Mul(alone, vo);
      out[c] = V::Select(bZero, alone, out[c]);
    }
    out[3] = V::Select(bZero, sa255, out[3]);
  }
  for (int c = 0; c < 3; ++c) out[c] = V::Select(iaTiny, V::Channel(sp, c), out[c]);
  out[3] = V::Select(iaTiny, k255, out[3]);
  typename V::I result = V::Pack(out);
  // Transparent sources keep the background's bytes (alpha 255 over an opaque background).
  const typename V::I whole = k.fOpaqueBackground ? V::Or(bp, V::AlphaMask()) : bp;
  result = V::SelectI(aTiny, whole, result);
  V::Store(d, result);
}

template <int kIndex>
void VectorRow(const void* source, const void* background, void* output, int32_t count, float opacity) {
  if (count < 1) return;
  const float o = ClampedOpacity(opacity);
  const auto* s = static_cast<const uint8_t*>(source);
  const auto* b = static_cast<const uint8_t*>(background);
  auto* d = static_cast<uint8_t*>(output);
  // Scalar up to the first 16-byte-aligned destination pixel.
  int32_t head = int32_t(((16 - (reinterpret_cast<uintptr_t>(d) & 15)) & 15) / 4);
  if ((reinterpret_cast<uintptr_t>(d) & 3) != 0 || head > count) head = count;
  ScalarRow<kIndex>(s, b, d, head, o);
  int32_t i = head;
  for (; i + V::kPixels <= count; i += V::kPixels) VectorGroup<kIndex>(s + 4 * i, b + 4 * i, d + 4 * i, o);
  ScalarRow<kIndex>(s + 4 * i, b + 4 * i, d + 4 * i, count - i, o);
}
#endif

template <int kIndex>
void PortableRow(const void* source, const void* background, void* output, int32_t count, float opacity) {
  ScalarRow<kIndex>(static_cast<const uint8_t*>(source), static_cast<const uint8_t*>(background),
                    static_cast<uint8_t*>(output), count, ClampedOpacity(opacity));
}

}  // namespace

// The table of the sixteen kernels at this level.
namespace {
template <size_t... I>
constexpr std::array<CompositeKernel, sizeof...(I)> KernelTable(std::index_sequence<I...>) {
#if defined(OX_COMPOSITE_VECTOR)
  return {VectorRow<int(I)>...};
#else
  return {PortableRow<int(I)>...};
#endif
}
constexpr auto kKernelTable = KernelTable(std::make_index_sequence<kComposite8uKernels>());
}  // namespace

CompositeKernel Composite8uKernel(int index) {
  return index >= 0 && index < kComposite8uKernels ? kKernelTable[size_t(index)] : nullptr;
}
