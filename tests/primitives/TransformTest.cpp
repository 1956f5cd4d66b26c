// The fixed-point transforms against a double-precision orthonormal reference computed here, the
// DC rule, the round trip, and bit equality of every level with the base form.
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "primitives/Primitives.h"
#include "support/PrimitiveLevels.h"

namespace OX {
namespace {

using Block = std::vector<int16_t>;
using RealBlock = std::vector<double>;

double C8(int u) { return u == 0 ? std::sqrt(0.5) : 1.0; }
double Cos16(int n, int u) { return std::cos((2 * n + 1) * u * M_PI / 16.0); }
double Cos8(int n, int u) { return std::cos((2 * n + 1) * u * M_PI / 8.0); }

// Orthonormal 8 x 8: F(v,u) = 1/4 C(u) C(v) sum f(y,x) cos cos, raster index v * 8 + u.
RealBlock Forward8x8Reference(const RealBlock& f) {
  RealBlock out(64);
  for (int v = 0; v < 8; ++v)
    for (int u = 0; u < 8; ++u) {
      double s = 0;
      for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) s += f[size_t(y * 8 + x)] * Cos16(y, v) * Cos16(x, u);
      out[size_t(v * 8 + u)] = 0.25 * C8(u) * C8(v) * s;
    }
  return out;
}

RealBlock Inverse8x8Reference(const RealBlock& F) {
  RealBlock out(64);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) {
      double s = 0;
      for (int v = 0; v < 8; ++v)
        for (int u = 0; u < 8; ++u) s += C8(u) * C8(v) * F[size_t(v * 8 + u)] * Cos16(y, v) * Cos16(x, u);
      out[size_t(y * 8 + x)] = 0.25 * s;
    }
  return out;
}

// The 2-4-8 basis: vertically, rows 2z and 2z + 1 as sum and difference over sqrt(2), each through
// the orthonormal 4-point DCT (sums to rows 0-3, differences to rows 4-7); horizontally the
// orthonormal 8-point DCT. Basis[k][n]: output k, sample n, both raster.
std::vector<RealBlock> Basis248() {
  std::vector<RealBlock> basis(64, RealBlock(64, 0.0));
  for (int r = 0; r < 8; ++r)
    for (int u = 0; u < 8; ++u)
      for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) {
          const int v = r & 3, z = y / 2;
          const double sign = (r >= 4 && (y & 1)) ? -1.0 : 1.0;
          const double c4 = v == 0 ? 0.5 : std::sqrt(0.5);
          const double vertical = c4 * Cos8(z, v) * sign * std::sqrt(0.5);
          const double horizontal = 0.5 * C8(u) * Cos16(x, u);
          basis[size_t(r * 8 + u)][size_t(y * 8 + x)] = vertical * horizontal;
        }
  return basis;
}

RealBlock Forward248Reference(const RealBlock& f) {
  static const std::vector<RealBlock> basis = Basis248();
  RealBlock out(64, 0.0);
  for (size_t k = 0; k < 64; ++k)
    for (size_t n = 0; n < 64; ++n) out[k] += basis[k][n] * f[n];
  return out;
}

RealBlock Inverse248Reference(const RealBlock& F) {
  static const std::vector<RealBlock> basis = Basis248();
  RealBlock out(64, 0.0);
  for (size_t k = 0; k < 64; ++k)
    for (size_t n = 0; n < 64; ++n) out[n] += basis[k][n] * F[k];
  return out;
}

RealBlock ToReal(const Block& b) { return RealBlock(b.begin(), b.end()); }

struct TransformCase {
  const char* fName;
  int32_t (*fOp)(int16_t*);
  RealBlock (*fReference)(const RealBlock&);
  bool fInverse;
};
const TransformCase kTransforms[] = {
    {"VecDCT8x8Forward", &VecDCT8x8Forward, &Forward8x8Reference, false},
    {"VecDCT8x8Inverse", &VecDCT8x8Inverse, &Inverse8x8Reference, true},
    {"VecDCT248Forward", &VecDCT248Forward, &Forward248Reference, false},
    {"VecDCT248Inverse", &VecDCT248Inverse, &Inverse248Reference, true},
};

// Random samples in [-range, range - 1].
Block RandomSamples(std::mt19937& rng, int range) {
  Block b(64);
  for (auto& v : b) v = int16_t(int(rng() % uint32_t(2 * range)) - range);
  return b;
}

