// Tables and helpers shared by the levels of the linear-light family.
#pragma once

#include <cmath>
#include <cstdint>

namespace OX {

constexpr float kToGammaExponent = 0.45f;
constexpr float kToLinearExponent = 2.2222223f;

constexpr int kLinearBuckets = 4096;

struct LinearTables {
  float fToLinear[256];  // pow(i / 255, 2.2222223)
  float fAlpha[256];     // i / 255
  float fBoundary[255];  // pow((i + 0.5) / 255, 2.2222223)
  uint8_t fBucketStart[kLinearBuckets];  // boundaries at or below bucket / kLinearBuckets
};
const LinearTables& GetLinearTables();

// sign(c) x pow(|c|, e): the sign survives, so -1.0 stays -1.0.
inline float SignedPow(float c, float e) {
  const float m = std::pow(std::fabs(c), e);
  return c < 0.0f ? -m : m;
}

// The number of boundaries at or below `x`: 0 below the first, 255 at or above the last; NaN
// compares false everywhere and gives 0. A bucket table over 0-1 gives the count at the bucket's
// lower edge, and the few boundaries inside the bucket are walked: the same count as a binary
// search over all 255, without its unpredictable branches.
inline uint8_t CountBoundaries(const LinearTables& t, float x) {
  if (!(x > 0.0f)) return 0;  // below the first boundary, or NaN
  if (x >= 1.0f) return 255;  // above the last
  int n = t.fBucketStart[int(x * float(kLinearBuckets))];
  while (n < 255 && t.fBoundary[n] <= x) ++n;
  return uint8_t(n);
}

}  // namespace OX
