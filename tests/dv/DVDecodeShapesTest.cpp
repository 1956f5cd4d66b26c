// Every decode shape against the full decode of the same frame reduced the same way: fields are
// the full picture's rows of one parity, DV50 and DV100 half sizes pick every second sample,
// DV25's reduced transforms track the box average of the full picture. Also the output kinds,
// the frame checks that give -14, and decoding on eight threads at once.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <algorithm>
#include <thread>

#include "dv/DVDecoder.h"
#include "dv/DVFrame.h"
#include "dv/DVPeer.h"
#include "frame/PixelFormat.h"

namespace {

using namespace dvtest;

// A decoded picture with pixel access in picture coordinates, whatever the buffer's origin.
struct Decoded {
  OX_Result result = 0;
  OX_PixelFormat format = 0;
  int width = 0, height = 0, rowBytes = 0;
  std::vector<uint8_t> data;
  const uint8_t* Row(int y) const {
    const int row = OX_IsOriginBottomLeft(format) ? height - 1 - y : y;
    return data.data() + size_t(row) * rowBytes;
  }
  // Y, U, V of pixel (x, y) for VUYA and packed 4:2:2 buffers.
  int Y(int x, int y) const {
    if (OX::SubsamplingOf(format) == OX::kSub444) return Row(y)[4 * x + 2];
    return Row(y)[2 * x + ((format & OX::kOrderBit) ? 0 : 1)];
  }
  int U(int x, int y) const {
    if (OX::SubsamplingOf(format) == OX::kSub444) return Row(y)[4 * x + 1];
    return Row(y)[4 * (x / 2) + ((format & OX::kOrderBit) ? 1 : 0)];
  }
  int V(int x, int y) const {
    if (OX::SubsamplingOf(format) == OX::kSub444) return Row(y)[4 * x + 0];
    return Row(y)[4 * (x / 2) + ((format & OX::kOrderBit) ? 3 : 2)];
  }
};

Decoded Decode(const PeerFormat& f, const std::vector<uint8_t>& frame, OX_PixelFormat format, int width, int height,
               int field, int quality, uint8_t fill = 0x5A) {
  Decoded d;
  d.format = format;
  d.width = width;
  d.height = height;
  d.rowBytes = OX::PaddedRowBytes(format, width);
  d.data.assign(size_t(d.rowBytes) * height, fill);
  d.result = OX::dv::DecodeDVFrame(frame.data(), 0, f.format, f.width, f.height, field, d.data.data(), d.rowBytes,
                                   format, width, height, quality);
  return d;
}

OX_PixelFormat Native(const PeerFormat& f) {
  if (f.width > 720) return OX_PixelFormat_YUYV_422_8u_709;
  return f.sampling == Sampling::k422 ? OX_PixelFormat_YUYV_422_8u : OX_PixelFormat_UYVY_422_8u;
}
OX_PixelFormat LowResolution(const PeerFormat& f) {
  return f.width > 720 ? OX_PixelFormat_VUYA_4444_8u_709 : OX_PixelFormat_VUYA_4444_8u;
}

// Bytes of a picture row that carry pixels.
bool SameRow(const Decoded& a, int ya, const Decoded& b, int yb) {
  return std::memcmp(a.Row(ya), b.Row(yb), size_t(OX::TightRowBytes(a.format, a.width))) == 0;
}

TEST(DVDecodeShapes, FieldsAreTheRowsOfOneParity) {
  if (!PeerAvailable()) GTEST_SKIP();
  for (const PeerFormat& f : PeerFormats()) {
    const std::vector<uint8_t>& frame = PeerFrame(f, 2);
    if (frame.empty()) continue;
    const Decoded full = Decode(f, frame, Native(f), f.width, f.height, 0, 4);
    ASSERT_EQ(full.result, 0) << f.name;
    for (int field : {1, 2}) {
      const Decoded half = Decode(f, frame, Native(f), f.width, f.height / 2, field, 4);
      ASSERT_EQ(half.result, 0) << f.name;
      int bad = 0;
      for (int y = 0; y < f.height / 2; ++y) bad += !SameRow(half, y, full, 2 * y + (field == 2));
      EXPECT_EQ(bad, 0) << f.name << " field " << field;
    }
  }
}

TEST(DVDecodeShapes, HalfSizePicksEverySecondSample) {
  if (!PeerAvailable()) GTEST_SKIP();
  for (const PeerFormat& f : PeerFormats()) {
    if (f.format == OX_PixelFormat_NTSCDV25 || f.format == OX_PixelFormat_PALDV25) continue;
    const std::vector<uint8_t>& frame = PeerFrame(f, 2);
    if (frame.empty()) continue;
    const Decoded full = Decode(f, frame, Native(f), f.width, f.height, 0, 4);
    const Decoded half = Decode(f, frame, LowResolution(f), f.width / 2, f.height / 2, 0, 1);
    ASSERT_EQ(half.result, 0) << f.name;
    int bad = 0;
    for (int y = 0; y < half.height; ++y)
      for (int x = 0; x < half.width; ++x) {
        bad += half.Y(x, y) != full.Y(2 * x, 2 * y);
        bad += half.U(x, y) != full.U(2 * x, 2 * y);
        bad += half.V(x, y) != full.V(2 * x, 2 * y);
        bad += half.Row(y)[4 * x + 3] != 255;
      }
    EXPECT_EQ(bad, 0) << f.name;
  }
}

// Mean of U over a w x h area of the full picture.
int MeanU(const Decoded& full, int x0, int y0, int w, int h) {
  int sum = 0;
  for (int j = 0; j < h; ++j)
    for (int i = 0; i < w; ++i) sum += full.U(x0 + i, y0 + j);
  return (sum + w * h / 2) / (w * h);
}

// PSNR of a reduced DV25 decode against the full decode's box average over factor x factor
// (luma) and, for chroma, over the same box or, at the eighth size, over the macroblock whose
// chroma DC the sample is.
double ReducedAgainstBoxAverage(const Decoded& reduced, const Decoded& full, int factor, bool is420, double* chroma) {
  std::vector<uint8_t> a, b, ca, cb;
  for (int y = 0; y < reduced.height; ++y)
    for (int x = 0; x < reduced.width; ++x) {
      int sum = 0;
      for (int j = 0; j < factor; ++j)
        for (int i = 0; i < factor; ++i) sum += full.Y(x * factor + i, y * factor + j);
      a.push_back(uint8_t(reduced.Y(x, y)));
      b.push_back(uint8_t((sum + factor * factor / 2) / (factor * factor)));
      ca.push_back(uint8_t(reduced.U(x, y)));
      const int px = x * factor, py = y * factor;
      if (factor < 8) {
        cb.push_back(uint8_t(MeanU(full, px, py, factor, factor)));
      } else if (is420 || px >= 704) {
        cb.push_back(uint8_t(MeanU(full, px & ~15, py & ~15, 16, 16)));
      } else {
        cb.push_back(uint8_t(MeanU(full, px & ~31, py, 32, 8)));
      }
    }
  *chroma = PSNR(ca, cb);
  return PSNR(a, b);
}

TEST(DVDecodeShapes, DV25ReducedSizesFollowTheFullPicture) {
  if (!PeerAvailable()) GTEST_SKIP();
  struct Row {
    int factor;
    double minLuma;
  };
  // The reduced transforms keep the lowest frequencies, which is close to the box average; the
  // eighth size is exactly the block means.
  const Row rows[] = {{2, 38.0}, {4, 45.0}, {8, 50.0}};
  for (const PeerFormat& f : PeerFormats()) {
    if (f.format != OX_PixelFormat_NTSCDV25 && f.format != OX_PixelFormat_PALDV25) continue;
    const std::vector<uint8_t>& frame = PeerFrame(f, 0);
    const Decoded full = Decode(f, frame, OX_PixelFormat_VUYA_4444_8u, 720, f.height, 0, 4);
    ASSERT_EQ(full.result, 0);
    for (const Row& r : rows) {
      const Decoded reduced = Decode(f, frame, OX_PixelFormat_VUYA_4444_8u, 720 / r.factor, f.height / r.factor, 0, 1);
      ASSERT_EQ(reduced.result, 0) << f.name << " " << r.factor;
      double chroma = 0;
      const double luma = ReducedAgainstBoxAverage(reduced, full, r.factor, f.sampling == Sampling::k420, &chroma);
      std::printf("  %-18s 1/%d: luma %.2f dB against the box average, chroma %.2f dB\n", f.name, r.factor, luma,
                  chroma);
      EXPECT_GE(luma, r.minLuma) << f.name << " 1/" << r.factor;
      EXPECT_GE(chroma, 30.0) << f.name << " 1/" << r.factor;
    }
  }
}

// The destination kinds of DV25 carry the same picture: VUYA against UYVY luma, BGRA against
// the studio-range formula applied to VUYA.
TEST(DVDecodeShapes, DV25OutputKindsAgree) {
  if (!PeerAvailable()) GTEST_SKIP();
  const PeerFormat& f = *FindPeerFormat(OX_PixelFormat_NTSCDV25, Sampling::k411);
  const std::vector<uint8_t>& frame = PeerFrame(f, 1);
  struct Size {
    int w, h;
  };
  for (Size s : {Size{720, 480}, Size{720, 240}, Size{360, 240}, Size{180, 120}, Size{90, 60}}) {
    const Decoded vuya = Decode(f, frame, OX_PixelFormat_VUYA_4444_8u, s.w, s.h, 0, 1);
    const Decoded vuyx = Decode(f, frame, OX_PixelFormat_VUYX_4444_8u, s.w, s.h, 0, 1);
    const Decoded uyvy = Decode(f, frame, OX_PixelFormat_UYVY_422_8u, s.w, s.h, 0, 1);
    const Decoded yuyv = Decode(f, frame, OX_PixelFormat_YUYV_422_8u, s.w, s.h, 0, 1);
    const Decoded bgra = Decode(f, frame, OX_PixelFormat_BGRA_4444_8u, s.w, s.h, 0, 1);
    ASSERT_EQ(vuya.result | vuyx.result | uyvy.result | yuyv.result | bgra.result, 0) << s.w;
    EXPECT_EQ(vuya.data, vuyx.data) << s.w;
    int badLuma = 0, badOrder = 0, badRGB = 0;
    for (int y = 0; y < s.h; ++y)
      for (int x = 0; x < s.w; ++x) {
        badLuma += vuya.Y(x, y) != uyvy.Y(x, y);
        badOrder += uyvy.Y(x, y) != yuyv.Y(x, y) || uyvy.U(x, y) != yuyv.U(x, y) || uyvy.V(x, y) != yuyv.V(x, y);
        const double Y = vuya.Y(x, y) - 16.0, U = vuya.U(x, y) - 128.0, V = vuya.V(x, y) - 128.0;
        const double rgb[3] = {1.164383 * Y + 2.017231 * U, 1.164383 * Y - 0.391762 * U - 0.812969 * V,
                               1.164383 * Y + 1.596027 * V};
        const uint8_t* px = bgra.Row(y) + 4 * x;
        for (int c = 0; c < 3; ++c) {
          const double expected = std::min(255.0, std::max(0.0, rgb[c]));
          badRGB += std::fabs(px[c] - expected) > 1.5;
        }
        badRGB += px[3] != 255;
      }
    EXPECT_EQ(badLuma, 0) << s.w;
    EXPECT_EQ(badOrder, 0) << s.w;
    EXPECT_EQ(badRGB, 0) << s.w;
  }
}

TEST(DVDecodeShapes, RejectedSizesAndFormats) {
  if (!PeerAvailable()) GTEST_SKIP();
  struct Row {
    OX_PixelFormat source, destination;
    int w, h;
    OX_Result expected;
  };
  const Row rows[] = {
      {OX_PixelFormat_NTSCDV25, OX_PixelFormat_UYVY_422_8u, 720, 479, OX_ErrSizeMismatch},
      {OX_PixelFormat_NTSCDV25, OX_PixelFormat_UYVY_422_8u, 360, 480, OX_ErrSizeMismatch},
      {OX_PixelFormat_NTSCDV25, OX_PixelFormat_V210_422_10u, 720, 480, OX_ErrBadDestFormat},
      {OX_PixelFormat_NTSCDV25, OX_PixelFormat_VUYA_4444_8u_709, 720, 480, OX_ErrBadDestFormat},
      {OX_PixelFormat_NTSCDV50, OX_PixelFormat_YUYV_422_8u, 720, 400, OX_ErrBadDVHeight},
      {OX_PixelFormat_NTSCDV50, OX_PixelFormat_UYVY_422_8u, 720, 480, OX_ErrBadDestFormat},
      {OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_YUYV_422_8u_709, 1280, 1000, OX_ErrBadDVHeight},
      {OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_YUYV_422_8u_709, 1440, 1080, OX_ErrBadDVWidth},
      {OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_VUYA_4444_8u_709, 600, 540, OX_ErrBadDVWidth},
      {OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_YUYV_422_8u, 1280, 1080, OX_ErrBadDestFormat},
      {0x0D000821, OX_PixelFormat_UYVY_422_8u, 720, 480, OX_ErrUnsupported},
  };
  std::vector<uint8_t> frame(576000, 0);
  for (const Row& r : rows) {
    std::vector<uint8_t> out(size_t(r.w) * r.h * 4 + 64, 0x77);
    const OX_Result result = OX::dv::DecodeDVFrame(frame.data(), 0, r.source, 0, 0, 0, out.data(), r.w * 4,
                                                   r.destination, r.w, r.h, 4);
    EXPECT_EQ(result, r.expected) << std::hex << r.source << " -> " << r.destination << std::dec << " " << r.w << "x"
                                  << r.h;
    EXPECT_EQ(std::count(out.begin(), out.end(), 0x77), ptrdiff_t(out.size()));
  }
}

TEST(DVDecodeShapes, MismatchedFramesGive14AndWriteNothing) {
  if (!PeerAvailable()) GTEST_SKIP();
  struct Row {
    OX_PixelFormat format;
    Sampling sampling;
    int byte;       // header byte to change
    uint8_t value;  // new value
  };
  const Row rows[] = {
      {OX_PixelFormat_NTSCDV25, Sampling::k411, 4, 0xFA},  // APT 2
      {OX_PixelFormat_NTSCDV25, Sampling::k411, 5, 0xF8},  // AP1 0 against AP2, AP3 1
      {OX_PixelFormat_PALDV25, Sampling::k420, 7, 0xF8 | 3},
      {OX_PixelFormat_NTSC_DV100_1080i, Sampling::k422, 3, 0xFF},  // DSF 1 in a 60 Hz format
      {OX_PixelFormat_PAL_DV100_1080i, Sampling::k422, 3, 0x7F},   // DSF 0 in a 50 Hz format
      {OX_PixelFormat_NTSC_DV100_720p, Sampling::k422, 3, 0xFF},
      {OX_PixelFormat_PAL_DV100_720p, Sampling::k422, 3, 0x7F},
  };
  for (const Row& r : rows) {
    const PeerFormat& f = *FindPeerFormat(r.format, r.sampling);
    std::vector<uint8_t> frame = PeerFrame(f, 0);
    ASSERT_FALSE(frame.empty()) << f.name;
    ASSERT_NE(frame[r.byte], r.value) << f.name;
    frame[r.byte] = r.value;
    for (OX_PixelFormat target : {Native(f), LowResolution(f)}) {
      const int w = target == Native(f) ? f.width : f.width / 2, h = target == Native(f) ? f.height : f.height / 2;
      const Decoded d = Decode(f, frame, target, w, h, 0, 4, 0xC3);
      EXPECT_EQ(d.result, OX_ErrDVFrameMismatch) << f.name;
      EXPECT_EQ(std::count(d.data.begin(), d.data.end(), 0xC3), ptrdiff_t(d.data.size())) << f.name;
    }
  }
}

TEST(DVDecodeShapes, EightThreadsGiveTheSameBytesAsOne) {
  if (!PeerAvailable()) GTEST_SKIP();
  struct Job {
    const PeerFormat* f;
    OX_PixelFormat target;
    int w, h, field;
  };
  std::vector<Job> jobs;
  for (const PeerFormat& f : PeerFormats()) {
    jobs.push_back({&f, Native(f), f.width, f.height, 0});
    jobs.push_back({&f, LowResolution(f), f.width / 2, f.height / 2, 2});
    if (f.width == 720 && f.sampling != Sampling::k422)
      jobs.push_back({&f, OX_PixelFormat_BGRA_4444_8u, 180, f.height / 4, 0});
  }
  std::vector<std::vector<uint8_t>> single;
  for (const Job& j : jobs) single.push_back(Decode(*j.f, PeerFrame(*j.f, 2), j.target, j.w, j.h, j.field, 2).data);
  std::vector<int> mismatches(8, 0);
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t)
    threads.emplace_back([&, t] {
      for (size_t i = 0; i < jobs.size(); ++i) {
        const Job& j = jobs[(i + t) % jobs.size()];
        const Decoded d = Decode(*j.f, PeerFrame(*j.f, 2), j.target, j.w, j.h, j.field, 2);
        mismatches[t] += d.data != single[(i + t) % jobs.size()];
      }
    });
  for (std::thread& t : threads) t.join();
  for (int t = 0; t < 8; ++t) EXPECT_EQ(mismatches[t], 0) << "thread " << t;
}

}  // namespace

