// Subsampling, SSSE3 form of 4:2:2 8u to 4:4:4 8u and of 4:2:2 8u straight to RGB 8u. Eight
// pixels a step: the pairs and the pairs one on are loaded, their byte mean gives the chroma of
// the odd pixels, and one shuffle for each source places the samples. The mean here is rounded
// up, (a | b) - ((a ^ b) >> 1), which is what the average instruction computes; the portable form
// rounds down and the one-count difference between the levels is accepted.
#include <tmmintrin.h>

#include <cstring>

#include "conversion/ConverterFamilies.h"
#include "conversion/Subsample.h"

namespace OX::ssse3 {
namespace {

#include "conversion/UpsampleSsse3.inl"

template <bool LumaFirst>
void Yuv422ToVuy8u(const void* in, void* out, int32_t width) {
  Upsample422To444_8u<LumaFirst, true>(static_cast<const uint8_t*>(in), static_cast<uint8_t*>(out), width);
}

template <bool LumaFirst, int Matrix>
void Yuv422ToBgr8u(const void* in, void* out, int32_t width) {
  Yuv422ToBgr8uInChunks(&Yuv422ToVuy8u<LumaFirst>, Matrix, in, out, width);
}

}  // namespace

const RowConverter kSubsample[kSubsampleCount] = {
    &sse2::Vuy8uToUyvy8u,                     &portable::Vuy32fToUyvy32f,
    &Yuv422ToVuy8u<false>,                        &Yuv422ToVuy8u<true>,
    &portable::Uyvy32fToVuy32f<false>,            &portable::Uyvy32fToVuy32f<true>,
    &Yuv422ToBgr8u<false, kVuy8uToBgr8u601>,      &Yuv422ToBgr8u<false, kVuy8uToBgr8u709>,
    &Yuv422ToBgr8u<true, kVuy8uToBgr8u601>,       &Yuv422ToBgr8u<true, kVuy8uToBgr8u709>};

}  // namespace OX::ssse3
