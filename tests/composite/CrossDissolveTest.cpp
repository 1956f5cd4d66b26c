// The cross dissolve against its formulas in double on pixels with alpha 0, full, equal and
// different, per depth and alpha form; the ends, working formats, V210 and refusals.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "Ombrix.h"
#include "frame/PixelFormat.h"

namespace {

// The expected pixel in the sample's own scale (full = 255, 32768 or 1).
void Reference(const double* a, const double* b, double w, double full, bool premultiplied, bool integer,
               double out[4]) {
  const double u = 1 - w;
  auto zero = [&](double x) { return integer ? x == 0 : x < 8e-6; };
  if (zero(a[3])) {
    for (int c = 0; c < 3; ++c) out[c] = b[c];
    out[3] = b[3] * u;
  } else if (zero(b[3])) {
    for (int c = 0; c < 3; ++c) out[c] = a[c];
    out[3] = a[3] * w;
  } else if (integer ? a[3] == b[3] : std::fabs(a[3] - b[3]) < 8e-6) {
    for (int c = 0; c < 3; ++c) out[c] = a[c] * w + b[c] * u;
    out[3] = a[3];
  } else if (!premultiplied) {
    const double p = a[3] * w, q = b[3] * u;
    for (int c = 0; c < 3; ++c) out[c] = (a[c] * p + b[c] * q) / (p + q);
    out[3] = p + q;
  } else {
    for (int c = 0; c < 3; ++c) out[c] = a[c] * w + b[c] * u;
    out[3] = a[3] * w + b[3] * u;
  }
  (void)full;
}

template <class T>
double Get(const std::vector<uint8_t>& v, size_t i) {
  T x;
  std::memcpy(&x, v.data() + i * sizeof(T), sizeof(T));
  return double(x);
}

TEST(CrossDissolve, KernelsFollowTheirFormulas) {
  struct Case {
    OX_PixelFormat fFormat;
    int fSample;
    double fFull;
  } cases[] = {{OX_PixelFormat_BGRA_4444_8u, 1, 255},       {OX_PixelFormat_BGRP_4444_8u, 1, 255},
               {OX_PixelFormat_BGRA_4444_15u, 2, 32768},    {OX_PixelFormat_BGRP_4444_15u, 2, 32768},
               {OX_PixelFormat_BGRA_4444_32f, 4, 1.0},      {OX_PixelFormat_VUYP_4444_32f, 4, 1.0},
               {OX_PixelFormat_VUYA_4444_8u, 1, 255}};
  std::mt19937 rng(31);
  for (const Case& c : cases) {
    const bool premultiplied = OX::AlphaOf(c.fFormat) == OX::kAlphaPremultiplied, integer = c.fSample != 4;
    const int n = 400;
    std::vector<uint8_t> a(size_t(n) * 4 * c.fSample), b(a.size()), d(a.size());
    for (int i = 0; i < 4 * n; ++i) {
      // Alphas: 0, full, equal pairs, anything.
      const int kind = i % 4 == 3 ? int(rng() % 4) : 3;
      for (auto* v : {&a, &b}) {
        double x = kind == 0 && v == &a ? 0 : kind == 1 ? c.fFull : double(rng() % 1000) / 999.0 * c.fFull;
        if (c.fSample == 1) (*v)[size_t(i)] = uint8_t(std::lround(x));
        else if (c.fSample == 2) { const uint16_t s = uint16_t(std::lround(x)); std::memcpy(&(*v)[size_t(i) * 2], &s, 2); }
        else { const float f = float(x); std::memcpy(&(*v)[size_t(i) * 4], &f, 4); }
      }
      if (kind == 2) std::memcpy(&b[size_t(i) * c.fSample], &a[size_t(i) * c.fSample], size_t(c.fSample));
    }
    const int32_t rb = n * 4 * c.fSample;
    for (float amount : {0.25f, 0.5f, 0.9f}) {
      ASSERT_EQ(OX_CrossDissolve(a.data(), rb, c.fFormat, b.data(), rb, c.fFormat, d.data(), rb, c.fFormat, n, 1, amount, 3), 0);
      for (int p = 0; p < n; ++p) {
        double pa[4], pb[4], want[4];
        for (int s = 0; s < 4; ++s) {
          const size_t i = size_t(p) * 4 + size_t(s);
          pa[s] = c.fSample == 1 ? a[i] : c.fSample == 2 ? Get<uint16_t>(a, i) : Get<float>(a, i);
          pb[s] = c.fSample == 1 ? b[i] : c.fSample == 2 ? Get<uint16_t>(b, i) : Get<float>(b, i);
        }
        Reference(pa, pb, double(1.0f - amount), c.fFull, premultiplied, integer, want);
        for (int s = 0; s < 4; ++s) {
          const size_t i = size_t(p) * 4 + size_t(s);
          const double got = c.fSample == 1 ? d[i] : c.fSample == 2 ? Get<uint16_t>(d, i) : Get<float>(d, i);
          if (integer) {
            const double r = std::clamp(want[s], 0.0, c.fFull);
            // Equal to the rounded reference; one level off only next to a half.
            if (std::fabs(r - std::floor(r) - 0.5) > 1e-3) ASSERT_EQ(got, std::nearbyint(r)) << OX::PixelFormatName(c.fFormat) << " " << p << "/" << s;
            else ASSERT_LE(std::fabs(got - r), 0.5 + 1e-3);
          } else {
            ASSERT_NEAR(got, want[s], 1e-6 * std::max(1.0, std::fabs(want[s]))) << OX::PixelFormatName(c.fFormat) << " " << p;
          }
        }
      }
    }
  }
}

TEST(CrossDissolve, EndsWorkingFormatsAndV210) {
  std::mt19937 rng(32);
  const int w = 12, h = 3;
  std::vector<uint8_t> a(size_t(w) * 4 * h), b(a.size()), d(a.size()), want(a.size());
  for (auto& v : a) v = uint8_t(rng());
  for (auto& v : b) v = uint8_t(rng());
  // Amount 0 converts A and never reads B; amount 1 converts B and never reads A.
  ASSERT_EQ(OX_CrossDissolve(a.data(), w * 4, 4, nullptr, 0, 4, d.data(), w * 4, 4, w, h, 0.0f, 3), 0);
  EXPECT_EQ(d, a);
  ASSERT_EQ(OX_CrossDissolve(nullptr, 0, 4, b.data(), w * 4, 4, d.data(), w * 4, 4, w, h, 1.0f, 3), 0);
  EXPECT_EQ(d, b);
  // Straight alphas 200 and 200 stay 200 at every weight.
  std::vector<uint8_t> p(4 * 4), q(4 * 4), r(4 * 4);
  for (int i = 0; i < 4; ++i) {
    const uint8_t pa[4] = {10, 20, 30, 200}, pb[4] = {200, 100, 0, 200};
    std::memcpy(&p[4 * i], pa, 4);
    std::memcpy(&q[4 * i], pb, 4);
  }
  for (float amount : {0.1f, 0.5f, 0.77f}) {
    ASSERT_EQ(OX_CrossDissolve(p.data(), 16, 4, q.data(), 16, 4, r.data(), 16, 4, 4, 1, amount, 3), 0);
    EXPECT_EQ(r[3], 200);
  }
  // A BGRX image with a BGRA one mixes straight in BGRA: B's alpha 0 pixels take A's colour with
  // alpha 255 w.
  std::vector<uint8_t> x(16, 0), y(16, 0), z(16);
  for (int i = 0; i < 4; ++i) x[4 * i] = 100, x[4 * i + 3] = 7, y[4 * i + 2] = 50;
  ASSERT_EQ(OX_CrossDissolve(x.data(), 16, OX_PixelFormat_BGRX_4444_8u, y.data(), 16, 4, z.data(), 16, 4, 4, 1, 0.4f, 3), 0);
  EXPECT_EQ(z[0], 100);
  EXPECT_EQ(z[3], 153);  // 255 x 0.6
  // Differing depths: quality 2 stays at the destination's depth (8 bits), others mix in float.
  std::vector<float> f(16);
  for (int i = 0; i < 4; ++i) f[4 * i] = 0.5f, f[4 * i + 3] = 1.0f;
  std::vector<uint8_t> g(16, 0), q2(16), q3(16);
  for (int i = 0; i < 4; ++i) g[4 * i] = 1, g[4 * i + 3] = 255;
  ASSERT_EQ(OX_CrossDissolve(f.data(), 64, OX_PixelFormat_BGRA_4444_32f, g.data(), 16, 4, q2.data(), 16, 4, 4, 1, 0.5f, 2), 0);
  ASSERT_EQ(OX_CrossDissolve(f.data(), 64, OX_PixelFormat_BGRA_4444_32f, g.data(), 16, 4, q3.data(), 16, 4, 4, 1, 0.5f, 3), 0);
  EXPECT_EQ(q2[0], 64);  // 128 and 1 at 8 bits: (128 + 1) / 2 = 64.5, ties to even
  EXPECT_EQ(q3[0], 64);  // 127.5 and 1 in float: 64.25
  // V210: three V210 buffers mix every 10-bit sample, spare bits zero.
  const int vw = 7, vrb = 32;
  std::vector<uint8_t> va(vrb * 2), vb(va.size()), vd(va.size(), 0xFF);
  for (size_t i = 0; i < va.size(); i += 4) {
    const uint32_t s = (rng() & 0x3FFFFFFF), t = (rng() & 0x3FFFFFFF);
    std::memcpy(&va[i], &s, 4);
    std::memcpy(&vb[i], &t, 4);
  }
  ASSERT_EQ(OX_CrossDissolve(va.data(), vrb, OX_PixelFormat_V210_422_10u, vb.data(), vrb, OX_PixelFormat_V210_422_10u,
                             vd.data(), vrb, OX_PixelFormat_V210_422_10u, vw, 2, 0.3f, 3),
            0);
  for (size_t i = 0; i < va.size(); i += 4) {
    uint32_t s, t, o;
    std::memcpy(&s, &va[i], 4);
    std::memcpy(&t, &vb[i], 4);
    std::memcpy(&o, &vd[i], 4);
    EXPECT_EQ(o >> 30, 0u);
    for (int k = 0; k < 3; ++k)
      EXPECT_NEAR(double((o >> (10 * k)) & 1023), ((s >> (10 * k)) & 1023) * 0.7 + ((t >> (10 * k)) & 1023) * 0.3, 0.5 + 1e-4);
  }
  // Refusals write nothing.
  std::vector<uint8_t> untouched(d.size(), 9);
  EXPECT_EQ(OX_CrossDissolve(a.data(), 48, OX_PixelFormat_NTSCDV25, b.data(), 48, 4, untouched.data(), 48, 4, w, h, 0.5f, 3), OX_ErrBadSourceFormat);
  EXPECT_EQ(OX_CrossDissolve(a.data(), 48, 4, b.data(), 48, 4, untouched.data(), 48, OX_PixelFormat_PALDV25, w, h, 0.5f, 3), OX_ErrBadDestFormat);
  EXPECT_EQ(OX_CrossDissolve(a.data(), 48, 4, b.data(), 48, 4, untouched.data(), 48, 4, -1, h, 0.5f, 3), OX_ErrBadWidth);
  EXPECT_EQ(OX_CrossDissolve(nullptr, 48, 4, b.data(), 48, 4, untouched.data(), 48, 4, w, h, 0.5f, 3), OX_ErrNullSource);
  EXPECT_EQ(untouched, std::vector<uint8_t>(d.size(), 9));
}

}  // namespace
