// Tables of the DV coder: the (run, magnitude) and zero-run codes in the form the packer writes
// them, built at start-up from the published list, and the forward weights of the two DCT modes.
#pragma once

#include <cstdint>

namespace OX {

// Bits a segment of five compressed macroblocks may take: 30 blocks of 16 bits of overhead
// (12 of DC, mode and class, 4 of end code) and the AC bits the five blocks can hold.
inline constexpr int kSegmentBudgetBits = 3040;

// A code ready to be written: `code` right-aligned, `length` bits. Length 0 marks no code.
struct VLCCode {
  uint16_t code;
  uint8_t length;
};

// (run, magnitude) codes with the sign bit appended as their lowest bit, for the positive sign;
// a negative coefficient sets that bit. Runs 0 to 14, magnitudes 1 to kRunLimit[run].
inline constexpr int kCodedRuns = 15;
extern VLCCode gDVRunLevelCodes[kCodedRuns][256];
// Code for `n` zero coefficients, `n` 1 to 63.
extern VLCCode gDVZeroRunCodes[64];

// Forward weights in Q15, raster order, for VecMulTableRoundScaled with shift 16. AC weights are
// twice the published W(h, v) = w(h) w(v) / 2, DC is 0.5; with the shift by 16 this halves the
// transform's output, the scale of the published coefficient range.
extern const uint16_t kDVForwardWeight88[64];
extern const uint16_t kDVForwardWeight248[64];

}  // namespace OX
