// Premultiply at 15u, sse2 form.

#include "conversion/PixelVecIsa.h"

namespace OX::sse2 {
#include "conversion/PixelVec.inl"
#include "conversion/premul15u.inl"
}  // namespace OX::sse2
