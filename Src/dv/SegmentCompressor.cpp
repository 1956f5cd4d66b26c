// The SD segment compressor and the pieces the DV100 form shares: word lists, bit counts, final
// quantisation and the packer that spreads overflow over the macroblock and then the segment.
#include "dv/SegmentCompressor.h"

#include <algorithm>
#include <cstring>
#include <cstdlib>
#include <iterator>

#include "dv/DVTables.h"
#include "dv/SegmentCompressorTables.h"
#include "primitives/Primitives.h"

namespace OX {

const int32_t kSDBlockBytes[6] = {14, 14, 14, 14, 10, 10};

namespace {

// Big-endian bit sink over a block's scratch.
struct StreamWriter {
  uint8_t* out;
  uint64_t accumulator = 0;
  int pending = 0;  // bits in the accumulator, below 8 between calls
  uint32_t written = 0;

  void Put(uint32_t code, int length) {
    accumulator = (accumulator << length) | code;
    pending += length;
    written += uint32_t(length);
    while (pending >= 8) {
      pending -= 8;
      *out++ = uint8_t(accumulator >> pending);
    }
  }
  void Flush() {
    if (pending) *out = uint8_t(accumulator << (8 - pending));
  }
};

// Copies `count` bits from bit `from` of `source` to bit `to` of `destination`, whose bits there
// are zero; up to 16 bits a step, read and written through three-byte windows.
void MoveBits(const uint8_t* source, uint32_t from, uint8_t* destination, uint32_t to, uint32_t count) {
  while (count) {
    const uint32_t k = std::min<uint32_t>(count, 16);
    const uint8_t* s = source + (from >> 3);
    const uint32_t window = uint32_t(s[0]) << 16 | uint32_t(s[1]) << 8 | s[2];
    const uint32_t value = (window >> (24 - (from & 7) - k)) & ((1u << k) - 1);
    uint8_t* d = destination + (to >> 3);
    const uint32_t placed = value << (24 - (to & 7) - k);
    d[0] |= uint8_t(placed >> 16);
    d[1] |= uint8_t(placed >> 8);
    d[2] |= uint8_t(placed);
    from += k;
    to += k;
    count -= k;
  }
}

// Fills room from overflow, in list order, until one list runs out.
void Distribute(BlockBits*& room, BlockBits*& overflow) {
  while (room && overflow) {
    const uint32_t n = std::min(room->freeBits, overflow->overflowBits);
    MoveBits(overflow->out, overflow->cursor, room->out, room->cursor, n);
    room->cursor += n;
    room->freeBits -= n;
    overflow->cursor += n;
    overflow->overflowBits -= n;
    if (room->freeBits == 0) room = room->next;
    if (overflow->overflowBits == 0) overflow = overflow->next;
  }
}

// Appends the list starting at `node` to the list whose last link is `*tail`.
void AppendList(BlockBits**& tail, BlockBits* node) {
  *tail = node;
  while (node) {
    tail = &node->next;
    node = node->next;
  }
}

struct AreaShifts {
  uint8_t f[4];
};
// The four area shifts of a (QNO, class) pair, made once for all 64 pairs.
constexpr auto kAreaShifts = [] {
  struct {
    AreaShifts f[16][4];
  } t{};
  for (int q = 0; q < 16; ++q)
    for (int c = 0; c < 4; ++c)
      for (int a = 0; a < 4; ++a) t.f[q][c].f[a] = dv::QuantShift(q, c, a);
  return t;
}();
inline const AreaShifts& QuantShiftsOf(int q, int classNumber) { return kAreaShifts.f[q][classNumber]; }

// Both forms truncate: the area's shift, or the DV100 step as a divisor.
inline uint32_t QuantiseMagnitude(uint32_t magnitude, int position, const uint8_t shifts[4], int divisor) {
  return divisor ? magnitude / uint32_t(divisor) : magnitude >> shifts[dv::AreaOfZigzag(position)];
}

// Transforms `other`, a copy of the block's samples, with the 2-4-8 DCT and keeps it when it wins
// over the 8-8 result already in the block: by strictly more zero coefficients, or by a strictly
// smaller sum of AC magnitudes. A tie stays 8-8.
void DecideMode(BlockRecord& record, int16_t* other, ModeDecision rule) {
  VecDCT248Forward(other);
  VecMulTableRoundScaled(kDVForwardWeight248, other, 64, 16);
  bool take;
  if (rule == ModeDecision::kZeroCount) {
    int32_t zeros88 = 0, zeros248 = 0;
    VecCountZeros64(record.samples, &zeros88);
    VecCountZeros64(other, &zeros248);
    take = zeros88 < zeros248;
  } else {
    int sum88 = 0, sum248 = 0;
    for (int i = 1; i < 64; ++i) {
      sum88 += std::abs(record.samples[i]);
      sum248 += std::abs(other[i]);
    }
    take = sum248 < sum88;
  }
  if (take) {
    std::memcpy(record.samples, other, 64 * sizeof(int16_t));
    record.dctMode = 1;
  }
}

}  // namespace

namespace {

// The walk of BlockBitsFor, with the quantiser fixed at compile time so the loop carries no branch
// on it. Area per zig-zag position by table: 1-5, 6-20, 21-42, 43-63.
constexpr auto kAreaOf = [] {
  struct {
    uint8_t f[64];
  } t{};
  for (int z = 0; z < 64; ++z) t.f[z] = uint8_t(dv::AreaOfZigzag(z));
  return t;
}();

template <bool kDivide>
int WalkBlockBits(const CoefficientWord* words, const uint8_t shifts[4], uint32_t divisor) {
  int total = 16;
  uint32_t run = 0;
  for (const CoefficientWord* w = words + 1; *w != kEndOfWords; ++w) {
    const uint32_t word = *w;
    const uint32_t m = kDivide ? (word >> 16) / divisor : (word >> 16) >> shifts[kAreaOf.f[(word >> 8) & 0x7F]];
    run += word & 0xFF;
    if (m > 255) return kSegmentBudgetBits;
    if (m == 0) {
      ++run;
      continue;
    }
    if (m > dv::kVLCRunLimit[run]) {
      if (run) total += gDVZeroRunCodes[run].length;
      total += gDVRunLevelCodes[0][m].length;
    } else {
      total += gDVRunLevelCodes[run][m].length;
    }
    run = 0;
  }
  return total;
}

}  // namespace

int BlockBitsFor(const CoefficientWord* words, const uint8_t shifts[4], int divisor) {
  return divisor ? WalkBlockBits<true>(words, shifts, uint32_t(divisor)) : WalkBlockBits<false>(words, shifts, 1);
}

void LoadYUYV16x8(const uint8_t* topLeft, ptrdiff_t rowBytes, int16_t* left, int16_t* right, int16_t* v,
                  int16_t* u) {
  for (int r = 0; r < 8; ++r) {
    const uint8_t* p = topLeft + r * rowBytes;
    for (int i = 0; i < 8; ++i) {
      // Pixel pair i: Y0 U Y1 V.
      const uint8_t* pair = p + 4 * i;
      int16_t* luma = i < 4 ? left + 8 * r + 2 * i : right + 8 * r + 2 * (i - 4);
      luma[0] = int16_t(pair[0] - 128);
      luma[1] = int16_t(pair[2] - 128);
      u[8 * r + i] = int16_t(pair[1] - 128);
      v[8 * r + i] = int16_t(pair[3] - 128);
    }
  }
}

SegmentCompressor::SegmentCompressor() : SegmentCompressor(6, kSDBlockBytes) {}

SegmentCompressor::SegmentCompressor(int blocksPerMacroblockIn, const int32_t* blockBytesIn)
    : blocksPerMacroblock(blocksPerMacroblockIn), blockBytes(blockBytesIn) {}

SegmentCompressor::~SegmentCompressor() = default;

void SegmentCompressor::Prepare() {
  blocks = blockStore;
  bits = bitsStore;
  for (int b = 0; b < kMaxBlocks; ++b) {
    blocks[b] = {coefficients + 64 * b, 0, 0, words + 65 * b};
    bits[b] = {};
    bits[b].out = packed + 128 * b;
  }
  std::memset(coefficients, 0, sizeof(coefficients));
}

void SegmentCompressor::Finish() {
  blocks = nullptr;
  bits = nullptr;
  std::fill(std::begin(roomHeads), std::end(roomHeads), nullptr);
  std::fill(std::begin(overflowHeads), std::end(overflowHeads), nullptr);
  segmentRoom = segmentOverflow = nullptr;
}

int SegmentCompressor::ScanBlock(int b, const uint8_t* zigzag, int dc) {
  const int16_t* c = blocks[b].samples;
  CoefficientWord* out = blocks[b].wordList;
  *out++ = uint32_t(uint16_t(int16_t(dc)));
  uint32_t zeros = 0;
  int peak = 0;
  for (uint32_t n = 1; n < 64; ++n) {
    const int v = c[zigzag[n]];
    if (v == 0) {
      ++zeros;
      continue;
    }
    const uint32_t magnitude = uint32_t(v < 0 ? -v : v);
    peak = std::max(peak, int(magnitude));
    *out++ = magnitude << 16 | uint32_t(v < 0) << 15 | n << 8 | zeros;
    zeros = 0;
  }
  *out = kEndOfWords;
  return peak;
}

int SegmentCompressor::SearchQNO(int start) const {
  // Only the comparison with the budget matters, so each count may stop once past it.
  const int budget = kSegmentBudgetBits;
  int q = start;
  if (SegmentBitsAtQNO(q, budget) <= budget) {
    while (q < 15 && SegmentBitsAtQNO(q + 1, budget) <= budget) ++q;
  } else {
    while (q > 0) {
      --q;
      if (q == 0 || SegmentBitsAtQNO(q, budget) <= budget) break;
    }
  }
  return q;
}

int SegmentCompressor::SegmentBitsAtQNO(int q, int limit) const {
  int total = 0;
  for (int b = 0; b < BlockCount() && total <= limit; ++b)
    total += BlockBitsFor(blocks[b].wordList, QuantShiftsOf(q, blocks[b].classNumber).f, 0);
  return total;
}

void SegmentCompressor::FinalQuantise(const uint8_t (*shifts)[4], int divisor) {
  for (int b = 0; b < BlockCount(); ++b) {
    CoefficientWord* w = blocks[b].wordList + 1;
    CoefficientWord* out = w;
    uint32_t run = 0;
    for (; *w != kEndOfWords; ++w) {
      const uint32_t word = *w;
      uint32_t m = QuantiseMagnitude(word >> 16, (word >> 8) & 0x7F, shifts[b], divisor);
      run += word & 0xFF;
      if (m == 0) {
        ++run;
        continue;
      }
      // Only reached when even QNO 0 leaves a magnitude past the code range.
      m = std::min<uint32_t>(m, 255);
      const uint32_t sign = (word >> 15) & 1;
      VLCCode code;
      uint32_t zeroRun = 0;
      if (m > dv::kVLCRunLimit[run]) {
        code = gDVRunLevelCodes[0][m];
        zeroRun = run;
      } else {
        code = gDVRunLevelCodes[run][m];
      }
      *out++ = uint32_t(code.code | sign) << 16 | zeroRun << 8 | code.length;
      run = 0;
    }
    *out = kEndOfWords;
  }
}

void SegmentCompressor::PackAndStore(uint8_t* firstVideoBlock, const uint8_t qnos[5]) {
  const int count = BlockCount();
  std::memset(packed, 0, sizeof(packed));
  for (int b = 0; b < count; ++b) {
    BlockBits& bb = bits[b];
    const BlockRecord& record = blocks[b];
    bb.out = packed + 128 * b;
    bb.capacityBits = uint32_t(blockBytes[b % blocksPerMacroblock]) * 8;
    bb.freeBits = 32;
    bb.overflowBits = 0;
    bb.next = nullptr;
    StreamWriter writer{bb.out};
    const int dc = std::clamp(int(int16_t(record.wordList[0])), -256, 255);
    writer.Put(uint32_t(dc) & 0x1FF, 9);
    writer.Put(record.dctMode & 1, 1);
    writer.Put(record.classNumber & 3, 2);
    for (const CoefficientWord* w = record.wordList + 1; *w != kEndOfWords; ++w) {
      const uint32_t zeroRun = (*w >> 8) & 0x7F;
      if (zeroRun) writer.Put(gDVZeroRunCodes[zeroRun].code, gDVZeroRunCodes[zeroRun].length);
      writer.Put(*w >> 16, int(*w & 0xFF));
    }
    writer.Put(dv::kVLCEndOfBlockBits, dv::kVLCEndOfBlockLength);
    writer.Flush();
    bb.accumulator = writer.accumulator;
    bb.usedBits = writer.written;
  }

  // Room and overflow per macroblock, in block order.
  for (int m = 0; m < 5; ++m) {
    BlockBits** roomTail = &roomHeads[m];
    BlockBits** overflowTail = &overflowHeads[m];
    *roomTail = *overflowTail = nullptr;
    for (int i = 0; i < blocksPerMacroblock; ++i) {
      BlockBits& bb = bits[m * blocksPerMacroblock + i];
      if (bb.usedBits < bb.capacityBits) {
        bb.freeBits = bb.capacityBits - bb.usedBits;
        bb.cursor = bb.usedBits;
        *roomTail = &bb;
        roomTail = &bb.next;
      } else if (bb.usedBits > bb.capacityBits) {
        bb.freeBits = 0;
        bb.overflowBits = bb.usedBits - bb.capacityBits;
        bb.cursor = bb.capacityBits;
        *overflowTail = &bb;
        overflowTail = &bb.next;
      } else {
        bb.freeBits = 0;
      }
    }
  }
  // Pass one inside each macroblock; what is left joins the segment's lists in macroblock order.
  segmentRoom = segmentOverflow = nullptr;
  BlockBits** roomTail = &segmentRoom;
  BlockBits** overflowTail = &segmentOverflow;
  for (int m = 0; m < 5; ++m) {
    BlockBits* room = roomHeads[m];
    BlockBits* overflow = overflowHeads[m];
    Distribute(room, overflow);
    AppendList(roomTail, room);
    AppendList(overflowTail, overflow);
  }
  // Pass two across the segment; overflow that still finds no room is dropped.
  BlockBits* room = segmentRoom;
  BlockBits* overflow = segmentOverflow;
  Distribute(room, overflow);

  for (int m = 0; m < 5; ++m) {
    uint8_t* dif = firstVideoBlock + 80 * m;
    dif[3] = uint8_t(qnos[m] & 0x0F);
    int offset = 4;
    for (int i = 0; i < blocksPerMacroblock; ++i) {
      std::memcpy(dif + offset, bits[m * blocksPerMacroblock + i].out, size_t(blockBytes[i]));
      offset += blockBytes[i];
    }
  }
}

namespace {

// Squared error of a coefficient in the picture, relative, by mode and zig-zag position: the
// weighting scaled the coefficient by table / 65536 before quantisation. With the position's area
// beside it, so that the walk below reads one entry a word.
struct PositionFactors {
  float inverseWeight2[2][64];
  uint8_t area[64];
};
const PositionFactors kPositionFactors = [] {
  PositionFactors t{};
  for (int z = 0; z < 64; ++z) {
    const double w88 = kDVForwardWeight88[dv::kScan88.f[z]], w248 = kDVForwardWeight248[dv::kScan248.f[z]];
    t.inverseWeight2[0][z] = float(1.0 / (w88 * w88));
    t.inverseWeight2[1][z] = float(1.0 / (w248 * w248));
    t.area[z] = uint8_t(dv::AreaOfZigzag(z));
  }
  return t;
}();

struct BlockCost {
  int bits;
  float distortion;
};

// Bits and quantisation error of one block at the given area shifts, in one walk of its words
// by the rules of BlockBitsFor.
BlockCost CostOf(const BlockRecord& record, const uint8_t shifts[4]) {
  const float* inverse = kPositionFactors.inverseWeight2[record.dctMode];
  float distortion = 0;
  int bits = 16;
  uint32_t run = 0;
  for (const CoefficientWord* w = record.wordList + 1; *w != kEndOfWords; ++w) {
    const uint32_t word = *w;
    const int position = (word >> 8) & 0x7F;
    const uint32_t magnitude = word >> 16;
    const int shift = shifts[kPositionFactors.area[position]];
    const uint32_t m = magnitude >> shift;
    const float error = float(magnitude - (m << shift));
    distortion += error * error * inverse[position];
    run += word & 0xFF;
    if (m > 255) return {kSegmentBudgetBits, distortion};
    if (m == 0) {
      ++run;
      continue;
    }
    if (m > dv::kVLCRunLimit[run]) {
      if (run) bits += gDVZeroRunCodes[run].length;
      bits += gDVRunLevelCodes[0][m].length;
    } else {
      bits += gDVRunLevelCodes[run][m].length;
    }
    run = 0;
  }
  return {bits, distortion};
}

// The gain of a step: distortion saved per bit spent; a step that saves bits comes first.
double Score(int bits, double saved) { return bits <= 0 ? 1e300 : saved / bits; }

}  // namespace

void SegmentCompressor::Refine(uint8_t qnos[5]) {
  const int count = BlockCount();
  const int per = blocksPerMacroblock;
  BlockCost current[kMaxBlocks];
  // Costs of the candidate steps, kept until the block or macroblock they belong to changes.
  BlockCost finerClass[kMaxBlocks];
  BlockCost finerQNO[kMaxBlocks];
  bool classValid[kMaxBlocks] = {};
  bool qnoValid[5] = {};
  int total = 0;
  for (int b = 0; b < count; ++b) {
    current[b] = CostOf(blocks[b], QuantShiftsOf(qnos[b / per], blocks[b].classNumber).f);
    total += current[b].bits;
  }
  for (;;) {
    const int slack = kSegmentBudgetBits - total;
    int best = -1;
    double bestScore = 0;
    for (int b = 0; b < count; ++b) {
      if (blocks[b].classNumber == 0) continue;
      if (!classValid[b]) {
        finerClass[b] = CostOf(blocks[b], QuantShiftsOf(qnos[b / per], blocks[b].classNumber - 1).f);
        classValid[b] = true;
      }
      const int bits = finerClass[b].bits - current[b].bits;
      const double saved = double(current[b].distortion) - finerClass[b].distortion;
      if (bits > slack || saved <= 0) continue;
      const double score = Score(bits, saved);
      if (score > bestScore) {
        bestScore = score;
        best = b;
      }
    }
    for (int m = 0; m < 5; ++m) {
      if (qnos[m] == 15) continue;
      int bits = 0;
      double saved = 0;
      for (int b = m * per; b < (m + 1) * per; ++b) {
        if (!qnoValid[m]) finerQNO[b] = CostOf(blocks[b], QuantShiftsOf(qnos[m] + 1, blocks[b].classNumber).f);
        bits += finerQNO[b].bits - current[b].bits;
        saved += double(current[b].distortion) - finerQNO[b].distortion;
      }
      qnoValid[m] = true;
      if (bits > slack || saved <= 0) continue;
      const double score = Score(bits, saved);
      if (score > bestScore) {
        bestScore = score;
        best = count + m;
      }
    }
    if (best < 0) return;
    if (best < count) {
      --blocks[best].classNumber;
      total += finerClass[best].bits - current[best].bits;
      current[best] = finerClass[best];
      classValid[best] = false;
      qnoValid[best / per] = false;
    } else {
      const int m = best - count;
      ++qnos[m];
      for (int b = m * per; b < (m + 1) * per; ++b) {
        total += finerQNO[b].bits - current[b].bits;
        current[b] = finerQNO[b];
        classValid[b] = false;
      }
      qnoValid[m] = false;
    }
  }
}

void SegmentCompressor::Compress(uint8_t* firstVideoBlock) {
  const int count = BlockCount();
  alignas(16) int16_t other[64];
  for (int b = 0; b < count; ++b) {
    BlockRecord& record = blocks[b];
    int16_t* s = record.samples;
    const bool decide = modeDecision != ModeDecision::kOff;
    if (decide) std::memcpy(other, s, sizeof(other));
    VecDCT8x8Forward(s);
    VecMulTableRoundScaled(kDVForwardWeight88, s, 64, 16);
    record.dctMode = 0;
    if (decide) DecideMode(record, other, modeDecision);
    const int peak = ScanBlock(b, dv::kScan[record.dctMode], s[0]);

    const int index = b % blocksPerMacroblock;
    int cls;
    if (index < 4)
      cls = peak < 36 ? peak / 12 : 3;
    else if (index == 4)
      cls = peak < 24 ? peak / 12 + 1 : 3;
    else
      cls = peak < 12 ? 2 : 3;
    record.classNumber = uint8_t(cls);
  }

  const int q = SearchQNO(lastQNO);
  lastQNO = uint8_t(q);

  uint8_t qnos[5] = {uint8_t(q), uint8_t(q), uint8_t(q), uint8_t(q), uint8_t(q)};
  if (refine) {
    // Start two QNO coarser than the search found, so the refinement has bits to place.
    for (uint8_t& x : qnos) x = uint8_t(std::max(q - 2, 0));
    Refine(qnos);
  }
  uint8_t shifts[kMaxBlocks][4];
  for (int b = 0; b < count; ++b)
    std::memcpy(shifts[b], QuantShiftsOf(qnos[b / blocksPerMacroblock], blocks[b].classNumber).f, 4);
  FinalQuantise(shifts, 0);
  PackAndStore(firstVideoBlock, qnos);
}

}  // namespace OX
