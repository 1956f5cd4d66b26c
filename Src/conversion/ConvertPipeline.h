// The raw conversion road of OX_Convert: the step chooser, the row loop and the same-format copy.
#pragma once

#include <cstdint>

#include "Ombrix.h"
#include "conversion/RowConverter.h"

// One step from `current` towards `destination`: stores the step's converter (null when none joins
// the two formats) in `outConverter` and the format it lands on in `inOutFormat`, which holds
// `current` on entry. 0, or -3 / -4 for a container or unknown code on either side. Pure: depends
// on the arguments and the processor flags only.
OX_Result OX_ChooseRowStep(OX_PixelFormat current, OX_PixelFormat destination, int32_t quality,
                           OX::RowConverter* outConverter, OX_PixelFormat* inOutFormat);

// Converts `height` rows between two raw formats through one chain built for the call, walking
// both buffers by their row bytes as given (origins are the caller's business). -3 / -4 for a
// container on either side, -999 when no route exists, 0 for a height or width of 0 or less.
OX_Result OX_ConvertRows(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat, void* destination,
                         int32_t destinationRowBytes, OX_PixelFormat destinationFormat, int32_t width, int32_t height,
                         int32_t quality);

namespace OX {

// Copies a frame to a buffer of the same format: raw formats by tight rows (one block move when
// both row bytes equal the tight value, also when negative), DV and planar frames whole.
// -999 when the row copy fails, -13 for an unknown container with unequal row bytes.
OX_Result CopySameFormat(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
                         OX_PixelFormat format, int32_t width, int32_t height);

// The row copy converter of a raw format (its tight bytes for `width` pixels), or null for a code
// without a row size. The chooser uses it for a step from a format to itself.
RowConverter RowCopyConverter(OX_PixelFormat format);

}  // namespace OX
