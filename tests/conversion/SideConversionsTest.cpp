// The side conversions against their rules, at every processor level, with the padding each
// declares as the caller's obligation and guard bytes past what each may write.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "Ombrix.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

using test::ForEachLevel;

std::vector<uint32_t> V210Words(const uint32_t y[6], const uint32_t u[3], const uint32_t v[3]) {
  return {u[0] | y[0] << 10 | v[0] << 20, y[1] | u[1] << 10 | y[2] << 20, v[1] | y[3] << 10 | u[2] << 20,
          y[4] | v[2] << 10 | y[5] << 20};
}

TEST(SideConversions, W210ToV210) {
  std::mt19937 rng(1);
  const int width = 13, height = 3, groups = 3;
  const int32_t rowBytes[3] = {2 * 24 + 6, 2 * 12 + 2, 2 * 12 + 4};  // padded past the last group
  std::vector<uint16_t> y(height * rowBytes[0] / 2), u(height * rowBytes[1] / 2), v(height * rowBytes[2] / 2);
  for (auto* plane : {&y, &u, &v})
    for (auto& s : *plane) s = uint16_t(rng() % 1024);
  y[0] = 1024 + 5;  // above ten bits: spills into the next slot, unmasked
  const void* planes[3] = {y.data(), u.data(), v.data()};
  const int dstRow = 16 * groups + 16;
  std::vector<uint32_t> out(height * dstRow / 4, 0xDEADBEEF);
  EXPECT_EQ(OX_ConvertW210toV210(planes, rowBytes, width, height, out.data(), dstRow), 0);
  for (int r = 0; r < height; ++r)
    for (int g = 0; g < groups; ++g) {
      uint32_t ys[6], us[3], vs[3];
      for (int i = 0; i < 6; ++i) ys[i] = y[r * rowBytes[0] / 2 + 6 * g + i];
      for (int j = 0; j < 3; ++j) us[j] = u[r * rowBytes[1] / 2 + 3 * g + j], vs[j] = v[r * rowBytes[2] / 2 + 3 * g + j];
      const auto want = V210Words(ys, us, vs);
      for (int i = 0; i < 4; ++i) ASSERT_EQ(out[r * dstRow / 4 + 4 * g + i], want[i]) << r << " " << g;
    }
  EXPECT_EQ(out[0] >> 20 & 1, 1u);   // the spilled bit of y[0] lands in v[0]'s slot
  EXPECT_EQ(out[dstRow / 4 - 1], 0xDEADBEEFu);  // nothing past the groups
  std::vector<uint32_t> untouched(out.size(), 7);
  EXPECT_EQ(OX_ConvertW210toV210(planes, rowBytes, width, 0, untouched.data(), dstRow), 0);
  EXPECT_EQ(OX_ConvertW210toV210(planes, rowBytes, width, -2, untouched.data(), dstRow), 0);
  EXPECT_EQ(untouched, std::vector<uint32_t>(out.size(), 7));
}

