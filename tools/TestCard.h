// The built-in test picture: colour bars, grey and colour ramps and a zone plate.
#pragma once

#include <cstdint>
#include <vector>

namespace ombrix_tool {

// BGRA_4444_8u, bottom-up rows of width * 4 bytes, opaque except a ramp of alpha in one strip.
std::vector<uint8_t> DrawTestCard(int width, int height);

}  // namespace ombrix_tool
