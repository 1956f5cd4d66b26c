// Channel order, subsampling and V210 steps against references written from their rules, at
// every processor level, over odd and even widths. Integer results exact (SSSE3's rounded-up
// chroma mean is the one named difference); float results within 1e-6.
#include <gtest/gtest.h>

#include "ConverterTestSupport.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

using test::ForEachLevel;
using test::RunMember;

std::vector<uint8_t> RandomBytes(size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  std::vector<uint8_t> v(n);
  for (auto& b : v) b = uint8_t(rng());
  return v;
}

TEST(ChannelOrder, ReverseAndSwap) {
  const std::vector<uint8_t> px = {1, 2, 3, 4, 5, 6, 7, 8};
  ForEachLevel([&](const test::Level&) {
    EXPECT_EQ(RunMember<uint8_t>(&ChooseOrder, kReverse8u, px, 2, 8), (std::vector<uint8_t>{4, 3, 2, 1, 8, 7, 6, 5}));
    EXPECT_EQ(RunMember<uint8_t>(&ChooseOrder, kSwap422_8u, px, 3, 8), (std::vector<uint8_t>{2, 1, 4, 3, 6, 5, 8, 7}));
    const std::vector<uint16_t> w = {1, 2, 3, 4};
    EXPECT_EQ(RunMember<uint16_t>(&ChooseOrder, kReverse15u, w, 1, 4), (std::vector<uint16_t>{4, 3, 2, 1}));
    const std::vector<float> f = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(RunMember<float>(&ChooseOrder, kReverse32f, f, 2, 8), (std::vector<float>{4, 3, 2, 1, 8, 7, 6, 5}));
    EXPECT_EQ(RunMember<float>(&ChooseOrder, kSwap422_32f, f, 4, 8), (std::vector<float>{2, 1, 4, 3, 6, 5, 8, 7}));
    // Long rows: the order step applied twice gives the row back.
    const auto row = RandomBytes(4 * 1001, 1);
    const auto once = RunMember<uint8_t>(&ChooseOrder, kReverse8u, row, 1001, row.size());
    EXPECT_EQ(RunMember<uint8_t>(&ChooseOrder, kReverse8u, once, 1001, row.size()), row);
    for (int i = 0; i < 1001; ++i) ASSERT_EQ(once[4 * i], row[4 * i + 3]);
    const auto sw = RunMember<uint8_t>(&ChooseOrder, kSwap422_8u, row, 2002, row.size());
    for (size_t i = 0; i < row.size(); ++i) ASSERT_EQ(sw[i], row[i ^ 1]);
  });
}

// 4:4:4 to 4:2:2 at 8u from its rule.
std::vector<uint8_t> Downsample8u(const std::vector<uint8_t>& s, int w) {
  std::vector<uint8_t> d(4 * size_t((w + 1) / 2));
  auto V = [&](int i) { return int(s[4 * i]); };
  auto U = [&](int i) { return int(s[4 * i + 1]); };
  auto Y = [&](int i) { return s[4 * i + 2]; };
  for (int k = 0; 2 * k + 1 < w; ++k) {
    const int e = 2 * k;
    const int u = k == 0 ? (3 * U(0) + U(1) + 2) >> 2 : (U(e - 1) + 2 * U(e) + U(e + 1) + 2) >> 2;
    const int v = k == 0 ? (3 * V(0) + V(0) + 2) >> 2 : (V(e - 1) + 2 * V(e) + V(e + 1) + 2) >> 2;
    d[4 * k] = uint8_t(u), d[4 * k + 1] = Y(e), d[4 * k + 2] = uint8_t(v), d[4 * k + 3] = Y(e + 1);
  }
  if (w & 1) {
    const int p = w - 1;
    d[2 * p] = uint8_t(U(p)), d[2 * p + 1] = Y(p), d[2 * p + 2] = uint8_t(V(p)), d[2 * p + 3] = Y(p);
  }
  return d;
}

