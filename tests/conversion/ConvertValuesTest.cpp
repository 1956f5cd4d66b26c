// Values through whole chains, against references composed here from the converters' formulas in
// double precision, step by step along each route; one sample pair for every converter family
// (range and depth, the 8u and 32f matrices, 601 / 709, alpha forms, channel order, 4:2:2, V210,
// linear light, the 10u and 15u forms), at every processor level.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "frame/PixelFormat.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

// Integer results are one level apart at most: float against double evaluation at a rounding edge.
constexpr int kIntegerTolerance = 1;
constexpr double kFloatTolerance = 2e-6;

double Clamp(double v, double hi) { return v < 0 ? 0 : (v > hi ? hi : v); }
// Round to nearest, ties to even, then clamp: the converters' "rounded, clamped".
int RoundClamp(double v, int hi) { return int(Clamp(std::nearbyint(v), hi)); }
// "+ 0.5, truncated, clamped".
int TruncClamp(double v, int hi) { return int(Clamp(std::trunc(v + 0.5), hi)); }

struct RGBA8 {
  int b, g, r, a;
};
struct VUYA8 {
  int v, u, y, a;
};

// 601 RGB to studio YUV at 8u, constants folded.
VUYA8 BGRAToVUYA601(const RGBA8& p) {
  return {TruncClamp(0.4392149 * p.r - 0.3677891 * p.g - 0.0714258 * p.b + 128, 255),
          TruncClamp(-0.1482227 * p.r - 0.2909922 * p.g + 0.4392149 * p.b + 128, 255),
          TruncClamp(0.2567891 * p.r + 0.5041289 * p.g + 0.0979062 * p.b + 16, 255), p.a};
}
VUYA8 PremultiplyYUV8(const VUYA8& p) {
  const double a = p.a / 255.0;
  return {RoundClamp((p.v - 128) * a + 128, 255), RoundClamp((p.u - 128) * a + 128, 255),
          RoundClamp((p.y - 16) * a + 16, 255), p.a};
}
// Studio YUV to 601 RGB at 8u.
RGBA8 YUVToBGRA601(int y, int u, int v) {
  const double yy = 1.1643828 * (y - 16);
  return {RoundClamp(yy + 2.0172305 * (u - 128), 255),
          RoundClamp(yy - 0.3917617 * (u - 128) - 0.8129687 * (v - 128), 255), RoundClamp(yy + 1.5960274 * (v - 128), 255),
          255};
}

struct ValueCase {
  const char* fName;
  OX_PixelFormat fFrom, fTo;
  // Fills the source row; `rng` is seeded per case.
  std::function<void(uint8_t* row, int width, std::mt19937& rng)> fFill;
  // Returns a description of the first disagreement, or an empty string.
  std::function<std::string(const uint8_t* in, const uint8_t* out, int width)> fCheck;
};

template <class T>
T Load(const uint8_t* p, size_t index) {
  T v;
  std::memcpy(&v, p + index * sizeof(T), sizeof(T));
  return v;
}
template <class T>
void Store(uint8_t* p, size_t index, T v) {
  std::memcpy(p + index * sizeof(T), &v, sizeof(T));
}

std::string Mismatch(int x, int channel, double got, double expected) {
  std::ostringstream s;
  s << "pixel " << x << " sample " << channel << ": got " << got << ", expected " << expected;
  return s.str();
}

void FillRandomBytes(uint8_t* row, size_t bytes, std::mt19937& rng) {
  for (size_t i = 0; i < bytes; ++i) {
    const unsigned r = rng();
    row[i] = (r % 8 == 0) ? 0 : (r % 8 == 1) ? 255 : uint8_t(r >> 8);
  }
}

// BGRA rows whose first six pixels are fully transparent and the rest random, with alpha 0 and 255
// mixed in.
void FillBGRA8(uint8_t* row, int width, std::mt19937& rng) {
  FillRandomBytes(row, size_t(width) * 4, rng);
  for (int x = 0; x < width && x < 6; ++x) row[x * 4 + 3] = 0;
}

