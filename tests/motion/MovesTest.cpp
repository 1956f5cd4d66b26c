// Transpose, quarter turns and the flip against references written from their maps, at every
// processor level, with guard bytes around the destination and padding that must stay untouched.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "Ombrix.h"
#include "frame/Globals.h"
#include "support/LevelHarness.h"

namespace {

constexpr uint8_t kGuard = 0xA5;
constexpr size_t kGuardBytes = 64;

struct Image {
  std::vector<uint8_t> fBytes;
  int32_t fRowBytes;
  int32_t fRows;
  size_t fOffset;  // first row's distance from the start of fBytes (after the guard)
  uint8_t* Row(int32_t y) { return fBytes.data() + kGuardBytes + fOffset + ptrdiff_t(y) * fRowBytes; }
};

// A buffer of `rows` rows at `rowBytes`, misaligned by `offset`, filled with `fill` (guards kGuard).
Image MakeImage(int32_t rowBytes, int32_t rows, size_t offset, uint8_t fill) {
  Image image{std::vector<uint8_t>(kGuardBytes * 2 + offset + size_t(rowBytes) * size_t(std::max(rows, 1)), fill),
              rowBytes, rows, offset};
  std::memset(image.fBytes.data(), kGuard, kGuardBytes + offset);
  std::memset(image.fBytes.data() + image.fBytes.size() - kGuardBytes, kGuard, kGuardBytes);
  return image;
}

bool GuardsIntact(const Image& image) {
  for (size_t i = 0; i < kGuardBytes + image.fOffset; ++i)
    if (image.fBytes[i] != kGuard) return false;
  for (size_t i = image.fBytes.size() - kGuardBytes; i < image.fBytes.size(); ++i)
    if (image.fBytes[i] != kGuard) return false;
  return true;
}

void FillRandom(Image& image, int32_t rowUsed, std::mt19937& rng) {
  for (int32_t y = 0; y < image.fRows; ++y)
    for (int32_t i = 0; i < rowUsed; ++i) image.Row(y)[i] = uint8_t(rng());
}

TEST(Transpose, MatchesTheMapAtEveryLevelItemSizeAndShape) {
  std::mt19937 rng(7);
  const int heights[] = {0, 1, 2, 15, 16, 17, 31, 32, 33, 63, 64, 65, 127, 128, 129};
  const int widths[] = {0, 1, 3, 4, 5, 8, 9, 17, 67};
  OX::test::ForEachLevel([&](const OX::test::Level&) {
    for (int item : {1, 2, 4, 8, 16}) {
      for (int h : heights) {
        for (int w : widths) {
          // Row bytes with padding that is no multiple of the item, and a misaligned destination.
          const int32_t srb = w * item + 5, drb = h * item + 3;
          Image src = MakeImage(srb, h, 1, 0), dst = MakeImage(drb, w, 3, 0x5A);
          FillRandom(src, srb, rng);
          const std::vector<uint8_t> before = src.fBytes;
          ASSERT_EQ(OX_Transpose(src.Row(0), srb, dst.Row(0), drb, w, h, uint8_t(item)), OX_Success);
          SCOPED_TRACE(::testing::Message() << "item " << item << " " << w << "x" << h);
          for (int x = 0; x < w; ++x) {
            for (int y = 0; y < h; ++y)
              ASSERT_EQ(std::memcmp(dst.Row(x) + y * item, src.Row(y) + x * item, item), 0) << x << "," << y;
            for (int p = h * item; p < drb; ++p) ASSERT_EQ(dst.Row(x)[p], 0x5A) << "padding";
          }
          ASSERT_TRUE(GuardsIntact(dst));
          ASSERT_EQ(src.fBytes, before);
        }
      }
    }
  });
}

TEST(Transpose, WideAndNegativeStrides) {
  // A 1921-wide band and strides that walk upward in both buffers.
  std::mt19937 rng(8);
  OX::test::ForEachLevel([&](const OX::test::Level&) {
    for (int item : {4, 8, 16}) {
      const int w = 1921, h = 70;
      Image src = MakeImage(w * item, h, 0, 0), dst = MakeImage(h * item, w, 0, 0);
      FillRandom(src, w * item, rng);
      ASSERT_EQ(OX_Transpose(src.Row(h - 1), -w * item, dst.Row(w - 1), -h * item, w, h, uint8_t(item)), 0);
      for (int x = 0; x < w; ++x)
        for (int y = 0; y < h; ++y)
          ASSERT_EQ(std::memcmp(dst.Row(w - 1 - x) + y * item, src.Row(h - 1 - y) + x * item, item), 0);
      ASSERT_TRUE(GuardsIntact(dst));
    }
  });
}

TEST(Moves, RefusalsWriteNothing) {
  std::vector<uint8_t> src(64 * 64 * 4, 1), dst(64 * 64 * 4, 9);
  struct Case {
    const char* fName;
    OX_Result fGot, fWant;
  } cases[] = {
      {"transpose 3", OX_Transpose(src.data(), 256, dst.data(), 256, 8, 8, 3), OX_ErrBadSourceFormat},
      {"transpose 5", OX_Transpose(src.data(), 256, dst.data(), 256, 8, 8, 5), OX_ErrBadSourceFormat},
      {"transpose 17", OX_Transpose(src.data(), 256, dst.data(), 256, 8, 8, 17), OX_ErrBadSourceFormat},
      {"transpose 0", OX_Transpose(src.data(), 256, dst.data(), 256, 8, 8, 0), OX_ErrBadSourceFormat},
      {"transpose width -1", OX_Transpose(src.data(), 256, dst.data(), 256, -1, 8, 4), OX_ErrBadWidth},
      {"transpose height -1", OX_Transpose(src.data(), 256, dst.data(), 256, 8, -1, 4), OX_ErrBadHeight},
      {"transpose null source", OX_Transpose(nullptr, 256, dst.data(), 256, 8, 8, 4), OX_ErrNullSource},
      {"transpose null dest", OX_Transpose(src.data(), 256, nullptr, 256, 8, 8, 4), OX_ErrNullDest},
      {"transpose empty, null", OX_Transpose(nullptr, 256, nullptr, 256, 0, 8, 4), OX_Success},
      {"rotate 32f before angle", OX_RotateImage(src.data(), 256, dst.data(), 256, 8, 8, 0x10C, 45),
       OX_ErrBadSourceFormat},
      {"rotate 4:2:2", OX_RotateImage(src.data(), 256, dst.data(), 256, 8, 8, 0x14, 90), OX_ErrBadSourceFormat},
      {"rotate no alpha bits", OX_RotateImage(src.data(), 256, dst.data(), 256, 8, 8, 0x0, 90),
       OX_ErrBadSourceFormat},
      {"rotate 0", OX_RotateImage(src.data(), 256, dst.data(), 256, 8, 8, 0x4, 0), OX_ErrUnsupported},
      {"rotate 360", OX_RotateImage(src.data(), 256, dst.data(), 256, 8, 8, 0x4, 360), OX_ErrUnsupported},
      {"rotate 45", OX_RotateImage(src.data(), 256, dst.data(), 256, 8, 8, 0x4, 45), OX_ErrUnsupported},
      {"rotate null source", OX_RotateImage(nullptr, 256, dst.data(), 256, 8, 8, 0x4, 90), OX_ErrNullSource},
      {"rotate null dest", OX_RotateImage(src.data(), 256, nullptr, 256, 8, 8, 0x4, 270), OX_ErrNullDest},
      {"rotate height 0", OX_RotateImage(src.data(), 256, dst.data(), 256, 8, 0, 0x4, 90), OX_Success},
      {"flip null", OX_FlipInPlace(nullptr, 256, 8, 8, 0x4), OX_ErrNullDest},
  };
  for (const Case& c : cases) EXPECT_EQ(c.fGot, c.fWant) << c.fName;
  EXPECT_EQ(dst, std::vector<uint8_t>(dst.size(), 9));
}

TEST(RotateImage, QuarterAndHalfTurnsFollowTheirMaps) {
  std::mt19937 rng(9);
  OX::test::ForEachLevel([&](const OX::test::Level&) {
    for (int degrees : {90, -270, 180, -180, 270, -90}) {
      for (auto [w, h] : {std::pair{1, 1}, {1, 7}, {7, 1}, {5, 3}, {16, 16}, {67, 65}, {130, 9}}) {
        for (size_t dstOffset : {0u, 4u, 5u}) {  // aligned, pixel-aligned and byte-misaligned destinations
          const bool quarter = degrees != 180 && degrees != -180;
          const int dw = quarter ? h : w, dh = quarter ? w : h;
          const int32_t srb = w * 4 + 8, drb = dw * 4 + 4;
          Image src = MakeImage(srb, h, 0, 0), dst = MakeImage(drb, dh, dstOffset, 0x5A);
          FillRandom(src, srb, rng);
          ASSERT_EQ(OX_RotateImage(src.Row(0), srb, dst.Row(0), drb, w, h, 0x8 /* BGRP_4444_8u */, degrees), 0);
          SCOPED_TRACE(::testing::Message() << degrees << " " << w << "x" << h << " +" << dstOffset);
          for (int y = 0; y < dh; ++y) {
            for (int x = 0; x < dw; ++x) {
              int sx, sy;
              if (degrees == 90 || degrees == -270) sx = y, sy = h - 1 - x;
              else if (quarter) sx = w - 1 - y, sy = x;
              else sx = w - 1 - x, sy = h - 1 - y;
              ASSERT_EQ(std::memcmp(dst.Row(y) + x * 4, src.Row(sy) + sx * 4, 4), 0) << x << "," << y;
            }
            for (int p = dw * 4; p < drb; ++p) ASSERT_EQ(dst.Row(y)[p], 0x5A);
          }
          ASSERT_TRUE(GuardsIntact(dst));
        }
      }
    }
  });
}

TEST(FlipInPlace, ReversesRowsOnEveryCopyPath) {
  // Row sizes below the vector threshold, at it, and above the stack scratch; the streaming
  // choice follows the cache size, so both the probed size and 0 (always stream) are tried.
  std::mt19937 rng(10);
  const uint32_t probedCache = OX::gCacheBytes;
  struct Case {
    OX_PixelFormat fFormat;
    int32_t fWidth;
    int32_t fRowBytes;  // the row's tight size is what moves; the rest is padding
  } cases[] = {
      {0x4, 31, 31 * 4 + 3},                  // BGRA 8u: 124 bytes, plain copy
      {0x4, 32, 32 * 4},                      // 128 bytes, vector path
      {0x14, 63, 128},                        // UYVY: 32 pairs, 128 bytes
      {0x104, 0x40000 / 16 + 1, 0x40000 + 16},  // BGRA 32f: 0x40010 bytes, scratch from a block
  };
  for (uint32_t cache : {probedCache, 0u}) {
    OX::gCacheBytes = cache;
    OX::test::ForEachLevel([&](const OX::test::Level&) {
      for (const Case& c : cases) {
        for (int h : {0, 1, 2, 3, 6}) {
          const int32_t tight = c.fWidth * (c.fFormat == 0x14 ? 2 : c.fFormat == 0x104 ? 16 : 4) +
                                (c.fFormat == 0x14 ? (c.fWidth & 1) * 2 : 0);
          Image image = MakeImage(c.fRowBytes, h, 1, 0);
          FillRandom(image, c.fRowBytes, rng);
          const Image before = image;
          ASSERT_EQ(OX_FlipInPlace(image.Row(0), c.fRowBytes, c.fWidth, h, c.fFormat), OX_Success);
          Image was = before;
          for (int y = 0; y < h; ++y) {
            ASSERT_EQ(std::memcmp(image.Row(y), was.Row(h - 1 - y), tight), 0) << y;
            ASSERT_EQ(std::memcmp(image.Row(y) + tight, was.Row(y) + tight, c.fRowBytes - tight), 0) << "padding";
          }
          ASSERT_TRUE(GuardsIntact(image));
        }
      }
    });
  }
  OX::gCacheBytes = probedCache;
}

}  // namespace
