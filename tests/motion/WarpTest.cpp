// The warped quad against a reference written from its formulas in double precision, the SSE2
// span against the portable one, and the shapes that feathering, fields and clipping give.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include "Ombrix.h"
#include "support/LevelHarness.h"

namespace {

constexpr int kW = 64, kH = 48;  // both buffers

struct Options {
  int fQuality = 3;
  uint32_t fOpacity = 255;
  bool fOver = true, fMultiply = false, fDirect = false;
  OX_PixelFormat fFormat = 4;
  int fFieldMode = 0;
  float fFeather = 0;
};

OX_Result Warp(const std::vector<uint8_t>& src, std::vector<uint8_t>& dst, const double* sq, const double* dq,
               const Options& o, const int32_t* destRect = nullptr) {
  static const int32_t kFull[4] = {0, 0, kW, kH};
  return OX_WarpAffineQuad(0, 0, src.data(), kW * 4, kFull, sq, dst.data(), kW * 4, destRect ? destRect : kFull, dq,
                           o.fQuality, o.fOpacity, o.fOver, o.fMultiply, o.fFormat, o.fFieldMode, false, o.fDirect,
                           o.fFeather);
}

std::vector<uint8_t> RandomPicture(std::mt19937& rng, bool alphaExtremes) {
  std::vector<uint8_t> p(size_t(kW) * kH * 4);
  for (size_t i = 0; i < p.size(); ++i) p[i] = uint8_t(rng());
  if (alphaExtremes)
    for (size_t i = 3; i < p.size(); i += 28) p[i] = (i / 28) % 2 ? 0 : 255;
  return p;
}

int Mul255(int x) { return (x + ((x + 128) >> 8) + 128) >> 8; }
int Clamp(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

// The expected pixel from the formulas, with the source position given in double.
void ReferencePixel(const std::vector<uint8_t>& src, uint8_t* d, double sx, double sy, double alpha, const Options& o) {
  auto at = [&](int x, int y) { return &src[(size_t(y) * kW + size_t(x)) * 4]; };
  int s[4];
  if (o.fQuality < 3) {
    const int x = std::clamp(int(std::nearbyint(sx - 0.5)), 0, kW - 1), y = std::clamp(int(std::nearbyint(sy - 0.5)), 0, kH - 1);
    for (int k = 0; k < 4; ++k) s[k] = at(x, y)[k];
  } else {
    const double a = std::clamp(sx - 0.5, 0.0, double(kW - 1)), b = std::clamp(sy - 0.5, 0.0, double(kH - 1));
    const int ia = int(std::nearbyint(a)), ib = int(std::nearbyint(b));
    const double fa = a - ia, fb = b - ib;
    const int ja = ia < kW - 1 ? ia + 1 : ia, jb = ib < kH - 1 ? ib + 1 : ib;
    for (int k = 0; k < 4; ++k) {
      const double top = at(ia, ib)[k] + (at(ia, jb)[k] - at(ia, ib)[k]) * fb;
      const double bottom = at(ja, ib)[k] + (at(ja, jb)[k] - at(ja, ib)[k]) * fb;
      s[k] = Clamp(int(std::nearbyint(top + (bottom - top) * fa)));
    }
  }
  const int va = int(std::nearbyint(alpha)) & 255;
  if (o.fDirect) {
    if (o.fQuality < 3) {
      for (int k = 0; k < 4; ++k) d[k] = uint8_t(s[k]);
    } else {
      for (int k = 0; k < 3; ++k) {
        const int v = s[k] * va + d[k] * (255 - va) + 128;
        d[k] = uint8_t((v + (v >> 8)) >> 8);
      }
      d[3] = uint8_t(s[3]);
    }
    return;
  }
  int sa = o.fQuality < 3 ? s[3] : Mul255(va * s[3]);
  const int plain = o.fQuality < 3 ? 255 : Clamp(int(std::nearbyint(alpha)));
  if (!o.fOver) {
    for (int k = 0; k < 3; ++k) d[k] = uint8_t(s[k]);
    d[3] = uint8_t(o.fOpacity != 255 ? Mul255(sa * int(o.fOpacity)) : o.fMultiply ? sa : plain);
    return;
  }
  if (o.fOpacity != 255) sa = Mul255(int(o.fOpacity) * sa);
  if (sa == 0) return;
  const int da = d[3];
  if (sa < 255 && da != 0) {
    const int na = sa + da - Mul255(sa * da), ws = sa * 255, wd = (255 - sa) * da, n = na * 255;
    if (o.fFormat == 4) {
      for (int k = 0; k < 3; ++k) d[k] = uint8_t((s[k] * ws + d[k] * wd) / n);
    } else {
      for (int k = 0; k < 2; ++k) d[k] = uint8_t(((s[k] - 128) * ws + (d[k] - 128) * wd) / n + 128);
      d[2] = uint8_t(((s[2] - 16) * ws + (d[2] - 16) * wd) / n + 16);
    }
    d[3] = uint8_t(na);
    return;
  }
  for (int k = 0; k < 3; ++k) d[k] = uint8_t(s[k]);
  d[3] = uint8_t(sa);
}

TEST(WarpAffineQuad, AxisAlignedQuadsMatchTheFormulasExactly) {
  // Quads with power-of-two sides and binary-fraction corners: every position is exact in float.
  struct Quad {
    double fDest[4], fSource[4];  // left, top, right, bottom
  } quads[] = {
      {{4, 2, 36, 18}, {0, 0, 64, 32}},        // shrink by 2
      {{0.5, 8, 64.5, 40}, {16, 12, 32, 20}},  // enlarge by 4
      {{8, 8, 40, 40}, {8.25, 4.5, 40.25, 36.5}},
  };
  std::mt19937 rng(11);
  int combinations = 0;
  for (const Quad& q : quads) {
    const double dq[8] = {q.fDest[0], q.fDest[1], q.fDest[2], q.fDest[1], q.fDest[2], q.fDest[3], q.fDest[0], q.fDest[3]};
    const double sq[8] = {q.fSource[0], q.fSource[1], q.fSource[2], q.fSource[1],
                          q.fSource[2], q.fSource[3], q.fSource[0], q.fSource[3]};
    const double scaleX = (q.fSource[2] - q.fSource[0]) / (q.fDest[2] - q.fDest[0]);
    const double scaleY = (q.fSource[3] - q.fSource[1]) / (q.fDest[3] - q.fDest[1]);
    for (int quality : {1, 3}) for (bool direct : {false, true}) for (bool over : {false, true})
    for (bool multiply : {false, true}) for (uint32_t opacity : {255u, 128u, 300u}) for (OX_PixelFormat f : {4u, 2053u}) {
      if (direct && (over || multiply || opacity != 255 || f != 4)) continue;  // direct reads none of them
      Options o{quality, opacity, over, multiply, direct, f};
      const std::vector<uint8_t> src = RandomPicture(rng, true);
      std::vector<uint8_t> dst = RandomPicture(rng, true), want = dst;
      Options ref = o;
      ref.fOpacity = std::min(opacity, 255u);
      for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
          if (x + 0.5 >= q.fDest[0] && x + 0.5 < q.fDest[2] && y + 0.5 >= q.fDest[1] && y + 0.5 < q.fDest[3])
            ReferencePixel(src, &want[(size_t(y) * kW + x) * 4], q.fSource[0] + (x + 0.5 - q.fDest[0]) * scaleX,
                           q.fSource[1] + (y + 0.5 - q.fDest[1]) * scaleY, 255.0, ref);
      OX::test::ForEachLevel([&](const OX::test::Level&) {
        std::vector<uint8_t> got = dst;
        ASSERT_EQ(Warp(src, got, sq, dq, o), OX_Success);
        ASSERT_EQ(got, want) << "quality " << quality << " direct " << direct << " over " << over << " multiply "
                             << multiply << " opacity " << opacity << " format " << f;
      });
      ++combinations;
    }
  }
  EXPECT_GT(combinations, 60);
}

TEST(WarpAffineQuad, TurnedQuadWithinOneLevelAwayFromEdgesAndHalfPixels) {
  // A quad turned by 10 degrees: positions come from float edge walks, so pixels whose centre is
  // near an edge or whose fetch is near a half pixel (where rounding jumps) are left out.
  std::mt19937 rng(12);
  const std::vector<uint8_t> src = RandomPicture(rng, false);
  const double c = std::cos(10 * M_PI / 180), s = std::sin(10 * M_PI / 180);
  const double cx = 32, cy = 24, hw = 20, hh = 14;
  double dq[8], sq[8] = {0, 0, kW, 0, kW, kH, 0, kH};
  const double corners[4][2] = {{-hw, -hh}, {hw, -hh}, {hw, hh}, {-hw, hh}};
  for (int i = 0; i < 4; ++i) {
    dq[2 * i] = cx + corners[i][0] * c - corners[i][1] * s;
    dq[2 * i + 1] = cy + corners[i][0] * s + corners[i][1] * c;
  }
  for (int quality : {1, 3}) {
    Options o{quality, 255, false, false, false, 4};
    std::vector<uint8_t> got(src.size(), 0), want(src.size(), 0);
    ASSERT_EQ(Warp(src, got, sq, dq, o), OX_Success);
    int compared = 0, skipped = 0;
    for (int y = 0; y < kH; ++y) {
      for (int x = 0; x < kW; ++x) {
        // Back to the unturned frame: u, v in -hw..hw, -hh..hh.
        const double px = x + 0.5 - cx, py = y + 0.5 - cy;
        const double u = px * c + py * s, v = -px * s + py * c;
        const double edge = std::min(hw - std::fabs(u), hh - std::fabs(v));
        const double sx = (u + hw) / (2 * hw) * kW, sy = (v + hh) / (2 * hh) * kH;
        const double fx = sx - 0.5 - std::floor(sx - 0.5), fy = sy - 0.5 - std::floor(sy - 0.5);
        if (std::fabs(edge) < 0.01 || std::fabs(fx - 0.5) < 1e-3 || std::fabs(fy - 0.5) < 1e-3) {
          ++skipped;
          continue;
        }
        uint8_t* w = &want[(size_t(y) * kW + x) * 4];
        if (edge > 0) ReferencePixel(src, w, sx, sy, 255.0, o);
        const uint8_t* g = &got[(size_t(y) * kW + x) * 4];
        for (int k = 0; k < 4; ++k) ASSERT_NEAR(g[k], w[k], quality < 3 ? 0 : 1) << x << "," << y << " q" << quality;
        ++compared;
      }
    }
    EXPECT_LT(skipped, compared / 20);
  }
}

TEST(WarpAffineQuad, VectorSpanMatchesPortableOnFeatheredQuads) {
  std::mt19937 rng(13);
  const std::vector<uint8_t> src = RandomPicture(rng, true), dst = RandomPicture(rng, true);
  const double sq[8] = {3.3, 1.7, 60.1, 4.2, 58.9, 45.5, 1.2, 40.8};
  const double dq[8] = {10.2, 3.1, 55.7, 9.9, 50.3, 44.4, 2.6, 35.0};
  for (uint32_t opacity : {255u, 77u}) for (OX_PixelFormat f : {4u, 2053u}) for (float feather : {0.0f, 6.5f}) {
    Options o{4, opacity, true, false, false, f, 0, feather};
    std::vector<uint8_t> portable = dst;
    {
      OX::test::ScopedLevel level(OX::test::AvailableLevels().front());
      ASSERT_EQ(Warp(src, portable, sq, dq, o), 0);
    }
    ASSERT_NE(portable, dst);
    OX::test::ForEachLevel([&](const OX::test::Level&) {
      std::vector<uint8_t> got = dst;
      ASSERT_EQ(Warp(src, got, sq, dq, o), 0);
      ASSERT_EQ(got, portable) << opacity << " " << f << " " << feather;
    });
  }
}

TEST(WarpAffineQuad, ShapesOfFeatherFieldsAndClipping) {
  std::mt19937 rng(14);
  const std::vector<uint8_t> src = RandomPicture(rng, false);
  std::vector<uint8_t> opaque = src;
  for (size_t i = 3; i < opaque.size(); i += 4) opaque[i] = 255;
  const double sq[8] = {0, 0, kW, 0, kW, kH, 0, kH};
  const double dq[8] = {8, 8, 56, 8, 56, 40, 8, 40};
  auto changed = [](const std::vector<uint8_t>& a, const std::vector<uint8_t>& b, int x, int y) {
    return std::memcmp(&a[(size_t(y) * kW + x) * 4], &b[(size_t(y) * kW + x) * 4], 4) != 0;
  };
  const std::vector<uint8_t> blank(src.size(), 0);

  // Identity quad, bilinear, direct: the source itself.
  {
    std::vector<uint8_t> got = blank;
    Options o{3, 255, false, false, true};
    ASSERT_EQ(Warp(opaque, got, sq, sq, o), 0);
    EXPECT_EQ(got, opaque);
    Options nearest{1, 255, false, false, true};
    got = blank;
    ASSERT_EQ(Warp(opaque, got, sq, sq, nearest), 0);
    EXPECT_EQ(got, opaque);
  }
  // Feather below bilinear quality shrinks the quad and draws no fade; at quality 3 the band
  // between the given and the shrunken edges fades in.
  {
    std::vector<uint8_t> low = blank, high = blank;
    ASSERT_EQ(Warp(opaque, low, sq, dq, Options{1, 255, false, false, false, 4, 0, 4.0f}), 0);
    ASSERT_EQ(Warp(opaque, high, sq, dq, Options{3, 255, false, false, false, 4, 0, 4.0f}), 0);
    // The inset corners move inward (not all by the same amounts: each corner's bisector comes
    // from its fixed neighbour pair), so the one-pixel band along the given edges is left alone
    // at low quality and faded in at bilinear quality; nothing is drawn outside the given quad.
    int bandLow = 0, bandHigh = 0, innerLow = 0;
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x) {
        const bool given = x >= 8 && x < 56 && y >= 8 && y < 40;
        const bool band = given && (x == 8 || x == 55 || y == 8 || y == 39);
        if (!given) {
          EXPECT_FALSE(changed(low, blank, x, y)) << x << "," << y;
          EXPECT_FALSE(changed(high, blank, x, y)) << x << "," << y;
        }
        bandLow += band && changed(low, blank, x, y);
        bandHigh += band && changed(high, blank, x, y);
        if (changed(low, blank, x, y)) {
          ++innerLow;
          EXPECT_EQ(high[(size_t(y) * kW + x) * 4 + 3], 255) << x << "," << y;
        }
      }
    EXPECT_EQ(bandLow, 0);
    EXPECT_GT(bandHigh, 100);
    EXPECT_GT(innerLow, 40 * 24);
    // The fade rises from the given edge inward.
    const auto alphaAt = [&](int x) { return high[(size_t(24) * kW + x) * 4 + 3]; };
    EXPECT_LT(alphaAt(8), alphaAt(9));
    EXPECT_LT(alphaAt(9), alphaAt(11));
  }
  // A degenerate quad with a feather stays finite and draws nothing outside its point.
  {
    const double point[8] = {20, 20, 20, 20, 20, 20, 20, 20};
    std::vector<uint8_t> got = blank;
    ASSERT_EQ(Warp(opaque, got, sq, point, Options{4, 255, true, false, false, 4, 0, 3.0f}), 0);
    int drawn = 0;
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x) drawn += changed(got, blank, x, y);
    EXPECT_LE(drawn, 40);
  }
  // Field mode 1 draws even rows only, and the same even rows as a full draw.
  {
    std::vector<uint8_t> full = blank, even = blank;
    ASSERT_EQ(Warp(opaque, full, sq, dq, Options{1, 255, false, false, false, 4, 0}), 0);
    ASSERT_EQ(Warp(opaque, even, sq, dq, Options{1, 255, false, false, false, 4, 1}), 0);
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x)
        EXPECT_EQ(std::memcmp(&even[(size_t(y) * kW + x) * 4], &(y % 2 ? blank : full)[(size_t(y) * kW + x) * 4], 4), 0);
  }
  // Clipped by the destination rectangle: inside it, what the unclipped quad draws; nothing outside.
  {
    const double turned[8] = {30, 2, 60, 20, 34, 46, 4, 28};
    const int32_t clip[4] = {10, 13, 41, 31};
    for (int quality : {1, 4}) {
      std::vector<uint8_t> full = blank, clipped = blank;
      ASSERT_EQ(Warp(opaque, full, sq, turned, Options{quality, 255, true, false, false, 4, 0, 2.0f}), 0);
      ASSERT_EQ(Warp(opaque, clipped, sq, turned, Options{quality, 255, true, false, false, 4, 0, 2.0f}, clip), 0);
      for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x) {
          const bool inside = x >= clip[0] && x < clip[2] && y >= clip[1] && y < clip[3];
          EXPECT_EQ(std::memcmp(&clipped[(size_t(y) * kW + x) * 4], &(inside ? full : blank)[(size_t(y) * kW + x) * 4], 4), 0)
              << x << "," << y << " q" << quality;
        }
    }
  }
}

