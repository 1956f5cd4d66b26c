// The step chooser's rules ahead of the route table, and the chains built from it.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "conversion/ConvertPipeline.h"
#include "conversion/RowConverterChain.h"
#include "conversion/RouteTable.h"
#include "frame/Globals.h"
#include "frame/PixelFormat.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

std::string Name(OX_PixelFormat f) {
  char code[16];
  std::snprintf(code, sizeof code, " (0x%X)", f);
  return RouteFormatName(f) + std::string(code);
}

ProcessorFlags FlagsWithSSE2(bool sse2) {
  ProcessorFlags f{};
  f.fSSE = f.fSSE2 = sse2;
  return f;
}

TEST(ChooseRowStep, RulesAheadOfTheTable) {
  enum Level { kAny, kWithSSE2, kWithoutSSE2 };
  struct Case {
    const char* fRule;
    OX_PixelFormat fCurrent, fDestination;
    Level fLevel;
    OX_PixelFormat fLandsOn;
  };
  const Case cases[] = {
      {"fast step", OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRA_4444_8u, kWithSSE2, OX_PixelFormat_BGRA_4444_8u},
      {"fast step", OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_BGRX_4444_8u, kWithSSE2,
       OX_PixelFormat_BGRX_4444_8u},
      {"no fast step without SSE2", OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRA_4444_8u, kWithoutSSE2,
       OX_PixelFormat_VUYA_4444_8u},
      {"no fast step without SSE2", OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_BGRA_4444_8u, kWithoutSSE2,
       OX_PixelFormat_VUYA_4444_8u_709},
      {"no fast step to BGRP", OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRP_4444_8u, kWithSSE2,
       OX_PixelFormat_VUYP_4444_8u},
      {"equal formats", OX_PixelFormat_V210_422_10u, OX_PixelFormat_V210_422_10u, kAny, OX_PixelFormat_V210_422_10u},
      {"X to A", OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_VUYA_4444_8u, kAny, OX_PixelFormat_VUYA_4444_8u},
      {"X to P", OX_PixelFormat_XRGB_4444_32f, OX_PixelFormat_PRGB_4444_32f, kAny, OX_PixelFormat_PRGB_4444_32f},
      {"P to X", OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_VUYX_4444_8u, kAny, OX_PixelFormat_VUYX_4444_8u},
      {"P to A", OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_BGRA_4444_15u, kAny, OX_PixelFormat_BGRA_4444_15u},
      {"A to P", OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRP_4444_32f_Linear, kAny,
       OX_PixelFormat_BGRP_4444_32f_Linear},
      {"A to X through P", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRX_4444_8u, kAny,
       OX_PixelFormat_BGRP_4444_8u},
      {"A to X through P", OX_PixelFormat_ARGB_4444_15u, OX_PixelFormat_XRGB_4444_15u, kAny,
       OX_PixelFormat_PRGB_4444_15u},
      {"depth to 32f", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_32f, kAny, OX_PixelFormat_BGRA_4444_32f},
      {"depth to 32f", OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_UYVY_422_32f_709, kAny,
       OX_PixelFormat_UYVY_422_32f_709},
      {"depth to 32f", OX_PixelFormat_PRGB_4444_15u, OX_PixelFormat_PRGB_4444_32f, kAny, OX_PixelFormat_PRGB_4444_32f},
      {"depth from 32f", OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_VUYP_4444_8u, kAny, OX_PixelFormat_VUYP_4444_8u},
      {"depth from 32f", OX_PixelFormat_YUYV_422_32f, OX_PixelFormat_YUYV_422_8u, kAny, OX_PixelFormat_YUYV_422_8u},
      {"8u to 15u", OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_BGRX_4444_15u, kAny, OX_PixelFormat_BGRX_4444_15u},
      {"15u to 8u", OX_PixelFormat_ARGB_4444_15u, OX_PixelFormat_ARGB_4444_8u, kAny, OX_PixelFormat_ARGB_4444_8u},
      {"opaque alpha first", OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_VUYP_4444_32f_709, kAny,
       OX_PixelFormat_BGRP_4444_8u},
      {"opaque alpha first", OX_PixelFormat_VUYX_4444_32f, OX_PixelFormat_ARGB_4444_15u, kAny,
       OX_PixelFormat_VUYA_4444_32f},
      // Only order and alpha differ: not the opaque-alpha rule, the table goes through XRGB.
      {"table", OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_PRGB_4444_32f, kAny, OX_PixelFormat_XRGB_4444_32f},
      // 15u X forms are not made opaque first.
      {"table", OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_VUYA_4444_8u, kAny, OX_PixelFormat_BGRX_4444_8u},
      {"table", OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_RGB_444_10u, kAny, OX_PixelFormat_BGRP_4444_15u},
      {"table", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u, kAny, OX_PixelFormat_VUYA_4444_8u},
      {"table", OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_UYVY_422_8u, kAny, OX_PixelFormat_VUYP_4444_8u},
  };
  for (const Case& c : cases) {
    for (bool sse2 : {false, true}) {
      if ((c.fLevel == kWithSSE2 && !sse2) || (c.fLevel == kWithoutSSE2 && sse2)) continue;
      test::ScopedLevel level(FlagsWithSSE2(sse2));
      OX_PixelFormat format = c.fCurrent;
      RowConverter converter = reinterpret_cast<RowConverter>(1);
      ASSERT_EQ(OX_ChooseRowStep(c.fCurrent, c.fDestination, 3, &converter, &format), OX_Success) << c.fRule;
      EXPECT_EQ(Name(format), Name(c.fLandsOn))
          << c.fRule << ": " << Name(c.fCurrent) << " -> " << Name(c.fDestination) << (sse2 ? " with" : " without")
          << " SSE2";
    }
  }
}

