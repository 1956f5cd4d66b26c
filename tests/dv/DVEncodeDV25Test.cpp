// The DV25 encoder behind the encoder handle: its four source codes, straight alpha composited
// over black, bottom-up sources, the half-size pictures and the draft quality, each read back
// through libavcodec.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "Ombrix.h"
#include "dv/DVEncodeTestSupport.h"
#include "dv/DVFrame.h"

namespace ombrix_test {
namespace {

std::vector<uint8_t> Encode(const std::vector<uint8_t>& picture, int32_t rowBytes, OX_PixelFormat source, int width,
                            int height, OX_PixelFormat format, int quality = 4) {
  std::vector<uint8_t> frame(size_t(OX_PixelFormatSize(format, 0, 0)));
  EXPECT_EQ(OX_Convert(picture.data(), rowBytes, source, frame.data(), int32_t(frame.size()), format, width, height,
                       quality),
            OX_Success);
  return frame;
}

double Mean(const std::vector<uint8_t>& plane, int width, int x0, int x1, int y0, int y1) {
  double sum = 0;
  for (int y = y0; y < y1; ++y)
    for (int x = x0; x < x1; ++x) sum += plane[size_t(y) * width + x];
  return sum / ((x1 - x0) * (y1 - y0));
}

TEST(DVEncodeDV25, PackedSourcesGiveTheSameFrameAndFourByFourSourcesTheSamePicture) {
  if (!PeerAvailable()) GTEST_SKIP() << "libavcodec's DV codec is not available";
  const Planes p = MakeTestPicture422(1, 720, 480, 3);
  const std::vector<uint8_t> yuyv = Encode(PackYUYV(p), 1440, OX_PixelFormat_YUYV_422_8u, 720, 480,
                                           OX_PixelFormat_NTSCDV25);
  EXPECT_EQ(Encode(PackUYVY(p), 1440, OX_PixelFormat_UYVY_422_8u, 720, 480, OX_PixelFormat_NTSCDV25), yuyv);
  // VUYA, bottom-up, with each chroma pair repeated: the [1 2 1] halving gives back the 4:2:2 chroma.
  std::vector<uint8_t> vuya(size_t(720) * 480 * 4);
  for (int y = 0; y < 480; ++y)
    for (int x = 0; x < 720; ++x) {
      uint8_t* q = &vuya[(size_t(479 - y) * 720 + x) * 4];
      q[0] = p.cr[size_t(y) * 360 + x / 2];
      q[1] = p.cb[size_t(y) * 360 + x / 2];
      q[2] = p.y[size_t(y) * 720 + x];
      q[3] = 255;
    }
  const std::vector<uint8_t> fromVUYA = Encode(vuya, 2880, OX_PixelFormat_VUYA_4444_8u, 720, 480,
                                               OX_PixelFormat_NTSCDV25);
  const PeerDecoded a = PeerDecode(yuyv.data(), yuyv.size()), b = PeerDecode(fromVUYA.data(), fromVUYA.size());
  ASSERT_TRUE(a.ok && b.ok);
  EXPECT_GT(PlanesPSNR(a.planes, b.planes), 40.0);
}

TEST(DVEncodeDV25, RGBSourcesAreStudioRange601OverBlackAndBottomUp) {
  if (!PeerAvailable()) GTEST_SKIP() << "libavcodec's DV codec is not available";
  struct Case {
    uint8_t b, g, r, a;
  };
  const Case cases[] = {{0, 0, 255, 255}, {255, 0, 0, 255}, {40, 200, 90, 255}, {0, 0, 255, 0}, {0, 0, 255, 128}};
  for (const Case& c : cases) {
    SCOPED_TRACE(int(c.a));
    // Bottom-up BGRA: the picture's top half has the colour, its bottom half is white.
    std::vector<uint8_t> bgra(size_t(720) * 576 * 4);
    for (int row = 0; row < 576; ++row)
      for (int x = 0; x < 720; ++x) {
        uint8_t* q = &bgra[(size_t(row) * 720 + x) * 4];
        const bool top = row >= 288;  // memory row 0 is the picture's bottom
        q[0] = top ? c.b : 255;
        q[1] = top ? c.g : 255;
        q[2] = top ? c.r : 255;
        q[3] = top ? c.a : 255;
      }
    const std::vector<uint8_t> frame = Encode(bgra, 2880, OX_PixelFormat_BGRA_4444_8u, 720, 576,
                                              OX_PixelFormat_PALDV25);
    const PeerDecoded d = PeerDecode(frame.data(), frame.size());
    ASSERT_TRUE(d.ok);
    const double a = c.a / 255.0, r = c.r * a / 255, g = c.g * a / 255, b = c.b * a / 255;
    const double y = 16 + 65.481 * r + 128.553 * g + 24.966 * b;
    const double cb = 128 - 37.797 * r - 74.203 * g + 112 * b;
    const double cr = 128 + 112 * r - 93.786 * g - 18.214 * b;
    EXPECT_NEAR(Mean(d.planes.y, 720, 100, 600, 40, 240), y, 1.5);
    EXPECT_NEAR(Mean(d.planes.cb, 360, 50, 300, 20, 120), cb, 1.5);
    EXPECT_NEAR(Mean(d.planes.cr, 360, 50, 300, 20, 120), cr, 1.5);
    EXPECT_NEAR(Mean(d.planes.y, 720, 100, 600, 340, 540), 235, 1.5);
  }
}

TEST(DVEncodeDV25, HalfSizePicturesAreDoubled) {
  if (!PeerAvailable()) GTEST_SKIP() << "libavcodec's DV codec is not available";
  for (OX_PixelFormat format : {OX_PixelFormat_NTSCDV25, OX_PixelFormat_PALDV25}) {
    const int height = format == OX_PixelFormat_NTSCDV25 ? 240 : 288;
    // A horizontal luma ramp: the full picture must carry it at twice the width.
    Planes p = MakeTestPicture422(0, 360, height, 1);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < 360; ++x) p.y[size_t(y) * 360 + x] = uint8_t(30 + x / 2);
    std::fill(p.cb.begin(), p.cb.end(), 128);
    std::fill(p.cr.begin(), p.cr.end(), 128);
    const std::vector<uint8_t> frame = Encode(PackYUYV(p), 720, OX_PixelFormat_YUYV_422_8u, 360, height, format);
    const PeerDecoded d = PeerDecode(frame.data(), frame.size());
    ASSERT_TRUE(d.ok);
    ASSERT_EQ(d.height, height * 2);
    for (int x = 40; x < 700; x += 60) EXPECT_NEAR(Mean(d.planes.y, 720, x, x + 2, 100, 300), 30 + x / 4.0, 2.0) << x;
  }
}

TEST(DVEncodeDV25, DraftQualityCodesEveryBlockWithThe88Transform) {
  if (!PeerAvailable()) GTEST_SKIP() << "libavcodec's DV codec is not available";
  const Planes p = MakeTestPicture422(2, 720, 480, 8);
  const Planes reference = To411(p);
  const std::vector<uint8_t> packed = PackYUYV(p);
  const std::vector<uint8_t> draft = Encode(packed, 1440, OX_PixelFormat_YUYV_422_8u, 720, 480,
                                            OX_PixelFormat_NTSCDV25, 1);
  const std::vector<uint8_t> full = Encode(packed, 1440, OX_PixelFormat_YUYV_422_8u, 720, 480,
                                           OX_PixelFormat_NTSCDV25, 4);
  int fieldBlocksDraft = 0, fieldBlocksFull = 0;
  static const int kOffsets[6] = {4, 18, 32, 46, 60, 70};
  for (int s = 0; s < 10; ++s)
    for (int k = 0; k < 27; ++k)
      for (int m = 0; m < 5; ++m)
        for (int b : kOffsets) {
          const size_t at = OX::dv::SegmentOffset(s, k) + 80 * m + b + 1;
          fieldBlocksDraft += (draft[at] >> 6) & 1;
          fieldBlocksFull += (full[at] >> 6) & 1;
        }
  EXPECT_EQ(fieldBlocksDraft, 0);
  EXPECT_GT(fieldBlocksFull, 0);
  const PeerDecoded a = PeerDecode(draft.data(), draft.size()), b = PeerDecode(full.data(), full.size());
  ASSERT_TRUE(a.ok && b.ok);
  EXPECT_GT(PlanesPSNR(a.planes, reference), 30.0);
  EXPECT_GE(PlanesPSNR(b.planes, reference), PlanesPSNR(a.planes, reference));
}

}  // namespace
}  // namespace ombrix_test
