// libavcodec's dvvideo as the independent peer of the DV decoder tests.
#include "DVPeer.h"

#include <cmath>
#include <cstring>
#include <map>
#include <mutex>

#ifdef OMBRIX_HAVE_LIBAVCODEC
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/imgutils.h>
#include <libavutil/log.h>
}
#endif

namespace dvtest {

const std::vector<PeerFormat>& PeerFormats() {
  static const std::vector<PeerFormat> formats = {
      {"NTSC DV25 4:1:1", OX_PixelFormat_NTSCDV25, 720, 480, Sampling::k411, 30000, 1001},
      {"PAL DV25 4:2:0", OX_PixelFormat_PALDV25, 720, 576, Sampling::k420, 25, 1},
      {"PAL DV25 4:1:1", OX_PixelFormat_PALDV25, 720, 576, Sampling::k411, 25, 1},
      {"NTSC DV50", OX_PixelFormat_NTSCDV50, 720, 480, Sampling::k422, 30000, 1001},
      {"PAL DV50", OX_PixelFormat_PALDV50, 720, 576, Sampling::k422, 25, 1},
      {"NTSC DV100 1080i", OX_PixelFormat_NTSC_DV100_1080i, 1280, 1080, Sampling::k422, 30000, 1001},
      {"PAL DV100 1080i", OX_PixelFormat_PAL_DV100_1080i, 1440, 1080, Sampling::k422, 25, 1},
      {"NTSC DV100 720p", OX_PixelFormat_NTSC_DV100_720p, 960, 720, Sampling::k422, 60000, 1001},
      {"PAL DV100 720p", OX_PixelFormat_PAL_DV100_720p, 960, 720, Sampling::k422, 50, 1},
  };
  return formats;
}

const PeerFormat* FindPeerFormat(OX_PixelFormat format, Sampling sampling) {
  for (const PeerFormat& f : PeerFormats())
    if (f.format == format && f.sampling == sampling) return &f;
  return nullptr;
}

namespace {
uint8_t Clip(double v) { return uint8_t(v < 0 ? 0 : v > 255 ? 255 : std::lround(v)); }

// RGB pattern at a picture position.
void Pattern(int x, int y, int w, int h, int seed, double* r, double* g, double* b) {
  const double fx = double(x) / w, fy = double(y) / h;
  *r = 255 * fx;
  *g = 255 * fy;
  *b = 128 + 100 * std::sin((x + seed * 7) * 0.05) * std::cos(y * 0.04);
  if (fx > 0.55 && fx < 0.8 && fy < 0.5) {
    // Zone plate: rising frequency.
    const double dx = x - 0.675 * w, dy = y - 0.25 * h;
    const double z = 127.5 + 100 * std::cos((dx * dx + dy * dy) * 0.0025 + seed);
    *r = *g = *b = z;
  } else if (fy > 0.6 && fy < 0.85) {
    // Sharp colour bars.
    static const double bars[8][3] = {{235, 235, 235}, {235, 235, 16}, {16, 235, 235}, {16, 235, 16},
                                      {235, 16, 235},  {235, 16, 16},  {16, 16, 235},  {16, 16, 16}};
    const int i = ((x + seed * 13) * 8 / w) & 7;
    *r = bars[i][0], *g = bars[i][1], *b = bars[i][2];
  } else if (fx < 0.25 && fy < 0.3) {
    const bool on = ((x / 6) + (y / 6) + seed) & 1;  // checker with sharp edges
    *r = *g = *b = on ? 220 : 30;
  }
}
}  // namespace

Planes MakePicture(int width, int height, Sampling sampling, int seed) {
  Planes p;
  p.width = width;
  p.height = height;
  p.chromaWidth = sampling == Sampling::k411 ? width / 4 : width / 2;
  p.chromaHeight = sampling == Sampling::k420 ? height / 2 : height;
  p.y.resize(size_t(width) * height);
  std::vector<double> cb(size_t(width) * height), cr(size_t(width) * height);
  const bool is709 = width > 720;
  const double kr = is709 ? 0.2126 : 0.299, kb = is709 ? 0.0722 : 0.114;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      double r, g, b;
      const int shifted = seed >= 2 && (y & 1) ? (x + 9) % width : x;
      Pattern(shifted, y, width, height, seed, &r, &g, &b);
      const double luma = kr * r + (1 - kr - kb) * g + kb * b;
      p.y[size_t(y) * width + x] = Clip(16 + luma * 219 / 255);
      cb[size_t(y) * width + x] = 128 + (b - luma) / (2 * (1 - kb)) * 224 / 255;
      cr[size_t(y) * width + x] = 128 + (r - luma) / (2 * (1 - kr)) * 224 / 255;
    }
  const int sx = width / p.chromaWidth, sy = height / p.chromaHeight;
  p.u.resize(size_t(p.chromaWidth) * p.chromaHeight);
  p.v.resize(p.u.size());
  for (int y = 0; y < p.chromaHeight; ++y)
    for (int x = 0; x < p.chromaWidth; ++x) {
      double su = 0, sv = 0;
      for (int j = 0; j < sy; ++j)
        for (int i = 0; i < sx; ++i) {
          su += cb[size_t(y * sy + j) * width + x * sx + i];
          sv += cr[size_t(y * sy + j) * width + x * sx + i];
        }
      p.u[size_t(y) * p.chromaWidth + x] = Clip(su / (sx * sy));
      p.v[size_t(y) * p.chromaWidth + x] = Clip(sv / (sx * sy));
    }
  return p;
}

