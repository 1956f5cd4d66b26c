// Colour matrix steps against their formulas in double precision, at every processor level, over
// a dense sampling of the 8-bit colour cube (every fifth code in each channel plus the ends) and
// random and extreme floats. Tolerances: 8-bit results exact, or one count where the double value
// lies within 1e-3 of the rounding or truncation point; float results within 2e-6 of the value
// scale (single-precision arithmetic over three terms).
#include <gtest/gtest.h>

#include "ConverterTestSupport.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

using test::ForEachLevel;
using test::MatchesRounded;
using test::MatchesTruncated;
using test::RunMember;

// Every fifth code per channel and the end codes, three channels, alpha varying.
std::vector<uint8_t> DenseCube() {
  std::vector<int> codes;
  for (int v = 0; v < 256; v += 5) codes.push_back(v);
  codes.push_back(16);
  codes.push_back(235);
  codes.push_back(240);
  codes.push_back(128);
  std::vector<uint8_t> px;
  int a = 0;
  for (int x : codes)
    for (int y : codes)
      for (int z : codes) {
        px.push_back(uint8_t(x));
        px.push_back(uint8_t(y));
        px.push_back(uint8_t(z));
        px.push_back(uint8_t(a));
        a = (a + 37) & 255;
      }
  return px;
}

struct RgbToYuvCase {
  int fMember;
  double fY[3], fU[3], fV[3];  // R, G, B coefficients
};
const RgbToYuvCase kRgbToYuv[] = {
    {kBgr8uToVuy8u601, {0.2567891, 0.5041289, 0.0979062}, {-0.1482227, -0.2909922, 0.4392149},
     {0.4392149, -0.3677891, -0.0714258}},
    {kBgr8uToVuy8u709, {0.1825859, 0.6142306, 0.0620071}, {-0.1006437, -0.338572, 0.4392157},
     {0.4392157, -0.3989422, -0.0402735}},
};

TEST(Matrix8u, RgbToYuvOverTheCube) {
  const std::vector<uint8_t> in = DenseCube();
  const int n = int(in.size() / 4);
  ForEachLevel([&](const test::Level&) {
    for (const RgbToYuvCase& k : kRgbToYuv) {
      const auto out = RunMember<uint8_t>(&ChooseMatrix8u, k.fMember, in, n, in.size());
      for (int i = 0; i < n; ++i) {
        const double b = in[4 * i], g = in[4 * i + 1], r = in[4 * i + 2];
        const double y = k.fY[0] * r + k.fY[1] * g + k.fY[2] * b + 16 + 0.5;
        const double u = k.fU[0] * r + k.fU[1] * g + k.fU[2] * b + 128 + 0.5;
        const double v = k.fV[0] * r + k.fV[1] * g + k.fV[2] * b + 128 + 0.5;
        ASSERT_TRUE(MatchesTruncated(out[4 * i + 2], y, 0, 255)) << i;
        ASSERT_TRUE(MatchesTruncated(out[4 * i + 1], u, 0, 255)) << i;
        ASSERT_TRUE(MatchesTruncated(out[4 * i], v, 0, 255)) << i;
        ASSERT_EQ(out[4 * i + 3], in[4 * i + 3]);
      }
    }
  });
}

struct YuvToRgbCase {
  int fMember;
  bool fFloat, fOpaque;
  double fY, fUB, fUG, fVG, fVR;
};
const YuvToRgbCase kYuvToRgb[] = {
    {kVuy8uToBgr8u601, false, false, 1.1643828, 2.0172305, -0.3917617, -0.8129687, 1.5960274},
    {kVuy8uToBgr8u709, false, false, 1.1643835, 2.1124017, -0.2132486, -0.5329093, 1.7927411},
    {kVuyx8uToBgr8u601, false, true, 1.1643828, 2.0172305, -0.3917617, -0.8129687, 1.5960274},
    {kVuyx8uToBgr8u709, false, true, 1.1643835, 2.1124017, -0.2132486, -0.5329093, 1.7927411},
    {kVuy8uToBgr32f601, true, false, 0.00456621, 0.007910715, -0.00153632, -0.003188108, 0.006258927},
    {kVuy8uToBgr32f709, true, false, 0.00456621, 0.00828393, -0.00083627, -0.00208984, 0.00703036},
};

