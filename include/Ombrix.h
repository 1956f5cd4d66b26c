/* Ombrix: pixel operations for a video engine.
 *
 * One header for the whole exported surface. Every export has C linkage; the few that take a
 * zelmediatypes type or an OX:: class are C++ only. Conventions for every signature:
 * OX_Result is int32_t (0 success, every failure negative); OX_PixelFormat is uint32_t;
 * source pixels are const void*, destination pixels void*; widths, heights, row bytes,
 * quality and field codes are int32_t; row bytes may be negative (the buffer is walked
 * backward). Unless a declaration says otherwise, an export may be called from any thread
 * between OX_Initialize and OX_Terminate.
 */
#ifndef OMBRIX_H
#define OMBRIX_H

#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#if defined(OMBRIX_BUILDING)
#define OX_API __attribute__((visibility("default")))
#else
#define OX_API
#endif

#ifdef __cplusplus
#define OX_EXTERN_C extern "C"
#else
#define OX_EXTERN_C
#endif
#define OX_EXPORT OX_EXTERN_C OX_API

typedef int32_t OX_Result;
typedef uint32_t OX_PixelFormat;
typedef uint32_t OX_BlendMode;

/* ---- Result codes ---------------------------------------------------------------------- */
enum {
  OX_Success = 0,
  OX_ErrBadRect = -2,
  OX_ErrBadSourceFormat = -3,
  OX_ErrBadDestFormat = -4,
  OX_ErrBadWidth = -5,
  OX_ErrBadHeight = -6,
  OX_ErrBadDVWidth = -7,
  OX_ErrBadDVHeight = -8,
  OX_ErrBadDVInputSize = -9,
  OX_ErrNullSource = -11,
  OX_ErrNullDest = -12,
  OX_ErrSizeMismatch = -13,
  OX_ErrDVFrameMismatch = -14,
  OX_ErrDVCompressorFailed = -15,
  OX_ErrNoMemory = -16,
  OX_ErrBadMotionValue = -17,
  OX_ErrBadField = -18,
  OX_ErrNoRoute = -999,
  OX_ErrUnsupported = -1000
};

/* ---- Pixel format codes ------------------------------------------------------------------
 * Bits: 0 YUV; 1 linear light; 2-3 alpha (0 none, 4 straight, 8 premultiplied, 12 ignored);
 * 4-5 subsampling (0 4:4:4, 16 4:2:2, 32 DV, 48 planar 4:2:0); 6-8 depth (0 8u, 64 10u,
 * 128 15u, 256 32f); 9 BT.709; 11 studio range; 12 alpha-first / luma-first order;
 * 24-31 container (1-8 DV, 9-12 planar 4:2:0). Names give memory order, lowest address first.
 */
