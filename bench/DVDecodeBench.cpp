// DV decoding: frames per second on one thread for a full-size decode of each family into its
// native format and into BGRA_4444_8u through OX_Convert, beside libavcodec's DV decoder on the
// same frames (plus swscale to BGRA for the second row, where swscale is present).
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"

#ifdef OMBRIX_HAVE_LIBAVCODEC
// The test suite's peer helper makes the frames with libavcodec's encoder; one translation unit
// keeps the benchmark's sources globbed as they are.
#include "../tests/dv/DVPeer.cpp"

extern "C" {
#include <libavcodec/avcodec.h>
#ifdef OMBRIX_HAVE_SWSCALE
#include <libswscale/swscale.h>
#endif
}

namespace ombrix_bench {
namespace {

struct DVCase {
  const char* fName;
  OX_PixelFormat fFormat;
  dvtest::Sampling fSampling;
  OX_PixelFormat fNative;
};
const DVCase kCases[] = {
    {"NTSCDV25", OX_PixelFormat_NTSCDV25, dvtest::Sampling::k411, OX_PixelFormat_UYVY_422_8u},
    {"PALDV25_420", OX_PixelFormat_PALDV25, dvtest::Sampling::k420, OX_PixelFormat_UYVY_422_8u},
    {"NTSCDV50", OX_PixelFormat_NTSCDV50, dvtest::Sampling::k422, OX_PixelFormat_YUYV_422_8u},
    {"NTSC_DV100_1080i", OX_PixelFormat_NTSC_DV100_1080i, dvtest::Sampling::k422, OX_PixelFormat_YUYV_422_8u_709},
    {"NTSC_DV100_720p", OX_PixelFormat_NTSC_DV100_720p, dvtest::Sampling::k422, OX_PixelFormat_YUYV_422_8u_709},
};

const std::vector<uint8_t>& Frame(const DVCase& c, const dvtest::PeerFormat** format) {
  *format = dvtest::FindPeerFormat(c.fFormat, c.fSampling);
  return dvtest::PeerFrame(**format, 2);
}

void BM_OurDecode(benchmark::State& state, DVCase c, bool toBGRA) {
  const dvtest::PeerFormat* f = nullptr;
  const std::vector<uint8_t>& frame = Frame(c, &f);
  const OX_PixelFormat target = toBGRA ? OX_PixelFormat_BGRA_4444_8u : c.fNative;
  const int rowBytes = OX_PixelFormatSize(target, f->width, 1);
  std::vector<uint8_t> out(size_t(rowBytes) * f->height);
  for (auto _ : state) {
    if (OX_Convert(frame.data(), 0, c.fFormat, out.data(), rowBytes, target, f->width, f->height, 4) != 0) {
      state.SkipWithError("decode failed");
      break;
    }
    benchmark::ClobberMemory();
  }
  state.counters["frames/s"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_PeerDecode(benchmark::State& state, DVCase c, bool toBGRA) {
  const dvtest::PeerFormat* f = nullptr;
  const std::vector<uint8_t>& frame = Frame(c, &f);
  const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_DVVIDEO);
  AVCodecContext* ctx = avcodec_alloc_context3(codec);
  ctx->thread_count = 1;
  avcodec_open2(ctx, codec, nullptr);
  AVPacket* packet = av_packet_alloc();
  av_new_packet(packet, int(frame.size()));
  std::memcpy(packet->data, frame.data(), frame.size());
  AVFrame* picture = av_frame_alloc();
  std::vector<uint8_t> bgra(size_t(f->width) * 4 * f->height);
#ifdef OMBRIX_HAVE_SWSCALE
  SwsContext* sws = nullptr;
#endif
  for (auto _ : state) {
    if (avcodec_send_packet(ctx, packet) < 0 || avcodec_receive_frame(ctx, picture) < 0) {
      state.SkipWithError("peer decode failed");
      break;
    }
#ifdef OMBRIX_HAVE_SWSCALE
    if (toBGRA) {
      if (!sws)
        sws = sws_getContext(f->width, f->height, AVPixelFormat(picture->format), f->width, f->height,
                             AV_PIX_FMT_BGRA, SWS_POINT, nullptr, nullptr, nullptr);
      uint8_t* planes[1] = {bgra.data()};
      int strides[1] = {f->width * 4};
      sws_scale(sws, picture->data, picture->linesize, 0, f->height, planes, strides);
    }
#endif
    av_frame_unref(picture);
    benchmark::ClobberMemory();
  }
  state.counters["frames/s"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
#ifdef OMBRIX_HAVE_SWSCALE
  sws_freeContext(sws);
#endif
  av_frame_free(&picture);
  av_packet_free(&packet);
  avcodec_free_context(&ctx);
}

int Register() {
  if (!dvtest::PeerAvailable()) return 0;
  for (const DVCase& c : kCases) {
    for (bool toBGRA : {false, true}) {
#ifndef OMBRIX_HAVE_SWSCALE
      if (toBGRA) continue;
#endif
      const std::string tail = std::string(c.fName) + (toBGRA ? "/BGRA_4444_8u" : "/native");
      const std::string ours = "DVDecode/" + tail;
      const std::string peer = std::string(toBGRA ? "libavcodec+swscale/" : "libavcodec/") + tail;
      benchmark::RegisterBenchmark(ours.c_str(), BM_OurDecode, c, toBGRA)->UseRealTime()->Unit(benchmark::kMillisecond);
      benchmark::RegisterBenchmark(peer.c_str(), BM_PeerDecode, c, toBGRA)->UseRealTime()->Unit(benchmark::kMillisecond);
      CompareWith(ours, peer, "DV decode " + tail);
    }
  }
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
#endif
