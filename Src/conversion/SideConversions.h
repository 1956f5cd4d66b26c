// Row kernels of the side conversions and their choosers, one small family each.
#pragma once

#include <cstdint>

namespace OX {

// R, G, B bytes to B, G, R, 255 over one row.
using Rgb24ToBgraRow = void (*)(const uint8_t* source, uint8_t* destination, int32_t width);
// Ten-bit R, G, B words to 0, R, G, B words on the 15u scale over one row, in whole groups;
// returns the pixels written (width rounded up to the group).
using Rgb16uToXrgb15uRow = int32_t (*)(const uint16_t* source, uint16_t* destination, int32_t width);
// 16u to 15u in place over one row of four-sample pixels.
using Scale16uRow = void (*)(uint16_t* row, int32_t width, bool swapBytes);

namespace portable {
void Rgb24ToBgra(const uint8_t* source, uint8_t* destination, int32_t width);
int32_t Rgb16uToXrgb15u(const uint16_t* source, uint16_t* destination, int32_t width);
void Scale16uTo15u(uint16_t* row, int32_t width, bool swapBytes);
}  // namespace portable
namespace sse2 {
int32_t Rgb16uToXrgb15u(const uint16_t* source, uint16_t* destination, int32_t width);
}
namespace ssse3 {
void Rgb24ToBgra(const uint8_t* source, uint8_t* destination, int32_t width);
void Scale16uTo15u(uint16_t* row, int32_t width, bool swapBytes);
}  // namespace ssse3
namespace sse41 {
void Scale16uTo15u(uint16_t* row, int32_t width, bool swapBytes);
}
namespace avx2 {
int32_t Rgb16uToXrgb15u(const uint16_t* source, uint16_t* destination, int32_t width);
}

Rgb24ToBgraRow ChooseRgb24ToBgra();
Rgb16uToXrgb15uRow ChooseRgb16uToXrgb15u();
// The portable form walks the rows from last to first; the vector forms from first to last.
Scale16uRow ChooseScale16uTo15u();

// Shared by the levels: one pixel of each.
inline void Rgb24ToBgraPixel(const uint8_t* s, uint8_t* d) {
  d[0] = s[2];
  d[1] = s[1];
  d[2] = s[0];
  d[3] = 255;
}

}  // namespace OX
