// The 27 blend modes: row kernels over straight-alpha four-float pixels (BGRA_4444_32f).
#pragma once

#include <cstdint>

#include "composite/CompositeRows.h"

namespace OX {

constexpr int kBlendModeCount = 27;
constexpr OX_PixelFormat kBlendWorkingFormat = 260;  // BGRA_4444_32f

// The kernel of a mode, or null outside 0 to 26. One scalar form serves every level.
CompositeKernel BlendModeKernel(uint32_t mode);
// The mode's name as the header spells it after "OX_BlendMode_" ("Multiply"), or null.
const char* BlendModeName(uint32_t mode);

}  // namespace OX
