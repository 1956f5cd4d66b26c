// The decode road of OX_Convert for DV sources and its chooser, OX_ChooseDecodeTarget.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "conversion/DecodeTarget.h"
#include "dv/DVPeer.h"
#include "frame/PixelFormat.h"

namespace {

using namespace dvtest;

struct Choice {
  OX_PixelFormat source;
  OX_PixelFormat destination;
  int w, h, quality;
  OX_PixelFormat format;
  int outW, outH;
};

TEST(DVDecodeRoad, ChooseDecodeTargetForDV) {
  const OX_PixelFormat N25 = OX_PixelFormat_NTSCDV25, P25 = OX_PixelFormat_PALDV25;
  const OX_PixelFormat BGRA = OX_PixelFormat_BGRA_4444_8u, UYVY = OX_PixelFormat_UYVY_422_8u;
  const Choice rows[] = {
      // DV25 sizes by quality and destination size.
      {N25, BGRA, 90, 60, 1, BGRA, 90, 60},
      {N25, BGRA, 91, 60, 1, BGRA, 180, 120},
      {N25, BGRA, 100, 100, 1, BGRA, 180, 120},
      {N25, BGRA, 100, 100, 4, BGRA, 720, 240},  // at quality 3 and above a short destination takes one field
      {N25, BGRA, 180, 120, 2, BGRA, 180, 120},
      {N25, BGRA, 359, 239, 2, BGRA, 360, 240},
      {N25, BGRA, 360, 240, 2, BGRA, 720, 240},
      {N25, BGRA, 720, 240, 5, BGRA, 720, 240},
      {N25, BGRA, 720, 241, 5, BGRA, 720, 480},
      {P25, BGRA, 90, 72, 1, BGRA, 90, 72},
      {P25, BGRA, 90, 73, 1, BGRA, 180, 144},
      {P25, BGRA, 300, 200, 1, BGRA, 360, 288},
      {P25, BGRA, 1920, 1080, 1, BGRA, 720, 576},
      // DV25 formats.
      {N25, OX_PixelFormat_VUYX_4444_8u, 720, 480, 4, OX_PixelFormat_VUYX_4444_8u, 720, 480},
      {N25, OX_PixelFormat_BGRP_4444_8u, 720, 480, 4, OX_PixelFormat_BGRP_4444_8u, 720, 480},
      {N25, OX_PixelFormat_ARGB_4444_8u, 720, 480, 4, OX_PixelFormat_BGRX_4444_8u, 720, 480},
      {N25, OX_PixelFormat_BGRA_4444_15u, 720, 480, 4, OX_PixelFormat_BGRX_4444_8u, 720, 480},
      {N25, OX_PixelFormat_BGRA_4444_32f, 720, 480, 4, OX_PixelFormat_VUYX_4444_8u, 720, 480},
      {N25, OX_PixelFormat_VUYA_4444_8u_709, 720, 480, 4, OX_PixelFormat_VUYX_4444_8u, 720, 480},
      {N25, OX_PixelFormat_VUYA_4444_32f, 720, 480, 4, OX_PixelFormat_VUYX_4444_8u, 720, 480},
      {N25, OX_PixelFormat_YUYV_422_8u, 720, 480, 4, UYVY, 720, 480},
      {N25, OX_PixelFormat_V210_422_10u, 720, 480, 4, UYVY, 720, 480},
      {N25, OX_PixelFormat_RGB_444_10u, 720, 480, 4, UYVY, 720, 480},
      // DV50 and DV100: native, one field, low resolution.
      {OX_PixelFormat_NTSCDV50, BGRA, 720, 480, 4, OX_PixelFormat_YUYV_422_8u, 720, 480},
      {OX_PixelFormat_NTSCDV50, BGRA, 720, 240, 4, OX_PixelFormat_YUYV_422_8u, 720, 240},
      {OX_PixelFormat_PALDV50, BGRA, 360, 288, 4, OX_PixelFormat_VUYA_4444_8u, 360, 288},
      {OX_PixelFormat_PALDV50, BGRA, 500, 500, 2, OX_PixelFormat_VUYA_4444_8u, 360, 288},
      {OX_PixelFormat_PALDV50, BGRA, 500, 500, 3, OX_PixelFormat_YUYV_422_8u, 720, 576},
      {OX_PixelFormat_PALDV50, BGRA, 720, 500, 2, OX_PixelFormat_YUYV_422_8u, 720, 576},
      {OX_PixelFormat_NTSC_DV100_720p, BGRA, 960, 360, 4, OX_PixelFormat_YUYV_422_8u_709, 960, 360},
      {OX_PixelFormat_PAL_DV100_720p, BGRA, 480, 360, 4, OX_PixelFormat_VUYA_4444_8u_709, 480, 360},
      {OX_PixelFormat_NTSC_DV100_1080i, BGRA, 1280, 1080, 1, OX_PixelFormat_YUYV_422_8u_709, 1280, 1080},
      {OX_PixelFormat_NTSC_DV100_1080i, BGRA, 1279, 1079, 1, OX_PixelFormat_VUYA_4444_8u_709, 640, 540},
      {OX_PixelFormat_PAL_DV100_1080i, BGRA, 1920, 1080, 1, OX_PixelFormat_YUYV_422_8u_709, 1440, 1080},
      {OX_PixelFormat_PAL_DV100_1080i, BGRA, 1440, 540, 1, OX_PixelFormat_YUYV_422_8u_709, 1440, 540},
  };
  for (const Choice& r : rows) {
    OX_PixelFormat format = 0;
    int32_t w = 0, h = 0;
    EXPECT_EQ(OX_ChooseDecodeTarget(r.source, 0, 0, r.destination, r.w, r.h, r.quality, &format, &w, &h), 0);
    EXPECT_EQ(format, r.format) << std::hex << r.source << " " << r.destination << std::dec << " " << r.w << "x" << r.h;
    EXPECT_EQ(w, r.outW) << std::hex << r.source << std::dec << " " << r.w << "x" << r.h << " q" << r.quality;
    EXPECT_EQ(h, r.outH) << std::hex << r.source << std::dec << " " << r.w << "x" << r.h << " q" << r.quality;
  }
  OX_PixelFormat format = 7;
  int32_t w = 7, h = 7;
  EXPECT_EQ(OX_ChooseDecodeTarget(0x0D000821, 720, 480, BGRA, 720, 480, 4, &format, &w, &h), OX_ErrBadSourceFormat);
  EXPECT_EQ(OX_ChooseDecodeTarget(BGRA, 720, 480, UYVY, 720, 480, 4, &format, &w, &h), OX_ErrBadSourceFormat);
  EXPECT_EQ(format, 7u);
  EXPECT_EQ(w, 7);
}

TEST(DVDecodeRoad, ChooseDecodeTargetForPlanar) {
  const OX_PixelFormat F = OX_PixelFormat_YUV_420_MPEG2_FRAME;
  const OX_PixelFormat BGRA = OX_PixelFormat_BGRA_4444_8u;
  struct Row {
    OX_PixelFormat source, destination;
    int W, H, w, h, quality;
    OX_PixelFormat format;
    int outW, outH;
  };
  const Row rows[] = {
      {F, BGRA, 1440, 1080, 1920, 1080, 4, OX_PixelFormat_VUYX_4444_8u, 1920, 1080},  // 4/3 up, W % 96 == 0
      {F, BGRA, 1280, 720, 1920, 720, 4, OX_PixelFormat_VUYX_4444_8u, 1920, 720},     // 3/2 up
      {F, BGRA, 1280, 720, 1280, 360, 4, OX_PixelFormat_VUYX_4444_8u, 1280, 360},     // one field
      {F, BGRA, 1280, 720, 640, 360, 4, OX_PixelFormat_VUYX_4444_8u, 1280, 720},      // quality 3+
      {F, BGRA, 1280, 720, 640, 360, 1, OX_PixelFormat_VUYX_4444_8u, 640, 360},
      {F, BGRA, 1280, 720, 320, 180, 1, OX_PixelFormat_VUYX_4444_8u, 320, 180},
      {F, BGRA, 1280, 720, 300, 180, 1, OX_PixelFormat_VUYX_4444_8u, 640, 360},
      {F, BGRA, 1280, 720, 700, 200, 1, OX_PixelFormat_VUYX_4444_8u, 1280, 360},
      {OX_PixelFormat_YUV_420_MPEG2_FRAME_709, BGRA, 1280, 720, 1280, 720, 4, OX_PixelFormat_VUYX_4444_8u_709, 1280,
       720},
      {OX_PixelFormat_YUV_420_MPEG2_FRAME_709, OX_PixelFormat_VUYA_4444_8u, 1280, 720, 1280, 720, 4,
       OX_PixelFormat_VUYX_4444_8u, 1280, 720},
      {OX_PixelFormat_YUV_420_MPEG2_FRAME, OX_PixelFormat_UYVY_422_8u_709, 1280, 720, 1280, 720, 4,
       OX_PixelFormat_VUYX_4444_8u_709, 1280, 720},
      {OX_PixelFormat_YUV_420_MPEG4_FRAME_FullRange, BGRA, 1280, 720, 1280, 720, 4, OX_PixelFormat_BGRX_4444_8u,
       1280, 720},
  };
  for (const Row& r : rows) {
    OX_PixelFormat format = 0;
    int32_t w = 0, h = 0;
    EXPECT_EQ(OX_ChooseDecodeTarget(r.source, r.W, r.H, r.destination, r.w, r.h, r.quality, &format, &w, &h), 0);
    EXPECT_EQ(format, r.format) << r.w << "x" << r.h;
    EXPECT_EQ(w, r.outW) << r.W << "x" << r.H << " -> " << r.w << "x" << r.h << " q" << r.quality;
    EXPECT_EQ(h, r.outH) << r.W << "x" << r.H << " -> " << r.w << "x" << r.h << " q" << r.quality;
  }
}

TEST(DVDecodeRoad, ConvertGivesSizeMismatchForSizesTheDecoderCannotGive) {
  std::vector<uint8_t> frame(120000, 0);
  std::vector<uint8_t> out(720 * 480 * 4, 0x11);
  EXPECT_EQ(OX_Convert(frame.data(), 0, OX_PixelFormat_NTSCDV25, out.data(), 360 * 4, OX_PixelFormat_BGRA_4444_8u,
                       360, 240, 1),
            OX_ErrSizeMismatch);
  EXPECT_EQ(OX_Convert(frame.data(), 0, OX_PixelFormat_NTSCDV25, out.data(), 700 * 4, OX_PixelFormat_BGRA_4444_8u,
                       700, 480, 4),
            OX_ErrSizeMismatch);
  EXPECT_EQ(OX_Convert(frame.data(), 0, 0x0D000821, out.data(), 720 * 4, OX_PixelFormat_BGRA_4444_8u, 720, 480, 4),
            OX_ErrSizeMismatch);
  EXPECT_EQ(std::count(out.begin(), out.end(), 0x11), ptrdiff_t(out.size()));
  // Planar sources reach their chooser but not yet a decoder.
  EXPECT_EQ(OX_Convert(frame.data(), 0, OX_PixelFormat_YUV_420_MPEG2_FRAME, out.data(), 720 * 4,
                       OX_PixelFormat_BGRA_4444_8u, 720, 480, 4),
            OX_ErrUnsupported);
}

// RGB of the peer's decode, from its 4:2:2 planes by the studio-range formula of the format's
// colours, against our OX_Convert to BGRA_4444_8u.
TEST(DVDecodeRoad, ConvertToRGBAgreesWithThePeerPicture) {
  if (!PeerAvailable()) GTEST_SKIP();
  for (const PeerFormat& f : PeerFormats()) {
    const std::vector<uint8_t>& frame = PeerFrame(f, 1);
    if (frame.empty()) continue;
    Planes peer;
    Sampling sampling;
    ASSERT_TRUE(PeerDecode(frame, &peer, &sampling));
    const Planes p = To422(peer, sampling);
    const int rowBytes = f.width * 4;
    std::vector<uint8_t> out(size_t(rowBytes) * f.height, 0);
    ASSERT_EQ(OX_Convert(frame.data(), 0, f.format, out.data(), rowBytes, OX_PixelFormat_BGRA_4444_8u, f.width,
                         f.height, 4),
              OX_Success)
        << f.name;
    const bool is709 = f.width > 720;
    const double kr = is709 ? 0.2126 : 0.299, kb = is709 ? 0.0722 : 0.114, kg = 1 - kr - kb;
    std::vector<uint8_t> ours, theirs;
    for (int y = 0; y < f.height; ++y)
      for (int x = 0; x < f.width; ++x) {
        const double Y = (p.y[size_t(y) * f.width + x] - 16) * 255.0 / 219;
        const double U = (p.u[size_t(y) * p.chromaWidth + x / 2] - 128) * 255.0 / 224;
        const double V = (p.v[size_t(y) * p.chromaWidth + x / 2] - 128) * 255.0 / 224;
        const double r = Y + 2 * (1 - kr) * V, b = Y + 2 * (1 - kb) * U;
        const double g = (Y - kr * r - kb * b) / kg;
        const uint8_t* px = out.data() + size_t(f.height - 1 - y) * rowBytes + 4 * x;  // bottom-up
        for (double c : {b, g, r}) theirs.push_back(uint8_t(std::lround(std::min(255.0, std::max(0.0, c)))));
        ours.insert(ours.end(), px, px + 3);
      }
    const double psnr = PSNR(ours, theirs);
    std::printf("  %-18s BGRA: %.2f dB against the peer's picture\n", f.name, psnr);
    // The reference repeats chroma where the library's 4:2:2 to 4:4:4 step interpolates it.
    EXPECT_GE(psnr, 36.0) << f.name;
  }
}

}  // namespace