enum {
  OX_PixelFormat_Invalid = 0x0,
  OX_PixelFormat_VUYA_4444_8u = 0x805, OX_PixelFormat_VUYP_4444_8u = 0x809, OX_PixelFormat_VUYX_4444_8u = 0x80D,
  OX_PixelFormat_VUYA_4444_8u_709 = 0xA05, OX_PixelFormat_VUYP_4444_8u_709 = 0xA09, OX_PixelFormat_VUYX_4444_8u_709 = 0xA0D,
  OX_PixelFormat_VUYA_4444_32f = 0x905, OX_PixelFormat_VUYP_4444_32f = 0x909, OX_PixelFormat_VUYX_4444_32f = 0x90D,
  OX_PixelFormat_VUYA_4444_32f_709 = 0xB05, OX_PixelFormat_VUYP_4444_32f_709 = 0xB09, OX_PixelFormat_VUYX_4444_32f_709 = 0xB0D,
  OX_PixelFormat_BGRA_4444_8u = 0x4, OX_PixelFormat_BGRP_4444_8u = 0x8, OX_PixelFormat_BGRX_4444_8u = 0xC,
  OX_PixelFormat_BGRA_4444_15u = 0x84, OX_PixelFormat_BGRP_4444_15u = 0x88, OX_PixelFormat_BGRX_4444_15u = 0x8C,
  OX_PixelFormat_BGRA_4444_32f = 0x104, OX_PixelFormat_BGRP_4444_32f = 0x108, OX_PixelFormat_BGRX_4444_32f = 0x10C,
  OX_PixelFormat_BGRA_4444_32f_Linear = 0x106, OX_PixelFormat_BGRP_4444_32f_Linear = 0x10A, OX_PixelFormat_BGRX_4444_32f_Linear = 0x10E,
  OX_PixelFormat_ARGB_4444_8u = 0x1004, OX_PixelFormat_PRGB_4444_8u = 0x1008, OX_PixelFormat_XRGB_4444_8u = 0x100C,
  OX_PixelFormat_ARGB_4444_15u = 0x1084, OX_PixelFormat_PRGB_4444_15u = 0x1088, OX_PixelFormat_XRGB_4444_15u = 0x108C,
  OX_PixelFormat_ARGB_4444_32f = 0x1104, OX_PixelFormat_PRGB_4444_32f = 0x1108, OX_PixelFormat_XRGB_4444_32f = 0x110C,
  OX_PixelFormat_ARGB_4444_32f_Linear = 0x1106, OX_PixelFormat_PRGB_4444_32f_Linear = 0x110A, OX_PixelFormat_XRGB_4444_32f_Linear = 0x110E,
  OX_PixelFormat_UYVY_422_8u = 0x811, OX_PixelFormat_UYVY_422_8u_709 = 0xA11,
  OX_PixelFormat_YUYV_422_8u = 0x1811, OX_PixelFormat_YUYV_422_8u_709 = 0x1A11,
  OX_PixelFormat_UYVY_422_32f = 0x911, OX_PixelFormat_UYVY_422_32f_709 = 0xB11,
  OX_PixelFormat_YUYV_422_32f = 0x1911, OX_PixelFormat_YUYV_422_32f_709 = 0x1B11,
  OX_PixelFormat_V210_422_10u = 0x851, OX_PixelFormat_V210_422_10u_709 = 0xA51,
  OX_PixelFormat_RGB_444_10u = 0x40,
  /* DV containers: frame sizes 120000, 144000, 240000, 288000, 480000, 576000, 240000, 288000. */
  OX_PixelFormat_NTSCDV25 = 0x1000821, OX_PixelFormat_PALDV25 = 0x2000821,
  OX_PixelFormat_NTSC_DV100_720p = 0x3000A21, OX_PixelFormat_PAL_DV100_720p = 0x4000A21,
  OX_PixelFormat_NTSC_DV100_1080i = 0x5000A21, OX_PixelFormat_PAL_DV100_1080i = 0x6000A21,
  OX_PixelFormat_NTSCDV50 = 0x7000821, OX_PixelFormat_PALDV50 = 0x8000821,
  /* Planar 4:2:0 containers. */
  OX_PixelFormat_YUV_420_MPEG2_FIELD = 0x9000831, OX_PixelFormat_YUV_420_MPEG2_FRAME = 0xA000831,
  OX_PixelFormat_YUV_420_MPEG2_FIELD_FullRange = 0x9000031, OX_PixelFormat_YUV_420_MPEG2_FRAME_FullRange = 0xA000031,
  OX_PixelFormat_YUV_420_MPEG2_FIELD_709 = 0x9000A31, OX_PixelFormat_YUV_420_MPEG2_FRAME_709 = 0xA000A31,
  OX_PixelFormat_YUV_420_MPEG2_FIELD_FullRange_709 = 0x9000231, OX_PixelFormat_YUV_420_MPEG2_FRAME_FullRange_709 = 0xA000231,
  OX_PixelFormat_YUV_420_MPEG4_FIELD = 0xB000831, OX_PixelFormat_YUV_420_MPEG4_FRAME = 0xC000831,
  OX_PixelFormat_YUV_420_MPEG4_FIELD_FullRange = 0xB000031, OX_PixelFormat_YUV_420_MPEG4_FRAME_FullRange = 0xC000031,
  OX_PixelFormat_YUV_420_MPEG4_FIELD_709 = 0xB000A31, OX_PixelFormat_YUV_420_MPEG4_FRAME_709 = 0xC000A31,
  OX_PixelFormat_YUV_420_MPEG4_FIELD_FullRange_709 = 0xB000231, OX_PixelFormat_YUV_420_MPEG4_FRAME_FullRange_709 = 0xC000231
};

/* ---- Blend modes ------------------------------------------------------------------------ */
enum {
  OX_BlendMode_Color = 0, OX_BlendMode_ColorBurn = 1, OX_BlendMode_ColorDodge = 2, OX_BlendMode_Darken = 3,
  OX_BlendMode_DarkerColor = 4, OX_BlendMode_Difference = 5, OX_BlendMode_Dissolve = 6, OX_BlendMode_Exclusion = 7,
  OX_BlendMode_HardLight = 8, OX_BlendMode_HardMix = 9, OX_BlendMode_Hue = 10, OX_BlendMode_Lighten = 11,
  OX_BlendMode_LighterColor = 12, OX_BlendMode_LinearBurn = 13, OX_BlendMode_LinearDodge = 14,
  OX_BlendMode_LinearLight = 15, OX_BlendMode_Luminosity = 16, OX_BlendMode_Multiply = 17, OX_BlendMode_Normal = 18,
  OX_BlendMode_Overlay = 19, OX_BlendMode_PinLight = 20, OX_BlendMode_Saturation = 21, OX_BlendMode_Screen = 22,
  OX_BlendMode_SoftLight = 23, OX_BlendMode_VividLight = 24, OX_BlendMode_Subtract = 25, OX_BlendMode_Divide = 26
};

/* ======================================================================================
 * Start and dispatch. OX_Initialize, OX_Terminate and OX_SetDebugFlag are not thread-safe:
 * call them from one thread, before and after all other work.
 * ====================================================================================== */

/* Counted start: the first call probes the processor and cache and builds the shared tables. */
OX_EXPORT OX_Result OX_Initialize(void);
/* Counted end: the call that matches the first OX_Initialize releases what it built. */
OX_EXPORT OX_Result OX_Terminate(void);
/* Sets debug flag `index` (0, 2-10; others ignored). 8 and 9 are the only way to enable AVX and
 * AVX2 and must be set before the first OX_Initialize. 10 makes every format report top-left. */