std::string CheckBGRAToUYVY(const uint8_t* in, const uint8_t* out, int width) {
  std::vector<VUYA8> p{size_t(width), VUYA8{}};
  for (int x = 0; x < width; ++x)
    p[size_t(x)] = PremultiplyYUV8(BGRAToVUYA601({in[x * 4], in[x * 4 + 1], in[x * 4 + 2], in[x * 4 + 3]}));
  for (int k = 0; 2 * k < width; ++k) {
    const int e = 2 * k;
    int u, v, y0 = p[size_t(e)].y, yOdd;
    if (e + 1 >= width) {  // the last pixel of an odd row stands alone
      u = p[size_t(e)].u;
      v = p[size_t(e)].v;
      yOdd = y0;
    } else {
      yOdd = p[size_t(e + 1)].y;
      if (k == 0) {
        u = (3 * p[0].u + p[1].u + 2) >> 2;
        v = p[0].v;
      } else {
        u = (p[size_t(e - 1)].u + 2 * p[size_t(e)].u + p[size_t(e + 1)].u + 2) >> 2;
        v = (p[size_t(e - 1)].v + 2 * p[size_t(e)].v + p[size_t(e + 1)].v + 2) >> 2;
      }
    }
    const int expected[4] = {u, y0, v, yOdd};
    for (int c = 0; c < 4; ++c)
      if (std::abs(out[k * 4 + c] - expected[c]) > kIntegerTolerance) return Mismatch(e, c, out[k * 4 + c], expected[c]);
    // A transparent neighbourhood is exactly black and neutral, not zero.
    if (e + 2 < width && e < 4) {
      const int black[4] = {128, 16, 128, 16};
      for (int c = 0; c < 4; ++c)
        if (out[k * 4 + c] != black[c]) return "transparent " + Mismatch(e, c, out[k * 4 + c], black[c]);
    }
  }
  return "";
}

std::string CheckUYVYToBGRA(const uint8_t* in, const uint8_t* out, int width) {
  const int pairs = (width + 1) / 2;
  for (int x = 0; x < width; ++x) {
    const int k = x / 2;
    const int y = in[k * 4 + 1 + 2 * (x & 1)];
    int uLow = in[k * 4], vLow = in[k * 4 + 2], uHigh = uLow, vHigh = vLow;
    if ((x & 1) && k + 1 < pairs) {  // odd pixels: the mean of the two chroma neighbours, either rounding
      uLow = (in[k * 4] + in[k * 4 + 4]) >> 1;
      vLow = (in[k * 4 + 2] + in[k * 4 + 6]) >> 1;
      uHigh = (in[k * 4] + in[k * 4 + 4] + 1) >> 1;
      vHigh = (in[k * 4 + 2] + in[k * 4 + 6] + 1) >> 1;
    }
    const RGBA8 lo = YUVToBGRA601(y, uLow, vLow), hi = YUVToBGRA601(y, uHigh, vHigh);
    const int l[4] = {lo.b, lo.g, lo.r, 255}, h[4] = {hi.b, hi.g, hi.r, 255};
    for (int c = 0; c < 4; ++c) {
      const int got = out[x * 4 + c];
      if (std::abs(got - l[c]) > kIntegerTolerance && std::abs(got - h[c]) > kIntegerTolerance)
        return Mismatch(x, c, got, l[c]);
    }
  }
  return "";
}

// V210 rows with one chroma pair for the whole row, so that only the matrix decides the values.
constexpr int kV210U = 700, kV210V = 300;
void FillV210(uint8_t* row, int width, std::mt19937& rng) {
  const int groups = (width + 5) / 6;
  for (int g = 0; g < groups; ++g) {
    int y[6];
    for (int& v : y) v = int(rng() % 1024);
    const uint32_t words[4] = {
        uint32_t(kV210U) | uint32_t(y[0]) << 10 | uint32_t(kV210V) << 20,
        uint32_t(y[1]) | uint32_t(kV210U) << 10 | uint32_t(y[2]) << 20,
        uint32_t(kV210V) | uint32_t(y[3]) << 10 | uint32_t(kV210U) << 20,
        uint32_t(y[4]) | uint32_t(kV210V) << 10 | uint32_t(y[5]) << 20,
    };
    std::memcpy(row + g * 16, words, 16);
  }
}
std::string CheckV210ToBGRA(const uint8_t* in, const uint8_t* out, int width) {
  for (int x = 0; x < width; ++x) {
    const int g = x / 6, i = x % 6;
    static const int kWord[6] = {0, 1, 1, 2, 3, 3}, kShift[6] = {10, 0, 20, 10, 0, 20};
    const int y = int((Load<uint32_t>(in + g * 16, size_t(kWord[i])) >> kShift[i]) & 1023);
    const double yy = 0.2910957 * (y - 64), u = kV210U - 512, v = kV210V - 512;
    const int expected[4] = {RoundClamp(yy + 0.5043076 * u, 255), RoundClamp(yy - 0.0979404 * u - 0.2032422 * v, 255),
                             RoundClamp(yy + 0.3990068 * v, 255), 255};
    for (int c = 0; c < 4; ++c)
      if (std::abs(out[x * 4 + c] - expected[c]) > kIntegerTolerance) return Mismatch(x, c, out[x * 4 + c], expected[c]);
  }
  return "";
}

