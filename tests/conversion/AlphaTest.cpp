// Alpha steps against their formulas, at every processor level: every pair of 8-bit colour and
// alpha codes, random and extreme 15u and 32f samples. Tolerances: integers exact, or one count
// within 1e-3 of the rounding point; the approximate-reciprocal un-premultiply within 2^-11
// relative (the reciprocal's error bound 1.5 x 2^-12, doubled for the product), the true-division
// one within 2 ulp.
#include <gtest/gtest.h>

#include "ConverterTestSupport.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

using test::ForEachLevel;
using test::MatchesRounded;
using test::RunMember;

// Every (colour, alpha) pair: pixel i has colour i & 255 in its three colour lanes (offset per
// lane) and alpha i >> 8.
std::vector<uint8_t> AllColourAlphaPairs(bool alphaFirst) {
  std::vector<uint8_t> px(65536 * 4);
  for (int i = 0; i < 65536; ++i) {
    uint8_t* p = &px[4 * i];
    const int a = alphaFirst ? 0 : 3;
    for (int c = 0, lane = 0; lane < 4; ++lane)
      if (lane != a) p[lane] = uint8_t((i + 85 * c++) & 255);
    p[a] = uint8_t(i >> 8);
  }
  return px;
}

TEST(Alpha8u, PremultiplyAndUnpremultiplyRgb) {
  for (bool first : {false, true}) {
    const auto in = AllColourAlphaPairs(first);
    const int a = first ? 0 : 3;
    const auto pre = RunMember<uint8_t>(&ChooseAlpha, first ? kPremul8uRgbFirst : kPremul8uRgbLast, in, 65536, in.size());
    const auto un = RunMember<uint8_t>(&ChooseAlpha, first ? kUnpremul8uRgbFirst : kUnpremul8uRgbLast, in, 65536, in.size());
    for (int i = 0; i < 65536; ++i) {
      const int A = in[4 * i + a];
      for (int lane = 0; lane < 4; ++lane) {
        const int c = in[4 * i + lane];
        if (lane == a) {
          ASSERT_EQ(pre[4 * i + lane], A);
          ASSERT_EQ(un[4 * i + lane], A == 0 ? 0 : A);
          continue;
        }
        ASSERT_TRUE(MatchesRounded(pre[4 * i + lane], c * A * double(0.003921569f), 0, 255)) << c << " " << A;
        if (A == 255) {
          ASSERT_EQ(pre[4 * i + lane], c);  // opaque copies
        }
        if (A == 0) {
          ASSERT_EQ(un[4 * i + lane], 0);  // whole pixel cleared
        } else {
          ASSERT_TRUE(MatchesRounded(un[4 * i + lane], c * 255.0 / A, 0, 255)) << c << " " << A;
        }
      }
    }
  }
}

TEST(Alpha8u, PremultiplyAndUnpremultiplyYuv) {
  const auto in = AllColourAlphaPairs(false);
  const auto pre = RunMember<uint8_t>(&ChooseAlpha, kPremul8uYuv, in, 65536, in.size());
  const auto un = RunMember<uint8_t>(&ChooseAlpha, kUnpremul8uYuv, in, 65536, in.size());
  const double centre[3] = {128, 128, 16};
  for (int i = 0; i < 65536; ++i) {
    const int A = in[4 * i + 3];
    for (int c = 0; c < 3; ++c) {
      const double x = in[4 * i + c] - centre[c];
      ASSERT_TRUE(MatchesRounded(pre[4 * i + c], x * (A / 255.0) + centre[c], 0, 255)) << i;
      if (A == 0)
        ASSERT_EQ(un[4 * i + c], 0);  // the all-zero word, not neutral
      else
        ASSERT_TRUE(MatchesRounded(un[4 * i + c], x * 255.0 / A + centre[c], 0, 255)) << i;
    }
    ASSERT_EQ(pre[4 * i + 3], A);
    ASSERT_EQ(un[4 * i + 3], A);
  }
  // A transparent pixel premultiplies to neutral chroma at black level.
  const std::vector<uint8_t> clear = {200, 30, 180, 0};
  const auto neutral = RunMember<uint8_t>(&ChooseAlpha, kPremul8uYuv, clear, 1, 4);
  EXPECT_EQ(neutral, (std::vector<uint8_t>{128, 128, 16, 0}));
}

