// Start-up of the DV coder's run and level tables, and the forward weights of the two modes.
#include <cstring>

#include "dv/DVTables.h"
#include "dv/SegmentCompressorTables.h"
#include "frame/Startup.h"

namespace OX {

VLCCode gDVRunLevelCodes[kCodedRuns][256];
VLCCode gDVZeroRunCodes[64];

// w(0..7) = 1, CS4/(4 CS7 CS2), CS4/(2 CS6), 1/(2 CS5), 7/8, CS4/CS3, CS4/CS2, CS4/CS1 with
// CSn = cos(n pi / 16); entry = 32768 w(v) w(h), DC 16384 (w(0)^2 / 2).
const uint16_t kDVForwardWeight88[64] = {
    16384, 32138, 30273, 29490, 28672, 27867, 25079, 23624,  //
    32138, 31521, 29692, 28924, 28121, 27331, 24598, 23170,  //
    30273, 29692, 27969, 27246, 26489, 25746, 23170, 21826,  //
    29490, 28924, 27246, 26541, 25804, 25080, 22571, 21261,  //
    28672, 28121, 26489, 25804, 25088, 24384, 21945, 20671,  //
    27867, 27331, 25746, 25080, 24384, 23699, 21328, 20091,  //
    25079, 24598, 23170, 22571, 21945, 21328, 19195, 18081,  //
    23624, 23170, 21826, 21261, 20671, 20091, 18081, 17032,
};
// The 2-4-8 mode: rows 0-3 (sums of the field pairs) and rows 4-7 (differences) are weighted by
// w(2 v) w(h); the difference DC has weight 1, saturated to 32767.
const uint16_t kDVForwardWeight248[64] = {
    16384, 32138, 30273, 29490, 28672, 27867, 25079, 23624,  //
    30273, 29692, 27969, 27246, 26489, 25746, 23170, 21826,  //
    28672, 28121, 26489, 25804, 25088, 24384, 21945, 20671,  //
    25079, 24598, 23170, 22571, 21945, 21328, 19195, 18081,  //
    32767, 32138, 30273, 29490, 28672, 27867, 25079, 23624,  //
    30273, 29692, 27969, 27246, 26489, 25746, 23170, 21826,  //
    28672, 28121, 26489, 25804, 25088, 24384, 21945, 20671,  //
    25079, 24598, 23170, 22571, 21945, 21328, 19195, 18081,
};

void BuildDVCoderTables() {
  using namespace dv;
  std::memset(gDVRunLevelCodes, 0, sizeof(gDVRunLevelCodes));
  std::memset(gDVZeroRunCodes, 0, sizeof(gDVZeroRunCodes));
  // Long form of run 0 first; the listed codes then replace it where they are shorter.
  for (int m = 1; m < 256; ++m)
    gDVRunLevelCodes[0][m] = {uint16_t((kVLCLongFormPrefix | m) << 1), uint8_t(kVLCLongFormLength + 1)};
  // Zero runs in the 13-bit form, replaced by the listed shorter codes for 1 to 6 zeros.
  for (int n = 1; n < 64; ++n) gDVZeroRunCodes[n] = {uint16_t(kVLCZeroRunPrefix | (n - 1)), kVLCZeroRunLength};
  for (int i = 0; i < kVLCListedCodeCount; ++i) {
    const dv::VLCCode& c = kVLCListedCodes[i];
    if (c.fAmplitude == 0) {
      gDVZeroRunCodes[c.fRun + 1] = {c.fBits, c.fLength};
    } else if (c.fRun < kCodedRuns) {
      // Room for the sign as the lowest bit.
      gDVRunLevelCodes[c.fRun][c.fAmplitude] = {uint16_t(c.fBits << 1), uint8_t(c.fLength + 1)};
    }
  }
}

}  // namespace OX
