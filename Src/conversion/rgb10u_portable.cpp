// RGB_444_10u with the BGR? forms. One 32-bit word a pixel: red bits 22-31, green 12-21, blue
// 2-11, bits 0-1 zero. The word has no alpha: going to it alpha is dropped, coming from it alpha
// is opaque whatever the alpha form of the destination.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"

namespace {

uint32_t Word(uint32_t b, uint32_t g, uint32_t r) { return (b << 2) | (g << 12) | (r << 22); }
uint32_t Sample(uint32_t w, int c) { return (w >> (2 + 10 * c)) & 0x3FF; }  // c: 0 B, 1 G, 2 R

// From BGRP 8u: (c x 1023) / 255, truncated.
void FromBgr8u(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  auto ten = [](uint32_t c) { return c * 1023u / 255u; };
  for (int32_t i = 0; i < width; ++i) StoreAt(out, i, Word(ten(s[4 * i]), ten(s[4 * i + 1]), ten(s[4 * i + 2])));
}

// From BGR? 15u: (c x 1023) >> 15; samples above full scale saturate at 1023.
void FromBgr15u(const void* in, void* out, int32_t width) {
  auto ten = [&](int32_t i) {
    const uint32_t v = (uint32_t(LoadAt<uint16_t>(in, i)) * 1023u) >> 15;
    return v > 1023u ? 1023u : v;
  };
  for (int32_t i = 0; i < width; ++i) StoreAt(out, i, Word(ten(4 * i), ten(4 * i + 1), ten(4 * i + 2)));
}

// From BGR? 32f: clamp to 0.0-1.0, times 1023, + 0.5, truncated.
void FromBgr32f(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  for (int32_t i = 0; i < width; ++i) {
    const P x = TruncF(Add(Mul(Clamp(LoadF32P(s + 4 * i), 0.0f, 1.0f), Set1P(1023.0f)), Set1P(0.5f)));
    StoreAt(out, i, Word(uint32_t(x.v[0]), uint32_t(x.v[1]), uint32_t(x.v[2])));
  }
}

P Samples(uint32_t w) { return SetP(float(Sample(w, 0)), float(Sample(w, 1)), float(Sample(w, 2)), 0.0f); }
const PMask kAlphaLane = LaneMaskP(false, false, false, true);

// To 8u: round(c x 0.24926686), clamped; alpha 255.
void ToBgr8u(const void* in, void* out, int32_t width) {
  uint8_t* d = static_cast<uint8_t*>(out);
  for (int32_t i = 0; i < width; ++i) {
    const P c = RoundF(Clamp(Mul(Samples(LoadAt<uint32_t>(in, i)), Set1P(0.24926686f)), 0.0f, 255.0f));
    StoreU8(d + 4 * i, Select(kAlphaLane, c, Set1P(255.0f)));
  }
}

// To 15u: round(c x 32.03128), clamped to 32768; alpha 32768.
void ToBgr15u(const void* in, void* out, int32_t width) {
  uint16_t* d = static_cast<uint16_t*>(out);
  for (int32_t i = 0; i < width; ++i) {
    const P c = RoundF(Clamp(Mul(Samples(LoadAt<uint32_t>(in, i)), Set1P(32.03128f)), 0.0f, 32768.0f));
    StoreU16(d + 4 * i, Select(kAlphaLane, c, Set1P(32768.0f)));
  }
}

// To 32f: c x 0.0009775171; alpha 1.0.
void ToBgr32f(const void* in, void* out, int32_t width) {
  float* d = static_cast<float*>(out);
  for (int32_t i = 0; i < width; ++i)
    StoreF32(d + 4 * i, Select(kAlphaLane, Mul(Samples(LoadAt<uint32_t>(in, i)), Set1P(0.0009775171f)), Set1P(1.0f)));
}

}  // namespace

const RowConverter kRgb10u[kRgb10uCount] = {&FromBgr8u, &FromBgr15u, &FromBgr32f, &ToBgr8u, &ToBgr15u, &ToBgr32f};

}  // namespace OX::portable
