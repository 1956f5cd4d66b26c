// The composite and blend kernels against references written in double from their formulas, and
// the 8-bit vector forms against the portable ones.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "composite/BlendModes.h"
#include "composite/CompositeKernels.h"
#include "platform/CRand.h"
#include "support/LevelHarnessTwoInput.h"

namespace {

constexpr double kTol = 7.999999979801942e-06;
bool Tiny(double v) { return std::fabs(v) < kTol; }

// ---- Float kernels of the plain composite.
void FloatReference(int index, const float* s, const float* b, double opacity, double out[4]) {
  const bool premultiplied = index & 4, opaqueSource = index & 2, opaqueBackground = index & 1;
  const double o = double(float(opacity) + float(kTol)) > 1.0 ? 1.0 : double(float(opacity));
  const double a = opaqueSource ? o : double(float(s[3] * float(o)));
  if (Tiny(a)) {
    for (int c = 0; c < 4; ++c) out[c] = b[c];
    if (opaqueBackground) out[3] = 1;
  } else if (Tiny(1 - a)) {
    for (int c = 0; c < 3; ++c) out[c] = s[c];
    out[3] = 1;
  } else if (!opaqueBackground && Tiny(b[3])) {
    for (int c = 0; c < 3; ++c) out[c] = premultiplied ? s[c] * o : s[c];
    out[3] = a;
  } else {
    const double ba = opaqueBackground ? 1.0 : b[3];
    if (!premultiplied) {
      const double A = (1 - a) * ba + a;
      for (int c = 0; c < 3; ++c) out[c] = (s[c] * a + b[c] * (1 - a) * ba) / A;
      out[3] = A;
    } else {
      for (int c = 0; c < 3; ++c) out[c] = s[c] * o + b[c] * (1 - a);
      out[3] = a + ba * (1 - a);
    }
  }
}

float RandomSample(std::mt19937& rng) {
  switch (rng() % 8) {
    case 0: return 0.0f;
    case 1: return 1.0f;
    default: return std::uniform_real_distribution<float>(-0.25f, 1.25f)(rng);
  }
}
float RandomAlpha(std::mt19937& rng) {
  switch (rng() % 6) {
    case 0: return 0.0f;
    case 1: return 1.0f;
    case 2: return std::uniform_real_distribution<float>(1.0f, 1.3f)(rng);
    default: return std::uniform_real_distribution<float>(0.0f, 1.0f)(rng);
  }
}

TEST(CompositeKernels, FloatKernelsFollowTheirFormulas) {
  std::mt19937 rng(1);
  const float opacities[] = {0.0f, 4e-6f, 0.3f, 0.999995f, 1.0f, 1.5f};
  for (int index = 0; index < OX::kCompositeFloatKernels; ++index) {
    const OX::CompositeKernel kernel = OX::CompositeFloatKernel(index);
    for (float opacity : opacities) {
      constexpr int n = 200;
      std::vector<float> s(4 * n), b(4 * n), d(4 * n);
      for (int i = 0; i < n; ++i) {
        for (int c = 0; c < 3; ++c) s[4 * i + c] = RandomSample(rng), b[4 * i + c] = RandomSample(rng);
        s[4 * i + 3] = RandomAlpha(rng), b[4 * i + 3] = RandomAlpha(rng);
      }
      kernel(s.data(), b.data(), d.data(), n, opacity);
      for (int i = 0; i < n; ++i) {
        double want[4];
        FloatReference(index, &s[4 * i], &b[4 * i], opacity, want);
        for (int c = 0; c < 4; ++c)
          ASSERT_NEAR(d[4 * i + c], want[c], 2e-6 * std::max(1.0, std::fabs(want[c])))
              << "kernel " << index << " opacity " << opacity << " pixel " << i << " channel " << c;
      }
    }
  }
}

// ---- Blend modes.
double Cl(double x, double lo = 0, double hi = 1) { return lo > x ? lo : std::min(hi, x); }

double SeparableB(int mode, double s, double b) {
  const double S = Cl(s), D = Cl(b);
  switch (mode) {
    case 1: return Cl(1 - (1 - D) / Cl(s, 1e-7f, 1));
    case 2: return Cl(D / (1 - Cl(s, 0, 0.99999f)));
    case 3: return std::min(s, b);
    case 5: return std::fabs(s - b);
    case 7: return Cl(S + D - 2 * S * D);
    case 8: return Cl(S <= 0.5 ? 2 * S * D : 1 - (1 - S) * 2 * (1 - D));
    case 9: return 1 - b > s ? 0 : 1;
    case 11: return std::max(s, b);
    case 13: return Cl(S - 1 + D);
    case 14: return Cl(s + b);
    case 15: return 2 * S - 1 + D;
    case 17: return Cl(s * b);
    case 19: return Cl(D <= 0.5 ? 2 * S * D : 1 - (1 - S) * 2 * (1 - D));
    case 20: return 2 * S - 1 > D ? 2 * S - 1 : std::min(2 * S, D);
    case 22: return Cl(1 - (1 - Cl(s, 1e-7f, 1)) * (1 - Cl(b, 1e-7f, 1)));
    case 23: return S <= 0.5 ? Cl((2 * S - 1) * (D - D * D) + D) : Cl((2 * S - 1) * (std::sqrt(D) - D) + D);
    case 24: {
      const double v = Cl(s, 1e-6f, 0.999999f);
      return Cl(v <= 0.5 ? 1 - (1 - D) / (2 * v) : D / ((1 - v) * 2));
    }
    case 25: return Cl(D - S);
    case 26: return Cl(D / Cl(s, 1e-7f, 1));
  }
  return s;
}

// Colours are B, G, R.
double Lum(const double t[3]) { return 0.3 * t[2] + 0.59 * t[1] + 0.11 * t[0]; }
double L(const double t[3]) { return Cl(Lum(t)); }
void SetSat(double t[3], double v) {
  int order[3] = {0, 1, 2};  // indices sorted by value, ties: R before G before B as the smaller
  std::sort(order, order + 3, [&](int x, int y) { return t[x] < t[y] || (t[x] == t[y] && x > y); });
  const int lo = order[0], mid = order[1], hi = order[2];
  if (t[hi] > t[lo]) {
    t[mid] = (t[mid] - t[lo]) * v / (t[hi] - t[lo]);
    t[hi] = v;
  } else {
    t[mid] = t[hi] = 0;
  }
  t[lo] = 0;
}
void BringIntoRange(double t[3]) {
  const double l = L(t), n = std::min({t[0], t[1], t[2]}), x = std::max({t[0], t[1], t[2]});
  if (0 > n)
    for (int c = 0; c < 3; ++c) t[c] = l + (t[c] - l) * l / (l - n);
  if (x > 1)
    for (int c = 0; c < 3; ++c) t[c] = l + (t[c] - l) * (1 - l) / (x - l);
}

void BlendReference(int mode, const float* sf, const float* bf, double opacity, int count, double out[4]) {
  double s[3] = {sf[0], sf[1], sf[2]}, b[3] = {bf[0], bf[1], bf[2]};
  const double as = double(sf[3]) * opacity, ab = bf[3], ar = ab + as - ab * as;
  auto mix = [&](const double t[3]) {
    out[3] = ar;
    for (int c = 0; c < 3; ++c) out[c] = Tiny(ar) ? 0 : b[c] * (1 - as / ar) + t[c] * as / ar;
  };
  if (mode == 4 || mode == 12) {
    const bool hd = count >= 721;
    const double kr = hd ? 0.2126 : 0.299, kg = hd ? 0.7152 : 0.587, kb = hd ? 0.0722 : 0.114;
    auto y = [&](const double* p) { return Cl(kr * p[2] + kg * p[1] + kb * p[0]); };
    for (int c = 0; c < 4; ++c) out[c] = bf[c];
    if (Tiny(as)) return;
    if (Tiny(ab)) {
      for (int c = 0; c < 3; ++c) out[c] = s[c];
      out[3] = as;
      return;
    }
    if (mode == 4 ? y(b) > y(s) : y(s) > y(b)) mix(s);
    return;
  }
  double t[3];
  switch (mode) {
    case 0:
    case 16: {
      const double* base = mode == 0 ? s : b;
      const double shift = mode == 0 ? L(b) - L(s) : L(s) - L(b);
      for (int c = 0; c < 3; ++c) t[c] = base[c] + shift;
      BringIntoRange(t);
      return mix(t);
    }
    case 10:
    case 21: {
      double u[3];
      std::memcpy(u, mode == 10 ? s : b, sizeof u);
      auto sat = [](const double* p) { return Cl(std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]})); };
      SetSat(u, mode == 10 ? sat(b) : sat(s));
      const double shift = L(b) - L(u);
      for (int c = 0; c < 3; ++c) t[c] = u[c] + shift;
      BringIntoRange(t);
      return mix(t);
    }
    case 18: return mix(s);
  }
  out[3] = ar;
  for (int c = 0; c < 3; ++c) {
    const double k = Tiny(ar) ? 0 : as / ar;
    out[c] = Tiny(ar) ? 0 : b[c] * (1 - k) + (s[c] * (1 - ab) + SeparableB(mode, s[c], b[c]) * ab) * k;
  }
}

