// Every ordered pair of raw formats through OX_Convert at every processor level, against the
// portable level's result. The levels may differ only where single converters are allowed to (the
// rounded-up 4:2:2 chroma mean, the approximate reciprocal of the 32f un-premultiply, the 8u to 15u
// scaling), and chains carry those differences on by a few levels at most; anything more is a
// fault in a vector form or in how the chain hands rows between them (tails, odd widths, scratch).
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "conversion/RouteTable.h"
#include "frame/PixelFormat.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

// Allowed gap between levels on samples scaled to full scale 1: about five 8u levels, plus a
// relative part for un-premultiplied 32f values far above 1. Into linear light the 2.2 power
// stretches a gap by up to 2.2 x^1.2 on values above 1, so the relative part is wider there.
constexpr double kAbsoluteTolerance = 0.02;
constexpr double kRelativeTolerance = 2e-3;
constexpr double kLinearRelativeTolerance = 2e-2;

bool Is10BitWordFormat(OX_PixelFormat f) { return DepthOf(f) == kDepth10u; }

// A row of valid samples for `format`, with extremes mixed in.
std::vector<uint8_t> SourceRow(OX_PixelFormat format, int width, std::mt19937& rng) {
  const size_t bytes = size_t(TightRowBytes(format, width));
  std::vector<uint8_t> row(bytes);
  if (Is10BitWordFormat(format)) {
    const bool v210 = SubsamplingOf(format) != 0;
    for (size_t i = 0; i + 4 <= bytes; i += 4) {
      uint32_t w = 0;
      for (int s = 0; s < 3; ++s) {
        const unsigned r = rng();
        const uint32_t sample = r % 7 == 0 ? 0 : r % 7 == 1 ? 1023 : (r >> 4) % 1024;
        w |= sample << (v210 ? 10 * s : 2 + 10 * s);
      }
      std::memcpy(&row[i], &w, 4);
    }
  } else if (DepthOf(format) == kDepth15u) {
    for (size_t i = 0; i + 2 <= bytes; i += 2) {
      const unsigned r = rng();
      const uint16_t v = uint16_t(r % 7 == 0 ? 0 : r % 7 == 1 ? 32768 : (r >> 4) % 32769);
      std::memcpy(&row[i], &v, 2);
    }
  } else if (DepthOf(format) == kDepth32f) {
    for (size_t i = 0; i + 4 <= bytes; i += 4) {
      const unsigned r = rng();
      const float v = r % 7 == 0 ? 0.0f : r % 7 == 1 ? 1.0f : float(int((r >> 4) % 1201) - 100) / 1000.0f;
      std::memcpy(&row[i], &v, 4);
    }
  } else {
    for (auto& b : row) {
      const unsigned r = rng();
      b = r % 7 == 0 ? 0 : r % 7 == 1 ? 255 : uint8_t(r >> 8);
    }
  }
  return row;
}

// The samples of a row scaled to full scale 1.
std::vector<double> Samples(OX_PixelFormat format, const uint8_t* row, int width) {
  const size_t bytes = size_t(TightRowBytes(format, width));
  std::vector<double> out;
  if (Is10BitWordFormat(format)) {
    const bool v210 = SubsamplingOf(format) != 0;
    for (size_t i = 0; i + 4 <= bytes; i += 4) {
      uint32_t w;
      std::memcpy(&w, row + i, 4);
      for (int s = 0; s < 3; ++s) out.push_back(double((w >> (v210 ? 10 * s : 2 + 10 * s)) & 1023) / 1023.0);
    }
  } else if (DepthOf(format) == kDepth15u) {
    for (size_t i = 0; i + 2 <= bytes; i += 2) {
      uint16_t v;
      std::memcpy(&v, row + i, 2);
      out.push_back(v / 32768.0);
    }
  } else if (DepthOf(format) == kDepth32f) {
    for (size_t i = 0; i + 4 <= bytes; i += 4) {
      float v;
      std::memcpy(&v, row + i, 4);
      out.push_back(v);
    }
  } else {
    for (size_t i = 0; i < bytes; ++i) out.push_back(row[i] / 255.0);
  }
  return out;
}

TEST(ConvertLevels, EveryPairAgreesWithThePortableLevel) {
  const std::vector<int> widths = {1, 2, 7, 67};
  const int height = 3;
  for (OX_PixelFormat from : kRawFormats) {
    for (OX_PixelFormat to : kRawFormats) {
      if (from == to) continue;
      for (int width : widths) {
        std::mt19937 rng(unsigned(from * 131 + to * 7 + width));
        const int32_t sRow = TightRowBytes(from, width), dRow = TightRowBytes(to, width);
        std::vector<uint8_t> source;
        for (int y = 0; y < height; ++y) {
          const std::vector<uint8_t> row = SourceRow(from, width, rng);
          source.insert(source.end(), row.begin(), row.end());
        }
        const double relative = (to & kLinearBit) ? kLinearRelativeTolerance : kRelativeTolerance;
        std::vector<std::vector<double>> portable;
        test::ForEachLevel([&](const test::Level& level) {
          std::vector<uint8_t> out(size_t(dRow) * height + 32, 0xCD);
          ASSERT_EQ(OX_Convert(source.data(), sRow, from, out.data(), dRow, to, width, height, 3), 0)
              << RouteFormatName(from) << " -> " << RouteFormatName(to) << " at " << level.fName;
          for (size_t i = size_t(dRow) * height; i < out.size(); ++i)
            ASSERT_EQ(out[i], 0xCD) << RouteFormatName(from) << " -> " << RouteFormatName(to) << " at " << level.fName
                                    << ": wrote past the picture";
          for (int y = 0; y < height; ++y) {
            const std::vector<double> samples = Samples(to, &out[size_t(y) * dRow], width);
            if (portable.size() < size_t(height)) {
              portable.push_back(samples);
              continue;
            }
            const std::vector<double>& expected = portable[size_t(y)];
            for (size_t i = 0; i < samples.size(); ++i) {
              const double gap = std::abs(samples[i] - expected[i]);
              const bool nan = std::isnan(samples[i]) != std::isnan(expected[i]);
              ASSERT_FALSE(nan || gap > kAbsoluteTolerance + relative * std::abs(expected[i]))
                  << RouteFormatName(from) << " -> " << RouteFormatName(to) << " at " << level.fName << ", width "
                  << width << ", row " << y << ", sample " << i << ": " << samples[i] << " against portable "
                  << expected[i];
            }
          }
        });
      }
    }
  }
}

}  // namespace
}  // namespace OX
