// The DV operations of the primitive layer. Segments are packed in the test by the published
// bit distribution (own block, then the macroblock's left-over room, then the segment's) from
// random coefficients, and the decoder must give back exactly those coefficients; the row
// packers are checked against their formula at every level.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "dv/DVDecodeTables.h"
#include <cstring>
#include "dv/DVTables.h"
#include "primitives/DVPrimitives.h"
#include "support/PrimitiveLevels.h"

namespace {

using namespace OX;
using namespace OX::dv;

using Bits = std::vector<uint8_t>;  // one bit an entry

void Put(Bits& bits, uint32_t code, int length) {
  for (int i = length - 1; i >= 0; --i) bits.push_back((code >> i) & 1);
}

// The code for `run` zeros followed by `amplitude` (with its sign), as the standard lists it:
// a direct code where one exists, else a run of zeros and then the amplitude alone.
void PutPair(Bits& bits, int run, int amplitude) {
  const int magnitude = std::abs(amplitude);
  for (int i = 0; i < kVLCListedCodeCount; ++i) {
    const VLCCode& c = kVLCListedCodes[i];
    if (c.fRun == run && c.fAmplitude == magnitude) {
      Put(bits, c.fBits, c.fLength);
      Put(bits, amplitude < 0, 1);
      return;
    }
  }
  if (run > 0) {  // n zeros: the listed 11- and 12-bit codes for up to 6, else the 13-bit form
    bool listed = false;
    for (int i = 0; i < kVLCListedCodeCount && !listed; ++i) {
      const VLCCode& c = kVLCListedCodes[i];
      if (c.fAmplitude == 0 && c.fRun + 1 == run) {
        Put(bits, c.fBits, c.fLength);
        listed = true;
      }
    }
    if (!listed) Put(bits, kVLCZeroRunPrefix | uint32_t(run - 1), kVLCZeroRunLength);
  }
  if (magnitude <= 22) {
    PutPair(bits, 0, amplitude);  // run 0 has direct codes up to 22
  } else {
    Put(bits, kVLCLongFormPrefix | uint32_t(magnitude), kVLCLongFormLength);
    Put(bits, amplitude < 0, 1);
  }
}

struct Block {
  int dc, mode, classNumber;
  int coefficients[64];  // by zig-zag index; [0] unused
  Bits stream;           // AC codes and end of block
};

constexpr int kSize6[6] = {14, 14, 14, 14, 10, 10}, kOffset6[6] = {4, 18, 32, 46, 60, 70};
constexpr int kSize8[8] = {10, 10, 10, 10, 10, 10, 8, 8}, kOffset8[8] = {4, 14, 24, 34, 44, 54, 64, 72};

// Packs the blocks of a segment: each block's stream fills its own area; what does not fit
// fills the room that finished blocks of the same macroblock leave, in block order; what still
// does not fit fills the room left anywhere in the segment, in macroblock order. Returns false
// when the segment cannot hold everything.
bool Pack(std::vector<Block>& blocks, int perMacroblock, const int qno[5], uint8_t* segment) {
  const int* size = perMacroblock == 6 ? kSize6 : kSize8;
  const int* offset = perMacroblock == 6 ? kOffset6 : kOffset8;
  std::fill(segment, segment + 400, 0);
  auto setBit = [&](int position, int bit) {
    if (bit) segment[position >> 3] |= uint8_t(0x80 >> (position & 7));
  };
  struct Span {
    int pos, end;
  };
  std::vector<Span> segmentRoom;
  Bits segmentOverflow;
  for (int m = 0; m < 5; ++m) {
    segment[m * 80 + 3] = uint8_t(qno[m]);
    std::vector<Span> room;
    Bits overflow;
    for (int b = 0; b < perMacroblock; ++b) {
      Block& block = blocks[size_t(m * perMacroblock + b)];
      const int base = (m * 80 + offset[b]) * 8;
      const int dc = block.dc & 0x1FF;
      for (int i = 0; i < 9; ++i) setBit(base + i, (dc >> (8 - i)) & 1);
      setBit(base + 9, block.mode);
      setBit(base + 10, block.classNumber >> 1);
      setBit(base + 11, block.classNumber & 1);
      const int capacity = size[b] * 8 - 12;
      const int own = std::min(capacity, int(block.stream.size()));
      for (int i = 0; i < own; ++i) setBit(base + 12 + i, block.stream[size_t(i)]);
      if (own < capacity) room.push_back({base + 12 + own, base + size[b] * 8});
      overflow.insert(overflow.end(), block.stream.begin() + own, block.stream.end());
    }
    size_t used = 0;
    for (Span& s : room) {
      while (s.pos < s.end && used < overflow.size()) setBit(s.pos++, overflow[used++]);
      if (s.pos < s.end) segmentRoom.push_back(s);
    }
    segmentOverflow.insert(segmentOverflow.end(), overflow.begin() + ptrdiff_t(used), overflow.end());
  }
  size_t used = 0;
  for (Span& s : segmentRoom)
    while (s.pos < s.end && used < segmentOverflow.size()) setBit(s.pos++, segmentOverflow[used++]);
  return used == segmentOverflow.size();
}

// Random blocks, some of them much longer than their own area so that the bits travel.
std::vector<Block> RandomBlocks(std::mt19937& rng, int count, bool twoModes) {
  std::vector<Block> blocks(static_cast<size_t>(count));
  std::uniform_int_distribution<int> coin(0, 99);
  for (Block& b : blocks) {
    b = {};
    b.dc = int(rng() % 512) - 256;
    b.mode = twoModes ? int(rng() & 1) : 0;
    b.classNumber = int(rng() & 3);
    const int density = coin(rng) < 20 ? 40 : coin(rng) < 50 ? 8 : 2;  // a few heavy blocks
    int run = 0;
    for (int z = 1; z < 64; ++z) {
      if (coin(rng) >= density) {
        ++run;
        continue;
      }
      const int r = coin(rng);
      int amplitude = r < 60 ? 1 + r % 3 : r < 90 ? 1 + r % 22 : 23 + int(rng() % 233);
      if (rng() & 1) amplitude = -amplitude;
      b.coefficients[z] = amplitude;
      PutPair(b.stream, run, amplitude);
      run = 0;
    }
    Put(b.stream, kVLCEndOfBlockBits, kVLCEndOfBlockLength);
  }
  return blocks;
}

struct Format {
  const char* name;
  int perMacroblock;
  bool twoModes;
};

TEST(DVPrimitives, SegmentDecodeUndoesThePublishedBitDistribution) {
  const VLCCodeLists lists = MakeVLCCodeLists();
  void* table = nullptr;
  ASSERT_EQ(VecDVBuildVLCTable(lists.fFirst.data(), lists.fSecond.data(), &table), 0);
  std::mt19937 rng(1234);
  int packed = 0, travelled = 0;
  for (const Format& f : {Format{"six blocks", 6, true}, Format{"eight blocks", 8, false}}) {
    const int count = 5 * f.perMacroblock;
    const int* size = f.perMacroblock == 6 ? kSize6 : kSize8;
    for (int trial = 0; trial < 1000; ++trial) {
      std::vector<Block> blocks = RandomBlocks(rng, count, f.twoModes);
      int total = 0, capacity = 0, overflowing = 0;
      for (int i = 0; i < count; ++i) {
        total += int(blocks[size_t(i)].stream.size());
        capacity += size[i % f.perMacroblock] * 8 - 12;
        overflowing += int(blocks[size_t(i)].stream.size()) > size[i % f.perMacroblock] * 8 - 12;
      }
      if (total > capacity) continue;  // would lose bits; the decode of such segments is fuzzed
      const int qno[5] = {int(rng() % 16), int(rng() % 16), int(rng() % 16), int(rng() % 16), int(rng() % 16)};
      uint8_t segment[400];
      ASSERT_TRUE(Pack(blocks, f.perMacroblock, qno, segment));
      ++packed;
      travelled += overflowing > 0;
      std::vector<int16_t> coefficients(size_t(count) * 64, 0);
      std::vector<uint32_t> info(size_t(count), 0);
      const int32_t status = f.perMacroblock == 6
                                 ? VecDVDecodeSegment(segment, kScanPair, table, coefficients.data(), info.data())
                                 : VecDV100DecodeSegment(segment, kScan88.f, table, coefficients.data(), info.data());
      ASSERT_EQ(status, 0);
      for (int i = 0; i < count; ++i) {
        const Block& b = blocks[size_t(i)];
        const uint8_t* scan = kScan[b.mode];
        EXPECT_EQ(info[size_t(i)], uint32_t(qno[i / f.perMacroblock]) << 16 | uint32_t(b.mode << 6 | b.classNumber << 4))
            << f.name << " block " << i;
        EXPECT_EQ(coefficients[size_t(i) * 64], b.dc * 128) << f.name << " block " << i;
        int wrong = 0;
        for (int z = 1; z < 64; ++z) wrong += coefficients[size_t(i) * 64 + scan[z]] != b.coefficients[z] * 64;
        EXPECT_EQ(wrong, 0) << f.name << " trial " << trial << " block " << i;
      }
    }
  }
  // The random segments must have exercised the second and third passes.
  EXPECT_GT(packed, 300);
  EXPECT_GT(travelled, 150);
  VecDVFreeVLCTable(table);
}

TEST(DVPrimitives, DamagedSegmentsDecodeWhatTheyCan) {
  const VLCCodeLists lists = MakeVLCCodeLists();
  void* table = nullptr;
  ASSERT_EQ(VecDVBuildVLCTable(lists.fFirst.data(), lists.fSecond.data(), &table), 0);
  std::mt19937 rng(99);
  for (int trial = 0; trial < 2000; ++trial) {
    uint8_t segment[400];
    for (uint8_t& b : segment) b = uint8_t(rng());
    if (trial % 4 == 0) std::fill(segment, segment + 400, uint8_t(trial & 0xFF));
    std::vector<int16_t> coefficients(40 * 64, 0);
    std::vector<uint32_t> info(40, 0);
    EXPECT_EQ(VecDVDecodeSegment(segment, kScanPair, table, coefficients.data(), info.data()), 0);
    EXPECT_EQ(VecDV100DecodeSegment(segment, kScan88.f, table, coefficients.data(), info.data()), 0);
  }
  VecDVFreeVLCTable(table);
}

TEST(DVPrimitives, TableBuilderChecksItsLists) {
  const VLCCodeLists lists = MakeVLCCodeLists();
  void* table = nullptr;
  EXPECT_EQ(VecDVBuildVLCTable(nullptr, lists.fSecond.data(), &table), -8);
  EXPECT_EQ(VecDVBuildVLCTable(lists.fFirst.data(), lists.fSecond.data(), nullptr), -8);
  std::vector<int32_t> bad = lists.fFirst;
  bad[0] = 8;  // width other than 9
  EXPECT_EQ(VecDVBuildVLCTable(bad.data(), lists.fSecond.data(), &table), -6);
  bad = lists.fFirst;
  bad[3 + 1] = 0;  // the count of 1-bit codes is 0; make a 2-bit code too long for its length
  bad[3 + 1 + 1] = 9;
  EXPECT_EQ(VecDVBuildVLCTable(bad.data(), lists.fSecond.data(), &table), -6);
  EXPECT_EQ(VecDVFreeVLCTable(nullptr), -8);
  // Built from the published lists, every entry of both levels is filled: the code is complete.
  ASSERT_EQ(VecDVBuildVLCTable(lists.fFirst.data(), lists.fSecond.data(), &table), 0);
  const uint32_t* entries = static_cast<const uint32_t*>(table);
  int empty = 0;
  for (int i = 0; i < kDVFirstLevelLimit; ++i) empty += (entries[i] & 0xFF) == kDVVLCEmptyLength;
  for (int i = 0; i < 512; ++i) {
    const int peek9 = 0x1E0 | (i >> 4);  // 1111 followed by the index's bits
    if (peek9 >= kDVSecondLevelLimit) continue;
    empty += (entries[512 + i] & 0xFF) == kDVVLCEmptyLength;
  }
  EXPECT_EQ(empty, 0);
  // 00s: run 0, amplitude 1, three bits with the sign.
  EXPECT_EQ(entries[0b000000000], DVVLCEntry(3, 0, 64));
  EXPECT_EQ(entries[0b001000000], DVVLCEntry(3, 0, -64));
  EXPECT_EQ(entries[0b011000000], DVVLCEntry(4, kDVEndOfBlockRun, 0));
  VecDVFreeVLCTable(table);
}

TEST(DVPrimitives, PackRowsAtEveryLevel) {
  std::mt19937 rng(7);
  std::vector<int16_t> coefficients(40 * 64 + 8);
  for (int16_t& c : coefficients) c = int16_t(int(rng() % 700) - 350);  // beyond the byte range both ways
  for (int step : {1, 2}) {
    for (int family : {50, 100}) {
      std::vector<uint8_t> expected(5 * 16 * 32, 0);
      auto sample = [](int v) { return uint8_t(std::min(255, std::max(0, v + 128))); };
      // Formula: YUYV from the listed blocks.
      for (int j = 0; j < 5; ++j)
        for (int h = 0; h < (family == 100 ? 2 : 1); ++h)
          for (int r = 0; r * step < 8; ++r) {
            const int16_t* mb = coefficients.data() + (family == 100 ? j * 512 : j * 384);
            const int row = r * step * 8;
            const int16_t* y0 = mb + (family == 100 ? (h ? 2 : 0) * 64 : 0) + row;
            const int16_t* y1 = mb + (family == 100 ? (h ? 3 : 1) * 64 : 128) + row;
            const int16_t* u = mb + (family == 100 ? (6 + h) * 64 : 320) + row;
            const int16_t* v = mb + (family == 100 ? (4 + h) * 64 : 256) + row;
            uint8_t* out = expected.data() + size_t((j * 16 + h * 8 + r) * 32);
            for (int p = 0; p < 8; ++p) {
              const int16_t* y = p < 4 ? y0 + 2 * p : y1 + 2 * (p - 4);
              out[4 * p] = sample(y[0]), out[4 * p + 1] = sample(u[p]), out[4 * p + 2] = sample(y[1]),
                      out[4 * p + 3] = sample(v[p]);
            }
          }
      test::ForEachPrimitiveLevel([&](int32_t) {
        std::vector<uint8_t> out(5 * 16 * 32, 0);
        std::vector<uint8_t*> rows(80);
        for (int i = 0; i < 80; ++i) rows[size_t(i)] = out.data() + i * 32;
        if (family == 50) {
          const int16_t* blocks[5];
          std::vector<uint8_t*> rows50(40);
          for (int j = 0; j < 5; ++j) {
            blocks[j] = coefficients.data() + j * 384;
            for (int r = 0; r < 8; ++r) rows50[size_t(j * 8 + r)] = out.data() + (j * 16 + r) * 32;
          }
          ASSERT_EQ(VecDV50PackRows(blocks, rows50.data(), step), 0);
        } else {
          ASSERT_EQ(VecDV100PackRows(coefficients.data(), rows.data(), step), 0);
        }
        EXPECT_EQ(out, expected) << "DV" << family << " step " << step;
      });
    }
  }
  EXPECT_EQ(VecDV100PackRows(nullptr, nullptr, 1), -8);
  uint8_t* rows[80] = {};
  EXPECT_EQ(VecDV100PackRows(coefficients.data(), rows, 0), -6);
}

// The sample store at every level: every width from 0 to 67 and one wide row, two rows read with
// a gap between them, every destination offset within 16 bytes, samples from the whole 16-bit
// range with the edges of the byte range and of the saturating add among them; guard bytes
// around and between the rows stay untouched.
TEST(DVPrimitives, StoreSamplesAtEveryLevel) {
  std::mt19937 rng(11);
  const int16_t edges[] = {-32768, -32767, -129, -128, -127, -1, 0, 1, 126, 127, 128, 129, 32639, 32640, 32767};
  std::vector<int> widths;
  for (int w = 0; w <= 67; ++w) widths.push_back(w);
  widths.push_back(1921);
  constexpr int kRows = 2, kGuard = 16;
  for (int width : widths) {
    const int sourceStep = width + 5;
    std::vector<int16_t> source(size_t(sourceStep) * kRows);
    for (int16_t& v : source)
      v = rng() % 4 == 0 ? edges[rng() % std::size(edges)] : int16_t(int(rng() % 65536) - 32768);
    const std::vector<int16_t> kept = source;
    const int rowBytes = width + 2 * kGuard;
    test::ForEachPrimitiveLevel([&](int32_t) {
      for (int offset = 0; offset < 16; ++offset) {
        std::vector<uint8_t> out(size_t(rowBytes) * kRows + 64, 0xA5);
        uint8_t* first = out.data() + kGuard + offset;
        ASSERT_EQ(VecDVStoreSamples(source.data(), sourceStep, first, rowBytes, width, kRows), 0);
        std::vector<uint8_t> expected(out.size(), 0xA5);
        for (int r = 0; r < kRows; ++r)
          for (int i = 0; i < width; ++i) {
            const int v = source[size_t(r * sourceStep + i)] + 128;
            expected[size_t(kGuard + offset + r * rowBytes + i)] = uint8_t(v < 0 ? 0 : v > 255 ? 255 : v);
          }
        ASSERT_EQ(out, expected) << "width " << width << " offset " << offset;
      }
    });
    EXPECT_EQ(source, kept);
  }
  int16_t sample = 0;
  uint8_t byte = 7;
  EXPECT_EQ(VecDVStoreSamples(nullptr, 8, &byte, 8, 1, 1), -8);
  EXPECT_EQ(VecDVStoreSamples(&sample, 8, nullptr, 8, 1, 1), -8);
  EXPECT_EQ(VecDVStoreSamples(&sample, 8, &byte, 8, -1, 1), -6);
  EXPECT_EQ(VecDVStoreSamples(&sample, 8, &byte, 8, 1, -1), -6);
  EXPECT_EQ(VecDVStoreSamples(&sample, 8, &byte, 8, 0, 1), 0);
  EXPECT_EQ(byte, 7);
}

}  // namespace