TEST(Subsample, FourFourFourToFourTwoTwo8u) {
  const auto row = RandomBytes(4 * 200, 2);
  ForEachLevel([&](const test::Level&) {
    for (int w : {1, 2, 3, 4, 5, 17, 64, 199, 200}) {
      const auto out = RunMember<uint8_t>(&ChooseSubsample, kVuy8uToUyvy8u, row, w, 4 * size_t((w + 1) / 2));
      ASSERT_EQ(out, Downsample8u(row, w)) << "width " << w;
    }
  });
  // Width 1 writes one group with the pixel's Y twice.
  const std::vector<uint8_t> one = {10, 20, 30, 40};
  EXPECT_EQ(RunMember<uint8_t>(&ChooseSubsample, kVuy8uToUyvy8u, one, 1, 4), (std::vector<uint8_t>{20, 30, 10, 30}));
  // The first V is not filtered with its neighbour, the first U is.
  const std::vector<uint8_t> two = {0, 0, 50, 255, 200, 200, 60, 255};
  EXPECT_EQ(RunMember<uint8_t>(&ChooseSubsample, kVuy8uToUyvy8u, two, 2, 4), (std::vector<uint8_t>{50, 50, 0, 60}));
}

TEST(Subsample, FourFourFourToFourTwoTwo32f) {
  std::mt19937 rng(3);
  std::vector<float> row(4 * 101);
  for (float& f : row) f = std::uniform_real_distribution<float>(-0.5f, 1.0f)(rng);
  ForEachLevel([&](const test::Level&) {
    for (int w : {1, 2, 3, 10, 101}) {
      const auto out = RunMember<float>(&ChooseSubsample, kVuy32fToUyvy32f, row, w, 4 * size_t((w + 1) / 2));
      for (int k = 0; k < (w + 1) / 2; ++k) {
        const int e = 2 * k;
        for (int c : {0, 1}) {  // c 0: V, 1: U
          const double want = e + 1 >= w ? row[4 * e + c]
                              : k == 0   ? (3.0 * row[c] + row[4 + c]) / 4
                                         : (row[4 * (e - 1) + c] + 2.0 * row[4 * e + c] + row[4 * (e + 1) + c]) / 4;
          ASSERT_NEAR(out[4 * k + (c == 0 ? 2 : 0)], want, 1e-6) << "width " << w << " pair " << k;
        }
        ASSERT_EQ(out[4 * k + 1], row[4 * e + 2]);
        ASSERT_EQ(out[4 * k + 3], e + 1 < w ? row[4 * e + 6] : 0.0f);  // a lone last pixel: 0.0 second luma
      }
    }
  });
}

// 4:2:2 to 4:4:4 at 8u from its rule, with the mean of the level.
std::vector<uint8_t> Upsample8u(const std::vector<uint8_t>& s, int w, bool lumaFirst, bool roundUp) {
  std::vector<uint8_t> d(4 * size_t(w));
  const int u = lumaFirst ? 1 : 0, y0 = lumaFirst ? 0 : 1, v = lumaFirst ? 3 : 2, y1 = lumaFirst ? 2 : 3;
  for (int x = 0; x < w; ++x) {
    const int k = x / 2;
    const uint8_t* p = &s[4 * k];
    int cu = p[u], cv = p[v];
    if ((x & 1) && x + 1 < w) {
      cu = (cu + p[u + 4] + (roundUp ? 1 : 0)) >> 1;
      cv = (cv + p[v + 4] + (roundUp ? 1 : 0)) >> 1;
    }
    d[4 * x] = uint8_t(cv), d[4 * x + 1] = uint8_t(cu), d[4 * x + 2] = (x & 1) ? p[y1] : p[y0], d[4 * x + 3] = 255;
  }
  return d;
}

TEST(Subsample, FourTwoTwoToFourFourFour8u) {
  const auto row = RandomBytes(4 * 100, 4);
  ForEachLevel([&](const test::Level&) {
    for (bool lumaFirst : {false, true})
      for (int w : {1, 2, 3, 4, 7, 64, 199, 200}) {
        const auto out = RunMember<uint8_t>(&ChooseSubsample, lumaFirst ? kYuyv8uToVuy8u : kUyvy8uToVuy8u, row, w, 4 * size_t(w));
        ASSERT_EQ(out, Upsample8u(row, w, lumaFirst, gHasSSSE3)) << "width " << w;
      }
  });
}

TEST(Subsample, FourTwoTwoToRgb8uIsUpsampleThenMatrix) {
  const auto row = RandomBytes(4 * 600, 5);
  ForEachLevel([&](const test::Level&) {
    for (bool lumaFirst : {false, true})
      for (bool is709 : {false, true})
        for (int w : {1, 5, 257, 513, 1199}) {
          const int m = lumaFirst ? (is709 ? kYuyv8uToBgr8u709 : kYuyv8uToBgr8u601)
                                  : (is709 ? kUyvy8uToBgr8u709 : kUyvy8uToBgr8u601);
          const auto out = RunMember<uint8_t>(&ChooseSubsample, m, row, w, 4 * size_t(w));
          const auto vuya = Upsample8u(row, w, lumaFirst, gHasSSSE3);
          const auto want = RunMember<uint8_t>(&ChooseMatrix8u, is709 ? kVuy8uToBgr8u709 : kVuy8uToBgr8u601, vuya, w, 4 * size_t(w));
          ASSERT_EQ(out, want) << "width " << w;
        }
  });
}