OX_EXPORT OX_Result OX_SetDebugFlag(uint32_t index, int32_t value);
/* Processor flags as the library uses them now. */
OX_EXPORT bool OX_hasSSE4(void);
OX_EXPORT bool OX_hasAVX(void);
OX_EXPORT bool OX_hasAVX2(void);

/* ======================================================================================
 * Formats
 * ====================================================================================== */

#ifdef __cplusplus
namespace zelmediatypes { struct PixelFormat; }
/* Maps a caller-side format constant (compared by value) to its code; 0 for anything else. */
OX_EXPORT OX_PixelFormat OX_ZELPixelFormatToOXPixelFormat(const zelmediatypes::PixelFormat* format);
#endif
/* Byte size of a buffer: fixed for DV, the planar size for 4:2:0, padded row bytes x height for
 * raw formats, 0 for an unknown container. */
OX_EXPORT int32_t OX_PixelFormatSize(OX_PixelFormat format, int32_t width, int32_t height);
/* True when row 0 of the buffer is the top row of the picture (all but four-channel 4:4:4). */
OX_EXPORT bool OX_IsOriginTopLeft(OX_PixelFormat format);
OX_EXPORT bool OX_IsOriginBottomLeft(OX_PixelFormat format);
/* Address of pixel (left, top) of a four-channel 4:4:4 buffer; -3 for other formats.
 * No range check is made: the caller guarantees (left, top) lies inside the buffer. */
OX_EXPORT OX_Result OX_ClipBufferToRect(const void* base, int32_t rowBytes, int32_t width, int32_t height,
                                        OX_PixelFormat format, int32_t left, int32_t top, void** outPointer);
/* Lays out the three planes of a planar 4:2:0 buffer at `base`; always 0. `unused` is ignored. */
OX_EXPORT OX_Result OX_GetPlanarBuffers(void* base, int32_t unused, int32_t width, int32_t height,
                                        void* outPlanes[3], int32_t outRowBytes[3]);

/* ======================================================================================
 * Memory
 * ====================================================================================== */

/* Returns a 16-byte aligned block of `size` bytes at a random multiple of 128 into the
 * allocation, or null (also for size 0, with both outputs 0). Free it with the base and size. */
OX_EXPORT void* OX_AllocateTransientMemoryBlock(uint32_t size, void** outBase, uint32_t* outAllocatedSize);
OX_EXPORT void OX_FreeTransientMemoryBlock(void* base, uint32_t allocatedSize);
/* Allocates a buffer for `format` at padded row bytes (DV and planar: their frame size,
 * row bytes 0). -16 when memory is exhausted; a zero size gives null pointers and 0. */
OX_EXPORT OX_Result OX_AllocatePixelBuffer(OX_PixelFormat format, int32_t width, int32_t height, void** outBase,
                                           void** outPixels, int32_t* outRowBytes, uint32_t* outAllocatedSize);
OX_EXPORT OX_Result OX_FreePixelBuffer(OX_PixelFormat format, void* base, uint32_t allocatedSize);
OX_EXPORT OX_Result OX_AllocateTransientPixelBuffer(OX_PixelFormat format, int32_t width, int32_t height,
                                                    void** outBase, void** outPixels, int32_t* outRowBytes,
                                                    uint32_t* outAllocatedSize);
OX_EXPORT OX_Result OX_FreeTransientPixelBuffer(OX_PixelFormat format, void* base, uint32_t allocatedSize);
/* Block move of `bytes`; large moves stream past the cache. The areas must not overlap. */
OX_EXPORT OX_Result OX_CopyMemory(void* destination, const void* source, uint32_t bytes);
/* Copies the three planes of an 8-bit 4:2:0 picture. The caller guarantees every plane holds
 * `height` (chroma: height / 2) rows of `width` (chroma: width / 2) bytes at its row bytes. */
OX_EXPORT OX_Result OX_CopyPlanar_8u(const void* const sourcePlanes[3], const int32_t sourceRowBytes[3],
                                     void* const destinationPlanes[3], const int32_t destinationRowBytes[3],
                                     int32_t width, int32_t height);

/* ---- Primitives and small exports --------------------------------------------------------- */

/* Stamps `number` on the frame in red seven-segment digits ("%d" when `decimal`, else "%x"), one
 * pixel thick, the first cell at (xFraction, yFraction) of the frame (at least 4 pixels in), cells
 * sizeFraction of the width wide, shrunk until the text fits. -4 for a format it cannot draw on
 * (15u, containers other than planar 4:2:0), -5 / -6 for a negative width / height, -999 for a
 * fraction outside 0..1. The caller guarantees the buffer holds `height` rows at `rowBytes`
 * (planar 4:2:0: the layout of OX_GetPlanarBuffers, `rowBytes` unused). */
OX_EXPORT OX_Result OX_PrintNum(void* buffer, int32_t rowBytes, OX_PixelFormat format, int32_t width, int32_t height,
                                int32_t number, float sizeFraction, float xFraction, float yFraction, bool decimal);
/* dst[i] = src[i] * 2^-scaleFactor: roundMode 1 rounds to nearest (ties to even), any other value
 * truncates; 2147483520.0 and above give 0x7FFFFFFF, -2147483648.0 and below 0x80000000, NaN 0.
 * -999 for a null pointer or a length below 1. */
