// Alpha operations against references written in the test: inverted, constant and in-place
// alphas per depth and order, the one-bit mask per bit, and refusals that write nothing.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "Ombrix.h"
#include "frame/PixelFormat.h"

namespace {

struct Format {
  OX_PixelFormat fCode;
  int fSample;  // bytes
  int fAlphaAt;  // sample index
};
const Format kFormats[] = {{OX_PixelFormat_BGRA_4444_8u, 1, 3},  {OX_PixelFormat_ARGB_4444_8u, 1, 0},
                           {OX_PixelFormat_VUYP_4444_8u, 1, 3},  {OX_PixelFormat_BGRA_4444_15u, 2, 3},
                           {OX_PixelFormat_PRGB_4444_15u, 2, 0}, {OX_PixelFormat_BGRA_4444_32f, 4, 3},
                           {OX_PixelFormat_ARGB_4444_32f, 4, 0}};

double Sample(const uint8_t* p, int bytes) {
  if (bytes == 1) return *p;
  if (bytes == 2) {
    uint16_t v;
    std::memcpy(&v, p, 2);
    return v;
  }
  float v;
  std::memcpy(&v, p, 4);
  return v;
}

std::vector<uint8_t> Random(size_t n, std::mt19937& rng, int sample) {
  std::vector<uint8_t> v(n);
  for (size_t i = 0; i < n; i += size_t(sample)) {
    if (sample == 4) {
      const float f = float(rng() % 1001) / 1000.0f;
      std::memcpy(&v[i], &f, 4);
    } else if (sample == 2) {
      const uint16_t s = uint16_t(rng() % 32769);
      std::memcpy(&v[i], &s, 2);
    } else {
      v[i] = uint8_t(rng());
    }
  }
  return v;
}

TEST(AlphaOps, InvertAndCopyWithAlphaPerDepthAndOrder) {
  std::mt19937 rng(21);
  const int w = 9, h = 3;
  for (const Format& f : kFormats) {
    const int pixel = 4 * f.fSample, rb = w * pixel + 8;
    const std::vector<uint8_t> src = Random(size_t(rb) * h, rng, f.fSample);
    SCOPED_TRACE(OX::PixelFormatName(f.fCode));
    // Invert: only alpha changes, into a destination already holding other bytes.
    std::vector<uint8_t> dst(src.size(), 0x5A);
    ASSERT_EQ(OX_InvertAlpha(src.data(), rb, dst.data(), rb, f.fCode, w, h), 0);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x)
        for (int s = 0; s < 4; ++s) {
          const size_t at = size_t(y) * rb + size_t(x) * pixel + size_t(s) * f.fSample;
          const double want = s != f.fAlphaAt ? Sample(&std::vector<uint8_t>(4, 0x5A)[0], f.fSample)
                              : f.fSample == 1  ? 255 - src[at]
                              : f.fSample == 2  ? double(uint16_t(32768 - Sample(&src[at], 2)))
                                                : double(1.0f - float(Sample(&src[at], 4)));
          ASSERT_EQ(Sample(&dst[at], f.fSample), want) << x << "," << y << " sample " << s;
        }
    // Copy and set alpha 0.6 (alpha-first only at 8 bits).
    const bool allowed = f.fAlphaAt == 3 || f.fSample == 1;
    std::vector<uint8_t> copy(src.size(), 0x11);
    ASSERT_EQ(OX_CopyAndSetAlpha(src.data(), rb, copy.data(), rb, f.fCode, w, h, 0.6f),
              allowed ? OX_Success : OX_ErrUnsupported);
    if (!allowed) {
      EXPECT_EQ(copy, std::vector<uint8_t>(copy.size(), 0x11));
      continue;
    }
    const double alpha = f.fSample == 1 ? 153 : f.fSample == 2 ? std::nearbyint(32768 * 0.6f) : 0.6f;
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x)
        for (int s = 0; s < 4; ++s) {
          const size_t at = size_t(y) * rb + size_t(x) * pixel + size_t(s) * f.fSample;
          ASSERT_EQ(Sample(&copy[at], f.fSample), s == f.fAlphaAt ? alpha : Sample(&src[at], f.fSample));
        }
  }
  // The 15-bit ends: 32768 inverts to 0 and 0 to 32768.
  const uint16_t px[4] = {1, 2, 3, 32768}, zero[4] = {1, 2, 3, 0};
  uint16_t out[4];
  ASSERT_EQ(OX_InvertAlpha(px, 8, out, 8, OX_PixelFormat_BGRA_4444_15u, 1, 1), 0);
  EXPECT_EQ(out[3], 0);
  ASSERT_EQ(OX_InvertAlpha(zero, 8, out, 8, OX_PixelFormat_BGRA_4444_15u, 1, 1), 0);
  EXPECT_EQ(out[3], 32768);
}

