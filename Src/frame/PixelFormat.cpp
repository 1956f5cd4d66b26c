// Format codes: sizes, row bytes, origins, addressing, names and the caller-side mapping.
#include "frame/PixelFormat.h"

#include "frame/Globals.h"
#include "platform/zelmediatypes.h"

namespace OX {

namespace {
constexpr int64_t RoundUp(int64_t v, int64_t m) { return (v + m - 1) / m * m; }
// Rounding of a possibly negative value to a multiple of a power of two, as integer masks do it.
constexpr int64_t RoundUpMask(int64_t v, int64_t m) { return (v + m - 1) & ~(m - 1); }
constexpr int32_t Clamp32(int64_t v) {
  return v > INT32_MAX ? INT32_MAX : (v < INT32_MIN ? INT32_MIN : int32_t(v));
}
}  // namespace

uint32_t DVFrameSize(uint32_t containerByte) {
  static constexpr uint32_t kSizes[9] = {0, 120000, 144000, 240000, 288000, 480000, 576000, 240000, 288000};
  return containerByte <= 8 ? kSizes[containerByte] : 0;
}

PlanarGeometry PlanarLayout(int32_t width, int32_t height) {
  return {RoundUpMask(width, 128), RoundUpMask(width / 2, 128), RoundUpMask(height, 32)};
}

int32_t PlanarSize(int32_t width, int32_t height) {
  PlanarGeometry g = PlanarLayout(width, height);
  return Clamp32((g.fLumaRow + g.fChromaRow) * g.fRows);
}

int32_t PaddedRowBytes(OX_PixelFormat f, int32_t width) {
  const int64_t w = width;
  if ((f & ~k709Bit) == OX_PixelFormat_V210_422_10u) return Clamp32(RoundUpMask((w + 5) / 6 * 16, 128));
  const uint32_t depth = DepthOf(f);
  int64_t bpp = 0;
  if (SubsamplingOf(f) == kSub422) {
    switch (depth) {
      case kDepth8u: bpp = 2; break;
      case kDepth15u:
      case kDepth32f: bpp = 8; break;
      case kDepth10u: bpp = IsYUV(f) ? 0 : 4; break;
      default: bpp = 0;
    }
    return Clamp32(RoundUpMask(w * bpp, 16));
  }
  switch (depth) {
    case kDepth8u: bpp = IsAlphaBearing(f) ? 4 : 2; break;
    case kDepth10u: bpp = IsYUV(f) ? 0 : 4; break;
    case kDepth15u: bpp = 8; break;
    case kDepth32f: bpp = IsAlphaBearing(f) ? 16 : 8; break;
    default: bpp = 0;
  }
  return Clamp32(RoundUpMask(w * bpp, 64));
}

int32_t TightRowBytes(OX_PixelFormat f, int32_t width) {
  const int64_t w = width;
  const uint32_t depth = DepthOf(f);
  if (SubsamplingOf(f) != 0) {
    const int64_t pairs = (w + 1) / 2;
    if (depth == kDepth8u) return Clamp32(pairs * 4);
    if (depth == kDepth10u) return Clamp32((w + 5) / 6 * 16);
    return Clamp32(pairs * 16);
  }
  int64_t bpp = 0;
  switch (depth) {
    case kDepth8u: bpp = AlphaOf(f) ? 4 : 2; break;
    case kDepth10u: bpp = IsYUV(f) ? 0 : 4; break;
    case kDepth15u: bpp = 8; break;
    case kDepth32f: bpp = AlphaOf(f) ? 16 : 8; break;
    default: bpp = 0;
  }
  return Clamp32(w * bpp);
}

int32_t BytesPerPixel444(OX_PixelFormat f) {
  switch (DepthOf(f)) {
    case kDepth8u: return IsAlphaBearing(f) ? 4 : 2;
    case kDepth10u: return IsYUV(f) ? 0 : 4;
    case kDepth15u: return 8;
    case kDepth32f: return IsAlphaBearing(f) ? 16 : 8;
    default: return 0;
  }
}

// One record per named code, in the families' fixed order. RGB_444_10u deliberately has none.
const FormatNameRecord kFormatNameTable[kFormatNameRecordCount] = {
    {0x0, "Invalid"},
    {0x805, "VUYA_4444_8u"}, {0x809, "VUYP_4444_8u"}, {0x80D, "VUYX_4444_8u"},
    {0xA05, "VUYA_4444_8u_709"}, {0xA09, "VUYP_4444_8u_709"}, {0xA0D, "VUYX_4444_8u_709"},
    {0x905, "VUYA_4444_32f"}, {0x909, "VUYP_4444_32f"}, {0x90D, "VUYX_4444_32f"},
    {0xB05, "VUYA_4444_32f_709"}, {0xB09, "VUYP_4444_32f_709"}, {0xB0D, "VUYX_4444_32f_709"},
    {0x4, "BGRA_4444_8u"}, {0x8, "BGRP_4444_8u"}, {0xC, "BGRX_4444_8u"},
    {0x1004, "ARGB_4444_8u"}, {0x1008, "PRGB_4444_8u"}, {0x100C, "XRGB_4444_8u"},
    {0x104, "BGRA_4444_32f"}, {0x108, "BGRP_4444_32f"}, {0x10C, "BGRX_4444_32f"},
    {0x1104, "ARGB_4444_32f"}, {0x1108, "PRGB_4444_32f"}, {0x110C, "XRGB_4444_32f"},
    {0x811, "UYVY_422_8u"}, {0xA11, "UYVY_422_8u_709"}, {0x1811, "YUYV_422_8u"}, {0x1A11, "YUYV_422_8u_709"},
    {0x911, "UYVY_422_32f"}, {0xB11, "UYVY_422_32f_709"}, {0x1911, "YUYV_422_32f"}, {0x1B11, "YUYV_422_32f_709"},
    {0x851, "V210_422_10u"}, {0xA51, "V210_422_10u_709"},
    {0x84, "BGRA_4444_15u"}, {0x88, "BGRP_4444_15u"}, {0x8C, "BGRX_4444_15u"},
    {0x1084, "ARGB_4444_15u"}, {0x1088, "PRGB_4444_15u"}, {0x108C, "XRGB_4444_15u"},
    {0x106, "BGRA_4444_32f_Linear"}, {0x10A, "BGRP_4444_32f_Linear"}, {0x10E, "BGRX_4444_32f_Linear"},
    {0x1106, "ARGB_4444_32f_Linear"}, {0x110A, "PRGB_4444_32f_Linear"}, {0x110E, "XRGB_4444_32f_Linear"},
    {0x1000821, "NTSCDV25"}, {0x2000821, "PALDV25"}, {0x3000A21, "NTSC_DV100_720p"},
    {0x4000A21, "PAL_DV100_720p"}, {0x5000A21, "NTSC_DV100_1080i"}, {0x6000A21, "PAL_DV100_1080i"},
    {0x7000821, "NTSCDV50"}, {0x8000821, "PALDV50"},
    {0x9000831, "YUV_420_MPEG2_FIELD"}, {0xA000831, "YUV_420_MPEG2_FRAME"},
    {0x9000031, "YUV_420_MPEG2_FIELD_FullRange"}, {0xA000031, "YUV_420_MPEG2_FRAME_FullRange"},
    {0x9000A31, "YUV_420_MPEG2_FIELD_709"}, {0xA000A31, "YUV_420_MPEG2_FRAME_709"},
    {0x9000231, "YUV_420_MPEG2_FIELD_FullRange_709"}, {0xA000231, "YUV_420_MPEG2_FRAME_FullRange_709"},
    {0xB000831, "YUV_420_MPEG4_FIELD"}, {0xC000831, "YUV_420_MPEG4_FRAME"},
    {0xB000031, "YUV_420_MPEG4_FIELD_FullRange"}, {0xC000031, "YUV_420_MPEG4_FRAME_FullRange"},
    {0xB000A31, "YUV_420_MPEG4_FIELD_709"}, {0xC000A31, "YUV_420_MPEG4_FRAME_709"},
    {0xB000231, "YUV_420_MPEG4_FIELD_FullRange_709"}, {0xC000231, "YUV_420_MPEG4_FRAME_FullRange_709"},
};

const OX_PixelFormat kRawFormats[kRawFormatCount] = {
    0x805, 0x809, 0x80D, 0xA05, 0xA09, 0xA0D, 0x905, 0x909, 0x90D, 0xB05, 0xB09, 0xB0D,
    0x4, 0x8, 0xC, 0x84, 0x88, 0x8C, 0x104, 0x108, 0x10C, 0x106, 0x10A, 0x10E,
    0x1004, 0x1008, 0x100C, 0x1084, 0x1088, 0x108C, 0x1104, 0x1108, 0x110C, 0x1106, 0x110A, 0x110E,
    0x811, 0xA11, 0x1811, 0x1A11, 0x911, 0xB11, 0x1911, 0x1B11, 0x851, 0xA51, 0x40,
};

const char* PixelFormatName(OX_PixelFormat code) {
  for (const FormatNameRecord& r : kFormatNameTable)
    if (r.fCode == code) return r.fName;
  return "Unknown pixel format";
}

const char* RenderQualityName(int32_t quality) { return quality == 2 ? "Low" : "High"; }

}  // namespace OX

