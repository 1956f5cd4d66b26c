// Stand-in for the caller-side media types: pixel format constants, field and quality types.
// A PixelFormat is an 8-byte value; the library only ever compares it with the constants below
// by value, so the inner bits are this library's own choice.
#pragma once

#include <cstdint>

#include "Ombrix.h"

namespace zelmediatypes {

struct PixelFormat {
  uint32_t fLow;
  uint32_t fHigh;
  friend bool operator==(const PixelFormat& a, const PixelFormat& b) { return a.fLow == b.fLow && a.fHigh == b.fHigh; }
};

// Field order of a frame. Only 1 and 2 (the two interlaced orders) are told apart by the library.
enum FieldType : int32_t {
  kFieldType_Progressive = 0,
  kFieldType_UpperFirst = 1,
  kFieldType_LowerFirst = 2,
  kFieldType_Unknown = 3
};

// Render quality. The library compares it against 2 (low), 3 and 5 (highest) only.
enum RenderQuality : int32_t {
  kRenderQuality_Invalid = 0,
  kRenderQuality_Draft = 1,
  kRenderQuality_Low = 2,
  kRenderQuality_Medium = 3,
  kRenderQuality_High = 4,
  kRenderQuality_Max = 5
};

// The caller-side constants, one per suffix. The list drives both the constants and the mapping.
#define ZEL_PIXEL_FORMAT_LIST(X)                                                                        \
  X(VUYA_4444_8u) X(VUYP_4444_8u) X(VUYX_4444_8u) X(VUYA_4444_8u_709) X(VUYP_4444_8u_709)               \
  X(VUYX_4444_8u_709) X(VUYA_4444_32f) X(VUYP_4444_32f) X(VUYX_4444_32f) X(VUYA_4444_32f_709)           \
  X(VUYP_4444_32f_709) X(VUYX_4444_32f_709)                                                             \
  X(BGRA_4444_8u) X(BGRP_4444_8u) X(BGRX_4444_8u) X(BGRA_4444_15u) X(BGRP_4444_15u) X(BGRX_4444_15u)    \
  X(BGRA_4444_32f) X(BGRP_4444_32f) X(BGRX_4444_32f)                                                    \
  X(ARGB_4444_8u) X(PRGB_4444_8u) X(XRGB_4444_8u) X(ARGB_4444_15u) X(PRGB_4444_15u) X(XRGB_4444_15u)    \
  X(ARGB_4444_32f) X(PRGB_4444_32f) X(XRGB_4444_32f)                                                    \
  X(BGRA_4444_32f_Linear) X(BGRP_4444_32f_Linear) X(ARGB_4444_32f_Linear) X(PRGB_4444_32f_Linear)       \
  X(UYVY_422_8u) X(UYVY_422_8u_709) X(YUYV_422_8u) X(YUYV_422_8u_709) X(UYVY_422_32f)                   \
  X(UYVY_422_32f_709) X(V210_422_10u) X(V210_422_10u_709) X(RGB_444_10u)                                \
  X(NTSCDV25) X(PALDV25) X(NTSC_DV100_720p) X(PAL_DV100_720p) X(NTSC_DV100_1080i) X(PAL_DV100_1080i)    \
  X(NTSCDV50) X(PALDV50)

#define ZEL_PLANAR_FORMAT_LIST(X)                                                                       \
  X(YUV_420_MPEG2_FIELD_PICTURE_PLANAR_8u_601, YUV_420_MPEG2_FIELD)                                     \
  X(YUV_420_MPEG2_FRAME_PICTURE_PLANAR_8u_601, YUV_420_MPEG2_FRAME)                                     \
  X(YUV_420_MPEG2_FIELD_PICTURE_PLANAR_8u_601_FullRange, YUV_420_MPEG2_FIELD_FullRange)                 \
  X(YUV_420_MPEG2_FRAME_PICTURE_PLANAR_8u_601_FullRange, YUV_420_MPEG2_FRAME_FullRange)                 \
  X(YUV_420_MPEG2_FIELD_PICTURE_PLANAR_8u_709, YUV_420_MPEG2_FIELD_709)                                 \
  X(YUV_420_MPEG2_FRAME_PICTURE_PLANAR_8u_709, YUV_420_MPEG2_FRAME_709)                                 \
  X(YUV_420_MPEG2_FIELD_PICTURE_PLANAR_8u_709_FullRange, YUV_420_MPEG2_FIELD_FullRange_709)             \
  X(YUV_420_MPEG2_FRAME_PICTURE_PLANAR_8u_709_FullRange, YUV_420_MPEG2_FRAME_FullRange_709)             \
  X(YUV_420_MPEG4_FIELD_PICTURE_PLANAR_8u_601, YUV_420_MPEG4_FIELD)                                     \
  X(YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_601, YUV_420_MPEG4_FRAME)                                     \
  X(YUV_420_MPEG4_FIELD_PICTURE_PLANAR_8u_601_FullRange, YUV_420_MPEG4_FIELD_FullRange)                 \
  X(YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_601_FullRange, YUV_420_MPEG4_FRAME_FullRange)                 \
  X(YUV_420_MPEG4_FIELD_PICTURE_PLANAR_8u_709, YUV_420_MPEG4_FIELD_709)                                 \
  X(YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709, YUV_420_MPEG4_FRAME_709)                                 \
  X(YUV_420_MPEG4_FIELD_PICTURE_PLANAR_8u_709_FullRange, YUV_420_MPEG4_FIELD_FullRange_709)             \
  X(YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange, YUV_420_MPEG4_FRAME_FullRange_709)

#define ZEL_DECLARE_CONSTANT(name) extern OX_API const PixelFormat kPixelFormat_##name;
#define ZEL_DECLARE_PLANAR_CONSTANT(name, code) extern OX_API const PixelFormat kPixelFormat_##name;
ZEL_PIXEL_FORMAT_LIST(ZEL_DECLARE_CONSTANT)
ZEL_PLANAR_FORMAT_LIST(ZEL_DECLARE_PLANAR_CONSTANT)
#undef ZEL_DECLARE_CONSTANT
#undef ZEL_DECLARE_PLANAR_CONSTANT

// Formats the engine knows but this library has no mapping for; present so that the mapper's
// refusal of them can be shown.
extern OX_API const PixelFormat kPixelFormat_YUYV_422_32f;
extern OX_API const PixelFormat kPixelFormat_BGRX_4444_32f_Linear;

}  // namespace zelmediatypes
