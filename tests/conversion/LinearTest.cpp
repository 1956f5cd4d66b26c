// Linear-light steps against pow in double precision, at every processor level. Tolerance for
// the float steps 4e-7 relative (single-precision pow and its argument); the 8u results exact, or
// one count where the sample lies within 1e-6 of a boundary.
#include <gtest/gtest.h>

#include "ConverterTestSupport.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

using test::ForEachLevel;
using test::RunMember;

TEST(Linear, PowBothWaysKeepsSignAndAlpha) {
  std::mt19937 rng(12);
  std::vector<float> in(4 * 3000);
  for (float& f : in) f = test::RandomSample32f(rng);
  in[0] = -1.0f;
  ForEachLevel([&](const test::Level&) {
    for (bool toGamma : {true, false}) {
      const double e = toGamma ? double(0.45f) : double(2.2222223f);  // the exponents as 32-bit floats
      const auto out = RunMember<float>(&ChooseLinear, toGamma ? kLinearToGamma32f : kGammaToLinear32f, in, 3000, in.size());
      for (size_t i = 0; i < in.size(); ++i) {
        if (i % 4 == 3) {
          ASSERT_TRUE(out[i] == in[i] || (std::isnan(out[i]) && std::isnan(in[i])));
          continue;
        }
        if (!std::isfinite(in[i])) continue;
        const double want = std::copysign(std::pow(std::fabs(double(in[i])), e), double(in[i]));
        if (std::isinf(want) || std::fabs(want) > 3e38) continue;
        ASSERT_NEAR(out[i], want, 4e-7 * std::fabs(want) + 1e-37) << in[i];
      }
      EXPECT_EQ(out[0], -1.0f);  // the sign survives
    }
  });
}

TEST(Linear, EightBitTableAndBoundarySearch) {
  std::vector<uint8_t> codes(256 * 4);
  for (int i = 0; i < 1024; ++i) codes[i] = uint8_t(i / 4);
  std::mt19937 rng(13);
  std::vector<float> samples(4 * 4000);
  for (float& f : samples) f = test::RandomSample32f(rng);
  ForEachLevel([&](const test::Level&) {
    const auto lin = RunMember<float>(&ChooseLinear, kBgra8uToLinear32f, codes, 256, codes.size());
    for (int i = 0; i < 256; ++i) {
      for (int c = 0; c < 3; ++c) ASSERT_NEAR(lin[4 * i + c], std::pow(i / 255.0, double(2.2222223f)), 4e-7) << i;
      ASSERT_NEAR(lin[4 * i + 3], i / 255.0, 1e-7);
    }
    // Back: every code survives the round trip; random and extreme samples by the count rule.
    const auto back = RunMember<uint8_t>(&ChooseLinear, kLinear32fToBgra8u, lin, 256, codes.size());
    EXPECT_EQ(back, codes);
    const auto out = RunMember<uint8_t>(&ChooseLinear, kLinear32fToBgra8u, samples, 4000, samples.size());
    for (size_t i = 0; i < samples.size(); ++i) {
      const double s = samples[i];
      if (std::isnan(s)) continue;
      if (i % 4 == 3) {
        ASSERT_TRUE(test::MatchesRounded(out[i], 255 * s, 0, 255));
        continue;
      }
      int want = 0;
      bool near = false;
      for (int b = 0; b < 255; ++b) {
        const double boundary = std::pow((b + 0.5) / 255, double(2.2222223f));
        want += boundary <= s;
        near |= std::fabs(boundary - s) < 1e-6;
      }
      ASSERT_TRUE(out[i] == want || (near && std::abs(out[i] - want) <= 1)) << s;
    }
  });
}

}  // namespace
}  // namespace OX
