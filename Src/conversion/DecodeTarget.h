// The decode chooser: in which raw format and at what size a container frame is decoded for a
// destination, so that as much of the decoder's work as possible is skipped.
#pragma once

#include "Ombrix.h"

// 0 with the three outputs set; -3 (outputs untouched) for a source that is not a container
// with a decoder. `sourceWidth` and `sourceHeight` matter only to the planar containers.
OX_Result OX_ChooseDecodeTarget(OX_PixelFormat sourceFormat, int32_t sourceWidth, int32_t sourceHeight,
                                OX_PixelFormat destinationFormat, int32_t destinationWidth,
                                int32_t destinationHeight, int32_t quality, OX_PixelFormat* outFormat,
                                int32_t* outWidth, int32_t* outHeight);
