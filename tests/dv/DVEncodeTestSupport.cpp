// Test pictures, subsampling references, PSNR and the libavcodec peer for the DV encoding tests.
#include "DVEncodeTestSupport.h"

#include <algorithm>
#include <cmath>
#include <random>

#ifdef OMBRIX_HAVE_LIBAVCODEC
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}
#endif

namespace ombrix_test {

const char* const kDVTestPictureNames[4] = {"smooth", "texture", "detail", "noise"};

namespace {
uint8_t Clamp(double v, double lo, double hi) { return uint8_t(std::lround(std::clamp(v, lo, hi))); }
}  // namespace

Planes MakeTestPicture422(int kind, int w, int h, uint32_t seed) {
  Planes p;
  p.w = w;
  p.h = h;
  p.cw = w / 2;
  p.ch = h;
  p.y.resize(size_t(w) * h);
  p.cb.resize(size_t(p.cw) * h);
  p.cr.resize(size_t(p.cw) * h);
  std::mt19937 rng(seed);
  std::normal_distribution<double> noise(0.0, 1.0);
  // A few random blobs and edges give every picture its own layout.
  std::uniform_real_distribution<double> u(0.0, 1.0);
  const double fx = 2 + 6 * u(rng), fy = 2 + 6 * u(rng), phase = 6.28 * u(rng);
  const double ex = w * (0.3 + 0.4 * u(rng)), ey = h * (0.3 + 0.4 * u(rng));
  for (int r = 0; r < h; ++r) {
    for (int c = 0; c < w; ++c) {
      const double x = double(c) / w, yy = double(r) / h;
      double l = 0;
      switch (kind) {
        case 0:  // smooth gradients and a soft blob
          l = 40 + 150 * x * (1 - 0.4 * yy) + 30 * std::exp(-((c - ex) * (c - ex) + (r - ey) * (r - ey)) / (w * 30.0));
          break;
        case 1:  // textures of growing frequency
          l = 126 + 50 * std::sin(phase + fx * 6.28 * x * (1 + 3 * x)) * std::cos(fy * 6.28 * yy) +
              20 * std::sin(0.9 * c + 0.3 * r);
          break;
        case 2:  // hard edges, stripes and text-like detail
          l = ((c / 24 + r / 16) % 2 ? 180 : 60) + ((c > ex) != (r > ey) ? 30 : -20) +
              ((c % 7 < 2 && r % 11 < 6) ? 40 : 0);
          break;
        default:  // a natural-like mix with grain
          l = 110 + 60 * std::sin(phase + 4 * x + 3 * yy) + 25 * std::sin(fx * 20 * x * yy) + 9 * noise(rng);
          break;
      }
      p.y[size_t(r) * w + c] = Clamp(l, 16, 235);
    }
    for (int c = 0; c < p.cw; ++c) {
      const double x = double(2 * c) / w, yy = double(r) / h;
      double cb = 128 + 60 * std::sin(phase + 3 * x + 2 * yy), cr = 128 + 50 * std::cos(2 * x - 3 * yy + phase);
      if (kind == 2) {
        cb += ((2 * c) / 48 % 2) ? 40 : -40;
        cr += (r / 32 % 2) ? -35 : 35;
      }
      if (kind == 3) {
        cb += 5 * noise(rng);
        cr += 5 * noise(rng);
      }
      p.cb[size_t(r) * p.cw + c] = Clamp(cb, 16, 240);
      p.cr[size_t(r) * p.cw + c] = Clamp(cr, 16, 240);
    }
  }
  return p;
}

std::vector<uint8_t> PackYUYV(const Planes& p) {
  std::vector<uint8_t> out(size_t(p.w) * 2 * p.h);
  for (int r = 0; r < p.h; ++r)
    for (int i = 0; i < p.w / 2; ++i) {
      uint8_t* q = &out[size_t(r) * p.w * 2 + 4 * i];
      q[0] = p.y[size_t(r) * p.w + 2 * i];
      q[1] = p.cb[size_t(r) * p.cw + i];
      q[2] = p.y[size_t(r) * p.w + 2 * i + 1];
      q[3] = p.cr[size_t(r) * p.cw + i];
    }
  return out;
}

std::vector<uint8_t> PackUYVY(const Planes& p) {
  std::vector<uint8_t> out = PackYUYV(p);
  for (size_t i = 0; i < out.size(); i += 2) std::swap(out[i], out[i + 1]);
  return out;
}

namespace {
void Halve(const uint8_t* in, int n, uint8_t* out) {
  for (int i = 0; i < n / 2; ++i) {
    const int c = 2 * i;
    const int l = in[std::max(c - 1, 0)], r = in[std::min(c + 1, n - 1)];
    out[i] = uint8_t((l + 2 * in[c] + r + 2) >> 2);
  }
}
}  // namespace

Planes To411(const Planes& s) {
  Planes p;
  p.w = s.w;
  p.h = s.h;
  p.y = s.y;
  p.cw = s.cw / 2;
  p.ch = s.h;
  p.cb.resize(size_t(p.cw) * p.ch);
  p.cr.resize(size_t(p.cw) * p.ch);
  for (int r = 0; r < s.h; ++r) {
    Halve(&s.cb[size_t(r) * s.cw], s.cw, &p.cb[size_t(r) * p.cw]);
    Halve(&s.cr[size_t(r) * s.cw], s.cw, &p.cr[size_t(r) * p.cw]);
  }
  return p;
}

Planes To420(const Planes& s) {
  Planes p;
  p.w = s.w;
  p.h = s.h;
  p.y = s.y;
  p.cw = s.cw;
  p.ch = s.h / 2;
  p.cb.resize(size_t(p.cw) * p.ch);
  p.cr.resize(size_t(p.cw) * p.ch);
  for (int r = 0; r < p.ch; ++r) {
    const int a = 4 * (r / 2) + r % 2, b = a + 2;
    for (int c = 0; c < p.cw; ++c) {
      p.cb[size_t(r) * p.cw + c] = uint8_t((s.cb[size_t(a) * s.cw + c] + s.cb[size_t(b) * s.cw + c] + 1) >> 1);
      p.cr[size_t(r) * p.cw + c] = uint8_t((s.cr[size_t(a) * s.cw + c] + s.cr[size_t(b) * s.cw + c] + 1) >> 1);
    }
  }
  return p;
}

double PlanesPSNR(const Planes& a, const Planes& b) {
  if (a.w != b.w || a.h != b.h || a.cw != b.cw || a.ch != b.ch) return -1;
  double sum = 0;
  size_t n = 0;
  auto add = [&](const std::vector<uint8_t>& x, const std::vector<uint8_t>& y) {
    for (size_t i = 0; i < x.size(); ++i) {
      const double d = double(x[i]) - double(y[i]);
      sum += d * d;
    }
    n += x.size();
  };
  add(a.y, b.y);
  add(a.cb, b.cb);
  add(a.cr, b.cr);
  if (sum == 0) return 99.0;
  return 10 * std::log10(255.0 * 255.0 / (sum / double(n)));
}

#ifdef OMBRIX_HAVE_LIBAVCODEC
bool PeerAvailable() {
  return avcodec_find_decoder(AV_CODEC_ID_DVVIDEO) && avcodec_find_encoder(AV_CODEC_ID_DVVIDEO);
}

PeerDecoded PeerDecode(const uint8_t* frame, size_t bytes) {
  PeerDecoded result;
  const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_DVVIDEO);
  if (!codec) return result;
  AVCodecContext* ctx = avcodec_alloc_context3(codec);
  ctx->thread_count = 1;
  if (avcodec_open2(ctx, codec, nullptr) < 0) {
    avcodec_free_context(&ctx);
    return result;
  }
  AVPacket* packet = av_packet_alloc();
  std::vector<uint8_t> padded(bytes + AV_INPUT_BUFFER_PADDING_SIZE, 0);
  std::copy(frame, frame + bytes, padded.begin());
  packet->data = padded.data();
  packet->size = int(bytes);
  AVFrame* picture = av_frame_alloc();
  if (avcodec_send_packet(ctx, packet) >= 0 && avcodec_receive_frame(ctx, picture) >= 0) {
    result.ok = true;
    result.width = picture->width;
    result.height = picture->height;
    result.pixelFormat = av_get_pix_fmt_name(AVPixelFormat(picture->format));
    result.sarNum = picture->sample_aspect_ratio.num;
    result.sarDen = picture->sample_aspect_ratio.den;
    const AVPixFmtDescriptor* d = av_pix_fmt_desc_get(AVPixelFormat(picture->format));
    Planes& p = result.planes;
    p.w = picture->width;
    p.h = picture->height;
    p.cw = AV_CEIL_RSHIFT(p.w, d->log2_chroma_w);
    p.ch = AV_CEIL_RSHIFT(p.h, d->log2_chroma_h);
    auto copy = [&](int plane, int w, int h, std::vector<uint8_t>& out) {
      out.resize(size_t(w) * h);
      for (int r = 0; r < h; ++r)
        std::copy(picture->data[plane] + size_t(r) * picture->linesize[plane],
                  picture->data[plane] + size_t(r) * picture->linesize[plane] + w, out.begin() + size_t(r) * w);
    };
    copy(0, p.w, p.h, p.y);
    copy(1, p.cw, p.ch, p.cb);
    copy(2, p.cw, p.ch, p.cr);
  }
  av_frame_free(&picture);
  av_packet_free(&packet);
  avcodec_free_context(&ctx);
  return result;
}

