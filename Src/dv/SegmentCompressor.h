// The DV segment compressor: five macroblocks of one video segment into five 80-byte DIF video
// blocks under the segment's bit budget. The SD form decides the DCT mode and class per block and
// searches QNO; the DV100 form (DV100Compressor.h) shares the word lists, the final quantisation
// and the packer and replaces the rate control.
#pragma once

#include <cstddef>
#include <cstdint>

namespace OX {

// One block of the segment: its samples (transformed in place), mode, class and word list.
struct BlockRecord {
  int16_t* samples;
  uint8_t dctMode;      // 0: 8-8, 1: 2-4-8
  uint8_t classNumber;  // 0 to 3
  uint32_t* wordList;
};

// The bit stream of one block while the packer forms it and moves its overflow.
struct BlockBits {
  uint8_t* out;           // the block's scratch stream, big-endian bits
  uint32_t freeBits;      // room left in the block's own area after its stream
  uint32_t capacityBits;  // size of its area in the DIF block
  uint32_t overflowBits;  // stream bits past the area still to be placed
  uint64_t accumulator;   // stream bits not yet written to `out`
  BlockBits* next;        // next block of the list it is on
  uint32_t usedBits;      // length of the whole stream
  uint32_t cursor;        // room: next free bit; overflow: next bit to move
};

// A CoefficientWord as the scan makes it: magnitude in bits 31-16, sign in bit 15, zig-zag
// position 1-63 in bits 14-8, zeros skipped since the previous coefficient in bits 7-0. After
// the final quantisation: the code with its sign bit in 31-16, a zero run to emit first in
// 14-8 and the code length in 7-0. 0x4000 (position 64) ends a list.
using CoefficientWord = uint32_t;
inline constexpr CoefficientWord kEndOfWords = 0x4000;

enum class ModeDecision : uint8_t { kZeroCount, kAbsoluteSum, kOff };

class SegmentCompressor {
 public:
  static constexpr int kMaxBlocks = 40;  // 5 macroblocks of up to 8 blocks

  SegmentCompressor();
  virtual ~SegmentCompressor();
  SegmentCompressor(const SegmentCompressor&) = delete;
  SegmentCompressor& operator=(const SegmentCompressor&) = delete;

  // Lays out the records inside the object's storage; call once before the first Compress.
  void Prepare();
  // Reads the samples of all blocks (signed, 64 a block in raster order), writes QNO into byte 3
  // of the five video blocks from `firstVideoBlock` and the packed data into their payloads.
  virtual void Compress(uint8_t* firstVideoBlock);
  // Clears the layout; the object is not used afterwards.
  void Finish();

  // Where a driver writes block `block` of macroblock `macroblock`.
  int16_t* Samples(int macroblock, int block) { return blocks[macroblock * blocksPerMacroblock + block].samples; }
  int BlocksPerMacroblock() const { return blocksPerMacroblock; }
  uint8_t LastQNO() const { return lastQNO; }
  // How a block chooses between the 8-8 and 2-4-8 transforms: by zero count (the DV50 rule), by
  // the sum of AC magnitudes, or not at all (8-8 only: half the transform work, for drafts).
  void SetModeDecision(ModeDecision rule) { modeDecision = rule; }
  // After the QNO search, refine QNO per macroblock and class per block within the budget.
  void SetRefinement(bool on) { refine = on; }
  const BlockRecord& Block(int index) const { return blocks[index]; }

  // Bits the segment takes at quantiser QNO `q` with the current word lists and classes; the
  // count stops at the first block that takes it past `limit`.
  int SegmentBitsAtQNO(int q, int limit = 1 << 30) const;
  // The QNO search from `start`: up while the next QNO fits the budget, down until one fits
  // (QNO 0 is taken untested).
  int SearchQNO(int start) const;

 protected:
  SegmentCompressor(int blocksPerMacroblockIn, const int32_t* blockBytesIn);

  int BlockCount() const { return 5 * blocksPerMacroblock; }
  // Zig-zag scan of block `b` into its word list, the first entry being `dc`; returns the largest
  // AC magnitude.
  int ScanBlock(int b, const uint8_t* zigzag, int dc);
  // Turns every word list into code words: `shifts` gives per block the right shift per area,
  // `divisor` (when non-zero) divides every magnitude instead.
  void FinalQuantise(const uint8_t (*shifts)[4], int divisor);
  // Forms each block's stream, moves overflow into room (macroblock, then segment), stores QNO
  // and copies the areas into the DIF blocks.
  void PackAndStore(uint8_t* firstVideoBlock, const uint8_t qnos[5]);
  // Spends what the budget leaves after the segment-wide QNO: finer QNO for single macroblocks
  // and finer classes for single blocks, the step with the most distortion saved per bit first.
  void Refine(uint8_t qnos[5]);

  BlockRecord* blocks = nullptr;
  BlockBits* bits = nullptr;
  BlockBits* roomHeads[5] = {};
  BlockBits* overflowHeads[5] = {};
  BlockBits* segmentRoom = nullptr;
  BlockBits* segmentOverflow = nullptr;
  alignas(16) int16_t coefficients[kMaxBlocks * 64];
  // 128 bytes of stream a block (the longest possible block is 1024 bits) and a tail so that a
  // 24-bit read at the end of the last block stays inside.
  alignas(16) uint8_t packed[kMaxBlocks * 128 + 16];
  CoefficientWord words[kMaxBlocks * 65];
  BlockRecord blockStore[kMaxBlocks];
  BlockBits bitsStore[kMaxBlocks];
  int32_t blocksPerMacroblock;
  const int32_t* blockBytes;
  uint8_t lastQNO = 0;
  ModeDecision modeDecision = ModeDecision::kZeroCount;
  bool refine = false;
};

// Bits one block takes with its words quantised by the area's shift or by `divisor`: 16 of overhead
// plus its codes; 3040 when a magnitude exceeds 255.
int BlockBitsFor(const CoefficientWord* words, const uint8_t shifts[4], int divisor);

// Eight rows of a 16-pixel YUYV area into four blocks less 128: the left and right eight luma
// columns, and the V and U samples.
void LoadYUYV16x8(const uint8_t* topLeft, ptrdiff_t rowBytes, int16_t* left, int16_t* right, int16_t* v,
                  int16_t* u);

// Compressed block sizes of the six-block formats.
extern const int32_t kSDBlockBytes[6];

}  // namespace OX

#include "Ombrix.h"

namespace OX {

// DV50 encode driver: a YUYV_422_8u picture of 720 x 480 (NTSCDV50) or 720 x 576 (PALDV50) into
// a frame of `dstBytes` bytes. -4 for another format, -9 for another size or a short buffer.
OX_Result CompressDV50Frame(const void* src, int32_t srcRowBytes, void* dst, int32_t dstBytes,
                            OX_PixelFormat format, int32_t width, int32_t height);

}  // namespace OX

namespace OX {

// DV25 encode through the process's encoder handle: NTSCDV25 at 720 x 480 or 360 x 240, PALDV25
// at 720 x 576 or 360 x 288 (4:1:1 with `dvcproFlag`, else 4:2:0) from YUYV_422_8u, UYVY_422_8u,
// VUYA_4444_8u or BGRA_4444_8u. -3 for another format, -13 for another size, -4 for another
// source, -15 when the encoder does not write exactly `dstBytes`.
OX_Result InvokeDVEncoderLibrary(const void* src, int32_t srcRowBytes, OX_PixelFormat srcFormat, int32_t width,
                                 int32_t height, void* dst, int32_t dstBytes, OX_PixelFormat format,
                                 bool dvcproFlag, int32_t quality);

}  // namespace OX