TEST(SideConversions, W210ToQuarterResVuyx) {
  std::mt19937 rng(2);
  const int width = 10, height = 6;
  const int32_t rowBytes[3] = {2 * width + 5, width + 3, width + 1};  // odd: the field start rounds down
  std::vector<uint8_t> planes8[3];
  for (int i = 0; i < 3; ++i) {
    planes8[i].resize(size_t(rowBytes[i]) * height + 8);
    for (size_t k = 0; k + 1 < planes8[i].size(); k += 2) {
      const uint16_t s = uint16_t(rng() % 1024);
      std::memcpy(&planes8[i][k], &s, 2);
    }
  }
  auto sample = [&](int plane, size_t byteOffset) {
    uint16_t s;
    std::memcpy(&s, &planes8[plane][byteOffset], 2);
    return int(s);
  };
  const void* planes[3] = {planes8[0].data(), planes8[1].data(), planes8[2].data()};
  for (int field : {1, 2}) {
    const int dstRow = 4 * (width / 2) + 4;
    std::vector<uint8_t> out(size_t(dstRow) * (height / 2), 0x55);
    EXPECT_EQ(OX_ConvertW210toQuarterResVUYX_8u(planes, rowBytes, width, height, out.data(), dstRow, field), 0);
    for (int r = 0; r < height / 2; ++r) {
      const uint8_t* o = &out[size_t(dstRow) * (height / 2 - 1 - r)];  // bottom-up
      size_t start[3];
      for (int p = 0; p < 3; ++p) start[p] = (field == 2 ? size_t(rowBytes[p] & ~1) : 0) + size_t(2 * rowBytes[p]) * r;
      for (int i = 0; i < width / 2; ++i) {
        ASSERT_EQ(o[4 * i], sample(2, start[2] + 2 * i) >> 2);
        ASSERT_EQ(o[4 * i + 1], sample(1, start[1] + 2 * i) >> 2);
        ASSERT_EQ(o[4 * i + 2], (sample(0, start[0] + 4 * i) + sample(0, start[0] + 4 * i + 2)) >> 3);
        ASSERT_EQ(o[4 * i + 3], 255);
      }
      ASSERT_EQ(o[4 * (width / 2)], 0x55);
    }
  }
  std::vector<uint8_t> one(64, 9);
  EXPECT_EQ(OX_ConvertW210toQuarterResVUYX_8u(planes, rowBytes, width, 1, one.data(), 32, 1), 0);
  EXPECT_EQ(one, std::vector<uint8_t>(64, 9));  // height 1 writes nothing
}

void Rgb24Row(const void* in, void* out, int32_t width) { OX_ConvertRGB_444_8uToBGRA_4444_8u(in, 0, out, 0, width, 1); }

TEST(SideConversions, Rgb24ToBgraAtEveryLevel) {
  test::RowKernelCheck check;
  check.fName = "RGB_444_8u to BGRA";
  check.fChoose = []() -> test::RowKernel { return &Rgb24Row; };
  check.fInputBytes = [](int w) { return size_t(3 * w); };
  check.fOutputBytes = [](int w) { return size_t(4 * w); };
  test::CheckRowKernelAtEveryLevel(check);
  // And the values, rows advancing by their row bytes.
  std::vector<uint8_t> src(2 * 100), dst(2 * 120, 0);
  for (size_t i = 0; i < src.size(); ++i) src[i] = uint8_t(i * 7);
  ForEachLevel([&](const test::Level&) {
    EXPECT_EQ(OX_ConvertRGB_444_8uToBGRA_4444_8u(src.data(), 100, dst.data(), 120, 30, 2), 0);
    for (int r = 0; r < 2; ++r)
      for (int i = 0; i < 30; ++i) {
        const uint8_t* s = &src[100 * r + 3 * i];
        const uint8_t* d = &dst[120 * r + 4 * i];
        ASSERT_EQ(d[0], s[2]);
        ASSERT_EQ(d[1], s[1]);
        ASSERT_EQ(d[2], s[0]);
        ASSERT_EQ(d[3], 255);
      }
  });
}

TEST(SideConversions, DNxHDWithTenBitRgb) {
  const std::vector<uint16_t> dnx = {0xFFFF, 0x0040, 0x8000, 0x1234, 0x0000, 0xFFC0, 0x003F, 0xFFFF};
  std::vector<uint32_t> ten(3, 0xABCDEF01);
  EXPECT_EQ(OX_Convert_DNxHD16u_To_RGB_444_10u(dnx.data(), ten.data(), 2, 1), 0);
  EXPECT_EQ(ten[0], (1023u << 2) | (1u << 12) | (512u << 22));
  EXPECT_EQ(ten[1], (0u << 2) | (1023u << 12) | (0u << 22));
  EXPECT_EQ(ten[2], 0xABCDEF01u);
  EXPECT_EQ(OX_Convert_DNxHD16u_To_RGB_444_10u(dnx.data(), ten.data(), 0, 5), 0);
  EXPECT_EQ(OX_Convert_DNxHD16u_To_RGB_444_10u(dnx.data(), ten.data(), 5, 0), 0);
  std::vector<uint32_t> words(1024);
  for (uint32_t c = 0; c < 1024; ++c) words[c] = (c << 2) | ((1023 - c) << 12) | (((c * 3) & 1023) << 22);
  std::vector<uint16_t> back(4 * 1024, 0x7777);
  EXPECT_EQ(OX_Convert_RGB_444_10u_To_DNxHD16u(words.data(), back.data(), 32, 32), 0);
  for (uint32_t c = 0; c < 1024; ++c) {
    ASSERT_EQ(back[4 * c], c * 65535 / 1023);
    ASSERT_EQ(back[4 * c + 1], (1023 - c) * 65535 / 1023);
    ASSERT_EQ(back[4 * c + 2], ((c * 3) & 1023) * 65535 / 1023);
    ASSERT_EQ(back[4 * c + 3], 0x7777);  // the fourth word keeps what was there
  }
}

