// OX_Convert at 1920x1080 for the pairs a video host converts most, beside the nearest libyuv and
// swscale conversions of the same frame size. The peers' arithmetic differs (their matrices, ranges
// and rounding are their own); what is compared is the time per frame.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"

#ifdef OMBRIX_HAVE_LIBYUV
#include <libyuv/convert_argb.h>
#include <libyuv/convert_from_argb.h>
#include <libyuv/planar_functions.h>
#endif
#ifdef OMBRIX_HAVE_SWSCALE
extern "C" {
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}
#endif

namespace ombrix_bench {
namespace {

constexpr int kWidth = 1920, kHeight = 1080;

// A buffer of `bytes` random bytes, 64-byte aligned; floats in 0..1 when `floats` is set.
struct Buffer {
  std::vector<uint8_t> fStorage;
  uint8_t* fData = nullptr;
  Buffer(size_t bytes, bool floats = false) : fStorage(bytes + 64) {
    fData = fStorage.data() + (64 - reinterpret_cast<uintptr_t>(fStorage.data()) % 64) % 64;
    uint32_t state = 0x12345678u;  // xorshift: frames of noise without the cost of a better generator
    auto next = [&state] {
      state ^= state << 13;
      state ^= state >> 17;
      state ^= state << 5;
      return state;
    };
    if (floats) {
      for (size_t i = 0; i + 4 <= bytes; i += 4) {
        const float f = float(next() % 1001) / 1000.0f - (i % 16 < 8 ? 0.5f : 0.0f);
        std::memcpy(fData + i, &f, 4);
      }
    } else {
      for (size_t i = 0; i + 4 <= bytes; i += 4) {
        const uint32_t v = next();
        std::memcpy(fData + i, &v, 4);
      }
    }
  }
};

// V210 words hold three 10-bit samples; keep the top two bits clear.
void MaskV210(Buffer& b, size_t bytes) {
  for (size_t i = 0; i + 4 <= bytes; i += 4) {
    uint32_t w;
    std::memcpy(&w, b.fData + i, 4);
    w &= 0x3FFFFFFF;
    std::memcpy(b.fData + i, &w, 4);
  }
}

struct Pair {
  const char* fName;
  OX_PixelFormat fFrom, fTo;
};
constexpr Pair kPairs[] = {
    {"BGRA_4444_8u->UYVY_422_8u", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_UYVY_422_8u},
    {"UYVY_422_8u->BGRA_4444_8u", OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_BGRA_4444_8u},
    {"V210_422_10u->BGRA_4444_8u", OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRA_4444_8u},
    {"BGRA_4444_8u->BGRA_4444_32f", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_32f},
    {"VUYA_4444_32f->BGRA_4444_8u", OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_BGRA_4444_8u},
    {"BGRA_4444_8u->ARGB_4444_8u", OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_ARGB_4444_8u},
};

void BM_OXConvert(benchmark::State& state, Pair p) {
  const int32_t sRow = OX_PixelFormatSize(p.fFrom, kWidth, 1), dRow = OX_PixelFormatSize(p.fTo, kWidth, 1);
  Buffer src(size_t(sRow) * kHeight, (p.fFrom & 0x1C0) == 0x100), dst(size_t(dRow) * kHeight);
  if (p.fFrom == OX_PixelFormat_V210_422_10u) MaskV210(src, size_t(sRow) * kHeight);
  for (auto _ : state) {
    if (OX_Convert(src.fData, sRow, p.fFrom, dst.fData, dRow, p.fTo, kWidth, kHeight, 3) != 0) {
      state.SkipWithError("OX_Convert failed");
      break;
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(int64_t(state.iterations()));
}

#ifdef OMBRIX_HAVE_LIBYUV
// The libyuv call nearest to each pair: packed 4:2:2 both ways, planar 10-bit 4:2:2 for V210,
// ByteToFloat over the interleaved bytes, 16-bit ARGB down to 8 bits for the float source, and the
// channel reversal.
void BM_libyuv(benchmark::State& state, int which) {
  const int w = kWidth, h = kHeight;
  Buffer argb(size_t(w) * 4 * h), packed(size_t(w) * 2 * h), out(size_t(w) * 16 * h);
  Buffer y10(size_t(w) * 2 * h), u10(size_t(w) * h), v10(size_t(w) * h), ar64(size_t(w) * 8 * h);
  for (auto _ : state) {
    int r = 0;
    switch (which) {
      case 0: r = libyuv::ARGBToUYVY(argb.fData, w * 4, out.fData, w * 2, w, h); break;
      case 1: r = libyuv::UYVYToARGB(packed.fData, w * 2, out.fData, w * 4, w, h); break;
      case 2:
        r = libyuv::I210ToARGB(reinterpret_cast<uint16_t*>(y10.fData), w, reinterpret_cast<uint16_t*>(u10.fData), w / 2,
                               reinterpret_cast<uint16_t*>(v10.fData), w / 2, out.fData, w * 4, w, h);
        break;
      case 3: r = libyuv::ByteToFloat(argb.fData, reinterpret_cast<float*>(out.fData), 1.0f / 255.0f, w * 4 * h); break;
      case 4: r = libyuv::AR64ToARGB(reinterpret_cast<uint16_t*>(ar64.fData), w * 4, out.fData, w * 4, w, h); break;
      case 5: r = libyuv::ARGBToBGRA(argb.fData, w * 4, out.fData, w * 4, w, h); break;
    }
    if (r != 0) {
      state.SkipWithError("libyuv failed");
      break;
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(int64_t(state.iterations()));
}
#endif

#ifdef OMBRIX_HAVE_SWSCALE
// swscale at the same size (its unscaled converters where it has them). No float YUV exists in
// swscale, so the float source is planar float RGBA; V210 is its packed 10-bit 4:2:2, Y210.
struct SwsPair {
  AVPixelFormat fFrom, fTo;
};
const SwsPair kSwsPairs[] = {
    {AV_PIX_FMT_BGRA, AV_PIX_FMT_UYVY422},  {AV_PIX_FMT_UYVY422, AV_PIX_FMT_BGRA},
    {AV_PIX_FMT_Y210LE, AV_PIX_FMT_BGRA},   {AV_PIX_FMT_BGRA, AV_PIX_FMT_GBRAPF32LE},
    {AV_PIX_FMT_GBRAPF32LE, AV_PIX_FMT_BGRA}, {AV_PIX_FMT_BGRA, AV_PIX_FMT_ARGB},
};

// Planes and strides of a frame of `format`, carved from one buffer.
void Planes(AVPixelFormat format, uint8_t* base, uint8_t* planes[4], int strides[4]) {
  const int w = kWidth, h = kHeight;
  for (int i = 0; i < 4; ++i) {
    planes[i] = nullptr;
    strides[i] = 0;
  }
  switch (format) {
    case AV_PIX_FMT_BGRA:
    case AV_PIX_FMT_ARGB: planes[0] = base; strides[0] = w * 4; break;
    case AV_PIX_FMT_UYVY422: planes[0] = base; strides[0] = w * 2; break;
    case AV_PIX_FMT_Y210LE: planes[0] = base; strides[0] = w * 4; break;
    case AV_PIX_FMT_GBRAPF32LE:
      for (int i = 0; i < 4; ++i) {
        planes[i] = base + size_t(i) * w * 4 * h;
        strides[i] = w * 4;
      }
      break;
    default: break;
  }
}

void BM_swscale(benchmark::State& state, int which) {
  const SwsPair p = kSwsPairs[which];
  SwsContext* ctx = sws_getContext(kWidth, kHeight, p.fFrom, kWidth, kHeight, p.fTo, SWS_POINT, nullptr, nullptr, nullptr);
  if (!ctx) {
    state.SkipWithError("swscale has no such conversion");
    return;
  }
  Buffer src(size_t(kWidth) * 16 * kHeight, p.fFrom == AV_PIX_FMT_GBRAPF32LE), dst(size_t(kWidth) * 16 * kHeight);
  uint8_t *sp[4], *dp[4];
  int ss[4], ds[4];
  Planes(p.fFrom, src.fData, sp, ss);
  Planes(p.fTo, dst.fData, dp, ds);
  for (auto _ : state) {
    sws_scale(ctx, sp, ss, 0, kHeight, dp, ds);
    benchmark::ClobberMemory();
  }
  sws_freeContext(ctx);
  state.SetItemsProcessed(int64_t(state.iterations()));
}
#endif

int Register() {
  for (int i = 0; i < int(sizeof(kPairs) / sizeof(kPairs[0])); ++i) {
    const Pair& p = kPairs[i];
    const std::string ours = std::string("OX_Convert/") + p.fName + "/1920x1080";
    benchmark::RegisterBenchmark(ours.c_str(), BM_OXConvert, p)->UseRealTime()->Unit(benchmark::kMillisecond);
#ifdef OMBRIX_HAVE_LIBYUV
    const std::string yuv = std::string("libyuv/") + p.fName + "/1920x1080";
    benchmark::RegisterBenchmark(yuv.c_str(), BM_libyuv, i)->UseRealTime()->Unit(benchmark::kMillisecond);
    CompareWith(ours + "/real_time", yuv + "/real_time", std::string("convert ") + p.fName + " vs libyuv");
#endif
#ifdef OMBRIX_HAVE_SWSCALE
    const std::string sws = std::string("swscale/") + p.fName + "/1920x1080";
    benchmark::RegisterBenchmark(sws.c_str(), BM_swscale, i)->UseRealTime()->Unit(benchmark::kMillisecond);
    CompareWith(ours + "/real_time", sws + "/real_time", std::string("convert ") + p.fName + " vs swscale");
#endif
  }
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
