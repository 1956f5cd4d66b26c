// Shared pieces of the benchmark binary: the library started as a host starts it, level forcing,
// and the table of ours-against-peer ratios printed after the run.
#pragma once

#include <string>

#include <benchmark/benchmark.h>

#include "frame/Globals.h"

namespace ombrix_bench {

// Declares that benchmark `ours` and benchmark `peer` time the same work; after the run the
// summary prints ours / peer (below 1 means we are faster). Names are the full benchmark names.
void CompareWith(const std::string& ours, const std::string& peer, const std::string& label);

// Processor levels by name for rows that run one kernel at several levels.
enum class Level { Portable, SSE2, SSSE3, SSE41, AVX, AVX2 };
const char* LevelName(Level level);
bool MachineHas(Level level);
// Sets the flags for `level` while it lives.
class ScopedLevel {
 public:
  explicit ScopedLevel(Level level);
  ~ScopedLevel();

 private:
  OX::ProcessorFlags fSaved;
};

}  // namespace ombrix_bench