TEST(SideConversions, Rgb16uToXrgb15uTurnsOverInGroups) {
  std::mt19937 rng(3);
  for (int width : {1, 2, 3, 4, 5, 8, 9}) {
    const int height = 3;
    // Room past the image for the group over-read and the 4 bytes of each vector load.
    std::vector<uint16_t> src(size_t(3 * width * height) + 16);
    for (auto& s : src) s = uint16_t(rng() % 1024);
    src[0] = 1023;
    ForEachLevel([&](const test::Level&) {
      const int group = gHasAVX2 ? 4 : 2;
      const int perRow = (width + group - 1) / group * group;
      std::vector<uint16_t> dst(size_t(4 * perRow * height) + 16, 0x5A5A);
      EXPECT_EQ(OX_ConvertRGB_444_16u_To_XRGB_4444_15u(src.data(), dst.data(), width, height), 0);
      for (int r = 0; r < height; ++r) {
        const uint16_t* s = &src[size_t(3 * width) * (height - 1 - r)];  // last source row first
        const uint16_t* d = &dst[size_t(4 * perRow) * r];
        for (int i = 0; i < perRow; ++i) {
          ASSERT_EQ(d[4 * i], 0) << "width " << width;
          for (int c = 0; c < 3; ++c) {
            const double want = std::min(65535.0, std::nearbyint(s[3 * i + c] * double(32.03128f)));
            ASSERT_EQ(d[4 * i + 1 + c], want) << "width " << width << " row " << r << " pixel " << i;
          }
        }
      }
      EXPECT_EQ(dst[4 * perRow * height], 0x5A5A);
      // Sample 1023 of the first source row, last output row: full scale.
      EXPECT_EQ(dst[size_t(4 * perRow) * (height - 1) + 1], 32768);
    });
  }
}

TEST(SideConversions, Scale16uTo15uBothForms) {
  std::mt19937 rng(4);
  for (bool swap : {false, true})
    for (int offsetPixels : {0, 1})
      for (int width : {0, 1, 2, 3, 4, 7}) {
        const int height = 3, rowBytes = 8 * width + 8 + 1;  // odd: the step rounds down to even
        std::vector<uint16_t> original(size_t((rowBytes & ~1) / 2) * height + 16);
        for (auto& s : original) s = uint16_t(rng());
        original[4 * offsetPixels] = swap ? 0xFFFF : 65535;
        ForEachLevel([&](const test::Level&) {
          std::vector<uint16_t> buf = original;
          uint16_t* base = buf.data() + 4 * offsetPixels;
          EXPECT_EQ(OX_Scale16uBufferTo15uSIMD(base, rowBytes, width, height, swap), 0);
          for (size_t i = 0; i < buf.size(); ++i) {
            const size_t rel = i - 4 * offsetPixels;
            const bool inside = i >= size_t(4 * offsetPixels) && (rel % ((rowBytes & ~1) / 2)) < size_t(4 * width) &&
                                rel / ((rowBytes & ~1) / 2) < size_t(height);
            if (!inside) {
              ASSERT_EQ(buf[i], original[i]);
              continue;
            }
            uint32_t s = original[i];
            if (swap) s = ((s & 0xFF) << 8) | (s >> 8);
            const double want = gHasSSSE3 ? std::nearbyint(s * double(0.50000304f)) : double(s * 32768u / 65535u);
            ASSERT_EQ(buf[i], want) << "sample " << s;
          }
          if (width > 0) {
            EXPECT_EQ(base[0], 32768);  // 65535 gives 32768 in both forms
          }
        });
      }
}

}  // namespace
}  // namespace OX
