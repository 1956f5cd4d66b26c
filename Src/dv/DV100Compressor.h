// The DV100 segment compressor (one step size per segment, moved along a ladder of steps), its
// frame driver, and the working-format choice of the compress exports.
#pragma once

#include <cstdint>

#include "Ombrix.h"
#include "dv/SegmentCompressor.h"

namespace OX {

// One row of the ladder: the quantiser step it stands for and the (QNO, class) pair that names
// that step in the stream.
struct QuantLadderRow {
  uint8_t qno;
  uint8_t classNumber;
};
inline constexpr int kQuantLadderRows = 31;
extern const QuantLadderRow kQuantLadder[kQuantLadderRows];
// Step of a ladder row (the DV100 step table at its QNO and class).
int LadderStep(int row);

class DV100SegmentCompressor : public SegmentCompressor {
 public:
  explicit DV100SegmentCompressor(bool is720Format);
  // Transforms and weights the 40 blocks, walks the ladder from the previous segment's row to the
  // lowest row under the budget, and packs.
  void Compress(uint8_t* firstVideoBlock) override;
  int LadderIndex() const { return ladderIndex; }
  // Bits of the segment at ladder row `row` with the current word lists; the count stops at the
  // first block that takes it to `limit`.
  int SegmentBitsAtRow(int row, int limit = 1 << 30) const;

 private:
  int32_t ladderIndex = 6;
  uint8_t is720;
};

// DV100 driver: a YUYV_422_8u_709 picture of the destination's size into a frame of exactly the
// format's size. `channelOffset` 2 writes a 720p picture as channels 2 and 3; any other value and
// every 1080 frame use channels from 0. -4 for a non-DV100 format, -9 for a wrong size.
OX_Result CompressDV100Frame(const void* src, int32_t srcRowBytes, OX_PixelFormat srcFormat, int32_t width,
                             int32_t height, void* dst, int32_t dstBytes, int32_t channelOffset,
                             OX_PixelFormat dstFormat, int32_t quality);

}  // namespace OX
