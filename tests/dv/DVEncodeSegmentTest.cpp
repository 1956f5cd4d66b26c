// The segment compressor against an independent reading of its output: a small decoder of the
// published bit stream (three placement passes) in the test recovers every block's header and
// levels, which are compared with a quantisation computed here from the transform and the
// published tables; QNO must be the highest whose bit count, counted here, fits 3040 bits.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <vector>

#include "dv/DV100Compressor.h"
#include "dv/DVTables.h"
#include "dv/SegmentCompressor.h"
#include "dv/SegmentCompressorTables.h"
#include "primitives/Primitives.h"

namespace OX {
namespace {

// ---- Published code lengths and a reader of the codes --------------------------------------

struct Code {
  int run, amplitude;
};
const std::map<std::pair<int, int>, Code>& ListedCodes() {
  static const std::map<std::pair<int, int>, Code> codes = [] {
    std::map<std::pair<int, int>, Code> m;
    for (int i = 0; i < dv::kVLCListedCodeCount; ++i) {
      const dv::VLCCode& c = dv::kVLCListedCodes[i];
      m[{c.fLength, c.fBits}] = {c.fRun, c.fAmplitude};
    }
    return m;
  }();
  return codes;
}
// Bits of (run, amplitude) with its sign, by the published rules.
int CodeLength(int run, int amplitude) {
  for (const auto& [key, code] : ListedCodes())
    if (code.run == run && code.amplitude == amplitude && amplitude != 0) return key.first + 1;
  return -1;
}
int ZeroRunLength(int n) {
  for (const auto& [key, code] : ListedCodes())
    if (code.amplitude == 0 && code.run + 1 == n) return key.first;
  return 13;
}
// Bits of one AC coefficient of `amplitude` after `run` zeros, as the coder must write it.
int CoefficientBits(int run, int amplitude) {
  const int direct = CodeLength(run, amplitude);
  if (direct > 0) return direct;
  return (run ? ZeroRunLength(run) : 0) + (CodeLength(0, amplitude) > 0 ? CodeLength(0, amplitude) : 16);
}

struct DecodedBlock {
  int dc = 0, mode = 0, classNumber = 0;
  std::vector<int> levels = std::vector<int>(64, 0);  // by zig-zag position
  bool complete = false;
  // Reading state between passes.
  std::vector<bool> partial;
  int position = 1;
};

using Bits = std::vector<bool>;
Bits BitsOf(const uint8_t* bytes, int from, int to) {
  Bits b;
  for (int i = from; i < to; ++i) b.push_back((bytes[i >> 3] >> (7 - (i & 7))) & 1);
  return b;
}
uint32_t Peek(const Bits& b, size_t at, int n) {
  uint32_t v = 0;
  for (int i = 0; i < n; ++i) v = v << 1 | (b[at + i] ? 1 : 0);
  return v;
}

// Reads codes from `bits` at `at` into the block until the end code (true) or until the bits end
// inside a code (false; `at` stays at that code's start).
bool ReadCodes(DecodedBlock& block, const Bits& bits, size_t& at) {
  for (;;) {
    bool found = false;
    for (int length = 2; length <= 16 && !found; ++length) {
      if (at + length > bits.size()) return false;
      const uint32_t v = Peek(bits, at, length);
      if (length == 4 && v == dv::kVLCEndOfBlockBits) {
        at += 4;
        return true;
      }
      int run = -1, amplitude = 0, consumed = length;
      auto it = ListedCodes().find({length, int(v)});
      if (it != ListedCodes().end()) {
        run = it->second.run;
        amplitude = it->second.amplitude;
        if (amplitude == 0) ++run;  // a run of run + 1 zeros
      } else if (length == 13 && (v >> 6) == 0b1111110) {
        run = int(v & 63) + 1;
      } else if (length == 15 && (v >> 8) == 0x7F) {
        run = 0;
        amplitude = int(v & 0xFF);
      }
      if (run < 0) continue;
      int sign = 1;
      if (amplitude) {
        if (at + consumed + 1 > bits.size()) return false;
        sign = bits[at + consumed] ? -1 : 1;
        ++consumed;
        block.position += run;
        if (block.position < 64) block.levels[block.position] = sign * amplitude;
        ++block.position;
      } else {
        block.position += run;
      }
      at += consumed;
      found = true;
    }
    if (!found) ADD_FAILURE() << "no code matches";
    if (!found) return false;
  }
}

// Decodes the five video blocks of a segment with the three passes of the standard.
std::vector<DecodedBlock> DecodeSegment(const uint8_t* dif, int perMacroblock, const int32_t* blockBytes,
                                        int* qnos) {
  std::vector<DecodedBlock> blocks(5 * perMacroblock);
  std::vector<Bits> macroblockPools(5);
  for (int m = 0; m < 5; ++m) {
    const uint8_t* video = dif + 80 * m;
    qnos[m] = video[3] & 15;
    int offset = 4;
    for (int i = 0; i < perMacroblock; ++i) {
      DecodedBlock& b = blocks[m * perMacroblock + i];
      const Bits own = BitsOf(video + offset, 0, blockBytes[i] * 8);
      offset += blockBytes[i];
      b.dc = int(Peek(own, 0, 9));
      if (b.dc >= 256) b.dc -= 512;
      b.mode = own[9];
      b.classNumber = int(Peek(own, 10, 2));
      size_t at = 12;
      b.complete = ReadCodes(b, own, at);
      if (b.complete)
        macroblockPools[m].insert(macroblockPools[m].end(), own.begin() + long(at), own.end());
      else
        b.partial.assign(own.begin() + long(at), own.end());
    }
  }
  // Pass two inside each macroblock, pass three over what all macroblocks leave.
  auto resume = [](DecodedBlock& b, Bits& pool, size_t& poolAt) {
    Bits joined = b.partial;
    joined.insert(joined.end(), pool.begin() + long(poolAt), pool.end());
    size_t at = 0;
    b.complete = ReadCodes(b, joined, at);
    if (at >= b.partial.size()) {
      poolAt += at - b.partial.size();
      b.partial.clear();
    } else {
      b.partial.erase(b.partial.begin(), b.partial.begin() + long(at));
    }
    if (!b.complete) {
      b.partial.insert(b.partial.end(), pool.begin() + long(poolAt), pool.end());
      poolAt = pool.size();
    }
  };
  Bits segmentPool;
  for (int m = 0; m < 5; ++m) {
    size_t poolAt = 0;
    for (int i = 0; i < perMacroblock; ++i) {
      DecodedBlock& b = blocks[m * perMacroblock + i];
      if (!b.complete && poolAt < macroblockPools[m].size()) resume(b, macroblockPools[m], poolAt);
    }
    segmentPool.insert(segmentPool.end(), macroblockPools[m].begin() + long(poolAt), macroblockPools[m].end());
  }
  size_t segmentAt = 0;
  for (DecodedBlock& b : blocks)
    if (!b.complete && segmentAt < segmentPool.size()) resume(b, segmentPool, segmentAt);
  return blocks;
}

// ---- The quantisation this test expects -------------------------------------------------------

struct Expected {
  int mode, classNumber, dc;
  std::vector<int> coefficients;  // weighted, by zig-zag position
};

Expected TransformBlock(const int16_t* samples, int index) {
  int16_t a[64], b[64];
  std::memcpy(a, samples, sizeof(a));
  std::memcpy(b, samples, sizeof(b));
  VecDCT8x8Forward(a);
  VecMulTableRoundScaled(kDVForwardWeight88, a, 64, 16);
  VecDCT248Forward(b);
  VecMulTableRoundScaled(kDVForwardWeight248, b, 64, 16);
  const int zerosA = int(std::count(a, a + 64, 0)), zerosB = int(std::count(b, b + 64, 0));
  Expected e;
  e.mode = zerosA < zerosB ? 1 : 0;
  const int16_t* c = e.mode ? b : a;
  e.dc = c[0];
  e.coefficients.resize(64);
  int peak = 0;
  for (int z = 1; z < 64; ++z) {
    e.coefficients[z] = c[dv::kScan[e.mode][z]];
    peak = std::max(peak, std::abs(e.coefficients[z]));
  }
  if (index < 4)
    e.classNumber = peak < 36 ? peak / 12 : 3;
  else if (index == 4)
    e.classNumber = peak < 24 ? peak / 12 + 1 : 3;
  else
    e.classNumber = peak < 12 ? 2 : 3;
  return e;
}

int Level(const Expected& e, int z, int qno) {
  const int shift = dv::QuantShift(qno, e.classNumber, dv::AreaOfZigzag(z));
  const int magnitude = std::abs(e.coefficients[z]) >> shift;
  return e.coefficients[z] < 0 ? -magnitude : magnitude;
}

int ExpectedSegmentBits(const std::vector<Expected>& blocks, int qno) {
  int total = 0;
  for (const Expected& e : blocks) {
    int bits = 16, run = 0;
    for (int z = 1; z < 64; ++z) {
      const int level = std::abs(Level(e, z, qno));
      if (level > 255) {
        bits = kSegmentBudgetBits;
        break;
      }
      if (level == 0) {
        ++run;
        continue;
      }
      bits += CoefficientBits(run, level);
      run = 0;
    }
    total += bits;
  }
  return total;
}

// A segment of 30 blocks: `amplitude` of noise around a ramp whose slope grows with the block.
std::vector<int16_t> MakeSamples(int amplitude, uint32_t seed) {
  std::mt19937 rng(seed);
  std::uniform_int_distribution<int> noise(-amplitude, amplitude);
  std::vector<int16_t> s(30 * 64);
  for (int b = 0; b < 30; ++b)
    for (int i = 0; i < 64; ++i)
      s[b * 64 + i] = int16_t(std::clamp((i % 8) * (b % 5) * 3 - 40 + (i / 8) * (b % 3) * 4 + noise(rng), -128, 127));
  return s;
}

struct SegmentRun {
  std::vector<DecodedBlock> decoded;
  std::vector<Expected> expected;
  int qnos[5];
  uint8_t dif[400];
};

SegmentRun CompressAndRead(const std::vector<int16_t>& samples) {
  SegmentRun run;
  SegmentCompressor compressor;
  compressor.Prepare();
  for (int b = 0; b < 30; ++b) {
    std::memcpy(compressor.Samples(b / 6, b % 6), &samples[b * 64], 128);
    run.expected.push_back(TransformBlock(&samples[b * 64], b % 6));
  }
  std::memset(run.dif, 0, sizeof(run.dif));
  compressor.Compress(run.dif);
  compressor.Finish();
  run.decoded = DecodeSegment(run.dif, 6, kSDBlockBytes, run.qnos);
  return run;
}

TEST(DVEncodeSegment, BlackSegmentReachesQNO15WithSixteenBitBlocks) {
  const SegmentRun run = CompressAndRead(std::vector<int16_t>(30 * 64, 0));
  for (int m = 0; m < 5; ++m) {
    EXPECT_EQ(run.dif[80 * m + 3], 0x0F);
    for (int i = 0, offset = 4; i < 6; offset += kSDBlockBytes[i], ++i) {
      // 9 bits of DC 0, 8-8 mode, the class of a zero peak, then 0110 and nothing else.
      const int expectedClass = i < 4 ? 0 : i == 4 ? 1 : 2;
      EXPECT_EQ(run.dif[80 * m + offset], 0x00);
      EXPECT_EQ(run.dif[80 * m + offset + 1], (expectedClass << 4) | 0x6);
      for (int k = 2; k < kSDBlockBytes[i]; ++k) EXPECT_EQ(run.dif[80 * m + offset + k], 0);
    }
  }
}

TEST(DVEncodeSegment, LevelsAndQNOMatchTheQuantisationOfThePublishedTables) {
  struct Case {
    int amplitude;
    uint32_t seed;
    bool overflowsAtZero;
  };
  const Case cases[] = {{2, 1, false}, {8, 2, false}, {20, 3, false}, {40, 4, false}, {127, 5, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.amplitude);
    const SegmentRun run = CompressAndRead(MakeSamples(c.amplitude, c.seed));
    const int q = run.qnos[0];
    for (int m = 1; m < 5; ++m) EXPECT_EQ(run.qnos[m], q);
    // QNO: the highest that fits (searched from 0 for the first segment), or 0 when none does.
    const int bits = ExpectedSegmentBits(run.expected, q);
    if (c.overflowsAtZero) {
      EXPECT_EQ(q, 0);
      EXPECT_GT(bits, kSegmentBudgetBits);
    } else {
      EXPECT_LE(bits, kSegmentBudgetBits);
      if (q < 15) EXPECT_GT(ExpectedSegmentBits(run.expected, q + 1), kSegmentBudgetBits);
    }
    int incomplete = 0;
    for (size_t b = 0; b < run.decoded.size(); ++b) {
      const DecodedBlock& d = run.decoded[b];
      const Expected& e = run.expected[b];
      EXPECT_EQ(d.mode, e.mode) << b;
      EXPECT_EQ(d.classNumber, e.classNumber) << b;
      EXPECT_EQ(d.dc, std::clamp(e.dc, -256, 255)) << b;
      if (!d.complete) ++incomplete;
      // A complete block carries every level; a cut one a prefix of them.
      const int last = d.complete ? 64 : d.position;
      for (int z = 1; z < std::min(last, 64); ++z) EXPECT_EQ(d.levels[z], Level(e, z, q)) << b << " " << z;
    }
    if (c.overflowsAtZero)
      EXPECT_GT(incomplete, 0);
    else
      EXPECT_EQ(incomplete, 0);
  }
}

TEST(DVEncodeSegment, BitCountRules) {
  const uint8_t none[4] = {0, 0, 0, 0}, one[4] = {1, 1, 1, 1};
  struct Case {
    std::vector<CoefficientWord> words;
    const uint8_t* shifts;
    int bits;
  };
  auto word = [](uint32_t magnitude, uint32_t position, uint32_t zeros) {
    return CoefficientWord(magnitude << 16 | position << 8 | zeros);
  };
  const Case cases[] = {
      {{0, kEndOfWords}, none, 16},
      // (0, 1) is 2 bits and its sign.
      {{0, word(1, 1, 0), kEndOfWords}, none, 16 + 3},
      // Run 1 then amplitude 1: 4 + 1.
      {{0, word(1, 2, 1), kEndOfWords}, none, 16 + 5},
      // Amplitude 23 has no short code: the long form, 15 + 1.
      {{0, word(23, 1, 0), kEndOfWords}, none, 16 + 16},
      // Twenty zeros then 30: the 13-bit zero run and the long form.
      {{0, word(30, 21, 20), kEndOfWords}, none, 16 + 13 + 16},
      // Five zeros then 4 (run 5 reaches 3 only): the 12-bit zero run and (0, 4) in 4 + 1.
      {{0, word(4, 6, 5), kEndOfWords}, none, 16 + 12 + 5},
      // A magnitude that shifts to zero joins the run: 1 >> 1 leaves (1, 1) for the next word.
      {{0, word(1, 1, 0), word(2, 2, 0), kEndOfWords}, one, 16 + 5},
      // 256 after the shift has no code: the block counts the whole budget.
      {{0, word(256, 1, 0), kEndOfWords}, none, kSegmentBudgetBits},
      {{0, word(512, 1, 0), kEndOfWords}, one, kSegmentBudgetBits},
      {{0, word(511, 1, 0), kEndOfWords}, one, 16 + 16},
  };
  for (const Case& c : cases) EXPECT_EQ(BlockBitsFor(c.words.data(), c.shifts, 0), c.bits);
  // The DV100 form divides: 300 / 2 = 150, the long form.
  const std::vector<CoefficientWord> divided = {0, word(300, 1, 0), kEndOfWords};
  EXPECT_EQ(BlockBitsFor(divided.data(), none, 2), 16 + 16);
  EXPECT_EQ(BlockBitsFor(divided.data(), none, 1), kSegmentBudgetBits);
}

TEST(DVEncodeSegment, QNOSearchCarriesFromSegmentToSegment) {
  // A busy segment pulls QNO down; an easy one after it climbs back from there.
  SegmentCompressor compressor;
  compressor.Prepare();
  const std::vector<int16_t> busy = MakeSamples(40, 9), easy = MakeSamples(1, 10);
  uint8_t dif[400] = {};
  for (int b = 0; b < 30; ++b) std::memcpy(compressor.Samples(b / 6, b % 6), &busy[b * 64], 128);
  compressor.Compress(dif);
  const int busyQNO = compressor.LastQNO();
  EXPECT_LT(busyQNO, 15);
  for (int b = 0; b < 30; ++b) std::memcpy(compressor.Samples(b / 6, b % 6), &easy[b * 64], 128);
  compressor.Compress(dif);
  EXPECT_GT(compressor.LastQNO(), busyQNO);
  EXPECT_EQ(dif[3] & 15, compressor.LastQNO());
  compressor.Finish();
}

TEST(DVEncodeSegment, DV100LadderWalksToRowZeroOnBlackAndToTheTopOnNoise) {
  struct Case {
    int amplitude;
    int row;
  };
  // Black: DC only, far under the budget. Binary noise of full swing: over it even at row 30.
  const Case cases[] = {{0, 0}, {127, kQuantLadderRows - 1}};
  for (const Case& c : cases) {
    DV100SegmentCompressor compressor(false);
    compressor.Prepare();
    std::mt19937 rng(3);
    std::uniform_int_distribution<int> noise(-c.amplitude, c.amplitude);
    uint8_t dif[400] = {};
    for (int segment = 0; segment < 3; ++segment) {
      for (int m = 0; m < 5; ++m)
        for (int b = 0; b < 8; ++b) {
          int16_t* s = compressor.Samples(m, b);
          for (int i = 0; i < 64; ++i) s[i] = int16_t(c.amplitude ? (noise(rng) < 0 ? -c.amplitude : c.amplitude) : -112);
        }
      compressor.Compress(dif);
    }
    EXPECT_EQ(compressor.LadderIndex(), c.row);
    EXPECT_EQ(dif[3], kQuantLadder[c.row].qno);
    int qnos[5];
    static const int32_t sizes[8] = {10, 10, 10, 10, 10, 10, 8, 8};
    const std::vector<DecodedBlock> decoded = DecodeSegment(dif, 8, sizes, qnos);
    for (const DecodedBlock& d : decoded) {
      EXPECT_EQ(d.classNumber, kQuantLadder[c.row].classNumber);
      EXPECT_EQ(d.mode, 0);
      if (c.amplitude == 0) {
        EXPECT_TRUE(d.complete);
        // DC of a flat block of -112: the transform's 8 x -112, divided by 4.
        EXPECT_EQ(d.dc, -224);
      }
    }
  }
}

TEST(DVEncodeSegment, LadderStepsClimbAsPublished) {
  const int steps[kQuantLadderRows] = {1,  2,  3,  4,  5,  6,  7,  8,  10, 12, 14, 16, 18, 20,  22, 24,
                                       28, 32, 36, 40, 44, 48, 52, 56, 64, 72, 80, 88, 96, 104, 112};
  for (int r = 0; r < kQuantLadderRows; ++r) EXPECT_EQ(LadderStep(r), steps[r]) << r;
}

}  // namespace
}  // namespace OX
