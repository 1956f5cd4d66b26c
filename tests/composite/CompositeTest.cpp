// The composite driver end to end: working formats and kernels against an "over" reference in
// double, slices against row-by-row calls, refusals, and the cases callers rely on.
#include <gtest/gtest.h>
#include <tbb/global_control.h>
#include <xmmintrin.h>

#include <cmath>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include "Ombrix.h"
#include "frame/PixelFormat.h"

namespace {

struct Picture {
  OX_PixelFormat fFormat;
  int fWidth, fHeight;
  int32_t fRowBytes;
  std::vector<uint8_t> fBytes;
  Picture(OX_PixelFormat f, int w, int h, uint8_t fill = 0)
      : fFormat(f), fWidth(w), fHeight(h), fRowBytes(OX_PixelFormatSize(f, w, 1)),
        fBytes(size_t(std::max(OX_PixelFormatSize(f, w, h), 0)), fill) {}
  Picture To(OX_PixelFormat f) const {
    Picture p(f, fWidth, fHeight);
    EXPECT_EQ(OX_Convert(fBytes.data(), fRowBytes, fFormat, p.fBytes.data(), p.fRowBytes, f, fWidth, fHeight, 3), 0);
    return p;
  }
  const float* Pixel(int x, int y) const {  // for BGRA_4444_32f pictures
    return reinterpret_cast<const float*>(fBytes.data() + size_t(y) * size_t(fRowBytes)) + 4 * x;
  }
};

// Straight BGRA floats in runs of `run` equal pixels, alphas 0, 1 or between. Runs of 16 keep the
// middle of each run clear of the chroma filters of 4:2:2 formats, which a round trip applies twice.
Picture RandomPicture(int w, int h, std::mt19937& rng, int run = 2) {
  Picture p(OX_PixelFormat_BGRA_4444_32f, w, h);
  std::uniform_real_distribution<float> u(0.05f, 0.95f);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; x += run) {
      float px[4] = {u(rng), u(rng), u(rng), 0};
      const uint32_t r = rng() % 4;
      px[3] = r == 0 ? 0.0f : r == 1 ? 1.0f : u(rng);
      for (int k = 0; k < run && x + k < w; ++k)
        std::memcpy(const_cast<float*>(p.Pixel(x + k, y)), px, 16);
    }
  return p;
}

OX_Result Composite(const Picture& s, const Picture& b, Picture& d, float opacity, bool keepLinear = true) {
  return OX_Composite(s.fBytes.data(), s.fRowBytes, s.fFormat, b.fBytes.data(), b.fRowBytes, b.fFormat, d.fBytes.data(),
                      d.fRowBytes, d.fFormat, d.fWidth, d.fHeight, opacity, 3, keepLinear);
}

TEST(Composite, EveryFormatTripleMatchesOverInDouble) {
  const OX_PixelFormat formats[] = {
      OX_PixelFormat_BGRA_4444_8u,  OX_PixelFormat_BGRP_4444_8u,        OX_PixelFormat_BGRX_4444_8u,
      OX_PixelFormat_ARGB_4444_8u,  OX_PixelFormat_BGRA_4444_15u,       OX_PixelFormat_BGRP_4444_32f,
      OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_VUYA_4444_8u,
      OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_VUYA_4444_32f,   OX_PixelFormat_UYVY_422_8u,
      OX_PixelFormat_V210_422_10u,  OX_PixelFormat_RGB_444_10u};
  constexpr int n = sizeof(formats) / sizeof(formats[0]);
  std::mt19937 rng(5);
  int checked = 0;
  for (int round = 0; round < 160; ++round) {
    const OX_PixelFormat sf = formats[rng() % n], bf = formats[rng() % n], df = formats[rng() % n];
    const bool keepLinear = rng() % 2;
    const float opacity = std::vector<float>{0.0f, 0.3f, 1.0f, 1.5f}[rng() % 4];
    const int w = 48, h = 3;
    const Picture s = RandomPicture(w, h, rng, 16).To(sf), b = RandomPicture(w, h, rng, 16).To(bf);
    const bool subsampled = OX::SubsamplingOf(sf) || OX::SubsamplingOf(bf) || OX::SubsamplingOf(df);
    Picture d(df, w, h, 0x5A);
    ASSERT_EQ(Composite(s, b, d, opacity, keepLinear), 0);
    // Composited in linear light only when the destination is linear and the caller keeps it.
    const OX_PixelFormat space =
        keepLinear && (df & OX::kLinearBit) ? OX_PixelFormat_BGRA_4444_32f_Linear : OX_PixelFormat_BGRA_4444_32f;
    const Picture ts = s.To(space), tb = b.To(space), got = d.To(space);
    const bool opaqueD = OX::IsAlphaFree(df) || OX::SubsamplingOf(df) != 0;
    const bool deep = OX::DepthOf(sf) && OX::DepthOf(bf) && OX::DepthOf(df);
    const double tolerance = deep ? 0.006 : 0.035;
    const double o = std::min(1.0, double(opacity));
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        if (subsampled && (x % 16 < 4 || x % 16 > 11)) continue;
        const float *ps = ts.Pixel(x, y), *pb = tb.Pixel(x, y), *pd = got.Pixel(x, y);
        const double as = (OX::IsAlphaFree(sf) || OX::SubsamplingOf(sf) ? 1.0 : ps[3]) * o;
        const double ab = OX::IsAlphaFree(bf) || OX::SubsamplingOf(bf) ? 1.0 : pb[3];
        const double A = as + ab * (1 - as);
        SCOPED_TRACE(::testing::Message() << std::hex << "0x" << sf << " over 0x" << bf << " into 0x" << df << std::dec
                                          << " opacity " << opacity << " keepLinear " << keepLinear << " at " << x << ","
                                          << y);
        for (int c = 0; c < 3; ++c) {
          const double premultiplied = ps[c] * as + pb[c] * ab * (1 - as);
          if (opaqueD) ASSERT_NEAR(pd[c], premultiplied, tolerance);
          else if (A > 0.25) ASSERT_NEAR(pd[c], premultiplied / A, tolerance / A);
        }
        if (!opaqueD) ASSERT_NEAR(pd[3], A, tolerance);
        ++checked;
      }
  }
  EXPECT_GT(checked, 160 * 72);
}