TEST(WarpAffineQuad, CodesInOrderAndThreadsAgree) {
  std::vector<uint8_t> src(size_t(kW) * kH * 4, 7), dst(src.size(), 9);
  const int32_t rect[4] = {0, 0, kW, kH}, empty[4] = {5, 5, 5, 9};
  const double q[8] = {0, 0, 10, 0, 10, 10, 0, 10};
  auto call = [&](const void* s, int32_t srb, const int32_t* sr, void* d, int32_t drb) {
    return OX_WarpAffineQuad(0, 0, s, srb, sr, q, d, drb, rect, q, 3, 255, true, false, 4, 0, false, false, 0);
  };
  EXPECT_EQ(call(nullptr, 0, rect, nullptr, 0), OX_ErrNullDest);
  EXPECT_EQ(call(nullptr, 0, rect, dst.data(), 0), OX_ErrNullSource);
  EXPECT_EQ(call(src.data(), 0, rect, dst.data(), kW * 4), OX_ErrNoRoute);
  EXPECT_EQ(call(src.data(), kW * 4, rect, dst.data(), 0), OX_ErrNoRoute);
  EXPECT_EQ(call(src.data(), kW * 4, empty, dst.data(), kW * 4), OX_ErrBadRect);
  EXPECT_EQ(dst, std::vector<uint8_t>(src.size(), 9));

  std::mt19937 rng(15);
  const std::vector<uint8_t> picture = RandomPicture(rng, true), under = RandomPicture(rng, true);
  const double sq[8] = {0, 0, kW, 0, kW, kH, 0, kH}, dq[8] = {30, 2, 60, 20, 34, 46, 4, 28};
  std::vector<uint8_t> one = under;
  ASSERT_EQ(Warp(picture, one, sq, dq, Options{4, 200, true, false, false, 4, 0, 3.0f}), 0);
  std::vector<std::vector<uint8_t>> results(8, under);
  std::vector<std::thread> threads;
  for (auto& r : results)
    threads.emplace_back([&] {
      for (int i = 0; i < 20; ++i) {
        r = under;
        Warp(picture, r, sq, dq, Options{4, 200, true, false, false, 4, 0, 3.0f});
      }
    });
  for (auto& t : threads) t.join();
  for (const auto& r : results) EXPECT_EQ(r, one);
}

}  // namespace

