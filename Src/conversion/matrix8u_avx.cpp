// Colour matrices at 8u, avx form.

#include "conversion/PixelVecIsa.h"

namespace OX::avx {
#include "conversion/PixelVec.inl"
#include "conversion/matrix8u.inl"
}  // namespace OX::avx
