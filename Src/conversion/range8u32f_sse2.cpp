// Range and depth steps between 8u and 32f, sse2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::sse2 {
#include "conversion/PixelVec.inl"
#include "conversion/range8u32f.inl"
}  // namespace OX::sse2
