// The level harness itself must catch a kernel that disagrees with the portable form, writes past
// its output, or changes its input; otherwise every family test built on it could pass falsely.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "support/LevelHarness.h"

namespace OX {
namespace {

void CopyRow(const void* in, void* out, int32_t w) { std::memcpy(out, in, size_t(w) * 4); }
void CopyRowWrong(const void* in, void* out, int32_t w) {
  std::memcpy(out, in, size_t(w) * 4);
  if (w > 5) static_cast<uint8_t*>(out)[5] ^= 1;
}
void CopyRowOverwrite(const void* in, void* out, int32_t w) { std::memcpy(out, in, size_t(w) * 4 + 1); }

test::RowKernelCheck Check(test::RowKernel higher) {
  test::RowKernelCheck c;
  c.fName = "copy";
  c.fInputBytes = [](int w) { return size_t(w) * 4; };
  c.fOutputBytes = [](int w) { return size_t(w) * 4; };
  c.fChoose = [higher]() -> test::RowKernel { return gHasSSE2 ? higher : &CopyRow; };
  return c;
}

TEST(LevelHarness, AcceptsAnAgreeingKernelAndCatchesFaults) {
  ASSERT_GE(test::AvailableLevels().size(), 2u);
  test::CheckRowKernelAtEveryLevel(Check(&CopyRow));
  EXPECT_FATAL_FAILURE(test::CheckRowKernelAtEveryLevel(Check(&CopyRowWrong)), "byte 5");
  EXPECT_FATAL_FAILURE(test::CheckRowKernelAtEveryLevel(Check(&CopyRowOverwrite)), "wrote past");
}

TEST(LevelHarness, LevelsRiseOneAtATimeAndRestore) {
  const ProcessorFlags before = gProcessor;
  bool previousSSE2 = true;
  int count = 0;
  test::ForEachLevel([&](const test::Level& level) {
    if (count == 0) {
      EXPECT_FALSE(gHasSSE2);
    } else if (count == 1) {
      EXPECT_TRUE(gHasSSE2 && !gHasSSSE3);
    } else {
      EXPECT_TRUE(previousSSE2 && gHasSSE2);
    }
    previousSSE2 = gHasSSE2;
    ++count;
  });
  EXPECT_EQ(count, int(test::AvailableLevels().size()));
  EXPECT_EQ(std::memcmp(&before, &gProcessor, sizeof before), 0);
}

}  // namespace
}  // namespace OX
