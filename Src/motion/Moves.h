// The whole-image moves: transpose kernels for 1- to 16-byte items and the chooser that picks one
// from the processor flags at each call. Rotation by quarter turns is a transpose walked with a
// reversed source or destination, so it shares these kernels.
#pragma once

#include <cstddef>
#include <cstdint>

namespace OX {

// Item (x, y) of the source becomes item (y, x) of the destination. Row bytes are signed byte
// distances (a negative value walks upward); they need not be multiples of the item size.
// Source and destination must not overlap.
using TransposeKernel = void (*)(const uint8_t* source, ptrdiff_t sourceRowBytes, uint8_t* destination,
                                 ptrdiff_t destinationRowBytes, int32_t width, int32_t height);

namespace portable {
TransposeKernel TransposeKernelFor(uint32_t itemBytes);  // 1, 2, 4, 8, 16; else null
}
namespace sse2 {
// Tiled forms: the source is taken in bands whose items fill 256 bytes of a destination row.
TransposeKernel TransposeKernelFor(uint32_t itemBytes);  // 4, 8, 16; else null
}
namespace avx2 {
TransposeKernel TransposeKernelFor(uint32_t itemBytes);  // 4, 8; else null
}

// The half turn of 4-byte pixels: row y reversed into row height - 1 - y.
using HalfTurnKernel = void (*)(const uint8_t* source, ptrdiff_t sourceRowBytes, uint8_t* destination,
                                ptrdiff_t destinationRowBytes, int32_t width, int32_t height);
namespace portable {
void HalfTurn(const uint8_t* source, ptrdiff_t srb, uint8_t* destination, ptrdiff_t drb, int32_t width, int32_t height);
}
namespace sse2 {
void HalfTurn(const uint8_t* source, ptrdiff_t srb, uint8_t* destination, ptrdiff_t drb, int32_t width, int32_t height);
}
// The form the current processor flags select for `itemBytes` (null for an unknown size).
TransposeKernel ChooseTransposeKernel(uint32_t itemBytes);
HalfTurnKernel ChooseHalfTurnKernel();

}  // namespace OX
