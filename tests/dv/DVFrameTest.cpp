// The DV frame model: geometry, segment addresses, frame kind, display-class vote and the
// macroblock placement of every layout, checked by covering each picture exactly once.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "dv/DVFrame.h"
#include "dv/DVTables.h"

namespace OX::dv {
namespace {

TEST(DVFrameModel, FormatGeometry) {
  struct Row {
    OX_PixelFormat format;
    uint32_t bytes;
    int width, height, channels, rows;
  };
  const Row rows[] = {
      {OX_PixelFormat_NTSCDV25, 120000, 720, 480, 1, 10},     {OX_PixelFormat_PALDV25, 144000, 720, 576, 1, 12},
      {OX_PixelFormat_NTSCDV50, 240000, 720, 480, 2, 10},     {OX_PixelFormat_PALDV50, 288000, 720, 576, 2, 12},
      {OX_PixelFormat_NTSC_DV100_720p, 240000, 960, 720, 2, 10},
      {OX_PixelFormat_PAL_DV100_720p, 288000, 960, 720, 2, 12},
      {OX_PixelFormat_NTSC_DV100_1080i, 480000, 1280, 1080, 4, 10},
      {OX_PixelFormat_PAL_DV100_1080i, 576000, 1440, 1080, 4, 12},
  };
  for (const Row& r : rows) {
    const DVFormatInfo* info = FindDVFormat(r.format);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->fFrameBytes, r.bytes);
    EXPECT_EQ(uint32_t(info->fChannels * info->fSequencesPerChannel * kDIFSequenceBytes), r.bytes);
    EXPECT_EQ(info->fWidth, r.width);
    EXPECT_EQ(info->fHeight, r.height);
    EXPECT_EQ(info->fChannels, r.channels);
    EXPECT_EQ(info->fSequencesPerChannel, r.rows);
  }
  EXPECT_EQ(FindDVFormat(OX_PixelFormat_UYVY_422_8u), nullptr);
  EXPECT_EQ(FindDVFormat(0x0D000821), nullptr);
  EXPECT_EQ(FindDVFormat(OX_PixelFormat_NTSCDV25 | 0x200), nullptr);
}

TEST(DVFrameModel, SegmentAddressesSkipAudio) {
  EXPECT_EQ(SegmentOffset(0, 0), 560u);
  EXPECT_EQ(SegmentOffset(0, 1), 560u + 400);
  EXPECT_EQ(SegmentOffset(0, 2), 560u + 800);
  // An audio block sits between segments 2 and 3.
  EXPECT_EQ(SegmentOffset(0, 3) - SegmentOffset(0, 2), 480u);
  EXPECT_EQ(SegmentOffset(1, 0), 12000u + 560);
  // The last segment ends exactly at the end of its sequence.
  EXPECT_EQ(SegmentOffset(0, 26) + 400, 12000u);
  // Every block of every segment lands on a video block of a synthetic frame.
  for (int k = 0; k < 27; ++k) {
    const size_t offset = SegmentOffset(0, k);
    const int block = int(offset / 80);
    // Blocks 6.. of a sequence: one audio then fifteen video, nine times.
    EXPECT_NE((block - 6) % 16, 0) << k;
  }
}

TEST(DVFrameModel, FrameKindFromHeader) {
  struct Row {
    uint8_t apt, ap1, ap2, ap3;
    bool ntsc;
    int kind;
  };
  const Row rows[] = {
      {0, 0, 0, 0, true, 0},  {0, 0, 0, 0, false, 1}, {1, 1, 1, 1, true, 2}, {1, 1, 1, 1, false, 3},
      {1, 0, 0, 0, false, 3}, {0, 1, 1, 1, true, 0},  {0, 0, 1, 0, true, -14}, {2, 0, 0, 0, true, -14},
      {0, 7, 7, 7, false, -14}, {7, 1, 1, 1, false, -14},
  };
  for (const Row& r : rows) {
    uint8_t header[80];
    std::fill(header, header + 80, 0xFF);
    header[4] = 0xF8 | r.apt;
    header[5] = 0xF8 | r.ap1;
    header[6] = 0x78 | r.ap2;
    header[7] = 0xF8 | r.ap3;
    EXPECT_EQ(DVFrameKind(header, r.ntsc), r.kind) << int(r.apt) << int(r.ap1) << int(r.ap2) << int(r.ap3);
  }
}

// Frame with a VSC pack of (BCS, DISP) in the listed sequences.
std::vector<uint8_t> FrameWithPacks(int sequences, const std::vector<std::pair<int, int>>& packs) {
  std::vector<uint8_t> frame(size_t(sequences) * kDIFSequenceBytes, 0xFF);
  for (size_t i = 0; i < packs.size() && int(i) < sequences; ++i) {
    if (packs[i].first < 0) continue;
    uint8_t* p = frame.data() + i * kDIFSequenceBytes + VSCPackOffset(int(i));
    p[0] = 0x61;
    p[1] = 0x3F;
    p[2] = uint8_t(0xC8 | packs[i].second);
    p[3] = uint8_t(0xFC | packs[i].first);
  }
  return frame;
}

TEST(DVFrameModel, DisplayClassVote) {
  struct Row {
    std::vector<std::pair<int, int>> packs;  // (BCS, DISP) per sequence; BCS -1 no pack
    int expected;                            // -1: none
  };
  const Row rows[] = {
      {{}, -1},
      {{{0, 0}}, 0},
      {{{0, 2}, {1, 6}}, 2},                    // tie between class 2 and 4: the lower wins
      {{{1, 6}, {1, 6}, {0, 1}}, 4},
      {{{1, 1}, {1, 2}, {1, 3}}, 3},
      {{{2, 0}, {3, 1}, {2, 6}}, -1},           // BCS 2 and 3 are never counted
      {{{0, 3}, {0, 7}}, -1},                   // BCS 0 with DISP 3 or 7 is not counted
      {{{1, 7}, {-1, 0}, {1, 4}, {1, 5}}, 1},
  };
  for (const Row& r : rows) {
    std::vector<uint8_t> frame = FrameWithPacks(10, r.packs);
    int out = 99;
    const int status = CDVFrame(frame.data(), int32_t(frame.size())).GetDisplayClass(out);
    if (r.expected < 0) {
      EXPECT_EQ(status, -1);
      EXPECT_EQ(out, 99);
    } else {
      EXPECT_EQ(status, 0);
      EXPECT_EQ(out, r.expected);
    }
  }
  // Size 0 reads the header's sequence count; a size below one sequence reads nothing.
  std::vector<uint8_t> frame = FrameWithPacks(12, {{-1, 0}, {-1, 0}, {-1, 0}, {-1, 0}, {-1, 0}, {-1, 0},
                                                   {-1, 0}, {-1, 0}, {-1, 0}, {-1, 0}, {-1, 0}, {1, 6}});
  int out = 99;
  frame[3] = 0x7F;  // DSF 0: ten sequences, the pack in sequence 11 is not seen
  EXPECT_EQ(CDVFrame(frame.data(), 0).GetDisplayClass(out), -1);
  frame[3] = 0xFF;
  EXPECT_EQ(CDVFrame(frame.data(), 0).GetDisplayClass(out), 0);
  EXPECT_EQ(out, 4);
  EXPECT_EQ(CDVFrame(frame.data(), 11999).GetDisplayClass(out), -1);
}

// Marks every pixel a macroblock covers; each must be covered exactly once.
struct Coverage {
  int width, height;
  std::vector<int> count;
  Coverage(int w, int h) : width(w), height(h), count(size_t(w) * h, 0) {}
  bool Mark(int x, int y, int w, int h) {
    if (x < 0 || y < 0 || x + w > width || y + h > height) return false;
    for (int r = y; r < y + h; ++r)
      for (int c = x; c < x + w; ++c) ++count[size_t(r) * width + c];
    return true;
  }
  int Bad() const {
    int bad = 0;
    for (int c : count) bad += c != 1;
    return bad;
  }
};

TEST(DVFrameModel, SDPlacementCoversThePicture) {
  struct Row {
    SDLayout layout;
    int rows, channels, height;
  };
  const Row rows[] = {
      {SDLayout::k411, 10, 1, 480}, {SDLayout::k411, 12, 1, 576}, {SDLayout::k420, 12, 1, 576},
      {SDLayout::kDV50, 10, 2, 480}, {SDLayout::kDV50, 12, 2, 576},
  };
  for (const Row& r : rows) {
    Coverage cover(720, r.height);
    for (int c = 0; c < r.channels; ++c)
      for (int i = 0; i < r.rows; ++i)
        for (int k = 0; k < 27; ++k) {
          PicturePosition p[5];
          PlaceMacroblocksSD(r.layout, r.rows, c, i, k, p);
          for (int j = 0; j < 5; ++j) {
            int w = 16, h = 16;
            if (r.layout == SDLayout::kDV50) h = 8;
            if (r.layout == SDLayout::k411 && !Is411SquareColumn(p[j].x)) w = 32, h = 8;
            ASSERT_TRUE(cover.Mark(p[j].x, p[j].y, w, h)) << c << " " << i << " " << k << " " << j;
          }
        }
    EXPECT_EQ(cover.Bad(), 0) << int(r.layout) << " " << r.rows;
  }
}

TEST(DVFrameModel, SDPlacementPublishedExamples) {
  PicturePosition p[5];
  // Segment 0 of sequence 0, 4:1:1: superblock rows 2, 6, 8, 0, 4.
  PlaceMacroblocksSD(SDLayout::k411, 10, 0, 0, 0, p);
  EXPECT_EQ(p[0].x, 288);
  EXPECT_EQ(p[0].y, 96);
  EXPECT_EQ(p[1].x, 128);
  EXPECT_EQ(p[1].y, 6 * 48 + 24);  // q = 3: mirrored row 3 of the first column
  EXPECT_EQ(p[3].x, 0);
  EXPECT_EQ(p[3].y, 0);
  // Segment 26, rightmost column: a 16 x 16 macroblock at the bottom of its superblock.
  PlaceMacroblocksSD(SDLayout::k411, 10, 0, 0, 26, p);
  EXPECT_EQ(p[4].x, 704);
  EXPECT_EQ(p[4].y, 4 * 48 + 32);
  std::vector<uint8_t> base(240 * 1000);
  uint8_t* out[5];
  PlaceMacroblocks(SDLayout::k411, 10, 0, 0, 26, base.data(), 1000, 4, 1, 1, out);
  EXPECT_EQ(out[4] - base.data(), (224 / 2) * 1000 + (704 / 2) * 4);
}

TEST(DVFrameModel, DV100PlacementCoversThePicture) {
  for (OX_PixelFormat format : {OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_PAL_DV100_1080i,
                                OX_PixelFormat_NTSC_DV100_720p, OX_PixelFormat_PAL_DV100_720p}) {
    const DVFormatInfo& info = *FindDVFormat(format);
    for (int offset : {0, 2}) {
      if (offset && info.fFamily != Family::kDV100_720) continue;
      Coverage cover(info.fWidth, info.fHeight);
      for (int c = 0; c < info.fChannels; ++c)
        for (int i = 0; i < info.fSequencesPerChannel; ++i) {
          if (!IsSequenceUsed(info, c, i)) continue;
          for (int k = 0; k < 27; ++k) {
            DV100Placement p[5];
            PlaceMacroblocksDV100(info, c + offset, i, k, p);
            for (int j = 0; j < 5; ++j)
              for (int h = 0; h < 2; ++h)
                ASSERT_TRUE(cover.Mark(p[j].fHalf[h].x, p[j].fHalf[h].y, 16, 8))
                    << format << " " << c << " " << i << " " << k << " " << j;
          }
        }
      EXPECT_EQ(cover.Bad(), 0) << std::hex << format;
    }
  }
}

TEST(DVFrameModel, SkippedSequences) {
  const DVFormatInfo& p1080 = *FindDVFormat(OX_PixelFormat_PAL_DV100_1080i);
  std::vector<int> skipped;
  for (int n = 0; n < 48; ++n)
    if (!IsSequenceUsed(p1080, n / 12, n % 12)) skipped.push_back(n);
  EXPECT_EQ(skipped, (std::vector<int>{23, 35, 47}));
  const DVFormatInfo& p720 = *FindDVFormat(OX_PixelFormat_PAL_DV100_720p);
  EXPECT_TRUE(IsSequenceUsed(p720, 1, 9));
  EXPECT_FALSE(IsSequenceUsed(p720, 0, 10));
  EXPECT_FALSE(IsSequenceUsed(p720, 1, 11));
  for (int n = 0; n < 40; ++n) EXPECT_TRUE(IsSequenceUsed(*FindDVFormat(OX_PixelFormat_NTSC_DV100_1080i), n / 10, n % 10));
}

TEST(DVTables, ScanOrdersArePermutationsAndAgree) {
  for (int mode = 0; mode < 2; ++mode) {
    const uint8_t* index = mode ? kZigzagIndex248 : kZigzagIndex88;
    std::vector<int> seen(64, 0);
    for (int z = 0; z < 64; ++z) {
      ++seen[kScan[mode][z]];
      EXPECT_EQ(index[kScan[mode][z]], z);
    }
    for (int s : seen) EXPECT_EQ(s, 1);
  }
  // 8-8: the classic zig-zag walks anti-diagonals alternately.
  for (int z = 1; z < 64; ++z) {
    const int a = kScan88.f[z - 1], b = kScan88.f[z];
    const int da = a / 8 + a % 8, db = b / 8 + b % 8;
    EXPECT_TRUE(db == da || db == da + 1) << z;
  }
  // 2-4-8: each sum coefficient is followed by the difference coefficient at the same place.
  for (int z = 0; z < 64; z += 2) EXPECT_EQ(kScan248.f[z + 1], kScan248.f[z] + 32) << z;
}

TEST(DVTables, WeightsFromTheirDefinition) {
  auto cs = [](int m) { return std::cos(m * M_PI / 16.0); };
  const double w[8] = {1.0,           cs(4) / (4 * cs(7) * cs(2)), cs(4) / (2 * cs(6)), 1 / (2 * cs(5)), 7.0 / 8,
                       cs(4) / cs(3), cs(4) / cs(2),               cs(4) / cs(1)};
  for (int i = 0; i < 8; ++i) EXPECT_NEAR(kWeight1D[i], w[i], 1e-15);
  EXPECT_DOUBLE_EQ(Weight(0, 0), 0.5);
  EXPECT_NEAR(Weight(0, 1), 0.4903926, 1e-6);
  EXPECT_DOUBLE_EQ(Weight(1, 32), 0.5);            // the difference DC
  EXPECT_DOUBLE_EQ(Weight(1, 8), w[2] / 2);        // second sum row uses w(2)
  EXPECT_DOUBLE_EQ(Weight(1, 8 * 5 + 3), w[3] * w[2] / 2);
}

TEST(DVTables, VLCCodesArePrefixFree) {
  struct Code {
    int length;
    uint32_t bits;
  };
  std::vector<Code> codes;
  for (int i = 0; i < kVLCListedCodeCount; ++i) {
    const VLCCode& c = kVLCListedCodes[i];
    codes.push_back({c.fLength, c.fBits});
    EXPECT_LT(c.fBits, 1u << c.fLength);
  }
  codes.push_back({kVLCEndOfBlockLength, kVLCEndOfBlockBits});
  for (int n = 7; n <= 64; ++n) codes.push_back({kVLCZeroRunLength, uint32_t(kVLCZeroRunPrefix | (n - 1))});
  for (int a = 23; a < 256; ++a) codes.push_back({kVLCLongFormLength, uint32_t(kVLCLongFormPrefix | a)});
  for (size_t i = 0; i < codes.size(); ++i)
    for (size_t j = 0; j < codes.size(); ++j) {
      if (i == j || codes[i].length > codes[j].length) continue;
      const uint32_t prefix = codes[j].bits >> (codes[j].length - codes[i].length);
      EXPECT_FALSE(prefix == codes[i].bits) << i << " is a prefix of " << j;
    }
  // Kraft sum of the full code (sign bits included) is exactly 1: no code word is missing.
  double kraft = 0;
  for (int i = 0; i < kVLCListedCodeCount; ++i) {
    const VLCCode& c = kVLCListedCodes[i];
    kraft += std::ldexp(c.fAmplitude ? 2.0 : 1.0, -(c.fLength + (c.fAmplitude ? 1 : 0)));
  }
  kraft += std::ldexp(1.0, -4);
  kraft += 64 * std::ldexp(1.0, -13);
  kraft += 256 * std::ldexp(2.0, -16);
  EXPECT_DOUBLE_EQ(kraft, 1.0);
  // Every run below 15 has direct codes for each amplitude up to its limit.
  for (int run = 1; run < 15; ++run)
    for (int amp = 1; amp <= kVLCRunLimit[run]; ++amp) {
      bool found = false;
      for (int i = 0; i < kVLCListedCodeCount; ++i)
        found |= kVLCListedCodes[i].fRun == run && kVLCListedCodes[i].fAmplitude == amp;
      EXPECT_TRUE(found) << run << "," << amp;
    }
}

TEST(DVTables, QuantShiftMatchesTheDequantisationRows) {
  const uint8_t q0[4][4] = {{1, 2, 2, 3}, {2, 3, 3, 4}, {3, 3, 4, 4}, {4, 4, 5, 5}};
  const uint8_t q8[4][4] = {{0, 0, 0, 1}, {0, 1, 1, 2}, {1, 1, 2, 2}, {2, 2, 3, 3}};
  const uint8_t q15[4][4] = {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {1, 1, 1, 1}};
  for (int c = 0; c < 4; ++c)
    for (int a = 0; a < 4; ++a) {
      EXPECT_EQ(QuantShift(0, c, a), q0[c][a]);
      EXPECT_EQ(QuantShift(8, c, a), q8[c][a]);
      EXPECT_EQ(QuantShift(15, c, a), q15[c][a]);
    }
  // A higher QNO never quantises more coarsely.
  for (int c = 0; c < 4; ++c)
    for (int q = 1; q < 16; ++q)
      for (int a = 0; a < 4; ++a) EXPECT_LE(QuantShift(q, c, a), QuantShift(q - 1, c, a));
}

}  // namespace
}  // namespace OX::dv
