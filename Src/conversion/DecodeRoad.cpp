// Decode road of OX_Convert: a container source is decoded at the size and in the raw format
// that the chooser gives, straight into the destination when the formats agree, else through a
// transient buffer and OX_Convert.
#include "conversion/ContainerRoads.h"
#include "conversion/DecodeTarget.h"
#include "dv/DVDecoder.h"
#include "frame/Globals.h"
#include "frame/PixelFormat.h"

using namespace OX;

namespace {

bool IsOneOf(OX_PixelFormat f, std::initializer_list<OX_PixelFormat> list) {
  for (OX_PixelFormat g : list)
    if (f == g) return true;
  return false;
}

void ChooseDV25(bool isNTSC, OX_PixelFormat destination, int32_t w, int32_t h, int32_t quality,
                OX_PixelFormat* outFormat, int32_t* outWidth, int32_t* outHeight) {
  const int H = isNTSC ? 480 : 576;
  int ow = 720, oh = h <= H / 2 ? H / 2 : H;
  if (quality < 3) {
    if (w < 91 && h <= H / 8) {
      ow = 90, oh = H / 8;
    } else if (w < 181 && h <= H / 4) {
      ow = 180, oh = H / 4;
    } else if (w < 360 && h < H / 2) {
      ow = 360, oh = H / 2;
    }
  }
  OX_PixelFormat format = OX_PixelFormat_UYVY_422_8u;
  if (IsOneOf(destination, {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_VUYX_4444_8u,
                            OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_BGRX_4444_8u})) {
    format = destination;
  } else if (IsAlphaBearing(destination)) {
    format = !IsYUV(destination) && DepthOf(destination) != kDepth32f ? OX_PixelFormat_BGRX_4444_8u
                                                                     : OX_PixelFormat_VUYX_4444_8u;
  }
  *outFormat = format;
  *outWidth = ow;
  *outHeight = oh;
}

void ChooseNative(OX_PixelFormat native, OX_PixelFormat low, int W, int H, int32_t w, int32_t h, int32_t quality,
                  OX_PixelFormat* outFormat, int32_t* outWidth, int32_t* outHeight) {
  if (w == W && h == H / 2) {
    *outFormat = native, *outWidth = W, *outHeight = H / 2;
  } else if ((w <= W / 2 && h <= H / 2) || (quality < 3 && w < W && h < H)) {
    *outFormat = low, *outWidth = W / 2, *outHeight = H / 2;
  } else {
    *outFormat = native, *outWidth = W, *outHeight = H;
  }
}

void ChoosePlanar(OX_PixelFormat source, int32_t W, int32_t H, OX_PixelFormat destination, int32_t w, int32_t h,
                  int32_t quality, OX_PixelFormat* outFormat, int32_t* outWidth, int32_t* outHeight) {
  const int32_t half = H / 2;
  int32_t ow, oh;
  if (gHasSSE2 && (H == h || H == h / 2) &&
      ((int64_t(w) * 3 == int64_t(W) * 4 && W % 96 == 0) || (int64_t(w) * 2 == int64_t(W) * 3 && W % 16 == 0))) {
    ow = w, oh = h;
  } else if (h == half && w == W) {
    ow = w, oh = h;
  } else if (half < h || (W & 1) || quality >= 3) {
    ow = W, oh = H;
  } else if (h > 0 && w > 0 && H % h == 0 && (H / h) % 2 == 0 && W % w == 0 &&
             (W / w == 1 || W / w == 2 || W / w == 4 || W / w == 8)) {
    ow = w, oh = h;
  } else {
    oh = half;
    ow = w <= W / 2 ? W / 2 : W;
  }
  OX_PixelFormat format;
  const uint32_t bits910 = k709Bit | kReservedBit;
  if ((source & kStudioRangeBit) == 0) {
    format = OX_PixelFormat_BGRX_4444_8u;
  } else if (IsYUV(destination) && DepthOf(destination) == kDepth8u && IsRawFormat(destination)
                 ? (destination & bits910) == 0
                 : (source & bits910) == 0) {
    format = OX_PixelFormat_VUYX_4444_8u;
  } else {
    format = OX_PixelFormat_VUYX_4444_8u_709;
  }
  *outFormat = format;
  *outWidth = ow;
  *outHeight = oh;
}

}  // namespace

