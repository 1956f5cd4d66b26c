// DV25 encode: the checks and flags of the library side, then the encoder behind the handle.
#include "dv/SegmentCompressor.h"
#include "frame/Globals.h"
#include "dv/dvenc.h"

namespace OX {

OX_Result InvokeDVEncoderLibrary(const void* src, int32_t srcRowBytes, OX_PixelFormat srcFormat, int32_t width,
                                 int32_t height, void* dst, int32_t dstBytes, OX_PixelFormat format,
                                 bool dvcproFlag, int32_t quality) {
  int32_t fullHeight;
  if (format == OX_PixelFormat_NTSCDV25)
    fullHeight = 480;
  else if (format == OX_PixelFormat_PALDV25)
    fullHeight = 576;
  else
    return OX_ErrBadSourceFormat;
  const bool full = width == 720 && height == fullHeight;
  const bool half = width == 360 && height == fullHeight / 2;
  if (!full && !half) return OX_ErrSizeMismatch;

  uint32_t code;
  switch (srcFormat) {
    case OX_PixelFormat_YUYV_422_8u: code = dvenc::kSourceYUYV; break;
    case OX_PixelFormat_UYVY_422_8u: code = dvenc::kSourceUYVY; break;
    case OX_PixelFormat_VUYA_4444_8u: code = dvenc::kSourceVUYA; break;
    case OX_PixelFormat_BGRA_4444_8u: code = dvenc::kSourceBGRA; break;
    default: return OX_ErrBadDestFormat;
  }
  uint32_t flags = dvenc::kFlagBase;
  if (dvcproFlag) flags |= dvenc::kFlagDVCPRO;
  if (quality < 3) flags += dvenc::kFlagDraft;
  if ((srcFormat & 12) == 4) flags += dvenc::kFlagStraightAlpha;

  const auto* first = static_cast<const uint8_t*>(src);
  if (OX_IsOriginBottomLeft(srcFormat)) {
    first += ptrdiff_t(height - 1) * srcRowBytes;
    srcRowBytes = -srcRowBytes;
  }
  const int32_t written =
      dvenc::Encode(gDVEncoderHandle, first, srcRowBytes, dst, dstBytes, width, height, 0, flags, code, 0, 0);
  return written == dstBytes ? OX_Success : OX_ErrDVCompressorFailed;
}

}  // namespace OX
