// DV operations of the primitive layer: the decode table builder and the entry functions, which
// dispatch on PrimitiveLevel. The variable-length decode is bit-serial by nature and has one
// form at every level; the row packers and the sample store have a portable and an SSE2 form.
#include <new>

#include "primitives/DVPrimitives.h"
#include "primitives/Primitives.h"

namespace OX {
namespace {

// Fills the entries of one level from its code list; false when the list is malformed.
bool FillLevel(const int32_t* list, uint32_t* entries, int lengthAdded) {
  const int width = list[0];
  if (width != kDVVLCFirstLevelBits || list[1] != 0 || list[2] != 0) return false;
  const int32_t* p = list + 3;
  for (int length = 1; length <= width; ++length) {
    const int count = *p++;
    if (count < 0 || count > (1 << length)) return false;
    for (int i = 0; i < count; ++i, p += 3) {
      const uint32_t code = uint32_t(p[0]);
      if (code >= (1u << length)) return false;
      const int shift = width - length;
      const uint32_t entry = DVVLCEntry(length + lengthAdded, p[1], p[2] * 64);
      for (uint32_t fill = 0; fill < (1u << shift); ++fill) entries[(code << shift) | fill] = entry;
    }
  }
  return true;
}

template <class F>
struct Slots {
  F f[kPrimitiveLevels];
};
constexpr Slots<decltype(&portable::DVDecodeSegment)> kDecodeSegment = {
    {portable::DVDecodeSegment, portable::DVDecodeSegment, portable::DVDecodeSegment, portable::DVDecodeSegment,
     portable::DVDecodeSegment, portable::DVDecodeSegment, portable::DVDecodeSegment}};
constexpr Slots<decltype(&portable::DV100DecodeSegment)> kDV100DecodeSegment = {
    {portable::DV100DecodeSegment, portable::DV100DecodeSegment, portable::DV100DecodeSegment,
     portable::DV100DecodeSegment, portable::DV100DecodeSegment, portable::DV100DecodeSegment,
     portable::DV100DecodeSegment}};
// The packers: SSE2 from level 1 on; the wider levels gain nothing on rows of 32 bytes.
constexpr Slots<decltype(&portable::DV50PackRows)> kDV50PackRows = {
    {portable::DV50PackRows, sse2::DV50PackRows, sse2::DV50PackRows, sse2::DV50PackRows, sse2::DV50PackRows,
     sse2::DV50PackRows, sse2::DV50PackRows}};
constexpr Slots<decltype(&portable::DV100PackRows)> kDV100PackRows = {
    {portable::DV100PackRows, sse2::DV100PackRows, sse2::DV100PackRows, sse2::DV100PackRows,
     sse2::DV100PackRows, sse2::DV100PackRows, sse2::DV100PackRows}};

constexpr Slots<decltype(&portable::DVStoreSamples)> kDVStoreSamples = {
    {portable::DVStoreSamples, sse2::DVStoreSamples, sse2::DVStoreSamples, sse2::DVStoreSamples,
     sse2::DVStoreSamples, sse2::DVStoreSamples, sse2::DVStoreSamples}};

inline int Slot() {
  const int level = PrimitiveLevel;
  return level < 0 || level >= kPrimitiveLevels ? 0 : level;
}

}  // namespace

int32_t VecDVBuildVLCTable(const int32_t* firstList, const int32_t* secondList, void** table) {
  if (!firstList || !secondList || !table) return kPrimNullPointer;
  uint32_t* entries = new (std::nothrow) uint32_t[kDVVLCEntries];
  if (!entries) return kPrimBadLength;
  for (int i = 0; i < kDVVLCEntries; ++i) entries[i] = kDVVLCEmptyLength;
  // Second-level codes all begin with four ones that the 9-bit index does not see.
  if (!FillLevel(firstList, entries, 0) || !FillLevel(secondList, entries + 512, 4)) {
    delete[] entries;
    return kPrimBadLength;
  }
  *table = entries;
  return kPrimOK;
}

int32_t VecDVFreeVLCTable(void* table) {
  if (!table) return kPrimNullPointer;
  delete[] static_cast<uint32_t*>(table);
  return kPrimOK;
}

int32_t VecDVDecodeSegment(const uint8_t* segment, const uint8_t* order, const void* table, int16_t* coefficients,
                           uint32_t* blockInfo) {
  return kDecodeSegment.f[Slot()](segment, order, table, coefficients, blockInfo);
}

int32_t VecDV100DecodeSegment(const uint8_t* segment, const uint8_t* order, const void* table,
                              int16_t* coefficients, uint32_t* blockInfo) {
  return kDV100DecodeSegment.f[Slot()](segment, order, table, coefficients, blockInfo);
}

int32_t VecDV50PackRows(const int16_t* const* blockPointers, uint8_t* const* rowPointers, int32_t rowStep) {
  return kDV50PackRows.f[Slot()](blockPointers, rowPointers, rowStep);
}

int32_t VecDV100PackRows(const int16_t* coefficients, uint8_t* const* rowPointers, int32_t rowStep) {
  return kDV100PackRows.f[Slot()](coefficients, rowPointers, rowStep);
}

int32_t VecDVStoreSamples(const int16_t* source, int32_t sourceStep, uint8_t* destination,
                          int32_t destinationRowBytes, int32_t width, int32_t rows) {
  if (!source || !destination) return kPrimNullPointer;
  if (width < 0 || rows < 0) return kPrimBadLength;
  kDVStoreSamples.f[Slot()](source, sourceStep, destination, destinationRowBytes, width, rows);
  return kPrimOK;
}

}  // namespace OX