void FillVUYA32f(uint8_t* row, int width, std::mt19937& rng) {
  std::uniform_real_distribution<float> luma(-0.1f, 1.1f), chroma(-0.6f, 0.6f), alpha(-0.05f, 1.05f);
  for (int x = 0; x < width; ++x) {
    Store<float>(row, size_t(x) * 4, chroma(rng));
    Store<float>(row, size_t(x) * 4 + 1, chroma(rng));
    Store<float>(row, size_t(x) * 4 + 2, luma(rng));
    Store<float>(row, size_t(x) * 4 + 3, alpha(rng));
  }
}
std::string CheckVUYA32fToBGRA(const uint8_t* in, const uint8_t* out, int width) {
  for (int x = 0; x < width; ++x) {
    const double v = Load<float>(in, size_t(x) * 4), u = Load<float>(in, size_t(x) * 4 + 1),
                 y = Load<float>(in, size_t(x) * 4 + 2), a = Load<float>(in, size_t(x) * 4 + 3);
    const double rgb[4] = {y + 1.772 * u, y - 0.344136 * u - 0.714136 * v, y + 1.402 * v, a};
    for (int c = 0; c < 4; ++c) {
      const int expected = RoundClamp(255 * rgb[c], 255);
      if (std::abs(out[x * 4 + c] - expected) > kIntegerTolerance) return Mismatch(x, c, out[x * 4 + c], expected);
    }
  }
  return "";
}

std::string CheckBGRAToBGRA32f(const uint8_t* in, const uint8_t* out, int width) {
  for (int i = 0; i < width * 4; ++i) {
    const double expected = in[i] / 255.0;
    if (std::abs(Load<float>(out, size_t(i)) - expected) > kFloatTolerance)
      return Mismatch(i / 4, i % 4, Load<float>(out, size_t(i)), expected);
  }
  return "";
}

std::string CheckBGRAToARGB(const uint8_t* in, const uint8_t* out, int width) {
  for (int x = 0; x < width; ++x)
    for (int c = 0; c < 4; ++c)
      if (out[x * 4 + c] != in[x * 4 + 3 - c]) return Mismatch(x, c, out[x * 4 + c], in[x * 4 + 3 - c]);
  return "";
}

std::string CheckBGRAToLinear(const uint8_t* in, const uint8_t* out, int width) {
  for (int i = 0; i < width * 4; ++i) {
    const double expected = i % 4 == 3 ? in[i] / 255.0 : std::pow(in[i] / 255.0, 2.2222223);
    if (std::abs(Load<float>(out, size_t(i)) - expected) > kFloatTolerance)
      return Mismatch(i / 4, i % 4, Load<float>(out, size_t(i)), expected);
  }
  return "";
}

std::string CheckBGRAToBGRA15u(const uint8_t* in, const uint8_t* out, int width) {
  for (int i = 0; i < width * 4; ++i) {
    const int expected = in[i] * 32768 / 255;
    if (std::abs(Load<uint16_t>(out, size_t(i)) - expected) > kIntegerTolerance)
      return Mismatch(i / 4, i % 4, Load<uint16_t>(out, size_t(i)), expected);
  }
  return "";
}

std::string CheckVUYA601To709(const uint8_t* in, const uint8_t* out, int width) {
  for (int x = 0; x < width; ++x) {
    const double v = in[x * 4] - 128, u = in[x * 4 + 1] - 128, y = in[x * 4 + 2] - 16;
    const int expected[4] = {TruncClamp(1.0253271 * v + 0.0750495 * u + 128, 255),
                             TruncClamp(0.114618 * v + 1.0186397 * u + 128, 255),
                             TruncClamp(y - 0.2079376 * v - 0.1155498 * u + 16, 255), in[x * 4 + 3]};
    for (int c = 0; c < 4; ++c)
      if (std::abs(out[x * 4 + c] - expected[c]) > kIntegerTolerance) return Mismatch(x, c, out[x * 4 + c], expected[c]);
  }
  return "";
}

void FillRGB10(uint8_t* row, int width, std::mt19937& rng) {
  for (int x = 0; x < width; ++x) {
    const uint32_t r = rng() % 1024, g = rng() % 1024, b = rng() % 1024;
    Store<uint32_t>(row, size_t(x), r << 22 | g << 12 | b << 2);
  }
}
std::string CheckRGB10ToBGRA(const uint8_t* in, const uint8_t* out, int width) {
  for (int x = 0; x < width; ++x) {
    const uint32_t w = Load<uint32_t>(in, size_t(x));
    const int c10[3] = {int(w >> 2 & 1023), int(w >> 12 & 1023), int(w >> 22 & 1023)};
    for (int c = 0; c < 4; ++c) {
      const int expected = c == 3 ? 255 : RoundClamp(c10[c] * 0.24926686, 255);
      if (std::abs(out[x * 4 + c] - expected) > kIntegerTolerance) return Mismatch(x, c, out[x * 4 + c], expected);
    }
  }
  return "";
}

