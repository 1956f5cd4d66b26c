// Shared pieces of the DV encoding tests: seeded test pictures in planar 4:2:2, packing into the
// library's formats, the reference subsampling of the DV25 encoder, PSNR, and libavcodec's DV
// decoder and encoder as the independent peer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Ombrix.h"

namespace ombrix_test {

// Planar picture: luma w x h, chroma cw x ch.
struct Planes {
  int w = 0, h = 0, cw = 0, ch = 0;
  std::vector<uint8_t> y, cb, cr;
};

// The named pictures every quality table runs: smooth, textured, detailed, noisy.
extern const char* const kDVTestPictureNames[4];
// A 4:2:2 studio-range picture of `w` x `h`, content by `kind` (0-3), seeded by `seed`.
Planes MakeTestPicture422(int kind, int w, int h, uint32_t seed);
// Packing into YUYV_422_8u (tight rows of 2 w bytes) and UYVY.
std::vector<uint8_t> PackYUYV(const Planes& p);
std::vector<uint8_t> PackUYVY(const Planes& p);

// The DV25 encoder's chroma path: [1 2 1] / 4 halving horizontally (4:1:1), or field-row
// averaging vertically (4:2:0, chroma row r from rows 4 (r / 2) + r % 2 and two below).
Planes To411(const Planes& p422);
Planes To420(const Planes& p422);

// PSNR over all samples of the three planes (same geometry required).
double PlanesPSNR(const Planes& a, const Planes& b);

// libavcodec's view of a DV frame.
struct PeerDecoded {
  bool ok = false;
  int width = 0, height = 0;
  std::string pixelFormat;  // "yuv411p", "yuv420p", "yuv422p"
  int sarNum = 0, sarDen = 0;
  Planes planes;
};
bool PeerAvailable();
PeerDecoded PeerDecode(const uint8_t* frame, size_t bytes);
// libavcodec's DV encoder on `p` (chroma geometry picks the pixel format), frame rate 50 Hz
// family when `fiftyHertz`; empty on failure.
std::vector<uint8_t> PeerEncode(const Planes& p, bool fiftyHertz, bool progressive);

}  // namespace ombrix_test
