// Whole-image moves and the warped quad at 1920x1080 on one thread, beside OpenCV, libyuv and
// pixman doing the same move. Nothing here slices, so the peers run single-threaded too.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"

#ifdef OMBRIX_HAVE_LIBYUV
#include <libyuv/planar_functions.h>
#include <libyuv/rotate_argb.h>
#endif
#ifdef OMBRIX_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef OMBRIX_HAVE_PIXMAN
#include <pixman.h>
#endif

namespace ombrix_bench {
namespace {

constexpr int kW = 1920, kH = 1080;

using Frame = BenchFrame;

using Work = std::function<bool()>;

void Run(benchmark::State& state, const Work& work) {
  for (auto _ : state) {
    if (!work()) {
      state.SkipWithError("call failed");
      break;
    }
    benchmark::ClobberMemory();
  }
}

std::string Add(const std::string& name, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State& s) { Run(s, work); })
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
  return name + "/real_time";
}

// The corners of the frame turned by `degrees` about its centre and shrunk by `scale`.
void TurnedQuad(double degrees, double scale, double q[8]) {
  const double c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
  const double corners[4][2] = {{-kW / 2.0, -kH / 2.0}, {kW / 2.0, -kH / 2.0}, {kW / 2.0, kH / 2.0}, {-kW / 2.0, kH / 2.0}};
  for (int i = 0; i < 4; ++i) {
    q[2 * i] = kW / 2.0 + scale * (corners[i][0] * c - corners[i][1] * s);
    q[2 * i + 1] = kH / 2.0 + scale * (corners[i][0] * s + corners[i][1] * c);
  }
}

