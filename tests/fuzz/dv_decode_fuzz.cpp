// Fuzz target: arbitrary bytes as a frame of one of the eight DV formats, decoded through
// OX_Convert at every size the decoders give and into raw formats of every kind. The family is
// chosen with OMBRIX_FUZZ_FAMILY (dv25, dv50, dv100; all when unset). Half of the inputs damage a
// real frame from libavcodec's encoder instead, so that the fuzzer starts deep in valid streams.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Ombrix.h"
#include "conversion/DecodeTarget.h"
#include "dv/DVPeer.h"

namespace {

const OX_PixelFormat kDV25[] = {OX_PixelFormat_NTSCDV25, OX_PixelFormat_PALDV25};
const OX_PixelFormat kDV50[] = {OX_PixelFormat_NTSCDV50, OX_PixelFormat_PALDV50};
const OX_PixelFormat kDV100[] = {OX_PixelFormat_NTSC_DV100_720p, OX_PixelFormat_PAL_DV100_720p,
                                 OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_PAL_DV100_1080i};
const OX_PixelFormat kAll[] = {OX_PixelFormat_NTSCDV25,        OX_PixelFormat_PALDV25,
                               OX_PixelFormat_NTSC_DV100_720p, OX_PixelFormat_PAL_DV100_720p,
                               OX_PixelFormat_NTSC_DV100_1080i, OX_PixelFormat_PAL_DV100_1080i,
                               OX_PixelFormat_NTSCDV50,        OX_PixelFormat_PALDV50};
const OX_PixelFormat* gFormats = kAll;
size_t gFormatCount = 8;

const OX_PixelFormat kTargets[] = {
    OX_PixelFormat_UYVY_422_8u,  OX_PixelFormat_YUYV_422_8u,    OX_PixelFormat_YUYV_422_8u_709,
    OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_BGRA_4444_8u,   OX_PixelFormat_BGRX_4444_8u,
    OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_V210_422_10u,
};

// One real frame a format (where the peer encoder makes one), encoded at start.
std::vector<std::vector<uint8_t>> gBaseFrames(9);
int BaseIndex(OX_PixelFormat format) { return int(format >> 24); }

struct Size {
  int w, h;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  OX_Initialize();
  const char* family = std::getenv("OMBRIX_FUZZ_FAMILY");
  const std::string f = family ? family : "";
  if (f == "dv25") gFormats = kDV25, gFormatCount = 2;
  if (f == "dv50") gFormats = kDV50, gFormatCount = 2;
  if (f == "dv100") gFormats = kDV100, gFormatCount = 4;
  for (const dvtest::PeerFormat& p : dvtest::PeerFormats()) {
    std::vector<uint8_t>& base = gBaseFrames[BaseIndex(p.format)];
    if (base.empty()) base = dvtest::PeerEncode(p, dvtest::MakePicture(p.width, p.height, p.sampling, 2), true);
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  const OX_PixelFormat format = gFormats[data[0] % gFormatCount];
  const OX_PixelFormat target = kTargets[(data[1] & 0x3F) % (sizeof(kTargets) / sizeof(kTargets[0]))];
  const int choice = data[2];
  const bool damageRealFrame = (data[1] & 0x80) != 0;
  const bool convertFurther = (data[1] & 0x40) != 0;
  data += 3;
  size -= 3;
  // The frame: a real frame damaged by the input, or the input repeated to the format's size so
  // that short inputs reach every sequence.
  const int32_t frameBytes = OX_PixelFormatSize(format, 0, 0);
  std::vector<uint8_t> frame(size_t(frameBytes), 0xFF);
  const std::vector<uint8_t>& base = gBaseFrames[BaseIndex(format)];
  if (damageRealFrame && base.size() == frame.size() && size >= 3) {
    // Damage a real frame: the input from byte 3 on is XORed over it from a chosen offset.
    frame = base;
    const size_t offset = (size_t(data[0]) << 16 | size_t(data[1]) << 8 | data[2]) % frame.size();
    for (size_t i = 3; i < size; ++i) frame[(offset + i - 3) % frame.size()] ^= data[i];
  } else if (size > 0) {
    for (size_t i = 0; i < frame.size(); ++i) frame[i] = data[i % size];
  }

  int W = 720, H = format == OX_PixelFormat_NTSCDV25 || format == OX_PixelFormat_NTSCDV50 ? 480 : 576;
  if (format == OX_PixelFormat_NTSC_DV100_720p || format == OX_PixelFormat_PAL_DV100_720p) W = 960, H = 720;
  if (format == OX_PixelFormat_NTSC_DV100_1080i) W = 1280, H = 1080;
  if (format == OX_PixelFormat_PAL_DV100_1080i) W = 1440, H = 1080;
  const Size sizes[] = {{W, H}, {W, H / 2}, {W / 2, H / 2}, {W / 4, H / 4}, {W / 8, H / 8}};
  const Size s = sizes[choice % 5];
  const int quality = (choice / 5) % 6;

  // Mostly the decoder's own format at that size (the decoder's work alone), sometimes another
  // raw format through the conversion behind it.
  OX_PixelFormat destination = target;
  if (!convertFurther) {
    int32_t w = 0, h = 0;
    OX_ChooseDecodeTarget(format, s.w, s.h, target, s.w, s.h, quality, &destination, &w, &h);
  }
  const int32_t rowBytes = s.w * 16 + 64;
  std::vector<uint8_t> out(size_t(rowBytes) * s.h + 64);
  OX_Convert(frame.data(), 0, format, out.data(), rowBytes, destination, s.w, s.h, quality);
  return 0;
}
