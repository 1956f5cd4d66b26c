// The kernels of the plain composite: eight float kernels (one scalar form for every level) and
// sixteen 8-bit kernels (BGR 0-7, VUY 8-15) with portable, SSE2, AVX and AVX2 forms.
//
// The index within a group of eight is built from three bits: 4 for a premultiplied (rather than
// straight) destination, 2 for an opaque source, 1 for an opaque background.
#pragma once

#include <cstdint>

#include "composite/CompositeRows.h"

namespace OX {

constexpr int kCompositeFloatKernels = 8;
constexpr int kComposite8uKernels = 16;

CompositeKernel CompositeFloatKernel(int index);  // 0..7

namespace portable {
CompositeKernel Composite8uKernel(int index);  // 0..15
}
// The vector forms run the portable form up to the first 16-byte-aligned destination pixel and on
// the tail. They multiply by 0.003921569 for 1/255 and use the unrefined approximate reciprocal
// for the straight forms' division, so a result may be one level off the portable one.
namespace sse2 {
CompositeKernel Composite8uKernel(int index);
}
namespace avx {
CompositeKernel Composite8uKernel(int index);
}
namespace avx2 {
CompositeKernel Composite8uKernel(int index);
}
// The form the processor flags select now.
CompositeKernel ChooseComposite8uKernel(int index);

}  // namespace OX
