// Bit fields of a pixel format code and the size, row bytes and name rules built on them.
#pragma once

#include <cstdint>

#include "Ombrix.h"

namespace OX {

constexpr uint32_t kYUVBit = 0x1;
constexpr uint32_t kLinearBit = 0x2;
constexpr uint32_t kAlphaMask = 0xC;
constexpr uint32_t kSubsamplingMask = 0x30;
constexpr uint32_t kDepthMask = 0x1C0;
constexpr uint32_t k709Bit = 0x200;
constexpr uint32_t kReservedBit = 0x400;
constexpr uint32_t kStudioRangeBit = 0x800;
constexpr uint32_t kOrderBit = 0x1000;
constexpr uint32_t kContainerMask = 0xFF000000;

enum AlphaMode : uint32_t { kAlphaNone = 0, kAlphaStraight = 4, kAlphaPremultiplied = 8, kAlphaIgnored = 12 };
enum Subsampling : uint32_t { kSub444 = 0, kSub422 = 16, kSubDV = 32, kSub420 = 48 };
enum Depth : uint32_t { kDepth8u = 0, kDepth10u = 64, kDepth15u = 128, kDepth32f = 256 };

constexpr uint32_t ContainerByte(OX_PixelFormat f) { return f >> 24; }
constexpr uint32_t AlphaOf(OX_PixelFormat f) { return f & kAlphaMask; }
constexpr uint32_t SubsamplingOf(OX_PixelFormat f) { return f & kSubsamplingMask; }
constexpr uint32_t DepthOf(OX_PixelFormat f) { return f & kDepthMask; }
constexpr bool IsYUV(OX_PixelFormat f) { return (f & kYUVBit) != 0; }
constexpr bool IsRawFormat(OX_PixelFormat f) { return ContainerByte(f) == 0; }
constexpr bool IsContainerFormat(OX_PixelFormat f) { return ContainerByte(f) != 0; }
constexpr bool IsDVContainer(OX_PixelFormat f) { return ContainerByte(f) >= 1 && ContainerByte(f) <= 8; }
constexpr bool IsPlanarContainer(OX_PixelFormat f) {
  return (f & kYUVBit) && ContainerByte(f) >= 9 && ContainerByte(f) <= 12 && SubsamplingOf(f) == kSub420;
}
// Subsampling 4:4:4 and an alpha mode: the four-channel buffers.
constexpr bool IsAlphaBearing(OX_PixelFormat f) { return SubsamplingOf(f) == 0 && AlphaOf(f) != 0; }
constexpr bool IsAlphaFree(OX_PixelFormat f) { return AlphaOf(f) == 0 || AlphaOf(f) == kAlphaIgnored; }
constexpr OX_PixelFormat WithAlpha(OX_PixelFormat f, uint32_t alpha) { return (f & ~kAlphaMask) | alpha; }
constexpr OX_PixelFormat WithDepth(OX_PixelFormat f, uint32_t depth) { return (f & ~kDepthMask) | depth; }

// Fixed frame size of a DV container byte (1-8), else 0.
uint32_t DVFrameSize(uint32_t containerByte);
// (width rounded up to 128 + width/2 rounded up to 128) x height rounded up to 32.
int32_t PlanarSize(int32_t width, int32_t height);
struct PlanarGeometry {
  int64_t fLumaRow, fChromaRow, fRows;
};
PlanarGeometry PlanarLayout(int32_t width, int32_t height);

// Row bytes of a raw format with the allocators' padding, and without padding.
int32_t PaddedRowBytes(OX_PixelFormat format, int32_t width);
int32_t TightRowBytes(OX_PixelFormat format, int32_t width);
// Bytes a pixel of a four-channel 4:4:4 format by the padded rule (0 for others).
int32_t BytesPerPixel444(OX_PixelFormat format);

// Diagnostics: the name of a code ("Unknown pixel format" when it has none) and of a quality.
const char* PixelFormatName(OX_PixelFormat code);
const char* RenderQualityName(int32_t quality);

struct FormatNameRecord {
  uint32_t fCode;
  char fName[36];
};
static_assert(sizeof(FormatNameRecord) == 40);
constexpr int kFormatNameRecordCount = 71;
extern const FormatNameRecord kFormatNameTable[kFormatNameRecordCount];

// The 47 raw formats, for the tools and the tests that walk every format.
constexpr int kRawFormatCount = 47;
extern const OX_PixelFormat kRawFormats[kRawFormatCount];

}  // namespace OX