// 15u rows with alpha anywhere from 0 to 32768 and colour at most full scale.
void FillBGRA15u(uint8_t* row, int width, std::mt19937& rng) {
  for (int i = 0; i < width * 4; ++i) {
    const unsigned r = rng();
    Store<uint16_t>(row, size_t(i), uint16_t(r % 5 == 0 ? (r % 2) * 32768 : r % 32769));
  }
}
// Towards RGB_444_10u the 15u straight-alpha pixel is un-premultiplied, then reduced to 10 bits.
std::string CheckBGRA15uToRGB10(const uint8_t* in, const uint8_t* out, int width) {
  for (int x = 0; x < width; ++x) {
    const int a = Load<uint16_t>(in, size_t(x) * 4 + 3);
    const uint32_t w = Load<uint32_t>(out, size_t(x));
    const int got[3] = {int(w >> 2 & 1023), int(w >> 12 & 1023), int(w >> 22 & 1023)};
    if ((w & 3) != 0) return Mismatch(x, 3, w & 3, 0);
    for (int c = 0; c < 3; ++c) {
      const int sample = Load<uint16_t>(in, size_t(x) * 4 + size_t(c));
      const int straight = a == 0 ? 0 : RoundClamp(double(sample) * 32768.0 / a, 32768);
      const int expected = (straight * 1023) >> 15;
      if (std::abs(got[c] - expected) > kIntegerTolerance) return Mismatch(x, c, got[c], expected);
    }
  }
  return "";
}

const std::vector<ValueCase>& ValueCases() {
  auto bytes = [](int bytesPerPixel) {
    return [bytesPerPixel](uint8_t* row, int width, std::mt19937& rng) {
      FillRandomBytes(row, size_t(width) * bytesPerPixel, rng);
    };
  };
  static const std::vector<ValueCase> cases = {
      {"BGRA 8u to UYVY (601 matrix, YUV premultiply, 4:2:2)", OX_PixelFormat_BGRA_4444_8u,
       OX_PixelFormat_UYVY_422_8u, FillBGRA8, CheckBGRAToUYVY},
      {"UYVY to BGRA 8u (fused up-sampling and matrix)", OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_BGRA_4444_8u,
       [](uint8_t* row, int width, std::mt19937& rng) { FillRandomBytes(row, size_t(width + 1) / 2 * 4, rng); },
       CheckUYVYToBGRA},
      {"V210 to BGRA 8u", OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRA_4444_8u, FillV210, CheckV210ToBGRA},
      {"VUYA 32f to BGRA 8u (32f matrix, depth)", OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_BGRA_4444_8u,
       FillVUYA32f, CheckVUYA32fToBGRA},
      {"BGRA 8u to 32f", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_32f, bytes(4), CheckBGRAToBGRA32f},
      {"BGRA to ARGB 8u", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_ARGB_4444_8u, bytes(4), CheckBGRAToARGB},
      {"BGRA 8u to linear 32f", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_32f_Linear, bytes(4),
       CheckBGRAToLinear},
      {"BGRA 8u to 15u", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_15u, bytes(4), CheckBGRAToBGRA15u},
      {"VUYA 8u 601 to 709", OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_VUYA_4444_8u_709, bytes(4),
       CheckVUYA601To709},
      {"RGB 10u to BGRA 8u", OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRA_4444_8u, FillRGB10, CheckRGB10ToBGRA},
      {"BGRA 15u to RGB 10u (through the 15u un-premultiply)", OX_PixelFormat_BGRA_4444_15u,
       OX_PixelFormat_RGB_444_10u, FillBGRA15u, CheckBGRA15uToRGB10},
  };
  return cases;
}

TEST(ConvertValues, WholeChainsAgreeWithComposedFormulas) {
  for (const ValueCase& c : ValueCases()) {
    test::ForEachLevel([&](const test::Level& level) {
      std::mt19937 rng(99);
      for (int width : {1, 2, 3, 6, 7, 13, 64, 67, 1921}) {
        const int32_t sourceBytes = TightRowBytes(c.fFrom, width), destinationBytes = TightRowBytes(c.fTo, width);
        std::vector<uint8_t> in(size_t(sourceBytes) + 16, 0), out(size_t(destinationBytes) + 16, 0xEE);
        c.fFill(in.data(), width, rng);
        ASSERT_EQ(OX_Convert(in.data(), sourceBytes, c.fFrom, out.data(), destinationBytes, c.fTo, width, 1, 3), 0)
            << c.fName;
        const std::string problem = c.fCheck(in.data(), out.data(), width);
        EXPECT_EQ(problem, "") << c.fName << " at " << level.fName << ", width " << width;
        for (size_t i = size_t(destinationBytes); i < out.size(); ++i)
          ASSERT_EQ(out[i], 0xEE) << c.fName << ": wrote past the row";
        if (!problem.empty()) return;
      }
    });
  }
}

}  // namespace
}  // namespace OX
