// Alpha forms, avx2 form.

#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"

namespace OX::avx2 {
#include "conversion/PixelVec.inl"
#include "conversion/alpha.inl"
}  // namespace OX::avx2
