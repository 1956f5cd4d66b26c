// A host that starts the library and exits without ending it must exit cleanly: the pool is still
// held by a global when the process's static objects are torn down.
#include <gtest/gtest.h>

#include <cstdlib>

#include "Ombrix.h"

namespace {

TEST(PlatformDeathTest, ExitWithoutTerminateIsClean) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        OX_Initialize();
        OX_Initialize();
        std::exit(7);
      },
      ::testing::ExitedWithCode(7), "");
}

}  // namespace
