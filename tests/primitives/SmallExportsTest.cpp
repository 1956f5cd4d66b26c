// The thin exports: they reach their primitives (spot values from the stated rules) and turn
// every refusal into -999.
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "Ombrix.h"

namespace {

TEST(SmallExports, ConversionsRoundAndSaturateAsStated) {
  const float in[] = {2.5f, 3.5f, -2.5f, 2147483520.0f, -3.0e9f, 1.75f, 100000.0f, -100000.0f};
  const struct {
    int fMode;
    int32_t fWant32[8];
    int16_t fWant16[8];
  } cases[] = {
      {1, {2, 4, -2, INT32_MAX, INT32_MIN, 2, 100000, -100000}, {2, 4, -2, 32767, -32768, 2, 32767, -32768}},
      {0, {2, 3, -2, INT32_MAX, INT32_MIN, 1, 100000, -100000}, {2, 3, -2, 32767, -32768, 1, 32767, -32768}},
      {7, {2, 3, -2, INT32_MAX, INT32_MIN, 1, 100000, -100000}, {2, 3, -2, 32767, -32768, 1, 32767, -32768}},
  };
  for (const auto& c : cases) {
    int32_t out32[8];
    int16_t out16[8];
    ASSERT_EQ(OX_Convert_32f32sSfs(in, out32, 8, c.fMode, 0), 0);
    ASSERT_EQ(OX_Convert_32f16sSfs(in, out16, 8, c.fMode, 0), 0);
    for (int i = 0; i < 8; ++i) {
      EXPECT_EQ(out32[i], c.fWant32[i]) << "mode " << c.fMode << " index " << i;
      EXPECT_EQ(out16[i], c.fWant16[i]) << "mode " << c.fMode << " index " << i;
    }
  }
  // The scale factor divides by its power of two: 5.0 * 2^-1 = 2.5, even-rounded to 2.
  const float five = 5.0f;
  int32_t out;
  ASSERT_EQ(OX_Convert_32f32sSfs(&five, &out, 1, 1, 1), 0);
  EXPECT_EQ(out, 2);
  ASSERT_EQ(OX_Convert_32f32sSfs(&five, &out, 1, 1, -3), 0);
  EXPECT_EQ(out, 40);
}

TEST(SmallExports, MultiplyByConstantAndALaw) {
  const uint8_t src[8] = {10, 20, 30, 255, 1, 2, 3, 4};
  uint8_t dst[8];
  const uint8_t k[4] = {2, 3, 4, 255};
  ASSERT_EQ(OX_MultiplyByConstant(2, 1, src, 8, dst, 8, k, 0), 0);
  const uint8_t want0[8] = {20, 60, 120, 255, 2, 6, 12, 255};
  EXPECT_EQ(std::memcmp(dst, want0, 8), 0);
  ASSERT_EQ(OX_MultiplyByConstant(2, 1, src, 8, dst, 8, k, 2), 0);  // 20/4 = 5, 60/4 = 15, 120/4 = 30, 65025/4
  const uint8_t want2[8] = {5, 15, 30, 255, 0, 2, 3, 255};       // 2/4 -> 0 (0.5 to even), 6/4 -> 2, 12/4 = 3
  EXPECT_EQ(std::memcmp(dst, want2, 8), 0);
  ASSERT_EQ(OX_MultiplyByConstant(2, 1, src, 8, dst, 8, k, 17), 0);
  for (uint8_t b : dst) EXPECT_EQ(b, 0) << "scale factor 17 clears";
  // The constant is read before the destination is written, even when it lies there.
  uint8_t inPlace[8] = {2, 3, 4, 5, 2, 3, 4, 5};
  ASSERT_EQ(OX_MultiplyByConstant(2, 1, inPlace, 8, inPlace, 8, inPlace + 4, 0), 0);
  const uint8_t wantInPlace[8] = {4, 9, 16, 25, 4, 9, 16, 25};
  EXPECT_EQ(std::memcmp(inPlace, wantInPlace, 8), 0);

  const uint8_t alaw[4] = {0x00, 0x80, 0x55, 0xD5};
  int16_t pcm[4];
  ASSERT_EQ(OX_DecodeALawTo16Bit(alaw, pcm, 4), 0);
  EXPECT_EQ(pcm[0], -5504);
  EXPECT_EQ(pcm[1], 5504);
  EXPECT_EQ(pcm[2], -8);
  EXPECT_EQ(pcm[3], 8);
}

TEST(SmallExports, RefusalsBecomeMinus999) {
  float f[4] = {};
  int32_t i32[4];
  int16_t i16[4];
  uint8_t b[16] = {};
  const uint8_t k[4] = {1, 1, 1, 1};
  const OX_Result got[] = {
      OX_Convert_32f32sSfs(nullptr, i32, 4, 0, 0), OX_Convert_32f32sSfs(f, nullptr, 4, 0, 0),
      OX_Convert_32f32sSfs(f, i32, 0, 0, 0),       OX_Convert_32f16sSfs(f, i16, -1, 0, 0),
      OX_Convert_32f16sSfs(nullptr, i16, 4, 1, 0), OX_MultiplyByConstant(1, 1, nullptr, 4, b, 4, k, 0),
      OX_MultiplyByConstant(1, 1, b, 4, nullptr, 4, k, 0), OX_MultiplyByConstant(1, 1, b, 4, b, 4, nullptr, 0),
      OX_MultiplyByConstant(0, 1, b, 4, b, 4, k, 0), OX_MultiplyByConstant(1, -2, b, 4, b, 4, k, 0),
      OX_DecodeALawTo16Bit(nullptr, i16, 4),       OX_DecodeALawTo16Bit(b, nullptr, 4),
      OX_DecodeALawTo16Bit(b, i16, 0),
  };
  for (size_t i = 0; i < sizeof got / sizeof got[0]; ++i) EXPECT_EQ(got[i], -999) << "case " << i;
}

}  // namespace
