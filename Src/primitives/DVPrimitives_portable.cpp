// DV operations of the primitive layer, portable form: segment decode with the three placement
// passes of the published bit distribution, and the DV50 / DV100 row packers.
#include <cstring>

#include "primitives/DVPrimitives.h"

namespace OX::portable {
namespace {

// The segment is copied into a buffer with zero padding, so that 16 bits can be read at any bit
// position of it with one unaligned load.
constexpr int kSegmentBytes = 400;
constexpr int kPaddedSegmentBytes = kSegmentBytes + 16;

inline uint32_t Peek16(const uint8_t* data, int bitPosition) {
  uint32_t word;
  std::memcpy(&word, data + (bitPosition >> 3), 4);
  word = __builtin_bswap32(word);
  return (word << (bitPosition & 7)) >> 16;
}

// A run of bits of the segment, [fPos, fEnd).
struct Range {
  int fPos, fEnd;
};

struct BlockState {
  int16_t* fCoefficients;
  const uint8_t* fOrder;
  int fPos;             // next scan position; the DC is position 0
  uint32_t fCarry;      // bits of a code cut by the end of the previous range
  int fCarryBits;
  bool fComplete;       // ended on the end-of-block code
  bool fEnded;          // no more data is read into it (complete or damaged)
};

// Resolves the code at the top of the 16-bit window `w`: length (with sign), run and value.
inline void Lookup(uint32_t w, const uint32_t* table, int& length, int& run, int& value) {
  const uint32_t peek9 = w >> 7;
  if (peek9 < uint32_t(kDVSecondLevelLimit)) {
    const uint32_t e = peek9 < uint32_t(kDVFirstLevelLimit) ? table[peek9] : table[512 + ((w >> 3) & 511)];
    length = int(e & 0xFF);
    run = int((e >> 8) & 0xFF);
    value = int16_t(e >> 16);
  } else {
    // Long form: seven ones, eight bits of magnitude, the sign.
    length = 16;
    run = 0;
    value = int((w >> 1) & 0xFF) * 64;
    if (w & 1) value = -value;
  }
}

// Places one decoded code; true when it ended the block.
inline bool Place(BlockState& block, int run, int value) {
  const int target = block.fPos + run;
  if (target > 63) {
    block.fEnded = true;
    block.fComplete = run == kDVEndOfBlockRun;
    return true;
  }
  block.fCoefficients[block.fOrder[target]] = int16_t(value);
  block.fPos = target + 1;
  return false;
}

// Reads codes of `range` into `block`. Returns true when the block ended (the rest of the
// range is left in it), false when the range ran out (a cut code's bits are kept in the block).
bool DecodeRange(BlockState& block, const uint8_t* data, Range& range, const uint32_t* table) {
  int length, run, value;
  if (block.fCarryBits) {
    // The code cut at the end of the previous range continues here.
    const int carried = block.fCarryBits;
    const int available = carried + (range.fEnd - range.fPos);
    const uint32_t w = ((block.fCarry << (16 - carried)) | (Peek16(data, range.fPos) >> carried)) & 0xFFFF;
    Lookup(w, table, length, run, value);
    if (length == int(kDVVLCEmptyLength)) return block.fEnded = true;
    if (length > available) {
      block.fCarry = w >> (16 - available);
      block.fCarryBits = available;
      range.fPos = range.fEnd;
      return false;
    }
    range.fPos += length - carried;
    block.fCarryBits = 0;
    if (Place(block, run, value)) return true;
  }
  // The hot loop keeps the positions in locals and writes them back on the way out, so that
  // the coefficient stores do not force them through memory on every code.
  int16_t* const coefficients = block.fCoefficients;
  const uint8_t* const order = block.fOrder;
  int scanPos = block.fPos;
  int bitPos = range.fPos;
  const int end = range.fEnd;
  for (;;) {
    const int available = end - bitPos;
    if (available <= 0) {
      range.fPos = bitPos;
      block.fPos = scanPos;
      return false;
    }
    const uint32_t w = Peek16(data, bitPos);
    Lookup(w, table, length, run, value);
    if (length == int(kDVVLCEmptyLength)) {  // not a code
      range.fPos = bitPos;
      block.fPos = scanPos;
      return block.fEnded = true;
    }
    if (length > available) {
      block.fCarry = w >> (16 - available);
      block.fCarryBits = available;
      range.fPos = end;
      block.fPos = scanPos;
      return false;
    }
    bitPos += length;
    const int target = scanPos + run;
    if (target > 63) {
      block.fEnded = true;
      block.fComplete = run == kDVEndOfBlockRun;
      range.fPos = bitPos;
      block.fPos = scanPos;
      return true;
    }
    coefficients[order[target]] = int16_t(value);
    scanPos = target + 1;
  }
}

// Left-over bits, as ranges of the segment in the order they are handed on.
struct RangeQueue {
  Range fRanges[40];
  int fCount = 0;
  int fNext = 0;
  void Push(Range r) {
    if (r.fEnd > r.fPos) fRanges[fCount++] = r;
  }
  // Hands the queued bits to the unfinished blocks in order, each resuming its cut code.
  void Feed(BlockState* blocks, int count, const uint8_t* data, const uint32_t* table) {
    for (int b = 0; b < count && fNext < fCount; ++b) {
      BlockState& block = blocks[b];
      if (block.fEnded) continue;
      while (fNext < fCount && !DecodeRange(block, data, fRanges[fNext], table)) ++fNext;
    }
  }
  // What is left goes on to `to`.
  void MoveRestTo(RangeQueue& to) {
    for (int i = fNext; i < fCount; ++i) to.Push(fRanges[i]);
  }
};

struct Layout {
  int fBlocks;
  uint8_t fOffset[8];
  uint8_t fSize[8];
  bool fTwoOrders;
};
constexpr Layout kSixBlocks = {6, {4, 18, 32, 46, 60, 70}, {14, 14, 14, 14, 10, 10}, true};
constexpr Layout kEightBlocks = {8, {4, 14, 24, 34, 44, 54, 64, 72}, {10, 10, 10, 10, 10, 10, 8, 8}, false};

int32_t DecodeSegment(const Layout& layout, const uint8_t* segment, const uint8_t* order, const void* tablePointer,
                      int16_t* coefficients, uint32_t* blockInfo) {
  if (!segment || !order || !tablePointer || !coefficients || !blockInfo) return -8;
  const uint32_t* table = static_cast<const uint32_t*>(tablePointer);
  constexpr int kMacroblocks = 5;
  alignas(16) uint8_t data[kPaddedSegmentBytes];
  std::memcpy(data, segment, kSegmentBytes);
  std::memset(data + kSegmentBytes, 0, kPaddedSegmentBytes - kSegmentBytes);

  BlockState blocks[kMacroblocks][8];
  RangeQueue segmentQueue;
  for (int m = 0; m < kMacroblocks; ++m) {
    const uint8_t* difBlock = data + m * 80;
    const uint32_t qno = difBlock[3] & 15;
    RangeQueue queue;
    // Pass 1: every block from its own bits.
    for (int b = 0; b < layout.fBlocks; ++b) {
      const int offset = layout.fOffset[b];
      const int index = m * layout.fBlocks + b;
      const uint8_t second = difBlock[offset + 1];
      BlockState& block = blocks[m][b];
      block = {coefficients + index * 64, order + (layout.fTwoOrders && (second & 0x40) ? 64 : 0), 1, 0, 0, false,
               false};
      // 9-bit signed DC, placed in the top of the 16 bits.
      const int dc = (int(difBlock[offset]) << 1 | second >> 7) - ((difBlock[offset] & 0x80) ? 512 : 0);
      block.fCoefficients[0] = int16_t(dc * 128);
      blockInfo[index] = qno << 16 | (second & 0x70u);
      Range own = {(m * 80 + offset) * 8 + 12, (m * 80 + offset + layout.fSize[b]) * 8};
      if (DecodeRange(block, data, own, table) && block.fComplete) queue.Push(own);
    }
    // Pass 2: unfinished blocks take the macroblock's left-over bits in block order.
    queue.Feed(blocks[m], layout.fBlocks, data, table);
    queue.MoveRestTo(segmentQueue);
  }
  // Pass 3: unfinished blocks of the whole segment take what is left anywhere in it.
  for (int m = 0; m < kMacroblocks; ++m) segmentQueue.Feed(blocks[m], layout.fBlocks, data, table);
  return 0;
}

inline uint8_t Clamp8(int v) {
  v += 128;
  return uint8_t(v < 0 ? 0 : v > 255 ? 255 : v);
}

// One row of 16 YUYV pixels from two 8-sample luma rows and one 8-sample row of each chroma.
inline void PackRow(const int16_t* y0, const int16_t* y1, const int16_t* u, const int16_t* v, uint8_t* out) {
  for (int p = 0; p < 8; ++p) {
    const int16_t* y = p < 4 ? y0 + 2 * p : y1 + 2 * (p - 4);
    out[4 * p + 0] = Clamp8(y[0]);
    out[4 * p + 1] = Clamp8(u[p]);
    out[4 * p + 2] = Clamp8(y[1]);
    out[4 * p + 3] = Clamp8(v[p]);
  }
}

}  // namespace

int32_t DVDecodeSegment(const uint8_t* segment, const uint8_t* order, const void* table, int16_t* coefficients,
                        uint32_t* blockInfo) {
  return DecodeSegment(kSixBlocks, segment, order, table, coefficients, blockInfo);
}

int32_t DV100DecodeSegment(const uint8_t* segment, const uint8_t* order, const void* table, int16_t* coefficients,
                           uint32_t* blockInfo) {
  return DecodeSegment(kEightBlocks, segment, order, table, coefficients, blockInfo);
}

void DVStoreSamples(const int16_t* source, int32_t sourceStep, uint8_t* destination, int32_t destinationRowBytes,
                    int32_t width, int32_t rows) {
  for (int32_t r = 0; r < rows; ++r, source += sourceStep, destination += destinationRowBytes)
    for (int32_t i = 0; i < width; ++i) destination[i] = Clamp8(source[i]);
}

#include "primitives/DVPackRows.inl"

}  // namespace OX::portable