OX_EXPORT OX_Result OX_Convert_32f32sSfs(const float* source, int32_t* destination, int32_t length, int32_t roundMode,
                                         int32_t scaleFactor);
/* The same to 16 bits, the scaled value limited to -32768.0..32767.0 before rounding. */
OX_EXPORT OX_Result OX_Convert_32f16sSfs(const float* source, int16_t* destination, int32_t length, int32_t roundMode,
                                         int32_t scaleFactor);
/* dst = limit(src * constant[c]) for each of the four byte channels of `width` pixels on `height`
 * rows: scaleFactor 0 the product, negative shifted left, positive shifted right rounding to
 * nearest (ties to even), limited to 255 (above 16 all zero). The four constant bytes are read
 * before any write. -999 for a null pointer or a width or height below 1. */
OX_EXPORT OX_Result OX_MultiplyByConstant(int32_t width, int32_t height, const void* source, int32_t sourceRowBytes,
                                          void* destination, int32_t destinationRowBytes, const uint8_t* constant,
                                          int32_t scaleFactor);
/* G.711 A-law bytes to `length` linear 16-bit samples; -999 for a null pointer or a length below 1. */
OX_EXPORT OX_Result OX_DecodeALawTo16Bit(const void* source, int16_t* destination, int32_t length);

/* ---- Side conversions ----------------------------------------------------------------------- */
/* Conversions outside the format codes, for buffers a codec hands over as they are. Each runs on
 * the calling thread, returns 0 and checks nothing: the caller guarantees valid pointers, sizes
 * and the padding stated with each. W210 is planar 10-bit 4:2:2 in 16-bit words (plane 0 luma,
 * 1 U, 2 V, chroma at half width, each plane with its own row bytes). */

/* W210 to V210, `height` rows of (width + 5) / 6 groups. Samples are ORed in unmasked (a sample
 * above 1023 spills into its neighbour). The caller guarantees that each plane row can be read to
 * the end of the last group of six: a width that is not a multiple of 6 reads past the row. */
OX_EXPORT OX_Result OX_ConvertW210toV210(const void* const planes[3], const int32_t rowBytes[3], int32_t width,
                                         int32_t height, void* destination, int32_t destinationRowBytes);
/* W210 to VUYX_4444_8u at half width and half height, one field (`field` 2: the second row of each
 * pair), written bottom-up from row height / 2 - 1 of `destination`. Needs rows of width / 2
 * chroma and width luma samples; reads only those. */
OX_EXPORT OX_Result OX_ConvertW210toQuarterResVUYX_8u(const void* const planes[3], const int32_t rowBytes[3],
                                                      int32_t width, int32_t height, void* destination,
                                                      int32_t destinationRowBytes, int32_t field);
/* R, G, B bytes to B, G, R, 255. Reads and writes exactly `width` pixels a row. */
OX_EXPORT OX_Result OX_ConvertRGB_444_8uToBGRA_4444_8u(const void* source, int32_t sourceRowBytes, void* destination,
                                                       int32_t destinationRowBytes, int32_t width, int32_t height);
/* Four 16-bit words a pixel (B, G, R, unused) to RGB_444_10u, width x height contiguous pixels. */
OX_EXPORT OX_Result OX_Convert_DNxHD16u_To_RGB_444_10u(const void* source, void* destination, int32_t width,
                                                       int32_t height);
/* RGB_444_10u to four 16-bit words a pixel, each (sample x 65535) / 1023; the fourth word of each
 * destination pixel is left as it was. width x height contiguous pixels. */
OX_EXPORT OX_Result OX_Convert_RGB_444_10u_To_DNxHD16u(const void* source, void* destination, int32_t width,
                                                       int32_t height);
/* Three 16-bit words a pixel (R, G, B, ten-bit samples), rows of exactly width x 6 bytes read from
 * the last to the first, to contiguous 0, R, G, B 16-bit words on the 15u scale. The work goes in
 * groups of 2 pixels (4 when AVX2 is on) with no tail: for a width outside the group size every
 * row reads and writes up to the next whole group, and the next row's pixels follow from there.
 * Vector reads also take 4 bytes past each group. The caller guarantees the source can be read,
 * and the destination written, that far past the last row (the first row in memory). */
OX_EXPORT OX_Result OX_ConvertRGB_444_16u_To_XRGB_4444_15u(const void* source, void* destination, int32_t width,
                                                           int32_t height);
/* In place, four 16-bit samples a pixel, rows of (rowBytes rounded down to even) bytes: 16u to
 * 15u, byte-swapping big-endian samples first when `swapBytes`. Reads and writes exactly `width`
 * pixels a row; the vector forms expect pixels at 8-byte alignment. */
OX_EXPORT OX_Result OX_Scale16uBufferTo15uSIMD(void* buffer, int32_t rowBytes, int32_t width, int32_t height,
                                               bool swapBytes);

/* ---- Conversion --------------------------------------------------------------------------- */

/* Converts a frame of `width` x `height` pixels from one format to another of the same size: a copy
 * for equal formats, the decode or encode road for DV and planar frames, and otherwise a chain of
 * row converters. -999 when no route joins two raw formats, 0 for a raw height of 0 or less. The
 * caller guarantees that each buffer holds `height` rows of `width` pixels at its row bytes (any
 * sign; a negative value walks the buffer backward from `source` / `destination`) and that the
 * two buffers do not overlap. */
