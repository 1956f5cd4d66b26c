// Tables the DV decoders read, built once at start-up and read-only afterwards: the
// dequantisation multipliers of the six-block formats and the variable-length code lists from
// which the primitive layer builds its decode tables.
#pragma once

#include <cstdint>
#include <vector>

namespace OX::dv {

// [mode][row][raster position]: A(row, zig-zag area) times 256 / W rounded to the nearest
// integer; a coefficient arriving times 64 (DC times 128) multiplied by it and shifted right by
// 14 is the coefficient of the orthonormal transform.
extern uint16_t gDequant[2][14][64];
void BuildDequantisationTables();

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