// Coefficient blocks as a decoder meets them: the rounded spectrum of random samples, clipped
// to +-2048.
Block RealisticCoefficients(std::mt19937& rng, int range, RealBlock (*forward)(const RealBlock&)) {
  const RealBlock F = forward(ToReal(RandomSamples(rng, range)));
  Block b(64);
  for (size_t i = 0; i < 64; ++i) b[i] = int16_t(std::clamp(std::lround(F[i]), -2048l, 2047l));
  return b;
}

TEST(PrimitiveTransforms, AgreeWithDoubleReferenceWithinOneUnit) {
  std::mt19937 rng(7);
  for (const TransformCase& t : kTransforms) {
    SCOPED_TRACE(t.fName);
    RealBlock (*forwardOfKind)(const RealBlock&) =
        t.fReference == &Inverse248Reference ? &Forward248Reference : &Forward8x8Reference;
    double worst = 0;
    for (int range : {1, 5, 64, 256, 300, 1024}) {
      for (int trial = 0; trial < 300; ++trial) {
        Block in = t.fInverse ? RealisticCoefficients(rng, range, forwardOfKind) : RandomSamples(rng, range);
        const RealBlock expected = t.fReference(ToReal(in));
        Block out = in;
        ASSERT_EQ(t.fOp(out.data()), 0);
        for (size_t i = 0; i < 64; ++i) {
          const double e = std::clamp(expected[i], -32768.0, 32767.0);
          worst = std::max(worst, std::fabs(out[i] - e));
          ASSERT_LE(std::fabs(out[i] - e), 1.0)
              << "range " << range << " trial " << trial << " position " << i << ": " << out[i] << " vs " << e;
        }
      }
    }
    RecordProperty(std::string(t.fName) + "_worst", std::to_string(worst));
  }
}

TEST(PrimitiveTransforms, InverseOfDCOnlyIsDOverEight) {
  for (int32_t (*inverse)(int16_t*) : {&VecDCT8x8Inverse, &VecDCT248Inverse}) {
    for (int d = -2048; d <= 2047; d += 1) {
      Block b(64, 0);
      b[0] = int16_t(d);
      ASSERT_EQ(inverse(b.data()), 0);
      // Exact when 8 divides d; otherwise the nearest integer to d / 8.
      const double expected = d / 8.0;
      for (int16_t v : b) {
        if (d % 8 == 0)
          ASSERT_EQ(v, d / 8) << "d " << d;
        else
          ASSERT_LE(std::fabs(v - expected), 0.5) << "d " << d;
      }
    }
  }
}

TEST(PrimitiveTransforms, InverseAfterForwardReturnsTheBlock) {
  std::mt19937 rng(11);
  const std::pair<int32_t (*)(int16_t*), int32_t (*)(int16_t*)> pairs[] = {
      {&VecDCT8x8Forward, &VecDCT8x8Inverse}, {&VecDCT248Forward, &VecDCT248Inverse}};
  for (auto [forward, inverse] : pairs) {
    for (int range : {8, 128, 256}) {
      for (int trial = 0; trial < 500; ++trial) {
        const Block in = RandomSamples(rng, range);
        Block b = in;
        forward(b.data());
        inverse(b.data());
        for (size_t i = 0; i < 64; ++i) ASSERT_LE(std::abs(b[i] - in[i]), 1) << "range " << range << " at " << i;
      }
    }
  }
}

TEST(PrimitiveTransforms, EveryLevelGivesTheBaseFormsBits) {
  std::mt19937 rng(3);
  for (const TransformCase& t : kTransforms) {
    for (int trial = 0; trial < 400; ++trial) {
      std::vector<uint8_t> bytes(128);
      Block b(64);
      for (auto& v : b) {
        const uint32_t r = rng();
        // A share of 16-bit extremes, the rest spread over the range and near zero.
        switch (r & 7) {
          case 0: v = 32767; break;
          case 1: v = -32768; break;
          case 2: v = int16_t(int(r >> 8) % 512 - 256); break;
          default: v = int16_t(r >> 16); break;
        }
      }
      if (trial == 0) std::fill(b.begin(), b.end(), int16_t(32767));
      if (trial == 1) std::fill(b.begin(), b.end(), int16_t(-32768));
      std::memcpy(bytes.data(), b.data(), 128);
      test::ExpectSameBytesAtEveryLevel(
          bytes, [&](uint8_t* p) { t.fOp(reinterpret_cast<int16_t*>(p)); },
          std::string(t.fName) + " trial " + std::to_string(trial));
    }
  }
}

TEST(PrimitiveTransforms, NullBlockIsRefused) {
  for (const TransformCase& t : kTransforms) EXPECT_EQ(t.fOp(nullptr), -8) << t.fName;
}

}  // namespace
}  // namespace OX
