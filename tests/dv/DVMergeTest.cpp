// DV merge: the field weave (which rows come from which frame, by family), the display class of
// the first frame restored in the output's VSC packs, and the deliberate differences of the two
// exports.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "Ombrix.h"
#include "dv/DVEncodeTestSupport.h"
#include "dv/DVFrame.h"
#include "dv/DVMerge.h"

namespace ombrix_test {
namespace {

struct MergeFormat {
  const char* name;
  OX_PixelFormat format;
  int width, height;
  OX_PixelFormat raw;
  int firstRow;  // the row parity taken from the first frame
};
const MergeFormat kMergeFormats[] = {
    {"NTSC DV25", OX_PixelFormat_NTSCDV25, 720, 480, OX_PixelFormat_YUYV_422_8u, 1},
    {"PAL DV25", OX_PixelFormat_PALDV25, 720, 576, OX_PixelFormat_YUYV_422_8u, 1},
    {"PAL DV50", OX_PixelFormat_PALDV50, 720, 576, OX_PixelFormat_YUYV_422_8u, 1},
    {"DV100 720p60", OX_PixelFormat_NTSC_DV100_720p, 960, 720, OX_PixelFormat_YUYV_422_8u_709, 0},
    {"DV100 1080i50", OX_PixelFormat_PAL_DV100_1080i, 1440, 1080, OX_PixelFormat_YUYV_422_8u_709, 0},
};

// A flat picture of luma `y`.
std::vector<uint8_t> EncodeFlat(const MergeFormat& f, uint8_t y) {
  std::vector<uint8_t> picture(size_t(f.width) * 2 * f.height);
  for (size_t i = 0; i < picture.size(); i += 2) {
    picture[i] = y;
    picture[i + 1] = 128;
  }
  std::vector<uint8_t> frame(size_t(OX_PixelFormatSize(f.format, 0, 0)));
  EXPECT_EQ(OX_Convert(picture.data(), f.width * 2, f.raw, frame.data(), int32_t(frame.size()), f.format, f.width,
                       f.height, 4),
            OX_Success);
  return frame;
}

std::vector<uint8_t> Decode(const MergeFormat& f, const std::vector<uint8_t>& frame) {
  std::vector<uint8_t> picture(size_t(f.width) * 2 * f.height);
  EXPECT_EQ(OX_Convert(frame.data(), int32_t(frame.size()), f.format, picture.data(), f.width * 2, f.raw, f.width,
                       f.height, 4),
            OX_Success);
  return picture;
}

double RowLuma(const MergeFormat& f, const std::vector<uint8_t>& picture, int row) {
  double sum = 0;
  for (int x = 0; x < f.width; ++x) sum += picture[size_t(row) * f.width * 2 + 2 * x];
  return sum / f.width;
}

// Sets DISP and BCS of every VSC pack the header counts, written here byte by byte.
void SetPacks(std::vector<uint8_t>& frame, int disp, int bcs) {
  const int sequences = ((frame[3] & 0x80) >> 6) + 10;
  for (int s = 0; s < sequences; ++s) {
    uint8_t* pack = &frame[size_t(s) * 12000 + (s % 2 ? 248 : 453)];
    pack[0] = 0x61;
    pack[2] = uint8_t((pack[2] & 0xF8) | disp);
    pack[3] = uint8_t((pack[3] & 0xFC) | bcs);
  }
}

OX_Result Merge(const MergeFormat& f, bool dvcpro, const std::vector<uint8_t>& a, const std::vector<uint8_t>& b,
                std::vector<uint8_t>& out) {
  out.assign(a.size(), 0);
  if (dvcpro) return OX_MergeDVCPRO(a.data(), b.data(), out.data(), f.format, 4);
  return OX_MergeDV(a.data(), b.data(), out.data(), int32_t(a.size()), 4);
}

TEST(DVMerge, FieldsComeFromTheFirstFrameByFamily) {
  for (const MergeFormat& f : kMergeFormats) {
    for (bool dvcpro : {false, true}) {
      if (!dvcpro && f.width != 720) continue;
      if (!dvcpro && f.format == OX_PixelFormat_PALDV50) continue;
      SCOPED_TRACE(std::string(f.name) + (dvcpro ? " DVCPRO" : ""));
      const std::vector<uint8_t> bright = EncodeFlat(f, 200), dark = EncodeFlat(f, 40);
      std::vector<uint8_t> out;
      ASSERT_EQ(Merge(f, dvcpro, bright, dark, out), OX_Success);
      const std::vector<uint8_t> picture = Decode(f, out);
      // Rows away from the frame's edges: the transform mixes the two fields a little.
      for (int row = f.height / 2; row < f.height / 2 + 8; ++row) {
        const bool fromFirst = (row % 2) == f.firstRow;
        EXPECT_NEAR(RowLuma(f, picture, row), fromFirst ? 200 : 40, 12) << row;
      }
    }
  }
}

TEST(DVMerge, IdenticalInputsKeepTheFirstFramesDisplayClass) {
  struct Pack {
    int disp, bcs, displayClass;
  };
  const Pack packs[] = {{0, 0, 0}, {1, 1, 3}, {6, 1, 4}, {1, 0, 1}};
  for (const MergeFormat& f : kMergeFormats) {
    for (const Pack& p : packs) {
      SCOPED_TRACE(std::string(f.name) + " class " + std::to_string(p.displayClass));
      std::vector<uint8_t> frame = EncodeFlat(f, 120);
      SetPacks(frame, p.disp, p.bcs);
      std::vector<uint8_t> out;
      ASSERT_EQ(Merge(f, true, frame, frame, out), OX_Success);
      int displayClass = -1;
      // The rewrite covers the sequences the header counts (10 or 12); vote over those.
      ASSERT_EQ(OX::dv::CDVFrame(out.data(), 0).GetDisplayClass(displayClass), 0);
      EXPECT_EQ(displayClass, p.displayClass);
      if (f.width == 720) {
        ASSERT_EQ(Merge(f, false, frame, frame, out), OX_Success);
        displayClass = -1;
        ASSERT_EQ(OX::dv::CDVFrame(out.data(), 0).GetDisplayClass(displayClass), 0);
        EXPECT_EQ(displayClass, p.displayClass);
      }
    }
  }
}

TEST(DVMerge, WithoutPacksTheEncodersPacksStay) {
  const MergeFormat& f = kMergeFormats[0];
  std::vector<uint8_t> frame = EncodeFlat(f, 90);
  const std::vector<uint8_t> fresh = frame;
  for (int s = 0; s < 10; ++s) frame[size_t(s) * 12000 + (s % 2 ? 248 : 453)] = 0xFF;
  std::vector<uint8_t> out;
  ASSERT_EQ(Merge(f, false, frame, frame, out), OX_Success);
  for (int s = 0; s < 10; s += 2)
    EXPECT_EQ(0, std::memcmp(&out[size_t(s) * 12000 + 453], &fresh[size_t(s) * 12000 + 453], 5));
}

TEST(DVMerge, PackRewriteTable) {
  struct Case {
    int displayClass;
    bool fiftyHertz;
    int disp, bcs;
  };
  const Case cases[] = {{0, false, 0, 0}, {0, true, 0, 1}, {1, false, 1, 0}, {1, true, 1, 0}, {2, false, 2, 0},
                        {2, true, 7, 1},  {3, false, 1, 1}, {3, true, 1, 1},  {4, false, 6, 1}, {4, true, 6, 1}};
  for (const Case& c : cases) {
    const MergeFormat& f = kMergeFormats[c.fiftyHertz ? 1 : 0];
    std::vector<uint8_t> frame = EncodeFlat(f, 100);
    const std::vector<uint8_t> before = frame;
    OX::RewriteVSCPacks(frame.data(), c.displayClass);
    for (int s = 0; s < (c.fiftyHertz ? 12 : 10); s += 2) {
      const uint8_t* pack = &frame[size_t(s) * 12000 + 453];
      const uint8_t* old = &before[size_t(s) * 12000 + 453];
      EXPECT_EQ(pack[2] & 7, c.disp);
      EXPECT_EQ(pack[3] & 3, c.bcs);
      EXPECT_EQ(pack[2] & 0xF8, old[2] & 0xF8);
      EXPECT_EQ(pack[3] & 0xFC, old[3] & 0xFC);
      EXPECT_EQ(pack[1], old[1]);
      EXPECT_EQ(pack[4], old[4]);
    }
  }
}

TEST(DVMerge, FrameBytesPickTheSystemAndTheExportsCheckAsDocumented) {
  // Any size but 120000 is PAL in OX_MergeDV.
  const MergeFormat& pal = kMergeFormats[1];
  const std::vector<uint8_t> frame = EncodeFlat(pal, 150);
  std::vector<uint8_t> out(frame.size(), 0);
  ASSERT_EQ(OX_MergeDV(frame.data(), frame.data(), out.data(), 120001, 4), OX_Success);
  EXPECT_TRUE(OX::dv::HeaderDSF(out.data()));
  EXPECT_NEAR(RowLuma(pal, Decode(pal, out), 300), 150, 3);
  // OX_MergeDVCPRO refuses a non-DV format and reports a decode failure (a DV25 header whose
  // application IDs disagree), where OX_MergeDV goes on regardless.
  EXPECT_EQ(OX_MergeDVCPRO(frame.data(), frame.data(), out.data(), OX_PixelFormat_UYVY_422_8u, 4),
            OX_ErrBadSourceFormat);
  std::vector<uint8_t> broken = frame;
  broken[5] = uint8_t((broken[5] & 0xF8) | 0);
  broken[6] = uint8_t((broken[6] & 0xF8) | 1);
  EXPECT_EQ(OX_MergeDVCPRO(broken.data(), frame.data(), out.data(), OX_PixelFormat_PALDV25, 4),
            OX_ErrDVFrameMismatch);
  EXPECT_EQ(OX_MergeDV(broken.data(), frame.data(), out.data(), 144000, 4), OX_Success);
}

TEST(DVMerge, SecondFramesByteEightSurvivesOn720p) {
  const MergeFormat& f = kMergeFormats[3];
  const std::vector<uint8_t> first = EncodeFlat(f, 60);
  std::vector<uint8_t> second = EncodeFlat(f, 180);
  second[8] = 0x3C;
  std::vector<uint8_t> out;
  ASSERT_EQ(Merge(f, true, first, second, out), OX_Success);
  EXPECT_EQ(out[8], 0x3C);
}

}  // namespace
}  // namespace ombrix_test
