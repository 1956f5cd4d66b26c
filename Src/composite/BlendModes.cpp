// The blend modes. Pixels are B, G, R, A floats with straight alpha; samples may lie outside 0..1
// and only the formulas that clamp do so. Built without contraction of multiply-adds: every level
// runs this one form and the order of operations fixes the last bit.
#include "composite/BlendModes.h"

#include <climits>
#include <cmath>
#include <cstring>

#include "composite/CompositeCommon.h"
#include "platform/CRand.h"

#pragma GCC optimize("fp-contract=off")

namespace OX {
namespace {

inline bool Tiny(float v) { return (v < 0 ? -v : v) < kTolerance; }
// Clamped to 0..1 as "0 if 0 is greater, else the smaller of 1 and x" (NaN gives 1).
inline float Cl(float x) { return 0.0f > x ? 0.0f : (x < 1.0f ? x : 1.0f); }
inline float Cl(float x, float lo, float hi) { return lo > x ? lo : (x < hi ? x : hi); }

struct Pixel {
  float c[3], a;  // B, G, R, A
};
inline Pixel Load(const float* p) {
  Pixel x;
  std::memcpy(x.c, p, 12);
  x.a = p[3];
  return x;
}
inline void Store(float* p, const Pixel& x) {
  std::memcpy(p, x.c, 12);
  p[3] = x.a;
}

// ---- Separable modes: B(s, b) per colour sample. S and D are the clamped samples.
constexpr float kBurnFloor = 1e-7f;     // 1.0000000116860974e-07
constexpr float kDodgeCeiling = 0.99999f;
constexpr float kVividFloor = 1e-6f, kVividCeiling = 0.999999f;

template <int kMode>
inline float Blend(float s, float b) {
  const float S = Cl(s), D = Cl(b);
  if constexpr (kMode == 1) return Cl(1.0f - (1.0f - D) / Cl(s, kBurnFloor, 1.0f));
  if constexpr (kMode == 2) return Cl(D / (1.0f - Cl(s, 0.0f, kDodgeCeiling)));
  if constexpr (kMode == 3) return s < b ? s : b;
  if constexpr (kMode == 5) return std::fabs(s - b);
  if constexpr (kMode == 7) return Cl(S + D - (S + S) * D);
  if constexpr (kMode == 8) return Cl(S <= 0.5f ? (S + S) * D : 1.0f - (1.0f - S) * 2.0f * (1.0f - D));
  if constexpr (kMode == 9) return 1.0f - b > s ? 0.0f : 1.0f;
  if constexpr (kMode == 11) return s > b ? s : b;
  if constexpr (kMode == 13) return Cl(S - 1.0f + D);
  if constexpr (kMode == 14) return Cl(s + b);
  if constexpr (kMode == 15) return S - 1.0f + S + D;  // not clamped: may leave 0..1
  if constexpr (kMode == 17) return Cl(s * b);
  if constexpr (kMode == 19) return Cl(D <= 0.5f ? (S + S) * D : 1.0f - (1.0f - S) * 2.0f * (1.0f - D));
  if constexpr (kMode == 20) {
    const float p = S - 1.0f + S;
    return p > D ? p : ((S + S) < D ? S + S : D);
  }
  if constexpr (kMode == 22) return Cl(1.0f - (1.0f - Cl(s, kBurnFloor, 1.0f)) * (1.0f - Cl(b, kBurnFloor, 1.0f)));
  if constexpr (kMode == 23) {
    return S <= 0.5f ? Cl((S - 1.0f + S) * (D - D * D) + D) : Cl((S - 1.0f + S) * (std::sqrt(D) - D) + D);
  }
  if constexpr (kMode == 24) {
    const float v = Cl(s, kVividFloor, kVividCeiling);
    return Cl(v <= 0.5f ? 1.0f - (1.0f - D) / (v + v) : D / ((1.0f - v) * 2.0f));
  }
  if constexpr (kMode == 25) return Cl(D - S);
  if constexpr (kMode == 26) return Cl(D / Cl(s, kBurnFloor, 1.0f));
  return s;
}

// out.c = b.c (1 - k) + (s.c (1 - ab) + B ab) k: where the background is transparent the source
// shows as it is, where it is opaque the blend. Darken, Difference and Lighten take k = as x (1/ar).
template <int kMode>
void SeparableRow(const void* source, const void* background, void* output, int32_t count, float opacity) {
  const auto* sp = static_cast<const float*>(source);
  const auto* bp = static_cast<const float*>(background);
  auto* dp = static_cast<float*>(output);
  for (int32_t i = 0; i < count; ++i) {
    const Pixel s = Load(sp + 4 * i), b = Load(bp + 4 * i);
    const float as = s.a * opacity, ab = b.a, ar = ab + as - ab * as;
    Pixel out;
    out.a = ar;
    if (Tiny(ar)) {
      out.c[0] = out.c[1] = out.c[2] = 0.0f;
    } else {
      float k;
      if constexpr (kMode == 3 || kMode == 5 || kMode == 11) {
        const float r = 1.0f / ar;
        k = as * r;
      } else {
        k = as / ar;
      }
      for (int c = 0; c < 3; ++c)
        out.c[c] = b.c[c] * (1.0f - k) + (s.c[c] * (1.0f - ab) + Blend<kMode>(s.c[c], b.c[c]) * ab) * k;
    }
    Store(dp + 4 * i, out);
  }
}

// ---- Non-separable modes, on luminance and saturation.
constexpr float kLumR = 0.3f, kLumG = 0.59f, kLumB = 0.11f;
inline float Lum(const float t[3]) { return kLumR * t[2] + kLumG * t[1] + kLumB * t[0]; }
inline float L(const float t[3]) { return Cl(Lum(t)); }
inline float Smallest(const float t[3]) { return std::fmin(std::fmin(t[0], t[1]), t[2]); }
inline float Largest(const float t[3]) { return std::fmax(std::fmax(t[0], t[1]), t[2]); }
inline float Sat(const float t[3]) { return Cl(Largest(t) - Smallest(t)); }

// Gives t the saturation v keeping the order of its samples; ties settle by testing R, then G.
inline void SetSat(float t[3], float v) {
  float& R = t[2];
  float& G = t[1];
  float& B = t[0];
  const float lo = Smallest(t), hi = Largest(t);
  float *smallest, *middle, *largest;
  if (R == lo) {
    smallest = &R;
    if (G == hi) largest = &G, middle = &B;
    else largest = &B, middle = &G;
  } else if (R == hi) {
    largest = &R;
    if (G == lo) smallest = &G, middle = &B;
    else smallest = &B, middle = &G;
  } else {
    middle = &R;
    if (G == lo) smallest = &G, largest = &B;
    else smallest = &B, largest = &G;
  }
  if (*largest > *smallest) {
    *middle = (*middle - *smallest) * v / (*largest - *smallest);
    *largest = v;
  } else {
    *middle = *largest = 0.0f;
  }
  *smallest = 0.0f;
}

// Pulls the samples toward the luminance until they fit 0..1 (l, n and x taken before either step).
inline void BringIntoRange(float t[3]) {
  const float l = L(t), n = Smallest(t), x = Largest(t);
  if (0.0f > n)
    for (int c = 0; c < 3; ++c) t[c] = l + (t[c] - l) * l / (l - n);
  if (x > 1.0f)
    for (int c = 0; c < 3; ++c) t[c] = l + (t[c] - l) * (1.0f - l) / (x - l);
}

template <int kMode>
inline void Adjusted(const Pixel& s, const Pixel& b, float t[3]) {
  if constexpr (kMode == 0 || kMode == 16) {
    const Pixel& base = kMode == 0 ? s : b;
    const float shift = kMode == 0 ? L(b.c) - L(s.c) : L(s.c) - L(b.c);
    for (int c = 0; c < 3; ++c) t[c] = base.c[c] + shift;
  } else {
    float u[3];
    std::memcpy(u, kMode == 10 ? s.c : b.c, 12);
    SetSat(u, kMode == 10 ? Sat(b.c) : Sat(s.c));
    const float shift = L(b.c) - L(u);
    for (int c = 0; c < 3; ++c) t[c] = u[c] + shift;
  }
  BringIntoRange(t);
}

// The explicit frame: out.c = b.c (1 - as r) + T.c (ab + (1 - ab)) as r with r = 1 / ar; T fills
// the part the background leaves open too.
inline void ExplicitMix(const Pixel& b, const float t[3], float as, float ab, float ar, Pixel& out) {
  out.a = ar;
  if (Tiny(ar)) {
    out.c[0] = out.c[1] = out.c[2] = 0.0f;
    return;
  }
  const float r = 1.0f / ar;
  for (int c = 0; c < 3; ++c) out.c[c] = b.c[c] * (1.0f - as * r) + t[c] * (ab + (1.0f - ab)) * as * r;
}

template <int kMode>  // 18 and the non-separable modes 0, 10, 16, 21
void ExplicitRow(const void* source, const void* background, void* output, int32_t count, float opacity) {
  const auto* sp = static_cast<const float*>(source);
  const auto* bp = static_cast<const float*>(background);
  auto* dp = static_cast<float*>(output);
  for (int32_t i = 0; i < count; ++i) {
    const Pixel s = Load(sp + 4 * i), b = Load(bp + 4 * i);
    const float as = s.a * opacity, ab = b.a, ar = ab + as - ab * as;
    float t[3];
    if constexpr (kMode == 18) std::memcpy(t, s.c, 12);
    else Adjusted<kMode>(s, b, t);
    Pixel out;
    ExplicitMix(b, t, as, ab, ar, out);
    Store(dp + 4 * i, out);
  }
}

// Darker and Lighter Colour choose a whole pixel by luma; the weights follow the row length, so a
// row of 721 pixels or more is taken for high definition.
template <int kMode>
void ChooseRow(const void* source, const void* background, void* output, int32_t count, float opacity) {
  const bool hd = count >= 721;
  const float kr = hd ? 0.2126f : 0.299f, kg = hd ? 0.7152f : 0.587f, kb = hd ? 0.0722f : 0.114f;
  auto luma = [&](const Pixel& p) { return Cl(kr * p.c[2] + kg * p.c[1] + kb * p.c[0]); };
  const auto* sp = static_cast<const float*>(source);
  const auto* bp = static_cast<const float*>(background);
  auto* dp = static_cast<float*>(output);
  for (int32_t i = 0; i < count; ++i) {
    const Pixel s = Load(sp + 4 * i), b = Load(bp + 4 * i);
    const float as = s.a * opacity;
    Pixel out = b;
    if (!Tiny(as)) {
      if (Tiny(b.a)) {
        out = s;
        out.a = as;
      } else {
        const float ys = luma(s), yb = luma(b);
        if (kMode == 4 ? yb > ys : ys > yb) ExplicitMix(b, s.c, as, b.a, b.a + as - b.a * as, out);
      }
    }
    Store(dp + 4 * i, out);
  }
}

// Dissolve: each pixel wholly the source's or the background's, the source's with probability
// as, from the C library generator (0..32767).
void DissolveRow(const void* source, const void* background, void* output, int32_t count, float opacity) {
  const auto* sp = static_cast<const float*>(source);
  const auto* bp = static_cast<const float*>(background);
  auto* dp = static_cast<float*>(output);
  for (int32_t i = 0; i < count; ++i) {
    float s[4], b[4];
    std::memcpy(s, sp + 4 * i, 16);
    std::memcpy(b, bp + 4 * i, 16);
    const float as = s[3] * opacity;
    const float* out = b;
    if (!Tiny(as)) {
      const float scaled = as * 32767.0f;
      // Truncated toward zero; beyond the int range (or NaN) saturated, never undefined.
      const int32_t t = scaled >= 2147483520.0f ? INT32_MAX : scaled > -2147483648.0f ? int32_t(scaled) : INT32_MIN;
      if (t < 0 || crt::Rand() <= t) out = s;
    }
    std::memcpy(dp + 4 * i, out, 16);
  }
}

constexpr CompositeKernel kKernels[kBlendModeCount] = {
    ExplicitRow<0>,    SeparableRow<1>,  SeparableRow<2>,  SeparableRow<3>,  ChooseRow<4>,     SeparableRow<5>,
    DissolveRow,       SeparableRow<7>,  SeparableRow<8>,  SeparableRow<9>,  ExplicitRow<10>,  SeparableRow<11>,
    ChooseRow<12>,     SeparableRow<13>, SeparableRow<14>, SeparableRow<15>, ExplicitRow<16>,  SeparableRow<17>,
    ExplicitRow<18>,   SeparableRow<19>, SeparableRow<20>, ExplicitRow<21>,  SeparableRow<22>, SeparableRow<23>,
    SeparableRow<24>,  SeparableRow<25>, SeparableRow<26>};

constexpr const char* kNames[kBlendModeCount] = {
    "Color",     "ColorBurn",   "ColorDodge", "Darken",   "DarkerColor", "Difference", "Dissolve",
    "Exclusion", "HardLight",   "HardMix",    "Hue",      "Lighten",     "LighterColor", "LinearBurn",
    "LinearDodge", "LinearLight", "Luminosity", "Multiply", "Normal",    "Overlay",    "PinLight",
    "Saturation", "Screen",     "SoftLight",  "VividLight", "Subtract",  "Divide"};

}  // namespace

CompositeKernel BlendModeKernel(uint32_t mode) { return mode < uint32_t(kBlendModeCount) ? kKernels[mode] : nullptr; }
const char* BlendModeName(uint32_t mode) { return mode < uint32_t(kBlendModeCount) ? kNames[mode] : nullptr; }

}  // namespace OX