using namespace OX;

OX_PixelFormat OX_ZELPixelFormatToOXPixelFormat(const zelmediatypes::PixelFormat* format) {
  if (!format) return 0;
  struct Entry {
    const zelmediatypes::PixelFormat* fConstant;
    OX_PixelFormat fCode;
  };
  static const Entry kEntries[] = {
#define ZEL_ENTRY(name) {&zelmediatypes::kPixelFormat_##name, OX_PixelFormat_##name},
#define ZEL_PLANAR_ENTRY(name, code) {&zelmediatypes::kPixelFormat_##name, OX_PixelFormat_##code},
      ZEL_PIXEL_FORMAT_LIST(ZEL_ENTRY) ZEL_PLANAR_FORMAT_LIST(ZEL_PLANAR_ENTRY)
#undef ZEL_ENTRY
#undef ZEL_PLANAR_ENTRY
  };
  for (const Entry& e : kEntries)
    if (*e.fConstant == *format) return e.fCode;
  return 0;
}

int32_t OX_PixelFormatSize(OX_PixelFormat format, int32_t width, int32_t height) {
  const uint32_t container = ContainerByte(format);
  if (container >= 1 && container <= 8) return int32_t(DVFrameSize(container));
  if (container >= 9 && container <= 12) return PlanarSize(width, height);
  if (container != 0) return 0;
  return int32_t(int64_t(PaddedRowBytes(format, width)) * height);
}

