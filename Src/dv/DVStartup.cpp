// Start-up and shut-down of the DV decode tables: the dequantisation multipliers and the two
// variable-length decode tables, built through the primitive layer's table builder.
#include <cmath>

#include "dv/DVDecodeTables.h"
#include "dv/DVTables.h"
#include "frame/Globals.h"
#include "frame/Startup.h"
#include "primitives/DVPrimitives.h"
#include "primitives/Primitives.h"

namespace OX {
namespace dv {

uint16_t gDequant[2][14][64];

void BuildDequantisationTables() {
  for (int mode = 0; mode < 2; ++mode) {
    const uint8_t* zigzag = mode ? kZigzagIndex248 : kZigzagIndex88;
    for (int row = 0; row < 14; ++row) {
      for (int p = 0; p < 64; ++p) {
        const int z = zigzag[p];
        const int a = z == 0 ? 1 : 1 << kDequantRowShift[row][AreaOfZigzag(z)];
        gDequant[mode][row][p] = uint16_t(a * std::lround(256.0 / Weight(mode, p)));
      }
    }
  }
}

int16_t gDCOnlySample[2][2 * kDCOnlyRange];
bool gDCOnlyUniform[2][2 * kDCOnlyRange];

void BuildDCOnlyTable() {
  for (int mode = 0; mode < 2; ++mode) {
    for (int index = 0; index < 2 * kDCOnlyRange; ++index) {
      alignas(16) int16_t block[64] = {};
      block[0] = int16_t(index - kDCOnlyRange);
      if (mode) {
        VecDCT248Inverse(block);
      } else {
        VecDCT8x8Inverse(block);
      }
      bool uniform = true;
      for (int i = 1; i < 64; ++i) uniform &= block[i] == block[0];
      gDCOnlySample[mode][index] = block[0];
      gDCOnlyUniform[mode][index] = uniform;
    }
  }
}

namespace {

struct Code {
  int length;  // with the sign bit
  uint32_t bits;
  int run, value;
};

void AddCode(std::vector<Code> (&byLength)[17], int length, uint32_t bits, int run, int value) {
  byLength[length].push_back({length, bits, run, value});
}

// Serialises the codes of the lengths [from, to] as one list, dropping `dropBits` leading bits.
std::vector<int32_t> MakeList(const std::vector<Code> (&byLength)[17], int from, int to, int dropBits) {
  std::vector<int32_t> list = {kDVVLCFirstLevelBits, 0, 0};
  for (int length = 1; length <= kDVVLCFirstLevelBits; ++length) {
    const int source = length + dropBits;
    if (source < from || source > to) {
      list.push_back(0);
      continue;
    }
    list.push_back(int32_t(byLength[source].size()));
    for (const Code& c : byLength[source]) {
      list.push_back(int32_t(c.bits & ((1u << length) - 1)));
      list.push_back(c.run);
      list.push_back(c.value);
    }
  }
  return list;
}

}  // namespace

VLCCodeLists MakeVLCCodeLists() {
  std::vector<Code> byLength[17];
  for (int i = 0; i < kVLCListedCodeCount; ++i) {
    const VLCCode& c = kVLCListedCodes[i];
    if (c.fAmplitude == 0) {
      AddCode(byLength, c.fLength, c.fBits, c.fRun, 0);
    } else {
      AddCode(byLength, c.fLength + 1, uint32_t(c.fBits) << 1, c.fRun, c.fAmplitude);
      AddCode(byLength, c.fLength + 1, uint32_t(c.fBits) << 1 | 1, c.fRun, -c.fAmplitude);
    }
  }
  AddCode(byLength, kVLCEndOfBlockLength, kVLCEndOfBlockBits, kDVEndOfBlockRun, 0);
  // Runs of n zeros: written as run n - 1 followed by a zero value.
  for (int n = 1; n <= 64; ++n) AddCode(byLength, kVLCZeroRunLength, kVLCZeroRunPrefix | uint32_t(n - 1), n - 1, 0);
  VLCCodeLists lists;
  lists.fFirst = MakeList(byLength, 1, 9, 0);
  lists.fSecond = MakeList(byLength, 10, 13, 4);
  return lists;
}

const void* DV25DecodeTable() { return gDVEntropyTableA; }
const void* DV50DecodeTable() { return gDVEntropyTableB; }

}  // namespace dv

namespace {
void BuildDecodeTable(void** table) {
  const dv::VLCCodeLists lists = dv::MakeVLCCodeLists();
  void* built = nullptr;
  if (VecDVBuildVLCTable(lists.fFirst.data(), lists.fSecond.data(), &built) == 0) *table = built;
}
void FreeDecodeTable(void*& table) {
  if (table) VecDVFreeVLCTable(table);
  table = nullptr;
}
}  // namespace

void BuildDVDequantisationTables() {
  dv::BuildDequantisationTables();
  dv::BuildDCOnlyTable();
  BuildDecodeTable(&gDVEntropyTableB);
}
void BuildDVEntropyTableA() { BuildDecodeTable(&gDVEntropyTableA); }
void FreeDVEntropyTableB() { FreeDecodeTable(gDVEntropyTableB); }
void FreeDVEntropyTableA() { FreeDecodeTable(gDVEntropyTableA); }

}  // namespace OX
