// DV100 decoding: 1080-line and 720-line 4:2:2 frames, in full, as one field, or at half size.
#include <cstring>

#include "dv/DVDecodeTables.h"
#include "dv/DVDecoder.h"
#include "dv/DVFrame.h"
#include "dv/DVTables.h"
#include "frame/PixelFormat.h"
#include "primitives/DVPrimitives.h"
#include "primitives/Primitives.h"

namespace OX::dv {
namespace {

constexpr int kBlocksPerSegment = 40;

inline int16_t Saturate16(int32_t v) { return int16_t(v < -32768 ? -32768 : v > 32767 ? 32767 : v); }

// Scales each coefficient by the macroblock's step and the block's weight; the DC is kept as
// the 9-bit value times 4, the scale the inverse transform expects.
void DequantiseAndTransform(int16_t* block, uint32_t blockInfo, const uint16_t* weight) {
  const int step = kDV100Step[(blockInfo >> 16) & 15][(blockInfo >> 4) & 3];
  const int16_t dc = int16_t(block[0] >> 5);
  block[0] = 0;
  // Most high frequencies are zero: skip them four at a time.
  for (int i = 0; i < 64; i += 4) {
    uint64_t four;
    std::memcpy(&four, block + i, sizeof(four));
    if (four == 0) continue;
    for (int k = i; k < i + 4; ++k) block[k] = Saturate16(((block[k] >> 6) * step * int32_t(weight[k])) >> 5);
  }
  block[0] = dc;
  if (!TransformDCOnly(block, 0)) VecDCT8x8Inverse(block);
}

// W/2 x H/2: every second row and column of each 8-line half, into VUYA. A field-coded
// macroblock keeps the whole half of the chosen field instead.
void WriteHalfSize(const int16_t* mb, int firstRow, bool fieldCoded, uint8_t* base, ptrdiff_t rowBytes,
                   const DV100Placement& p) {
  if (fieldCoded) {
    const int h = firstRow;
    const int16_t* luma = mb + (h ? 2 : 0) * 64;
    for (int r = 0; r < 8; ++r) {
      uint8_t* out = base + ptrdiff_t(p.fHalf[0].y / 2 + r) * rowBytes + ptrdiff_t(p.fHalf[0].x / 2) * 4;
      for (int i = 0; i < 8; ++i, out += 4) {
        out[0] = SampleToByte(mb[(4 + h) * 64 + r * 8 + i]);
        out[1] = SampleToByte(mb[(6 + h) * 64 + r * 8 + i]);
        out[2] = SampleToByte(luma[(i < 4 ? 0 : 64) + r * 8 + 2 * (i & 3)]);
        out[3] = 255;
      }
    }
    return;
  }
  for (int h = 0; h < 2; ++h) {
    const int16_t* luma = mb + (h ? 2 : 0) * 64;
    const int16_t* v = mb + (4 + h) * 64;
    const int16_t* u = mb + (6 + h) * 64;
    for (int r = 0; r < 4; ++r) {
      const int row = (2 * r + firstRow) * 8;
      uint8_t* out = base + ptrdiff_t(p.fHalf[h].y / 2 + r) * rowBytes + ptrdiff_t(p.fHalf[h].x / 2) * 4;
      for (int i = 0; i < 8; ++i, out += 4) {
        out[0] = SampleToByte(v[row + i]);
        out[1] = SampleToByte(u[row + i]);
        out[2] = SampleToByte(luma[(i < 4 ? 0 : 64) + row + 2 * (i & 3)]);
        out[3] = 255;
      }
    }
  }
}

}  // namespace

OX_Result DecodeDV100(const uint8_t* frame, OX_PixelFormat format, void* destination, int32_t destinationRowBytes,
                      OX_PixelFormat destinationFormat, int32_t width, int32_t height, int32_t field, int32_t) {
  const DVFormatInfo* info = FindDVFormat(format);
  if (!info || !info->fIsDV100()) return OX_ErrBadSourceFormat;
  const int W = info->fWidth, H = info->fHeight;
  enum { kFull, kField, kHalf } shape;
  if (height == H) {
    if (width != W) return OX_ErrBadDVWidth;
    shape = kFull;
  } else if (height == H / 2) {
    if (width == W) {
      shape = kField;
    } else if (width == W / 2) {
      shape = kHalf;
    } else {
      return OX_ErrBadDVWidth;
    }
  } else {
    return OX_ErrBadDVHeight;
  }
  const OX_PixelFormat expected = shape == kHalf ? OX_PixelFormat_VUYA_4444_8u_709 : OX_PixelFormat_YUYV_422_8u_709;
  if (destinationFormat != expected) return OX_ErrBadDestFormat;
  if (!frame) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  if (HeaderDSF(frame) != info->fIs50Hz) return OX_ErrDVFrameMismatch;
  const void* table = DV50DecodeTable();
  if (!table) return OX_ErrNoRoute;

  const OutputRows out = TopDownRows(destination, destinationRowBytes, destinationFormat, height);
  uint8_t* const dst = out.fFirst;
  const ptrdiff_t rowBytes = out.fRowBytes;
  const bool is720 = info->fFamily == Family::kDV100_720;
  const int channelOffset = is720 ? ChannelOffsetOf720p(frame) : 0;
  const int firstRow = field == 2 ? 1 : 0;
  const int rows = info->fSequencesPerChannel;
  alignas(16) int16_t coefficients[kBlocksPerSegment * 64];
  uint32_t blockInfo[kBlocksPerSegment];
  alignas(16) uint8_t spareRow[32];
  for (int c = 0; c < info->fChannels; ++c) {
    for (int i = 0; i < rows; ++i) {
      if (!IsSequenceUsed(*info, c + channelOffset, i)) continue;
      for (int k = 0; k < kSegmentsPerSequence; ++k) {
        std::memset(coefficients, 0, sizeof(coefficients));
        VecDV100DecodeSegment(frame + SegmentOffset(c * rows + i, k), kScan88.f, table, coefficients, blockInfo);
        for (int b = 0; b < kBlocksPerSegment; ++b)
          DequantiseAndTransform(coefficients + b * 64, blockInfo[b], kDV100Weight[is720][b % 8 >= 4]);
        DV100Placement p[kMacroblocksPerSegment];
        PlaceMacroblocksDV100(*info, c + channelOffset, i, k, p);
        bool fieldCoded[kMacroblocksPerSegment];
        for (int j = 0; j < kMacroblocksPerSegment; ++j) {
          // An interlaced 1080 macroblock sets the mode bit of its first block: its upper half
          // holds the even lines, its lower half the odd ones.
          fieldCoded[j] = !is720 && (blockInfo[j * 8] & 0x40) && p[j].fHalf[1].y == p[j].fHalf[0].y + 8;
        }
        if (shape == kHalf) {
          for (int j = 0; j < kMacroblocksPerSegment; ++j)
            WriteHalfSize(coefficients + j * 512, firstRow, fieldCoded[j], dst, rowBytes, p[j]);
          continue;
        }
        // Every row of every half gets a pointer; rows of the other field go to a spare row.
        uint8_t* rowPointers[kMacroblocksPerSegment * 16];
        for (int j = 0; j < kMacroblocksPerSegment; ++j)
          for (int h = 0; h < 2; ++h)
            for (int r = 0; r < 8; ++r) {
              const int y = fieldCoded[j] ? p[j].fHalf[0].y + 2 * r + h : p[j].fHalf[h].y + r;
              uint8_t*& pointer = rowPointers[j * 16 + h * 8 + r];
              if (shape == kFull) {
                pointer = dst + ptrdiff_t(y) * rowBytes + ptrdiff_t(p[j].fHalf[h].x) * 2;
              } else if ((y & 1) == firstRow) {
                pointer = dst + ptrdiff_t(y / 2) * rowBytes + ptrdiff_t(p[j].fHalf[h].x) * 2;
              } else {
                pointer = spareRow;
              }
            }
        VecDV100PackRows(coefficients, rowPointers, 1);
      }
    }
  }
  return OX_Success;
}

}  // namespace OX::dv
