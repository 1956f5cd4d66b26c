// Alpha forms with a single form: premultiply and un-premultiply at 8u (RGB and YUV), 32f
// premultiply, 15u un-premultiply, opaque alpha at every depth, and the fused steps from 8u to
// premultiplied 32f. `Last` forms keep alpha in the fourth sample (BGRA, VUYA), `First` forms in
// the first (ARGB).
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"

namespace {

template <class T>
const T* In(const void* p) {
  return static_cast<const T*>(p);
}
template <class T>
T* Out(void* p) {
  return static_cast<T*>(p);
}
template <bool First>
constexpr int kAlphaLane = First ? 0 : 3;
template <bool First>
PMask AlphaMask() {
  return LaneMaskP(First, false, false, !First);
}
template <bool First>
P Alpha(P px) {
  if constexpr (First) return Bcast<0>(px);
  return Bcast<3>(px);
}

// RGB 8u: c x A x 0.003921569, rounded, clamped. A = 0 gives zero colour, A = 255 gives the
// colour back (255 x 0.003921569 rounds to a hair above 1).
template <bool First>
void Premul8uRgb(const void* in, void* out, int32_t width) {
  for (int32_t i = 0; i < width; ++i) {
    const P px = LoadU8P(In<uint8_t>(in) + 4 * i);
    const P c = RoundF(Clamp(Mul(Mul(px, Alpha<First>(px)), Set1P(0.003921569f)), 0, 255));
    StoreU8(Out<uint8_t>(out) + 4 * i, Select(AlphaMask<First>(), c, px));
  }
}

// YUV 8u: chroma about 128 and luma about 16 scale by a = A / 255, so a transparent pixel becomes
// neutral chroma at black level.
const P kYuvCentre = SetP(128, 128, 16, 0);

void Premul8uYuv(const void* in, void* out, int32_t width) {
  for (int32_t i = 0; i < width; ++i) {
    const P px = LoadU8P(In<uint8_t>(in) + 4 * i);
    const P a = Div(Bcast<3>(px), Set1P(255.0f));
    const P c = RoundF(Clamp(Add(Mul(Sub(px, kYuvCentre), a), kYuvCentre), 0, 255));
    StoreU8(Out<uint8_t>(out) + 4 * i, Select(AlphaMask<false>(), c, px));
  }
}

// RGB 8u: A = 0 clears the pixel; otherwise c x 255 / A, rounded, clamped to 255.
template <bool First>
void Unpremul8uRgb(const void* in, void* out, int32_t width) {
  for (int32_t i = 0; i < width; ++i) {
    const uint8_t* s = In<uint8_t>(in) + 4 * i;
    uint8_t* d = Out<uint8_t>(out) + 4 * i;
    if (s[kAlphaLane<First>] == 0) {
      std::memset(d, 0, 4);
      continue;
    }
    const P px = LoadU8P(s);
    const P c = RoundF(Clamp(Div(Mul(px, Set1P(255.0f)), Alpha<First>(px)), 0, 255));
    StoreU8(d, Select(AlphaMask<First>(), c, px));
  }
}

// YUV 8u: A = 0 gives the all-zero word, not neutral; otherwise the centred values times 255 / A.
void Unpremul8uYuv(const void* in, void* out, int32_t width) {
  for (int32_t i = 0; i < width; ++i) {
    const uint8_t* s = In<uint8_t>(in) + 4 * i;
    uint8_t* d = Out<uint8_t>(out) + 4 * i;
    if (s[3] == 0) {
      std::memset(d, 0, 4);
      continue;
    }
    const P px = LoadU8P(s);
    const P c = RoundF(Clamp(Add(Div(Mul(Sub(px, kYuvCentre), Set1P(255.0f)), Bcast<3>(px)), kYuvCentre), 0, 255));
    StoreU8(d, Select(AlphaMask<false>(), c, px));
  }
}

// 15u: A = 0 gives colour 0 with alpha copied; otherwise c x 32768 / A, rounded, clamped to 32768.
template <bool First>
void Unpremul15u(const void* in, void* out, int32_t width) {
  for (int32_t i = 0; i < width; ++i) {
    const uint16_t* s = In<uint16_t>(in) + 4 * i;
    uint16_t* d = Out<uint16_t>(out) + 4 * i;
    const P px = LoadU16P(s);
    P c = RoundF(Clamp(Div(Mul(px, Set1P(32768.0f)), Alpha<First>(px)), 0, 32768));
    if (s[kAlphaLane<First>] == 0) c = Set1P(0);
    StoreU16(d, Select(AlphaMask<First>(), c, px));
  }
}

// 32f: c x A, alpha copied. YUV samples are already centred, so no offsets arise.
template <bool First>
void Premul32f(const void* in, void* out, int32_t width) {
  for (int32_t i = 0; i < width; ++i) {
    const P px = LoadF32P(In<float>(in) + 4 * i);
    StoreF32(Out<float>(out) + 4 * i, Select(AlphaMask<First>(), Mul(px, Alpha<First>(px)), px));
  }
}

// Opaque alpha: the colour samples are copied as they stand (premultiplied colour is not undone).
template <class T, bool First>
void Opaque(const void* in, void* out, int32_t width) {
  constexpr T kOpaque = sizeof(T) == 1 ? T(255) : sizeof(T) == 2 ? T(32768) : T(1);
  const T* s = In<T>(in);
  T* d = Out<T>(out);
  const size_t n = width > 0 ? size_t(width) : 0;
  std::memcpy(d, s, 4 * n * sizeof(T));
  for (size_t i = 0; i < n; ++i) d[4 * i + kAlphaLane<First>] = kOpaque;
}
template <bool First>
void Opaque32f(const void* in, void* out, int32_t width) {
  const size_t n = width > 0 ? size_t(width) : 0;
  std::memcpy(out, in, 16 * n);
  float* d = Out<float>(out);
  for (size_t i = 0; i < n; ++i) d[4 * i + kAlphaLane<First>] = 1.0f;
}

// VUYA 8u to VUYP 32f in one pass: the 8u to 32f range step, then the 32f premultiply.
void Vuya8uToVuyp32f(const void* in, void* out, int32_t width) {
  const P off = SetP(128, 128, 16, 0);
  const P k = SetP(0.004464286f, 0.004464286f, 0.00456621f, 0.003921569f);
  for (int32_t i = 0; i < width; ++i) {
    const P v = Mul(Sub(LoadU8P(In<uint8_t>(in) + 4 * i), off), k);
    StoreF32(Out<float>(out) + 4 * i, Select(AlphaMask<false>(), Mul(v, Bcast<3>(v)), v));
  }
}
// BGRA 8u to BGRP 32f in one pass.
void Bgra8uToBgrp32f(const void* in, void* out, int32_t width) {
  for (int32_t i = 0; i < width; ++i) {
    const P v = Mul(LoadU8P(In<uint8_t>(in) + 4 * i), Set1P(0.003921569f));
    StoreF32(Out<float>(out) + 4 * i, Select(AlphaMask<false>(), Mul(v, Bcast<3>(v)), v));
  }
}

}  // namespace

const RowConverter kAlpha[kAlphaCount] = {
    &Premul8uRgb<false>,   &Premul8uRgb<true>,   &Premul8uYuv,
    &Unpremul8uRgb<false>, &Unpremul8uRgb<true>, &Unpremul8uYuv,
    &Unpremul15u<false>,   &Unpremul15u<true>,
    &Premul32f<false>,     &Premul32f<true>,
    &Opaque<uint8_t, false>, &Opaque<uint8_t, true>, &Opaque<uint16_t, false>, &Opaque<uint16_t, true>,
    &Opaque32f<false>,     &Opaque32f<true>,
    &Vuya8uToVuyp32f,      &Bgra8uToBgrp32f};

}  // namespace OX::portable
