#include "support/LevelHarnessTwoInput.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

namespace OX {
namespace test {
namespace {

constexpr size_t kGuard = 64;
constexpr uint8_t kGuardByte = 0xA5;

void DefaultFill(uint8_t* p, size_t n, std::mt19937& rng) {
  for (size_t i = 0; i < n; ++i) {
    const uint32_t r = rng();
    p[i] = (r & 0x700) == 0 ? ((r & 0x800) ? 0xFF : 0x00) : uint8_t(r);
  }
}

// A row at `offset` bytes past 16-byte alignment inside a guarded buffer.
struct Row {
  std::vector<uint8_t> fBuffer;
  uint8_t* fData;
  size_t fBytes;
  Row(size_t bytes, int offset) : fBuffer(bytes + 2 * kGuard + 32, kGuardByte), fBytes(bytes) {
    uint8_t* base = fBuffer.data() + kGuard;
    fData = base + ((16 - (reinterpret_cast<uintptr_t>(base) & 15)) & 15) + offset;
  }
  bool GuardsIntact() const {
    for (const uint8_t* g = fBuffer.data(); g < fData; ++g)
      if (*g != kGuardByte) return false;
    for (const uint8_t* g = fData + fBytes; g < fBuffer.data() + fBuffer.size(); ++g)
      if (*g != kGuardByte) return false;
    return true;
  }
};

}  // namespace

std::string CompareBytesWithin(const uint8_t* a, const uint8_t* b, size_t bytes, int levels) {
  for (size_t i = 0; i < bytes; ++i) {
    if (std::abs(int(a[i]) - int(b[i])) > levels) {
      char buf[128];
      std::snprintf(buf, sizeof buf, "byte %zu: portable %u, level %u (more than %d apart)", i, a[i], b[i], levels);
      return buf;
    }
  }
  return {};
}

void CheckTwoInputKernelAtEveryLevel(const TwoInputKernelCheck& check) {
  const std::vector<Level>& levels = AvailableLevels();
  auto fill = check.fFill ? check.fFill : DefaultFill;
  std::mt19937 rng(check.fSeed);
  for (int width : RowTestWidths()) {
    const size_t bytes = size_t(width) * check.fBytesPerPixel;
    std::vector<uint8_t> source(bytes + 1), background(bytes + 1);
    fill(source.data(), bytes, rng);
    fill(background.data(), bytes, rng);
    for (float value : check.fValues) {
      std::vector<uint8_t> reference(bytes + 1);
      {
        ScopedLevel scoped(levels.front());
        TwoInputKernel portable = check.fChoose();
        ASSERT_NE(portable, nullptr) << check.fName << ": no portable form";
        portable(source.data(), background.data(), reference.data(), width, value);
      }
      for (size_t li = 1; li < levels.size(); ++li) {
        ScopedLevel scoped(levels[li]);
        TwoInputKernel kernel = check.fChoose();
        ASSERT_NE(kernel, nullptr) << check.fName << " at " << levels[li].fName;
        for (int oi = 0; oi < 16; oi += 3) {
          // Source, background and output each at its own offset; odd rounds write over the
          // background row itself.
          const bool inPlace = (oi / 3) % 2 == 1;
          Row s(bytes, oi), b(bytes, (oi * 5 + 1) % 16), o(bytes, (oi * 7 + 3) % 16);
          std::memcpy(s.fData, source.data(), bytes);
          std::memcpy(b.fData, background.data(), bytes);
          uint8_t* out = inPlace ? b.fData : o.fData;
          kernel(s.fData, b.fData, out, width, value);
          const std::string where = check.fName + " at " + levels[li].fName + ", width " + std::to_string(width) +
                                    ", value " + std::to_string(value) + ", offset " + std::to_string(oi) +
                                    (inPlace ? " in place" : "");
          ASSERT_EQ(std::memcmp(s.fData, source.data(), bytes), 0) << where << ": source changed";
          if (!inPlace) ASSERT_EQ(std::memcmp(b.fData, background.data(), bytes), 0) << where << ": background changed";
          ASSERT_TRUE(s.GuardsIntact() && b.GuardsIntact() && o.GuardsIntact()) << where << ": wrote outside its row";
          std::string why;
          if (check.fCompare) {
            why = check.fCompare(reference.data(), out, bytes);
          } else if (std::memcmp(reference.data(), out, bytes) != 0) {
            size_t i = 0;
            while (reference[i] == out[i]) ++i;
            why = "byte " + std::to_string(i) + " differs";
          }
          ASSERT_TRUE(why.empty()) << where << ": " << why;
        }
      }
    }
  }
}

}  // namespace test
}  // namespace OX
