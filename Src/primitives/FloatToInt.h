// Shared rules of the scaled float-to-integer conversions.
#pragma once

#include <cmath>
#include <cstdint>

namespace OX {

// 2^-scaleFactor as a double. Beyond +-1000 the factor is held at 2^-+1000: every float times
// 2^1000 (if not zero) already saturates, and every float times 2^-1000 already rounds to 0, so
// the results are those of the exact scaling. Within that range the product of a float and the
// factor is exact in double precision.
inline double ConversionFactor(int32_t scaleFactor) {
  const int32_t s = scaleFactor > 1000 ? 1000 : scaleFactor < -1000 ? -1000 : scaleFactor;
  return std::ldexp(1.0, -s);
}

// The largest float below 2^31; it and everything above it give 0x7FFFFFFF.
constexpr double kInt32High = 2147483520.0;
constexpr double kInt32Low = -2147483648.0;

inline int32_t ConvertTo32s(float value, double factor, bool round) {
  const double v = double(value) * factor;
  if (v != v) return 0;
  if (v >= kInt32High) return INT32_MAX;
  if (v <= kInt32Low) return INT32_MIN;
  return int32_t(round ? std::nearbyint(v) : std::trunc(v));
}

inline int16_t ConvertTo16s(float value, double factor, bool round) {
  double v = double(value) * factor;
  if (v != v) return 0;
  v = v < -32768.0 ? -32768.0 : v > 32767.0 ? 32767.0 : v;
  return int16_t(round ? std::nearbyint(v) : std::trunc(v));
}

}  // namespace OX