// The vector forms of the 8u premultiplies give the portable bytes for every (colour, alpha) pair,
// not only within the formula's tolerance: the 4:2:2 chains must not change with the level.
TEST(Alpha8u, PremultiplyBytesEqualPortableAtEveryLevel) {
  for (int member : {kPremul8uYuv, kPremul8uRgbLast, kPremul8uRgbFirst}) {
    const auto in = AllColourAlphaPairs(member == kPremul8uRgbFirst);
    std::vector<uint8_t> portable;
    {
      test::ScopedLevel level(ProcessorFlags{});
      portable = RunMember<uint8_t>(&ChooseAlpha, member, in, 65536, in.size());
    }
    ForEachLevel([&](const test::Level& level) {
      const auto out = RunMember<uint8_t>(&ChooseAlpha, member, in, 65536, in.size());
      for (size_t i = 0; i < out.size(); ++i)
        ASSERT_EQ(out[i], portable[i]) << level.fName << " member " << member << " byte " << i;
    });
  }
}

TEST(Alpha15u, PremultiplyAndUnpremultiply) {
  std::mt19937 rng(3);
  std::vector<uint16_t> in(4 * 5000);
  for (auto& v : in) v = test::RandomSample15u(rng);
  in[3] = 0;
  in[7] = 32768;
  ForEachLevel([&](const test::Level&) {
    for (bool first : {false, true}) {
      const int a = first ? 0 : 3;
      const auto pre = RunMember<uint16_t>(&ChoosePremul15u, first ? kPremul15uFirst : kPremul15uLast, in, 5000, in.size());
      const auto un = RunMember<uint16_t>(&ChooseAlpha, first ? kUnpremul15uFirst : kUnpremul15uLast, in, 5000, in.size());
      for (int i = 0; i < 5000; ++i) {
        const double A = in[4 * i + a];
        for (int lane = 0; lane < 4; ++lane) {
          if (lane == a) {
            ASSERT_EQ(pre[4 * i + lane], A);
            ASSERT_EQ(un[4 * i + lane], A);
            continue;
          }
          const double c = in[4 * i + lane];
          ASSERT_TRUE(MatchesRounded(pre[4 * i + lane], c * A * double(3.0517578e-5f), 0, 32768)) << c << " " << A;
          if (A == 0) {
            ASSERT_EQ(un[4 * i + lane], 0);
          } else {
            ASSERT_TRUE(MatchesRounded(un[4 * i + lane], c * 32768.0 / A, 0, 32768)) << c << " " << A;
          }
        }
      }
    }
  });
}

TEST(Alpha32f, PremultiplyAndBothUnpremultiplies) {
  std::mt19937 rng(4);
  std::vector<float> in(4 * 5000);
  for (float& f : in) f = test::RandomSample32f(rng);
  for (int i = 0; i < 5000; i += 7) in[4 * i + 3] = in[4 * i] = std::uniform_real_distribution<float>(0.01f, 1.0f)(rng);
  ForEachLevel([&](const test::Level&) {
    for (bool first : {false, true}) {
      const int a = first ? 0 : 3;
      const auto pre = RunMember<float>(&ChooseAlpha, first ? kPremul32fFirst : kPremul32fLast, in, 5000, in.size());
      const auto un = RunMember<float>(&ChooseUnpremul32f, first ? kUnpremul32fDiv : kUnpremul32fRcp, in, 5000, in.size());
      for (int i = 0; i < 5000; ++i) {
        const float A = in[4 * i + a];
        for (int lane = 0; lane < 4; ++lane) {
          const float c = in[4 * i + lane];
          if (!std::isfinite(c) || !std::isfinite(A) || std::fabs(c) > 1e6f || std::fabs(A) > 1e6f) continue;
          if (lane == a) {
            ASSERT_EQ(pre[4 * i + lane], A);
          } else {
            ASSERT_EQ(pre[4 * i + lane], c * A);
          }
          if (A < 8e-6f) {
            ASSERT_EQ(un[4 * i + lane], 0.0f) << "alpha " << A;
          } else if (lane == a) {
            ASSERT_EQ(un[4 * i + lane], A);
          } else {
            const double want = double(c) / A;
            const double tol = first ? 2.5e-7 * std::fabs(want) : std::ldexp(std::fabs(want), -11);
            ASSERT_NEAR(un[4 * i + lane], want, tol + 1e-30) << c << " / " << A;
          }
        }
      }
    }
  });
}

