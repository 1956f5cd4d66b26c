// 15u depth steps, sse2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::sse2 {
#include "conversion/PixelVec.inl"
#include "conversion/depth15u.inl"
}  // namespace OX::sse2
