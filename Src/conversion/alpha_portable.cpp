// Alpha forms, portable form.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"
#include "conversion/alpha.inl"
}  // namespace OX::portable
