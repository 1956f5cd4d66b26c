// DV50 decoding: 4:2:2 frames of two channels, in full, as one field, or at half size.
#include <cstring>

#include "dv/DVDecodeTables.h"
#include "dv/DVDecoder.h"
#include "dv/DVFrame.h"
#include "dv/DVTables.h"
#include "frame/PixelFormat.h"
#include "primitives/DVPrimitives.h"

namespace OX::dv {
namespace {

constexpr int kBlocksPerSegment = 30;

// 360 x H/2: every second sample of every second row of a 16 x 8 macroblock, into VUYA.
void WriteHalfSize(const int16_t* mb, int firstRow, uint8_t* base, ptrdiff_t rowBytes, PicturePosition p) {
  for (int r = 0; r < 4; ++r) {
    const int row = (2 * r + firstRow) * 8;
    uint8_t* out = base + ptrdiff_t(p.y / 2 + r) * rowBytes + ptrdiff_t(p.x / 2) * 4;
    for (int i = 0; i < 8; ++i, out += 4) {
      const int16_t* luma = mb + (i < 4 ? 0 : 2) * 64 + row + 2 * (i & 3);
      out[0] = SampleToByte(mb[4 * 64 + row + i]);
      out[1] = SampleToByte(mb[5 * 64 + row + i]);
      out[2] = SampleToByte(luma[0]);
      out[3] = 255;
    }
  }
}

}  // namespace

OX_Result DecodeDV50(const uint8_t* frame, OX_PixelFormat format, void* destination, int32_t destinationRowBytes,
                     OX_PixelFormat destinationFormat, int32_t width, int32_t height, int32_t field, int32_t) {
  const DVFormatInfo* info = FindDVFormat(format);
  if (!info || info->fFamily != Family::kDV50) return OX_ErrBadSourceFormat;
  const int H = info->fHeight;
  enum { kFull, kField, kHalf } shape;
  if (width == 720 && height == H) {
    shape = kFull;
  } else if (width == 720 && height == H / 2) {
    shape = kField;
  } else if (width == 360 && height == H / 2) {
    shape = kHalf;
  } else {
    return OX_ErrBadDVHeight;
  }
  const OX_PixelFormat expected = shape == kHalf ? OX_PixelFormat_VUYA_4444_8u : OX_PixelFormat_YUYV_422_8u;
  if (destinationFormat != expected) return OX_ErrBadDestFormat;
  if (!frame) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  const void* table = DV50DecodeTable();
  if (!table) return OX_ErrNoRoute;

  const OutputRows out = TopDownRows(destination, destinationRowBytes, destinationFormat, height);
  uint8_t* const dst = out.fFirst;
  const ptrdiff_t rowBytes = out.fRowBytes;
  const int firstRow = field == 2 ? 1 : 0;
  const int rows = info->fSequencesPerChannel;
  alignas(16) int16_t coefficients[kBlocksPerSegment * 64];
  uint32_t blockInfo[kBlocksPerSegment];
  for (int c = 0; c < info->fChannels; ++c) {
    for (int i = 0; i < rows; ++i) {
      for (int k = 0; k < kSegmentsPerSequence; ++k) {
        std::memset(coefficients, 0, sizeof(coefficients));
        VecDVDecodeSegment(frame + SegmentOffset(c * rows + i, k), kScanPair, table, coefficients, blockInfo);
        // Blocks 1 and 3 of a DV50 macroblock carry nothing.
        for (int b = 0; b < kBlocksPerSegment; ++b)
          if (b % 6 != 1 && b % 6 != 3) DequantiseAndTransformSD(coefficients + b * 64, blockInfo[b]);
        PicturePosition p[kMacroblocksPerSegment];
        PlaceMacroblocksSD(SDLayout::kDV50, rows, c, i, k, p);
        if (shape == kHalf) {
          for (int j = 0; j < kMacroblocksPerSegment; ++j)
            WriteHalfSize(coefficients + j * 384, firstRow, dst, rowBytes, p[j]);
          continue;
        }
        const int16_t* blocks[kMacroblocksPerSegment];
        uint8_t* rowPointers[kMacroblocksPerSegment * 8];
        const int step = shape == kField ? 2 : 1;
        for (int j = 0; j < kMacroblocksPerSegment; ++j) {
          blocks[j] = coefficients + j * 384 + (shape == kField ? firstRow * 8 : 0);
          for (int r = 0; r < 8 / step; ++r)
            rowPointers[j * 8 + r] = dst + ptrdiff_t(p[j].y / step + r) * rowBytes + ptrdiff_t(p[j].x) * 2;
        }
        VecDV50PackRows(blocks, rowPointers, step);
      }
    }
  }
  return OX_Success;
}

}  // namespace OX::dv