namespace {

// Hostile quads on buffers of exactly their size: nothing is read or written outside them (the
// sanitizer build checks), whatever the corners, feather and flags.
TEST(WarpAffineQuad, HostileQuadsStayInsideTheBuffers) {
  std::mt19937 rng(16);
  const int sw = 7, sh = 5, dw = 11, dh = 9;
  const float specials[] = {0.0f, -1e30f, 1e30f, NAN, INFINITY, -INFINITY, 3.5f, -0.5f, 1e-30f};
  for (int round = 0; round < 400; ++round) {
    std::vector<uint8_t> src(size_t(sw) * sh * 4, 0x40), dst(size_t(dw) * dh * 4, 0x80);
    double sq[8], dq[8];
    for (int i = 0; i < 8; ++i) {
      const bool special = rng() % 5 == 0;
      sq[i] = special ? specials[rng() % 9] : std::uniform_real_distribution<double>(-20, 30)(rng);
      dq[i] = rng() % 5 == 0 ? specials[rng() % 9] : std::uniform_real_distribution<double>(-20, 30)(rng);
    }
    const int32_t sourceRect[4] = {0, 0, sw, sh}, destRect[4] = {0, 0, dw, dh};
    const float feather = rng() % 3 ? std::uniform_real_distribution<float>(-2, 40)(rng) : specials[rng() % 9];
    const bool upward = rng() % 2;
    const OX_Result r = OX_WarpAffineQuad(
        0, 0, upward ? src.data() + size_t(sw) * 4 * (sh - 1) : src.data(), upward ? -sw * 4 : sw * 4, sourceRect, sq,
        dst.data(), dw * 4, destRect, dq, int(rng() % 6), rng() % 300, rng() % 2, rng() % 2,
        rng() % 2 ? OX_PixelFormat_BGRA_4444_8u : OX_PixelFormat_VUYA_4444_8u, int(rng() % 4), rng() % 2, rng() % 2,
        feather);
    ASSERT_EQ(r, OX_Success) << round;
  }
}

}  // namespace