OX_EXPORT OX_Result OX_Convert(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat,
                               void* destination, int32_t destinationRowBytes, OX_PixelFormat destinationFormat,
                               int32_t width, int32_t height, int32_t quality);

/* ---- DV decode -----------------------------------------------------------------------------
 * DV frames are decoded through OX_Convert with a DV code as the source format: the source is
 * one frame in DIF layout of OX_PixelFormatSize(format) bytes (source row bytes are not read),
 * and the destination may be any raw format at a size the frame kind decodes to (else -13):
 *   DV25: 720 x H, 720 x H/2 (one field), and below quality 3 also 360 x H/2, 180 x H/4 and
 *         90 x H/8 (H 480 NTSC, 576 PAL);
 *   DV50: 720 x H and 720 x H/2, and 360 x H/2 when that is what the size asks;
 *   DV100: W x H, W x H/2 and W/2 x H/2 (W x H 960 x 720, 1280 x 1080 at 60 Hz, 1440 x 1080 at
 *         50 Hz).
 * A 720p frame is one picture of 240000 (60 Hz) or 288000 (50 Hz) bytes: two channels, which the
 * header's FSP bit places in channels 0-1 (FSP 1) or 2-3 (FSP 0) of the four-channel layout.
 * -14 when the header disagrees with the format (DV25 APT/AP values, DV100 DSF); the
 * destination is then left as it was. Damaged compressed data is never an error: the decoders
 * produce what they can read.
 */

/* ---- DV encode and merge ------------------------------------------------------------------- */

/* Encodes one picture into a DV100 frame of `dstFormat` (exactly its frame size in `dstBytes`),
 * converting the source to YUYV_422_8u_709 first when needed. `channelOffset` 2 writes a 720p
 * picture as channels 2 and 3, any other value as 0 and 1; 1080 frames ignore it. -4 for a
 * non-DV100 destination, -9 for a wrong size, -1000 for a destination outside the DV and planar
 * families. The caller guarantees `src` holds `height` rows of `width` pixels at `srcRowBytes`. */
OX_EXPORT OX_Result OX_CompressDV100720pWithChannelOffset(const void* src, int32_t srcRowBytes, OX_PixelFormat srcFormat,
                                                          int32_t width, int32_t height, void* dst, int32_t dstBytes,
                                                          int32_t channelOffset, OX_PixelFormat dstFormat,
                                                          int32_t quality);
/* Encodes one 720 x 576 or 360 x 288 picture into a DVCPRO (4:1:1) PALDV25 frame, or a 720 x 480
 * or 360 x 240 picture into an NTSCDV25 frame; `dstBytes` must be the frame size (else -15).
 * -3 for a non-DV25 destination, -13 for a wrong size, -1000 for an unknown destination family.
 * The caller guarantees `src` holds `height` rows of `width` pixels at `srcRowBytes`. */
OX_EXPORT OX_Result OX_CompressDVCPROPAL25(const void* src, int32_t srcRowBytes, OX_PixelFormat srcFormat,
                                           int32_t width, int32_t height, void* dst, int32_t dstBytes,
                                           OX_PixelFormat dstFormat, int32_t quality);
/* Weaves two DV25 frames of `frameBytes` (120000: NTSC, anything else: PAL) into `outFrame`: the
 * odd rows of the first picture over the second, re-encoded, with the first frame's display class
 * in the VSC packs. Decode and encode results are not checked; returns the buffer release result.
 * The caller guarantees all three buffers hold `frameBytes` bytes. */
OX_EXPORT OX_Result OX_MergeDV(const void* firstFrame, const void* secondFrame, void* outFrame, int32_t frameBytes,
                               int32_t quality);
/* Weaves two frames of any DV `format` into `outFrame` (odd rows of the first for DV25 and DV50,
 * even rows for DV100) and restores the first frame's display class. -3 for a non-DV format, -16
 * without memory, otherwise the first failing decode or encode. The caller guarantees all three
 * buffers hold the format's frame size. */
OX_EXPORT OX_Result OX_MergeDVCPRO(const void* firstFrame, const void* secondFrame, void* outFrame,
                                   OX_PixelFormat format, int32_t quality);

/* ======================================================================================
 * Geometry: whole-image moves (transpose, rotate, flip) and the warped quad
 * ====================================================================================== */

/* Transposes: item (x, y) of the source becomes item (y, x) of the destination, which receives
 * `height` items in each of `width` rows. `pixelBytes` is the item size: 1, 2, 4, 8 or 16, else -3.
 * Row bytes are signed byte distances (negative walks upward) and need not be multiples of the
 * item size. Returns -3, then -5/-6 for a negative width/height, 0 for an empty image, then
 * -11/-12 for a null pointer. The caller guarantees the buffers do not overlap. */
OX_EXPORT OX_Result OX_Transpose(const void* source, int32_t sourceRowBytes, void* destination,
                                 int32_t destinationRowBytes, int32_t width, int32_t height, uint8_t pixelBytes);
