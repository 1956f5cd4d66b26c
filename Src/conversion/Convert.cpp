// OX_Convert: the one road between formats. Equal formats are copied, containers go to their
// decode and encode roads, and raw formats run row by row through one chain of row converters,
// both buffers walked from the bottom row of the picture up.
#include <cstring>

#include "conversion/ContainerRoads.h"
#include "conversion/ConvertPipeline.h"
#include "conversion/RowConverterChain.h"
#include "frame/FloatGuard.h"
#include "frame/PixelFormat.h"
#include "primitives/Primitives.h"

namespace OX {
namespace {

const uint8_t* Advance(const void* p, int64_t bytes) { return static_cast<const uint8_t*>(p) + bytes; }
uint8_t* Advance(void* p, int64_t bytes) { return static_cast<uint8_t*>(p) + bytes; }

// One block move of any size through OX_CopyMemory, which counts in 32 bits.
void CopyBlock(void* destination, const void* source, uint64_t bytes) {
  constexpr uint64_t kPiece = 0x40000000;
  uint64_t done = 0;
  while (bytes - done > kPiece) {
    OX_CopyMemory(Advance(destination, int64_t(done)), Advance(source, int64_t(done)), uint32_t(kPiece));
    done += kPiece;
  }
  OX_CopyMemory(Advance(destination, int64_t(done)), Advance(source, int64_t(done)), uint32_t(bytes - done));
}

}  // namespace

OX_Result CopySameFormat(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
                         OX_PixelFormat format, int32_t width, int32_t height) {
  const uint32_t container = ContainerByte(format);
  if (container == 0) {
    const int32_t tight = TightRowBytes(format, width);
    if (height <= 0 || tight <= 0) return OX_Success;  // nothing to copy
    if (!source) return OX_ErrNullSource;
    if (!destination) return OX_ErrNullDest;
    const int64_t absRowBytes = sourceRowBytes < 0 ? -int64_t(sourceRowBytes) : int64_t(sourceRowBytes);
    if (sourceRowBytes == destinationRowBytes && absRowBytes == tight) {
      // The frame is one block; a backward walk starts at its lowest row in memory.
      if (sourceRowBytes < 0) {
        source = Advance(source, int64_t(height - 1) * sourceRowBytes);
        destination = Advance(destination, int64_t(height - 1) * destinationRowBytes);
      }
      CopyBlock(destination, source, uint64_t(height) * uint64_t(absRowBytes));
      return OX_Success;
    }
    const int32_t r = VecCopy2D8u(source, sourceRowBytes, destination, destinationRowBytes, tight, height);
    return r == OX_Success ? OX_Success : OX_ErrNoRoute;
  }
  if (!source) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  if (IsDVContainer(format)) {
    OX_CopyMemory(destination, source, DVFrameSize(container));
    return OX_Success;
  }
  if (IsPlanarContainer(format)) {
    const int32_t size = OX_PixelFormatSize(format, width, height);
    if (size > 0) OX_CopyMemory(destination, source, uint32_t(size));
    return OX_Success;
  }
  if (sourceRowBytes != destinationRowBytes) return OX_ErrSizeMismatch;
  if (sourceRowBytes > 0) OX_CopyMemory(destination, source, uint32_t(sourceRowBytes));
  return OX_Success;
}

}  // namespace OX

using namespace OX;

OX_Result OX_ConvertRows(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat, void* destination,
                         int32_t destinationRowBytes, OX_PixelFormat destinationFormat, int32_t width, int32_t height,
                         int32_t quality) {
  if (IsContainerFormat(sourceFormat)) return OX_ErrBadSourceFormat;
  if (IsContainerFormat(destinationFormat)) return OX_ErrBadDestFormat;
  const RowConverterChain chain(sourceFormat, destinationFormat, quality);
  if (chain.Empty()) return OX_ErrNoRoute;
  if (height <= 0 || width <= 0) return OX_Success;
  if (!source) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  for (int32_t y = 0; y < height; ++y) {
    if (!chain.Apply(Advance(source, int64_t(y) * sourceRowBytes), Advance(destination, int64_t(y) * destinationRowBytes),
                     width))
      return OX_ErrNoMemory;  // a very wide row whose scratch could not be had
  }
  return OX_Success;
}

OX_Result OX_Convert(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat, void* destination,
                     int32_t destinationRowBytes, OX_PixelFormat destinationFormat, int32_t width, int32_t height,
                     int32_t quality) {
  FloatGuard guard;
  if (sourceFormat == destinationFormat)
    return CopySameFormat(source, sourceRowBytes, destination, destinationRowBytes, sourceFormat, width, height);
  if (IsContainerFormat(sourceFormat))
    return ConvertFromContainer(source, sourceRowBytes, sourceFormat, destination, destinationRowBytes,
                                destinationFormat, width, height, quality);
  if (IsContainerFormat(destinationFormat))
    return ConvertToContainer(source, sourceRowBytes, sourceFormat, destination, destinationRowBytes,
                              destinationFormat, width, height, quality);
  // Walk both sides from the bottom row of the picture: top-down buffers from their last row back.
  if (height > 0) {
    if (OX_IsOriginTopLeft(sourceFormat) && source) {
      source = Advance(source, int64_t(height - 1) * sourceRowBytes);
      sourceRowBytes = -sourceRowBytes;
    }
    if (OX_IsOriginTopLeft(destinationFormat) && destination) {
      destination = Advance(destination, int64_t(height - 1) * destinationRowBytes);
      destinationRowBytes = -destinationRowBytes;
    }
  }
  return OX_ConvertRows(source, sourceRowBytes, sourceFormat, destination, destinationRowBytes, destinationFormat,
                        width, height, quality);
}
