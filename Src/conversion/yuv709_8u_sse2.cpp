// 601 with 709 at 8u, sse2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::sse2 {
#include "conversion/PixelVec.inl"
#include "conversion/yuv709_8u.inl"
}  // namespace OX::sse2
