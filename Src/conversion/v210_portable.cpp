// V210 both ways, portable form.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"
#include "conversion/Subsample.h"
#include "conversion/V210.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"
namespace {

}  // namespace
#include "conversion/v210.inl"
}  // namespace OX::portable
