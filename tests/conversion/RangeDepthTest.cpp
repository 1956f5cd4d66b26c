// Range and depth steps against their formulas in double precision, at every processor level:
// every 8-bit code in every channel, every 15-bit code, and random and extreme floats (negative,
// above 1.0, huge, NaN). Tolerances: floats from 8u or 15u codes within 1e-6 (the reciprocal
// constants are 8-digit approximations of 1/219, 1/224, 1/255); integers exact except one count
// where the double value lies within 1e-3 of the rounding point.
#include <gtest/gtest.h>

#include "ConverterTestSupport.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

using test::ClampD;
using test::ForEachLevel;
using test::MatchesRounded;
using test::MatchesTruncated;
using test::RunMember;

struct ChannelCase {
  const char* fName;
  int fUp, fDown;      // members
  double fOffset[4];   // code of zero, by channel in memory order
  double fSteps[4];    // codes from zero to full scale
  bool fPairs;         // 4:2:2: width counts pixels, two a group
};
const ChannelCase kChannelCases[] = {
    {"VUYA", kVuy8uTo32f, kVuy32fTo8u, {128, 128, 16, 0}, {224, 224, 219, 255}, false},
    {"UYVY", kUyvy8uTo32f, kUyvy32fTo8u, {128, 16, 128, 16}, {224, 219, 224, 219}, true},
    {"YUYV", kYuyv8uTo32f, kYuyv32fTo8u, {16, 128, 16, 128}, {219, 224, 219, 224}, true},
    {"RGB", kRgb8uTo32f, kRgb32fTo8u, {0, 0, 0, 0}, {255, 255, 255, 255}, false},
};

TEST(RangeDepth, EightBitCodesToFloat) {
  std::vector<uint8_t> in(256 * 4);
  for (int i = 0; i < 256; ++i)
    for (int c = 0; c < 4; ++c) in[4 * i + c] = uint8_t((i + 61 * c) & 255);
  ForEachLevel([&](const test::Level&) {
    for (const ChannelCase& k : kChannelCases) {
      const int width = k.fPairs ? 512 : 256;
      const auto out = RunMember<float>(&ChooseRange8u32f, k.fUp, in, width, in.size());
      for (size_t i = 0; i < in.size(); ++i) {
        const double want = (in[i] - k.fOffset[i % 4]) / k.fSteps[i % 4];
        ASSERT_NEAR(out[i], want, 1e-6) << k.fName << " sample " << i;
      }
    }
  });
}

TEST(RangeDepth, FloatsToEightBitCodes) {
  std::mt19937 rng(7);
  std::vector<float> in(4000 * 4);
  for (float& f : in) f = test::RandomSample32f(rng);
  // Values that land exactly on the edges of the studio and full ranges.
  const float kEdges[] = {0.0f, 1.0f, -0.5f, 0.5f, -16.0f / 219, 239.0f / 219, 300.0f, -300.0f};
  for (size_t i = 0; i < sizeof kEdges / sizeof kEdges[0]; ++i) in[i] = kEdges[i];
  ForEachLevel([&](const test::Level&) {
    for (const ChannelCase& k : kChannelCases) {
      const int width = k.fPairs ? 8000 : 4000;
      const auto out = RunMember<uint8_t>(&ChooseRange8u32f, k.fDown, in, width, in.size());
      for (size_t i = 0; i < in.size(); ++i) {
        if (std::isnan(in[i])) continue;  // any byte will do; it must not crash
        // round(steps x v) + offset, clamped to 0-255 after rounding; no studio clamp.
        const double scaled = double(float(k.fSteps[i % 4]) * in[i]);
        const double want = ClampD(std::nearbyint(scaled) + k.fOffset[i % 4], 0, 255);
        const bool ok = out[i] == want || (std::fabs(out[i] - want) <= 1 && test::DistanceToHalf(scaled) < 1e-3);
        ASSERT_TRUE(ok) << k.fName << " sample " << i << " value " << in[i] << ": got " << int(out[i]) << " want " << want;
      }
    }
  });
}

TEST(RangeDepth, EightBitWithFifteenBit) {
  std::vector<uint8_t> in(256 * 4);
  for (int i = 0; i < 1024; ++i) in[i] = uint8_t(i & 255);
  ForEachLevel([&](const test::Level&) {
    const auto up = RunMember<uint16_t>(&ChooseDepth15u, k8uTo15u, in, 256, in.size());
    for (int i = 0; i < 1024; ++i) {
      const int v = in[i];
      if (gHasSSE2)  // v x 128.50196 + 0.5, truncated
        ASSERT_TRUE(MatchesTruncated(up[i], v * double(128.50196f) + 0.5, 0, 65535)) << v << " -> " << up[i];
      else  // exact integer division
        ASSERT_EQ(up[i], v * 32768 / 255) << v;
    }
    EXPECT_EQ(up[255], 32768);
    EXPECT_EQ(up[0], 0);
    // Every 15-bit code, and the codes above full scale, back to 8u.
    std::vector<uint16_t> all(65536);
    for (int i = 0; i < 65536; ++i) all[i] = uint16_t(i);
    const auto down = RunMember<uint8_t>(&ChooseDepth15u, k15uTo8u, all, 16384, all.size());
    for (int i = 0; i < 65536; ++i)
      ASSERT_TRUE(MatchesRounded(down[i], i * double(0.0077819824f), 0, 255)) << i << " -> " << int(down[i]);
    EXPECT_EQ(down[32768], 255);
    const auto toFloat = RunMember<float>(&ChooseDepth15u, k15uTo32f, all, 16384, all.size());
    for (int i = 0; i < 65536; ++i) ASSERT_EQ(toFloat[i], float(i / 32768.0)) << i;
  });
}

