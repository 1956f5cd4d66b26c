// The published DV tables as data: the variable-length codes of IEC 61834-2, the zig-zag orders
// of the two DCT modes, the weighting, the class and area quantisation, the DV100 steps and
// weights (SMPTE 370M), and the small tables of the frame model. Shared by decoder and encoders.
#pragma once

#include <cstdint>

namespace OX::dv {

// ---- Variable-length codes (IEC 61834-2) ------------------------------------------------------
// One (run, amplitude) code. `bits` holds the code without its sign bit, right-aligned in
// `length` bits; every code with a non-zero amplitude is followed by one sign bit (1 negative).
// A code with amplitude 0 stands for `run + 1` zero coefficients and carries no sign.
struct VLCCode {
  uint8_t fLength;
  uint16_t fBits;
  uint8_t fRun;
  uint8_t fAmplitude;
};
// The codes of 2 to 12 bits that the standard lists one by one (end-of-block excluded).
extern const VLCCode kVLCListedCodes[];
extern const int kVLCListedCodeCount;
// End of block: 0110.
constexpr uint8_t kVLCEndOfBlockLength = 4;
constexpr uint16_t kVLCEndOfBlockBits = 0b0110;
// Runs of n zeros for n from 1 to 64 in 13 bits: 1111110 followed by n - 1 in six bits (the
// shorter codes for n up to 6 are listed above; both forms decode).
constexpr uint8_t kVLCZeroRunLength = 13;
constexpr uint16_t kVLCZeroRunPrefix = 0b1111110 << 6;
// Run 0 with any amplitude in 15 bits plus sign: 1111111 followed by the amplitude in 8 bits.
constexpr uint8_t kVLCLongFormLength = 15;
constexpr uint16_t kVLCLongFormPrefix = 0b1111111 << 8;

// Encoder view: for run r, the largest amplitude with a direct code (0 for runs above 14).
extern const uint16_t kVLCRunLimit[64];

// ---- Scan orders --------------------------------------------------------------------------
// Zig-zag index of every raster position (row = vertical frequency v, column = horizontal h),
// as the standard draws them; and the scan orders derived from them: scan[z] = raster position.
// In the 2-4-8 mode rows 0-3 hold the sums of the two fields, rows 4-7 their differences.
inline constexpr uint8_t kZigzagIndex88[64] = {
    0,  1,  5,  6,  14, 15, 27, 28,  //
    2,  4,  7,  13, 16, 26, 29, 42,  //
    3,  8,  12, 17, 25, 30, 41, 43,  //
    9,  11, 18, 24, 31, 40, 44, 53,  //
    10, 19, 23, 32, 39, 45, 52, 54,  //
    20, 22, 33, 38, 46, 51, 55, 60,  //
    21, 34, 37, 47, 50, 56, 59, 61,  //
    35, 36, 48, 49, 57, 58, 62, 63,
};
inline constexpr uint8_t kZigzagIndex248[64] = {
    0,  2,  6,  18, 20, 34, 36, 50,  //
    4,  8,  16, 22, 32, 38, 48, 52,  //
    10, 14, 24, 30, 40, 46, 54, 60,  //
    12, 26, 28, 42, 44, 56, 58, 62,  //
    1,  3,  7,  19, 21, 35, 37, 51,  //
    5,  9,  17, 23, 33, 39, 49, 53,  //
    11, 15, 25, 31, 41, 47, 55, 61,  //
    13, 27, 29, 43, 45, 57, 59, 63,
};
struct ScanOrder {
  uint8_t f[64];
};
constexpr ScanOrder InvertZigzag(const uint8_t (&index)[64]) {
  ScanOrder t{};
  for (int p = 0; p < 64; ++p) t.f[index[p]] = uint8_t(p);
  return t;
}
inline constexpr ScanOrder kScan88 = InvertZigzag(kZigzagIndex88);
inline constexpr ScanOrder kScan248 = InvertZigzag(kZigzagIndex248);
// kScan[mode]: 0 the 8-8 DCT, 1 the 2-4-8 DCT.
inline constexpr const uint8_t* kScan[2] = {kScan88.f, kScan248.f};
// Both orders back to back (8-8 then 2-4-8), as the segment decoder takes them.
struct ScanPair {
  uint8_t f[128];
};
constexpr ScanPair MakeScanPair() {
  ScanPair t{};
  for (int i = 0; i < 64; ++i) t.f[i] = kScan88.f[i], t.f[64 + i] = kScan248.f[i];
  return t;
}
inline constexpr ScanPair kScanPairData = MakeScanPair();
inline constexpr const uint8_t* kScanPair = kScanPairData.f;

// ---- Weighting ----------------------------------------------------------------------------
// One-dimensional weights w(0..7): 1, CS4/(4 CS7 CS2), CS4/(2 CS6), 1/(2 CS5), 7/8, CS4/CS3,
// CS4/CS2, CS4/CS1, where CSm = cos(m pi / 16).
extern const double kWeight1D[8];
// W of a raster position in either mode: 8-8 w(h) w(v) / 2; 2-4-8 w(h) w(2 (v mod 4)) / 2.
double Weight(int mode, int position);

// ---- Quantisation of the six-block formats -----------------------------------------------
// Areas of the zig-zag scan: 0 for indices 1-5, 1 for 6-20, 2 for 21-42, 3 for 43-63; the DC
// (index 0) is coded apart and never scaled. kAreaEnd[a] is the first index past area a.
constexpr uint8_t kAreaEnd[4] = {6, 21, 43, 64};
constexpr int AreaOfZigzag(int z) { return z < 6 ? 0 : z < 21 ? 1 : z < 43 ? 2 : 3; }
// The step of each area, as a power of two, for the 14 rows of the dequantisation tables.
inline constexpr uint8_t kDequantRowShift[14][4] = {
    {0, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 1, 1}, {0, 1, 1, 2}, {1, 1, 2, 2}, {1, 2, 2, 3}, {2, 2, 3, 3},
    {2, 3, 3, 4}, {3, 3, 4, 4}, {1, 1, 1, 1}, {1, 1, 1, 2}, {2, 3, 3, 4}, {3, 4, 4, 5}, {4, 4, 5, 5},
};
// Row of a block from its class (0-3) and the macroblock's QNO (0-15).
inline constexpr uint8_t kDequantRowOf[4][16] = {
    {5, 5, 4, 4, 3, 3, 2, 2, 1, 0, 0, 0, 0, 0, 0, 0},
    {7, 6, 6, 5, 5, 4, 4, 3, 3, 2, 2, 1, 0, 0, 0, 0},
    {8, 8, 7, 7, 6, 6, 5, 5, 4, 4, 3, 3, 2, 2, 1, 0},
    {13, 12, 12, 8, 8, 11, 11, 6, 6, 5, 5, 4, 4, 10, 9, 9},
};
// Encoder view of the same table: the right shift of a magnitude for QNO, class and area
// (QNO 0, class 0 gives 1, 2, 2, 3; a higher QNO is finer).
constexpr uint8_t QuantShift(int qno, int classNumber, int area) {
  return kDequantRowShift[kDequantRowOf[classNumber & 3][qno & 15]][area & 3];
}

// ---- DV100 (SMPTE 370M) --------------------------------------------------------------------
// Quantiser step by QNO and class; 0 where the pair is not used.
extern const uint8_t kDV100Step[16][4];
// Weights in raster order, the first entry for the DC position: [720 ? 1 : 0][blocks 4-7 ? 1 : 0].
extern const uint16_t kDV100Weight[2][2][64];

// ---- Frame model -----------------------------------------------------------------------------
// DisplayClass of a (BCS, DISP) pair of a VSC pack, -1 where the pair is not counted.
extern const int8_t kDisplayClassOf[4][8];
// Macroblock j of a segment: the sequence offset D, and the column offsets of the layouts.
extern const uint8_t kSuperblockRowOffset[5];   // {2, 6, 8, 0, 4}
extern const uint16_t kColumnX420[5];           // 4:2:0 and DV50, in pixels
extern const uint16_t kColumnX411[5];           // 4:1:1, in pixels
extern const uint8_t kDV100ColumnOffset[5];     // 1080 lines, in macroblocks
extern const uint8_t kDV100BandOf720[5];        // 720 lines, 192-pixel bands

}  // namespace OX::dv
