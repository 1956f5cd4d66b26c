#include "support/LevelHarness.h"

#include <cmath>
#include <cstdio>

#include <gtest/gtest.h>

namespace OX {
namespace test {

const std::vector<Level>& AvailableLevels() {
  static const std::vector<Level> levels = [] {
    std::vector<Level> v;
    __builtin_cpu_init();
    ProcessorFlags f = {};
    v.push_back({"portable", f});
    f.fSSE = true;
    f.fSSE2 = true;
    v.push_back({"SSE2", f});
    if (__builtin_cpu_supports("ssse3")) {
      f.fSSE3 = f.fSSSE3 = true;
      v.push_back({"SSSE3", f});
      if (__builtin_cpu_supports("sse4.1")) {
        f.fSSE41 = true;
        f.fSSE42 = __builtin_cpu_supports("sse4.2");
        v.push_back({"SSE4.1", f});
        if (__builtin_cpu_supports("avx")) {
          f.fAVX = true;
          v.push_back({"AVX", f});
          if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) {
            f.fAVX2 = true;
            v.push_back({"AVX2", f});
          }
        }
      }
    }
    return v;
  }();
  return levels;
}

void ForEachLevel(const std::function<void(const Level&)>& fn) {
  for (const Level& level : AvailableLevels()) {
    ScopedLevel scoped(level);
    SCOPED_TRACE(level.fName);
    fn(level);
  }
}

const std::vector<int>& RowTestWidths() {
  static const std::vector<int> widths = [] {
    std::vector<int> w;
    for (int i = 0; i <= 67; ++i) w.push_back(i);
    w.push_back(1921);
    return w;
  }();
  return widths;
}

std::string CompareFloatsUlps(const uint8_t* a, const uint8_t* b, size_t bytes, int ulps) {
  const size_t n = bytes / 4;
  for (size_t i = 0; i < n; ++i) {
    float x, y;
    std::memcpy(&x, a + 4 * i, 4);
    std::memcpy(&y, b + 4 * i, 4);
    if (std::isnan(x) && std::isnan(y)) continue;
    int32_t ix, iy;
    std::memcpy(&ix, &x, 4);
    std::memcpy(&iy, &y, 4);
    if (ix < 0) ix = INT32_MIN - ix;
    if (iy < 0) iy = INT32_MIN - iy;
    if (std::llabs(int64_t(ix) - int64_t(iy)) > ulps) {
      char buf[160];
      std::snprintf(buf, sizeof buf, "float %zu differs: %.9g vs %.9g (more than %d ulp)", i, x, y, ulps);
      return buf;
    }
  }
  return {};
}

namespace {

constexpr size_t kGuard = 64;
constexpr uint8_t kGuardByte = 0xA5;

void DefaultFill(uint8_t* p, size_t n, int, std::mt19937& rng) {
  for (size_t i = 0; i < n; ++i) {
    const uint32_t r = rng();
    p[i] = (r & 0x700) == 0 ? ((r & 0x800) ? 0xFF : 0x00) : uint8_t(r);
  }
}

}  // namespace

void CheckRowKernelAtEveryLevel(const RowKernelCheck& check) {
  const std::vector<Level>& levels = AvailableLevels();
  auto fill = check.fFill ? check.fFill : DefaultFill;
  std::mt19937 rng(check.fSeed);
  for (int width : RowTestWidths()) {
    const size_t inBytes = check.fInputBytes(width);
    const size_t outBytes = check.fOutputBytes(width);
    std::vector<uint8_t> input(inBytes + 16);
    fill(input.data(), inBytes, width, rng);
    // The portable result, computed once per width from an aligned copy.
    std::vector<uint8_t> inAligned(inBytes + 128);
    uint8_t* inA = inAligned.data() + ((64 - (reinterpret_cast<uintptr_t>(inAligned.data()) & 63)) & 63);
    std::memcpy(inA, input.data(), inBytes);
    std::vector<uint8_t> reference(outBytes + check.fOutputSlack + 64, 0);
    {
      ScopedLevel scoped(levels.front());
      RowKernel portable = check.fChoose();
      ASSERT_NE(portable, nullptr) << check.fName << ": no portable form";
      portable(inA, reference.data(), width);
    }
    for (size_t li = 1; li < levels.size(); ++li) {
      ScopedLevel scoped(levels[li]);
      RowKernel kernel = check.fChoose();
      ASSERT_NE(kernel, nullptr) << check.fName << " at " << levels[li].fName;
      // Offsets of input and output from 16-byte alignment; a diagonal plus a few cross pairs
      // keeps the run short while every offset of each side is seen.
      for (int oi = 0; oi < check.fOffsets; ++oi) {
        const int inOff = oi;
        const int outOff = (oi * 7 + 3) % check.fOffsets;
        std::vector<uint8_t> inBuf(inBytes + 64 + 16);
        uint8_t* in = inBuf.data() + ((16 - (reinterpret_cast<uintptr_t>(inBuf.data()) & 15)) & 15) + inOff;
        std::memcpy(in, inA, inBytes);
        std::vector<uint8_t> outBuf(outBytes + check.fOutputSlack + 2 * kGuard + 16, kGuardByte);
        uint8_t* out =
            outBuf.data() + kGuard + ((16 - (reinterpret_cast<uintptr_t>(outBuf.data() + kGuard) & 15)) & 15) + outOff;
        kernel(in, out, width);
        // The input must not change.
        ASSERT_EQ(std::memcmp(in, inA, inBytes), 0)
            << check.fName << " at " << levels[li].fName << " changed its input, width " << width;
        // Guard bytes before the output and after its declared extent must stay.
        for (uint8_t* g = outBuf.data(); g < out; ++g)
          ASSERT_EQ(*g, kGuardByte) << check.fName << " at " << levels[li].fName << " wrote before its output, width "
                                    << width;
        for (uint8_t* g = out + outBytes + check.fOutputSlack; g < outBuf.data() + outBuf.size(); ++g)
          ASSERT_EQ(*g, kGuardByte) << check.fName << " at " << levels[li].fName << " wrote past its output, width "
                                    << width << ", byte " << (g - out);
        std::string why;
        if (check.fCompare)
          why = check.fCompare(reference.data(), out, outBytes, width);
        else if (std::memcmp(reference.data(), out, outBytes) != 0) {
          size_t i = 0;
          while (reference[i] == out[i]) ++i;
          char buf[128];
          std::snprintf(buf, sizeof buf, "byte %zu: portable %u, level %u", i, reference[i], out[i]);
          why = buf;
        }
        ASSERT_TRUE(why.empty()) << check.fName << " at " << levels[li].fName << ", width " << width
                                 << ", offsets " << inOff << "/" << outOff << ": " << why;
      }
    }
  }
}

}  // namespace test
}  // namespace OX