TEST(BlendModes, EveryModeFollowsItsFormula) {
  std::mt19937 rng(2);
  for (int mode = 0; mode < OX::kBlendModeCount; ++mode) {
    if (mode == 6) continue;  // random: below
    const OX::CompositeKernel kernel = OX::BlendModeKernel(uint32_t(mode));
    ASSERT_NE(kernel, nullptr);
    const double tolerance = (mode == 0 || mode == 10 || mode == 16 || mode == 21) ? 1e-4 : 2e-6;
    for (int count : {300, 721}) {
      for (float opacity : {0.0f, 0.6f, 1.0f, 1.5f}) {
        std::vector<float> s(4 * size_t(count)), b(4 * size_t(count)), d(4 * size_t(count));
        for (int i = 0; i < 4 * count; ++i) s[i] = RandomSample(rng), b[i] = RandomSample(rng);
        for (int i = 0; i < count; ++i) s[4 * i + 3] = RandomAlpha(rng), b[4 * i + 3] = RandomAlpha(rng);
        kernel(s.data(), b.data(), d.data(), count, opacity);
        int skipped = 0;
        for (int i = 0; i < count; ++i) {
          double want[4];
          BlendReference(mode, &s[4 * i], &b[4 * i], opacity, count, want);
          const double ar = want[3];
          // Where the new alpha is small the division amplifies float rounding; those pixels are
          // few and bounded below.
          if (!Tiny(ar) && std::fabs(ar) < 1e-3) {
            ++skipped;
            continue;
          }
          for (int c = 0; c < 4; ++c)
            ASSERT_NEAR(d[4 * i + c], want[c], tolerance * std::max(1.0, std::fabs(want[c])))
                << OX::BlendModeName(uint32_t(mode)) << " opacity " << opacity << " pixel " << i << " channel " << c;
        }
        EXPECT_LT(skipped, count / 50);
      }
    }
  }
}

