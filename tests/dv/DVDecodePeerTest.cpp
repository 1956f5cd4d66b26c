// Our decode of frames from libavcodec's DV encoder against libavcodec's own decode of the same
// frames, brought to the same 4:2:2 layout: luma at least 45 dB, chroma at least 42 dB.
#include <gtest/gtest.h>

#include <cstdio>

#include "dv/DVDecoder.h"
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

TEST(DVDecodePeer, FullDecodeAgreesWithLibavcodec) {
  if (!PeerAvailable()) GTEST_SKIP() << "libavcodec's DV codec is not available";
  for (const PeerFormat& f : PeerFormats()) {
    for (int seed = 0; seed < 2; ++seed) {
      std::string why;
      const std::vector<uint8_t> frame = PeerEncode(f, MakePicture(f.width, f.height, f.sampling, seed), &why);
      if (frame.empty()) {
        std::printf("  %-18s not produced by the peer encoder (%s)\n", f.name, why.c_str());
        continue;
      }
      ASSERT_EQ(int32_t(frame.size()), OX_PixelFormatSize(f.format, 0, 0)) << f.name;
      Planes peer;
      Sampling sampling;
      ASSERT_TRUE(PeerDecode(frame, &peer, &sampling)) << f.name;
      const Planes theirs = To422(peer, sampling);
      const Planes ours = DecodeOurs(f, frame);
      const double y = PSNR(ours.y, theirs.y), u = PSNR(ours.u, theirs.u), v = PSNR(ours.v, theirs.v);
      std::printf("  %-18s seed %d: luma %.2f dB, chroma %.2f / %.2f dB\n", f.name, seed, y, u, v);
      EXPECT_GE(y, 45.0) << f.name;
      EXPECT_GE(u, 42.0) << f.name;
      EXPECT_GE(v, 42.0) << f.name;
    }
  }
}

}  // namespace
