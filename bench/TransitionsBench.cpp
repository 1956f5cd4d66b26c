// The dissolve and the alpha operations at 1920x1080 on one thread, beside libyuv and OpenCV.
#include <cstdint>
#include <string>

#include "BenchSupport.h"
#include "Ombrix.h"

#ifdef OMBRIX_HAVE_LIBYUV
#include <libyuv/planar_functions.h>
#endif
#ifdef OMBRIX_HAVE_OPENCV
#include <opencv2/core.hpp>
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

BenchFrame& A8() { static BenchFrame f(size_t(kW) * kH * 4); return f; }
BenchFrame& B8() { static BenchFrame f(size_t(kW) * kH * 4); return f; }
BenchFrame& D8() { static BenchFrame f(size_t(kW) * kH * 4); return f; }
BenchFrame& A32() { static BenchFrame f(size_t(kW) * kH * 16, true); return f; }
BenchFrame& B32() { static BenchFrame f(size_t(kW) * kH * 16, true); return f; }
BenchFrame& D32() { static BenchFrame f(size_t(kW) * kH * 16, true); return f; }

int Register() {
  // Frames are made here, not in the first timed iteration.
  for (BenchFrame* f : {&A8(), &B8(), &D8(), &A32(), &B32(), &D32()}) (void)f;
#ifdef OMBRIX_HAVE_OPENCV
  cv::setNumThreads(1);
#endif
  const std::string ours8 = Add("OX_CrossDissolve/BGRX_4444_8u", [] {
    return OX_CrossDissolve(A8().fData, kW * 4, OX_PixelFormat_BGRX_4444_8u, B8().fData, kW * 4,
                            OX_PixelFormat_BGRX_4444_8u, D8().fData, kW * 4, OX_PixelFormat_BGRX_4444_8u, kW, kH, 0.5f,
                            3) == 0;
  });
  const std::string ours32 = Add("OX_CrossDissolve/BGRA_4444_32f", [] {
    return OX_CrossDissolve(A32().fData, kW * 16, OX_PixelFormat_BGRA_4444_32f, B32().fData, kW * 16,
                            OX_PixelFormat_BGRA_4444_32f, D32().fData, kW * 16, OX_PixelFormat_BGRA_4444_32f, kW, kH,
                            0.5f, 3) == 0;
  });
  const std::string invert = Add("OX_InvertAlpha/BGRA_4444_8u", [] {
    return OX_InvertAlpha(A8().fData, kW * 4, D8().fData, kW * 4, OX_PixelFormat_BGRA_4444_8u, kW, kH) == 0;
  });
#ifdef OMBRIX_HAVE_LIBYUV
  CompareWith(ours8, Add("libyuv::ARGBInterpolate/128", [] {
    return libyuv::ARGBInterpolate(A8().fData, kW * 4, B8().fData, kW * 4, D8().fData, kW * 4, kW, kH, 128) == 0;
  }), "dissolve BGRX 8u vs libyuv ARGBInterpolate");
  CompareWith(invert, Add("libyuv::ARGBCopyAlpha", [] {
    return libyuv::ARGBCopyAlpha(A8().fData, kW * 4, D8().fData, kW * 4, kW, kH) == 0;
  }), "invert alpha vs libyuv ARGBCopyAlpha");
#endif
#ifdef OMBRIX_HAVE_OPENCV
  CompareWith(ours8, Add("cv::addWeighted/CV_8UC4", [] {
    cv::Mat a(kH, kW, CV_8UC4, A8().fData), b(kH, kW, CV_8UC4, B8().fData), d(kH, kW, CV_8UC4, D8().fData);
    cv::addWeighted(a, 0.5, b, 0.5, 0.0, d);
    return true;
  }), "dissolve BGRX 8u vs cv::addWeighted CV_8UC4");
  CompareWith(ours32, Add("cv::addWeighted/CV_32FC4", [] {
    cv::Mat a(kH, kW, CV_32FC4, A32().fData), b(kH, kW, CV_32FC4, B32().fData), d(kH, kW, CV_32FC4, D32().fData);
    cv::addWeighted(a, 0.5, b, 0.5, 0.0, d);
    return true;
  }), "dissolve BGRA 32f vs cv::addWeighted CV_32FC4");
#endif
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
