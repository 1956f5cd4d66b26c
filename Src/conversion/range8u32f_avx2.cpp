// Range and depth steps between 8u and 32f, avx2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::avx2 {
#include "conversion/PixelVec.inl"
#include "conversion/range8u32f.inl"
}  // namespace OX::avx2
