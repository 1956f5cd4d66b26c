// The multiply family, portable form: table multiply with rounding shift, zero count, and the
// per-channel byte multiply by a constant.
#include "primitives/PrimitiveForms.h"
#include "primitives/ScalarRules.h"

namespace OX {
namespace portable {

void MulTableRoundScaled(const uint16_t* table, int16_t* block, int32_t count, int32_t scale) {
  for (int32_t i = 0; i < count; ++i) block[i] = MulRoundScaled(table[i], block[i], scale);
}

int32_t CountZeros64(const int16_t* block) {
  int32_t n = 0;
  for (int i = 0; i < 64; ++i) n += block[i] == 0;
  return n;
}

void MulConstant8uC4(const uint8_t* source, int32_t sourceRowBytes, const uint8_t* constant, uint8_t* destination,
                     int32_t destinationRowBytes, int32_t width, int32_t height, int32_t scaleFactor) {
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* s = source + int64_t(y) * sourceRowBytes;
    uint8_t* d = destination + int64_t(y) * destinationRowBytes;
    for (int64_t i = 0; i < int64_t(width) * 4; ++i) d[i] = MulConstantScaled(s[i], constant[i & 3], scaleFactor);
  }
}

}  // namespace portable
}  // namespace OX