TEST(BlendModes, NamedCases) {
  auto run = [](uint32_t mode, std::vector<float> s, std::vector<float> b, float opacity) {
    std::vector<float> d(s.size());
    OX::BlendModeKernel(mode)(s.data(), b.data(), d.data(), int32_t(s.size() / 4), opacity);
    return d;
  };
  // Linear Light is not clamped: 1 and 1, opaque, writes 2.
  EXPECT_FLOAT_EQ(run(15, {1, 1, 1, 1}, {1, 1, 1, 1}, 1)[0], 2.0f);
  // Two transparent pixels: colour 0, alpha 0, in every mode of the common frame.
  for (uint32_t mode : {0u, 1u, 2u, 3u, 5u, 7u, 8u, 9u, 10u, 11u, 13u, 14u, 15u, 16u, 17u, 18u, 19u, 20u, 21u, 22u,
                        23u, 24u, 25u, 26u}) {
    const std::vector<float> d = run(mode, {0.3f, 0.6f, 0.9f, 0}, {0.8f, 0.1f, 0.4f, 0}, 1);
    EXPECT_EQ(d, std::vector<float>({0, 0, 0, 0})) << mode;
  }
  // Hard Mix: s + b exactly 1 gives 1 (strict test).
  EXPECT_FLOAT_EQ(run(9, {0.25f, 0.25f, 0.25f, 1}, {0.75f, 0.75f, 0.75f, 1}, 1)[0], 1.0f);
  // Darker and Lighter Colour weigh luma by the row length: red against mid green swaps order
  // between 720 and 721 pixels.
  for (uint32_t mode : {4u, 12u}) {
    for (int count : {720, 721}) {
      std::vector<float> s, b;
      for (int i = 0; i < count; ++i) s.insert(s.end(), {0, 0, 1, 1}), b.insert(b.end(), {0, 0.5f, 0, 1});
      const std::vector<float> d = run(mode, s, b, 1);
      const bool tookSource = d[2] == 1.0f;
      const bool sourceBrighter = count < 721;  // 0.299 > 0.2935, but 0.2126 < 0.3576
      EXPECT_EQ(tookSource, mode == 12 ? sourceBrighter : !sourceBrighter) << mode << " " << count;
    }
  }
  // Dissolve: a pixel is the source's when rand() <= as x 32767, from the generator as seeded.
  {
    std::vector<float> s, b;
    for (int i = 0; i < 500; ++i) s.insert(s.end(), {1, 1, 1, 0.5f}), b.insert(b.end(), {0, 0, 0, 1});
    OX::crt::SRand(7);
    const std::vector<float> d = run(6, s, b, 0.8f);
    OX::crt::SRand(7);
    int taken = 0;
    for (int i = 0; i < 500; ++i) {
      const bool source = OX::crt::Rand() <= int(0.5f * 0.8f * 32767.0f);
      EXPECT_EQ(d[4 * i + 3], source ? 0.5f : 1.0f) << i;
      taken += source;
    }
    EXPECT_NEAR(taken, 200, 45);
  }
}