TEST(Subsample, FourTwoTwoToFourFourFour32f) {
  std::mt19937 rng(6);
  std::vector<float> row(4 * 50);
  for (float& f : row) f = std::uniform_real_distribution<float>(-0.5f, 1.0f)(rng);
  ForEachLevel([&](const test::Level&) {
    for (bool filter : {false, true})
      for (int w : {1, 2, 3, 4, 5, 6, 9, 99, 100}) {
        const auto out = RunMember<float>(&ChooseSubsample, filter ? kUyvy32fToVuy32fFilter : kUyvy32fToVuy32fRepeat, row, w, 4 * size_t(w));
        const int pairs = (w + 1) / 2;
        auto c = [&](int k, int lane) { return double(row[4 * std::clamp(k, 0, pairs - 1) + lane]); };
        for (int x = 0; x < w; ++x) {
          const int k = x / 2;
          double u = c(k, 0), v = c(k, 2);
          if ((x & 1) && filter) {
            u = (9 * (c(k, 0) + c(k + 1, 0)) - c(k - 1, 0) - c(k + 2, 0)) / 16;
            v = (9 * (c(k, 2) + c(k + 1, 2)) - c(k - 1, 2) - c(k + 2, 2)) / 16;
          }
          if ((w & 1) && x == w - 1) u = v;  // the lone last pixel loses its U
          ASSERT_NEAR(out[4 * x], v, 1e-6) << "width " << w << " x " << x;
          ASSERT_NEAR(out[4 * x + 1], u, 1e-6) << "width " << w << " x " << x;
          ASSERT_EQ(out[4 * x + 2], row[4 * k + ((x & 1) ? 3 : 1)]);
          ASSERT_EQ(out[4 * x + 3], 1.0f);
        }
      }
  });
}

// V210 words from six pixels' samples by the published layout.
std::vector<uint32_t> PackGroup(const int y[6], const int u[3], const int v[3]) {
  return {uint32_t(u[0] | y[0] << 10 | v[0] << 20), uint32_t(y[1] | u[1] << 10 | y[2] << 20),
          uint32_t(v[1] | y[3] << 10 | u[2] << 20), uint32_t(y[4] | v[2] << 10 | y[5] << 20)};
}

TEST(V210, UnpackAndPackPartialGroups) {
  std::mt19937 rng(8);
  const int groups = 5;
  std::vector<int> Y(6 * groups), U(3 * groups), Vv(3 * groups);
  for (int& s : Y) s = int(rng() % 1024);
  for (int& s : U) s = int(rng() % 1024);
  for (int& s : Vv) s = int(rng() % 1024);
  std::vector<uint32_t> words;
  for (int g = 0; g < groups; ++g) {
    const auto w = PackGroup(&Y[6 * g], &U[3 * g], &Vv[3 * g]);
    words.insert(words.end(), w.begin(), w.end());
  }
  ForEachLevel([&](const test::Level&) {
    for (int w : {1, 2, 5, 6, 7, 12, 29, 30}) {
      const int pairs = (w + 1) / 2;
      const auto u8 = RunMember<uint8_t>(&ChooseV210, kV210ToUyvy8u, words, w, 4 * size_t(pairs));
      const auto f = RunMember<float>(&ChooseV210, kV210ToUyvy32f, words, w, 4 * size_t(pairs));
      for (int k = 0; k < pairs; ++k) {
        const int s[4] = {U[k], Y[2 * k], Vv[k], Y[2 * k + 1]};
        for (int i = 0; i < 4; ++i) {
          ASSERT_EQ(u8[4 * k + i], s[i] >> 2);
          const double want = (i & 1) ? (s[i] - 64) / 876.0 : (s[i] - 512) / 896.0;
          ASSERT_NEAR(f[4 * k + i], want, 1e-6);
        }
      }
      // Back into V210 from 8 bits: x 4, and zero past the row.
      const auto back = RunMember<uint32_t>(&ChooseV210, kUyvy8uToV210, u8, w, 4 * size_t((w + 5) / 6));
      for (int g = 0; g < (w + 5) / 6; ++g) {
        int y[6], u[3], v[3];
        for (int p = 0; p < 6; ++p) y[p] = 6 * g + p < w ? (Y[6 * g + p] >> 2) * 4 : 0;
        for (int j = 0; j < 3; ++j) {
          const bool in = 6 * g + 2 * j < w;
          u[j] = in ? (U[3 * g + j] >> 2) * 4 : 0;
          v[j] = in ? (Vv[3 * g + j] >> 2) * 4 : 0;
        }
        const auto want = PackGroup(y, u, v);
        for (int i = 0; i < 4; ++i) ASSERT_EQ(back[4 * g + i], want[i]) << "width " << w << " group " << g;
      }
    }
  });
}

