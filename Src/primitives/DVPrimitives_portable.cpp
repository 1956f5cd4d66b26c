// DV operations of the primitive layer, portable form: segment decode with the three placement
// passes of the published bit distribution, and the DV50 / DV100 row packers.
#include <algorithm>
#include <cstring>

#include "primitives/DVPrimitives.h"

namespace OX::portable {
namespace {

// Big-endian bit reader over `bytes` bytes with an end at bit `end`, preceded by up to 15 bits
// carried over from a code that did not fit in the block's previous range.
struct BitCursor {
  const uint8_t* fData;
  int fBytes;
  int fPos;
  int fEnd;
  uint32_t fCarry = 0;
  int fCarryBits = 0;

  int Remaining() const { return fCarryBits + std::max(0, fEnd - fPos); }
  // The next 16 bits, most significant first; bits past the data read as zero.
  uint32_t Peek16() const {
    uint64_t v = 0;
    const int byte = fPos >> 3;
    for (int i = 0; i < 5; ++i) {
      const int b = byte + i;
      v = (v << 8) | (b >= 0 && b < fBytes && fPos < fEnd ? fData[b] : 0u);
    }
    uint32_t w = uint32_t(v >> (8 - (fPos & 7)));
    if (fCarryBits) w = (fCarry << (32 - fCarryBits)) | (w >> fCarryBits);
    return w >> 16;
  }
  void Skip(int n) {
    if (n <= fCarryBits) {
      fCarryBits -= n;
      fCarry &= (1u << fCarryBits) - 1;
    } else {
      fPos += n - fCarryBits;
      fCarry = 0;
      fCarryBits = 0;
    }
  }
};

// Collects left-over bits of finished blocks, in order.
struct BitSink {
  uint8_t* fData;
  int fBits = 0;
  void Put(uint32_t bits, int n) {
    for (int i = n - 1; i >= 0; --i, ++fBits) {
      if ((bits >> i) & 1) fData[fBits >> 3] |= uint8_t(0x80 >> (fBits & 7));
    }
  }
  void Append(BitCursor& from) {
    while (from.Remaining() > 0) {
      const int n = std::min(16, from.Remaining());
      Put(from.Peek16() >> (16 - n), n);
      from.Skip(n);
    }
  }
};

struct BlockState {
  int16_t* fCoefficients;
  const uint8_t* fOrder;
  int fPos = 1;             // next scan position; the DC is position 0
  uint32_t fCarry = 0;      // bits of a code cut by the end of the previous range
  int fCarryBits = 0;
  bool fComplete = false;   // ended on the end-of-block code
  bool fEnded = false;      // no more data is read into it (complete or damaged)
};

// Reads codes into `block` until its end, or until `cursor` runs out (the cut code's bits are
// kept in the block for the next range).
void DecodeBlock(BlockState& block, BitCursor& cursor, const uint32_t* table) {
  while (!block.fEnded) {
    const int available = cursor.Remaining();
    if (available == 0) return;
    const uint32_t w = cursor.Peek16();
    const uint32_t peek9 = w >> 7;
    int length, run, value;
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
    if (length == int(kDVVLCEmptyLength)) {  // not a code: nothing more can be read
      block.fEnded = true;
      return;
    }
    if (length > available) {
      block.fCarry = w >> (16 - available);
      block.fCarryBits = available;
      cursor.Skip(available);
      return;
    }
    cursor.Skip(length);
    const int target = block.fPos + run;
    if (target > 63) {
      block.fEnded = true;
      block.fComplete = run == kDVEndOfBlockRun;
      return;
    }
    block.fCoefficients[block.fOrder[target]] = int16_t(value);
    block.fPos = target + 1;
  }
}

// Hands the bits of `spare` to the unfinished blocks in order, each resuming its cut code.
void FeedUnfinished(BlockState* blocks, int count, BitCursor& spare, const uint32_t* table) {
  for (int b = 0; b < count && spare.Remaining() > 0; ++b) {
    BlockState& block = blocks[b];
    if (block.fEnded) continue;
    spare.fCarry = block.fCarry;
    spare.fCarryBits = block.fCarryBits;
    block.fCarryBits = 0;
    DecodeBlock(block, spare, table);
    spare.fCarry = 0;
    spare.fCarryBits = 0;
  }
}

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
  BlockState blocks[kMacroblocks][8];
  // Left-over bits: at most 67 bytes a macroblock, 5 of them for the segment.
  alignas(16) uint8_t macroblockSpare[kMacroblocks][80];
  alignas(16) uint8_t segmentSpare[5 * 80];
  std::memset(macroblockSpare, 0, sizeof(macroblockSpare));
  std::memset(segmentSpare, 0, sizeof(segmentSpare));
  BitSink segmentSink{segmentSpare};

