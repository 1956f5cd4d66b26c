// 601 with 709 at 8u, avx2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::avx2 {
#include "conversion/PixelVec.inl"
#include "conversion/yuv709_8u.inl"
}  // namespace OX::avx2