#ifdef OMBRIX_HAVE_LIBAVCODEC
namespace {
AVPixelFormat AvFormat(Sampling s) {
  return s == Sampling::k411 ? AV_PIX_FMT_YUV411P : s == Sampling::k420 ? AV_PIX_FMT_YUV420P : AV_PIX_FMT_YUV422P;
}
}  // namespace

bool PeerAvailable() { return avcodec_find_encoder(AV_CODEC_ID_DVVIDEO) && avcodec_find_decoder(AV_CODEC_ID_DVVIDEO); }

std::vector<uint8_t> PeerEncode(const PeerFormat& format, const Planes& picture, bool interlacedDCT,
                                std::string* message) {
  av_log_set_level(AV_LOG_ERROR);
  std::vector<uint8_t> out;
  const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_DVVIDEO);
  if (!codec) return out;
  AVCodecContext* ctx = avcodec_alloc_context3(codec);
  ctx->width = format.width;
  ctx->height = format.height;
  ctx->pix_fmt = AvFormat(format.sampling);
  ctx->time_base = AVRational{format.rateDenominator, format.rateNumerator};
  ctx->framerate = AVRational{format.rateNumerator, format.rateDenominator};
  ctx->sample_aspect_ratio = AVRational{1, 1};
  if (interlacedDCT) ctx->flags |= AV_CODEC_FLAG_INTERLACED_DCT;
  int err = avcodec_open2(ctx, codec, nullptr);
  if (err < 0) {
    if (message) *message = "encoder refused the format";
    avcodec_free_context(&ctx);
    return out;
  }
  AVFrame* frame = av_frame_alloc();
  frame->width = format.width;
  frame->height = format.height;
  frame->format = ctx->pix_fmt;
  av_frame_get_buffer(frame, 32);
  for (int y = 0; y < picture.height; ++y)
    std::memcpy(frame->data[0] + y * frame->linesize[0], &picture.y[size_t(y) * picture.width], picture.width);
  for (int y = 0; y < picture.chromaHeight; ++y) {
    std::memcpy(frame->data[1] + y * frame->linesize[1], &picture.u[size_t(y) * picture.chromaWidth],
                picture.chromaWidth);
    std::memcpy(frame->data[2] + y * frame->linesize[2], &picture.v[size_t(y) * picture.chromaWidth],
                picture.chromaWidth);
  }
  frame->pts = 0;
  AVPacket* packet = av_packet_alloc();
  if (avcodec_send_frame(ctx, frame) >= 0 && avcodec_receive_packet(ctx, packet) >= 0)
    out.assign(packet->data, packet->data + packet->size);
  else if (message)
    *message = "encode failed";
  av_packet_free(&packet);
  av_frame_free(&frame);
  avcodec_free_context(&ctx);
  return out;
}

