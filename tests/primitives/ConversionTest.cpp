// Scaled float-to-integer conversions and A-law decoding at every level, against rules computed
// here: saturation, truncation, ties to even, the 2147483520.0 boundary, NaN, and the G.711
// segment rule.
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "primitives/Primitives.h"
#include "support/PrimitiveLevels.h"

namespace OX {
namespace {

// Rounds half to even without the floating-point environment: floor, then look at the fraction.
double RoundHalfEven(double v) {
  const double f = std::floor(v), frac = v - f;
  if (frac > 0.5) return f + 1;
  if (frac < 0.5) return f;
  return std::fmod(f, 2.0) == 0 ? f : f + 1;
}

int64_t Expected32(float x, int mode, int scale) {
  const long double v = (long double)x * std::ldexp((long double)1, -scale);
  if (std::isnan(x)) return 0;
  if (v >= 2147483520.0L) return INT32_MAX;
  if (v <= -2147483648.0L) return INT32_MIN;
  return int64_t(mode == 1 ? RoundHalfEven(double(v)) : std::trunc(double(v)));
}

int64_t Expected16(float x, int mode, int scale) {
  if (std::isnan(x)) return 0;
  long double v = (long double)x * std::ldexp((long double)1, -scale);
  v = std::clamp(v, -32768.0L, 32767.0L);
  return int64_t(mode == 1 ? RoundHalfEven(double(v)) : std::trunc(double(v)));
}

std::vector<float> Inputs() {
  std::vector<float> v = {0.0f, -0.0f, 0.5f, 1.5f, 2.5f, -0.5f, -1.5f, -2.5f, 0.49999997f, 32767.5f, 32766.5f,
                          -32768.5f, -32767.5f, 65535.0f, 2147483520.0f, 2147483392.0f, 2147483648.0f,
                          -2147483648.0f, -2147483904.0f, 1e30f, -1e30f, std::numeric_limits<float>::infinity(),
                          -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN(),
                          std::numeric_limits<float>::denorm_min(), 1.17549435e-38f, 123456.789f, -98765.4321f};
  std::mt19937 rng(31);
  while (v.size() < 203) {
    const uint32_t bits = rng();
    float f;
    std::memcpy(&f, &bits, 4);
    v.push_back((bits & 3) ? float(int32_t(rng()) % 200000) / 4.0f : f);
  }
  return v;
}

TEST(PrimitiveConversion, FloatTo32sSaturatesAndRoundsAsStated) {
  const std::vector<float> in = Inputs();
  test::ForEachPrimitiveLevel([&](int32_t) {
    for (int mode : {0, 1, 7, -1}) {
      for (int scale : {0, 1, 2, -1, -2, -16, 16, -31, 31, -40, 40, -200, 200, 2000, -2000}) {
        std::vector<int32_t> out(in.size() + 4, 0x5A5A5A5A);
        ASSERT_EQ(VecConvert32fTo32sScaled(in.data(), out.data(), int32_t(in.size()), mode, scale), 0);
        for (size_t i = 0; i < in.size(); ++i)
          ASSERT_EQ(out[i], Expected32(in[i], mode, scale))
              << "input " << in[i] << " mode " << mode << " scale " << scale << " index " << i;
        for (size_t i = in.size(); i < out.size(); ++i) ASSERT_EQ(out[i], 0x5A5A5A5A);
      }
    }
  });
}

TEST(PrimitiveConversion, FloatTo16sLimitsThenRoundsAsStated) {
  const std::vector<float> in = Inputs();
  test::ForEachPrimitiveLevel([&](int32_t) {
    for (int mode : {0, 1, 7}) {
      for (int scale : {0, 1, 3, -1, -8, 8, 15, -15, 30, -300, 300}) {
        std::vector<int16_t> out(in.size() + 4, 0x5A5A);
        ASSERT_EQ(VecConvert32fTo16sScaled(in.data(), out.data(), int32_t(in.size()), mode, scale), 0);
        for (size_t i = 0; i < in.size(); ++i)
          ASSERT_EQ(out[i], Expected16(in[i], mode, scale))
              << "input " << in[i] << " mode " << mode << " scale " << scale << " index " << i;
        for (size_t i = in.size(); i < out.size(); ++i) ASSERT_EQ(out[i], 0x5A5A);
      }
    }
  });
}

// G.711 A-law, from the standard's description: even bits inverted on the line; sign bit 1 is
// positive; a 3-bit segment e and 4-bit step m; the decision interval's middle in 13-bit units is
// 2m + 1 in segment 0 and (2m + 33) * 2^(e - 1) above it; 16-bit samples carry three more bits.
int16_t ALawFromSegmentRule(uint8_t byte) {
  const uint8_t a = byte ^ 0x55;
  const int e = (a >> 4) & 7, m = a & 15;
  const int magnitude13 = e == 0 ? 2 * m + 1 : (2 * m + 33) << (e - 1);
  return int16_t((a & 0x80 ? 1 : -1) * magnitude13 * 8);
}

TEST(PrimitiveConversion, ALawDecodesEveryByteByTheSegmentRule) {
  std::vector<uint8_t> in(256 * 3 + 5);
  for (size_t i = 0; i < in.size(); ++i) in[i] = uint8_t(i * 7 + 3);
  test::ForEachPrimitiveLevel([&](int32_t) {
    std::vector<int16_t> out(in.size() + 2, 0x1234);
    ASSERT_EQ(VecALawTo16s(in.data(), out.data(), int32_t(in.size())), 0);
    for (size_t i = 0; i < in.size(); ++i) ASSERT_EQ(out[i], ALawFromSegmentRule(in[i])) << "byte " << int(in[i]);
    EXPECT_EQ(out[in.size()], 0x1234);
  });
  EXPECT_EQ(ALawFromSegmentRule(0x00), -5504);
  EXPECT_EQ(ALawFromSegmentRule(0xD5), 8);
}

TEST(PrimitiveConversion, NullPointersAndShortLengthsAreRefused) {
  float f[4] = {};
  int32_t i32[4];
  int16_t i16[4];
  uint8_t b[4] = {};
  EXPECT_EQ(VecConvert32fTo32sScaled(nullptr, i32, 4, 0, 0), -8);
  EXPECT_EQ(VecConvert32fTo32sScaled(f, nullptr, 4, 0, 0), -8);
  EXPECT_EQ(VecConvert32fTo32sScaled(f, i32, 0, 0, 0), -6);
  EXPECT_EQ(VecConvert32fTo16sScaled(f, i16, -5, 1, 0), -6);
  EXPECT_EQ(VecConvert32fTo16sScaled(nullptr, i16, 4, 1, 0), -8);
  EXPECT_EQ(VecALawTo16s(b, nullptr, 4), -8);
  EXPECT_EQ(VecALawTo16s(b, i16, 0), -6);
}

}  // namespace
}  // namespace OX
