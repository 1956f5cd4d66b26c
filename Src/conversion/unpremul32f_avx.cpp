// Un-premultiply at 32f, avx form.

#include "conversion/PixelVecIsa.h"

namespace OX::avx {
#include "conversion/PixelVec.inl"
#include "conversion/unpremul32f.inl"
}  // namespace OX::avx
