// Colour matrices at 8u, avx2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::avx2 {
#include "conversion/PixelVec.inl"
#include "conversion/matrix8u.inl"
}  // namespace OX::avx2
