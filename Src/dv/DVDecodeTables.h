// Tables the DV decoders read, built once at start-up and read-only afterwards: the
// dequantisation multipliers of the six-block formats and the variable-length code lists from
// which the primitive layer builds its decode tables.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

namespace OX::dv {

// [mode][row][raster position]: A(row, zig-zag area) times 256 / W rounded to the nearest
// integer; a coefficient arriving times 64 (DC times 128) multiplied by it and shifted right by
// 14 is the coefficient of the orthonormal transform.
extern uint16_t gDequant[2][14][64];
void BuildDequantisationTables();

// Blocks whose only coefficient is the DC transform to one value everywhere: that value for each
// dequantised DC (-1024 to 1023) and mode, taken from the inverse transforms themselves at
// start-up, so that skipping them changes no sample.
constexpr int kDCOnlyRange = 1024;
extern int16_t gDCOnlySample[2][2 * kDCOnlyRange];
extern bool gDCOnlyUniform[2][2 * kDCOnlyRange];
void BuildDCOnlyTable();
// Fills `block` with its transform and returns true when every AC coefficient is zero and the
// table holds its DC; otherwise leaves it for the full transform.
inline bool TransformDCOnly(int16_t* block, int mode) {
  uint64_t any = 0, four;
  std::memcpy(&four, block, 8);
  any |= four & ~uint64_t(0xFFFF);
  for (int i = 4; i < 64; i += 4) {
    std::memcpy(&four, block + i, 8);
    any |= four;
  }
  const int index = block[0] + kDCOnlyRange;
  if (any || index < 0 || index >= 2 * kDCOnlyRange || !gDCOnlyUniform[mode][index]) return false;
  const int16_t value = gDCOnlySample[mode][index];
  for (int i = 0; i < 64; ++i) block[i] = value;
  return true;
}

// The two code lists of the decode table (first level: codes of up to 9 bits with their sign;
// second level: the codes of 10 to 13 bits without their four leading ones).
struct VLCCodeLists {
  std::vector<int32_t> fFirst, fSecond;
};
VLCCodeLists MakeVLCCodeLists();

// The decode tables: A serves DV25, B serves DV50 and DV100 (both from the same lists).
const void* DV25DecodeTable();
const void* DV50DecodeTable();

}  // namespace OX::dv