// A whole call against one call per row, for the plain composite and a blend mode, on pools of
// one, two and every thread, with a separate destination and in place over the background.
TEST(Composite, SlicesGiveTheBytesOfRowByRowCalls) {
  std::mt19937 rng(6);
  const int w = 29;
  for (int h : {1, 64, 65, 67, 1080}) {
    const Picture s = RandomPicture(w, h, rng).To(OX_PixelFormat_BGRA_4444_8u);
    const Picture b = RandomPicture(w, h, rng).To(OX_PixelFormat_BGRP_4444_8u);
    for (OX_BlendMode mode : {OX_BlendMode_Normal, OX_BlendMode_Overlay, OX_BlendMode_Hue}) {
      auto call = [&](const uint8_t* sp, const uint8_t* bp, uint8_t* dp, int rows) {
        return OX_CompositeWithBlendMode(sp, s.fRowBytes, s.fFormat, bp, b.fRowBytes, b.fFormat, dp, w * 16,
                                         OX_PixelFormat_BGRA_4444_32f, w, rows, 0.7f, mode, 3, true);
      };
      std::vector<uint8_t> rowByRow(size_t(w) * 16 * h);
      for (int y = 0; y < h; ++y)
        ASSERT_EQ(call(s.fBytes.data() + y * s.fRowBytes, b.fBytes.data() + y * b.fRowBytes, rowByRow.data() + y * w * 16, 1), 0);
      for (int threads : {1, 2, int(std::thread::hardware_concurrency())}) {
        tbb::global_control limit(tbb::global_control::max_allowed_parallelism, size_t(threads));
        std::vector<uint8_t> whole(rowByRow.size(), 0x77);
        ASSERT_EQ(call(s.fBytes.data(), b.fBytes.data(), whole.data(), h), 0);
        ASSERT_EQ(whole, rowByRow) << "height " << h << " mode " << mode << " threads " << threads;
      }
      // In place: the background is the destination (same format).
      Picture inPlace = b;
      ASSERT_EQ(OX_CompositeWithBlendMode(s.fBytes.data(), s.fRowBytes, s.fFormat, inPlace.fBytes.data(), b.fRowBytes,
                                          b.fFormat, inPlace.fBytes.data(), b.fRowBytes, b.fFormat, w, h, 0.7f, mode, 3,
                                          true),
                0);
      Picture separate(b.fFormat, w, h);
      ASSERT_EQ(OX_CompositeWithBlendMode(s.fBytes.data(), s.fRowBytes, s.fFormat, b.fBytes.data(), b.fRowBytes,
                                          b.fFormat, separate.fBytes.data(), b.fRowBytes, b.fFormat, w, h, 0.7f, mode, 3,
                                          true),
                0);
      ASSERT_EQ(inPlace.fBytes, separate.fBytes) << "height " << h << " mode " << mode;
    }
  }
}

