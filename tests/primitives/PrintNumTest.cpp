// OX_PrintNum read back: the lit pixels of a few numbers are exactly the bars the glyph table and
// the geometry rules give, computed here, in an RGB, a 4:2:2, a planar and a float format; and
// the argument checks.
#include <cmath>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Ombrix.h"
#include "frame/PixelFormat.h"

namespace {

// Segments of each character, from the glyph table; anything else (the minus sign) is 1, 4, 7.
std::string Segments(char c) {
  static const char* const kDigits[] = {"123456", "23",    "12754", "12734", "2367",   "16734", "134567", "123",
                                        "1234567", "12367", "123567", "34567", "457", "23457", "16754", "1567"};
  if (c >= '0' && c <= '9') return kDigits[c - '0'];
  if (c >= 'a' && c <= 'f') return kDigits[10 + c - 'a'];
  return "147";
}

using Pixels = std::set<std::pair<int, int>>;  // (x, y) in picture coordinates, y down

struct Bar {
  int fX, fY, fLength;
  bool fHorizontal;
};

// The bars the rules give, computed independently of the library.
std::vector<Bar> ExpectedBarList(const std::string& text, int width, int height, float size, float xf, float yf) {
  const int n = int(text.size());
  const int x0 = std::max(int(std::trunc(width * double(xf))), 4);
  const int y0 = std::max(int(std::trunc(height * double(yf))), 4);
  int w = int(std::trunc(width * double(size))) & ~1;
  if (width < w * (n + 1) + x0) w = (width - x0) / (n + 1);
  if (y0 + 2 * w > height) w = (height - y0) / 2;
  const int s = (w * 3 / 4) & ~1;
  std::vector<Bar> bars;
  for (int i = 0; i < n; ++i) {
    const int x = x0 + i * w, y = y0;
    for (char seg : Segments(text[size_t(i)])) {
      switch (seg) {
        case '1': bars.push_back({x, y, s, true}); break;
        case '7': bars.push_back({x, y + s, s, true}); break;
        case '4': bars.push_back({x, y + 2 * s, s, true}); break;
        case '6': bars.push_back({x, y, s, false}); break;
        case '2': bars.push_back({x + s, y, s, false}); break;
        case '5': bars.push_back({x, y + s, s, false}); break;
        case '3': bars.push_back({x + s, y + s, s, false}); break;
      }
    }
  }
  return bars;
}

Pixels ExpectedBars(const std::string& text, int width, int height, float size, float xf, float yf) {
  Pixels p;
  for (const Bar& b : ExpectedBarList(text, width, height, size, xf, yf))
    for (int k = 0; k < b.fLength; ++k) p.insert(b.fHorizontal ? std::make_pair(b.fX + k, b.fY) : std::make_pair(b.fX, b.fY + k));
  return p;
}

// 4:2:2: a horizontal bar is s / 2 pairs from the pair holding its first pixel; a vertical bar
// lights the pair holding its pixel on each row. Result: (pair, y).
Pixels ExpectedPairs(const std::string& text, int width, int height, float size, float xf, float yf) {
  Pixels p;
  for (const Bar& b : ExpectedBarList(text, width, height, size, xf, yf)) {
    if (b.fHorizontal)
      for (int k = 0; k < b.fLength / 2; ++k) p.insert({b.fX / 2 + k, b.fY});
    else
      for (int k = 0; k < b.fLength; ++k) p.insert({b.fX / 2, b.fY + k});
  }
  return p;
}

struct NumberCase {
  const char* fName;
  int fNumber;
  bool fDecimal;
  std::string fText;
  int fWidth, fHeight;
  float fSize, fX, fY;
};
const NumberCase kNumbers[] = {
    {"zero in hex", 0, false, "0", 96, 64, 0.25f, 0.1f, 0.1f},
    {"one", 1, true, "1", 96, 64, 0.2f, 0.5f, 0.25f},
    {"negative", -42, true, "-42", 120, 80, 0.15f, 0.0f, 0.0f},
    {"hex of a negative", -1, false, "ffffffff", 400, 60, 0.05f, 0.02f, 0.1f},
    {"long on a narrow frame", 123456789, true, "123456789", 60, 90, 0.5f, 0.1f, 0.1f},
};

TEST(PrintNum, GlyphsForNumbersAreAsTheTableSays) {
  // The expectations themselves: 0 is two bars at y and y + 2s and its four verticals; 1 only the
  // right-hand verticals.
  const Pixels zero = ExpectedBars("0", 96, 64, 0.25f, 0.1f, 0.1f);
  const int s = (24 * 3 / 4) & ~1, x = 9, y = 6;
  EXPECT_TRUE(zero.count({x + 1, y}) && zero.count({x + 1, y + 2 * s}) && !zero.count({x + 1, y + s}));
  const Pixels one = ExpectedBars("1", 96, 64, 0.2f, 0.5f, 0.25f);
  for (auto [px, py] : one) EXPECT_GT(px, 48) << "a 1 has only right-hand bars";
}

// BGRA_4444_8u is bottom-up: picture row y is buffer row height - 1 - y, unless debug flag 10
// makes every format top-left.
TEST(PrintNum, ReadBackInBGRA8uAtBothOrigins) {
  struct ClearFlagOnExit {
    ~ClearFlagOnExit() { OX_SetDebugFlag(10, 0); }
  } clear;
  for (bool forceTopLeft : {false, true}) {
    OX_SetDebugFlag(10, forceTopLeft);
    for (const NumberCase& c : kNumbers) {
      const int rowBytes = c.fWidth * 4 + 8;
      std::vector<uint8_t> buf(size_t(rowBytes * c.fHeight), 0x10);
      ASSERT_EQ(OX_PrintNum(buf.data(), rowBytes, OX_PixelFormat_BGRA_4444_8u, c.fWidth, c.fHeight, c.fNumber,
                            c.fSize, c.fX, c.fY, c.fDecimal),
                0);
      const Pixels lit = ExpectedBars(c.fText, c.fWidth, c.fHeight, c.fSize, c.fX, c.fY);
      ASSERT_FALSE(lit.empty()) << c.fName;
      for (int y = 0; y < c.fHeight; ++y)
        for (int x = 0; x < c.fWidth; ++x) {
          const int row = forceTopLeft ? y : c.fHeight - 1 - y;
          const uint8_t* p = buf.data() + row * rowBytes + x * 4;
          const bool red = p[0] == 0 && p[1] == 0 && p[2] == 255 && p[3] == 255;
          const bool untouched = p[0] == 0x10 && p[1] == 0x10 && p[2] == 0x10 && p[3] == 0x10;
          ASSERT_TRUE(lit.count({x, y}) ? red : untouched)
              << c.fName << " at " << x << "," << y << (forceTopLeft ? " forced top-left" : "");
        }
      for (int i = c.fWidth * 4; i < rowBytes; ++i) ASSERT_EQ(buf[size_t(i)], 0x10) << "row padding";
    }
  }
}

// 4:2:2 8-bit in both orders, pair by pair.
TEST(PrintNum, ReadBackInUYVY8uAndYUYV8u) {
  for (OX_PixelFormat format : {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_YUYV_422_8u}) {
    const uint8_t red[4] = {0x5A, 0x51, 0xEF, 0x51}, redYUYV[4] = {0x51, 0x5A, 0x51, 0xEF};
    const uint8_t* want = format == OX_PixelFormat_UYVY_422_8u ? red : redYUYV;
    for (const NumberCase& c : kNumbers) {
      const int rowBytes = c.fWidth * 2 + 4;
      std::vector<uint8_t> buf(size_t(rowBytes * c.fHeight), 0x20);
      ASSERT_EQ(OX_PrintNum(buf.data(), rowBytes, format, c.fWidth, c.fHeight, c.fNumber, c.fSize, c.fX, c.fY,
                            c.fDecimal),
                0);
      const Pixels pairs = ExpectedPairs(c.fText, c.fWidth, c.fHeight, c.fSize, c.fX, c.fY);
      for (int y = 0; y < c.fHeight; ++y)
        for (int pair = 0; pair < c.fWidth / 2; ++pair) {
          const uint8_t* p = buf.data() + y * rowBytes + pair * 4;
          const uint8_t background[4] = {0x20, 0x20, 0x20, 0x20};
          ASSERT_EQ(std::memcmp(p, pairs.count({pair, y}) ? want : background, 4), 0)
              << c.fName << " pair " << pair << " row " << y;
        }
    }
  }
}

// Planar 4:2:0: luma exactly at the lit pixels; chroma on half rows, horizontal bars at half
// position and half length, vertical bars at half position.
TEST(PrintNum, ReadBackInPlanar420) {
  for (const NumberCase& c : kNumbers) {
    const OX_PixelFormat format = OX_PixelFormat_YUV_420_MPEG2_FRAME;
    std::vector<uint8_t> buf(size_t(OX_PixelFormatSize(format, c.fWidth, c.fHeight)), 0x30);
    void* planes[3];
    int32_t rows[3];
    OX_GetPlanarBuffers(buf.data(), 0, c.fWidth, c.fHeight, planes, rows);
    ASSERT_EQ(OX_PrintNum(buf.data(), 0, format, c.fWidth, c.fHeight, c.fNumber, c.fSize, c.fX, c.fY, c.fDecimal), 0);
    const Pixels lit = ExpectedBars(c.fText, c.fWidth, c.fHeight, c.fSize, c.fX, c.fY);
    Pixels chroma;
    for (auto [x, y] : ExpectedPairs(c.fText, c.fWidth, c.fHeight, c.fSize, c.fX, c.fY)) chroma.insert({x, y / 2});
    const auto* luma = static_cast<const uint8_t*>(planes[0]);
    for (int y = 0; y < c.fHeight; ++y)
      for (int x = 0; x < c.fWidth; ++x)
        ASSERT_EQ(luma[y * rows[0] + x], lit.count({x, y}) ? 0x51 : 0x30) << c.fName << " luma " << x << "," << y;
    for (int plane = 1; plane < 3; ++plane) {
      const auto* p = static_cast<const uint8_t*>(planes[plane]);
      const uint8_t colour = plane == 1 ? 0x5A : 0xEF;
      for (int y = 0; y < c.fHeight / 2; ++y)
        for (int x = 0; x < c.fWidth / 2; ++x)
          ASSERT_EQ(p[y * rows[plane] + x], chroma.count({x, y}) ? colour : 0x30)
              << c.fName << " plane " << plane << " at " << x << "," << y;
    }
  }
}

TEST(PrintNum, ReadBackInVUYA32f) {
  const NumberCase& c = kNumbers[2];
  const int rowBytes = c.fWidth * 16;
  std::vector<float> buf(size_t(c.fWidth * 4 * c.fHeight), -7.0f);
  ASSERT_EQ(OX_PrintNum(buf.data(), rowBytes, OX_PixelFormat_VUYA_4444_32f, c.fWidth, c.fHeight, c.fNumber, c.fSize,
                        c.fX, c.fY, c.fDecimal),
            0);
  const Pixels lit = ExpectedBars(c.fText, c.fWidth, c.fHeight, c.fSize, c.fX, c.fY);
  for (int y = 0; y < c.fHeight; ++y)
    for (int x = 0; x < c.fWidth; ++x) {
      const float* p = buf.data() + (c.fHeight - 1 - y) * c.fWidth * 4 + x * 4;
      if (lit.count({x, y})) {
        ASSERT_EQ(p[0], 0.5f);
        ASSERT_EQ(p[1], -0.168736f);
        ASSERT_EQ(p[2], 0.299f);
        ASSERT_EQ(p[3], 1.0f);
      } else {
        ASSERT_EQ(p[0], -7.0f) << x << "," << y;
      }
    }
}

TEST(PrintNum, ArgumentChecks) {
  uint8_t buf[64] = {};
  const struct {
    const char* fName;
    OX_PixelFormat fFormat;
    int fWidth, fHeight;
    float fSize, fX, fY;
    OX_Result fWant;
  } cases[] = {
      {"15u", OX_PixelFormat_BGRA_4444_15u, 4, 4, 0.1f, 0.1f, 0.1f, -4},
      {"DV container", OX_PixelFormat_NTSCDV25, 4, 4, 0.1f, 0.1f, 0.1f, -4},
      {"planar without YUV bit", 0x9000030u, 4, 4, 0.1f, 0.1f, 0.1f, -4},
      {"planar container 13", 0xD000831u, 4, 4, 0.1f, 0.1f, 0.1f, -4},
      {"negative width", OX_PixelFormat_BGRA_4444_8u, -1, 4, 0.1f, 0.1f, 0.1f, -5},
      {"negative height", OX_PixelFormat_BGRA_4444_8u, 4, -1, 0.1f, 0.1f, 0.1f, -6},
      {"size above 1", OX_PixelFormat_BGRA_4444_8u, 4, 4, 1.5f, 0.1f, 0.1f, -999},
      {"x below 0", OX_PixelFormat_BGRA_4444_8u, 4, 4, 0.1f, -0.1f, 0.1f, -999},
      {"y NaN", OX_PixelFormat_BGRA_4444_8u, 4, 4, 0.1f, 0.1f, std::nanf(""), -999},
      {"tiny frame draws nothing", OX_PixelFormat_BGRA_4444_8u, 4, 4, 1.0f, 1.0f, 1.0f, 0},
  };
  for (const auto& c : cases)
    EXPECT_EQ(OX_PrintNum(buf, 16, c.fFormat, c.fWidth, c.fHeight, 5, c.fSize, c.fX, c.fY, true), c.fWant) << c.fName;
  for (uint8_t b : buf) EXPECT_EQ(b, 0);
}

}  // namespace

