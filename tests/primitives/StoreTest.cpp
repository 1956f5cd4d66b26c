// The store family at every level: channel set, fills and the two-dimensional copy write exactly
// their samples, leave every other byte (between pixels, row padding, guards) as it stood, and
// take negative row bytes.
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "primitives/Primitives.h"
#include "support/PrimitiveLevels.h"

namespace OX {
namespace {

constexpr int kGuard = 48;
const int kWidths[] = {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 64, 65, 67, 130, 1921};

struct Canvas {
  std::vector<uint8_t> fBytes;
  int fRowBytes;
  uint8_t* Row0(int offset) { return fBytes.data() + kGuard + offset; }
};

Canvas MakeCanvas(int rowBytes, int height, std::mt19937& rng) {
  Canvas c{std::vector<uint8_t>(size_t(rowBytes * height + 2 * kGuard + 16)), rowBytes};
  for (auto& b : c.fBytes) b = uint8_t(rng());
  return c;
}

// Sets sample `sampleBytes` wide every `pixelBytes` bytes on each row, as the channel set must.
void ExpectChannelSet(const char* name, int sampleBytes, const std::function<int32_t(uint8_t*, int32_t, int, int)>& op,
                      const uint8_t* value) {
  std::mt19937 rng(21);
  const int pixelBytes = 4 * sampleBytes;
  test::ForEachPrimitiveLevel([&](int32_t) {
    for (int width : kWidths) {
      for (int channel = 0; channel < 4; ++channel) {
        const int height = 3, rowBytes = width * pixelBytes + 4;
        Canvas c = MakeCanvas(rowBytes, height, rng);
        std::vector<uint8_t> expected = c.fBytes;
        uint8_t* first = c.Row0(channel * sampleBytes);
        for (int y = 0; y < height; ++y)
          for (int x = 0; x < width; ++x)
            std::memcpy(expected.data() + (first - c.fBytes.data()) + y * rowBytes + x * pixelBytes, value,
                        size_t(sampleBytes));
        ASSERT_EQ(op(first, rowBytes, width, height), 0);
        ASSERT_EQ(c.fBytes, expected) << name << " width " << width << " channel " << channel;
      }
    }
  });
}

TEST(PrimitiveStore, CopyChannelSetsOneSampleOfEveryPixel) {
  const uint8_t v8 = 0xC3;
  const uint16_t v16 = 0x8001;
  const float v32 = -1.5f;
  ExpectChannelSet("8u", 1, [&](uint8_t* p, int32_t rb, int w, int h) { return VecCopyChannel8uC4(v8, p, rb, w, h); },
                   &v8);
  ExpectChannelSet("16u", 2,
                   [&](uint8_t* p, int32_t rb, int w, int h) {
                     return VecCopyChannel16uC4(v16, reinterpret_cast<uint16_t*>(p), rb, w, h);
                   },
                   reinterpret_cast<const uint8_t*>(&v16));
  ExpectChannelSet("32f", 4,
                   [&](uint8_t* p, int32_t rb, int w, int h) {
                     return VecCopyChannel32fC4(v32, reinterpret_cast<float*>(p), rb, w, h);
                   },
                   reinterpret_cast<const uint8_t*>(&v32));
}

TEST(PrimitiveStore, FillsRepeatTheirUnitOverEveryRow) {
  const uint8_t p8[4] = {1, 2, 3, 4};
  const uint16_t p16[4] = {0x1111, 0x2222, 0x8333, 0xFFFF};
  const float p32[4] = {0.25f, -1.0f, 3.0e38f, 0.0f};
  const uint8_t one8 = 0x7E;
  const uint16_t one16 = 0xBEEF;
  const uint32_t one32 = 0xDEADBEEF;
  struct FillCase {
    const char* fName;
    int fUnitBytes;
    const void* fUnit;
    std::function<int32_t(void*, int32_t, int32_t, int32_t)> fOp;
  };
  const FillCase cases[] = {
      {"8u", 1, &one8, [&](void* d, int32_t rb, int32_t w, int32_t h) { return VecFill8u(one8, d, rb, w, h); }},
      {"16u", 2, &one16, [&](void* d, int32_t rb, int32_t w, int32_t h) { return VecFill16u(one16, d, rb, w, h); }},
      {"32u", 4, &one32, [&](void* d, int32_t rb, int32_t w, int32_t h) { return VecFill32u(one32, d, rb, w, h); }},
      {"8uC4", 4, p8, [&](void* d, int32_t rb, int32_t w, int32_t h) { return VecFill8uC4(p8, d, rb, w, h); }},
      {"16uC4", 8, p16, [&](void* d, int32_t rb, int32_t w, int32_t h) { return VecFill16uC4(p16, d, rb, w, h); }},
      {"32fC4", 16, p32, [&](void* d, int32_t rb, int32_t w, int32_t h) { return VecFill32fC4(p32, d, rb, w, h); }},
  };
  std::mt19937 rng(23);
  test::ForEachPrimitiveLevel([&](int32_t) {
    for (const FillCase& f : cases) {
      for (int width : kWidths) {
        for (int offset : {0, 1, 3, 8}) {
          const int height = 3, rowBytes = width * f.fUnitBytes + 5;
          Canvas c = MakeCanvas(rowBytes, height, rng);
          std::vector<uint8_t> expected = c.fBytes;
          const size_t start = size_t(c.Row0(offset) - c.fBytes.data());
          for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
              std::memcpy(expected.data() + start + size_t(y * rowBytes + x * f.fUnitBytes), f.fUnit,
                          size_t(f.fUnitBytes));
          ASSERT_EQ(f.fOp(c.Row0(offset), rowBytes, width, height), 0);
          ASSERT_EQ(c.fBytes, expected) << f.fName << " width " << width << " offset " << offset;
        }
      }
    }
  });
}

TEST(PrimitiveStore, TwoDimensionalCopyMovesEachRowAndTakesNegativeRowBytes) {
  std::mt19937 rng(29);
  test::ForEachPrimitiveLevel([&](int32_t) {
    for (int widthBytes : kWidths) {
      for (bool backward : {false, true}) {
        const int height = 4, srcRow = widthBytes + 3, dstRow = widthBytes + 9;
        Canvas src = MakeCanvas(srcRow, height, rng), dst = MakeCanvas(dstRow, height, rng);
        const std::vector<uint8_t> srcBefore = src.fBytes;
        std::vector<uint8_t> expected = dst.fBytes;
        const size_t s0 = kGuard + 1, d0 = kGuard + 2;
        for (int y = 0; y < height; ++y) {
          const int sy = backward ? height - 1 - y : y;
          std::memcpy(expected.data() + d0 + size_t(y * dstRow), srcBefore.data() + s0 + size_t(sy * srcRow),
                      size_t(widthBytes));
        }
        const uint8_t* s = src.fBytes.data() + s0 + (backward ? (height - 1) * srcRow : 0);
        ASSERT_EQ(VecCopy2D8u(s, backward ? -srcRow : srcRow, dst.fBytes.data() + d0, dstRow, widthBytes, height), 0);
        ASSERT_EQ(dst.fBytes, expected) << "width " << widthBytes << (backward ? " backward" : "");
        ASSERT_EQ(src.fBytes, srcBefore);
      }
    }
  });
}

TEST(PrimitiveStore, NullPointersAndShortLengthsAreRefused) {
  uint8_t buf[64] = {};
  const uint8_t p[16] = {};
  const struct {
    const char* fName;
    int32_t fGot, fWant;
  } cases[] = {
      {"channel null", VecCopyChannel8uC4(1, nullptr, 16, 1, 1), -8},
      {"channel width 0", VecCopyChannel8uC4(1, buf, 16, 0, 1), -6},
      {"channel16 height 0", VecCopyChannel16uC4(1, reinterpret_cast<uint16_t*>(buf), 16, 1, 0), -6},
      {"channel32 null", VecCopyChannel32fC4(1.0f, nullptr, 16, 1, 1), -8},
      {"fill null", VecFill8u(1, nullptr, 16, 1, 1), -8},
      {"fill width -3", VecFill32u(1, buf, 16, -3, 1), -6},
      {"fill pattern null", VecFill8uC4(nullptr, buf, 16, 1, 1), -8},
      {"fill16C4 height 0", VecFill16uC4(reinterpret_cast<const uint16_t*>(p), buf, 16, 1, 0), -6},
      {"copy source null", VecCopy2D8u(nullptr, 16, buf, 16, 4, 1), -8},
      {"copy destination null", VecCopy2D8u(buf, 16, nullptr, 16, 4, 1), -8},
      {"copy width 0", VecCopy2D8u(buf, 16, buf + 32, 16, 0, 1), -6},
  };
  for (const auto& c : cases) EXPECT_EQ(c.fGot, c.fWant) << c.fName;
}

}  // namespace
}  // namespace OX
