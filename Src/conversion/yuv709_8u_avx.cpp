// 601 with 709 at 8u, avx form.

#include "conversion/PixelVecIsa.h"

namespace OX::avx {
#include "conversion/PixelVec.inl"
#include "conversion/yuv709_8u.inl"
}  // namespace OX::avx