TEST(AlphaAnyDepth, OpaqueKeepsColour) {
  const std::vector<uint8_t> in8 = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(RunMember<uint8_t>(&ChooseAlpha, kOpaque8uLast, in8, 2, 8), (std::vector<uint8_t>{1, 2, 3, 255, 5, 6, 7, 255}));
  EXPECT_EQ(RunMember<uint8_t>(&ChooseAlpha, kOpaque8uFirst, in8, 2, 8), (std::vector<uint8_t>{255, 2, 3, 4, 255, 6, 7, 8}));
  const std::vector<uint16_t> in15 = {1, 2, 3, 4};
  EXPECT_EQ(RunMember<uint16_t>(&ChooseAlpha, kOpaque15uLast, in15, 1, 4), (std::vector<uint16_t>{1, 2, 3, 32768}));
  EXPECT_EQ(RunMember<uint16_t>(&ChooseAlpha, kOpaque15uFirst, in15, 1, 4), (std::vector<uint16_t>{32768, 2, 3, 4}));
  const std::vector<float> inF = {0.1f, 0.2f, 0.3f, 0.0f};
  EXPECT_EQ(RunMember<float>(&ChooseAlpha, kOpaque32fLast, inF, 1, 4), (std::vector<float>{0.1f, 0.2f, 0.3f, 1.0f}));
  EXPECT_EQ(RunMember<float>(&ChooseAlpha, kOpaque32fFirst, inF, 1, 4), (std::vector<float>{1.0f, 0.2f, 0.3f, 0.0f}));
}

TEST(AlphaFused, EightBitToPremultipliedFloat) {
  const auto in = AllColourAlphaPairs(false);
  const auto yuv = RunMember<float>(&ChooseAlpha, kVuya8uToVuyp32f, in, 65536, in.size());
  const auto rgb = RunMember<float>(&ChooseAlpha, kBgra8uToBgrp32f, in, 65536, in.size());
  const double off[3] = {128, 128, 16}, steps[3] = {224, 224, 219};
  for (int i = 0; i < 65536; ++i) {
    const double A = in[4 * i + 3] / 255.0;
    for (int c = 0; c < 3; ++c) {
      ASSERT_NEAR(yuv[4 * i + c], (in[4 * i + c] - off[c]) / steps[c] * A, 1e-6) << i;
      ASSERT_NEAR(rgb[4 * i + c], in[4 * i + c] / 255.0 * A, 1e-6) << i;
    }
    ASSERT_NEAR(yuv[4 * i + 3], A, 1e-7);
    ASSERT_NEAR(rgb[4 * i + 3], A, 1e-7);
  }
}

// Through the lookup, as a chain would ask for them.
TEST(AlphaSteps, PremultipliedYuvOfAlphaZero) {
  const std::vector<uint8_t> px = {90, 100, 50, 0, 128, 128, 16, 0};
  RowConverter toA = FindRowConverter(OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_VUYA_4444_8u, 0);
  RowConverter toX = FindRowConverter(OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_VUYX_4444_8u, 0);
  ASSERT_NE(toA, nullptr);
  ASSERT_NE(toX, nullptr);
  std::vector<uint8_t> a(8), x(8);
  toA(px.data(), a.data(), 2);
  toX(px.data(), x.data(), 2);
  EXPECT_EQ(a, std::vector<uint8_t>(8, 0));  // all zero bytes
  EXPECT_EQ(x, (std::vector<uint8_t>{90, 100, 50, 255, 128, 128, 16, 255}));  // colour stays
}

}  // namespace
}  // namespace OX
