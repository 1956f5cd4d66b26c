// An independent DV encoder and decoder for the tests: libavcodec's dvvideo, fed with synthetic
// pictures that have detail, edges and colour.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Ombrix.h"

namespace dvtest {

// Planar 8-bit picture; chroma planes of the layout's size.
struct Planes {
  int width = 0, height = 0;
  int chromaWidth = 0, chromaHeight = 0;
  std::vector<uint8_t> y, u, v;
};

enum class Sampling { k411, k420, k422 };

// One DV format that the peer encoder can produce.
struct PeerFormat {
  const char* name;
  OX_PixelFormat format;
  int width, height;
  Sampling sampling;
  int rateNumerator, rateDenominator;  // frame rate the encoder is told
};
const std::vector<PeerFormat>& PeerFormats();
const PeerFormat* FindPeerFormat(OX_PixelFormat format, Sampling sampling);

// A synthetic picture for a format: gradients, a zone plate, sharp coloured bars and a checker;
// `seed` moves the pattern so that frames differ; from seed 2 on the second field is shifted, as
// motion between fields would, which makes an encoder choose the 2-4-8 DCT.
Planes MakePicture(int width, int height, Sampling sampling, int seed);

bool PeerAvailable();
// Encodes one picture; empty on failure. `message` says why.
// `interlacedDCT` lets the encoder pick the 2-4-8 DCT where the fields differ.
std::vector<uint8_t> PeerEncode(const PeerFormat& format, const Planes& picture, bool interlacedDCT = false,
                                std::string* message = nullptr);
// The encoded frame of a format and seed (seed 2 with the interlaced DCT), made once per run;
// empty when the peer cannot produce it.
const std::vector<uint8_t>& PeerFrame(const PeerFormat& format, int seed);
// Decodes one frame; the planes keep the frame's own sampling.
bool PeerDecode(const std::vector<uint8_t>& frame, Planes* out, Sampling* sampling);

// The same 4:2:2 layout for both decoders: 4:1:1 chroma doubled with the rounding average of
// neighbours (last sample repeated), 4:2:0 chroma rows taken by field as DV stores them.
Planes To422(const Planes& in, Sampling sampling);
// Planes of a packed 4:2:2 buffer (UYVY when `lumaFirst` is false, YUYV when true).
Planes FromPacked422(const uint8_t* data, int rowBytes, int width, int height, bool lumaFirst);

double PSNR(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b);

}  // namespace dvtest