namespace OX {
namespace {

// Random geometry, numbers and every raw and planar format on buffers of tight rows with guard
// bytes after them: the overlay never writes outside the picture, whatever the fractions.
TEST(PrintNum, NeverWritesOutsideThePicture) {
  std::mt19937 rng(37);
  std::vector<OX_PixelFormat> formats(kRawFormats, kRawFormats + kRawFormatCount);
  formats.push_back(OX_PixelFormat_YUV_420_MPEG2_FIELD);
  formats.push_back(OX_PixelFormat_YUV_420_MPEG4_FRAME_709);
  auto fraction = [&] { return (rng() % 8 == 0) ? float(rng() % 2) : float(rng() % 10001) / 10000.0f; };
  for (int trial = 0; trial < 3000; ++trial) {
    const OX_PixelFormat format = formats[rng() % formats.size()];
    const int width = int(rng() % 90), height = int(rng() % 70);
    const bool planar = IsPlanarContainer(format);
    const int rowBytes = planar ? 0 : TightRowBytes(format, width);
    const size_t bytes = planar ? size_t(OX_PixelFormatSize(format, width, height)) : size_t(rowBytes) * height;
    constexpr size_t kGuard = 64;
    std::vector<uint8_t> buf(bytes + kGuard, 0xC5);
    const int number = (rng() % 4 == 0) ? int(rng()) : int(rng() % 2000) - 1000;
    const OX_Result r = OX_PrintNum(buf.data(), rowBytes, format, width, height, number, fraction(), fraction(),
                                    fraction(), rng() % 2 == 0);
    ASSERT_TRUE(r == 0 || r == -4) << "format " << std::hex << format;
    for (size_t i = bytes; i < buf.size(); ++i)
      ASSERT_EQ(buf[i], 0xC5) << "format " << std::hex << format << std::dec << " " << width << "x" << height
                              << " wrote past the picture";
  }
}

}  // namespace
}  // namespace OX
