// Premultiply at 15u, sse41 form.

#include "conversion/PixelVecIsa.h"

namespace OX::sse41 {
#include "conversion/PixelVec.inl"
#include "conversion/premul15u.inl"
}  // namespace OX::sse41
