// Colour matrices at 32f, avx form.

#include "conversion/PixelVecIsa.h"

namespace OX::avx {
#include "conversion/PixelVec.inl"
#include "conversion/matrix32f.inl"
}  // namespace OX::avx
