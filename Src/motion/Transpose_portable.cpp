// Transpose: the portable double loop, the chooser over the levels, and the export.
#include <cstring>

#include "Ombrix.h"
#include "frame/Globals.h"
#include "motion/Moves.h"

namespace OX {
namespace portable {
namespace {

template <uint32_t kItem>
void Transpose(const uint8_t* source, ptrdiff_t sourceRowBytes, uint8_t* destination, ptrdiff_t destinationRowBytes,
               int32_t width, int32_t height) {
  for (int32_t x = 0; x < width; ++x) {
    uint8_t* d = destination + x * destinationRowBytes;
    const uint8_t* s = source + ptrdiff_t(x) * kItem;
    for (int32_t y = 0; y < height; ++y, s += sourceRowBytes, d += kItem) std::memcpy(d, s, kItem);
  }
}

}  // namespace

TransposeKernel TransposeKernelFor(uint32_t itemBytes) {
  switch (itemBytes) {
    case 1: return Transpose<1>;
    case 2: return Transpose<2>;
    case 4: return Transpose<4>;
    case 8: return Transpose<8>;
    case 16: return Transpose<16>;
    default: return nullptr;
  }
}

}  // namespace portable

TransposeKernel ChooseTransposeKernel(uint32_t itemBytes) {
  if (gHasAVX2) {
    if (TransposeKernel k = avx2::TransposeKernelFor(itemBytes)) return k;
  }
  if (gHasSSE2) {
    if (TransposeKernel k = sse2::TransposeKernelFor(itemBytes)) return k;
  }
  return portable::TransposeKernelFor(itemBytes);
}

}  // namespace OX

OX_Result OX_Transpose(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
                       int32_t width, int32_t height, uint8_t pixelBytes) {
  const OX::TransposeKernel kernel = OX::ChooseTransposeKernel(pixelBytes);
  if (!kernel) return OX_ErrBadSourceFormat;
  if (width < 0) return OX_ErrBadWidth;
  if (height < 0) return OX_ErrBadHeight;
  if (width == 0 || height == 0) return OX_Success;
  if (!source) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  kernel(static_cast<const uint8_t*>(source), sourceRowBytes, static_cast<uint8_t*>(destination), destinationRowBytes,
         width, height);
  return OX_Success;
}
