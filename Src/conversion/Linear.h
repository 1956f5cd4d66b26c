// Tables and helpers shared by the levels of the linear-light family.
#pragma once

#include <cmath>
#include <cstdint>

namespace OX {

constexpr float kToGammaExponent = 0.45f;
constexpr float kToLinearExponent = 2.2222223f;

struct LinearTables {
  float fToLinear[256];  // pow(i / 255, 2.2222223)
  float fAlpha[256];     // i / 255
  float fBoundary[255];  // pow((i + 0.5) / 255, 2.2222223)
};
const LinearTables& GetLinearTables();

// sign(c) x pow(|c|, e): the sign survives, so -1.0 stays -1.0.
inline float SignedPow(float c, float e) {
  const float m = std::pow(std::fabs(c), e);
  return c < 0.0f ? -m : m;
}

// The number of boundaries at or below `x`: 0 below the first, 255 at or above the last; NaN
// compares false everywhere and gives 0.
inline uint8_t CountBoundaries(const LinearTables& t, float x) {
  int lo = 0, hi = 255;  // answer in [lo, hi]
  while (lo < hi) {
    const int mid = (lo + hi) / 2;  // is boundary `mid` at or below x?
    if (t.fBoundary[mid] <= x)
      lo = mid + 1;
    else
      hi = mid;
  }
  return uint8_t(lo);
}

}  // namespace OX
