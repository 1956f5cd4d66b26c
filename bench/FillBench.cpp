// Fills at 1920x1080 on one thread beside libyuv's ARGBRect and I420Rect and pixman's fill.
#include <cstdint>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"

#ifdef OMBRIX_HAVE_LIBYUV
#include <libyuv/planar_functions.h>
#endif
#ifdef OMBRIX_HAVE_PIXMAN
#include <pixman.h>
#endif

namespace ombrix_bench {
namespace {

constexpr int kW = 1920, kH = 1080;

std::string Add(const std::string& name, bool (*work)()) {
  benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State& state) {
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

BenchFrame& Bgra() {
  static BenchFrame frame(size_t(kW) * kH * 4);
  return frame;
}
BenchFrame& Planar() {
  static BenchFrame frame(size_t(OX_PixelFormatSize(OX_PixelFormat_YUV_420_MPEG2_FRAME, kW, kH)));
  return frame;
}

int Register() {
  (void)Bgra(), (void)Planar();  // made here, not in the first timed iteration
  const std::string ours = Add("OX_FillWithOpaqueBlack/BGRA_4444_8u", [] {
    return OX_FillWithOpaqueBlack(Bgra().fData, kW * 4, kW, kH, OX_PixelFormat_BGRA_4444_8u) == 0;
  });
  const std::string oursPlanar = Add("OX_FillWithOpaqueBlack/YUV_420_MPEG2_FRAME", [] {
    return OX_FillWithOpaqueBlack(Planar().fData, 0, kW, kH, OX_PixelFormat_YUV_420_MPEG2_FRAME) == 0;
  });
#ifdef OMBRIX_HAVE_LIBYUV
  CompareWith(ours, Add("libyuv::ARGBRect", [] {
    return libyuv::ARGBRect(Bgra().fData, kW * 4, 0, 0, kW, kH, 0xFF000000u) == 0;
  }), "fill BGRA_4444_8u vs libyuv ARGBRect");
  CompareWith(oursPlanar, Add("libyuv::I420Rect", [] {
    void* planes[3];
    int32_t rb[3];
    OX_GetPlanarBuffers(Planar().fData, 0, kW, kH, planes, rb);
    return libyuv::I420Rect(static_cast<uint8_t*>(planes[0]), rb[0], static_cast<uint8_t*>(planes[1]), rb[1],
                            static_cast<uint8_t*>(planes[2]), rb[2], 0, 0, kW, kH, 16, 128, 128) == 0;
  }), "fill planar 4:2:0 vs libyuv I420Rect");
#endif
#ifdef OMBRIX_HAVE_PIXMAN
  CompareWith(ours, Add("pixman_fill/32bpp", [] {
    return pixman_fill(reinterpret_cast<uint32_t*>(Bgra().fData), kW, 32, 0, 0, kW, kH, 0xFF000000u) != 0;
  }), "fill BGRA_4444_8u vs pixman_fill");
#endif
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
