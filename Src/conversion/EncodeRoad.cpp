// Encode road of OX_Convert: a container destination. The picture is brought to the encoder's
// raw format through OX_Convert when it is not already in it, then encoded.
#include "conversion/EncodeRoad.h"

#include "conversion/ContainerRoads.h"
#include "dv/DV100Compressor.h"
#include "dv/SegmentCompressor.h"
#include "frame/PixelFormat.h"

using namespace OX;

OX_Result OX_ChooseEncodeSource(OX_PixelFormat sourceFormat, OX_PixelFormat destinationFormat, int32_t,
                                OX_PixelFormat* outFormat) {
  switch (ContainerByte(destinationFormat)) {
    case 1:
    case 2:
      if (!IsYUV(sourceFormat))
        *outFormat = OX_PixelFormat_BGRA_4444_8u;
      else if (IsAlphaBearing(sourceFormat))
        *outFormat = OX_PixelFormat_VUYA_4444_8u;
      else
        *outFormat = (sourceFormat & kOrderBit) ? OX_PixelFormat_YUYV_422_8u : OX_PixelFormat_UYVY_422_8u;
      return OX_Success;
    case 7:
    case 8:
      *outFormat = OX_PixelFormat_YUYV_422_8u;
      return OX_Success;
    case 3:
    case 4:
    case 5:
    case 6:
      *outFormat = OX_PixelFormat_YUYV_422_8u_709;
      return OX_Success;
    default:
      break;
  }
  const uint32_t low = destinationFormat & 0xFFF;
  if (IsPlanarContainer(destinationFormat) && (low == 0x831 || low == 0xA31)) {
    *outFormat = IsContainerFormat(sourceFormat) ? OX_PixelFormat(OX_PixelFormat_VUYX_4444_8u) : sourceFormat;
    return OX_Success;
  }
  if (IsPlanarContainer(destinationFormat) && (low == 0x031 || low == 0x231)) {
    *outFormat = OX_PixelFormat_BGRX_4444_8u;
    return OX_Success;
  }
  return OX_ErrUnsupported;
}

namespace OX {

OX_Result EncodeContainerFrame(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat, int32_t width,
                               int32_t height, void* destination, int32_t destinationBytes,
                               OX_PixelFormat destinationFormat, int32_t quality) {
  switch (ContainerByte(destinationFormat)) {
    case 1:
    case 2:
      return InvokeDVEncoderLibrary(source, sourceRowBytes, sourceFormat, width, height, destination,
                                    destinationBytes, destinationFormat, false, quality);
    case 7:
    case 8:
      return CompressDV50Frame(source, sourceRowBytes, destination, destinationBytes, destinationFormat, width,
                               height);
    case 3:
    case 4:
    case 5:
    case 6:
      return CompressDV100Frame(source, sourceRowBytes, sourceFormat, width, height, destination, destinationBytes,
                                0, destinationFormat, quality);
    default:
      return OX_ErrUnsupported;  // planar 4:2:0 has no compressor
  }
}

// DV frames take their fixed size whatever the row bytes say.
OX_Result ConvertToContainer(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat,
                             void* destination, int32_t, OX_PixelFormat destinationFormat, int32_t width,
                             int32_t height, int32_t quality) {
  OX_PixelFormat working = 0;
  const OX_Result chosen = OX_ChooseEncodeSource(sourceFormat, destinationFormat, quality, &working);
  if (chosen != OX_Success) return chosen;
  if (!IsDVContainer(destinationFormat)) return OX_ErrUnsupported;
  const int32_t frameBytes = OX_PixelFormatSize(destinationFormat, width, height);
  if (working == sourceFormat)
    return EncodeContainerFrame(source, sourceRowBytes, sourceFormat, width, height, destination, frameBytes,
                                destinationFormat, quality);

  void* base = nullptr;
  void* pixels = nullptr;
  int32_t rowBytes = 0;
  uint32_t allocated = 0;
  OX_Result result = OX_AllocateTransientPixelBuffer(working, width, height, &base, &pixels, &rowBytes, &allocated);
  if (result != OX_Success) return result;
  result = OX_Convert(source, sourceRowBytes, sourceFormat, pixels, rowBytes, working, width, height, quality);
  if (result == OX_Success)
    result = EncodeContainerFrame(pixels, rowBytes, working, width, height, destination, frameBytes,
                                  destinationFormat, quality);
  OX_FreeTransientPixelBuffer(working, base, allocated);
  return result;
}

}  // namespace OX
