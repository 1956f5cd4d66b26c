// The per-value rules of the multiply family, shared by every form (the vector forms use them for
// the tails of their rows).
#pragma once

#include <cstdint>

namespace OX {

inline int32_t Saturate16(int32_t x) { return x > 32767 ? 32767 : x < -32768 ? -32768 : x; }

// p / 2^s rounded to nearest, ties to even, for 1 <= s <= 30, without leaving 32 bits: the
// quotient's floor plus a carry from the remainder, half the divisor less one and the quotient's
// low bit.
inline int32_t RoundShiftEven(int32_t p, int s) {
  const int32_t q = p >> s;
  const int32_t remainder = int32_t(uint32_t(p) & ((1u << s) - 1));
  return q + ((remainder + (1 << (s - 1)) - 1 + (q & 1)) >> s);
}

// One value of VecMulTableRoundScaled.
inline int16_t MulRoundScaled(uint16_t t, int16_t b, int32_t scale) {
  const int32_t p = int32_t(t) * int32_t(b);  // |p| < 2^31
  if (scale == 0) return int16_t(Saturate16(p));
  if (scale > 0) return scale > 30 ? 0 : int16_t(Saturate16(RoundShiftEven(p, scale)));
  if (scale >= -15) return int16_t(Saturate16(Saturate16(p) << -scale));
  return int16_t(p > 0 ? 32767 : p < 0 ? -32768 : 0);
}

// One channel of VecMulConstant8uC4.
inline uint8_t MulConstantScaled(uint8_t s, uint8_t k, int32_t scaleFactor) {
  const int32_t p = int32_t(s) * int32_t(k);  // 0..65025
  int32_t r;
  if (scaleFactor == 0)
    r = p;
  else if (scaleFactor < 0)
    r = scaleFactor < -7 ? (p ? 255 : 0) : p << -scaleFactor;
  else
    r = scaleFactor > 16 ? 0 : RoundShiftEven(p, scaleFactor);
  return uint8_t(r > 255 ? 255 : r);
}

}  // namespace OX
