// Fills: every kind on every raw format reads back as black or white, transparent or opaque, in
// RGB and in YUV; the byte values of the main families; planar, V210 and DV25 frames; refusals.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "Ombrix.h"
#include "frame/PixelFormat.h"

namespace {

using FillFn = OX_Result (*)(void*, int32_t, int32_t, int32_t, OX_PixelFormat);
struct Kind {
  const char* fName;
  FillFn fFill;
  bool fTransparent, fWhite;
};
const Kind kKinds[] = {{"transparent black", OX_FillWithTransparentBlack, true, false},
                       {"opaque black", OX_FillWithOpaqueBlack, false, false},
                       {"transparent white", OX_FillWithTransparentWhite, true, true},
                       {"opaque white", OX_FillWithOpaqueWhite, false, true}};

TEST(Fill, EveryKindOnEveryRawFormatReadsBackAsItsColour) {
  const int w = 13, h = 3;
  for (OX_PixelFormat f : OX::kRawFormats) {
    for (const Kind& k : kKinds) {
      const int32_t rowBytes = OX_PixelFormatSize(f, w, 1) + 8;  // padding that must stay
      std::vector<uint8_t> buffer(size_t(rowBytes) * h + 64, 0xA5);
      const OX_Result r = k.fFill(buffer.data(), rowBytes, w, h, f);
      SCOPED_TRACE(::testing::Message() << OX::PixelFormatName(f) << ", " << k.fName);
      const bool hasAlpha = OX::AlphaOf(f) == OX::kAlphaStraight || OX::AlphaOf(f) == OX::kAlphaPremultiplied;
      if (k.fTransparent && !hasAlpha) {
        EXPECT_EQ(r, OX_ErrBadDestFormat);
        EXPECT_EQ(buffer, std::vector<uint8_t>(buffer.size(), 0xA5));
        continue;
      }
      ASSERT_EQ(r, OX_Success);
      for (int y = 0; y < h; ++y)
        for (int32_t i = OX_PixelFormatSize(f, w, 1); i < rowBytes; ++i) ASSERT_EQ(buffer[size_t(y) * rowBytes + i], 0xA5);
      for (size_t i = size_t(rowBytes) * h; i < buffer.size(); ++i) ASSERT_EQ(buffer[i], 0xA5);
      // Premultiplied transparent white is transparent black; opaque formats read alpha 1.
      const bool white = k.fWhite && !(k.fTransparent && OX::AlphaOf(f) == OX::kAlphaPremultiplied);
      const double alpha = k.fTransparent ? 0.0 : 1.0;
      for (OX_PixelFormat probe : {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_32f}) {
        std::vector<float> back(size_t(w) * h * 4);
        ASSERT_EQ(OX_Convert(buffer.data(), rowBytes, f, back.data(), w * 16, probe, w, h, 3), 0);
        const bool yuv = probe == OX_PixelFormat_VUYA_4444_32f;
        for (int p = 0; p < w * h; ++p) {
          const float* px = &back[size_t(p) * 4];
          const double tolerance = 0.01;
          if (yuv) {
            EXPECT_NEAR(px[0], 0.0, tolerance) << "V";
            EXPECT_NEAR(px[1], 0.0, tolerance) << "U";
            EXPECT_NEAR(px[2], white ? 1.0 : 0.0, tolerance) << "Y";
          } else {
            // Straight colour is meaningless under alpha 0 once premultiplied; check what is defined.
            if (!(k.fTransparent && OX::AlphaOf(f) == OX::kAlphaPremultiplied))
              for (int c = 0; c < 3; ++c) EXPECT_NEAR(px[c], white ? 1.0 : 0.0, tolerance) << c;
          }
          if (OX::AlphaOf(f) == OX::kAlphaStraight || OX::AlphaOf(f) == OX::kAlphaPremultiplied)
            EXPECT_NEAR(px[3], alpha, 1e-6);
        }
      }
    }
  }
}

TEST(Fill, BytesOfTheMainFamilies) {
  struct Case {
    FillFn fFill;
    OX_PixelFormat fFormat;
    std::vector<uint8_t> fFirstBytes;
  } cases[] = {
      {OX_FillWithOpaqueBlack, OX_PixelFormat_BGRA_4444_8u, {0, 0, 0, 255}},
      {OX_FillWithOpaqueBlack, OX_PixelFormat_VUYA_4444_8u, {128, 128, 16, 255}},
      {OX_FillWithOpaqueWhite, OX_PixelFormat_VUYA_4444_8u, {128, 128, 235, 255}},
      {OX_FillWithTransparentWhite, OX_PixelFormat_BGRP_4444_8u, {0, 0, 0, 0}},
      {OX_FillWithTransparentWhite, OX_PixelFormat_BGRA_4444_8u, {255, 255, 255, 0}},
      {OX_FillWithTransparentWhite, OX_PixelFormat_ARGB_4444_8u, {0, 255, 255, 255}},
      {OX_FillWithOpaqueBlack, OX_PixelFormat_ARGB_4444_8u, {255, 0, 0, 0}},
      {OX_FillWithOpaqueWhite, OX_PixelFormat_UYVY_422_8u, {128, 235, 128, 235}},
      {OX_FillWithOpaqueBlack, OX_PixelFormat_YUYV_422_8u, {16, 128, 16, 128}},
      {OX_FillWithOpaqueBlack, OX_PixelFormat_BGRA_4444_15u, {0, 0, 0, 0, 0, 0, 0, 128}},
  };
  for (const Case& c : cases) {
    std::vector<uint8_t> px(64, 0x33);
    ASSERT_EQ(c.fFill(px.data(), 32, 2, 1, c.fFormat), 0);
    EXPECT_EQ(std::vector<uint8_t>(px.begin(), px.begin() + c.fFirstBytes.size()), c.fFirstBytes)
        << OX::PixelFormatName(c.fFormat);
  }
}

TEST(Fill, PlanarV210DVAndRefusals) {
  // Planar 4:2:0: luma 235 over width x height, chroma 128 over the rounded-up half sizes.
  {
    const int w = 9, h = 5;
    std::vector<uint8_t> frame(size_t(OX_PixelFormatSize(OX_PixelFormat_YUV_420_MPEG2_FRAME, w, h)), 0);
    ASSERT_EQ(OX_FillWithOpaqueWhite(frame.data(), 0, w, h, OX_PixelFormat_YUV_420_MPEG2_FRAME), 0);
    void* planes[3];
    int32_t rb[3];
    OX_GetPlanarBuffers(frame.data(), 0, w, h, planes, rb);
    for (int p = 0; p < 3; ++p) {
      const int pw = p ? (w + 1) / 2 : w, ph = p ? (h + 1) / 2 : h;
      for (int y = 0; y < ph + 1; ++y)
        for (int x = 0; x < rb[p]; ++x) {
          const uint8_t v = static_cast<uint8_t*>(planes[p])[y * rb[p] + x];
          EXPECT_EQ(v, x < pw && y < ph ? (p ? 128 : 235) : 0) << p << " " << x << "," << y;
        }
    }
    EXPECT_EQ(OX_FillWithTransparentWhite(frame.data(), 0, w, h, OX_PixelFormat_YUV_420_MPEG2_FRAME), OX_ErrBadDestFormat);
  }
  // V210 at width 7: two groups on every row in the fills; with a colour two on row 0, one after.
  {
    const int32_t rowBytes = 48;
    std::vector<uint8_t> a(rowBytes * 3, 0), b(rowBytes * 3, 0);
    ASSERT_EQ(OX_FillWithOpaqueBlack(a.data(), rowBytes, 7, 3, OX_PixelFormat_V210_422_10u), 0);
    const uint8_t grey[4] = {128, 128, 128, 255};
    EXPECT_EQ(OX_FillWithColor(b.data(), rowBytes, 7, 3, OX_PixelFormat_V210_422_10u, grey, OX_PixelFormat_BGRA_4444_8u),
              OX_ErrBadDestFormat);
    auto wordAt = [](const std::vector<uint8_t>& v, size_t at) {
      uint32_t x;
      std::memcpy(&x, v.data() + at, 4);
      return x;
    };
    for (int y = 0; y < 3; ++y) {
      for (int i = 0; i < rowBytes; i += 4) {
        EXPECT_EQ(wordAt(a, size_t(y) * rowBytes + i) != 0, i < 32) << "fill, row " << y << " byte " << i;
        EXPECT_EQ(wordAt(b, size_t(y) * rowBytes + i) != 0, i < (y == 0 ? 32 : 16)) << "colour, row " << y << " byte " << i;
      }
    }
    // Black V210 words: Y 64 and U, V 512 in ten bits.
    EXPECT_EQ(wordAt(a, 0), 512u | (64u << 10) | (512u << 20));
  }
  // DV: DV50 and DV100 black write nothing; our DV25 black frames decode to Y 16, C 128.
  {
    std::vector<uint8_t> frame(144000, 0x77);
    EXPECT_EQ(OX_FillWithOpaqueBlack(frame.data(), 0, 720, 576, OX_PixelFormat_PALDV50), 0);
    EXPECT_EQ(frame, std::vector<uint8_t>(frame.size(), 0x77));
    for (OX_PixelFormat dv : {OX_PixelFormat_NTSCDV25, OX_PixelFormat_PALDV25}) {
      const int h = dv == OX_PixelFormat_PALDV25 ? 576 : 480;
      ASSERT_EQ(OX_FillWithOpaqueBlack(frame.data(), 0, 0, 0, dv), 0);
      std::vector<uint8_t> uyvy(720 * 2 * h);
      ASSERT_EQ(OX_Convert(frame.data(), 0, dv, uyvy.data(), 720 * 2, OX_PixelFormat_UYVY_422_8u, 720, h, 4), 0);
      for (size_t i = 0; i < uyvy.size(); i += 2) {
        ASSERT_NEAR(uyvy[i], 128, 1) << i;
        ASSERT_NEAR(uyvy[i + 1], 16, 1) << i;
      }
    }
  }
  // Refusals and empty pictures write nothing.
  std::vector<uint8_t> d(256, 0x5A);
  const uint8_t px[4] = {1, 2, 3, 4};
  struct Case {
    const char* fName;
    OX_Result fGot, fWant;
  } cases[] = {
      {"transparent on UYVY", OX_FillWithTransparentBlack(d.data(), 64, 4, 2, OX_PixelFormat_UYVY_422_8u), OX_ErrBadDestFormat},
      {"transparent on BGRX", OX_FillWithTransparentWhite(d.data(), 64, 4, 2, OX_PixelFormat_BGRX_4444_8u), OX_ErrBadDestFormat},
      {"planar without 4:2:0", OX_FillWithOpaqueBlack(d.data(), 64, 4, 2, 0x9000801), OX_ErrBadSourceFormat},
      {"other container", OX_FillWithOpaqueWhite(d.data(), 64, 4, 2, 0x0D000004), OX_ErrBadSourceFormat},
      {"zero width", OX_FillWithOpaqueWhite(d.data(), 64, 0, 2, OX_PixelFormat_BGRA_4444_8u), OX_Success},
      {"negative height", OX_FillWithOpaqueWhite(d.data(), 64, 4, -2, OX_PixelFormat_BGRA_4444_8u), OX_Success},
      {"null destination", OX_FillWithOpaqueWhite(nullptr, 64, 4, 2, OX_PixelFormat_BGRA_4444_8u), OX_ErrNullDest},
      {"colour into an alpha-free 4:4:4", OX_FillWithColor(d.data(), 64, 4, 2, OX_PixelFormat_RGB_444_10u, px, 4), OX_ErrBadDestFormat},
      {"colour from a container", OX_FillWithColor(d.data(), 64, 4, 2, 4, px, OX_PixelFormat_NTSCDV25), OX_ErrBadSourceFormat},
      {"colour null", OX_FillWithColor(d.data(), 64, 4, 2, 4, nullptr, 4), OX_ErrNullSource},
  };
  for (const Case& c : cases) EXPECT_EQ(c.fGot, c.fWant) << c.fName;
  EXPECT_EQ(d, std::vector<uint8_t>(d.size(), 0x5A));
}

TEST(Fill, ColourAndNegativeRowBytes) {
  // A caller's pixel in each family it reaches, read back; rows filled upward from the last.
  const uint8_t orange[4] = {40, 120, 230, 200};  // BGRA
  for (OX_PixelFormat f : {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_ARGB_4444_15u,
                           OX_PixelFormat_UYVY_422_8u}) {
    const int w = 6, h = 4;
    const int32_t rb = OX_PixelFormatSize(f, w, 1);
    std::vector<uint8_t> up(size_t(rb) * h, 0), down(size_t(rb) * h, 0);
    ASSERT_EQ(OX_FillWithColor(down.data(), rb, w, h, f, orange, OX_PixelFormat_BGRA_4444_8u), 0);
    ASSERT_EQ(OX_FillWithColor(up.data() + size_t(rb) * (h - 1), -rb, w, h, f, orange, OX_PixelFormat_BGRA_4444_8u), 0);
    EXPECT_EQ(up, down);
    std::vector<uint8_t> back(size_t(w) * h * 4);
    ASSERT_EQ(OX_Convert(down.data(), rb, f, back.data(), w * 4, OX_PixelFormat_BGRA_4444_8u, w, h, 3), 0);
    const bool opaque = OX::SubsamplingOf(f) != 0;
    for (size_t i = 0; i < back.size(); i += 4)
      for (int c = 0; c < 3; ++c)
        EXPECT_NEAR(back[i + c], opaque ? orange[c] * 200 / 255.0 : orange[c], 3.0) << OX::PixelFormatName(f) << " " << c;
  }
}

}  // namespace
