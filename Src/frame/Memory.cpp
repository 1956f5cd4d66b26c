// Transient blocks and pixel buffers on the recycler, each started at a pseudo-random multiple of
// 128 bytes so that the many large buffers of a frame's work do not share cache sets.
#include <cstring>

#include "frame/CopyMemory.h"
#include "frame/Globals.h"
#include "frame/PixelFormat.h"
#include "platform/CRand.h"
#include "platform/zelcore.h"

namespace OX {
namespace {

// Returns the aligned pointer or null; on success stores the recycler's base and size.
uint8_t* AllocateAtOffset(uint32_t size, void** outBase, uint32_t* outAllocatedSize) {
  const int r = crt::Rand() % 64;  // a signed remainder: 0 to 63 for the generator's range
  const uint64_t offset = uint64_t(int64_t(r) * 128);
  const uint64_t request = uint64_t(size) + offset + 15;
  if (request > 0xFFFFFFFFull) return nullptr;
  uint32_t allocated = 0;
  void* base = zelcore::utility::MemoryRecycler::Allocate(uint32_t(request), allocated);
  if (!base) return nullptr;
  if (outBase) *outBase = base;
  if (outAllocatedSize) *outAllocatedSize = allocated;
  return reinterpret_cast<uint8_t*>((reinterpret_cast<uintptr_t>(base) + offset + 15) & ~uintptr_t(15));
}

OX_Result AllocatePixelBuffer(OX_PixelFormat format, int32_t width, int32_t height, void** outBase,
                              void** outPixels, int32_t* outRowBytes, uint32_t* outAllocatedSize) {
  const uint32_t container = ContainerByte(format);
  int64_t size = 0;
  int32_t rowBytes = 0;
  if (container >= 1 && container <= 8) {
    size = DVFrameSize(container);
  } else if (container >= 9 && container <= 12) {
    size = PlanarSize(width, height);
  } else if (container == 0) {
    rowBytes = PaddedRowBytes(format, width);
    size = int64_t(rowBytes) * height;
  }
  if (outRowBytes) *outRowBytes = rowBytes;
  if (size == 0) {
    if (outBase) *outBase = nullptr;
    if (outAllocatedSize) *outAllocatedSize = 0;
    if (outPixels) *outPixels = nullptr;
    return OX_Success;
  }
  uint8_t* pixels = size > 0 && size <= 0xFFFFFFFFll ? AllocateAtOffset(uint32_t(size), outBase, outAllocatedSize)
                                                     : nullptr;
  if (!pixels) {
    if (outPixels) *outPixels = nullptr;
    if (outBase) *outBase = nullptr;
    if (outRowBytes) *outRowBytes = 0;
    if (outAllocatedSize) *outAllocatedSize = 0;
    return OX_ErrNoMemory;
  }
  if (outPixels) *outPixels = pixels;
  return OX_Success;
}

}  // namespace
}  // namespace OX

using namespace OX;

void* OX_AllocateTransientMemoryBlock(uint32_t size, void** outBase, uint32_t* outAllocatedSize) {
  if (size == 0) {
    if (outBase) *outBase = nullptr;
    if (outAllocatedSize) *outAllocatedSize = 0;
    return nullptr;
  }
  return AllocateAtOffset(size, outBase, outAllocatedSize);
}

void OX_FreeTransientMemoryBlock(void* base, uint32_t allocatedSize) {
  if (base) zelcore::utility::MemoryRecycler::Recycle(base, allocatedSize);
}

OX_Result OX_AllocatePixelBuffer(OX_PixelFormat format, int32_t width, int32_t height, void** outBase,
                                 void** outPixels, int32_t* outRowBytes, uint32_t* outAllocatedSize) {
  return AllocatePixelBuffer(format, width, height, outBase, outPixels, outRowBytes, outAllocatedSize);
}

OX_Result OX_AllocateTransientPixelBuffer(OX_PixelFormat format, int32_t width, int32_t height, void** outBase,
                                          void** outPixels, int32_t* outRowBytes, uint32_t* outAllocatedSize) {
  return AllocatePixelBuffer(format, width, height, outBase, outPixels, outRowBytes, outAllocatedSize);
}

OX_Result OX_FreePixelBuffer(OX_PixelFormat, void* base, uint32_t allocatedSize) {
  OX_FreeTransientMemoryBlock(base, allocatedSize);
  return OX_Success;
}

OX_Result OX_FreeTransientPixelBuffer(OX_PixelFormat, void* base, uint32_t allocatedSize) {
  OX_FreeTransientMemoryBlock(base, allocatedSize);
  return OX_Success;
}

namespace OX {

CopyPlan PlanCopyMemory(uint32_t bytes) {
  if (bytes < 128) return {CopyPlan::kBlockMove, false};
  // Half the last-level cache: above that, a copy would evict more than it could reuse.
  const uint32_t threshold = gCacheBytes / 2;
  return {gHasAVX ? CopyPlan::kAVX : CopyPlan::kSSE2, bytes >= threshold};
}

}  // namespace OX

OX_Result OX_CopyMemory(void* destination, const void* source, uint32_t bytes) {
  const CopyPlan plan = PlanCopyMemory(bytes);
  auto* d = static_cast<uint8_t*>(destination);
  auto* s = static_cast<const uint8_t*>(source);
  switch (plan.fPath) {
    case CopyPlan::kBlockMove: std::memcpy(d, s, bytes); break;
    case CopyPlan::kSSE2: sse2::CopyMemory(d, s, bytes, plan.fStream); break;
    case CopyPlan::kAVX: avx::CopyMemory(d, s, bytes, plan.fStream); break;
  }
  return OX_Success;
}

OX_Result OX_CopyPlanar_8u(const void* const sourcePlanes[3], const int32_t sourceRowBytes[3],
                           void* const destinationPlanes[3], const int32_t destinationRowBytes[3], int32_t width,
                           int32_t height) {
  auto copyPlane = [](const void* src, int32_t srcRB, void* dst, int32_t dstRB, int32_t w, int32_t rows,
                      uint32_t blockBytes) {
    if (w == srcRB && w == dstRB) {
      OX_CopyMemory(dst, src, blockBytes);
      return;
    }
    auto* s = static_cast<const uint8_t*>(src);
    auto* d = static_cast<uint8_t*>(dst);
    for (int32_t y = 0; y < rows; ++y, s += srcRB, d += dstRB) OX_CopyMemory(d, s, uint32_t(w));
  };
  copyPlane(sourcePlanes[0], sourceRowBytes[0], destinationPlanes[0], destinationRowBytes[0], width, height,
            uint32_t(int64_t(width) * height));
  const int32_t chromaWidth = width >> 1;
  for (int p = 1; p <= 2; ++p) {
    if (chromaWidth == sourceRowBytes[p] && chromaWidth == destinationRowBytes[p]) {
      OX_CopyMemory(destinationPlanes[p], sourcePlanes[p], uint32_t((int64_t(width) * height) >> 2));
    } else if (height > 1) {
      copyPlane(sourcePlanes[p], sourceRowBytes[p], destinationPlanes[p], destinationRowBytes[p], chromaWidth,
                height >> 1, 0);
    }
  }
  return OX_Success;
}