TEST(ChooseRowStep, ContainersAndUnknownCodesAreRefused) {
  struct Case {
    OX_PixelFormat fCurrent, fDestination;
    OX_Result fResult;
  };
  const Case cases[] = {
      {OX_PixelFormat_NTSCDV25, OX_PixelFormat_BGRA_4444_8u, OX_ErrBadSourceFormat},
      {OX_PixelFormat_YUV_420_MPEG2_FRAME, OX_PixelFormat_NTSCDV25, OX_ErrBadSourceFormat},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_PALDV50, OX_ErrBadDestFormat},
      {0x845, OX_PixelFormat_UYVY_422_8u, OX_ErrBadSourceFormat},  // a YUV 10u 4:4:4 code
      {OX_PixelFormat_UYVY_422_8u, 0x44, OX_ErrBadDestFormat},
  };
  for (const Case& c : cases) {
    OX_PixelFormat format = c.fCurrent;
    RowConverter converter = nullptr;
    EXPECT_EQ(OX_ChooseRowStep(c.fCurrent, c.fDestination, 3, &converter, &format), c.fResult)
        << Name(c.fCurrent) << " -> " << Name(c.fDestination);
    EXPECT_EQ(format, c.fCurrent);
    EXPECT_EQ(converter, nullptr);
  }
}

TEST(ChooseRowStep, StepsToTheSameFormatCopyTheFormatsBytes) {
  struct Case {
    OX_PixelFormat fFormat;
    int fWidth;
    size_t fBytes;
  };
  const Case cases[] = {
      {OX_PixelFormat_BGRA_4444_8u, 5, 20},   {OX_PixelFormat_RGB_444_10u, 3, 12},
      {OX_PixelFormat_VUYP_4444_32f, 3, 48},  {OX_PixelFormat_ARGB_4444_15u, 3, 24},
      {OX_PixelFormat_UYVY_422_8u, 5, 12},    {OX_PixelFormat_YUYV_422_32f_709, 3, 32},
      {OX_PixelFormat_V210_422_10u, 7, 32},   {OX_PixelFormat_V210_422_10u_709, 6, 16},
  };
  for (const Case& c : cases) {
    RowConverter converter = nullptr;
    OX_PixelFormat format = c.fFormat;
    ASSERT_EQ(OX_ChooseRowStep(c.fFormat, c.fFormat, 3, &converter, &format), OX_Success);
    ASSERT_NE(converter, nullptr) << Name(c.fFormat);
    std::vector<uint8_t> in(64), out(64, 0xEE);
    for (size_t i = 0; i < in.size(); ++i) in[i] = uint8_t(i + 1);
    converter(in.data(), out.data(), c.fWidth);
    for (size_t i = 0; i < out.size(); ++i)
      ASSERT_EQ(out[i], i < c.fBytes ? in[i] : 0xEE) << Name(c.fFormat) << " byte " << i;
  }
}

TEST(RowConverterChain, EveryPairBuildsAChainEndingOnTheDestination) {
  test::ForEachLevel([](const test::Level& level) {
    for (OX_PixelFormat from : kRawFormats) {
      for (OX_PixelFormat to : kRawFormats) {
        if (from == to) continue;
        RowConverterChain chain(from, to, 3);
        ASSERT_GE(chain.Count(), 1) << level.fName << ": " << Name(from) << " -> " << Name(to);
        ASSERT_LE(chain.Count(), RowConverterChain::kMaxConverters);
        EXPECT_EQ(chain.Format(0), from);
        EXPECT_EQ(chain.Format(chain.Count()), to);
        for (int i = 0; i < chain.Count(); ++i) {
          EXPECT_NE(chain.Converter(i), nullptr);
          if (i + 1 < chain.Count()) {
            EXPECT_NE(chain.Format(i + 1), to);
          }
        }
      }
    }
  });
}

