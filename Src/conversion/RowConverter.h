// Row converters: plain functions doing one step between two neighbouring formats over one row.
#pragma once

#include <cstdint>

#include "Ombrix.h"

namespace OX {

// Reads `width` pixels from `input`, writes them to `output`. Knows nothing of strides.
using RowConverter = void (*)(const void* input, void* output, int32_t width);

// The converter for one step from `from` to the neighbouring format `to`, chosen at the current
// processor level, or null when no converter joins the two. `quality` selects between the forms
// that depend on it (the 32f chroma up-sampling).
RowConverter FindRowConverter(OX_PixelFormat from, OX_PixelFormat to, int32_t quality);

}  // namespace OX
