// The roads of OX_Convert that start or end at a container format (DV, planar 4:2:0).
#pragma once

#include "Ombrix.h"

namespace OX {

// Source has a container byte: decode, then convert to the destination.
OX_Result ConvertFromContainer(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat,
                               void* destination, int32_t destinationRowBytes, OX_PixelFormat destinationFormat,
                               int32_t width, int32_t height, int32_t quality);
// Destination has a container byte (source raw): convert to the encoder's source, then encode.
OX_Result ConvertToContainer(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat,
                             void* destination, int32_t destinationRowBytes, OX_PixelFormat destinationFormat,
                             int32_t width, int32_t height, int32_t quality);

}  // namespace OX
