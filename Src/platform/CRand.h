// The C library's pseudo-random generator as the library's arithmetic expects it: results 0 to
// 32767, a linear congruential step, and per-thread state seeded with 1. The host C library's own
// rand runs to 2^31 - 1, which would change allocation offsets and dissolve densities.
#pragma once

#include <cstdint>

namespace OX {
namespace crt {

constexpr int kRandMax = 32767;
int Rand();
void SRand(unsigned seed);

}  // namespace crt
}  // namespace OX
