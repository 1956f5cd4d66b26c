// DV encoding: frames per second on one thread for each family, beside libavcodec's DV encoder
// on the same pictures; each row also reports the PSNR of its frame as libavcodec decodes it.
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "Ombrix.h"

#ifdef OMBRIX_HAVE_LIBAVCODEC
// The test suite's picture and peer helpers; one translation unit keeps the sources globbed.
#include "../tests/dv/DVEncodeTestSupport.cpp"

namespace ombrix_bench {
namespace {

using ombrix_test::Planes;

enum class Chroma { k411, k420, k422 };
struct EncodeCase {
  const char* fName;
  OX_PixelFormat fFormat, fSource;
  int fWidth, fHeight;
  bool fDVCPRO;
  Chroma fChroma;
  bool fFiftyHertz, fProgressive;
};
const EncodeCase kCases[] = {
    {"NTSCDV25", OX_PixelFormat_NTSCDV25, OX_PixelFormat_YUYV_422_8u, 720, 480, false, Chroma::k411, false, false},
    {"PALDV25_420", OX_PixelFormat_PALDV25, OX_PixelFormat_YUYV_422_8u, 720, 576, false, Chroma::k420, true, false},
    {"PALDVCPRO", OX_PixelFormat_PALDV25, OX_PixelFormat_YUYV_422_8u, 720, 576, true, Chroma::k411, true, false},
    {"NTSCDV50", OX_PixelFormat_NTSCDV50, OX_PixelFormat_YUYV_422_8u, 720, 480, false, Chroma::k422, false, false},
    {"NTSC_DV100_720p", OX_PixelFormat_NTSC_DV100_720p, OX_PixelFormat_YUYV_422_8u_709, 960, 720, false,
     Chroma::k422, false, true},
    {"NTSC_DV100_1080i", OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_YUYV_422_8u_709, 1280, 1080, false,
     Chroma::k422, false, false},
    {"PAL_DV100_1080i", OX_PixelFormat_PAL_DV100_1080i, OX_PixelFormat_YUYV_422_8u_709, 1440, 1080, false,
     Chroma::k422, true, false},
};

// The natural-like test picture and the planes both encoders are judged against.
struct Material {
  Planes picture, reference;
  std::vector<uint8_t> packed;
};
Material MakeMaterial(const EncodeCase& c) {
  Material m;
  m.picture = ombrix_test::MakeTestPicture422(3, c.fWidth, c.fHeight, 77);
  m.reference = c.fChroma == Chroma::k411   ? ombrix_test::To411(m.picture)
                : c.fChroma == Chroma::k420 ? ombrix_test::To420(m.picture)
                                            : m.picture;
  m.packed = ombrix_test::PackYUYV(m.picture);
  return m;
}

OX_Result EncodeOurs(const EncodeCase& c, const Material& m, std::vector<uint8_t>& frame) {
  const int32_t bytes = int32_t(frame.size());
  if (c.fDVCPRO)
    return OX_CompressDVCPROPAL25(m.packed.data(), c.fWidth * 2, c.fSource, c.fWidth, c.fHeight, frame.data(),
                                  bytes, c.fFormat, 4);
  return OX_Convert(m.packed.data(), c.fWidth * 2, c.fSource, frame.data(), bytes, c.fFormat, c.fWidth, c.fHeight,
                    4);
}

double PeerPSNR(const std::vector<uint8_t>& frame, const Planes& reference) {
  const ombrix_test::PeerDecoded d = ombrix_test::PeerDecode(frame.data(), frame.size());
  return d.ok ? ombrix_test::PlanesPSNR(d.planes, reference) : -1;
}

void BM_OurEncode(benchmark::State& state, EncodeCase c) {
  const Material m = MakeMaterial(c);
  std::vector<uint8_t> frame(size_t(OX_PixelFormatSize(c.fFormat, 0, 0)));
  for (auto _ : state) {
    if (EncodeOurs(c, m, frame) != OX_Success) {
      state.SkipWithError("encode failed");
      break;
    }
    benchmark::ClobberMemory();
  }
  state.counters["frames/s"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
  state.counters["PSNR_dB"] = PeerPSNR(frame, m.reference);
}

void BM_PeerEncode(benchmark::State& state, EncodeCase c) {
  const Material m = MakeMaterial(c);
  const Planes& p = m.reference;
  const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_DVVIDEO);
  AVCodecContext* ctx = avcodec_alloc_context3(codec);
  ctx->width = p.w;
  ctx->height = p.h;
  ctx->thread_count = 1;
  ctx->pix_fmt = c.fChroma == Chroma::k411 ? AV_PIX_FMT_YUV411P
                 : c.fChroma == Chroma::k420 ? AV_PIX_FMT_YUV420P
                                             : AV_PIX_FMT_YUV422P;
  ctx->time_base = c.fProgressive ? (c.fFiftyHertz ? AVRational{1, 50} : AVRational{1001, 60000})
                                  : (c.fFiftyHertz ? AVRational{1, 25} : AVRational{1001, 30000});
  if (avcodec_open2(ctx, codec, nullptr) < 0) {
    state.SkipWithError("peer encoder refused the format");
    avcodec_free_context(&ctx);
    return;
  }
  AVFrame* picture = av_frame_alloc();
  picture->format = ctx->pix_fmt;
  picture->width = p.w;
  picture->height = p.h;
  av_frame_get_buffer(picture, 32);
  const std::vector<uint8_t>* planes[3] = {&p.y, &p.cb, &p.cr};
  for (int plane = 0; plane < 3; ++plane) {
    const int w = plane ? p.cw : p.w, h = plane ? p.ch : p.h;
    for (int r = 0; r < h; ++r)
      std::copy(planes[plane]->begin() + size_t(r) * w, planes[plane]->begin() + size_t(r) * w + w,
                picture->data[plane] + size_t(r) * picture->linesize[plane]);
  }
  AVPacket* packet = av_packet_alloc();
  std::vector<uint8_t> last;
  int64_t pts = 0;
  for (auto _ : state) {
    picture->pts = pts++;
    if (avcodec_send_frame(ctx, picture) < 0 || avcodec_receive_packet(ctx, packet) < 0) {
      state.SkipWithError("peer encode failed");
      break;
    }
    if (last.empty()) last.assign(packet->data, packet->data + packet->size);
    av_packet_unref(packet);
    benchmark::ClobberMemory();
  }
  state.counters["frames/s"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
  if (!last.empty()) state.counters["PSNR_dB"] = PeerPSNR(last, m.reference);
  av_packet_free(&packet);
  av_frame_free(&picture);
  avcodec_free_context(&ctx);
}

int Register() {
  if (!ombrix_test::PeerAvailable()) return 0;
  for (const EncodeCase& c : kCases) {
    const std::string ours = std::string("DVEncode/") + c.fName;
    const std::string peer = std::string("libavcodec_dvenc/") + c.fName;
    benchmark::RegisterBenchmark(ours.c_str(), BM_OurEncode, c)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(peer.c_str(), BM_PeerEncode, c)->Unit(benchmark::kMillisecond);
    CompareWith(ours, peer, std::string("DV encode ") + c.fName);
  }
  return 0;
}
const int gRegistered = Register();

}  // namespace
}  // namespace ombrix_bench
#endif
