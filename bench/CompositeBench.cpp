// Compositing at 1920x1080 on one and two threads beside libyuv's ARGBBlend and pixman's OVER and
// separable/non-separable blend operators, and the 8-bit kernel rows at each level.
#include <tbb/global_control.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"
#include "composite/CompositeKernels.h"

#ifdef OMBRIX_HAVE_LIBYUV
#include <libyuv/planar_functions.h>
#endif
#ifdef OMBRIX_HAVE_PIXMAN
#include <pixman.h>
#endif

namespace ombrix_bench {
namespace {

constexpr int kW = 1920, kH = 1080;

// Premultiplied-valid bytes (colour at most alpha), as pixman and libyuv expect.
struct Frame : BenchFrame {
  Frame(size_t bytes, bool floats) : BenchFrame(bytes, floats) {
    if (floats) return;
    for (size_t i = 0; i + 4 <= bytes; i += 4)
      for (int c = 0; c < 3; ++c) fData[i + c] = uint8_t(fData[i + c] * fData[i + 3] / 255);
  }
};

std::string Add(const std::string& name, std::function<bool()> work, int threads = 0) {
  benchmark::RegisterBenchmark(name.c_str(), [work, threads](benchmark::State& state) {
    std::unique_ptr<tbb::global_control> limit;
    if (threads) limit = std::make_unique<tbb::global_control>(tbb::global_control::max_allowed_parallelism, threads);
    for (auto _ : state) {
      if (!work()) {
        state.SkipWithError("call failed");
        break;
      }
      benchmark::ClobberMemory();
    }
  })->UseRealTime()->Unit(benchmark::kMillisecond);
  return name + "/real_time";
}

#ifdef OMBRIX_HAVE_PIXMAN
struct PixmanPair {
  pixman_image_t *fSource, *fDestination;
};
PixmanPair Images(pixman_format_code_t format, uint8_t* s, uint8_t* d, int bpp) {
  return {pixman_image_create_bits(format, kW, kH, reinterpret_cast<uint32_t*>(s), kW * bpp),
          pixman_image_create_bits(format, kW, kH, reinterpret_cast<uint32_t*>(d), kW * bpp)};
}
#endif

int Register() {
  static Frame s8(size_t(kW) * kH * 4, false), b8(size_t(kW) * kH * 4, false), d8(size_t(kW) * kH * 4, false);
  static Frame s32(size_t(kW) * kH * 16, true), b32(size_t(kW) * kH * 16, true);

  // Premultiplied over opaque, no conversion (kernel 5), beside libyuv's premultiplied blend.
  for (int threads : {1, 2}) {
    const std::string t = "/threads:" + std::to_string(threads);
    const std::string ours = Add("OX_Composite/BGRP_8u-over-BGRX_8u" + t, [] {
      return OX_Composite(s8.fData, kW * 4, OX_PixelFormat_BGRP_4444_8u, b8.fData, kW * 4, OX_PixelFormat_BGRX_4444_8u,
                          d8.fData, kW * 4, OX_PixelFormat_BGRP_4444_8u, kW, kH, 0.999f, 3, true) == 0;
    }, threads);
#ifdef OMBRIX_HAVE_LIBYUV
    static const std::string yuv = Add("libyuv::ARGBBlend/1920x1080", [] {
      return libyuv::ARGBBlend(s8.fData, kW * 4, b8.fData, kW * 4, d8.fData, kW * 4, kW, kH) == 0;
    });
    CompareWith(ours, yuv, "composite BGRP over BGRX 8u" + t + " vs libyuv ARGBBlend");
#endif
  }
#ifdef OMBRIX_HAVE_PIXMAN
  static PixmanPair p8 = Images(PIXMAN_a8r8g8b8, s8.fData, d8.fData, 4);
  static PixmanPair p32 = Images(PIXMAN_rgba_float, s32.fData, b32.fData, 16);
  const std::string pixOver8 = Add("pixman/OVER/a8r8g8b8", [] {
    pixman_image_composite32(PIXMAN_OP_OVER, p8.fSource, nullptr, p8.fDestination, 0, 0, 0, 0, 0, 0, kW, kH);
    return true;
  });
  const std::string pixOver32 = Add("pixman/OVER/rgba_float", [] {
    pixman_image_composite32(PIXMAN_OP_OVER, p32.fSource, nullptr, p32.fDestination, 0, 0, 0, 0, 0, 0, kW, kH);
    return true;
  });
#endif
  for (int threads : {1, 2}) {
    const std::string t = "/threads:" + std::to_string(threads);
    const std::string over8 = Add("OX_Composite/BGRP_8u-over-BGRP_8u-in-place" + t, [] {
      return OX_Composite(s8.fData, kW * 4, OX_PixelFormat_BGRP_4444_8u, d8.fData, kW * 4, OX_PixelFormat_BGRP_4444_8u,
                          d8.fData, kW * 4, OX_PixelFormat_BGRP_4444_8u, kW, kH, 0.999f, 3, true) == 0;
    }, threads);
    const std::string over32 = Add("OX_Composite/BGRP_32f-over-BGRP_32f-in-place" + t, [] {
      return OX_Composite(s32.fData, kW * 16, OX_PixelFormat_BGRP_4444_32f, b32.fData, kW * 16,
                          OX_PixelFormat_BGRP_4444_32f, b32.fData, kW * 16, OX_PixelFormat_BGRP_4444_32f, kW, kH, 0.999f,
                          3, true) == 0;
    }, threads);
#ifdef OMBRIX_HAVE_PIXMAN
    CompareWith(over8, pixOver8, "composite over 8u in place" + t + " vs pixman OVER a8r8g8b8");
    CompareWith(over32, pixOver32, "composite over 32f in place" + t + " vs pixman OVER rgba_float");
#endif
  }

  // Blend modes beside pixman's operators of the same name.
  struct Mode {
    OX_BlendMode fMode;
    const char* fName;
#ifdef OMBRIX_HAVE_PIXMAN
    pixman_op_t fOp;
#endif
  };
#ifdef OMBRIX_HAVE_PIXMAN
#define OX_MODE(m, name, op) {m, name, op}
#else
#define OX_MODE(m, name, op) {m, name}
#endif
  static const Mode modes[] = {
      OX_MODE(17, "Multiply", PIXMAN_OP_MULTIPLY),   OX_MODE(22, "Screen", PIXMAN_OP_SCREEN),
      OX_MODE(19, "Overlay", PIXMAN_OP_OVERLAY),     OX_MODE(3, "Darken", PIXMAN_OP_DARKEN),
      OX_MODE(11, "Lighten", PIXMAN_OP_LIGHTEN),     OX_MODE(2, "ColorDodge", PIXMAN_OP_COLOR_DODGE),
      OX_MODE(1, "ColorBurn", PIXMAN_OP_COLOR_BURN), OX_MODE(8, "HardLight", PIXMAN_OP_HARD_LIGHT),
      OX_MODE(23, "SoftLight", PIXMAN_OP_SOFT_LIGHT), OX_MODE(5, "Difference", PIXMAN_OP_DIFFERENCE),
      OX_MODE(7, "Exclusion", PIXMAN_OP_EXCLUSION),  OX_MODE(10, "Hue", PIXMAN_OP_HSL_HUE),
      OX_MODE(21, "Saturation", PIXMAN_OP_HSL_SATURATION), OX_MODE(0, "Color", PIXMAN_OP_HSL_COLOR),
      OX_MODE(16, "Luminosity", PIXMAN_OP_HSL_LUMINOSITY)};
#undef OX_MODE
  for (const Mode& m : modes) {
#ifdef OMBRIX_HAVE_PIXMAN
    const pixman_op_t op = m.fOp;
    const std::string pix32 = Add(std::string("pixman/") + m.fName + "/rgba_float", [op] {
      pixman_image_composite32(op, p32.fSource, nullptr, p32.fDestination, 0, 0, 0, 0, 0, 0, kW, kH);
      return true;
    });
    const std::string pix8 = Add(std::string("pixman/") + m.fName + "/a8r8g8b8", [op] {
      pixman_image_composite32(op, p8.fSource, nullptr, p8.fDestination, 0, 0, 0, 0, 0, 0, kW, kH);
      return true;
    });
#endif
    for (int threads : {1, 2}) {
      const std::string t = "/threads:" + std::to_string(threads);
      const OX_BlendMode mode = m.fMode;
      const std::string ours32 = Add(std::string("OX_CompositeWithBlendMode/") + m.fName + "/BGRA_32f" + t, [mode] {
        return OX_CompositeWithBlendMode(s32.fData, kW * 16, OX_PixelFormat_BGRA_4444_32f, b32.fData, kW * 16,
                                         OX_PixelFormat_BGRA_4444_32f, b32.fData, kW * 16, OX_PixelFormat_BGRA_4444_32f,
                                         kW, kH, 0.8f, mode, 3, true) == 0;
      }, threads);
      const std::string ours8 = Add(std::string("OX_CompositeWithBlendMode/") + m.fName + "/BGRA_8u" + t, [mode] {
        return OX_CompositeWithBlendMode(s8.fData, kW * 4, OX_PixelFormat_BGRA_4444_8u, d8.fData, kW * 4,
                                         OX_PixelFormat_BGRA_4444_8u, d8.fData, kW * 4, OX_PixelFormat_BGRA_4444_8u, kW,
                                         kH, 0.8f, mode, 3, true) == 0;
      }, threads);
#ifdef OMBRIX_HAVE_PIXMAN
      CompareWith(ours32, pix32, std::string("mode ") + m.fName + " 32f" + t + " vs pixman rgba_float");
      CompareWith(ours8, pix8, std::string("mode ") + m.fName + " 8u" + t + " vs pixman a8r8g8b8");
#endif
    }
  }

  // The 8-bit kernel alone on 1920-pixel rows at each level.
  for (Level level : {Level::Portable, Level::SSE2, Level::AVX, Level::AVX2}) {
    if (!MachineHas(level)) continue;
    benchmark::RegisterBenchmark((std::string("Composite8uKernel5/row1920/") + LevelName(level)).c_str(),
                                 [level](benchmark::State& state) {
                                   ScopedLevel scoped(level);
                                   const OX::CompositeKernel k = OX::ChooseComposite8uKernel(5);
                                   for (auto _ : state) {
                                     for (int y = 0; y < 64; ++y)
                                       k(s8.fData + y * kW * 4, b8.fData + y * kW * 4, d8.fData + y * kW * 4, kW, 0.7f);
                                     benchmark::ClobberMemory();
                                   }
                                   state.SetItemsProcessed(int64_t(state.iterations()) * 64 * kW);
                                 });
  }
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
