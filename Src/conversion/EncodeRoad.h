// The encode road's chooser: which raw format a container encoder is fed.
#pragma once

#include "Ombrix.h"

// Raw format that the encoder of `destinationFormat` takes from `sourceFormat`: for DV25 BGRA
// for RGB sources, VUYA for YUV alpha-bearing ones, else UYVY or YUYV by the source's order bit;
// YUYV for DV50; YUYV 709 for DV100; for planar 4:2:0 destinations the source (VUYX for a
// container source) at studio range and BGRX at full range. -1000 for anything else.
OX_Result OX_ChooseEncodeSource(OX_PixelFormat sourceFormat, OX_PixelFormat destinationFormat, int32_t quality,
                                OX_PixelFormat* outFormat);

namespace OX {

// Encodes a picture already in the encoder's raw format into a container frame of
// `destinationBytes`: DV25 through the encoder handle, DV50 and DV100 through their drivers
// (channel offset 0). -1000 for containers without an encoder.
OX_Result EncodeContainerFrame(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat, int32_t width,
                               int32_t height, void* destination, int32_t destinationBytes,
                               OX_PixelFormat destinationFormat, int32_t quality);

}  // namespace OX
