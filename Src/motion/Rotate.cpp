// Quarter-turn rotation of four-channel 8-bit images, and the in-place vertical flip.
//
// A quarter turn is a transpose of 4-byte pixels with one side walked backward, so it runs on the
// transpose kernels of the current level: 90 reads the source from its last row up, 270 writes the
// destination from its last row up. The half turn reverses each row into the mirrored row.
#include <cstdlib>
#include <cstring>

#include "Ombrix.h"
#include "frame/Globals.h"
#include "frame/PixelFormat.h"
#include "frame/Scratch.h"
#include "motion/Moves.h"

namespace OX {
namespace {

// Row bytes of a quarter-turn walk address whole 4-byte pixels: the low two bits of the distance
// are dropped, keeping its sign, so that a negative stride does not grow by the clearing.
ptrdiff_t PixelStride(int32_t rowBytes) {
  const int64_t magnitude = std::llabs(int64_t(rowBytes)) & ~int64_t(3);
  return rowBytes < 0 ? -ptrdiff_t(magnitude) : ptrdiff_t(magnitude);
}

}  // namespace

namespace portable {
void HalfTurn(const uint8_t* source, ptrdiff_t srb, uint8_t* destination, ptrdiff_t drb, int32_t width,
              int32_t height) {
  for (int32_t y = 0; y < height; ++y) {
    const uint32_t* s = reinterpret_cast<const uint32_t*>(source + y * srb);
    uint8_t* d = destination + ptrdiff_t(height - 1 - y) * drb;
    // Pairs of pixels from the row's far end; the last odd pixel on its own.
    int32_t x = 0;
    for (; x + 2 <= width; x += 2) {
      uint32_t pair[2];
      std::memcpy(pair, s + width - 2 - x, 8);
      const uint32_t swapped[2] = {pair[1], pair[0]};
      std::memcpy(d + ptrdiff_t(x) * 4, swapped, 8);
    }
    if (x < width) std::memcpy(d + ptrdiff_t(x) * 4, s, 4);
  }
}
}  // namespace portable

HalfTurnKernel ChooseHalfTurnKernel() { return gHasSSE2 ? sse2::HalfTurn : portable::HalfTurn; }

}  // namespace OX

OX_Result OX_RotateImage(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
                         int32_t width, int32_t height, OX_PixelFormat format, int32_t degrees) {
  // Four-channel 8-bit: 4:4:4, some alpha mode, 8 bits. Only these bits are tested.
  if ((format & 0x30) != 0 || (format & 0xC) == 0 || (format & 0x1C0) != 0) return OX_ErrBadSourceFormat;
  enum { kQuarter, kHalf, kThreeQuarters } turn;
  switch (degrees) {
    case 90: case -270: turn = kQuarter; break;
    case 180: case -180: turn = kHalf; break;
    case 270: case -90: turn = kThreeQuarters; break;
    default: return OX_ErrUnsupported;
  }
  if (width <= 0 || height <= 0) return OX_Success;
  if (!source) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  const auto* s = static_cast<const uint8_t*>(source);
  auto* d = static_cast<uint8_t*>(destination);
  if (turn == kHalf) {
    OX::ChooseHalfTurnKernel()(s, sourceRowBytes, d, destinationRowBytes, width, height);
    return OX_Success;
  }
  const ptrdiff_t srb = OX::PixelStride(sourceRowBytes), drb = OX::PixelStride(destinationRowBytes);
  const OX::TransposeKernel transpose = OX::ChooseTransposeKernel(4);
  if (turn == kQuarter) {
    // Destination (x, y) is source (y, h - 1 - x): the transpose of the source read bottom-up.
    transpose(s + ptrdiff_t(height - 1) * srb, -srb, d, drb, width, height);
  } else {
    // Destination (x, y) is source (w - 1 - y, x): the transpose written into the destination bottom-up.
    transpose(s, srb, d + ptrdiff_t(width - 1) * drb, -drb, width, height);
  }
  return OX_Success;
}

OX_Result OX_FlipInPlace(void* buffer, int32_t rowBytes, int32_t width, int32_t height, OX_PixelFormat format) {
  if (OX::IsContainerFormat(format) || width <= 0 || height < 2) return OX_Success;
  // The row's own bytes, without padding, so that a caller's tight last row is never overrun.
  const int32_t n = OX::TightRowBytes(format, width);
  if (n <= 0) return OX_Success;
  if (!buffer) return OX_ErrNullDest;
  auto* base = static_cast<uint8_t*>(buffer);
  for (int32_t i = 0; i < height / 2; ++i) {
    uint8_t* top = base + ptrdiff_t(i) * rowBytes;
    uint8_t* bottom = base + ptrdiff_t(height - 1 - i) * rowBytes;
    OX::ScratchBuffer scratch{size_t(uint32_t(n))};
    if (!scratch.Get()) return OX_ErrNoMemory;
    // Three moves through the block copy, which picks its path (plain, vector, streaming) by length.
    OX_CopyMemory(scratch.Get(), top, uint32_t(n));
    OX_CopyMemory(top, bottom, uint32_t(n));
    OX_CopyMemory(bottom, scratch.Get(), uint32_t(n));
  }
  return OX_Success;
}
