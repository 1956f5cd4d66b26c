// Shared pieces of the benchmark binary: the library started as a host starts it, level forcing,
// and the table of ours-against-peer ratios printed after the run.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "frame/Globals.h"

namespace ombrix_bench {

// Declares that benchmark `ours` and benchmark `peer` time the same work; after the run the
// summary prints ours / peer (below 1 means we are faster). Names are the full benchmark names.
void CompareWith(const std::string& ours, const std::string& peer, const std::string& label);

// A frame of `bytes` pseudo-random bytes, 64-byte aligned; floats in 0..1 when `floats` is set.
struct BenchFrame {
  std::vector<uint8_t> fStorage;
  uint8_t* fData;
  explicit BenchFrame(size_t bytes, bool floats = false) : fStorage(bytes + 64) {
    fData = fStorage.data() + (64 - reinterpret_cast<uintptr_t>(fStorage.data()) % 64) % 64;
    uint32_t s = 0x2545F491u;  // xorshift: frames of noise without the cost of a better generator
    for (size_t i = 0; i + 4 <= bytes; i += 4) {
      s ^= s << 13, s ^= s >> 17, s ^= s << 5;
      if (floats) {
        const float f = float(s % 1000) / 1000.0f;
        std::memcpy(fData + i, &f, 4);
      } else {
        std::memcpy(fData + i, &s, 4);
      }
    }
  }
};

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
