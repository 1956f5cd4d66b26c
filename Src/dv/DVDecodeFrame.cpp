// The decode dispatch: a DV frame goes to the decoder of its family.
#include "dv/DVDecoder.h"

namespace OX::dv {

OutputRows TopDownRows(void* destination, int32_t rowBytes, OX_PixelFormat format, int32_t height) {
  uint8_t* first = static_cast<uint8_t*>(destination);
  if (!OX_IsOriginBottomLeft(format)) return {first, rowBytes};
  return {first + ptrdiff_t(height - 1) * rowBytes, -ptrdiff_t(rowBytes)};
}

OX_Result DecodeDVFrame(const void* source, int32_t, OX_PixelFormat sourceFormat, int32_t, int32_t,
                        int32_t sourceField, void* destination, int32_t destinationRowBytes,
                        OX_PixelFormat destinationFormat, int32_t width, int32_t height, int32_t quality) {
  const uint8_t* frame = static_cast<const uint8_t*>(source);
  switch (sourceFormat >> 24) {
    case 1:
    case 2:
      return DecodeDV25(frame, sourceFormat, destination, destinationRowBytes, destinationFormat, width, height,
                        sourceField, quality);
    case 7:
    case 8:
      return DecodeDV50(frame, sourceFormat, destination, destinationRowBytes, destinationFormat, width, height,
                        sourceField, quality);
    case 3:
    case 4:
    case 5:
    case 6:
      return DecodeDV100(frame, sourceFormat, destination, destinationRowBytes, destinationFormat, width, height,
                         sourceField, quality);
    default:
      return OX_ErrUnsupported;
  }
}

}  // namespace OX::dv