TEST(V210, FloatIntoV210) {
  // Chroma c x 896 + 512.5, luma y x 876 + 64.5, truncated; saturating at the ten-bit range.
  const std::vector<float> in = {0.0f, 0.0f, 0.0f, 1.0f, -0.5f, 0.5f, 0.5f, -1.0f, 5.0f, 2.0f, std::nanf(""), 0.25f};
  const auto w = RunMember<uint32_t>(&ChooseV210, kUyvy32fToV210, in, 6, 4);
  const int y[6] = {64, 940, 502, 0, 1023, 283};
  const int u[3] = {512, 64, 1023};
  const int v[3] = {512, 960, 0};
  EXPECT_EQ(w, PackGroup(y, u, v));
}

TEST(V210, ToVuyAndRgb) {
  std::mt19937 rng(10);
  std::vector<uint32_t> words(4 * 100);
  for (auto& x : words) x = rng() & 0x3FFFFFFF;
  auto sample = [&](int word, int slot) { return int(words[word] >> (10 * slot) & 0x3FF); };
  // Per pixel x: ten-bit y, u, v of its own pair.
  auto pixel = [&](int x, int& y, int& u, int& v) {
    static const int kY[6][2] = {{0, 1}, {1, 0}, {1, 2}, {2, 1}, {3, 0}, {3, 2}};
    static const int kU[3][2] = {{0, 0}, {1, 1}, {2, 2}};
    static const int kV[3][2] = {{0, 2}, {2, 0}, {3, 1}};
    const int g = x / 6, p = x % 6, j = p / 2;
    y = sample(4 * g + kY[p][0], kY[p][1]);
    u = sample(4 * g + kU[j][0], kU[j][1]);
    v = sample(4 * g + kV[j][0], kV[j][1]);
  };
  ForEachLevel([&](const test::Level&) {
    for (int w : {1, 2, 6, 7, 13, 239, 240, 241, 247, 599, 600}) {
      const auto vuy = RunMember<uint8_t>(&ChooseV210, kV210ToVuy8u, words, w, 4 * size_t(w));
      const auto rgb = RunMember<uint8_t>(&ChooseV210, kV210ToBgr8u601, words, w, 4 * size_t(w));
      for (int x = 0; x < w; ++x) {
        int y, u, v;
        pixel(x, y, u, v);
        int u8 = u >> 2, v8 = v >> 2;
        if ((x & 1) && x + 1 < w) {
          int yn, un, vn;
          pixel(x + 1, yn, un, vn);
          u8 = (u8 + (un >> 2)) >> 1;
          v8 = (v8 + (vn >> 2)) >> 1;
          u = (u + un) >> 1;
          v = (v + vn) >> 1;
        }
        ASSERT_EQ(vuy[4 * x], v8) << x;
        ASSERT_EQ(vuy[4 * x + 1], u8) << x;
        ASSERT_EQ(vuy[4 * x + 2], y >> 2) << x;
        ASSERT_EQ(vuy[4 * x + 3], 255);
        const double yy = y - 64.0, uu = u - 512.0, vv = v - 512.0;
        ASSERT_TRUE(test::MatchesRounded(rgb[4 * x], 0.2910957 * yy + 0.5043076 * uu, 0, 255));
        ASSERT_TRUE(test::MatchesRounded(rgb[4 * x + 1], 0.2910957 * yy - 0.0979404 * uu - 0.2032422 * vv, 0, 255));
        ASSERT_TRUE(test::MatchesRounded(rgb[4 * x + 2], 0.2910957 * yy + 0.3990068 * vv, 0, 255));
        ASSERT_EQ(rgb[4 * x + 3], 255);
      }
    }
  });
}

}  // namespace
}  // namespace OX