TEST(RowConverterChain, LongestAndFastestChains) {
  RowConverterChain longest(OX_PixelFormat_PRGB_4444_32f_Linear, OX_PixelFormat_YUYV_422_8u, 3);
  ASSERT_EQ(longest.Count(), 8);
  EXPECT_EQ(longest.Format(7), OX_PixelFormat_UYVY_422_8u);
  for (bool sse2 : {false, true}) {
    test::ScopedLevel level(FlagsWithSSE2(sse2));
    RowConverterChain fast(OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRA_4444_8u, 3);
    EXPECT_EQ(fast.Count(), sse2 ? 1 : 2);
    if (sse2) {
      EXPECT_EQ(fast.Converter(0), FindRowConverter(OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRA_4444_8u, 3));
    }
  }
  // The one deliberate pairing: the 15u step towards RGB_444_10u runs the un-premultiply.
  RowConverterChain to10u(OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_RGB_444_10u, 3);
  ASSERT_EQ(to10u.Count(), 2);
  EXPECT_EQ(to10u.Format(1), OX_PixelFormat_BGRP_4444_15u);
  EXPECT_EQ(to10u.Converter(0), FindRowConverter(OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_BGRA_4444_15u, 3));
  EXPECT_NE(to10u.Converter(0), FindRowConverter(OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_BGRP_4444_15u, 3));
}

TEST(RowConverterChain, FailuresLeaveAnEmptyChain) {
  const OX_PixelFormat pairs[][2] = {
      {OX_PixelFormat_NTSCDV25, OX_PixelFormat_BGRA_4444_8u},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_YUV_420_MPEG4_FRAME},
      {0x44, OX_PixelFormat_BGRA_4444_8u},
      {OX_PixelFormat_BGRA_4444_8u, 0x845},
  };
  for (const auto& p : pairs) {
    RowConverterChain chain(OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u, 3);
    ASSERT_FALSE(chain.Empty());
    chain.Build(p[0], p[1], 3);
    EXPECT_TRUE(chain.Empty()) << Name(p[0]) << " -> " << Name(p[1]);
    uint8_t in[64] = {}, out[64] = {};
    EXPECT_FALSE(chain.Apply(in, out, 4));
  }
  RowConverterChain chain(OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u, 3);
  chain.Clear();
  EXPECT_EQ(chain.Count(), 0);
}

// Apply with its own scratch and with the caller's scratch give the same row, and neither writes
// past the destination row, for one-, two- and many-step chains.
TEST(RowConverterChain, ApplyMatchesApplyWithScratch) {
  const OX_PixelFormat pairs[][2] = {
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_ARGB_4444_8u},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_VUYP_4444_8u},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u},
      {OX_PixelFormat_PRGB_4444_32f_Linear, OX_PixelFormat_YUYV_422_8u},
  };
  std::mt19937 rng(7);
  for (const auto& p : pairs) {
    RowConverterChain chain(p[0], p[1], 3);
    ASSERT_FALSE(chain.Empty());
    for (int width : {1, 2, 7, 64, 1921}) {
      std::vector<uint8_t> in(size_t(width) * 16);
      for (auto& b : in) b = uint8_t(rng());
      if (DepthOf(p[0]) == kDepth32f) {
        float* f = reinterpret_cast<float*>(in.data());
        for (int i = 0; i < width * 4; ++i) f[i] = float(rng() % 1000) / 999.0f;
      }
      const size_t outBytes = size_t(TightRowBytes(p[1], width));
      std::vector<uint8_t> a(outBytes + 32, 0xA5), b(outBytes + 32, 0xA5);
      std::vector<uint8_t> scratchA(size_t(width) * 16), scratchB(size_t(width) * 16);
      ASSERT_TRUE(chain.Apply(in.data(), a.data(), width));
      chain.ApplyWithScratch(in.data(), b.data(), width, scratchA.data(), scratchB.data());
      EXPECT_EQ(a, b) << Name(p[0]) << " -> " << Name(p[1]) << " width " << width;
      for (size_t i = outBytes; i < a.size(); ++i) ASSERT_EQ(a[i], 0xA5) << "wrote past the row at " << i;
    }
  }
}

}  // namespace
}  // namespace OX