  for (int m = 0; m < kMacroblocks; ++m) {
    const uint8_t* difBlock = segment + m * 80;
    const uint32_t qno = difBlock[3] & 15;
    BitSink sink{macroblockSpare[m]};
    // Pass 1: every block from its own bits.
    for (int b = 0; b < layout.fBlocks; ++b) {
      const int offset = layout.fOffset[b];
      const int index = m * layout.fBlocks + b;
      BlockState& block = blocks[m][b];
      block.fCoefficients = coefficients + index * 64;
      const uint8_t second = difBlock[offset + 1];
      block.fOrder = order + (layout.fTwoOrders && (second & 0x40) ? 64 : 0);
      // 9-bit signed DC, placed in the top of the 16 bits.
      const int dc = (int(difBlock[offset]) << 1 | second >> 7) - ((difBlock[offset] & 0x80) ? 512 : 0);
      block.fCoefficients[0] = int16_t(dc * 128);
      blockInfo[index] = qno << 16 | (second & 0x70u);
      BitCursor cursor{difBlock, offset + layout.fSize[b], offset * 8 + 12, (offset + layout.fSize[b]) * 8};
      DecodeBlock(block, cursor, table);
      if (block.fComplete) sink.Append(cursor);
    }
    // Pass 2: unfinished blocks take the macroblock's left-over bits in block order.
    BitCursor spare{macroblockSpare[m], 80, 0, sink.fBits};
    FeedUnfinished(blocks[m], layout.fBlocks, spare, table);
    segmentSink.Append(spare);
  }
  // Pass 3: unfinished blocks of the whole segment take what is left anywhere in it.
  BitCursor spare{segmentSpare, int(sizeof(segmentSpare)), 0, segmentSink.fBits};
  for (int m = 0; m < kMacroblocks; ++m) FeedUnfinished(blocks[m], layout.fBlocks, spare, table);
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

int32_t DV50PackRows(const int16_t* const* blockPointers, uint8_t* const* rowPointers, int32_t rowStep) {
  if (!blockPointers || !rowPointers) return -8;
  if (rowStep < 1) return -6;
  for (int j = 0; j < 5; ++j) {
    const int16_t* b = blockPointers[j];
    for (int r = 0; r * rowStep < 8; ++r) {
      const int row = r * rowStep * 8;
      PackRow(b + row, b + 128 + row, b + 320 + row, b + 256 + row, rowPointers[j * 8 + r]);
    }
  }
  return 0;
}

int32_t DV100PackRows(const int16_t* coefficients, uint8_t* const* rowPointers, int32_t rowStep) {
  if (!coefficients || !rowPointers) return -8;
  if (rowStep < 1) return -6;
  for (int j = 0; j < 5; ++j) {
    const int16_t* mb = coefficients + j * 8 * 64;
    for (int h = 0; h < 2; ++h) {
      const int16_t* y = mb + (h ? 2 : 0) * 64;
      const int16_t* v = mb + (4 + h) * 64;
      const int16_t* u = mb + (6 + h) * 64;
      for (int r = 0; r * rowStep < 8; ++r) {
        const int row = r * rowStep * 8;
        PackRow(y + row, y + 64 + row, u + row, v + row, rowPointers[j * 16 + h * 8 + r]);
      }
    }
  }
  return 0;
}

}  // namespace OX::portable