TEST(RangeDepth, FloatsToFifteenBitSaturate) {
  std::mt19937 rng(11);
  std::vector<float> in(4096);
  for (float& f : in) f = test::RandomSample32f(rng);
  in[0] = 1.5f;
  in[1] = 1e30f;
  in[2] = -3.0f;
  in[3] = 1.0f;
  ForEachLevel([&](const test::Level&) {
    const auto out = RunMember<uint16_t>(&ChooseDepth15u, k32fTo15u, in, 1024, in.size());
    EXPECT_EQ(out[0], 32768);  // above 1.0 saturates, not wraps
    EXPECT_EQ(out[1], 32768);
    EXPECT_EQ(out[2], 0);
    EXPECT_EQ(out[3], 32768);
    for (size_t i = 0; i < in.size(); ++i) {
      if (std::isnan(in[i])) continue;
      ASSERT_TRUE(MatchesTruncated(out[i], ClampD(in[i], 0, 1) * 32768 + 0.5, 0, 32768)) << in[i];
    }
  });
}

uint32_t TenBitWord(uint32_t b, uint32_t g, uint32_t r) { return (b << 2) | (g << 12) | (r << 22); }

TEST(RangeDepth, TenBitRgbBothWays) {
  // From BGRP 8u: (c x 1023) / 255 truncated, alpha dropped.
  std::vector<uint8_t> in8(256 * 4);
  for (int i = 0; i < 256; ++i) {
    in8[4 * i] = uint8_t(i);
    in8[4 * i + 1] = uint8_t(255 - i);
    in8[4 * i + 2] = uint8_t(i * 7);
    in8[4 * i + 3] = uint8_t(i * 3);
  }
  const auto w8 = RunMember<uint32_t>(&ChooseRgb10u, kBgrp8uTo10u, in8, 256, 256);
  for (int i = 0; i < 256; ++i)
    ASSERT_EQ(w8[i], TenBitWord(in8[4 * i] * 1023 / 255, in8[4 * i + 1] * 1023 / 255, in8[4 * i + 2] * 1023 / 255));
  // From 15u: (c x 1023) >> 15; 32768 is 1023.
  const std::vector<uint16_t> in15 = {0, 16384, 32768, 32768, 1, 32767, 100, 0};
  const auto w15 = RunMember<uint32_t>(&ChooseRgb10u, kBgr15uTo10u, in15, 2, 2);
  EXPECT_EQ(w15[0], TenBitWord(0, 511, 1023));
  EXPECT_EQ(w15[1], TenBitWord(0, 1022, 3));
  // From 32f: clamp, x 1023, + 0.5, truncated.
  const std::vector<float> inF = {0.5f, -1.0f, 2.0f, 1.0f, std::nanf(""), 0.25f, 1.0f, 0.0f};
  const auto wF = RunMember<uint32_t>(&ChooseRgb10u, kBgr32fTo10u, inF, 2, 2);
  EXPECT_EQ(wF[0], TenBitWord(512, 0, 1023));
  EXPECT_EQ(wF[1] & ~(0x3FFu << 2), TenBitWord(0, 256, 1023));
  // Back: every ten-bit code in each channel.
  std::vector<uint32_t> words(1024);
  for (uint32_t c = 0; c < 1024; ++c) words[c] = TenBitWord(c, 1023 - c, (c * 5) & 1023);
  ForEachLevel([&](const test::Level&) {
    const auto b8 = RunMember<uint8_t>(&ChooseRgb10u, k10uToBgr8u, words, 1024, 4096);
    const auto b15 = RunMember<uint16_t>(&ChooseRgb10u, k10uToBgr15u, words, 1024, 4096);
    const auto bF = RunMember<float>(&ChooseRgb10u, k10uToBgr32f, words, 1024, 4096);
    for (uint32_t i = 0; i < 1024; ++i) {
      const uint32_t ch[3] = {i, 1023 - i, (i * 5) & 1023};
      for (int c = 0; c < 3; ++c) {
        ASSERT_TRUE(MatchesRounded(b8[4 * i + c], ch[c] * double(0.24926686f), 0, 255));
        ASSERT_TRUE(MatchesRounded(b15[4 * i + c], ch[c] * double(32.03128f), 0, 32768));
        ASSERT_NEAR(bF[4 * i + c], ch[c] / 1023.0, 1e-6);
      }
      ASSERT_EQ(b8[4 * i + 3], 255);
      ASSERT_EQ(b15[4 * i + 3], 32768);
      ASSERT_EQ(bF[4 * i + 3], 1.0f);
    }
    EXPECT_EQ(b8[0 + 1], 255);      // 1023 is full scale at every depth
    EXPECT_EQ(b15[0 + 1], 32768);
  });
}

}  // namespace
}  // namespace OX
