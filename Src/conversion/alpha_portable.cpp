// Alpha forms, portable form.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"
#include "conversion/alpha.inl"
}  // namespace OX::portable
