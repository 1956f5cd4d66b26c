// Frame copies: OX_CopyMemory against the C library's memcpy.
#include <cstring>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"

namespace ombrix_bench {
namespace {

struct CopyCase {
  const char* fName;
  OX_PixelFormat fFormat;
  int fWidth, fHeight;
};
constexpr CopyCase kCases[] = {{"BGRA_4444_8u/1920x1080", OX_PixelFormat_BGRA_4444_8u, 1920, 1080},
                               {"BGRA_4444_32f/3840x2160", OX_PixelFormat_BGRA_4444_32f, 3840, 2160}};

void Frame(const CopyCase& c, std::vector<unsigned char>& a, std::vector<unsigned char>& b) {
  const size_t bytes = size_t(OX_PixelFormatSize(c.fFormat, c.fWidth, c.fHeight));
  a.assign(bytes + 64, 1);
  b.assign(bytes + 64, 2);
}

void BM_CopyMemory(benchmark::State& state, CopyCase c) {
  std::vector<unsigned char> a, b;
  Frame(c, a, b);
  const uint32_t bytes = uint32_t(a.size() - 64);
  for (auto _ : state) {
    OX_CopyMemory(b.data(), a.data(), bytes);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(int64_t(state.iterations()) * bytes);
}

void BM_memcpy(benchmark::State& state, CopyCase c) {
  std::vector<unsigned char> a, b;
  Frame(c, a, b);
  const size_t bytes = a.size() - 64;
  for (auto _ : state) {
    std::memcpy(b.data(), a.data(), bytes);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(int64_t(state.iterations()) * bytes);
}

int Register() {
  for (const CopyCase& c : kCases) {
    const std::string ours = std::string("OX_CopyMemory/") + c.fName;
    const std::string peer = std::string("memcpy/") + c.fName;
    benchmark::RegisterBenchmark(ours.c_str(), BM_CopyMemory, c)->UseRealTime()->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(peer.c_str(), BM_memcpy, c)->UseRealTime()->Unit(benchmark::kMicrosecond);
    CompareWith(ours, peer, std::string("frame copy ") + c.fName);
  }
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
