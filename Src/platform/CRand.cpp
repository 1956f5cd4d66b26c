#include "platform/CRand.h"

namespace OX {
namespace crt {
namespace {
thread_local uint32_t tState = 1;
}

int Rand() {
  tState = tState * 214013u + 2531011u;
  return int((tState >> 16) & 0x7FFF);
}

void SRand(unsigned seed) { tState = seed; }

}  // namespace crt
}  // namespace OX