int Register() {
#ifdef OMBRIX_HAVE_OPENCV
  cv::setNumThreads(1);
#endif
  static Frame src4(size_t(kW) * kH * 4), dst4(size_t(kW) * kH * 4);
  static Frame src16(size_t(kW) * kH * 16), dst16(size_t(kW) * kH * 16);

  // Transpose at 4 and 16 bytes, and the blur's strip shape (8 columns of 1080 float pixels and back).
  struct T {
    const char* fName;
    int fW, fH, fItem;
  } transposes[] = {{"4B/1920x1080", kW, kH, 4}, {"16B/1920x1080", kW, kH, 16}, {"16B/8x1080", 8, kH, 16},
                    {"16B/1080x8", kH, 8, 16}};
  for (const T& t : transposes) {
    uint8_t* s = t.fItem == 4 ? src4.fData : src16.fData;
    uint8_t* d = t.fItem == 4 ? dst4.fData : dst16.fData;
    const std::string ours = Add(std::string("OX_Transpose/") + t.fName, [=] {
      return OX_Transpose(s, t.fW * t.fItem, d, t.fH * t.fItem, t.fW, t.fH, uint8_t(t.fItem)) == 0;
    });
#ifdef OMBRIX_HAVE_OPENCV
    const int type = t.fItem == 4 ? CV_8UC4 : CV_32FC4;
    const std::string cv = Add(std::string("cv::transpose/") + t.fName, [=] {
      cv::Mat a(t.fH, t.fW, type, s), b(t.fW, t.fH, type, d);
      cv::transpose(a, b);
      return true;
    });
    CompareWith(ours, cv, std::string("transpose ") + t.fName + " vs cv::transpose");
#endif
  }

  for (int degrees : {90, 180, 270}) {
    const bool quarter = degrees != 180;
    const int dw = quarter ? kH : kW;
    const std::string tag = std::to_string(degrees);
    const std::string ours = Add("OX_RotateImage/" + tag, [=] {
      return OX_RotateImage(src4.fData, kW * 4, dst4.fData, dw * 4, kW, kH, OX_PixelFormat_BGRA_4444_8u, degrees) == 0;
    });
#ifdef OMBRIX_HAVE_LIBYUV
    const std::string yuv = Add("libyuv::ARGBRotate/" + tag, [=] {
      return libyuv::ARGBRotate(src4.fData, kW * 4, dst4.fData, dw * 4, kW, kH, libyuv::RotationMode(degrees)) == 0;
    });
    CompareWith(ours, yuv, "rotate " + tag + " vs libyuv ARGBRotate");
    if (degrees == 180) {
      const std::string mirror = Add("libyuv::ARGBMirror/-height", [=] {
        return libyuv::ARGBMirror(src4.fData, kW * 4, dst4.fData, kW * 4, kW, -kH) == 0;
      });
      CompareWith(ours, mirror, "rotate 180 vs libyuv ARGBMirror with negative height");
    }
#endif
#ifdef OMBRIX_HAVE_OPENCV
    const std::string cv = Add("cv::rotate/" + tag, [=] {
      cv::Mat a(kH, kW, CV_8UC4, src4.fData), b(quarter ? kW : kH, dw, CV_8UC4, dst4.fData);
      cv::rotate(a, b, degrees == 90 ? cv::ROTATE_90_COUNTERCLOCKWISE : degrees == 180 ? cv::ROTATE_180 : cv::ROTATE_90_CLOCKWISE);
      return true;
    });
    CompareWith(ours, cv, "rotate " + tag + " vs cv::rotate");
#endif
  }

  const std::string flip = Add("OX_FlipInPlace/1920x1080", [] {
    return OX_FlipInPlace(dst4.fData, kW * 4, kW, kH, OX_PixelFormat_BGRA_4444_8u) == 0;
  });
#ifdef OMBRIX_HAVE_OPENCV
  const std::string cvFlip = Add("cv::flip/0/in-place", [] {
    cv::Mat a(kH, kW, CV_8UC4, dst4.fData);
    cv::flip(a, a, 0);
    return true;
  });
  CompareWith(flip, cvFlip, "flip vs cv::flip in place");
#endif
#ifdef OMBRIX_HAVE_LIBYUV
  const std::string copyFlip = Add("libyuv::ARGBCopy/-height", [] {
    return libyuv::ARGBCopy(src4.fData, kW * 4, dst4.fData, kW * 4, kW, -kH) == 0;
  });
  CompareWith(flip, copyFlip, "flip vs libyuv ARGBCopy with negative height (not in place)");
#endif

  // The card turned by 10 degrees and shrunk to 80 %, drawn into a frame of the same size.
  static double source[8] = {0, 0, kW, 0, kW, kH, 0, kH}, turned[8], skewed[8];
  TurnedQuad(10, 0.8, turned);
  std::memcpy(skewed, turned, sizeof(turned));
  skewed[4] -= 150, skewed[5] += 60;  // no longer a parallelogram
  static const int32_t rect[4] = {0, 0, kW, kH};
  auto warp = [](int quality, bool direct, float feather, const double* quad) {
    return [=] {
      return OX_WarpAffineQuad(0, 0, src4.fData, kW * 4, rect, source, dst4.fData, kW * 4, rect, quad, quality, 255,
                               true, false, OX_PixelFormat_BGRA_4444_8u, 0, false, direct, feather) == 0;
    };
  };
  const std::string blend0 = Add("OX_WarpAffineQuad/bilinear-blend/feather0", warp(4, false, 0, turned));
  const std::string blend8 = Add("OX_WarpAffineQuad/bilinear-blend/feather8", warp(4, false, 8, turned));
  const std::string direct = Add("OX_WarpAffineQuad/bilinear-direct", warp(4, true, 0, turned));
  const std::string nearest = Add("OX_WarpAffineQuad/nearest-copy", warp(1, true, 0, turned));
  const std::string skew = Add("OX_WarpAffineQuad/bilinear-direct/non-parallelogram", warp(4, true, 0, skewed));
#ifdef OMBRIX_HAVE_PIXMAN
  {
    // The same affine map (destination to source) as a pixman transform, bilinear, OVER.
    static pixman_image_t* s = pixman_image_create_bits(PIXMAN_a8r8g8b8, kW, kH, reinterpret_cast<uint32_t*>(src4.fData), kW * 4);
    static pixman_image_t* d = pixman_image_create_bits(PIXMAN_a8r8g8b8, kW, kH, reinterpret_cast<uint32_t*>(dst4.fData), kW * 4);
    const double c = std::cos(-10 * M_PI / 180), sn = std::sin(-10 * M_PI / 180), k = 1 / 0.8;
    pixman_transform_t t;
    pixman_transform_init_identity(&t);
    pixman_transform_translate(&t, nullptr, pixman_double_to_fixed(-kW / 2.0), pixman_double_to_fixed(-kH / 2.0));
    pixman_transform_rotate(&t, nullptr, pixman_double_to_fixed(c), pixman_double_to_fixed(sn));
    pixman_transform_scale(&t, nullptr, pixman_double_to_fixed(k), pixman_double_to_fixed(k));
    pixman_transform_translate(&t, nullptr, pixman_double_to_fixed(kW / 2.0), pixman_double_to_fixed(kH / 2.0));
    pixman_image_set_transform(s, &t);
    pixman_image_set_filter(s, PIXMAN_FILTER_BILINEAR, nullptr, 0);
    const std::string px = Add("pixman/OVER/bilinear/turned", [] {
      pixman_image_composite32(PIXMAN_OP_OVER, s, nullptr, d, 0, 0, 0, 0, 0, 0, kW, kH);
      return true;
    });
    CompareWith(blend0, px, "warp bilinear blend (feather 0) vs pixman OVER bilinear");
    CompareWith(blend8, px, "warp bilinear blend (feather 8) vs pixman OVER bilinear");
  }
#endif
#ifdef OMBRIX_HAVE_OPENCV
  {
    auto affine = [](int interpolation) {
      return [=] {
        cv::Point2f from[3] = {{0, 0}, {float(kW), 0}, {float(kW), float(kH)}};
        cv::Point2f to[3] = {{float(turned[0]), float(turned[1])}, {float(turned[2]), float(turned[3])},
                             {float(turned[4]), float(turned[5])}};
        cv::Mat a(kH, kW, CV_8UC4, src4.fData), b(kH, kW, CV_8UC4, dst4.fData);
        cv::warpAffine(a, b, cv::getAffineTransform(from, to), b.size(), interpolation, cv::BORDER_TRANSPARENT);
        return true;
      };
    };
    CompareWith(direct, Add("cv::warpAffine/INTER_LINEAR", affine(cv::INTER_LINEAR)),
                "warp bilinear direct vs cv::warpAffine INTER_LINEAR");
    CompareWith(nearest, Add("cv::warpAffine/INTER_NEAREST", affine(cv::INTER_NEAREST)),
                "warp nearest copy vs cv::warpAffine INTER_NEAREST");
    const std::string persp = Add("cv::warpPerspective/INTER_LINEAR", [] {
      cv::Point2f from[4] = {{0, 0}, {float(kW), 0}, {float(kW), float(kH)}, {0, float(kH)}};
      cv::Point2f to[4];
      for (int i = 0; i < 4; ++i) to[i] = {float(skewed[2 * i]), float(skewed[2 * i + 1])};
      cv::Mat a(kH, kW, CV_8UC4, src4.fData), b(kH, kW, CV_8UC4, dst4.fData);
      cv::warpPerspective(a, b, cv::getPerspectiveTransform(from, to), b.size(), cv::INTER_LINEAR, cv::BORDER_TRANSPARENT);
      return true;
    });
    CompareWith(skew, persp, "warp non-parallelogram (bilinear direct) vs cv::warpPerspective");
  }
#endif
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