std::vector<uint8_t> PeerEncode(const Planes& p, bool fiftyHertz, bool progressive) {
  std::vector<uint8_t> out;
  const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_DVVIDEO);
  if (!codec) return out;
  AVCodecContext* ctx = avcodec_alloc_context3(codec);
  ctx->width = p.w;
  ctx->height = p.h;
  ctx->thread_count = 1;
  ctx->pix_fmt = p.cw * 4 == p.w ? AV_PIX_FMT_YUV411P : p.ch * 2 == p.h ? AV_PIX_FMT_YUV420P : AV_PIX_FMT_YUV422P;
  if (progressive)
    ctx->time_base = fiftyHertz ? AVRational{1, 50} : AVRational{1001, 60000};
  else
    ctx->time_base = fiftyHertz ? AVRational{1, 25} : AVRational{1001, 30000};
  if (avcodec_open2(ctx, codec, nullptr) < 0) {
    avcodec_free_context(&ctx);
    return out;
  }
  AVFrame* frame = av_frame_alloc();
  frame->format = ctx->pix_fmt;
  frame->width = p.w;
  frame->height = p.h;
  av_frame_get_buffer(frame, 32);
  auto fill = [&](int plane, int w, int h, const std::vector<uint8_t>& in) {
    for (int r = 0; r < h; ++r)
      std::copy(in.begin() + size_t(r) * w, in.begin() + size_t(r) * w + w,
                frame->data[plane] + size_t(r) * frame->linesize[plane]);
  };
  fill(0, p.w, p.h, p.y);
  fill(1, p.cw, p.ch, p.cb);
  fill(2, p.cw, p.ch, p.cr);
  frame->pts = 0;
  AVPacket* packet = av_packet_alloc();
  if (avcodec_send_frame(ctx, frame) >= 0 && avcodec_receive_packet(ctx, packet) >= 0)
    out.assign(packet->data, packet->data + packet->size);
  av_packet_free(&packet);
  av_frame_free(&frame);
  avcodec_free_context(&ctx);
  return out;
}
#else
bool PeerAvailable() { return false; }
PeerDecoded PeerDecode(const uint8_t*, size_t) { return {}; }
std::vector<uint8_t> PeerEncode(const Planes&, bool, bool) { return {}; }
#endif

}  // namespace ombrix_test
