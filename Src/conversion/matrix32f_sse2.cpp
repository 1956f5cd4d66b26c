// Colour matrices at 32f, sse2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::sse2 {
#include "conversion/PixelVec.inl"
#include "conversion/matrix32f.inl"
}  // namespace OX::sse2