OX_Result OX_ChooseDecodeTarget(OX_PixelFormat sourceFormat, int32_t sourceWidth, int32_t sourceHeight,
                                OX_PixelFormat destinationFormat, int32_t destinationWidth,
                                int32_t destinationHeight, int32_t quality, OX_PixelFormat* outFormat,
                                int32_t* outWidth, int32_t* outHeight) {
  const int32_t w = destinationWidth, h = destinationHeight;
  switch (sourceFormat) {
    case OX_PixelFormat_NTSCDV25:
    case OX_PixelFormat_PALDV25:
      ChooseDV25(sourceFormat == OX_PixelFormat_NTSCDV25, destinationFormat, w, h, quality, outFormat, outWidth,
                 outHeight);
      return OX_Success;
    case OX_PixelFormat_NTSCDV50:
    case OX_PixelFormat_PALDV50:
      ChooseNative(OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_VUYA_4444_8u, 720,
                   sourceFormat == OX_PixelFormat_NTSCDV50 ? 480 : 576, w, h, quality, outFormat, outWidth, outHeight);
      return OX_Success;
    case OX_PixelFormat_NTSC_DV100_720p:
    case OX_PixelFormat_PAL_DV100_720p:
      ChooseNative(OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_VUYA_4444_8u_709, 960, 720, w, h, quality,
                   outFormat, outWidth, outHeight);
      return OX_Success;
    case OX_PixelFormat_NTSC_DV100_1080i:
    case OX_PixelFormat_PAL_DV100_1080i:
      ChooseNative(OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_VUYA_4444_8u_709,
                   sourceFormat == OX_PixelFormat_NTSC_DV100_1080i ? 1280 : 1440, 1080, w, h, quality, outFormat,
                   outWidth, outHeight);
      return OX_Success;
    default:
      break;
  }
  if (IsPlanarContainer(sourceFormat)) {
    ChoosePlanar(sourceFormat, sourceWidth, sourceHeight, destinationFormat, w, h, quality, outFormat, outWidth,
                 outHeight);
    return OX_Success;
  }
  return OX_ErrBadSourceFormat;
}

namespace OX {

OX_Result ConvertFromContainer(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat,
                               void* destination, int32_t destinationRowBytes, OX_PixelFormat destinationFormat,
                               int32_t width, int32_t height, int32_t quality) {
  OX_PixelFormat format = 0;
  int32_t decodeWidth = 0, decodeHeight = 0;
  // The chooser's status is not read: an unknown container leaves the size at 0 and ends here.
  OX_ChooseDecodeTarget(sourceFormat, width, height, destinationFormat, width, height, quality, &format,
                        &decodeWidth, &decodeHeight);
  if (decodeWidth != width || decodeHeight != height) return OX_ErrSizeMismatch;
  if (!IsDVContainer(sourceFormat)) return OX_ErrUnsupported;  // planar decompression is not here yet
  if (format == destinationFormat)
    return dv::DecodeDVFrame(source, sourceRowBytes, sourceFormat, width, height, 0, destination,
                             destinationRowBytes, destinationFormat, width, height, quality);
  void* base = nullptr;
  void* pixels = nullptr;
  int32_t rowBytes = 0;
  uint32_t allocated = 0;
  const OX_Result allocation =
      OX_AllocateTransientPixelBuffer(format, width, height, &base, &pixels, &rowBytes, &allocated);
  if (allocation != OX_Success) return allocation;
  if (!pixels) return OX_ErrNoMemory;
  OX_Result result = dv::DecodeDVFrame(source, sourceRowBytes, sourceFormat, width, height, 0, pixels, rowBytes,
                                       format, width, height, quality);
  if (result == OX_Success)
    result = OX_Convert(pixels, rowBytes, format, destination, destinationRowBytes, destinationFormat, width, height,
                        quality);
  OX_FreeTransientPixelBuffer(format, base, allocated);
  return result;
}

}  // namespace OX