TEST(Matrix8u, YuvToRgbOverTheCube) {
  const std::vector<uint8_t> in = DenseCube();
  const int n = int(in.size() / 4);
  ForEachLevel([&](const test::Level&) {
    for (const YuvToRgbCase& k : kYuvToRgb) {
      std::vector<uint8_t> b8;
      std::vector<float> bf;
      if (k.fFloat)
        bf = RunMember<float>(&ChooseMatrix8u, k.fMember, in, n, in.size());
      else
        b8 = RunMember<uint8_t>(&ChooseMatrix8u, k.fMember, in, n, in.size());
      for (int i = 0; i < n; ++i) {
        const double v = in[4 * i] - 128.0, u = in[4 * i + 1] - 128.0, y = in[4 * i + 2] - 16.0;
        const double want[3] = {k.fY * y + k.fUB * u, k.fY * y + k.fUG * u + k.fVG * v, k.fY * y + k.fVR * v};
        for (int c = 0; c < 3; ++c) {
          if (k.fFloat)
            ASSERT_NEAR(bf[4 * i + c], want[c], 2e-6) << i;
          else
            ASSERT_TRUE(MatchesRounded(b8[4 * i + c], want[c], 0, 255)) << i << " channel " << c;
        }
        if (k.fFloat)
          ASSERT_NEAR(bf[4 * i + 3], in[4 * i + 3] / 255.0, 1e-6);
        else
          ASSERT_EQ(b8[4 * i + 3], k.fOpaque ? 255 : in[4 * i + 3]);
      }
    }
  });
}

TEST(Matrix8u, StudioWhiteAndBlack) {
  // V, U, Y, A: 235 with neutral chroma is white, 16 is black, in both matrices.
  const std::vector<uint8_t> in = {128, 128, 235, 200, 128, 128, 16, 7, 128, 128, 255, 0, 128, 128, 0, 255};
  ForEachLevel([&](const test::Level&) {
    for (int m : {kVuy8uToBgr8u601, kVuy8uToBgr8u709, kVuyx8uToBgr8u601}) {
      const auto out = RunMember<uint8_t>(&ChooseMatrix8u, m, in, 4, 16);
      EXPECT_EQ(out[0], 255);
      EXPECT_EQ(out[1], 255);
      EXPECT_EQ(out[2], 255);
      EXPECT_EQ(out[4], 0);
      EXPECT_EQ(out[5], 0);
      EXPECT_EQ(out[6], 0);
      EXPECT_EQ(out[8], 255);   // above studio white clamps
      EXPECT_EQ(out[12], 0);    // below studio black clamps
    }
  });
}

TEST(Matrix8u, FloatRgbToYuv8u) {
  std::mt19937 rng(5);
  std::vector<float> in(20000);
  for (float& f : in) f = test::RandomSample32f(rng);
  const double kY[2][3] = {{65.481, 128.553, 24.966}, {46.5594, 156.6288, 15.8118}};
  const double kU[2][3] = {{-37.79686, -74.20313, 112}, {-25.66413, -86.33588, 112}};
  const double kV[2][3] = {{112, -93.78611, -18.21389}, {112, -101.73027, -10.26973}};
  ForEachLevel([&](const test::Level&) {
    for (int mi = 0; mi < 2; ++mi) {
      const auto out = RunMember<uint8_t>(&ChooseMatrix8u, mi ? kBgr32fToVuy8u709 : kBgr32fToVuy8u601, in, 5000, in.size());
      for (int i = 0; i < 5000; ++i) {
        const double b = in[4 * i], g = in[4 * i + 1], r = in[4 * i + 2], a = in[4 * i + 3];
        if (!std::isfinite(b + g + r) || std::fabs(b) > 1e6 || std::fabs(g) > 1e6 || std::fabs(r) > 1e6) continue;
        ASSERT_TRUE(MatchesTruncated(out[4 * i + 2], kY[mi][0] * r + kY[mi][1] * g + kY[mi][2] * b + 16.5, 0, 255)) << i;
        ASSERT_TRUE(MatchesTruncated(out[4 * i + 1], kU[mi][0] * r + kU[mi][1] * g + kU[mi][2] * b + 128.5, 0, 255)) << i;
        ASSERT_TRUE(MatchesTruncated(out[4 * i], kV[mi][0] * r + kV[mi][1] * g + kV[mi][2] * b + 128.5, 0, 255)) << i;
        if (std::isfinite(a) && std::fabs(a) < 1e6) {
          ASSERT_TRUE(MatchesTruncated(out[4 * i + 3], 255 * a + 0.5, 0, 255));
        }
      }
    }
  });
}