bool OX_IsOriginTopLeft(OX_PixelFormat format) {
  if (gForceTopLeftOrigin) return true;
  return !(SubsamplingOf(format) == 0 && AlphaOf(format) != 0);
}

bool OX_IsOriginBottomLeft(OX_PixelFormat format) { return !OX_IsOriginTopLeft(format); }

OX_Result OX_ClipBufferToRect(const void* base, int32_t rowBytes, int32_t width, int32_t height,
                              OX_PixelFormat format, int32_t left, int32_t top, void** outPointer) {
  const uint32_t depth = DepthOf(format);
  const bool validDepth = depth == kDepth8u || depth == kDepth10u || depth == kDepth15u || depth == kDepth32f;
  const int32_t bpp = BytesPerPixel444(format);
  if (!validDepth || bpp == 0 || SubsamplingOf(format) != 0 || AlphaOf(format) == 0) return OX_ErrBadSourceFormat;
  if (!outPointer) return OX_ErrNullDest;
  // Plain address arithmetic: no range check is made, so the result may lie outside the buffer.
  const intptr_t offset = intptr_t(rowBytes) * top + intptr_t(bpp) * left;
  *outPointer = reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(base) + uintptr_t(offset));
  return OX_Success;
}

OX_Result OX_GetPlanarBuffers(void* base, int32_t, int32_t width, int32_t height, void* outPlanes[3],
                              int32_t outRowBytes[3]) {
  PlanarGeometry g = PlanarLayout(width, height);
  uint8_t* b = static_cast<uint8_t*>(base);
  if (outPlanes) {
    outPlanes[0] = b;
    outPlanes[1] = b + g.fRows * g.fLumaRow;
    outPlanes[2] = b + g.fRows * g.fLumaRow + (g.fRows * g.fChromaRow) / 2;
  }
  if (outRowBytes) {
    outRowBytes[0] = int32_t(g.fLumaRow);
    outRowBytes[1] = int32_t(g.fChromaRow);
    outRowBytes[2] = int32_t(g.fChromaRow);
  }
  return OX_Success;
}
