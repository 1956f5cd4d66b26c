// 15u depth steps, sse41 form.

#include "conversion/PixelVecIsa.h"

namespace OX::sse41 {
#include "conversion/PixelVec.inl"
#include "conversion/depth15u.inl"
}  // namespace OX::sse41
