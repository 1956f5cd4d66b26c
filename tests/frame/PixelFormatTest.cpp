// Format codes: sizes, row bytes, origins, addressing, names and the caller-side mapping.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "Ombrix.h"
#include "frame/Globals.h"
#include "frame/PixelFormat.h"
#include "platform/zelmediatypes.h"

namespace OX {
namespace {

TEST(PixelFormat, ContainerSizesIgnoreGeometry) {
  struct Case {
    OX_PixelFormat f;
    int32_t size;
  } cases[] = {{OX_PixelFormat_NTSCDV25, 120000},        {OX_PixelFormat_PALDV25, 144000},
               {OX_PixelFormat_NTSC_DV100_720p, 240000}, {OX_PixelFormat_PAL_DV100_720p, 288000},
               {OX_PixelFormat_NTSC_DV100_1080i, 480000}, {OX_PixelFormat_PAL_DV100_1080i, 576000},
               {OX_PixelFormat_NTSCDV50, 240000},        {OX_PixelFormat_PALDV50, 288000}};
  for (const Case& c : cases)
    for (int32_t w : {0, 1, 720, -5, 100000})
      for (int32_t h : {0, 1, 480, -3}) EXPECT_EQ(OX_PixelFormatSize(c.f, w, h), c.size) << std::hex << c.f;
  // Unknown container bytes have no size, whatever the low bits say.
  EXPECT_EQ(OX_PixelFormatSize(0x0D000000, 1920, 1080), 0);
  EXPECT_EQ(OX_PixelFormatSize(0xFF000004, 1920, 1080), 0);
}

TEST(PixelFormat, PlanarSizeRoundsEachDimension) {
  // luma row rounded to 128, chroma row (width / 2) rounded to 128, rows rounded to 32.
  struct Case {
    int32_t w, h, size;
  } cases[] = {{1920, 1080, (1920 + 1024) * 1088}, {1, 1, (128 + 0) * 32},   {2, 1, (128 + 128) * 32},
               {129, 33, (256 + 128) * 64},        {720, 480, (768 + 384) * 480}, {0, 0, 0}};
  for (const Case& c : cases) {
    EXPECT_EQ(OX_PixelFormatSize(OX_PixelFormat_YUV_420_MPEG2_FRAME, c.w, c.h), c.size) << c.w << "x" << c.h;
    EXPECT_EQ(OX_PixelFormatSize(OX_PixelFormat_YUV_420_MPEG4_FIELD_FullRange_709, c.w, c.h), c.size);
  }
}

TEST(PixelFormat, PaddedRowBytesFollowTheThreeRules) {
  struct Case {
    OX_PixelFormat f;
    int32_t w, rowBytes;
  } cases[] = {
      // V210: six-pixel groups of 16 bytes, rounded to 128.
      {OX_PixelFormat_V210_422_10u, 1, 128},
      {OX_PixelFormat_V210_422_10u, 48, 128},
      {OX_PixelFormat_V210_422_10u, 49, 256},
      {OX_PixelFormat_V210_422_10u_709, 1920, 5120},
      // 4:2:2: 2 bytes at 8u, 8 at 32f, rounded to 16.
      {OX_PixelFormat_UYVY_422_8u, 1, 16},
      {OX_PixelFormat_YUYV_422_8u_709, 1920, 3840},
      {OX_PixelFormat_UYVY_422_32f, 3, 32},
      // 4:4:4: 4 bytes at 8u with alpha, 8 at 15u, 16 at 32f, rounded to 64.
      {OX_PixelFormat_BGRA_4444_8u, 1, 64},
      {OX_PixelFormat_BGRA_4444_8u, 17, 128},
      {OX_PixelFormat_ARGB_4444_15u, 9, 128},
      {OX_PixelFormat_VUYA_4444_32f_709, 5, 128},
      {OX_PixelFormat_RGB_444_10u, 16, 64},
      {OX_PixelFormat_RGB_444_10u, 17, 128},
      // By bits, not by name: 32f with no alpha mode is 8 bytes; a YUV 10u code that is not V210
      // has no bytes at all; an invalid depth has none either.
      {0x100, 8, 64},
      {0x841, 100, 0},
      {0x1C4, 100, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(PaddedRowBytes(c.f, c.w), c.rowBytes) << std::hex << c.f << std::dec << " at " << c.w;
    EXPECT_EQ(OX_PixelFormatSize(c.f, c.w, 7), c.rowBytes * 7);
  }
}

TEST(PixelFormat, TightRowBytesAreThePayload) {
  struct Case {
    OX_PixelFormat f;
    int32_t w, tight;
  } cases[] = {{OX_PixelFormat_UYVY_422_8u, 5, 12},     {OX_PixelFormat_UYVY_422_32f, 5, 48},
               {OX_PixelFormat_V210_422_10u, 7, 32},    {OX_PixelFormat_BGRA_4444_8u, 5, 20},
               {OX_PixelFormat_BGRA_4444_15u, 5, 40},   {OX_PixelFormat_BGRX_4444_32f, 5, 80},
               {OX_PixelFormat_RGB_444_10u, 5, 20},     {0x100, 5, 40}};
  for (const Case& c : cases) EXPECT_EQ(TightRowBytes(c.f, c.w), c.tight) << std::hex << c.f;
}

TEST(PixelFormat, OriginIsBottomUpOnlyForFourChannel444) {
  for (OX_PixelFormat f : kRawFormats) {
    const bool bottomUp = SubsamplingOf(f) == 0 && AlphaOf(f) != 0;
    EXPECT_EQ(OX_IsOriginTopLeft(f), !bottomUp) << PixelFormatName(f);
    EXPECT_EQ(OX_IsOriginBottomLeft(f), bottomUp);
  }
  EXPECT_TRUE(OX_IsOriginTopLeft(OX_PixelFormat_RGB_444_10u));
  EXPECT_TRUE(OX_IsOriginTopLeft(OX_PixelFormat_PALDV25));
  OX_SetDebugFlag(10, 1);
  EXPECT_TRUE(OX_IsOriginTopLeft(OX_PixelFormat_BGRA_4444_8u));
  EXPECT_FALSE(OX_IsOriginBottomLeft(OX_PixelFormat_BGRA_4444_8u));
  OX_SetDebugFlag(10, 0);
  EXPECT_FALSE(OX_IsOriginTopLeft(OX_PixelFormat_BGRA_4444_8u));
}

TEST(PixelFormat, ClipBufferToRectAddressesFourChannel444Only) {
  alignas(16) static uint8_t buffer[4096];
  struct Case {
    OX_PixelFormat f;
    int32_t bpp;  // 0: refused
  } cases[] = {{OX_PixelFormat_BGRA_4444_8u, 4}, {OX_PixelFormat_ARGB_4444_15u, 8}, {OX_PixelFormat_BGRX_4444_32f, 16},
               {OX_PixelFormat_VUYA_4444_8u_709, 4}, {OX_PixelFormat_UYVY_422_8u, 0}, {OX_PixelFormat_RGB_444_10u, 0},
               {OX_PixelFormat_V210_422_10u, 0}, {0x1C4, 0}, {0x841 | 0xC, 0}};
  for (const Case& c : cases) {
    void* out = &buffer[7];
    const OX_Result r = OX_ClipBufferToRect(buffer, 256, 10, 10, c.f, 3, 2, &out);
    if (c.bpp == 0) {
      EXPECT_EQ(r, OX_ErrBadSourceFormat) << std::hex << c.f;
      EXPECT_EQ(out, &buffer[7]) << "refusal must leave the output untouched";
    } else {
      EXPECT_EQ(r, OX_Success);
      EXPECT_EQ(out, &buffer[2 * 256 + 3 * c.bpp]) << std::hex << c.f;
    }
  }
  // Negative row bytes walk backward; no range check is made.
  void* out = nullptr;
  EXPECT_EQ(OX_ClipBufferToRect(buffer + 2048, -256, 1, 1, OX_PixelFormat_BGRA_4444_8u, 1, 3, &out), OX_Success);
  EXPECT_EQ(out, buffer + 2048 - 768 + 4);
}

TEST(PixelFormat, PlanarBuffersLayOutThreePlanes) {
  void* planes[3];
  int32_t rowBytes[3];
  uint8_t* base = reinterpret_cast<uint8_t*>(0x100000);
  EXPECT_EQ(OX_GetPlanarBuffers(base, 12345, 1920, 1080, planes, rowBytes), OX_Success);
  EXPECT_EQ(planes[0], base);
  EXPECT_EQ(rowBytes[0], 1920);
  EXPECT_EQ(rowBytes[1], 1024);
  EXPECT_EQ(rowBytes[2], 1024);
  EXPECT_EQ(planes[1], base + 1088 * 1920);
  EXPECT_EQ(planes[2], base + 1088 * 1920 + 1088 * 1024 / 2);
  // The planes fit inside the planar size.
  EXPECT_LE(static_cast<uint8_t*>(planes[2]) + 1088 / 2 * 1024,
            base + OX_PixelFormatSize(OX_PixelFormat_YUV_420_MPEG2_FRAME, 1920, 1080));
}

TEST(PixelFormat, NameTableHasSeventyOneDistinctRecords) {
  std::set<uint32_t> codes;
  std::set<std::string> names;
  for (const FormatNameRecord& r : kFormatNameTable) {
    codes.insert(r.fCode);
    names.insert(r.fName);
    EXPECT_STREQ(PixelFormatName(r.fCode), r.fName);
  }
  EXPECT_EQ(codes.size(), 71u);
  EXPECT_EQ(names.size(), 71u);
  EXPECT_STREQ(kFormatNameTable[0].fName, "Invalid");
  EXPECT_STREQ(PixelFormatName(OX_PixelFormat_RGB_444_10u), "Unknown pixel format");
  EXPECT_STREQ(PixelFormatName(0x12345), "Unknown pixel format");
  EXPECT_STREQ(RenderQualityName(2), "Low");
  EXPECT_STREQ(RenderQualityName(5), "High");
  EXPECT_STREQ(RenderQualityName(-1), "High");
  // Every raw format but RGB_444_10u is named; the 47 raw codes are distinct and raw.
  std::set<uint32_t> raw(std::begin(kRawFormats), std::end(kRawFormats));
  EXPECT_EQ(raw.size(), 47u);
  for (OX_PixelFormat f : kRawFormats) {
    EXPECT_TRUE(IsRawFormat(f));
    if (f != OX_PixelFormat_RGB_444_10u) {
      EXPECT_TRUE(codes.count(f)) << std::hex << f;
    }
  }
}

TEST(PixelFormat, CallerConstantsMapByValue) {
  using namespace zelmediatypes;
  EXPECT_EQ(OX_ZELPixelFormatToOXPixelFormat(&kPixelFormat_BGRA_4444_8u), OX_PixelFormat_BGRA_4444_8u);
  EXPECT_EQ(OX_ZELPixelFormatToOXPixelFormat(&kPixelFormat_RGB_444_10u), OX_PixelFormat_RGB_444_10u);
  EXPECT_EQ(OX_ZELPixelFormatToOXPixelFormat(&kPixelFormat_PALDV50), OX_PixelFormat_PALDV50);
  EXPECT_EQ(OX_ZELPixelFormatToOXPixelFormat(&kPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange),
            OX_PixelFormat_YUV_420_MPEG4_FRAME_FullRange_709);
  // A copy compares equal: the lookup is by value, not by address.
  const PixelFormat copy = kPixelFormat_UYVY_422_8u_709;
  EXPECT_EQ(OX_ZELPixelFormatToOXPixelFormat(&copy), OX_PixelFormat_UYVY_422_8u_709);
  // The deliberate gaps and unknown values give 0.
  EXPECT_EQ(OX_ZELPixelFormatToOXPixelFormat(&kPixelFormat_YUYV_422_32f), 0u);
  EXPECT_EQ(OX_ZELPixelFormatToOXPixelFormat(&kPixelFormat_BGRX_4444_32f_Linear), 0u);
  const PixelFormat unknown = {0xDEADBEEF, 0x12345678};
  EXPECT_EQ(OX_ZELPixelFormatToOXPixelFormat(&unknown), 0u);
  // 51 named suffixes plus 16 planar constants, all distinct results.
  std::set<OX_PixelFormat> results;
#define ZEL_COUNT(name) results.insert(OX_ZELPixelFormatToOXPixelFormat(&kPixelFormat_##name));
#define ZEL_COUNT_PLANAR(name, code) results.insert(OX_ZELPixelFormatToOXPixelFormat(&kPixelFormat_##name));
  ZEL_PIXEL_FORMAT_LIST(ZEL_COUNT)
  ZEL_PLANAR_FORMAT_LIST(ZEL_COUNT_PLANAR)
#undef ZEL_COUNT
#undef ZEL_COUNT_PLANAR
  EXPECT_EQ(results.size(), 67u);
  EXPECT_EQ(results.count(0u), 0u);
}

}  // namespace
}  // namespace OX
