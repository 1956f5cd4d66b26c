// Premultiply at 15u, portable form.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"
#include "conversion/premul15u.inl"
}  // namespace OX::portable
