// Runs a kernel family at every processor level the machine has, against its portable form.
//
// A level is a set of the global processor flags. The harness raises them one level at a time
// (portable, SSE2, SSSE3, SSE4.1, AVX, AVX2, as far as this processor goes), lets the family's
// chooser pick under those flags, and compares the newly chosen form with the portable one.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "frame/Globals.h"

namespace OX {
namespace test {

struct Level {
  const char* fName;
  ProcessorFlags fFlags;
};

// The levels this processor can run, lowest (portable, all flags false) first.
const std::vector<Level>& AvailableLevels();

// Sets the processor flags for its lifetime and restores the previous ones after.
class ScopedLevel {
 public:
  explicit ScopedLevel(const Level& level) : fSaved(gProcessor) { gProcessor = level.fFlags; }
  explicit ScopedLevel(const ProcessorFlags& flags) : fSaved(gProcessor) { gProcessor = flags; }
  ~ScopedLevel() { gProcessor = fSaved; }

 private:
  ProcessorFlags fSaved;
};

// Calls fn(level) once per available level with the flags set for it.
void ForEachLevel(const std::function<void(const Level&)>& fn);

// Widths every row kernel is tried at: 0 to 67 and one wide row.
const std::vector<int>& RowTestWidths();

using RowKernel = void (*)(const void* input, void* output, int32_t width);

struct RowKernelCheck {
  std::string fName;
  // Returns the family's kernel as its chooser picks it under the current flags.
  std::function<RowKernel()> fChoose;
  std::function<size_t(int width)> fInputBytes;
  std::function<size_t(int width)> fOutputBytes;
  // Fills an input row; the default is random bytes with a share of worst-case bytes (0, 255).
  std::function<void(uint8_t* input, size_t bytes, int width, std::mt19937& rng)> fFill;
  // Compares outputs; the default is bit-exact. Return an empty string when they agree.
  std::function<std::string(const uint8_t* portable, const uint8_t* level, size_t bytes, int width)> fCompare;
  // Bytes the kernel is allowed to write past fOutputBytes (declared over-write); 0 by default.
  size_t fOutputSlack = 0;
  // Offsets from 16-byte alignment tried for input and output (0..15 by default).
  int fOffsets = 16;
  unsigned fSeed = 12345;
};

// Runs the check at every level above the portable one; reports failures through GoogleTest.
// Also checks that the input is not changed and that guard bytes around the output stay intact.
void CheckRowKernelAtEveryLevel(const RowKernelCheck& check);

// Helpers for float rows: compare as floats within `ulps` units in the last place (NaN equals NaN).
std::string CompareFloatsUlps(const uint8_t* a, const uint8_t* b, size_t bytes, int ulps);

}  // namespace test
}  // namespace OX
