// Each family's chooser climbs the processor levels newest first and stops at the newest form the
// family has: the table it returns at each level is the one expected for that level.
#include <gtest/gtest.h>

#include <string>

#include "conversion/ConverterFamilies.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

// Expected table by level: portable, SSE2, SSSE3, SSE4.1, AVX, AVX2.
struct Ladder {
  const char* fName;
  const RowConverter* (*fChoose)();
  const RowConverter* fByLevel[6];
};

const Ladder kLadders[] = {
    {"Range8u32f", &ChooseRange8u32f,
     {portable::kRange8u32f, sse2::kRange8u32f, sse2::kRange8u32f, sse2::kRange8u32f, sse2::kRange8u32f, avx2::kRange8u32f}},
    {"Depth15u", &ChooseDepth15u,
     {portable::kDepth15u, sse2::kDepth15u, sse2::kDepth15u, sse41::kDepth15u, sse41::kDepth15u, sse41::kDepth15u}},
    {"Matrix8u", &ChooseMatrix8u,
     {portable::kMatrix8u, sse2::kMatrix8u, sse2::kMatrix8u, sse2::kMatrix8u, avx::kMatrix8u, avx2::kMatrix8u}},
    {"Matrix32f", &ChooseMatrix32f,
     {portable::kMatrix32f, sse2::kMatrix32f, sse2::kMatrix32f, sse2::kMatrix32f, avx::kMatrix32f, avx2::kMatrix32f}},
    {"Yuv709_8u", &ChooseYuv709_8u,
     {portable::kYuv709_8u, sse2::kYuv709_8u, sse2::kYuv709_8u, sse2::kYuv709_8u, avx::kYuv709_8u, avx2::kYuv709_8u}},
    {"Alpha", &ChooseAlpha, {portable::kAlpha, sse2::kAlpha, sse2::kAlpha, sse2::kAlpha, sse2::kAlpha, avx2::kAlpha}},
    {"Premul15u", &ChoosePremul15u,
     {portable::kPremul15u, sse2::kPremul15u, sse2::kPremul15u, sse41::kPremul15u, sse41::kPremul15u, sse41::kPremul15u}},
    {"Unpremul32f", &ChooseUnpremul32f,
     {portable::kUnpremul32f, portable::kUnpremul32f, portable::kUnpremul32f, portable::kUnpremul32f, avx::kUnpremul32f,
      avx::kUnpremul32f}},
    {"Order", &ChooseOrder, {portable::kOrder, portable::kOrder, ssse3::kOrder, ssse3::kOrder, ssse3::kOrder, avx2::kOrder}},
    {"Subsample", &ChooseSubsample,
     {portable::kSubsample, sse2::kSubsample, ssse3::kSubsample, ssse3::kSubsample, ssse3::kSubsample, avx2::kSubsample}},
    {"V210", &ChooseV210, {portable::kV210, portable::kV210, ssse3::kV210, ssse3::kV210, ssse3::kV210, avx2::kV210}},
    {"Rgb10u", &ChooseRgb10u, {portable::kRgb10u, portable::kRgb10u, portable::kRgb10u, portable::kRgb10u, portable::kRgb10u, portable::kRgb10u}},
    {"Linear", &ChooseLinear, {portable::kLinear, portable::kLinear, portable::kLinear, portable::kLinear, portable::kLinear, portable::kLinear}},
};

int LevelIndex(const std::string& name) {
  const char* kNames[] = {"portable", "SSE2", "SSSE3", "SSE4.1", "AVX", "AVX2"};
  for (int i = 0; i < 6; ++i)
    if (name == kNames[i]) return i;
  return -1;
}

TEST(ConverterChoosers, NewestFormTheFlagsAllow) {
  int levelsSeen = 0;
  test::ForEachLevel([&](const test::Level& level) {
    const int li = LevelIndex(level.fName);
    ASSERT_GE(li, 0) << level.fName;
    ++levelsSeen;
    for (const Ladder& l : kLadders) EXPECT_EQ(l.fChoose(), l.fByLevel[li]) << l.fName << " at " << level.fName;
  });
  EXPECT_GE(levelsSeen, 2);
  // Every table is complete: no member is missing at any level.
  for (const Ladder& l : kLadders)
    for (const RowConverter* table : l.fByLevel) {
      int count = 0;
#define OX_COUNT(name, n) \
  if (std::string(l.fName) == #name) count = n;
      OX_CONVERTER_FAMILIES(OX_COUNT)
#undef OX_COUNT
      ASSERT_GT(count, 0) << l.fName;
      for (int m = 0; m < count; ++m) EXPECT_NE(table[m], nullptr) << l.fName << " member " << m;
    }
}

}  // namespace
}  // namespace OX
