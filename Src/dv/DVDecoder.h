// The three DV decoders and the dispatch by container byte. Every decoder runs on the calling
// thread and reads the caller's frame, which must hold the format's full frame size
// (OX_PixelFormatSize); a 720p frame is one picture of 240000 or 288000 bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Ombrix.h"

namespace OX::dv {

// DV25: the six sizes of DVScaleIndex into BGRA/BGRP/BGRX_4444_8u, VUYA/VUYP/VUYX_4444_8u,
// UYVY_422_8u or YUYV_422_8u. -3 wrong format, -13 wrong size, -14 bad APT/AP (or any failure
// inside the run), -16 no memory.
OX_Result DecodeDV25(const uint8_t* frame, OX_PixelFormat format, void* destination, int32_t destinationRowBytes,
                     OX_PixelFormat destinationFormat, int32_t width, int32_t height, int32_t field, int32_t quality);
// DV50: 720 x H into YUYV_422_8u, one field 720 x H/2 into YUYV_422_8u, 360 x H/2 into
// VUYA_4444_8u. -3 wrong format, -8 wrong size.
OX_Result DecodeDV50(const uint8_t* frame, OX_PixelFormat format, void* destination, int32_t destinationRowBytes,
                     OX_PixelFormat destinationFormat, int32_t width, int32_t height, int32_t field, int32_t quality);
// DV100: W x H and W x H/2 into YUYV_422_8u_709, W/2 x H/2 into VUYA_4444_8u_709. -3 wrong
// format, -8 wrong height, -7 wrong width, -14 when DSF disagrees with the format's rate.
OX_Result DecodeDV100(const uint8_t* frame, OX_PixelFormat format, void* destination, int32_t destinationRowBytes,
                      OX_PixelFormat destinationFormat, int32_t width, int32_t height, int32_t field,
                      int32_t quality);

// Picks the decoder by the source's container byte (1, 2 DV25; 7, 8 DV50; 3-6 DV100; other
// -1000). The source row bytes, width and height are not used by the DV decoders.
OX_Result DecodeDVFrame(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat, int32_t sourceWidth,
                        int32_t sourceHeight, int32_t sourceField, void* destination, int32_t destinationRowBytes,
                        OX_PixelFormat destinationFormat, int32_t width, int32_t height, int32_t quality);

// Shared by the decoders: dequantise and inverse-transform one six-block-format block given its
// word from the segment decoder.
void DequantiseAndTransformSD(int16_t* block, uint32_t blockInfo);
// The destination's first picture row and the step between rows: bottom-up formats are walked
// from their last row with negated row bytes, so the decoders always write top-down.
struct OutputRows {
  uint8_t* fFirst;
  ptrdiff_t fRowBytes;
};
OutputRows TopDownRows(void* destination, int32_t rowBytes, OX_PixelFormat format, int32_t height);
// Limits a signed sample stored around 0 to a byte around 128.
inline uint8_t SampleToByte(int v) {
  v += 128;
  return uint8_t(v < 0 ? 0 : v > 255 ? 255 : v);
}

}  // namespace OX::dv
