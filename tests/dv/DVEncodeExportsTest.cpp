// The compress exports, the encode road and the drivers: argument checks and their codes, the
// channel offset of 720p frames, the encode road's chooser, the same bytes on several threads,
// and our own decoder on our frames beside libavcodec's decode of them.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

#include "Ombrix.h"
#include "conversion/EncodeRoad.h"
#include "dv/DV100Compressor.h"
#include "dv/DVDecoder.h"
#include "dv/DVEncodeTestSupport.h"
#include "dv/DVFrame.h"
#include "dv/DVPeer.h"
#include "dv/SegmentCompressor.h"

namespace ombrix_test {
namespace {

constexpr uint8_t kFill = 0x5A;

struct Picture {
  int width, height;
  OX_PixelFormat format;
  std::vector<uint8_t> bytes;
  int32_t rowBytes;
};

Picture YUYVPicture(int width, int height, OX_PixelFormat format = OX_PixelFormat_YUYV_422_8u, int kind = 1) {
  const Planes p = MakeTestPicture422(kind, width, height, 11);
  return {width, height, format, PackYUYV(p), width * 2};
}

TEST(DVEncodeExports, ArgumentChecksGiveTheirCodesAndLeaveTheFrame) {
  const Picture sd = YUYVPicture(720, 480);
  const Picture pal = YUYVPicture(720, 576);
  const Picture hd720 = YUYVPicture(960, 720, OX_PixelFormat_YUYV_422_8u_709);
  const Picture small = YUYVPicture(704, 480);
  enum Call { kDV100, kDVCPRO, kDV50, kConvert };
  struct Case {
    const char* name;
    Call call;
    const Picture* picture;
    OX_PixelFormat destination;
    int32_t destinationBytes;
    OX_Result expected;
  };
  const Case cases[] = {
      {"DV100 at 720 wide", kDV100, &sd, OX_PixelFormat_NTSC_DV100_720p, 240000, OX_ErrBadDVInputSize},
      {"DV100 short buffer", kDV100, &hd720, OX_PixelFormat_NTSC_DV100_720p, 239999, OX_ErrBadDVInputSize},
      {"DV100 into DV50", kDV100, &sd, OX_PixelFormat_NTSCDV50, 240000, OX_ErrBadDestFormat},
      {"DV100 into DV25", kDV100, &sd, OX_PixelFormat_NTSCDV25, 120000, OX_ErrBadDestFormat},
      {"DV100 into a raw format", kDV100, &sd, OX_PixelFormat_BGRA_4444_8u, 120000, OX_ErrUnsupported},
      {"DVCPRO at 704 wide", kDVCPRO, &small, OX_PixelFormat_NTSCDV25, 120000, OX_ErrSizeMismatch},
      {"DVCPRO into DV50", kDVCPRO, &sd, OX_PixelFormat_NTSCDV50, 240000, OX_ErrBadSourceFormat},
      {"DVCPRO into a raw format", kDVCPRO, &sd, OX_PixelFormat_UYVY_422_8u, 120000, OX_ErrUnsupported},
      {"DVCPRO with a long buffer", kDVCPRO, &pal, OX_PixelFormat_PALDV25, 144001, OX_ErrDVCompressorFailed},
      {"DV50 at 704 wide", kDV50, &small, OX_PixelFormat_NTSCDV50, 240000, OX_ErrBadDVInputSize},
      {"DV50 NTSC size into PAL", kDV50, &sd, OX_PixelFormat_PALDV50, 288000, OX_ErrBadDVInputSize},
      {"DV50 into DV25", kDV50, &sd, OX_PixelFormat_NTSCDV25, 240000, OX_ErrBadDestFormat},
      {"Convert to DV50 at 704", kConvert, &small, OX_PixelFormat_NTSCDV50, 240000, OX_ErrBadDVInputSize},
      {"Convert to DV25 at 704", kConvert, &small, OX_PixelFormat_NTSCDV25, 120000, OX_ErrSizeMismatch},
      {"Convert to DV100 from SD", kConvert, &sd, OX_PixelFormat_NTSC_DV100_1080i, 480000, OX_ErrBadDVInputSize},
      {"Convert to a planar container", kConvert, &sd, OX_PixelFormat_YUV_420_MPEG2_FRAME, 0, OX_ErrUnsupported},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<uint8_t> frame(600000, kFill);
    const Picture& p = *c.picture;
    OX_Result r = 0;
    switch (c.call) {
      case kDV100:
        r = OX_CompressDV100720pWithChannelOffset(p.bytes.data(), p.rowBytes, p.format, p.width, p.height,
                                                  frame.data(), c.destinationBytes, 0, c.destination, 4);
        break;
      case kDVCPRO:
        r = OX_CompressDVCPROPAL25(p.bytes.data(), p.rowBytes, p.format, p.width, p.height, frame.data(),
                                   c.destinationBytes, c.destination, 4);
        break;
      case kDV50:
        r = OX::CompressDV50Frame(p.bytes.data(), p.rowBytes, frame.data(), c.destinationBytes, c.destination,
                                  p.width, p.height);
        break;
      case kConvert:
        r = OX_Convert(p.bytes.data(), p.rowBytes, p.format, frame.data(), c.destinationBytes, c.destination,
                       p.width, p.height, 4);
        break;
    }
    EXPECT_EQ(r, c.expected);
    // A failed check writes nothing (the long-buffer case fails after the encoder ran).
    if (c.expected != OX_ErrDVCompressorFailed)
      EXPECT_EQ(std::count(frame.begin(), frame.end(), kFill), ptrdiff_t(frame.size()));
  }
  // An encoder source the handle does not take.
  std::vector<uint8_t> frame(120000);
  std::vector<float> floats(720 * 480 * 4, 0.5f);
  EXPECT_EQ(OX::InvokeDVEncoderLibrary(floats.data(), 720 * 16, OX_PixelFormat_BGRA_4444_32f, 720, 480,
                                       frame.data(), 120000, OX_PixelFormat_NTSCDV25, false, 4),
            OX_ErrBadDestFormat);
}

TEST(DVEncodeExports, EncodeSourceChooser) {
  struct Case {
    OX_PixelFormat source, destination, expected;
    OX_Result result;
  };
  const Case cases[] = {
      {OX_PixelFormat_ARGB_4444_32f, OX_PixelFormat_NTSCDV25, OX_PixelFormat_BGRA_4444_8u, 0},
      {OX_PixelFormat_BGRX_4444_8u, OX_PixelFormat_PALDV25, OX_PixelFormat_BGRA_4444_8u, 0},
      {OX_PixelFormat_VUYP_4444_32f, OX_PixelFormat_PALDV25, OX_PixelFormat_VUYA_4444_8u, 0},
      {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_NTSCDV25, OX_PixelFormat_UYVY_422_8u, 0},
      {OX_PixelFormat_YUYV_422_32f, OX_PixelFormat_NTSCDV25, OX_PixelFormat_YUYV_422_8u, 0},
      {OX_PixelFormat_V210_422_10u, OX_PixelFormat_NTSCDV25, OX_PixelFormat_UYVY_422_8u, 0},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_PALDV50, OX_PixelFormat_YUYV_422_8u, 0},
      {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_PAL_DV100_720p, OX_PixelFormat_YUYV_422_8u_709, 0},
      {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_YUYV_422_8u_709, 0},
      {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_YUV_420_MPEG2_FRAME, OX_PixelFormat_UYVY_422_8u, 0},
      {OX_PixelFormat_NTSCDV25, OX_PixelFormat_YUV_420_MPEG4_FIELD_709, OX_PixelFormat_VUYX_4444_8u, 0},
      {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_YUV_420_MPEG2_FRAME_FullRange, OX_PixelFormat_BGRX_4444_8u, 0},
      {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_BGRA_4444_8u, 0x1234, OX_ErrUnsupported},
      {OX_PixelFormat_UYVY_422_8u, 0x0D000821, 0x1234, OX_ErrUnsupported},
  };
  for (const Case& c : cases) {
    OX_PixelFormat out = 0x1234;
    EXPECT_EQ(OX_ChooseEncodeSource(c.source, c.destination, 4, &out), c.result) << std::hex << c.destination;
    EXPECT_EQ(out, c.expected) << std::hex << c.source << " to " << c.destination;
  }
}

std::vector<uint8_t> Encode720p(const Picture& p, OX_PixelFormat format, int32_t offset) {
  const int32_t bytes = OX_PixelFormatSize(format, p.width, p.height);
  std::vector<uint8_t> frame(static_cast<size_t>(bytes));
  EXPECT_EQ(OX_CompressDV100720pWithChannelOffset(p.bytes.data(), p.rowBytes, p.format, p.width, p.height,
                                                  frame.data(), bytes, offset, format, 4),
            OX_Success);
  return frame;
}

TEST(DVEncodeExports, ChannelOffsetOnlyTwoMovesA720pPicture) {
  const Picture hd720 = YUYVPicture(960, 720, OX_PixelFormat_YUYV_422_8u_709);
  for (OX_PixelFormat format : {OX_PixelFormat_NTSC_DV100_720p, OX_PixelFormat_PAL_DV100_720p}) {
    const std::vector<uint8_t> zero = Encode720p(hd720, format, 0);
    EXPECT_EQ(Encode720p(hd720, format, 1), zero);
    EXPECT_EQ(Encode720p(hd720, format, -7), zero);
    const std::vector<uint8_t> two = Encode720p(hd720, format, 2);
    EXPECT_NE(two, zero);
    // FSP 1 marks channels 0-1, FSP 0 channels 2-3; our decoder reads it back to the same picture.
    EXPECT_EQ(OX::dv::ChannelOffsetOf720p(zero.data()), 0);
    EXPECT_EQ(OX::dv::ChannelOffsetOf720p(two.data()), 2);
    std::vector<uint8_t> a(960 * 2 * 720), b(960 * 2 * 720);
    ASSERT_EQ(OX::dv::DecodeDVFrame(zero.data(), 0, format, 960, 720, 0, a.data(), 1920,
                                    OX_PixelFormat_YUYV_422_8u_709, 960, 720, 4),
              OX_Success);
    ASSERT_EQ(OX::dv::DecodeDVFrame(two.data(), 0, format, 960, 720, 0, b.data(), 1920,
                                    OX_PixelFormat_YUYV_422_8u_709, 960, 720, 4),
              OX_Success);
    EXPECT_EQ(a, b);
  }
  // 1080 frames ignore the offset.
  const Picture hd1080 = YUYVPicture(1280, 1080, OX_PixelFormat_YUYV_422_8u_709);
  EXPECT_EQ(Encode720p(hd1080, OX_PixelFormat_NTSC_DV100_1080i, 2),
            Encode720p(hd1080, OX_PixelFormat_NTSC_DV100_1080i, 0));
}

TEST(DVEncodeExports, BlackDV100PictureSitsOnTheFirstLadderRow) {
  for (OX_PixelFormat format : {OX_PixelFormat_PAL_DV100_1080i, OX_PixelFormat_NTSC_DV100_720p}) {
    const OX::dv::DVFormatInfo& info = *OX::dv::FindDVFormat(format);
    std::vector<uint8_t> black(size_t(info.fWidth) * 2 * info.fHeight);
    for (size_t i = 0; i < black.size(); i += 2) {
      black[i] = 16;
      black[i + 1] = 128;
    }
    std::vector<uint8_t> frame(info.fFrameBytes);
    ASSERT_EQ(OX_CompressDV100720pWithChannelOffset(black.data(), info.fWidth * 2, OX_PixelFormat_YUYV_422_8u_709,
                                                    info.fWidth, info.fHeight, frame.data(), int32_t(frame.size()),
                                                    0, format, 4),
              OX_Success);
    // Every video block carries QNO 1 (row 0, step 1) and class 0.
    for (int s = 0; s < int(frame.size() / 12000); ++s)
      for (int k = 0; k < 27; ++k)
        for (int m = 0; m < 5; ++m) {
          const uint8_t* block = &frame[OX::dv::SegmentOffset(s, k) + 80 * m];
          ASSERT_EQ(block[3], 1) << s << " " << k;
          ASSERT_EQ((block[5] >> 4) & 3, 0);
        }
  }
}

struct ThreadCase {
  const char* name;
  OX_PixelFormat format, source;
  int width, height;
  bool dvcpro;
};

std::vector<uint8_t> EncodeForThreads(const ThreadCase& c, const std::vector<uint8_t>& picture) {
  const int32_t bytes = OX_PixelFormatSize(c.format, c.width, c.height);
  std::vector<uint8_t> frame(static_cast<size_t>(bytes));
  const OX_Result r = c.dvcpro ? OX_CompressDVCPROPAL25(picture.data(), c.width * 2, c.source, c.width, c.height,
                                                        frame.data(), bytes, c.format, 4)
                               : OX_Convert(picture.data(), c.width * 2, c.source, frame.data(), bytes, c.format,
                                            c.width, c.height, 4);
  EXPECT_EQ(r, OX_Success) << c.name;
  return frame;
}

TEST(DVEncodeExports, SeveralThreadsWriteTheSameBytesAsOne) {
  const ThreadCase cases[] = {
      {"NTSC DV25", OX_PixelFormat_NTSCDV25, OX_PixelFormat_UYVY_422_8u, 720, 480, false},
      {"PAL DVCPRO half size", OX_PixelFormat_PALDV25, OX_PixelFormat_YUYV_422_8u, 360, 288, true},
      {"PAL DV50", OX_PixelFormat_PALDV50, OX_PixelFormat_YUYV_422_8u, 720, 576, false},
      {"DV100 1080i50", OX_PixelFormat_PAL_DV100_1080i, OX_PixelFormat_YUYV_422_8u_709, 1440, 1080, false},
  };
  for (const ThreadCase& c : cases) {
    SCOPED_TRACE(c.name);
    const Planes p = MakeTestPicture422(3, c.width, c.height, 5);
    const std::vector<uint8_t> picture = c.source == OX_PixelFormat_UYVY_422_8u ? PackUYVY(p) : PackYUYV(p);
    const std::vector<uint8_t> alone = EncodeForThreads(c, picture);
    std::vector<std::vector<uint8_t>> results(4);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
      threads.emplace_back([&, t] {
        for (int repeat = 0; repeat < 2; ++repeat) results[t] = EncodeForThreads(c, picture);
      });
    for (std::thread& t : threads) t.join();
    for (const std::vector<uint8_t>& r : results) EXPECT_TRUE(r == alone);
  }
}

// Our decoder on our frames, beside libavcodec's decode of the same frames, in one 4:2:2 layout:
// the bounds of the decoder's own comparison (luma 45 dB, chroma 42 dB).
TEST(DVEncodeExports, OurDecoderReadsOurFramesAsLibavcodecDoes) {
  if (!dvtest::PeerAvailable()) GTEST_SKIP() << "libavcodec's DV codec is not available";
  struct Case {
    const char* name;
    OX_PixelFormat format;
    int width, height;
    bool dvcpro;
    dvtest::Sampling sampling;
    OX_PixelFormat decodeTo;
  };
  const Case cases[] = {
      {"NTSC DV25", OX_PixelFormat_NTSCDV25, 720, 480, false, dvtest::Sampling::k411, OX_PixelFormat_UYVY_422_8u},
      {"PAL DV25", OX_PixelFormat_PALDV25, 720, 576, false, dvtest::Sampling::k420, OX_PixelFormat_UYVY_422_8u},
      {"PAL DVCPRO", OX_PixelFormat_PALDV25, 720, 576, true, dvtest::Sampling::k411, OX_PixelFormat_UYVY_422_8u},
      {"NTSC DV50", OX_PixelFormat_NTSCDV50, 720, 480, false, dvtest::Sampling::k422, OX_PixelFormat_YUYV_422_8u},
      {"DV100 720p50", OX_PixelFormat_PAL_DV100_720p, 960, 720, false, dvtest::Sampling::k422,
       OX_PixelFormat_YUYV_422_8u_709},
      {"DV100 1080i60", OX_PixelFormat_NTSC_DV100_1080i, 1280, 1080, false, dvtest::Sampling::k422,
       OX_PixelFormat_YUYV_422_8u_709},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Planes p = MakeTestPicture422(3, c.width, c.height, 21);
    const std::vector<uint8_t> picture = PackYUYV(p);
    const OX_PixelFormat source = c.width > 720 ? OX_PixelFormat_YUYV_422_8u_709 : OX_PixelFormat_YUYV_422_8u;
    const int32_t bytes = OX_PixelFormatSize(c.format, c.width, c.height);
    std::vector<uint8_t> frame(static_cast<size_t>(bytes));
    ASSERT_EQ(c.dvcpro ? OX_CompressDVCPROPAL25(picture.data(), c.width * 2, source, c.width, c.height, frame.data(),
                                                bytes, c.format, 4)
                       : OX_Convert(picture.data(), c.width * 2, source, frame.data(), bytes, c.format, c.width,
                                    c.height, 4),
              OX_Success);
    std::vector<uint8_t> ours(size_t(c.width) * 2 * c.height);
    ASSERT_EQ(OX::dv::DecodeDVFrame(frame.data(), 0, c.format, c.width, c.height, 0, ours.data(), c.width * 2,
                                    c.decodeTo, c.width, c.height, 4),
              OX_Success);
    dvtest::Planes peer;
    dvtest::Sampling sampling;
    ASSERT_TRUE(dvtest::PeerDecode(frame, &peer, &sampling));
    EXPECT_EQ(sampling, c.sampling);
    const dvtest::Planes theirs = dvtest::To422(peer, sampling);
    const dvtest::Planes mine =
        dvtest::FromPacked422(ours.data(), c.width * 2, c.width, c.height, (c.decodeTo & 0x1000) != 0);
    EXPECT_GE(dvtest::PSNR(mine.y, theirs.y), 45.0);
    EXPECT_GE(dvtest::PSNR(mine.u, theirs.u), 42.0);
    EXPECT_GE(dvtest::PSNR(mine.v, theirs.v), 42.0);
  }
}

}  // namespace
}  // namespace ombrix_test
