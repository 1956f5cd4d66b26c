// DV50 encode driver: two channels of sequences, each segment's five 16 x 8 macroblocks filled
// from the YUYV picture (luma in blocks 0 and 2, V in 4, U in 5, blocks 1 and 3 empty) and coded
// by the segment compressor.
#include <cstring>

#include "dv/DIFBlockWriter.h"
#include "dv/DVFrame.h"
#include "dv/SegmentCompressor.h"

namespace OX {

namespace {

// One 16 x 8 macroblock: luma in blocks 0 and 2, V in 4, U in 5; blocks 1 and 3 coded empty.
void FillDV50Macroblock(SegmentCompressor& compressor, int mb, const uint8_t* topLeft, ptrdiff_t rowBytes) {
  std::memset(compressor.Samples(mb, 1), 0, 64 * sizeof(int16_t));
  std::memset(compressor.Samples(mb, 3), 0, 64 * sizeof(int16_t));
  LoadYUYV16x8(topLeft, rowBytes, compressor.Samples(mb, 0), compressor.Samples(mb, 2), compressor.Samples(mb, 4),
               compressor.Samples(mb, 5));
}

}  // namespace

OX_Result CompressDV50Frame(const void* src, int32_t srcRowBytes, void* dst, int32_t dstBytes,
                            OX_PixelFormat format, int32_t width, int32_t height) {
  if (format != OX_PixelFormat_NTSCDV50 && format != OX_PixelFormat_PALDV50) return OX_ErrBadDestFormat;
  const dv::DVFormatInfo& info = *dv::FindDVFormat(format);
  if (width != info.fWidth || height != info.fHeight || dstBytes < int32_t(info.fFrameBytes))
    return OX_ErrBadDVInputSize;

  const auto* picture = static_cast<const uint8_t*>(src);
  const int rows = info.fSequencesPerChannel;
  DIFBlockWriter writer;
  writer.cursor = static_cast<uint8_t*>(dst);
  SegmentCompressor compressor;
  compressor.Prepare();
  for (int channel = 0; channel < info.fChannels; ++channel) {
    for (int i = 0; i < rows; ++i) {
      writer.BeginSequence(rows, format, uint8_t(i), uint8_t(channel), 1);
      for (int k = 0; k < dv::kSegmentsPerSequence; ++k) {
        uint8_t* first = nullptr;
        writer.BeginSegment(first);
        dv::PicturePosition p[dv::kMacroblocksPerSegment];
        dv::PlaceMacroblocksSD(dv::SDLayout::kDV50, rows, channel, i, k, p);
        for (int j = 0; j < dv::kMacroblocksPerSegment; ++j)
          FillDV50Macroblock(compressor, j, picture + ptrdiff_t(p[j].y) * srcRowBytes + 2 * p[j].x, srcRowBytes);
        compressor.Compress(first);
      }
    }
  }
  compressor.Finish();
  return OX_Success;
}

}  // namespace OX