/* Turns a four-channel 8-bit image (no 4:2:2, some alpha mode, 8 bits; else -3, tested before the
 * angle) by `degrees`: 90/-270, 180/-180 or 270/-90, else -1000. `width` and `height` are the
 * source's; a quarter turn writes `height` pixels in each of `width` rows. Coordinates are of rows
 * as they lie in memory: destination (x, y) is source (y, h-1-x) at 90, (w-1-x, h-1-y) at 180 and
 * (w-1-y, x) at 270. On a bottom-up buffer (BGRA) 90 therefore turns the picture counter-clockwise
 * on screen, on a top-down one clockwise. A quarter turn uses the row bytes with their low two bits
 * dropped (sign kept). Zero or negative sizes move nothing and return 0; null pointers give -11/-12.
 * The caller guarantees source and destination do not overlap. */
OX_EXPORT OX_Result OX_RotateImage(const void* source, int32_t sourceRowBytes, void* destination,
                                   int32_t destinationRowBytes, int32_t width, int32_t height,
                                   OX_PixelFormat format, int32_t degrees);
/* Reverses the order of `height` rows in place. Each row moves its tight size for `width` pixels
 * of `format` (no padding), so tight caller buffers are never overrun; row bytes may be negative.
 * Container formats, formats without a byte size and heights below 2 move nothing. Returns 0, or
 * -12 for a null buffer with rows to move, -16 when a row's scratch cannot be allocated. */
OX_EXPORT OX_Result OX_FlipInPlace(void* buffer, int32_t rowBytes, int32_t width, int32_t height,
                                   OX_PixelFormat format);
/* Draws the quad `sourceQuad` of the source into the quad `destinationQuad` of the destination
 * (each eight doubles x0, y0 .. x3, y3, in pixels, y down from row 0 of the buffer, pixel centres
 * at n + 0.5), with source position and alpha interpolated linearly along edges and spans.
 * `format` is BGRA_4444_8u (4) or VUYA_4444_8u (2053); other codes draw only where no mixing is
 * needed. Rectangles are left, top, right, bottom with right and bottom exclusive, in pixels of
 * their buffers; the caller guarantees each lies inside its buffer. Row bytes are signed (a
 * negative value walks upward) and are used in whole pixels (divided by 4 toward zero).
 * `quality` 3 and above samples bilinearly, below takes the nearest pixel (the one whose centre is
 * nearest, so an identity quad copies). `opacity` is 0..255 (larger values count as 255).
 * `compositeOver` blends over the destination (straight alpha, integer arithmetic, truncating
 * division); otherwise the source colour replaces the pixel, with alpha scaled by `opacity`, or the
 * source alpha when `multiplyAlpha`, else 255 (nearest) or the interpolated vertex alpha
 * (bilinear). `directBlend` mixes by vertex alpha only (bilinear) or copies pixels (nearest).
 * `fieldMode` 1 draws even rows only, 2 odd rows only, other non-zero values nothing; unless
 * `sourceIsFrame`, the bilinear fetch then reads the source's lines of that field. `feather` > 0
 * shrinks the quad by that many pixels along each corner's bisector and, at quality 3 and above,
 * fades from alpha 0 at the given edges to full at the shrunken ones; zero, negative or NaN feather
 * means none. Pixels are drawn when their centre lies on or after a left/top edge and before a
 * right/bottom one, so adjoining polygons never draw a pixel twice. The first two arguments are
 * ignored. Returns -12 (null destination), -11 (null source), -999 (zero row bytes), -2 (a null
 * rectangle or quad, or an empty source rectangle), else 0. */
OX_EXPORT OX_Result OX_WarpAffineQuad(int32_t reserved1, int32_t reserved2, const void* source,
                                      int32_t sourceRowBytes, const int32_t* sourceRect, const double* sourceQuad,
                                      void* destination, int32_t destinationRowBytes,
                                      const int32_t* destinationRect, const double* destinationQuad,
                                      int32_t quality, uint32_t opacity, bool compositeOver, bool multiplyAlpha,
                                      OX_PixelFormat format, int32_t fieldMode, bool sourceIsFrame,
                                      bool directBlend, float feather);

/* (end of section) */

/* ======================================================================================
 * Motion: scaling, rotation and placement with resampling
 * ====================================================================================== */

/* (end of section) */

/* ======================================================================================
 * Compositing: the composite driver and the blend modes
 * ====================================================================================== */

/* Lays `source` over `background` with `opacity` (0 to 1; above 1 acts as 1) and writes the result
 * to `destination`. The three buffers share `width` x `height` and may each have their own raw
 * format; the destination may be the background itself. Rows are paired by picture: a buffer
 * whose origin differs from the destination's is walked from its last row.
 * Work: the rows are converted (only where needed) to a working format derived from the
 * destination (32-bit float for deep formats, 8-bit otherwise; premultiplied unless the
 * destination has straight alpha; premultiplied 4:4:4 YUV for a 4:2:2 destination, whose alpha is
 * then dropped), composited by a kernel chosen by alpha use, and converted back. With `keepLinear`
 * false the rows are brought out of linear light first. `quality` is passed to the converters.
 * Shortcuts: opacity below 8e-6 converts the background (the source is never read); opacity
 * within 8e-6 of 1 with an opaque source (no alpha or alpha ignored) converts the source.
 * Above 64 rows the work runs as four slices on the processor pool.
 * Results: -3 a container source or background, -4 a container destination (both before any
 * shortcut), -5 negative width, 0 for zero width or height <= 0, -11 null source or background,
 * -12 null destination, a shortcut's OX_Convert result, -999 when a needed conversion has no route
 * (nothing written), -16 no memory for wide scratch rows, else 0.
 * The 8-bit vector kernels multiply by 0.003921569 for 1/255 and use the approximate reciprocal,
 * so SSE2, AVX and AVX2 results may differ from the portable ones by one level. */
