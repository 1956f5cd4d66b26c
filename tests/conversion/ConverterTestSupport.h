// Helpers for the row converter tests: running a family member on a row, random rows of each
// sample kind, and comparison against references computed in double precision.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "conversion/ConverterFamilies.h"

namespace OX {
namespace test {

using Choose = const RowConverter* (*)();

// Runs member `m` of the family as its chooser picks it now, over `width` pixels.
template <class Out, class In>
std::vector<Out> RunMember(Choose choose, int m, const std::vector<In>& input, int32_t width, size_t outCount) {
  std::vector<Out> out(outCount + 16);
  choose()[m](input.data(), out.data(), width);
  out.resize(outCount);
  return out;
}

// Float samples for worst cases: ordinary values in -0.5..1.5 and a share of extremes.
inline float RandomSample32f(std::mt19937& rng) {
  static const float kExtremes[] = {0.0f, -0.0f, 1.0f, -1.0f, 0.5f, 2.0f, 1e30f, -1e30f, 1e-40f,
                                    std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                                    std::numeric_limits<float>::quiet_NaN(), 7.9e-6f, 8.1e-6f};
  const uint32_t r = rng();
  if ((r & 15) == 0) return kExtremes[(r >> 4) % (sizeof kExtremes / sizeof kExtremes[0])];
  return std::uniform_real_distribution<float>(-0.5f, 1.5f)(rng);
}
inline uint16_t RandomSample15u(std::mt19937& rng) {
  static const uint16_t kExtremes[] = {0, 1, 32767, 32768, 32769, 65535};
  const uint32_t r = rng();
  if ((r & 7) == 0) return kExtremes[(r >> 3) % 6];
  return uint16_t(r % 32769);
}

// Round to nearest with ties to even, in double.
inline double RoundEven(double x) { return std::nearbyint(x); }
inline double ClampD(double x, double lo, double hi) { return x < lo ? lo : x > hi ? hi : x; }
// How close `x` lies to a point where rounding to nearest changes its answer.
inline double DistanceToHalf(double x) { return std::fabs(x - std::floor(x) - 0.5); }
// How close `x` lies to a whole number, where truncation changes its answer.
inline double DistanceToWhole(double x) { return std::fabs(x - std::nearbyint(x)); }

// An expected 8-bit value from a double `x` rounded to nearest and clamped: `got` must match,
// or be one off when x lies within `slack` of a rounding point (float arithmetic may fall on the
// other side of it).
inline bool MatchesRounded(int got, double x, double lo, double hi, double slack = 1e-3) {
  const double want = ClampD(RoundEven(x), lo, hi);
  if (got == want) return true;
  return std::fabs(got - want) <= 1 && DistanceToHalf(x) < slack;
}
// The same for + 0.5 and truncation toward zero.
inline bool MatchesTruncated(int got, double x, double lo, double hi, double slack = 1e-3) {
  const double want = ClampD(std::trunc(x), lo, hi);
  if (got == want) return true;
  return std::fabs(got - want) <= 1 && DistanceToWhole(x) < slack;
}

}  // namespace test
}  // namespace OX