bool PeerDecode(const std::vector<uint8_t>& data, Planes* out, Sampling* sampling) {
  av_log_set_level(AV_LOG_ERROR);
  const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_DVVIDEO);
  if (!codec) return false;
  AVCodecContext* ctx = avcodec_alloc_context3(codec);
  ctx->thread_count = 1;
  bool ok = false;
  if (avcodec_open2(ctx, codec, nullptr) >= 0) {
    AVPacket* packet = av_packet_alloc();
    av_new_packet(packet, int(data.size()));
    std::memcpy(packet->data, data.data(), data.size());
    AVFrame* frame = av_frame_alloc();
    if (avcodec_send_packet(ctx, packet) >= 0 && avcodec_receive_frame(ctx, frame) >= 0) {
      const AVPixelFormat f = AVPixelFormat(frame->format);
      *sampling = f == AV_PIX_FMT_YUV411P ? Sampling::k411 : f == AV_PIX_FMT_YUV420P ? Sampling::k420 : Sampling::k422;
      out->width = frame->width;
      out->height = frame->height;
      out->chromaWidth = *sampling == Sampling::k411 ? frame->width / 4 : frame->width / 2;
      out->chromaHeight = *sampling == Sampling::k420 ? frame->height / 2 : frame->height;
      out->y.resize(size_t(out->width) * out->height);
      out->u.resize(size_t(out->chromaWidth) * out->chromaHeight);
      out->v.resize(out->u.size());
      for (int y = 0; y < out->height; ++y)
        std::memcpy(&out->y[size_t(y) * out->width], frame->data[0] + y * frame->linesize[0], out->width);
      for (int y = 0; y < out->chromaHeight; ++y) {
        std::memcpy(&out->u[size_t(y) * out->chromaWidth], frame->data[1] + y * frame->linesize[1], out->chromaWidth);
        std::memcpy(&out->v[size_t(y) * out->chromaWidth], frame->data[2] + y * frame->linesize[2], out->chromaWidth);
      }
      ok = true;
    }
    av_frame_free(&frame);
    av_packet_free(&packet);
  }
  avcodec_free_context(&ctx);
  return ok;
}
#else
bool PeerAvailable() { return false; }
std::vector<uint8_t> PeerEncode(const PeerFormat&, const Planes&, bool, std::string* message) {
  if (message) *message = "built without libavcodec";
  return {};
}
bool PeerDecode(const std::vector<uint8_t>&, Planes*, Sampling*) { return false; }
#endif

const std::vector<uint8_t>& PeerFrame(const PeerFormat& format, int seed) {
  static std::mutex lock;
  static std::map<std::pair<const PeerFormat*, int>, std::vector<uint8_t>> cache;
  std::lock_guard<std::mutex> hold(lock);
  auto it = cache.find({&format, seed});
  if (it == cache.end()) {
    it = cache.emplace(std::make_pair(&format, seed),
                       PeerEncode(format, MakePicture(format.width, format.height, format.sampling, seed), seed >= 2))
             .first;
  }
  return it->second;
}

Planes To422(const Planes& in, Sampling sampling) {
  Planes p;
  p.width = in.width;
  p.height = in.height;
  p.chromaWidth = in.width / 2;
  p.chromaHeight = in.height;
  p.y = in.y;
  p.u.resize(size_t(p.chromaWidth) * p.height);
  p.v.resize(p.u.size());
  for (int y = 0; y < p.height; ++y) {
    for (int c = 0; c < 2; ++c) {
      const std::vector<uint8_t>& src = c ? in.v : in.u;
      std::vector<uint8_t>& dst = c ? p.v : p.u;
      uint8_t* out = &dst[size_t(y) * p.chromaWidth];
      if (sampling == Sampling::k422) {
        std::memcpy(out, &src[size_t(y) * in.chromaWidth], p.chromaWidth);
      } else if (sampling == Sampling::k420) {
        const int row = 2 * (y / 4) + y % 2;
        std::memcpy(out, &src[size_t(row) * in.chromaWidth], p.chromaWidth);
      } else {
        const uint8_t* s = &src[size_t(y) * in.chromaWidth];
        for (int i = 0; i < in.chromaWidth; ++i) {
          out[2 * i] = s[i];
          out[2 * i + 1] = i + 1 < in.chromaWidth ? uint8_t((s[i] + s[i + 1] + 1) >> 1) : s[i];
        }
      }
    }
  }
  return p;
}

Planes FromPacked422(const uint8_t* data, int rowBytes, int width, int height, bool lumaFirst) {
  Planes p;
  p.width = width;
  p.height = height;
  p.chromaWidth = width / 2;
  p.chromaHeight = height;
  p.y.resize(size_t(width) * height);
  p.u.resize(size_t(p.chromaWidth) * height);
  p.v.resize(p.u.size());
  for (int y = 0; y < height; ++y) {
    const uint8_t* row = data + ptrdiff_t(y) * rowBytes;
    for (int i = 0; i < width / 2; ++i) {
      const uint8_t* q = row + 4 * i;
      const size_t c = size_t(y) * p.chromaWidth + i;
      if (lumaFirst) {
        p.y[size_t(y) * width + 2 * i] = q[0], p.u[c] = q[1], p.y[size_t(y) * width + 2 * i + 1] = q[2], p.v[c] = q[3];
      } else {
        p.u[c] = q[0], p.y[size_t(y) * width + 2 * i] = q[1], p.v[c] = q[2], p.y[size_t(y) * width + 2 * i + 1] = q[3];
      }
    }
  }
  return p;
}

double PSNR(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
  if (a.size() != b.size() || a.empty()) return 0;
  double sum = 0;
  for (size_t i = 0; i < a.size(); ++i) {
    const double d = double(a[i]) - b[i];
    sum += d * d;
  }
  if (sum == 0) return 99.0;
  return 10 * std::log10(255.0 * 255.0 * a.size() / sum);
}

}  // namespace dvtest
