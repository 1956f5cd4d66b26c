// Every member of every converter family at every processor level against its portable form, on
// widths 0 to 67 and 1921, with input and output at every offset from alignment, guard bytes
// around the output and an input that must not change. Integer results match bit for bit; float
// results too, since every level computes the same operations in the same order. The named
// exceptions are the 8u to 15u step (the vector formula differs by design) and the rounded-up
// chroma mean of the SSSE3 4:2:2 up-sampling.
#include <gtest/gtest.h>

#include <string>

#include "ConverterTestSupport.h"
#include "support/LevelHarness.h"

namespace OX {
namespace {

enum class Kind { kBytes, k15u, k32f, kWords };

size_t Pixels(int w) { return size_t(w); }
size_t Pairs(int w) { return size_t((w + 1) / 2); }
size_t Groups(int w) { return size_t((w + 5) / 6); }

struct Side {
  Kind fKind;
  size_t fBytesPerUnit;
  size_t (*fUnits)(int);
};
constexpr Side k444_8u = {Kind::kBytes, 4, Pixels}, k444_15u = {Kind::k15u, 8, Pixels},
               k444_32f = {Kind::k32f, 16, Pixels}, k422_8u = {Kind::kBytes, 4, Pairs},
               k422_32f = {Kind::k32f, 16, Pairs}, kV210Side = {Kind::kWords, 16, Groups},
               k10u = {Kind::kWords, 4, Pixels};

enum class Compare { kExact, kOneCount, kChromaMeanUp };

struct MemberCase {
  const char* fName;
  test::Choose fChoose;
  int fMember;
  Side fIn, fOut;
  Compare fCompare = Compare::kExact;
};

const MemberCase kCases[] = {
    {"Vuy8uTo32f", &ChooseRange8u32f, kVuy8uTo32f, k444_8u, k444_32f},
    {"Vuy32fTo8u", &ChooseRange8u32f, kVuy32fTo8u, k444_32f, k444_8u},
    {"Uyvy8uTo32f", &ChooseRange8u32f, kUyvy8uTo32f, k422_8u, k422_32f},
    {"Uyvy32fTo8u", &ChooseRange8u32f, kUyvy32fTo8u, k422_32f, k422_8u},
    {"Yuyv8uTo32f", &ChooseRange8u32f, kYuyv8uTo32f, k422_8u, k422_32f},
    {"Yuyv32fTo8u", &ChooseRange8u32f, kYuyv32fTo8u, k422_32f, k422_8u},
    {"Rgb8uTo32f", &ChooseRange8u32f, kRgb8uTo32f, k444_8u, k444_32f},
    {"Rgb32fTo8u", &ChooseRange8u32f, kRgb32fTo8u, k444_32f, k444_8u},
    {"8uTo15u", &ChooseDepth15u, k8uTo15u, k444_8u, k444_15u, Compare::kOneCount},
    {"15uTo8u", &ChooseDepth15u, k15uTo8u, k444_15u, k444_8u},
    {"15uTo32f", &ChooseDepth15u, k15uTo32f, k444_15u, k444_32f},
    {"32fTo15u", &ChooseDepth15u, k32fTo15u, k444_32f, k444_15u},
    {"Bgrp8uTo10u", &ChooseRgb10u, kBgrp8uTo10u, k444_8u, k10u},
    {"Bgr15uTo10u", &ChooseRgb10u, kBgr15uTo10u, k444_15u, k10u},
    {"Bgr32fTo10u", &ChooseRgb10u, kBgr32fTo10u, k444_32f, k10u},
    {"10uToBgr8u", &ChooseRgb10u, k10uToBgr8u, k10u, k444_8u},
    {"10uToBgr15u", &ChooseRgb10u, k10uToBgr15u, k10u, k444_15u},
    {"10uToBgr32f", &ChooseRgb10u, k10uToBgr32f, k10u, k444_32f},
    {"Bgr8uToVuy8u601", &ChooseMatrix8u, kBgr8uToVuy8u601, k444_8u, k444_8u},
    {"Bgr8uToVuy8u709", &ChooseMatrix8u, kBgr8uToVuy8u709, k444_8u, k444_8u},
    {"Vuy8uToBgr8u601", &ChooseMatrix8u, kVuy8uToBgr8u601, k444_8u, k444_8u},
    {"Vuy8uToBgr8u709", &ChooseMatrix8u, kVuy8uToBgr8u709, k444_8u, k444_8u},
    {"Vuyx8uToBgr8u601", &ChooseMatrix8u, kVuyx8uToBgr8u601, k444_8u, k444_8u},
    {"Vuyx8uToBgr8u709", &ChooseMatrix8u, kVuyx8uToBgr8u709, k444_8u, k444_8u},
    {"Vuy8uToBgr32f601", &ChooseMatrix8u, kVuy8uToBgr32f601, k444_8u, k444_32f},
    {"Vuy8uToBgr32f709", &ChooseMatrix8u, kVuy8uToBgr32f709, k444_8u, k444_32f},
    {"Bgr32fToVuy8u601", &ChooseMatrix8u, kBgr32fToVuy8u601, k444_32f, k444_8u},
    {"Bgr32fToVuy8u709", &ChooseMatrix8u, kBgr32fToVuy8u709, k444_32f, k444_8u},
    {"Yuv601ToRgb32f", &ChooseMatrix32f, kYuv601ToRgb32f, k444_32f, k444_32f},
    {"Yuv709ToRgb32f", &ChooseMatrix32f, kYuv709ToRgb32f, k444_32f, k444_32f},
    {"RgbToYuv601_32f", &ChooseMatrix32f, kRgbToYuv601_32f, k444_32f, k444_32f},
    {"RgbToYuv709_32f", &ChooseMatrix32f, kRgbToYuv709_32f, k444_32f, k444_32f},
    {"Yuv601To709_32f", &ChooseMatrix32f, kYuv601To709_32f, k444_32f, k444_32f},
    {"Yuv709To601_32f", &ChooseMatrix32f, kYuv709To601_32f, k444_32f, k444_32f},
    {"Vuy601To709_8u", &ChooseYuv709_8u, kVuy601To709_8u, k444_8u, k444_8u},
    {"Vuy709To601_8u", &ChooseYuv709_8u, kVuy709To601_8u, k444_8u, k444_8u},
    {"Uyvy601To709_8u", &ChooseYuv709_8u, kUyvy601To709_8u, k422_8u, k422_8u},
    {"Uyvy709To601_8u", &ChooseYuv709_8u, kUyvy709To601_8u, k422_8u, k422_8u},
    {"Yuyv601To709_8u", &ChooseYuv709_8u, kYuyv601To709_8u, k422_8u, k422_8u},
    {"Yuyv709To601_8u", &ChooseYuv709_8u, kYuyv709To601_8u, k422_8u, k422_8u},
    {"Premul8uRgbLast", &ChooseAlpha, kPremul8uRgbLast, k444_8u, k444_8u},
    {"Premul8uRgbFirst", &ChooseAlpha, kPremul8uRgbFirst, k444_8u, k444_8u},
    {"Premul8uYuv", &ChooseAlpha, kPremul8uYuv, k444_8u, k444_8u},
    {"Unpremul8uRgbLast", &ChooseAlpha, kUnpremul8uRgbLast, k444_8u, k444_8u},
    {"Unpremul8uRgbFirst", &ChooseAlpha, kUnpremul8uRgbFirst, k444_8u, k444_8u},
    {"Unpremul8uYuv", &ChooseAlpha, kUnpremul8uYuv, k444_8u, k444_8u},
    {"Unpremul15uLast", &ChooseAlpha, kUnpremul15uLast, k444_15u, k444_15u},
    {"Unpremul15uFirst", &ChooseAlpha, kUnpremul15uFirst, k444_15u, k444_15u},
    {"Premul32fLast", &ChooseAlpha, kPremul32fLast, k444_32f, k444_32f},
    {"Premul32fFirst", &ChooseAlpha, kPremul32fFirst, k444_32f, k444_32f},
    {"Opaque8uLast", &ChooseAlpha, kOpaque8uLast, k444_8u, k444_8u},
    {"Opaque8uFirst", &ChooseAlpha, kOpaque8uFirst, k444_8u, k444_8u},
    {"Opaque15uLast", &ChooseAlpha, kOpaque15uLast, k444_15u, k444_15u},
    {"Opaque15uFirst", &ChooseAlpha, kOpaque15uFirst, k444_15u, k444_15u},
    {"Opaque32fLast", &ChooseAlpha, kOpaque32fLast, k444_32f, k444_32f},
    {"Opaque32fFirst", &ChooseAlpha, kOpaque32fFirst, k444_32f, k444_32f},
    {"Vuya8uToVuyp32f", &ChooseAlpha, kVuya8uToVuyp32f, k444_8u, k444_32f},
    {"Bgra8uToBgrp32f", &ChooseAlpha, kBgra8uToBgrp32f, k444_8u, k444_32f},
    {"Premul15uLast", &ChoosePremul15u, kPremul15uLast, k444_15u, k444_15u},
    {"Premul15uFirst", &ChoosePremul15u, kPremul15uFirst, k444_15u, k444_15u},
    {"Unpremul32fRcp", &ChooseUnpremul32f, kUnpremul32fRcp, k444_32f, k444_32f},
    {"Unpremul32fDiv", &ChooseUnpremul32f, kUnpremul32fDiv, k444_32f, k444_32f},
    {"Reverse8u", &ChooseOrder, kReverse8u, k444_8u, k444_8u},
    {"Reverse15u", &ChooseOrder, kReverse15u, k444_15u, k444_15u},
    {"Reverse32f", &ChooseOrder, kReverse32f, k444_32f, k444_32f},
    {"Swap422_8u", &ChooseOrder, kSwap422_8u, k422_8u, k422_8u},
    {"Swap422_32f", &ChooseOrder, kSwap422_32f, k422_32f, k422_32f},
    {"Vuy8uToUyvy8u", &ChooseSubsample, kVuy8uToUyvy8u, k444_8u, k422_8u},
    {"Vuy32fToUyvy32f", &ChooseSubsample, kVuy32fToUyvy32f, k444_32f, k422_32f},
    {"Uyvy8uToVuy8u", &ChooseSubsample, kUyvy8uToVuy8u, k422_8u, k444_8u, Compare::kChromaMeanUp},
    {"Yuyv8uToVuy8u", &ChooseSubsample, kYuyv8uToVuy8u, k422_8u, k444_8u, Compare::kChromaMeanUp},
    {"Uyvy32fToVuy32fRepeat", &ChooseSubsample, kUyvy32fToVuy32fRepeat, k422_32f, k444_32f},
    {"Uyvy32fToVuy32fFilter", &ChooseSubsample, kUyvy32fToVuy32fFilter, k422_32f, k444_32f},
    {"Uyvy8uToBgr8u601", &ChooseSubsample, kUyvy8uToBgr8u601, k422_8u, k444_8u, Compare::kChromaMeanUp},
    {"Uyvy8uToBgr8u709", &ChooseSubsample, kUyvy8uToBgr8u709, k422_8u, k444_8u, Compare::kChromaMeanUp},
    {"Yuyv8uToBgr8u601", &ChooseSubsample, kYuyv8uToBgr8u601, k422_8u, k444_8u, Compare::kChromaMeanUp},
    {"Yuyv8uToBgr8u709", &ChooseSubsample, kYuyv8uToBgr8u709, k422_8u, k444_8u, Compare::kChromaMeanUp},
    {"Uyvy8uToV210", &ChooseV210, kUyvy8uToV210, k422_8u, kV210Side},
    {"Uyvy32fToV210", &ChooseV210, kUyvy32fToV210, k422_32f, kV210Side},
    {"V210ToUyvy8u", &ChooseV210, kV210ToUyvy8u, kV210Side, k422_8u},
    {"V210ToUyvy32f", &ChooseV210, kV210ToUyvy32f, kV210Side, k422_32f},
    {"V210ToVuy8u", &ChooseV210, kV210ToVuy8u, kV210Side, k444_8u},
    {"V210_709ToVuy8u601", &ChooseV210, kV210_709ToVuy8u601, kV210Side, k444_8u},
    {"V210ToBgr8u601", &ChooseV210, kV210ToBgr8u601, kV210Side, k444_8u},
    {"V210ToBgr8u709", &ChooseV210, kV210ToBgr8u709, kV210Side, k444_8u},
    {"LinearToGamma32f", &ChooseLinear, kLinearToGamma32f, k444_32f, k444_32f},
    {"GammaToLinear32f", &ChooseLinear, kGammaToLinear32f, k444_32f, k444_32f},
    {"Bgra8uToLinear32f", &ChooseLinear, kBgra8uToLinear32f, k444_8u, k444_32f},
    {"Linear32fToBgra8u", &ChooseLinear, kLinear32fToBgra8u, k444_32f, k444_8u},
};

void Fill(Kind kind, uint8_t* p, size_t bytes, std::mt19937& rng) {
  switch (kind) {
    case Kind::kBytes:
      for (size_t i = 0; i < bytes; ++i) {
        const uint32_t r = rng();
        p[i] = (r & 0x700) == 0 ? ((r & 0x800) ? 0xFF : 0x00) : uint8_t(r);
      }
      break;
    case Kind::k15u:
      for (size_t i = 0; i + 2 <= bytes; i += 2) {
        const uint16_t v = test::RandomSample15u(rng);
        std::memcpy(p + i, &v, 2);
      }
      break;
    case Kind::k32f:
      for (size_t i = 0; i + 4 <= bytes; i += 4) {
        const float v = test::RandomSample32f(rng);
        std::memcpy(p + i, &v, 4);
      }
      break;
    case Kind::kWords:
      for (size_t i = 0; i + 4 <= bytes; i += 4) {
        // Ten-bit fields with the two spare bits clear half the time, set the other half.
        uint32_t v = rng();
        if (v & 1) v &= 0x3FFFFFFF;
        std::memcpy(p + i, &v, 4);
      }
      break;
  }
}

std::string CompareBytes(const uint8_t* a, const uint8_t* b, size_t bytes, int tolerance, int stride, int lanes) {
  for (size_t i = 0; i < bytes; ++i) {
    const int d = std::abs(int(a[i]) - int(b[i]));
    const bool tolerated = int(i % stride) < lanes ? d <= tolerance : d == 0;
    if (!tolerated)
      return "byte " + std::to_string(i) + ": portable " + std::to_string(a[i]) + ", level " + std::to_string(b[i]);
  }
  return {};
}

class ConverterLevels : public ::testing::TestWithParam<MemberCase> {};

TEST_P(ConverterLevels, AgreeWithPortable) {
  const MemberCase c = GetParam();
  test::RowKernelCheck check;
  check.fName = c.fName;
  check.fChoose = [c]() -> test::RowKernel { return c.fChoose()[c.fMember]; };
  check.fInputBytes = [c](int w) { return c.fIn.fBytesPerUnit * c.fIn.fUnits(w); };
  check.fOutputBytes = [c](int w) { return c.fOut.fBytesPerUnit * c.fOut.fUnits(w); };
  check.fFill = [c](uint8_t* p, size_t bytes, int, std::mt19937& rng) { Fill(c.fIn.fKind, p, bytes, rng); };
  switch (c.fCompare) {
    case Compare::kExact:
      if (c.fOut.fKind == Kind::k32f)
        check.fCompare = [](const uint8_t* a, const uint8_t* b, size_t n, int) { return test::CompareFloatsUlps(a, b, n, 0); };
      break;
    case Compare::kOneCount:
      // 8u to 15u: (v x 32768) / 255 truncated against v x 128.50196 + 0.5 truncated; at most one
      // count apart.
      check.fCompare = [](const uint8_t* a, const uint8_t* b, size_t n, int) -> std::string {
        for (size_t i = 0; i + 2 <= n; i += 2) {
          uint16_t x, y;
          std::memcpy(&x, a + i, 2);
          std::memcpy(&y, b + i, 2);
          if (std::abs(int(x) - int(y)) > 1) return "sample " + std::to_string(i / 2) + " differs by more than 1";
        }
        return {};
      };
      break;
    case Compare::kChromaMeanUp:
      // The SSSE3 mean rounds up: chroma one count higher at odd pixels, and for the fused RGB
      // steps up to two counts in the colour channels; alpha and luma exact.
      check.fCompare = [](const uint8_t* a, const uint8_t* b, size_t n, int) {
        return CompareBytes(a, b, n, 3, 4, 3);
      };
      break;
  }
  test::CheckRowKernelAtEveryLevel(check);
}

INSTANTIATE_TEST_SUITE_P(Families, ConverterLevels, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<MemberCase>& info) { return std::string(info.param.fName); });

}  // namespace
}  // namespace OX
