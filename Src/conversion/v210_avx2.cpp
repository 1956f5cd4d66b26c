// V210 both ways, avx2 form.

#include "conversion/PixelVecIsa.h"
#include "conversion/Subsample.h"
#include "conversion/V210.h"

namespace OX::avx2 {
#include "conversion/PixelVec.inl"
namespace {
#include "conversion/UpsampleSsse3.inl"
}  // namespace
#include "conversion/v210.inl"
}  // namespace OX::avx2
