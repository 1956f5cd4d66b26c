// The floating-point guard of the float entry points: flush to zero and a masked precision
// exception for the call, the caller's MXCSR restored and x87 exceptions cleared on every way
// out. Results must not depend on it, since pool threads run without it.
#pragma once

#include <xmmintrin.h>

namespace OX {

class FloatGuard {
 public:
  FloatGuard() : fSaved(_mm_getcsr()) { _mm_setcsr(fSaved | 0x8020u); }
  ~FloatGuard() {
    _mm_setcsr(fSaved);
    __asm__ __volatile__("fnclex");
  }
  FloatGuard(const FloatGuard&) = delete;
  FloatGuard& operator=(const FloatGuard&) = delete;

 private:
  unsigned fSaved;
};

}  // namespace OX
