// The two compress exports: bring the source to the destination family's working format, then
// hand it to the DV100 driver or to the DV25 encoder with the DVCPRO flag.
#include "Ombrix.h"
#include "conversion/EncodeRoad.h"
#include "dv/DV100Compressor.h"
#include "dv/SegmentCompressor.h"
#include "frame/Scratch.h"

namespace OX {
namespace {

template <class Encode>
OX_Result CompressThroughWorkingFormat(const void* src, int32_t srcRowBytes, OX_PixelFormat srcFormat, int32_t width,
                                       int32_t height, OX_PixelFormat dstFormat, int32_t quality, Encode encode) {
  OX_PixelFormat working = 0;
  const OX_Result chosen = OX_ChooseEncodeSource(srcFormat, dstFormat, quality, &working);
  if (chosen != OX_Success) return chosen;
  if (working == srcFormat) return encode(src, srcRowBytes, srcFormat);
  const int32_t bytes = OX_PixelFormatSize(working, width, height);
  const int32_t rowBytes = OX_PixelFormatSize(working, width, 1);
  ScratchBuffer image(size_t(bytes > 0 ? bytes : 0));
  if (bytes > 0 && !image.Get()) return OX_ErrNoMemory;
  const OX_Result converted =
      OX_Convert(src, srcRowBytes, srcFormat, image.Get(), rowBytes, working, width, height, quality);
  if (converted != OX_Success) return converted;
  return encode(image.Get(), rowBytes, working);
}

}  // namespace
}  // namespace OX

using namespace OX;

OX_Result OX_CompressDV100720pWithChannelOffset(const void* src, int32_t srcRowBytes, OX_PixelFormat srcFormat,
                                                int32_t width, int32_t height, void* dst, int32_t dstBytes,
                                                int32_t channelOffset, OX_PixelFormat dstFormat, int32_t quality) {
  return CompressThroughWorkingFormat(
      src, srcRowBytes, srcFormat, width, height, dstFormat, quality,
      [&](const void* picture, int32_t rowBytes, OX_PixelFormat format) {
        return CompressDV100Frame(picture, rowBytes, format, width, height, dst, dstBytes, channelOffset, dstFormat,
                                  quality);
      });
}

OX_Result OX_CompressDVCPROPAL25(const void* src, int32_t srcRowBytes, OX_PixelFormat srcFormat, int32_t width,
                                 int32_t height, void* dst, int32_t dstBytes, OX_PixelFormat dstFormat,
                                 int32_t quality) {
  return CompressThroughWorkingFormat(src, srcRowBytes, srcFormat, width, height, dstFormat, quality,
                                      [&](const void* picture, int32_t rowBytes, OX_PixelFormat format) {
                                        return InvokeDVEncoderLibrary(picture, rowBytes, format, width, height, dst,
                                                                      dstBytes, dstFormat, true, quality);
                                      });
}
