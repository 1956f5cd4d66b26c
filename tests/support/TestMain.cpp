// Test entry: starts the library as a host would, with AVX and AVX2 enabled where the processor
// has them, so that every level is reachable from the tests.
#include <gtest/gtest.h>

#include "Ombrix.h"

namespace {
class LibraryEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx")) OX_SetDebugFlag(8, 1);
    if (__builtin_cpu_supports("avx2")) OX_SetDebugFlag(9, 1);
    OX_Initialize();
  }
  void TearDown() override { OX_Terminate(); }
};
}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::AddGlobalTestEnvironment(new LibraryEnvironment);
  return RUN_ALL_TESTS();
}
