// The DV operations of the primitive layer: the two-level variable-length decode table, the
// segment decoders of the six-block and eight-block formats, and the packers of DV50 and DV100
// macroblocks into YUYV rows. Same status convention as the rest of the layer (0, -8, -6).
#pragma once

#include <cstdint>

namespace OX {

// ---- Decode table ----------------------------------------------------------------------------
// 512 first-level entries indexed by the next 9 bits, then 512 second-level entries indexed by
// the low 9 bits of the next 13 bits (peeks of 480 to 507). Each entry: bits 0-7 the code
// length including the sign bit (255 empty), bits 8-15 the run, bits 16-31 the signed value
// times 64. End of block has run kDVEndOfBlockRun. Peeks of 508 and above are the long form.
constexpr int kDVVLCFirstLevelBits = 9;
constexpr int kDVVLCEntries = 1024;
constexpr uint32_t kDVVLCEmptyLength = 255;
constexpr int kDVEndOfBlockRun = 64;
constexpr int kDVFirstLevelLimit = 480;
constexpr int kDVSecondLevelLimit = 508;
inline uint32_t DVVLCEntry(int length, int run, int value64) {
  return uint32_t(length & 0xFF) | uint32_t(run & 0xFF) << 8 | uint32_t(uint16_t(int16_t(value64))) << 16;
}

// Code lists, one a level: the level's width in bits (9), two zero words, then for each code
// length 1 to the width a count followed by that many (code, run, signed value) triples. Codes
// include their sign bit; second-level codes are listed without the four leading ones that
// every one of them shares (the builder adds 4 to their lengths).
// Builds the table into a new allocation stored in `*table`; free it with VecDVFreeVLCTable.
int32_t VecDVBuildVLCTable(const int32_t* firstList, const int32_t* secondList, void** table);
int32_t VecDVFreeVLCTable(void* table);

// ---- Segment decode ------------------------------------------------------------------------
// Decodes the five video blocks (400 bytes) of one segment at `segment`: 5 macroblocks of 6
// blocks (payload 14, 14, 14, 14, 10, 10 bytes) into `coefficients`, 30 blocks of 64 values in
// raster order, which the caller has cleared. `order` holds the two scan orders, 8-8 then
// 2-4-8 (128 bytes); each block uses the one its DCT mode bit names. DC arrives as the 9-bit
// value times 128, AC values times 64. `blockInfo` receives 30 words QNO << 16 | (the block's
// second byte & 0x70), that is the mode bit at 6 and the class at bits 5-4.
// Damaged data never fails: every block gets what could be read.
int32_t VecDVDecodeSegment(const uint8_t* segment, const uint8_t* order, const void* table, int16_t* coefficients,
                           uint32_t* blockInfo);
// The same for the eight-block DV100 macroblock (payload 10 x 6, 8 x 2 bytes), 40 blocks and 40
// words; `order` is one scan of 64 bytes.
int32_t VecDV100DecodeSegment(const uint8_t* segment, const uint8_t* order, const void* table,
                              int16_t* coefficients, uint32_t* blockInfo);

// ---- Packing ---------------------------------------------------------------------------------
// DV50: for each of five macroblocks j, `blockPointers[j]` points at its six transformed blocks
// of 64 signed samples (the first sample row to read; + 8 samples for the second field), and
// `rowPointers[j * 8 + r]` at output row r. Writes 8 / rowStep rows of 16 YUYV pixels: Y from
// block 0 then block 2, U from block 5, V from block 4, block row r * rowStep; each sample v is
// stored as v + 128 limited to 0..255.
int32_t VecDV50PackRows(const int16_t* const* blockPointers, uint8_t* const* rowPointers, int32_t rowStep);
// DV100: `coefficients` holds 5 macroblocks of eight transformed blocks (+ 8 samples for the
// second field); `rowPointers[j * 16 + h * 8 + r]` is row r of half h of macroblock j. Half 0
// takes Y from blocks 0 and 1, V from 4, U from 6; half 1 Y from 2 and 3, V from 5, U from 7.
int32_t VecDV100PackRows(const int16_t* coefficients, uint8_t* const* rowPointers, int32_t rowStep);
// Stores `rows` rows of `width` signed samples as bytes: row r is read from `source + r *
// sourceStep` (in samples) and written to `destination + r * destinationRowBytes`; each sample v
// becomes v + 128 limited to 0..255. A width or row count of 0 writes nothing (-6 below 0).
int32_t VecDVStoreSamples(const int16_t* source, int32_t sourceStep, uint8_t* destination,
                          int32_t destinationRowBytes, int32_t width, int32_t rows);

namespace portable {
int32_t DVDecodeSegment(const uint8_t*, const uint8_t*, const void*, int16_t*, uint32_t*);
int32_t DV100DecodeSegment(const uint8_t*, const uint8_t*, const void*, int16_t*, uint32_t*);
int32_t DV50PackRows(const int16_t* const*, uint8_t* const*, int32_t);
int32_t DV100PackRows(const int16_t*, uint8_t* const*, int32_t);
void DVStoreSamples(const int16_t*, int32_t, uint8_t*, int32_t, int32_t, int32_t);
}  // namespace portable
namespace sse2 {
int32_t DV50PackRows(const int16_t* const*, uint8_t* const*, int32_t);
int32_t DV100PackRows(const int16_t*, uint8_t* const*, int32_t);
void DVStoreSamples(const int16_t*, int32_t, uint8_t*, int32_t, int32_t, int32_t);
}  // namespace sse2

}  // namespace OX
