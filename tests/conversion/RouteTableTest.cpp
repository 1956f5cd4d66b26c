// The route table: its group notation expands as written, every ordered pair of distinct raw
// formats is named exactly once, and following the chooser reaches every destination in at most
// eight steps at every processor level.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "conversion/ConvertPipeline.h"
#include "conversion/RouteTable.h"
#include "frame/Globals.h"
#include "frame/PixelFormat.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

std::string Name(OX_PixelFormat f) { return RouteFormatName(f); }

TEST(RouteTable, GroupNotationExpands) {
  struct Case {
    const char* fItem;
    std::vector<std::string> fNames;
  };
  const Case cases[] = {
      {"BGRA_4444_8u", {"BGRA_4444_8u"}},
      {"VUY?_4444_8u", {"VUYA_4444_8u", "VUYP_4444_8u", "VUYX_4444_8u"}},
      {"?RGB_4444_32f_Linear", {"ARGB_4444_32f_Linear", "PRGB_4444_32f_Linear", "XRGB_4444_32f_Linear"}},
      {"V210_422_10u (+709)", {"V210_422_10u", "V210_422_10u_709"}},
      {"UYVY+YUYV_422_8u", {"UYVY_422_8u", "YUYV_422_8u"}},
      {"UYVY+YUYV_422_32f (+709)", {"UYVY_422_32f", "UYVY_422_32f_709", "YUYV_422_32f", "YUYV_422_32f_709"}},
      {"VUY?_4444_32f (+709)",
       {"VUYA_4444_32f", "VUYA_4444_32f_709", "VUYP_4444_32f", "VUYP_4444_32f_709", "VUYX_4444_32f",
        "VUYX_4444_32f_709"}},
  };
  for (const Case& c : cases) EXPECT_EQ(ExpandRouteGroup(c.fItem), c.fNames) << c.fItem;
}

TEST(RouteTable, NamesResolveToTheFortySevenRawFormats) {
  std::set<OX_PixelFormat> seen;
  for (OX_PixelFormat f : kRawFormats) {
    EXPECT_EQ(RawFormatByName(Name(f)), f) << Name(f);
    seen.insert(f);
  }
  EXPECT_EQ(seen.size(), size_t(kRawFormatCount));
  for (const char* notRaw : {"NTSCDV25", "YUV_420_MPEG2_FIELD", "Invalid", "BGRA_4444_10u", "VUYA_422_8u"})
    EXPECT_EQ(RawFormatByName(notRaw), 0u) << notRaw;
  EXPECT_EQ(RawFormatIndex(OX_PixelFormat_NTSCDV25), -1);
  EXPECT_EQ(RawFormatIndex(0x44), -1);
}

TEST(RouteTable, EveryOrderedPairIsCoveredExactlyOnce) {
  const RouteTableReport& report = RouteTableCheck();
  EXPECT_GT(report.fRowCount, 200);
  for (const std::string& p : report.fProblems) ADD_FAILURE() << p;
  for (int i = 0; i < kRawFormatCount; ++i) {
    for (int j = 0; j < kRawFormatCount; ++j) {
      const int expected = i == j ? 0 : 1;
      EXPECT_EQ(report.fCoverage[i][j], expected) << Name(kRawFormats[i]) << " -> " << Name(kRawFormats[j]);
      if (i != j) {
        EXPECT_NE(RouteLandsOn(kRawFormats[i], kRawFormats[j]), 0u);
      }
    }
    EXPECT_EQ(RouteLandsOn(kRawFormats[i], kRawFormats[i]), 0u);
  }
}

TEST(RouteTable, LandingsOfSampleRows) {
  struct Case {
    OX_PixelFormat fInHand, fDestination, fLandsOn;
  };
  const Case cases[] = {
      {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYP_4444_8u},
      {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRA_4444_32f},
      {OX_PixelFormat_PRGB_4444_32f_Linear, OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_BGRP_4444_32f_Linear},
      {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_UYVY_422_8u},
      {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_UYVY_422_32f_709},
      {OX_PixelFormat_RGB_444_10u, OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_BGRX_4444_8u},
      {OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRP_4444_15u},
      {OX_PixelFormat_XRGB_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRX_4444_32f_Linear},
  };
  for (const Case& c : cases)
    EXPECT_EQ(Name(RouteLandsOn(c.fInHand, c.fDestination)), Name(c.fLandsOn))
        << Name(c.fInHand) << " -> " << Name(c.fDestination);
}

// The formats a route passes through, following only the chooser's landings; empty if a step fails.
std::vector<OX_PixelFormat> FollowLandings(OX_PixelFormat from, OX_PixelFormat to, int maxSteps) {
  std::vector<OX_PixelFormat> path;
  OX_PixelFormat format = from;
  for (int i = 0; i < maxSteps; ++i) {
    RowConverter converter = nullptr;
    if (OX_ChooseRowStep(format, to, 3, &converter, &format) != OX_Success) return {};
    path.push_back(format);
    if (format == to) return path;
  }
  return {};
}

TEST(RouteTable, EveryPairReachesItsDestinationWithinEightSteps) {
  test::ForEachLevel([](const test::Level& level) {
    int longest = 0;
    for (OX_PixelFormat from : kRawFormats) {
      for (OX_PixelFormat to : kRawFormats) {
        if (from == to) continue;
        const std::vector<OX_PixelFormat> path = FollowLandings(from, to, 8);
        ASSERT_FALSE(path.empty()) << level.fName << ": " << Name(from) << " -> " << Name(to);
        longest = std::max<int>(longest, int(path.size()));
      }
    }
    EXPECT_EQ(longest, 8) << level.fName;
  });
}

TEST(RouteTable, LongestRouteTakesEightSteps) {
  const std::vector<OX_PixelFormat> expected = {
      OX_PixelFormat_BGRP_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f,
      OX_PixelFormat_VUYA_4444_32f,        OX_PixelFormat_VUYP_4444_32f,        OX_PixelFormat_VUYP_4444_8u,
      OX_PixelFormat_UYVY_422_8u,          OX_PixelFormat_YUYV_422_8u};
  test::ForEachLevel([&](const test::Level& level) {
    EXPECT_EQ(FollowLandings(OX_PixelFormat_PRGB_4444_32f_Linear, OX_PixelFormat_YUYV_422_8u, 8), expected)
        << level.fName;
  });
}

}  // namespace
}  // namespace OX