namespace {

// A 720p frame whose FSP says channels 2 and 3 holds the same macroblocks as one that says 0
// and 1; only where they land differs, as the placement with the channel offset tells.
TEST(DVDecodeShapes, FrameWithFSPZeroTakesChannelsTwoAndThree) {
  if (!PeerAvailable()) GTEST_SKIP();
  using namespace OX::dv;
  for (OX_PixelFormat format : {OX_PixelFormat_NTSC_DV100_720p, OX_PixelFormat_PAL_DV100_720p}) {
    const PeerFormat& f = *FindPeerFormat(format, Sampling::k422);
    const std::vector<uint8_t>& frame = PeerFrame(f, 1);
    ASSERT_EQ(ChannelOffsetOf720p(frame.data()), 0) << f.name;
    std::vector<uint8_t> moved = frame;
    moved[1] &= ~0x04;  // FSP 0
    ASSERT_EQ(ChannelOffsetOf720p(moved.data()), 2);
    const Decoded first = Decode(f, frame, OX_PixelFormat_YUYV_422_8u_709, 960, 720, 0, 4);
    const Decoded second = Decode(f, moved, OX_PixelFormat_YUYV_422_8u_709, 960, 720, 0, 4);
    ASSERT_EQ(first.result | second.result, 0);
    const DVFormatInfo& info = *FindDVFormat(format);
    int wrong = 0, moves = 0;
    for (int c = 0; c < 2; ++c)
      for (int i = 0; i < 10; ++i)
        for (int k = 0; k < 27; ++k) {
          DV100Placement a[5], b[5];
          PlaceMacroblocksDV100(info, c, i, k, a);
          PlaceMacroblocksDV100(info, c + 2, i, k, b);
          for (int j = 0; j < 5; ++j)
            for (int h = 0; h < 2; ++h) {
              moves += a[j].fHalf[h].y != b[j].fHalf[h].y;
              for (int r = 0; r < 8; ++r)
                wrong += std::memcmp(first.Row(a[j].fHalf[h].y + r) + a[j].fHalf[h].x * 2,
                                     second.Row(b[j].fHalf[h].y + r) + b[j].fHalf[h].x * 2, 32) != 0;
            }
        }
    EXPECT_EQ(wrong, 0) << f.name;
    EXPECT_GT(moves, 1000) << f.name;  // the offset really moves macroblocks
  }
}

}  // namespace
