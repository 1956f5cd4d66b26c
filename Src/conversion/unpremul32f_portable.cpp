// Un-premultiply at 32f, portable form.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"
#include "conversion/unpremul32f.inl"
}  // namespace OX::portable
