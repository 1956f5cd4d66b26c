// Our decode of frames from libavcodec's DV encoder against libavcodec's own decode of the same
// frames, brought to the same 4:2:2 layout: luma at least 45 dB, chroma at least 42 dB.
#include <gtest/gtest.h>

#include <cstdio>

#include "dv/DVDecoder.h"
#include "dv/DVFrame.h"
#include "dv/DVPeer.h"
#include "frame/PixelFormat.h"

namespace {

using namespace dvtest;

// Our full-size decode of `frame` in the format's own 4:2:2 layout.
Planes DecodeOurs(const PeerFormat& f, const std::vector<uint8_t>& frame) {
  OX_PixelFormat target = OX_PixelFormat_UYVY_422_8u;
  if (f.format == OX_PixelFormat_NTSCDV50 || f.format == OX_PixelFormat_PALDV50) target = OX_PixelFormat_YUYV_422_8u;
  if (f.width > 720) target = OX_PixelFormat_YUYV_422_8u_709;
  const int rowBytes = f.width * 2;
  std::vector<uint8_t> out(size_t(rowBytes) * f.height, 0);
  const OX_Result r = OX::dv::DecodeDVFrame(frame.data(), 0, f.format, f.width, f.height, 0, out.data(), rowBytes,
                                            target, f.width, f.height, 4);
  EXPECT_EQ(r, OX_Success) << f.name;
  return FromPacked422(out.data(), rowBytes, f.width, f.height, (target & OX::kOrderBit) != 0);
}

// Blocks of the frame coded with the 2-4-8 DCT (the mode bit of each block's second byte); for
// DV100, macroblocks coded by field (the mode bit of their first block).
int CountFieldCoding(const PeerFormat& f, const std::vector<uint8_t>& frame) {
  static const std::vector<int> kSD = {4, 18, 32, 46, 60, 70}, kHD = {4};
  int count = 0;
  for (size_t s = 0; s < frame.size() / 12000; ++s)
    for (int k = 0; k < 27; ++k)
      for (int m = 0; m < 5; ++m)
        for (int b : f.width > 720 ? kHD : kSD)
          count += (frame[OX::dv::SegmentOffset(int(s), k) + m * 80 + b + 1] >> 6) & 1;
  return count;
}

TEST(DVDecodePeer, FullDecodeAgreesWithLibavcodec) {
  if (!PeerAvailable()) GTEST_SKIP() << "libavcodec's DV codec is not available";
  for (const PeerFormat& f : PeerFormats()) {
    for (int seed = 0; seed < 3; ++seed) {
      const bool interlaced = seed == 2;
      const std::vector<uint8_t>& frame = PeerFrame(f, seed);
      if (frame.empty()) {
        std::printf("  %-18s not produced by the peer encoder\n", f.name);
        continue;
      }
      ASSERT_EQ(int32_t(frame.size()), OX_PixelFormatSize(f.format, 0, 0)) << f.name;
      Planes peer;
      Sampling sampling;
      ASSERT_TRUE(PeerDecode(frame, &peer, &sampling)) << f.name;
      const Planes theirs = To422(peer, sampling);
      const Planes ours = DecodeOurs(f, frame);
      const double y = PSNR(ours.y, theirs.y), u = PSNR(ours.u, theirs.u), v = PSNR(ours.v, theirs.v);
      const int fieldCoding = CountFieldCoding(f, frame);
      std::printf("  %-18s seed %d: luma %.2f dB, chroma %.2f / %.2f dB (%d coded by field)\n", f.name, seed, y,
                  u, v, fieldCoding);
      // The field-shifted picture must exercise the 2-4-8 transform of the six-block formats
      // and the field-coded macroblocks of 1080 lines.
      if (interlaced && f.height != 720) EXPECT_GT(fieldCoding, 100) << f.name;
      EXPECT_GE(y, 45.0) << f.name;
      EXPECT_GE(u, 42.0) << f.name;
      EXPECT_GE(v, 42.0) << f.name;
    }
  }
}

}  // namespace
