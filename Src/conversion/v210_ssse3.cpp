// V210 both ways, ssse3 form.

#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"
#include "conversion/Subsample.h"
#include "conversion/V210.h"

namespace OX::ssse3 {
#include "conversion/PixelVec.inl"
namespace {
#include "conversion/UpsampleSsse3.inl"
}  // namespace
#include "conversion/v210.inl"
}  // namespace OX::ssse3