TEST(Composite, RefusalsLeaveTheDestinationAndTheFloatModeAsTheyWere) {
  std::vector<uint8_t> s(64 * 4, 1), b(64 * 4, 2), d(64 * 4, 9);
  const unsigned mxcsr = _mm_getcsr();
  _mm_setcsr((mxcsr & ~0x8040u) | 0x6000u);  // round toward zero, no flush: a mode the guard must restore
  const unsigned set = _mm_getcsr();
  auto plain = [&](OX_PixelFormat sf, OX_PixelFormat bf, OX_PixelFormat df, float opacity, int width = 8) {
    return OX_Composite(s.data(), 32, sf, b.data(), 32, bf, d.data(), 32, df, width, 2, opacity, 3, true);
  };
  auto mode = [&](OX_BlendMode m, OX_PixelFormat sf = OX_PixelFormat_BGRA_4444_8u) {
    return OX_CompositeWithBlendMode(s.data(), 32, sf, b.data(), 32, 4, d.data(), 32, 4, 8, 2, 0.5f, m, 3, true);
  };
  struct Case {
    const char* fName;
    OX_Result fGot, fWant;
  } cases[] = {
      {"container source", plain(OX_PixelFormat_NTSCDV25, 4, 4, 0.5f), OX_ErrBadSourceFormat},
      {"container source at opacity 0", plain(OX_PixelFormat_NTSCDV25, 4, 4, 0.0f), OX_ErrBadSourceFormat},
      {"container background", plain(4, OX_PixelFormat_YUV_420_MPEG2_FRAME, 4, 0.0f), OX_ErrBadSourceFormat},
      {"container destination", plain(4, 4, OX_PixelFormat_PALDV25, 1.0f), OX_ErrBadDestFormat},
      {"mode 27", mode(27), OX_ErrUnsupported},
      {"mode 0xFFFFFFFF", mode(0xFFFFFFFFu), OX_ErrUnsupported},
      {"mode with container", mode(OX_BlendMode_Multiply, OX_PixelFormat_NTSCDV25), OX_ErrBadSourceFormat},
      {"negative width", plain(4, 4, 4, 0.5f, -1), OX_ErrBadWidth},
      {"shortcut's own code (no route from an unknown code)", plain(4, 0x7F, 4, 0.0f), OX_ErrNoRoute},
      {"no route for a working conversion", plain(0x7F, 4, 4, 0.5f), OX_ErrNoRoute},
  };
  const unsigned after = _mm_getcsr();
  _mm_setcsr(mxcsr);
  for (const Case& c : cases) EXPECT_EQ(c.fGot, c.fWant) << c.fName;
  EXPECT_EQ(d, std::vector<uint8_t>(d.size(), 9));
  EXPECT_EQ(after, set);
  EXPECT_EQ(OX_Composite(nullptr, 32, 4, b.data(), 32, 4, d.data(), 32, 4, 8, 2, 0.5f, 3, true), OX_ErrNullSource);
  EXPECT_EQ(OX_Composite(s.data(), 32, 4, b.data(), 32, 4, nullptr, 32, 4, 8, 2, 0.5f, 3, true), OX_ErrNullDest);
  EXPECT_EQ(OX_Composite(s.data(), 32, 4, b.data(), 32, 4, d.data(), 32, 4, 0, 2, 0.5f, 3, true), OX_Success);
  EXPECT_TRUE(OX_IsOpacityNOP(OX_BlendMode_Normal, 1.000007f));
  EXPECT_TRUE(OX_IsOpacityNOP(OX_BlendMode_Dissolve, 0.999993f));
  EXPECT_FALSE(OX_IsOpacityNOP(OX_BlendMode_Normal, 0.99999f));
  EXPECT_FALSE(OX_IsOpacityNOP(OX_BlendMode_Multiply, 1.0f));
}