TEST(AlphaOps, SetAlphaChannelWritesOnlyAlpha) {
  struct Case {
    OX_PixelFormat fFormat;
    int fOffset, fBytes;
    double fFull;
  } cases[] = {{OX_PixelFormat_BGRA_4444_8u, 3, 1, 255},   {OX_PixelFormat_VUYA_4444_8u, 3, 1, 255},
               {OX_PixelFormat_BGRA_4444_15u, 6, 2, 32768}, {OX_PixelFormat_BGRA_4444_32f, 12, 4, 1.0},
               {OX_PixelFormat_VUYA_4444_32f, 12, 4, 1.0},  {OX_PixelFormat_ARGB_4444_32f_Linear, 0, 4, 1.0}};
  for (const Case& c : cases) {
    for (bool opaque : {true, false}) {
      const int pixel = c.fBytes * 4, w = 5, h = 3, rb = w * pixel + 4;
      std::vector<uint8_t> buffer(size_t(rb) * h, 0x3C), want = buffer;
      for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
          uint8_t* p = &want[size_t(y) * rb + size_t(x) * pixel + c.fOffset];
          if (c.fBytes == 1) *p = opaque ? 255 : 0;
          else if (c.fBytes == 2) { const uint16_t v = opaque ? 32768 : 0; std::memcpy(p, &v, 2); }
          else { const float v = opaque ? 1.0f : 0.0f; std::memcpy(p, &v, 4); }
        }
      ASSERT_EQ(OX_SetAlphaChannel(w, h, buffer.data(), rb, c.fFormat, opaque), 0);
      EXPECT_EQ(buffer, want) << OX::PixelFormatName(c.fFormat) << " " << opaque;
    }
  }
}

TEST(AlphaOps, OneBitMaskPicksWholePixelsByBit) {
  std::mt19937 rng(22);
  const int w = 21, h = 4;
  std::vector<uint8_t> a(size_t(w) * 4 * h), b(a.size()), mask(4 * h);
  for (auto& v : a) v = uint8_t(rng());
  for (auto& v : b) v = uint8_t(rng());
  for (auto& v : mask) v = uint8_t(rng());
  for (int offset : {0, 3, 9}) {
    std::vector<uint8_t> d(a.size(), 0);
    ASSERT_EQ(OX_OneBitMaskComposite(a.data(), w * 4, 4, b.data(), w * 4, 4, mask.data(), 4, offset, d.data(), w * 4, 4,
                                     w, h, 3),
              0);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const int bit = (offset & 7) + x;  // 9 acts as 1
        const bool fromA = mask[size_t(y) * 4 + size_t(bit / 8)] & (0x80 >> (bit % 8));
        const size_t at = (size_t(y) * w + x) * 4;
        ASSERT_EQ(std::memcmp(&d[at], &(fromA ? a : b)[at], 4), 0) << offset << " " << x << "," << y;
      }
  }
  // B in another format (top-down VUYA) goes through a conversion and pairs by picture.
  std::vector<uint8_t> vuya(b.size()), viaB(a.size()), zeros(mask.size(), 0);
  ASSERT_EQ(OX_Convert(b.data(), w * 4, 4, vuya.data(), w * 4, OX_PixelFormat_VUYA_4444_8u, w, h, 3), 0);
  ASSERT_EQ(OX_OneBitMaskComposite(a.data(), w * 4, 4, vuya.data(), w * 4, OX_PixelFormat_VUYA_4444_8u, zeros.data(), 4,
                                   0, viaB.data(), w * 4, 4, w, h, 3),
            0);
  std::vector<uint8_t> back(a.size());
  ASSERT_EQ(OX_Convert(vuya.data(), w * 4, OX_PixelFormat_VUYA_4444_8u, back.data(), w * 4, 4, w, h, 3), 0);
  EXPECT_EQ(viaB, back);
}

TEST(AlphaOps, RefusalsWriteNothing) {
  std::vector<uint8_t> s(512, 1), d(512, 9);
  const uint8_t m[16] = {};
  struct Case {
    const char* fName;
    OX_Result fGot, fWant;
  } cases[] = {
      {"invert 4:2:2", OX_InvertAlpha(s.data(), 64, d.data(), 64, OX_PixelFormat_UYVY_422_8u, 4, 2), OX_ErrBadSourceFormat},
      {"invert no alpha", OX_InvertAlpha(s.data(), 64, d.data(), 64, OX_PixelFormat_RGB_444_10u, 4, 2), OX_ErrBadSourceFormat},
      {"copy-set ARGB 32f", OX_CopyAndSetAlpha(s.data(), 64, d.data(), 64, OX_PixelFormat_ARGB_4444_32f, 4, 2, 1), OX_ErrUnsupported},
      {"copy-set UYVY", OX_CopyAndSetAlpha(s.data(), 64, d.data(), 64, OX_PixelFormat_UYVY_422_8u, 4, 2, 1), OX_ErrUnsupported},
      {"set alpha BGRX", OX_SetAlphaChannel(4, 2, d.data(), 64, OX_PixelFormat_BGRX_4444_8u, true), OX_ErrUnsupported},
      {"set alpha null", OX_SetAlphaChannel(4, 2, nullptr, 64, OX_PixelFormat_BGRA_4444_8u, true), OX_ErrNullDest},
      {"set alpha width 0", OX_SetAlphaChannel(0, 2, d.data(), 64, OX_PixelFormat_BGRA_4444_8u, true), OX_Success},
      {"mask into UYVY", OX_OneBitMaskComposite(s.data(), 64, 4, s.data(), 64, 4, m, 1, 0, d.data(), 64,
                                                OX_PixelFormat_UYVY_422_8u, 4, 2, 3), OX_ErrBadDestFormat},
      {"mask from DV", OX_OneBitMaskComposite(s.data(), 64, OX_PixelFormat_NTSCDV25, s.data(), 64, 4, m, 1, 0, d.data(),
                                              64, 4, 4, 2, 3), OX_ErrBadSourceFormat},
      {"mask null", OX_OneBitMaskComposite(s.data(), 64, 4, s.data(), 64, 4, nullptr, 1, 0, d.data(), 64, 4, 4, 2, 3),
       OX_ErrNullSource},
  };
  for (const Case& c : cases) EXPECT_EQ(c.fGot, c.fWant) << c.fName;
  EXPECT_EQ(d, std::vector<uint8_t>(d.size(), 9));
}

}  // namespace
