// Benchmark entry: runs every registered row, then prints our time over each peer's.
#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"

namespace ombrix_bench {
namespace {

struct Pair {
  std::string fOurs, fPeer, fLabel;
};
std::vector<Pair>& Pairs() {
  static std::vector<Pair> pairs;
  return pairs;
}

// Row names without the timing suffixes that the library appends.
std::string Strip(std::string name) {
  for (const char* suffix : {"/real_time", "/process_time", "/manual_time"}) {
    const size_t at = name.find(suffix);
    if (at != std::string::npos) name.erase(at, std::strlen(suffix));
  }
  return name;
}

// Collects each row's real time per iteration while printing as usual.
class CollectingReporter : public benchmark::ConsoleReporter {
 public:
  std::map<std::string, double> fTimes;
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& r : runs)
      if (r.run_type == Run::RT_Iteration && r.iterations > 0)
        fTimes[Strip(r.benchmark_name())] = r.GetAdjustedRealTime();
    ConsoleReporter::ReportRuns(runs);
  }
};

}  // namespace

void CompareWith(const std::string& ours, const std::string& peer, const std::string& label) {
  Pairs().push_back({Strip(ours), Strip(peer), label});
}

const char* LevelName(Level level) {
  static const char* kNames[] = {"portable", "SSE2", "SSSE3", "SSE4.1", "AVX", "AVX2"};
  return kNames[int(level)];
}

bool MachineHas(Level level) {
  __builtin_cpu_init();
  switch (level) {
    case Level::Portable: return true;
    case Level::SSE2: return __builtin_cpu_supports("sse2");
    case Level::SSSE3: return __builtin_cpu_supports("ssse3");
    case Level::SSE41: return __builtin_cpu_supports("sse4.1");
    case Level::AVX: return __builtin_cpu_supports("avx");
    case Level::AVX2: return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  }
  return false;
}

ScopedLevel::ScopedLevel(Level level) : fSaved(OX::gProcessor) {
  OX::ProcessorFlags f = {};
  const int l = int(level);
  f.fSSE = f.fSSE2 = l >= 1;
  f.fSSE3 = f.fSSSE3 = l >= 2;
  f.fSSE41 = f.fSSE42 = l >= 3;
  f.fAVX = l >= 4;
  f.fAVX2 = l >= 5;
  OX::gProcessor = f;
}
ScopedLevel::~ScopedLevel() { OX::gProcessor = fSaved; }

}  // namespace ombrix_bench

int main(int argc, char** argv) {
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx")) OX_SetDebugFlag(8, 1);
  if (__builtin_cpu_supports("avx2")) OX_SetDebugFlag(9, 1);
  OX_Initialize();
  benchmark::Initialize(&argc, argv);
  ombrix_bench::CollectingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n%-60s %12s %12s %8s\n", "ours / peer (below 1.00: ours is faster)", "ours", "peer", "ratio");
  for (const auto& p : ombrix_bench::Pairs()) {
    auto a = reporter.fTimes.find(p.fOurs), b = reporter.fTimes.find(p.fPeer);
    if (a == reporter.fTimes.end() || b == reporter.fTimes.end()) continue;  // filtered out of this run
    std::printf("%-60s %12.1f %12.1f %8.2f\n", p.fLabel.c_str(), a->second, b->second, a->second / b->second);
  }
  benchmark::Shutdown();
  OX_Terminate();
  return 0;
}
