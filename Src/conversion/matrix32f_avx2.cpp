// Colour matrices at 32f, avx2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::avx2 {
#include "conversion/PixelVec.inl"
#include "conversion/matrix32f.inl"
}  // namespace OX::avx2