OX_EXPORT OX_Result OX_Composite(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat,
                                 const void* background, int32_t backgroundRowBytes, OX_PixelFormat backgroundFormat,
                                 void* destination, int32_t destinationRowBytes, OX_PixelFormat destinationFormat,
                                 int32_t width, int32_t height, float opacity, int32_t quality, bool keepLinear);
/* The same with one of the 27 blend modes. Mode 18 (Normal) is OX_Composite itself, shortcuts and
 * the clamped opacity included. Every other mode works in BGRA_4444_32f (straight alpha, linear
 * light kept as the formats say; `keepLinear` is not used) with `opacity` unclamped, and takes no
 * shortcut. Dissolve (6) seeds the C library generator with 1 on the calling thread when `height`
 * is above 1; rows on pool threads draw from their own generators, so its pattern differs by
 * thread. Darker and Lighter Colour weigh luma by Rec. 601 on rows under 721 pixels and Rec. 709
 * from 721 on. A mode outside 0 to 26 returns -1000; other results as OX_Composite. */
OX_EXPORT OX_Result OX_CompositeWithBlendMode(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat,
                                              const void* background, int32_t backgroundRowBytes,
                                              OX_PixelFormat backgroundFormat, void* destination,
                                              int32_t destinationRowBytes, OX_PixelFormat destinationFormat,
                                              int32_t width, int32_t height, float opacity, OX_BlendMode blendMode,
                                              int32_t quality, bool keepLinear);
/* True when a composite in `blendMode` at `opacity` would show the source alone: modes 18 and 6
 * within 8e-6 of opacity 1. Other modes: false. */
OX_EXPORT bool OX_IsOpacityNOP(OX_BlendMode blendMode, float opacity);

/* (end of section) */

/* ======================================================================================
 * Transitions, alpha operations, matte, fills and accumulate
 * ====================================================================================== */

/* Mixes image A (amount 0) into image B (amount 1) into the destination; each buffer has its own
 * raw format, and bottom-up buffers are walked from their last row, so pictures pair by picture.
 * Amount below 8e-6 converts A (B is not read), within 8e-6 of 1 converts B (A is not read).
 * Otherwise the rows work at the destination's depth when all three depths agree (or when they
 * differ and `quality` is 2), else in float, in a straight, premultiplied or opaque form settled
 * by the images' alpha: a transparent pixel takes the other's colour as it is, equal alphas stay,
 * other alphas mix by their weighted sums. Three V210 buffers of one format mix sample by sample
 * (spare bits zero) at SSE2 and above. Forms that no raw format has (10-bit, 15-bit YUV) work in
 * float. Results: -3/-4 containers, -5 negative width, 0 for an empty picture, -11/-12 null
 * buffers past the two ends, -999 when a needed conversion has no route, a shortcut's result. */
OX_EXPORT OX_Result OX_CrossDissolve(const void* imageA, int32_t imageARowBytes, OX_PixelFormat imageAFormat,
                                     const void* imageB, int32_t imageBRowBytes, OX_PixelFormat imageBFormat,
                                     void* destination, int32_t destinationRowBytes, OX_PixelFormat destinationFormat,
                                     int32_t width, int32_t height, float amount, int32_t quality);

/* Fills `width` x `height` pixels with black or white, transparent or opaque. Values by family:
 * 8-bit RGB 0/255, 8-bit YUV studio range (Y 16 or 235, U and V 128), 15-bit 0/32768 (15-bit YUV
 * takes the RGB values), float RGB 0/1, float YUV Y 0/1 with U and V 0; transparent white on a
 * premultiplied format is transparent black. 4:2:2 rows get (width + 1) / 2 pairs; V210 rows
 * (width + 5) / 6 groups; planar 4:2:0 (the OX_GetPlanarBuffers layout) gets studio-range luma
 * 16 or 235 over width x height and chroma 128 over (width + 1) / 2 x (height + 1) / 2 (capped
 * at the chroma row bytes), whatever the range bit says. Negative row bytes fill upward.
 * The transparent fills return -4 for a format without alpha (alpha modes 0 and 12, every 4:2:2
 * format). OX_FillWithOpaqueBlack copies a stored black frame of 120000 bytes for NTSCDV25 or
 * 144000 for PALDV25 (row bytes and sizes ignored) and writes nothing for the DV50 and DV100 codes,
 * returning 0. Other containers -3; zero or negative sizes 0 with nothing written; -12 for a null
 * destination with pixels to fill; -1000 for a depth without values. The caller guarantees the
 * buffer holds the rows. */
