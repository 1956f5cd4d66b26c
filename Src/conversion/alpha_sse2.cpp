// Alpha forms, sse2 form.

#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"

namespace OX::sse2 {
#include "conversion/PixelVec.inl"
#include "conversion/alpha.inl"
}  // namespace OX::sse2
