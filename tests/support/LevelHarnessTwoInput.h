// The level harness for kernels of two input rows and a value (composites, blends, dissolves):
// each level's form against the portable one on widths 0-67 and a wide row, with the three rows
// at their own offsets from alignment, guard bytes around the output, unchanged inputs, and the
// output written over the background row as in-place callers do.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "support/LevelHarness.h"

namespace OX {
namespace test {

using TwoInputKernel = void (*)(const void* source, const void* background, void* output, int32_t count, float value);

struct TwoInputKernelCheck {
  std::string fName;
  std::function<TwoInputKernel()> fChoose;
  size_t fBytesPerPixel = 4;  // of the three rows alike
  std::vector<float> fValues = {0.0f, 0.3f, 0.5f, 1.0f};
  // Fills a row; the default is random bytes with a share of 0 and 255.
  std::function<void(uint8_t* row, size_t bytes, std::mt19937& rng)> fFill;
  // Compares outputs; the default is bit-exact. Return an empty string when they agree.
  std::function<std::string(const uint8_t* portable, const uint8_t* level, size_t bytes)> fCompare;
  unsigned fSeed = 4242;
};

void CheckTwoInputKernelAtEveryLevel(const TwoInputKernelCheck& check);

// Bytes that may differ by at most `levels` (for the 8-bit forms with approximate arithmetic).
std::string CompareBytesWithin(const uint8_t* a, const uint8_t* b, size_t bytes, int levels);

}  // namespace test
}  // namespace OX
