// Level selection of the primitive layer: the request table, the statuses, the feature probe and
// the start-up rule that keeps the layer off AVX when the library's AVX flag is clear.
#include <gtest/gtest.h>

#include "frame/Globals.h"
#include "frame/Startup.h"
#include "primitives/Primitives.h"
#include "support/LevelHarness.h"
#include "support/PrimitiveLevels.h"

namespace OX {
namespace {

struct Request {
  int32_t fCode;
  int32_t fLevel;  // -1: refused
  int32_t fStatus;
};
const Request kRequests[] = {
    {0, 0, 0},   {1, 0, 0},   {2, 0, 0},   {3, 0, 0},   {4, 0, 0},   {5, 0, 0},   {64, 0, 0},  {96, 0, 0},
    {6, 1, 0},   {7, 1, 0},   {8, 1, 0},   {9, 1, 0},   {10, 1, 0},  {11, 1, 0},  {32, 1, 0},  {65, 1, 0},
    {66, 1, 0},  {33, 2, 0},  {34, 2, 0},  {67, 2, 0},  {36, 3, 0},  {35, 4, 0},  {37, 4, 0},  {38, 4, 0},
    {68, 4, 0},  {69, 4, 0},  {71, 4, 0},  {70, 5, 0},  {73, 5, 0},  {74, 6, 0},  {75, 6, 0},  {16, -1, 36},
    {17, -1, 36}, {12, -1, 21}, {31, -1, 21}, {39, -1, 21}, {72, -1, 21}, {76, -1, 21}, {97, -1, 21}, {-2, -1, 21},
};

int32_t LevelOfCode(int32_t code) {
  for (const Request& r : kRequests)
    if (r.fCode == code) return r.fLevel;
  return -1;
}

TEST(PrimitiveLevel, RequestTableAndStatuses) {
  for (const Request& r : kRequests) {
    test::ScopedPrimitiveLevel scoped(3);
    EXPECT_EQ(SelectPrimitiveLevel(r.fCode), r.fStatus) << "request " << r.fCode;
    EXPECT_EQ(PrimitiveLevel, r.fLevel >= 0 ? r.fLevel : 3) << "request " << r.fCode;
  }
  test::ScopedPrimitiveLevel scoped(0);
  EXPECT_EQ(SelectPrimitiveLevel(-1), 0);
  EXPECT_EQ(PrimitiveLevel, HighestSupportedPrimitiveLevel());
}

TEST(PrimitiveLevel, FeatureBitsFollowTheProcessor) {
  __builtin_cpu_init();
  const uint32_t bits = PrimitiveFeatureBits();
  EXPECT_EQ(bool(bits & (1u << 2)), bool(__builtin_cpu_supports("sse2")));
  EXPECT_EQ(bool(bits & (1u << 4)), bool(__builtin_cpu_supports("ssse3")));
  EXPECT_EQ(bool(bits & (1u << 6)), bool(__builtin_cpu_supports("sse4.1")));
  EXPECT_EQ(bool(bits & (1u << 7)), bool(__builtin_cpu_supports("sse4.2")));
  EXPECT_EQ(bool(bits & (1u << 15)), __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
                                         __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2"));
  const int32_t highest = HighestSupportedPrimitiveLevel();
  EXPECT_GE(highest, 1);  // every x86-64 processor has SSE2
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("bmi2"))
    EXPECT_EQ(highest, 6);
}

TEST(PrimitiveLevel, ProcessorCodeIsAnAcceptedRequest) {
  const int32_t code = GetProcessorCode();
  EXPECT_GE(LevelOfCode(code), 0) << "code " << code;
  test::ScopedPrimitiveLevel scoped(0);
  EXPECT_EQ(SelectPrimitiveLevel(code), 0);
}

TEST(PrimitiveLevel, StartUpKeepsTheLayerOffAVXWhenTheFlagIsClear) {
  const int32_t code = GetProcessorCode();
  for (bool avx : {false, true}) {
    ProcessorFlags flags = gProcessor;
    flags.fAVX = avx;
    test::ScopedLevel flagsScope(flags);
    test::ScopedPrimitiveLevel scoped(0);
    StartPrimitiveLayer();
    int32_t expected;
    if (!avx && (code & ~1) == 70)
      expected = LevelOfCode(69);
    else if (code == 0 || LevelOfCode(code) < 0)
      expected = LevelOfCode(6);
    else
      expected = LevelOfCode(code);
    EXPECT_EQ(PrimitiveLevel, expected) << "code " << code << " avx " << avx;
  }
}

}  // namespace
}  // namespace OX