namespace {

// The DC-only shortcut of the decoders gives what the inverse transforms give, at every level.
TEST(DVPrimitives, DCOnlyShortcutMatchesTheTransforms) {
  OX::test::ForEachPrimitiveLevel([](int32_t) {
    int used = 0;
    for (int mode = 0; mode < 2; ++mode)
      for (int dc = -1024; dc < 1024; dc += 3) {
        alignas(16) int16_t shortcut[64] = {}, full[64] = {};
        shortcut[0] = full[0] = int16_t(dc);
        const bool taken = OX::dv::TransformDCOnly(shortcut, mode);
        used += taken;
        if (mode) {
          OX::VecDCT248Inverse(full);
        } else {
          OX::VecDCT8x8Inverse(full);
        }
        if (taken) EXPECT_EQ(std::memcmp(shortcut, full, sizeof(full)), 0) << "mode " << mode << " dc " << dc;
      }
    EXPECT_GT(used, 1000);
    // Any AC coefficient rules the shortcut out.
    alignas(16) int16_t block[64] = {};
    block[0] = 100;
    block[63] = 64;
    EXPECT_FALSE(OX::dv::TransformDCOnly(block, 0));
    block[63] = 0;
    block[1] = 1;
    EXPECT_FALSE(OX::dv::TransformDCOnly(block, 0));
  });
}

}  // namespace
