// Range and depth steps between 8u and 32f, portable form.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"
#include "conversion/range8u32f.inl"
}  // namespace OX::portable
