// Colour matrices at 32f, portable form.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"
#include "conversion/matrix32f.inl"
}  // namespace OX::portable
