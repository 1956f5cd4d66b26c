// Row converters: one row per family member at the best level of this machine and at the portable
// level, in megapixels a second at width 1920; and whole 1920 x 1080 frames against libyuv for the
// single steps it has an equal of.
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"
#include "conversion/ConverterFamilies.h"

#if defined(OMBRIX_HAVE_LIBYUV)
#include <libyuv/convert.h>
#include <libyuv/convert_argb.h>
#include <libyuv/convert_from_argb.h>
#endif

namespace ombrix_bench {
namespace {

constexpr int kWidth = 1920;
constexpr int kRows = 32;  // rows cycled through, so the working set stays near the caches

struct MemberRow {
  const char* fName;
  const OX::RowConverter* (*fChoose)();
  int fMember;
  int fInBytes, fOutBytes;  // a pixel, averaged (4:2:2 is 2 bytes a pixel at 8u, V210 16 / 6)
};
// V210 rows are sized generously: 16 bytes a group of six is below 3 bytes a pixel.
const MemberRow kMembers[] = {
    {"Range8u32f.Vuy8uTo32f", &OX::ChooseRange8u32f, OX::kVuy8uTo32f, 4, 16},
    {"Range8u32f.Vuy32fTo8u", &OX::ChooseRange8u32f, OX::kVuy32fTo8u, 16, 4},
    {"Range8u32f.Uyvy8uTo32f", &OX::ChooseRange8u32f, OX::kUyvy8uTo32f, 2, 8},
    {"Depth15u.8uTo15u", &OX::ChooseDepth15u, OX::k8uTo15u, 4, 8},
    {"Depth15u.32fTo15u", &OX::ChooseDepth15u, OX::k32fTo15u, 16, 8},
    {"Rgb10u.10uToBgr8u", &OX::ChooseRgb10u, OX::k10uToBgr8u, 4, 4},
    {"Matrix8u.Bgr8uToVuy8u601", &OX::ChooseMatrix8u, OX::kBgr8uToVuy8u601, 4, 4},
    {"Matrix8u.Vuy8uToBgr8u601", &OX::ChooseMatrix8u, OX::kVuy8uToBgr8u601, 4, 4},
    {"Matrix8u.Vuyx8uToBgr8u601", &OX::ChooseMatrix8u, OX::kVuyx8uToBgr8u601, 4, 4},
    {"Matrix8u.Vuy8uToBgr32f601", &OX::ChooseMatrix8u, OX::kVuy8uToBgr32f601, 4, 16},
    {"Matrix32f.Yuv601ToRgb32f", &OX::ChooseMatrix32f, OX::kYuv601ToRgb32f, 16, 16},
    {"Yuv709_8u.Vuy601To709_8u", &OX::ChooseYuv709_8u, OX::kVuy601To709_8u, 4, 4},
    {"Alpha.Premul8uRgbLast", &OX::ChooseAlpha, OX::kPremul8uRgbLast, 4, 4},
    {"Alpha.Unpremul8uYuv", &OX::ChooseAlpha, OX::kUnpremul8uYuv, 4, 4},
    {"Alpha.Opaque8uLast", &OX::ChooseAlpha, OX::kOpaque8uLast, 4, 4},
    {"Premul15u.Last", &OX::ChoosePremul15u, OX::kPremul15uLast, 8, 8},
    {"Unpremul32f.Rcp", &OX::ChooseUnpremul32f, OX::kUnpremul32fRcp, 16, 16},
    {"Order.Reverse8u", &OX::ChooseOrder, OX::kReverse8u, 4, 4},
    {"Order.Swap422_8u", &OX::ChooseOrder, OX::kSwap422_8u, 2, 2},
    {"Subsample.Vuy8uToUyvy8u", &OX::ChooseSubsample, OX::kVuy8uToUyvy8u, 4, 2},
    {"Subsample.Uyvy8uToVuy8u", &OX::ChooseSubsample, OX::kUyvy8uToVuy8u, 2, 4},
    {"Subsample.Uyvy8uToBgr8u601", &OX::ChooseSubsample, OX::kUyvy8uToBgr8u601, 2, 4},
    {"Subsample.Uyvy32fToVuy32fFilter", &OX::ChooseSubsample, OX::kUyvy32fToVuy32fFilter, 8, 16},
    {"V210.V210ToUyvy8u", &OX::ChooseV210, OX::kV210ToUyvy8u, 3, 2},
    {"V210.Uyvy8uToV210", &OX::ChooseV210, OX::kUyvy8uToV210, 2, 3},
    {"V210.V210ToVuy8u", &OX::ChooseV210, OX::kV210ToVuy8u, 3, 4},
    {"V210.V210ToBgr8u601", &OX::ChooseV210, OX::kV210ToBgr8u601, 3, 4},
    {"Linear.LinearToGamma32f", &OX::ChooseLinear, OX::kLinearToGamma32f, 16, 16},
    {"Linear.Linear32fToBgra8u", &OX::ChooseLinear, OX::kLinear32fToBgra8u, 16, 4},
    {"Linear.Bgra8uToLinear32f", &OX::ChooseLinear, OX::kBgra8uToLinear32f, 4, 16},
};

// Plausible samples for every input kind: bytes in 16-235, floats in 0-1 (as bytes of both).
void FillPlausible(std::vector<uint8_t>& v, bool floats) {
  std::mt19937 rng(1);
  if (floats) {
    for (size_t i = 0; i + 4 <= v.size(); i += 4) {
      const float f = std::uniform_real_distribution<float>(0.0f, 1.0f)(rng);
      std::memcpy(&v[i], &f, 4);
    }
  } else {
    for (auto& b : v) b = uint8_t(16 + rng() % 220);
  }
}

void SetRate(benchmark::State& state, int64_t pixelsPerIteration) {
  state.counters["Mpix/s"] =
      benchmark::Counter(double(state.iterations()) * double(pixelsPerIteration) / 1e6, benchmark::Counter::kIsRate);
}

void BM_Member(benchmark::State& state, MemberRow m, Level level) {
  const size_t inRow = size_t(m.fInBytes) * kWidth + 64, outRow = size_t(m.fOutBytes) * kWidth + 64;
  std::vector<uint8_t> in(inRow * kRows), out(outRow * kRows);
  FillPlausible(in, m.fInBytes == 16 || m.fInBytes == 8);
  ScopedLevel scoped(level);
  for (auto _ : state) {
    const OX::RowConverter k = m.fChoose()[m.fMember];  // chosen at each call, as a chain does
    for (int r = 0; r < kRows; ++r) k(in.data() + r * inRow, out.data() + r * outRow, kWidth);
    benchmark::ClobberMemory();
  }
  SetRate(state, int64_t(kWidth) * kRows);
}

Level BestLevel() {
  for (Level l : {Level::AVX2, Level::AVX, Level::SSE41, Level::SSSE3, Level::SSE2})
    if (MachineHas(l)) return l;
  return Level::Portable;
}

#if defined(OMBRIX_HAVE_LIBYUV)
constexpr int kFrameW = 1920, kFrameH = 1080;

struct Frame {
  std::vector<uint8_t> a, b, c, d;
  Frame(size_t bytesA, size_t bytesB) : a(bytesA), b(bytesB), c(bytesA), d(bytesB) { FillPlausible(a, false); }
};

// Our row converter over a whole frame.
void BM_OurFrame(benchmark::State& state, const OX::RowConverter* (*choose)(), int member, int inBpp2, int outBpp2) {
  // Bytes a pixel times two, so 4:2:2 (2 bytes a pixel) and 4:4:4 (4) share the arithmetic.
  const size_t inRow = size_t(kFrameW) * inBpp2 / 2, outRow = size_t(kFrameW) * outBpp2 / 2;
  Frame f(inRow * kFrameH, outRow * kFrameH);
  for (auto _ : state) {
    const OX::RowConverter k = choose()[member];
    for (int r = 0; r < kFrameH; ++r) k(f.a.data() + r * inRow, f.b.data() + r * outRow, kFrameW);
    benchmark::ClobberMemory();
  }
  SetRate(state, int64_t(kFrameW) * kFrameH);
}

// A whole-frame call, ours or a peer's, from a frame of `inBpp2` / 2 bytes a pixel to one of
// `outBpp2` / 2.
using FrameCall = void (*)(const uint8_t* in, uint8_t* out);
void BM_FrameCall(benchmark::State& state, FrameCall call, int inBpp2, int outBpp2) {
  Frame f(size_t(kFrameW) * kFrameH * inBpp2 / 2, size_t(kFrameW) * kFrameH * outBpp2 / 2);
  for (auto _ : state) {
    call(f.a.data(), f.b.data());
    benchmark::ClobberMemory();
  }
  SetRate(state, int64_t(kFrameW) * kFrameH);
}

void OurRgb24(const uint8_t* in, uint8_t* out) {
  OX_ConvertRGB_444_8uToBGRA_4444_8u(in, kFrameW * 3, out, kFrameW * 4, kFrameW, kFrameH);
}
void YuvARGBToBGRA(const uint8_t* in, uint8_t* out) {
  libyuv::ARGBToBGRA(in, kFrameW * 4, out, kFrameW * 4, kFrameW, kFrameH);
}
void YuvRAWToARGB(const uint8_t* in, uint8_t* out) {
  libyuv::RAWToARGB(in, kFrameW * 3, out, kFrameW * 4, kFrameW, kFrameH);
}
// Planar 4:2:2 to 4:4:4: the chroma expansion alone, the nearest equal of ours on packed pairs.
void YuvI422ToI444(const uint8_t* in, uint8_t* out) {
  const size_t luma = size_t(kFrameW) * kFrameH;
  libyuv::I422ToI444(in, kFrameW, in + luma, kFrameW / 2, in + luma + luma / 2, kFrameW / 2, out, kFrameW,
                     out + luma, kFrameW, out + 2 * luma, kFrameW, kFrameW, kFrameH);
}
void YuvUYVYToARGB(const uint8_t* in, uint8_t* out) {
  libyuv::UYVYToARGB(in, kFrameW * 2, out, kFrameW * 4, kFrameW, kFrameH);
}
#endif

int Register() {
  const Level best = BestLevel();
  for (const MemberRow& m : kMembers)
    for (Level level : {best, Level::Portable}) {
      const std::string name = std::string("RowConverter/") + m.fName + "/" + LevelName(level);
      benchmark::RegisterBenchmark(name.c_str(), BM_Member, m, level)->Unit(benchmark::kMicrosecond);
    }
#if defined(OMBRIX_HAVE_LIBYUV)
  struct PeerRow {
    const char* fOurs;
    const char* fPeer;
    const char* fLabel;
  };
  auto frame = [](const char* name, auto fn, auto... args) {
    benchmark::RegisterBenchmark(name, fn, args...)->Unit(benchmark::kMicrosecond);
  };
  frame("RowConverter/frame/Reverse8u", BM_OurFrame, &OX::ChooseOrder, int(OX::kReverse8u), 8, 8);
  frame("libyuv/ARGBToBGRA", BM_FrameCall, &YuvARGBToBGRA, 8, 8);
  frame("RowConverter/frame/RGB_444_8uToBGRA", BM_FrameCall, &OurRgb24, 6, 8);
  frame("libyuv/RAWToARGB", BM_FrameCall, &YuvRAWToARGB, 6, 8);
  frame("RowConverter/frame/Uyvy8uToVuy8u", BM_OurFrame, &OX::ChooseSubsample, int(OX::kUyvy8uToVuy8u), 4, 8);
  frame("libyuv/I422ToI444", BM_FrameCall, &YuvI422ToI444, 4, 6);
  frame("RowConverter/frame/Uyvy8uToBgr8u601", BM_OurFrame, &OX::ChooseSubsample, int(OX::kUyvy8uToBgr8u601), 4, 8);
  frame("libyuv/UYVYToARGB", BM_FrameCall, &YuvUYVYToARGB, 4, 8);
  const PeerRow kPeers[] = {
      {"RowConverter/frame/Reverse8u", "libyuv/ARGBToBGRA", "4-byte channel reverse 1920x1080"},
      {"RowConverter/frame/RGB_444_8uToBGRA", "libyuv/RAWToARGB", "RGB 24-bit to BGRA 1920x1080"},
      {"RowConverter/frame/Uyvy8uToVuy8u", "libyuv/I422ToI444", "4:2:2 to 4:4:4 expansion 1920x1080"},
      {"RowConverter/frame/Uyvy8uToBgr8u601", "libyuv/UYVYToARGB", "UYVY to BGRA 1920x1080"},
  };
  for (const PeerRow& p : kPeers) CompareWith(p.fOurs, p.fPeer, p.fLabel);
#endif
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
