// The multiply family at every level against references computed here in 64-bit integers or
// doubles: the table multiply for every scale from -20 to 40, the zero count and the constant
// multiply of byte channels.
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "primitives/Primitives.h"
#include "support/PrimitiveLevels.h"

namespace OX {
namespace {

int64_t Clamp16(int64_t x) { return std::clamp<int64_t>(x, -32768, 32767); }

// p / 2^s rounded to nearest with ties to even, in exact 64-bit arithmetic.
int64_t DivideRoundEven(int64_t p, int s) {
  const int64_t d = int64_t(1) << s;
  int64_t q = p >= 0 ? p / d : -((-p + d - 1) / d);  // floor
  const int64_t r = p - q * d;
  if (2 * r > d || (2 * r == d && (q & 1))) ++q;
  return q;
}

int16_t MulTableReference(uint16_t t, int16_t b, int scale) {
  const int64_t p = int64_t(t) * b;
  if (scale == 0) return int16_t(Clamp16(p));
  if (scale >= 31) return 0;
  if (scale > 0) return int16_t(Clamp16(DivideRoundEven(p, scale)));
  if (scale >= -15) return int16_t(Clamp16(Clamp16(p) * (int64_t(1) << -scale)));
  return int16_t(p > 0 ? 32767 : p < 0 ? -32768 : 0);
}

TEST(PrimitiveMultiply, TableRoundScaledMatchesExactReferenceAtEveryScaleAndLevel) {
  std::mt19937 rng(5);
  const uint16_t tableExtremes[] = {0, 1, 2, 3, 32767, 32768, 65535, 16384, 256};
  const int16_t blockExtremes[] = {0, 1, -1, 2, -2, 3, -3, 32767, -32768, -32767, 64, -64};
  test::ForEachPrimitiveLevel([&](int32_t) {
    for (int scale = -20; scale <= 40; ++scale) {
      for (int count : {1, 7, 8, 9, 15, 16, 17, 31, 33, 64, 67}) {
        std::vector<uint16_t> table(size_t(count) + 8);
        std::vector<int16_t> block(size_t(count) + 8);
        for (int i = 0; i < count; ++i) {
          const uint32_t r = rng();
          table[size_t(i)] = (r & 3) == 0 ? tableExtremes[(r >> 2) % 9] : uint16_t(r >> 8);
          block[size_t(i)] = (r & 0x30) == 0 ? blockExtremes[(r >> 12) % 12]
                             : (r & 0x40)    ? int16_t(rng())
                                             : int16_t(int(rng() % 512) - 256);
        }
        // Exact ties: a product of 3 * 2^(s-1) or 2^(s-1) when the table holds a power of two.
        if (scale > 0 && scale <= 16 && count > 2) {
          table[0] = uint16_t(1u << (scale - 1));
          block[0] = 3;
          table[1] = uint16_t(1u << (scale - 1));
          block[1] = -1;
        }
        std::vector<int16_t> expected = block;
        for (int i = 0; i < count; ++i)
          expected[size_t(i)] = MulTableReference(table[size_t(i)], block[size_t(i)], scale);
        ASSERT_EQ(VecMulTableRoundScaled(table.data(), block.data(), count, scale), 0);
        for (size_t i = 0; i < block.size(); ++i)
          ASSERT_EQ(block[i], expected[i]) << "scale " << scale << " count " << count << " index " << i;
      }
    }
  });
}

TEST(PrimitiveMultiply, TableRoundScaledScaleOneIsTheSameRule) {
  // (p + ((p >> 1) & 1)) >> 1 for every 16-bit product of table 1.
  std::vector<uint16_t> table(65536, 1);
  std::vector<int16_t> block(65536);
  for (int i = 0; i < 65536; ++i) block[size_t(i)] = int16_t(i - 32768);
  test::ForEachPrimitiveLevel([&](int32_t) {
    std::vector<int16_t> b = block;
    ASSERT_EQ(VecMulTableRoundScaled(table.data(), b.data(), 65536, 1), 0);
    for (int i = 0; i < 65536; ++i) {
      const int p = i - 32768;
      ASSERT_EQ(b[size_t(i)], (p + ((p >> 1) & 1)) >> 1) << p;
    }
  });
}

TEST(PrimitiveMultiply, CountZerosCountsExactly) {
  std::mt19937 rng(9);
  test::ForEachPrimitiveLevel([&](int32_t) {
    for (int zeros = 0; zeros <= 64; ++zeros) {
      std::vector<int16_t> block(64);
      for (auto& v : block) v = int16_t(1 + rng() % 65535);  // never 0
      for (int i = 0; i < 64; ++i)
        if (block[size_t(i)] == 0) block[size_t(i)] = 1;
      std::vector<int> positions(64);
      for (int i = 0; i < 64; ++i) positions[size_t(i)] = i;
      std::shuffle(positions.begin(), positions.end(), rng);
      for (int i = 0; i < zeros; ++i) block[size_t(positions[size_t(i)])] = 0;
      int32_t count = -1;
      ASSERT_EQ(VecCountZeros64(block.data(), &count), 0);
      ASSERT_EQ(count, zeros);
    }
    const std::vector<int16_t> allZero(64, 0);
    int32_t count = 0;
    ASSERT_EQ(VecCountZeros64(allZero.data(), &count), 0);
    EXPECT_EQ(count, 64);
  });
}

uint8_t MulConstantReference(uint8_t s, uint8_t k, int scale) {
  const double p = double(s) * k;
  double r;
  if (scale == 0)
    r = p;
  else if (scale < 0)
    r = p * std::ldexp(1.0, -scale);
  else
    r = scale > 16 ? 0.0 : std::nearbyint(p / std::ldexp(1.0, scale));
  return uint8_t(std::min(r, 255.0));
}

TEST(PrimitiveMultiply, ConstantMultiplyOfByteChannelsAtEveryLevel) {
  std::mt19937 rng(13);
  const uint8_t constants[][4] = {{255, 255, 255, 255}, {1, 2, 3, 4}, {0, 128, 200, 17}, {16, 64, 255, 1}};
  test::ForEachPrimitiveLevel([&](int32_t) {
    for (int scale = -10; scale <= 18; ++scale) {
      for (const auto& k : constants) {
        for (int width : {1, 3, 4, 5, 8, 9, 16, 17, 33, 67}) {
          const int height = 3, srcRow = width * 4 + 5, dstRow = width * 4 + 7;
          std::vector<uint8_t> src(size_t(srcRow * height));
          for (auto& v : src) v = uint8_t(rng());
          src[0] = 255;
          std::vector<uint8_t> dst(size_t(dstRow * height), 0xA5), expected = dst;
          for (int y = 0; y < height; ++y)
            for (int i = 0; i < width * 4; ++i)
              expected[size_t(y * dstRow + i)] = MulConstantReference(src[size_t(y * srcRow + i)], k[i & 3], scale);
          ASSERT_EQ(VecMulConstant8uC4(src.data(), srcRow, k, dst.data(), dstRow, width, height, scale), 0);
          ASSERT_EQ(dst, expected) << "scale " << scale << " width " << width;
        }
      }
    }
  });
}

TEST(PrimitiveMultiply, NullPointersAndShortLengthsAreRefused) {
  uint16_t table[64] = {};
  int16_t block[64] = {};
  int32_t count;
  uint8_t bytes[16] = {}, k[4] = {};
  const struct {
    const char* fName;
    int32_t fGot, fWant;
  } cases[] = {
      {"table null", VecMulTableRoundScaled(nullptr, block, 4, 0), -8},
      {"block null", VecMulTableRoundScaled(table, nullptr, 4, 0), -8},
      {"count 0", VecMulTableRoundScaled(table, block, 0, 0), -6},
      {"count -1", VecMulTableRoundScaled(table, block, -1, 0), -6},
      {"zeros block null", VecCountZeros64(nullptr, &count), -8},
      {"zeros out null", VecCountZeros64(block, nullptr), -8},
      {"constant null", VecMulConstant8uC4(bytes, 16, nullptr, bytes, 16, 1, 1, 0), -8},
      {"source null", VecMulConstant8uC4(nullptr, 16, k, bytes, 16, 1, 1, 0), -8},
      {"width 0", VecMulConstant8uC4(bytes, 16, k, bytes, 16, 0, 1, 0), -6},
      {"height 0", VecMulConstant8uC4(bytes, 16, k, bytes, 16, 1, 0, 0), -6},
  };
  for (const auto& c : cases) EXPECT_EQ(c.fGot, c.fWant) << c.fName;
}

}  // namespace
}  // namespace OX