OX_EXPORT OX_Result OX_FillWithOpaqueBlack(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                           OX_PixelFormat format);
OX_EXPORT OX_Result OX_FillWithTransparentBlack(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                                OX_PixelFormat format);
OX_EXPORT OX_Result OX_FillWithOpaqueWhite(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                           OX_PixelFormat format);
OX_EXPORT OX_Result OX_FillWithTransparentWhite(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                                OX_PixelFormat format);
/* Fills with the one pixel at `color`, of raw format `colorFormat`, converted (quality 4) to
 * `format`: 4:4:4 formats with alpha at 8u, 15u or 32f; 8-bit 4:2:2; planar 4:2:0 (luma, U and V
 * from the pixel in 8-bit YUV of the format's matrix); V210, packed by hand from the pixel in 8-bit
 * YUV, where row 0 gets (width + 5) / 6 groups and later rows only the width / 6 whole groups, and
 * which returns -4 after filling (hosts rely on this). Other formats -4; a container `colorFormat`
 * -3; null `color` -11; a failed pixel conversion returns its code. */
OX_EXPORT OX_Result OX_FillWithColor(void* destination, int32_t rowBytes, int32_t width, int32_t height,
                                     OX_PixelFormat format, const void* color, OX_PixelFormat colorFormat);
/* Writes into each destination pixel's alpha sample the complement of the source's: 8-bit ~a,
 * 15-bit 32768 - a (16-bit arithmetic), float 1 - a. Only the alpha sample is written (sample 3, or
 * 0 for alpha-first formats); the colour samples keep what they held, so pass a destination that
 * holds the colour already or equals the source. Four-channel 4:4:4 formats with alpha at 8u, 15u
 * or 32f, else -3. Sizes below 1 return 0; null pointers -11/-12. */
OX_EXPORT OX_Result OX_InvertAlpha(const void* source, int32_t sourceRowBytes, void* destination,
                                   int32_t destinationRowBytes, OX_PixelFormat format, int32_t width, int32_t height);
/* Copies the pixels and sets every alpha to `alpha` (0 to 1): 8-bit clamp(rint(255 alpha)),
 * 15-bit clamp(rint(32768 alpha)), float the value itself. Four-channel 4:4:4 formats with alpha
 * at 8u, 15u or 32f (alpha-first only at 8u), else -1000. Row bytes are taken in whole 32-bit
 * words (a remainder is dropped). Sizes below 1 return 0; null pointers -11/-12. */
OX_EXPORT OX_Result OX_CopyAndSetAlpha(const void* source, int32_t sourceRowBytes, void* destination,
                                       int32_t destinationRowBytes, OX_PixelFormat format, int32_t width,
                                       int32_t height, float alpha);
/* Sets the alpha of every pixel in place to full (`opaque`) or 0. Formats: BGRA_4444_8u,
 * VUYA_4444_8u, BGRA_4444_15u, BGRA_4444_32f(_Linear), VUYA_4444_32f, ARGB_4444_32f(_Linear); others
 * -1000. Zero sizes return 0 with nothing written; -12 for a null buffer; sizes above 2^31 - 1
 * give -5/-6. */
OX_EXPORT OX_Result OX_SetAlphaChannel(uint32_t width, uint32_t height, void* buffer, int32_t rowBytes,
                                       OX_PixelFormat format, bool opaque);
/* Takes each pixel whole from image A where its mask bit is set, from image B where it is clear.
 * The mask is read most significant bit first from bit `maskBitOffset` & 7 of each row's first
 * byte; mask rows are `maskRowBytes` apart and pair with destination rows in memory order. A and B
 * of another format are converted (quality `quality`) a row at a time; they pair with the
 * destination by picture (a buffer of the other origin is walked from its last row). Destinations
 * of 4, 8 or 16 bytes a pixel, not 4:2:2, else -4; container images -3; sizes below 1 return 0;
 * null images or mask -11, null destination -12; a failed row conversion returns its code. */
OX_EXPORT OX_Result OX_OneBitMaskComposite(const void* imageA, int32_t imageARowBytes, OX_PixelFormat imageAFormat,
                                           const void* imageB, int32_t imageBRowBytes, OX_PixelFormat imageBFormat,
                                           const void* mask, int32_t maskRowBytes, int32_t maskBitOffset,
                                           void* destination, int32_t destinationRowBytes,
                                           OX_PixelFormat destinationFormat, int32_t width, int32_t height,
                                           int32_t quality);

/* (end of section) */

/* ======================================================================================
 * Filters: Gaussian blur, box blur, deinterlace
 * ====================================================================================== */

/* (end of section) */

/* ======================================================================================
 * Planar 4:2:0 utilities and scale-convert
 * ====================================================================================== */

/* (end of section) */

#ifdef __cplusplus
/* ======================================================================================
 * C++ only: slice threading, for hosts that want to run their own slices on the pool.
 * ====================================================================================== */
namespace OX {
namespace Threading {
/* A frame-sized job split into slices that write disjoint rows or columns. */
class OX_API Task {
 public:
  virtual int SliceCount() = 0;
  virtual void RunSlice(int index) = 0;
  virtual ~Task();
};
/* Runs every slice of `task` exactly once on the processor pool and returns when all are done. */
OX_API void RunTask(Task& task);
}  // namespace Threading
}  // namespace OX

/* C++ only: planar decompression and utilities. */

/* (end of section) */

/* C++ only: filters and motion. */

/* (end of section) */
#endif

#endif /* OMBRIX_H */
