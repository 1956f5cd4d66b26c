// The primitive layer: transforms in blocks per second at every level of the layer, the
// table multiply of a dequantisation row, and libavcodec's inverse DCT on the same blocks.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "primitives/Primitives.h"

#if OMBRIX_HAVE_LIBAVCODEC
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/avdct.h>
#include <libavutil/mem.h>
}
#endif

namespace ombrix_bench {
namespace {

constexpr int kBlocks = 1024;  // a working set that stays in the first-level caches

// Coefficient blocks like a decoder's: a DC and a falling spread of small AC values.
std::vector<int16_t> CoefficientBlocks() {
  std::mt19937 rng(1);
  std::vector<int16_t> b(size_t(kBlocks) * 64);
  for (int k = 0; k < kBlocks; ++k)
    for (int i = 0; i < 64; ++i)
      b[size_t(k * 64 + i)] = int16_t(i == 0 ? int(rng() % 2048) - 1024 : (int(rng() % 129) - 64) / (1 + i / 8));
  return b;
}

class PrimitiveLevelScope {
 public:
  explicit PrimitiveLevelScope(int32_t level) : fSaved(OX::PrimitiveLevel) { OX::PrimitiveLevel = level; }
  ~PrimitiveLevelScope() { OX::PrimitiveLevel = fSaved; }

 private:
  int32_t fSaved;
};

void BM_Transform(benchmark::State& state, int32_t (*transform)(int16_t*), int32_t level) {
  PrimitiveLevelScope scope(level);
  const std::vector<int16_t> source = CoefficientBlocks();
  std::vector<int16_t> work = source;
  // The blocks are restored inside the timed loop, for ours and the peer alike: the peer skips
  // rows of zeros, which repeated in-place transforms would soon produce.
  for (auto _ : state) {
    std::copy(source.begin(), source.end(), work.begin());
    for (int k = 0; k < kBlocks; ++k) transform(work.data() + 64 * k);
    benchmark::ClobberMemory();
  }
  state.counters["blocks/s"] = benchmark::Counter(double(state.iterations()) * kBlocks, benchmark::Counter::kIsRate);
}

void BM_MulTable(benchmark::State& state, int32_t level) {
  PrimitiveLevelScope scope(level);
  const std::vector<int16_t> source = CoefficientBlocks();
  std::vector<uint16_t> table(64);
  for (int i = 0; i < 64; ++i) table[size_t(i)] = uint16_t(256 + 600 * i);
  std::vector<int16_t> work = source;
  for (auto _ : state) {
    for (int k = 0; k < kBlocks; ++k) OX::VecMulTableRoundScaled(table.data(), work.data() + 64 * k, 64, 14);
    benchmark::ClobberMemory();
  }
  state.counters["blocks/s"] = benchmark::Counter(double(state.iterations()) * kBlocks, benchmark::Counter::kIsRate);
}

// Frame-sized block operations on a 1920 x 1080 picture of four bytes a pixel.
constexpr int kWidth = 1920, kHeight = 1080, kRowBytes = kWidth * 4;

void BM_Frame(benchmark::State& state, int which, int32_t level) {
  PrimitiveLevelScope scope(level);
  std::vector<uint8_t> a(size_t(kRowBytes) * kHeight, 7), b(a.size(), 9);
  std::vector<float> f(size_t(kWidth) * kHeight);
  for (size_t i = 0; i < f.size(); ++i) f[i] = float(i % 70000) * 0.75f - 20000.0f;
  std::vector<int16_t> out16(f.size());
  const uint8_t pattern[4] = {1, 2, 3, 4}, k[4] = {200, 100, 50, 255};
  for (auto _ : state) {
    switch (which) {
      case 0: OX::VecFill8uC4(pattern, b.data(), kRowBytes, kWidth, kHeight); break;
      case 1: OX::VecCopy2D8u(a.data(), kRowBytes, b.data(), kRowBytes, kRowBytes, kHeight); break;
      case 2: OX::VecCopyChannel8uC4(255, b.data() + 3, kRowBytes, kWidth, kHeight); break;
      case 3: OX::VecMulConstant8uC4(a.data(), kRowBytes, k, b.data(), kRowBytes, kWidth, kHeight, 8); break;
      default: OX::VecConvert32fTo16sScaled(f.data(), out16.data(), int32_t(f.size()), 1, 2); break;
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(a.size()));
}

#if OMBRIX_HAVE_LIBAVCODEC
void BM_LibavcodecIDCT(benchmark::State& state) {
  AVDCT* dct = avcodec_dct_alloc();
  dct->idct_algo = FF_IDCT_AUTO;
  avcodec_dct_init(dct);
  const std::vector<int16_t> source = CoefficientBlocks();
  auto* work = static_cast<int16_t*>(av_malloc(source.size() * 2));
  std::copy(source.begin(), source.end(), work);
  for (auto _ : state) {
    std::copy(source.begin(), source.end(), work);
    for (int k = 0; k < kBlocks; ++k) dct->idct(work + 64 * k);
    benchmark::ClobberMemory();
  }
  state.counters["blocks/s"] = benchmark::Counter(double(state.iterations()) * kBlocks, benchmark::Counter::kIsRate);
  av_free(work);
  av_free(dct);
}
#endif

int Register() {
  const int32_t highest = OX::HighestSupportedPrimitiveLevel();
  const std::string blocks = "/" + std::to_string(kBlocks) + "blocks/level";
  for (int32_t level = 0; level <= highest; ++level) {
    const std::string l = std::to_string(level);
    benchmark::RegisterBenchmark(("VecDCT8x8Inverse" + blocks + l).c_str(), BM_Transform, &OX::VecDCT8x8Inverse, level)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(("VecDCT248Inverse" + blocks + l).c_str(), BM_Transform, &OX::VecDCT248Inverse, level)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(("VecDCT8x8Forward" + blocks + l).c_str(), BM_Transform, &OX::VecDCT8x8Forward, level)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(("VecDCT248Forward" + blocks + l).c_str(), BM_Transform, &OX::VecDCT248Forward, level)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(("VecMulTableRoundScaled/64x" + std::to_string(kBlocks) + "/level" + l).c_str(),
                                 BM_MulTable, level)
        ->Unit(benchmark::kMicrosecond);
  }
  const char* kFrameOps[] = {"VecFill8uC4", "VecCopy2D8u", "VecCopyChannel8uC4", "VecMulConstant8uC4",
                             "VecConvert32fTo16sScaled"};
  for (int op = 0; op < 5; ++op)
    for (int32_t level : {0, 1, highest})
      benchmark::RegisterBenchmark((std::string(kFrameOps[op]) + "/1920x1080/level" + std::to_string(level)).c_str(),
                                   BM_Frame, op, level)
          ->Unit(benchmark::kMicrosecond);
#if OMBRIX_HAVE_LIBAVCODEC
  const std::string peer = "libavcodec_idct" + blocks.substr(0, blocks.size() - 6);
  benchmark::RegisterBenchmark(peer.c_str(), BM_LibavcodecIDCT)->Unit(benchmark::kMicrosecond);
  for (int32_t level = 0; level <= highest; ++level)
    CompareWith("VecDCT8x8Inverse" + blocks + std::to_string(level), peer,
                "inverse 8x8 DCT at level " + std::to_string(level) + " vs libavcodec");
#endif
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