TEST(Composite, CasesCallersRelyOn) {
  std::mt19937 rng(8);
  const int w = 40, h = 4;
  const Picture bgra = RandomPicture(w, h, rng).To(OX_PixelFormat_BGRA_4444_8u);
  Picture bgrx = RandomPicture(w, h, rng).To(OX_PixelFormat_BGRX_4444_8u);
  const Picture under = RandomPicture(w, h, rng).To(OX_PixelFormat_VUYA_4444_8u);
  // Opacity 0 converts the background and never reads the source (a null source would fault).
  {
    Picture d(OX_PixelFormat_BGRA_4444_8u, w, h), want = under.To(OX_PixelFormat_BGRA_4444_8u);
    ASSERT_EQ(OX_Composite(nullptr, 0, OX_PixelFormat_BGRA_4444_8u, under.fBytes.data(), under.fRowBytes, under.fFormat,
                           d.fBytes.data(), d.fRowBytes, d.fFormat, w, h, 0.0f, 3, true),
              0);
    EXPECT_EQ(d.fBytes, want.fBytes);
  }
  // Opacity 1 with an opaque source is its conversion; a BGRX source with alpha byte 0 is opaque.
  for (auto& p : bgrx.fBytes) p = (&p - bgrx.fBytes.data()) % 4 == 3 ? 0 : p;
  {
    Picture d(OX_PixelFormat_UYVY_422_8u, w, h);
    ASSERT_EQ(Composite(bgrx, under, d, 1.0f), 0);
    EXPECT_EQ(d.fBytes, bgrx.To(OX_PixelFormat_UYVY_422_8u).fBytes);
    Picture half(OX_PixelFormat_BGRA_4444_8u, w, h);
    ASSERT_EQ(Composite(bgrx, under, half, 0.5f, false), 0);
    const Picture u = under.To(OX_PixelFormat_BGRA_4444_8u);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const size_t i = size_t(y) * size_t(half.fRowBytes) + 4 * size_t(x);  // same layout in all three
        const double ab = u.fBytes[i + 3] / 255.0, A = 0.5 + ab * 0.5;
        EXPECT_NEAR(half.fBytes[i + 3], A * 255, 1.0);
        for (int c = 0; c < 3 && A > 0.6; ++c)
          EXPECT_NEAR(half.fBytes[i + c], (bgrx.fBytes[i + c] * 0.5 + u.fBytes[i + c] * ab * 0.5) / A, 2.0);
      }
  }
  // Opacity 1.5 acts as 1 in the plain composite, not in a blend mode.
  {
    Picture a(OX_PixelFormat_BGRA_4444_8u, w, h), b(a), m1(a), m15(a);
    ASSERT_EQ(Composite(bgra, under, a, 1.0f), 0);
    ASSERT_EQ(Composite(bgra, under, b, 1.5f), 0);
    EXPECT_EQ(a.fBytes, b.fBytes);
    for (auto [p, o] : {std::pair{&m1, 1.0f}, {&m15, 1.5f}})
      ASSERT_EQ(OX_CompositeWithBlendMode(bgra.fBytes.data(), bgra.fRowBytes, bgra.fFormat, under.fBytes.data(),
                                          under.fRowBytes, under.fFormat, p->fBytes.data(), p->fRowBytes, p->fFormat, w,
                                          h, o, OX_BlendMode_Multiply, 3, true),
                0);
    EXPECT_NE(m1.fBytes, m15.fBytes);
  }
  // Rows wider than the stack scratch: the same bytes as narrow calls over the same pixels.
  for (int wide : {16384, 16385}) {
    const Picture s = RandomPicture(wide, 2, rng).To(OX_PixelFormat_BGRA_4444_8u);
    const Picture b = RandomPicture(wide, 2, rng).To(OX_PixelFormat_VUYA_4444_8u);
    Picture d(OX_PixelFormat_BGRA_4444_32f, wide, 2), pieces(d);
    ASSERT_EQ(Composite(s, b, d, 0.6f), 0);
    for (int x = 0; x < wide; x += 1000) {
      const int n = std::min(1000, wide - x);
      ASSERT_EQ(OX_Composite(s.fBytes.data() + 4 * x, s.fRowBytes, s.fFormat, b.fBytes.data() + 4 * x, b.fRowBytes,
                             b.fFormat, pieces.fBytes.data() + 16 * x, pieces.fRowBytes, pieces.fFormat, n, 2, 0.6f, 3, true),
                0);
    }
    EXPECT_EQ(d.fBytes, pieces.fBytes) << wide;
  }
}

// Dissolve on 64 rows runs on the calling thread from the generator seeded with 1.
TEST(Composite, DissolveFollowsTheSeededGenerator) {
  const int w = 33, h = 64;
  Picture s(OX_PixelFormat_BGRA_4444_32f, w, h), b(s), d(s);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const float sp[4] = {1, 1, 1, 0.5f}, bp[4] = {0, 0, 0, 1};
      std::memcpy(const_cast<float*>(s.Pixel(x, y)), sp, 16);
      std::memcpy(const_cast<float*>(b.Pixel(x, y)), bp, 16);
    }
  ASSERT_EQ(OX_CompositeWithBlendMode(s.fBytes.data(), s.fRowBytes, s.fFormat, b.fBytes.data(), b.fRowBytes, b.fFormat,
                                      d.fBytes.data(), d.fRowBytes, d.fFormat, w, h, 1.0f, OX_BlendMode_Dissolve, 3, true),
            0);
  // The C library generator of the platform: x = x * 214013 + 2531011, results (x >> 16) & 32767.
  uint32_t x = 1;
  for (int i = 0; i < w * h; ++i) {
    x = x * 214013u + 2531011u;
    const int r = int((x >> 16) & 32767);
    ASSERT_EQ(d.Pixel(i % w, i / w)[3], r <= int(0.5f * 32767.0f) ? 0.5f : 1.0f) << i;
  }
}

}  // namespace
