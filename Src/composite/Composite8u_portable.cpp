// The 8-bit composite kernels, portable: the scalar form on every pixel, and the chooser.
#include <xmmintrin.h>

#include <cstdint>
#include <cstring>
#include <array>
#include <utility>

#include "composite/CompositeCommon.h"
#include "composite/CompositeKernels.h"
#include "frame/Globals.h"

#pragma GCC optimize("fp-contract=off")

namespace OX {
namespace portable {
#include "composite/Composite8u.inl"

}  // namespace portable

CompositeKernel ChooseComposite8uKernel(int index) {
  if (gHasAVX2) return avx2::Composite8uKernel(index);
  if (gHasAVX) return avx::Composite8uKernel(index);
  if (gHasSSE2) return sse2::Composite8uKernel(index);
  return portable::Composite8uKernel(index);
}

}  // namespace OX
