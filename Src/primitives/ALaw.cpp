// G.711 A-law to linear 16-bit samples through a table built at compile time from the segment
// rule: the even bits of the byte are inverted on the line, bits 4-6 give the segment and bits
// 0-3 the step within it; segment 0 and 1 share the finest step, each further segment doubles it.
#include <array>
#include <cstddef>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace {

constexpr int16_t ALawSample(uint8_t code) {
  const int a = code ^ 0x55;
  const int segment = (a >> 4) & 7;
  int magnitude = ((a & 0x0F) << 4) + 8;  // the middle of the step, in 13-bit units shifted by 3
  if (segment >= 1) magnitude += 0x100;
  if (segment >= 2) magnitude <<= segment - 1;
  return int16_t((a & 0x80) ? magnitude : -magnitude);
}

constexpr std::array<int16_t, 256> kALawTable = [] {
  std::array<int16_t, 256> t{};
  for (int i = 0; i < 256; ++i) t[std::size_t(i)] = ALawSample(uint8_t(i));
  return t;
}();
static_assert(kALawTable[0x00] == -5504 && kALawTable[0x80] == 5504);
static_assert(kALawTable[0x55] == -8 && kALawTable[0xD5] == 8);

}  // namespace

namespace portable {
void ALawTo16s(const uint8_t* source, int16_t* destination, int32_t length) {
  for (int32_t i = 0; i < length; ++i) destination[i] = kALawTable[source[i]];
}
}  // namespace portable

}  // namespace OX