// 32f matrices: out lane = sum of coefficient x input lane (lanes in memory order), alpha kept.
struct Matrix32fCase {
  int fMember;
  double fK[3][3];  // [output lane][input lane], lanes 0-2
};
const Matrix32fCase kMatrix32f[] = {
    {kYuv601ToRgb32f, {{0, 1.772, 1}, {-0.714136, -0.344136, 1}, {1.402, 0, 1}}},
    {kYuv709ToRgb32f, {{0, 1.8556, 1}, {-0.4681243, -0.1873243, 1}, {1.5748, 0, 1}}},
    {kRgbToYuv601_32f, {{-0.081312, -0.418688, 0.5}, {0.5, -0.331264, -0.168736}, {0.114, 0.587, 0.299}}},
    {kRgbToYuv709_32f, {{-0.045847, -0.454153, 0.5}, {0.5, -0.385428, -0.114572}, {0.0722, 0.7152, 0.2126}}},
    {kYuv601To709_32f, {{1.0253271, 0.0750495, 0}, {0.114618, 1.0186397, 0}, {-0.2079376, -0.1155498, 1}}},
    {kYuv709To601_32f, {{0.9833978, -0.072453, 0}, {-0.1106525, 0.9898538, 0}, {0.1916995, 0.0993117, 1}}},
};

TEST(Matrix32f, AgainstTheFormula) {
  std::mt19937 rng(9);
  std::vector<float> in(40000);
  for (float& f : in) f = std::uniform_real_distribution<float>(-1.0f, 2.0f)(rng);
  in[0] = std::nanf("");  // must not crash
  ForEachLevel([&](const test::Level&) {
    for (const Matrix32fCase& k : kMatrix32f) {
      const auto out = RunMember<float>(&ChooseMatrix32f, k.fMember, in, 10000, in.size());
      for (int i = 1; i < 10000; ++i) {
        for (int o = 0; o < 3; ++o) {
          double want = 0;
          for (int c = 0; c < 3; ++c) want += k.fK[o][c] * in[4 * i + c];
          ASSERT_NEAR(out[4 * i + o], want, 2e-6 * 4) << "pixel " << i << " lane " << o;
        }
        ASSERT_EQ(out[4 * i + 3], in[4 * i + 3]);
      }
    }
  });
}

// 601 with 709 at 8u: the code values less (128, 128, 16) through the 32f YUV matrix without
// rescaling, + offsets + 0.5, truncated, clamped.
struct Yuv8uCase {
  int f444, fUyvy, fYuyv;
  double a, b, c, d, e, f;  // V' = aV + bU; U' = cV + dU; Y' = Y + eV + fU
};
const Yuv8uCase kYuv8u[] = {
    {kVuy601To709_8u, kUyvy601To709_8u, kYuyv601To709_8u, 1.0253271, 0.0750495, 0.114618, 1.0186397, -0.2079376, -0.1155498},
    {kVuy709To601_8u, kUyvy709To601_8u, kYuyv709To601_8u, 0.9833978, -0.072453, -0.1106525, 0.9898538, 0.1916995, 0.0993117},
};

TEST(Yuv709_8u, MissingRescaleKept) {
  const std::vector<uint8_t> in = DenseCube();
  const int n = int(in.size() / 4);
  ForEachLevel([&](const test::Level&) {
    for (const Yuv8uCase& k : kYuv8u) {
      auto expect = [&](double V, double U, double Y, int gv, int gu, int gy) {
        V -= 128, U -= 128, Y -= 16;
        return MatchesTruncated(gv, k.a * V + k.b * U + 128.5, 0, 255) &&
               MatchesTruncated(gu, k.c * V + k.d * U + 128.5, 0, 255) &&
               MatchesTruncated(gy, Y + k.e * V + k.f * U + 16.5, 0, 255);
      };
      const auto o = RunMember<uint8_t>(&ChooseYuv709_8u, k.f444, in, n, in.size());
      for (int i = 0; i < n; ++i) {
        ASSERT_TRUE(expect(in[4 * i], in[4 * i + 1], in[4 * i + 2], o[4 * i], o[4 * i + 1], o[4 * i + 2])) << i;
        ASSERT_EQ(o[4 * i + 3], in[4 * i + 3]);
      }
      // The same bytes read as UYVY (U Y0 V Y1) and YUYV (Y0 U Y1 V) pairs: shared chroma.
      const auto u = RunMember<uint8_t>(&ChooseYuv709_8u, k.fUyvy, in, 2 * n, in.size());
      const auto y = RunMember<uint8_t>(&ChooseYuv709_8u, k.fYuyv, in, 2 * n, in.size());
      for (int i = 0; i < n; ++i) {
        const uint8_t* p = &in[4 * i];
        ASSERT_TRUE(expect(p[2], p[0], p[1], u[4 * i + 2], u[4 * i], u[4 * i + 1])) << i;
        ASSERT_TRUE(expect(p[2], p[0], p[3], u[4 * i + 2], u[4 * i], u[4 * i + 3])) << i;
        ASSERT_TRUE(expect(p[3], p[1], p[0], y[4 * i + 3], y[4 * i + 1], y[4 * i])) << i;
        ASSERT_TRUE(expect(p[3], p[1], p[2], y[4 * i + 3], y[4 * i + 1], y[4 * i + 2])) << i;
      }
    }
  });
}

}  // namespace
}  // namespace OX
