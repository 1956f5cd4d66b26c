// DV100 segment compressor and frame driver.
#include "dv/DV100Compressor.h"

#include <cstring>

#include "dv/DIFBlockWriter.h"
#include "dv/DVFrame.h"
#include "dv/DVTables.h"
#include "dv/SegmentCompressorTables.h"
#include "primitives/Primitives.h"

namespace OX {

// Steps 1, 2, ... 8, 10, 12, 14, 16, ... 112: each as the (QNO, class) pair that names it.
const QuantLadderRow kQuantLadder[kQuantLadderRows] = {
    {1, 0},  {2, 0},  {3, 0},  {4, 0},  {5, 0},  {6, 0},  {7, 0},  {8, 0},  {5, 1},  {6, 1},  {7, 1},
    {9, 0},  {10, 0}, {11, 0}, {12, 0}, {13, 0}, {14, 0}, {9, 1},  {10, 1}, {11, 1}, {12, 1}, {13, 1},
    {15, 0}, {14, 1}, {9, 2},  {10, 2}, {11, 2}, {12, 2}, {13, 2}, {15, 1}, {14, 2},
};

int LadderStep(int row) { return dv::kDV100Step[kQuantLadder[row].qno][kQuantLadder[row].classNumber]; }

namespace {
const int32_t kDV100BlockBytes[8] = {10, 10, 10, 10, 10, 10, 8, 8};
constexpr uint8_t kNoShifts[4] = {0, 0, 0, 0};
}  // namespace

DV100SegmentCompressor::DV100SegmentCompressor(bool is720Format)
    : SegmentCompressor(8, kDV100BlockBytes), is720(is720Format ? 1 : 0) {}

int DV100SegmentCompressor::SegmentBitsAtRow(int row, int limit) const {
  const int step = LadderStep(row);
  int total = 0;
  for (int b = 0; b < BlockCount() && total < limit; ++b) total += BlockBitsFor(blocks[b].wordList, kNoShifts, step);
  return total;
}

void DV100SegmentCompressor::Compress(uint8_t* firstVideoBlock) {
  const int count = BlockCount();
  for (int b = 0; b < count; ++b) {
    BlockRecord& record = blocks[b];
    int16_t* s = record.samples;
    VecDCT8x8Forward(s);
    const uint16_t* weight = dv::kDV100Weight[is720][(b % 8) >= 4 ? 1 : 0];
    for (int i = 1; i < 64; ++i) {
      // The shift keeps 16 bits only: a transform output of 1024 or more wraps, as it must.
      const int shifted = int16_t(uint16_t(s[i]) << 5);
      s[i] = int16_t(shifted / int(weight[i]));
    }
    record.dctMode = 0;
    ScanBlock(b, dv::kScan88.f, s[0] / 4);
  }

  const int budget = kSegmentBudgetBits;
  int r = ladderIndex;
  if (SegmentBitsAtRow(r, budget) >= budget) {
    // Coarser until under the budget; the last row is taken as it is.
    while (r < kQuantLadderRows - 1) {
      ++r;
      if (r == kQuantLadderRows - 1 || SegmentBitsAtRow(r, budget) < budget) break;
    }
  } else {
    while (r > 0 && SegmentBitsAtRow(r - 1, budget) < budget) --r;
  }
  ladderIndex = r;
  for (int b = 0; b < count; ++b) blocks[b].classNumber = kQuantLadder[r].classNumber;

  uint8_t shifts[kMaxBlocks][4] = {};
  FinalQuantise(shifts, LadderStep(r));
  const uint8_t qno = kQuantLadder[r].qno;
  const uint8_t qnos[5] = {qno, qno, qno, qno, qno};
  PackAndStore(firstVideoBlock, qnos);
}

OX_Result CompressDV100Frame(const void* src, int32_t srcRowBytes, OX_PixelFormat, int32_t width, int32_t height,
                             void* dst, int32_t dstBytes, int32_t channelOffset, OX_PixelFormat dstFormat,
                             int32_t) {
  const dv::DVFormatInfo* info = dv::FindDVFormat(dstFormat);
  if (!info || !info->fIsDV100()) return OX_ErrBadDestFormat;
  if (OX_PixelFormatSize(dstFormat, width, height) != dstBytes) return OX_ErrBadDVInputSize;
  if (width != info->fWidth || height != info->fHeight) return OX_ErrBadDVInputSize;

  const bool is720 = info->fFamily == dv::Family::kDV100_720;
  const int offset = is720 && channelOffset == 2 ? 2 : 0;
  const int rows = info->fSequencesPerChannel;
  const auto* picture = static_cast<const uint8_t*>(src);
  DIFBlockWriter writer;
  writer.cursor = static_cast<uint8_t*>(dst);
  DV100SegmentCompressor compressor(is720);
  compressor.Prepare();
  for (int channel = 0; channel < info->fChannels; ++channel) {
    const int placed = channel + offset;
    for (int i = 0; i < rows; ++i) {
      writer.BeginSequence(rows, dstFormat, uint8_t(i), uint8_t(channel & 1), uint8_t(1 - placed / 2));
      const bool used = dv::IsSequenceUsed(*info, placed, i);
      for (int k = 0; k < dv::kSegmentsPerSequence; ++k) {
        uint8_t* first = nullptr;
        writer.BeginSegment(first);
        if (used) {
          dv::DV100Placement p[dv::kMacroblocksPerSegment];
          dv::PlaceMacroblocksDV100(*info, placed, i, k, p);
          for (int j = 0; j < dv::kMacroblocksPerSegment; ++j) {
            for (int half = 0; half < 2; ++half) {
              const dv::PicturePosition& pos = p[j].fHalf[half];
              LoadYUYV16x8(picture + ptrdiff_t(pos.y) * srcRowBytes + 2 * pos.x, srcRowBytes,
                       compressor.Samples(j, 2 * half), compressor.Samples(j, 2 * half + 1),
                       compressor.Samples(j, 4 + half), compressor.Samples(j, 6 + half));
            }
          }
        } else {
          // Sequences that decoders skip carry a flat mid-grey picture.
          for (int j = 0; j < dv::kMacroblocksPerSegment; ++j)
            for (int b = 0; b < 8; ++b) std::memset(compressor.Samples(j, b), 0, 64 * sizeof(int16_t));
        }
        compressor.Compress(first);
      }
    }
  }
  compressor.Finish();
  return OX_Success;
}

}  // namespace OX