// ---- 8-bit kernels: the portable form within one level of a double reference over every pair
// of source and background alpha, and the vector forms within one level of the portable one.
void Reference8u(int index, const uint8_t* s, const uint8_t* b, double opacity, double out[4]) {
  const bool yuv = index & 8, premultiplied = index & 4, opaqueSource = index & 2, opaqueBackground = index & 1;
  const double o = double(float(opacity) + float(kTol)) > 1.0 ? 1.0 : double(float(opacity));
  const double a = opaqueSource ? o : s[3] * o / 255, sa255 = (opaqueSource ? 255 : s[3]) * o;
  const double ba255 = opaqueBackground ? 255 : b[3];
  const double offsets[3] = {128, 128, 16};
  if (Tiny(a)) {
    for (int c = 0; c < 4; ++c) out[c] = b[c];
    if (opaqueBackground) out[3] = 255;
    return;
  }
  if (Tiny(1 - a)) {
    for (int c = 0; c < 3; ++c) out[c] = s[c];
    out[3] = 255;
    return;
  }
  for (int c = 0; c < 3; ++c) {
    const double off = yuv ? offsets[c] : 0;
    if (!opaqueBackground && b[3] == 0) out[c] = premultiplied ? (s[c] - off) * o + off : s[c];
    else if (!premultiplied) out[c] = (s[c] * a + b[c] * (1 - a) * ba255 / 255) * 255 / (sa255 + ba255 * (1 - a));
    else out[c] = (s[c] - off) * o + off + (b[c] - off) * (1 - a);
  }
  out[3] = (!opaqueBackground && b[3] == 0) ? sa255 : sa255 + ba255 * (1 - a);
}

TEST(CompositeKernels, Portable8uWithinOneLevelOfTheFormulaForEveryAlphaPair) {
  std::mt19937 rng(3);
  for (int index = 0; index < OX::kComposite8uKernels; ++index) {
    const OX::CompositeKernel kernel = OX::portable::Composite8uKernel(index);
    for (float opacity : {0.25f, 0.75f, 1.0f}) {
      std::vector<uint8_t> s(256 * 256 * 4), b(s.size()), d(s.size());
      for (int i = 0; i < 256 * 256; ++i) {
        for (int c = 0; c < 3; ++c) s[4 * i + c] = uint8_t(rng()), b[4 * i + c] = uint8_t(rng());
        s[4 * i + 3] = uint8_t(i & 255), b[4 * i + 3] = uint8_t(i >> 8);
      }
      kernel(s.data(), b.data(), d.data(), 256 * 256, opacity);
      for (int i = 0; i < 256 * 256; ++i) {
        double want[4];
        Reference8u(index, &s[4 * i], &b[4 * i], opacity, want);
        for (int c = 0; c < 4; ++c) {
          const double w = std::clamp(want[c], 0.0, 255.0);
          ASSERT_LE(std::fabs(d[4 * i + c] - w), 1.0)
              << "kernel " << index << " opacity " << opacity << " alphas " << (i & 255) << "/" << (i >> 8) << " channel "
              << c << ": " << int(d[4 * i + c]) << " vs " << w;
        }
      }
    }
  }
}

TEST(CompositeKernels, VectorForms8uWithinOneLevelOfPortable) {
  for (int index = 0; index < OX::kComposite8uKernels; ++index) {
    OX::test::TwoInputKernelCheck check;
    check.fName = "composite 8u kernel " + std::to_string(index);
    check.fChoose = [index] { return OX::ChooseComposite8uKernel(index); };
    check.fValues = {0.0f, 0.4f, 0.9999f, 1.0f, 1.5f};
    check.fCompare = [](const uint8_t* a, const uint8_t* b, size_t n) { return OX::test::CompareBytesWithin(a, b, n, 1); };
    OX::test::CheckTwoInputKernelAtEveryLevel(check);
  }
}

}  // namespace
