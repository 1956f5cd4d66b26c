// Colour matrices at 8u, portable form.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"
#include "conversion/matrix8u.inl"
}  // namespace OX::portable
