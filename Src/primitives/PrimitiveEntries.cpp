// The entry functions of the primitive layer: each checks its arguments, then jumps through its
// constant seven-slot table at PrimitiveLevel. Slots: 0 base, 1 SSE2, 2 SSSE3, 3 SSSE3 + MOVBE,
// 4 SSE4.1, 5 AVX, 6 AVX2. The transforms have an SSE4.1 form for slots 4 and 5 (its 32-bit
// multiply; AVX without AVX2 has no wider integer vectors); the other operations gain nothing
// from SSSE3, SSE4.1 or AVX over SSE2 and run the SSE2 forms in slots 2 to 5.
#include <cstring>

#include "primitives/PrimitiveForms.h"
#include "primitives/Primitives.h"

namespace OX {
namespace {

// One table per operation, from the forms that exist: base, SSE2 (slots 1-5, or 1-3 where an
// SSE4.1 form takes 4 and 5) and AVX2 (slot 6).
#define OX_TABLE(name, low, wide) {&portable::name, &low::name, &low::name, &low::name, &low::name, &low::name, &wide::name}
#define OX_TABLE4(name, low, mid, wide) \
  {&portable::name, &low::name, &low::name, &low::name, &mid::name, &mid::name, &wide::name}

using DCTForm = void (*)(int16_t*);
constexpr DCTForm kDCT8x8Forward[kPrimitiveLevels] = OX_TABLE4(DCT8x8Forward, sse2, sse41, avx2);
constexpr DCTForm kDCT8x8Inverse[kPrimitiveLevels] = OX_TABLE4(DCT8x8Inverse, sse2, sse41, avx2);
constexpr DCTForm kDCT248Forward[kPrimitiveLevels] = OX_TABLE4(DCT248Forward, sse2, sse41, avx2);
constexpr DCTForm kDCT248Inverse[kPrimitiveLevels] = OX_TABLE4(DCT248Inverse, sse2, sse41, avx2);
constexpr decltype(&portable::MulTableRoundScaled) kMulTable[kPrimitiveLevels] =
    OX_TABLE(MulTableRoundScaled, sse2, avx2);
constexpr decltype(&portable::CountZeros64) kCountZeros[kPrimitiveLevels] = OX_TABLE(CountZeros64, sse2, avx2);
constexpr decltype(&portable::MulConstant8uC4) kMulConstant[kPrimitiveLevels] =
    OX_TABLE(MulConstant8uC4, sse2, avx2);
constexpr decltype(&portable::CopyChannel8uC4) kCopyChannel8u[kPrimitiveLevels] =
    OX_TABLE(CopyChannel8uC4, sse2, avx2);
constexpr decltype(&portable::CopyChannel16uC4) kCopyChannel16u[kPrimitiveLevels] =
    OX_TABLE(CopyChannel16uC4, sse2, avx2);
constexpr decltype(&portable::CopyChannel32fC4) kCopyChannel32f[kPrimitiveLevels] =
    OX_TABLE(CopyChannel32fC4, sse2, avx2);
constexpr decltype(&portable::FillPattern) kFill[kPrimitiveLevels] = OX_TABLE(FillPattern, sse2, avx2);
constexpr decltype(&portable::Copy2D8u) kCopy2D[kPrimitiveLevels] = OX_TABLE(Copy2D8u, sse2, avx2);
constexpr decltype(&portable::Convert32fTo32sScaled) kTo32s[kPrimitiveLevels] =
    OX_TABLE(Convert32fTo32sScaled, sse2, avx2);
constexpr decltype(&portable::Convert32fTo16sScaled) kTo16s[kPrimitiveLevels] =
    OX_TABLE(Convert32fTo16sScaled, sse2, avx2);
// A table look-up a byte: no vector form would be faster than the scalar loads.
constexpr decltype(&portable::ALawTo16s) kALaw[kPrimitiveLevels] = OX_TABLE(ALawTo16s, portable, portable);
#undef OX_TABLE
#undef OX_TABLE4

int32_t CheckArea(const void* p, int32_t width, int32_t height) {
  if (!p) return kPrimNullPointer;
  if (width < 1 || height < 1) return kPrimBadLength;
  return kPrimOK;
}

// Repeats a unit of `unitBytes` (1, 2, 4, 8 or 16) to fill 16 bytes.
int32_t Fill(const void* unit, int32_t unitBytes, void* destination, int32_t rowBytes, int32_t width,
             int32_t height) {
  if (!unit) return kPrimNullPointer;
  if (int32_t s = CheckArea(destination, width, height)) return s;
  alignas(16) uint8_t pattern[16];
  for (int i = 0; i < 16; i += unitBytes) std::memcpy(pattern + i, unit, size_t(unitBytes));
  kFill[PrimitiveLevel](pattern, unitBytes, destination, rowBytes, width, height);
  return kPrimOK;
}

int32_t Transform(const DCTForm (&table)[kPrimitiveLevels], int16_t* block) {
  if (!block) return kPrimNullPointer;
  table[PrimitiveLevel](block);
  return kPrimOK;
}

}  // namespace

int32_t VecDCT8x8Forward(int16_t* block) { return Transform(kDCT8x8Forward, block); }
int32_t VecDCT8x8Inverse(int16_t* block) { return Transform(kDCT8x8Inverse, block); }
int32_t VecDCT248Forward(int16_t* block) { return Transform(kDCT248Forward, block); }
int32_t VecDCT248Inverse(int16_t* block) { return Transform(kDCT248Inverse, block); }

int32_t VecMulTableRoundScaled(const uint16_t* table, int16_t* block, int32_t count, int32_t scale) {
  if (!table || !block) return kPrimNullPointer;
  if (count < 1) return kPrimBadLength;
  kMulTable[PrimitiveLevel](table, block, count, scale);
  return kPrimOK;
}

int32_t VecCountZeros64(const int16_t* block, int32_t* count) {
  if (!block || !count) return kPrimNullPointer;
  *count = kCountZeros[PrimitiveLevel](block);
  return kPrimOK;
}

int32_t VecCopyChannel8uC4(uint8_t value, uint8_t* destination, int32_t rowBytes, int32_t width, int32_t height) {
  if (int32_t s = CheckArea(destination, width, height)) return s;
  kCopyChannel8u[PrimitiveLevel](value, destination, rowBytes, width, height);
  return kPrimOK;
}
int32_t VecCopyChannel16uC4(uint16_t value, uint16_t* destination, int32_t rowBytes, int32_t width,
                            int32_t height) {
  if (int32_t s = CheckArea(destination, width, height)) return s;
  kCopyChannel16u[PrimitiveLevel](value, destination, rowBytes, width, height);
  return kPrimOK;
}
int32_t VecCopyChannel32fC4(float value, float* destination, int32_t rowBytes, int32_t width, int32_t height) {
  if (int32_t s = CheckArea(destination, width, height)) return s;
  kCopyChannel32f[PrimitiveLevel](value, destination, rowBytes, width, height);
  return kPrimOK;
}

int32_t VecFill8u(uint8_t value, void* destination, int32_t rowBytes, int32_t width, int32_t height) {
  return Fill(&value, 1, destination, rowBytes, width, height);
}
int32_t VecFill16u(uint16_t value, void* destination, int32_t rowBytes, int32_t width, int32_t height) {
  return Fill(&value, 2, destination, rowBytes, width, height);
}
int32_t VecFill32u(uint32_t value, void* destination, int32_t rowBytes, int32_t width, int32_t height) {
  return Fill(&value, 4, destination, rowBytes, width, height);
}
int32_t VecFill8uC4(const uint8_t* pattern, void* destination, int32_t rowBytes, int32_t width, int32_t height) {
  return Fill(pattern, 4, destination, rowBytes, width, height);
}
int32_t VecFill16uC4(const uint16_t* pattern, void* destination, int32_t rowBytes, int32_t width,
                     int32_t height) {
  return Fill(pattern, 8, destination, rowBytes, width, height);
}
int32_t VecFill32fC4(const float* pattern, void* destination, int32_t rowBytes, int32_t width, int32_t height) {
  return Fill(pattern, 16, destination, rowBytes, width, height);
}

int32_t VecCopy2D8u(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
                    int32_t widthBytes, int32_t height) {
  if (!source) return kPrimNullPointer;
  if (int32_t s = CheckArea(destination, widthBytes, height)) return s;
  kCopy2D[PrimitiveLevel](source, sourceRowBytes, destination, destinationRowBytes, widthBytes, height);
  return kPrimOK;
}

int32_t VecMulConstant8uC4(const uint8_t* source, int32_t sourceRowBytes, const uint8_t* constant,
                           uint8_t* destination, int32_t destinationRowBytes, int32_t width, int32_t height,
                           int32_t scaleFactor) {
  if (!source || !constant) return kPrimNullPointer;
  if (int32_t s = CheckArea(destination, width, height)) return s;
  uint8_t k[4];  // copied first, so a constant inside the destination is read as it stood
  std::memcpy(k, constant, 4);
  kMulConstant[PrimitiveLevel](source, sourceRowBytes, k, destination, destinationRowBytes, width, height,
                               scaleFactor);
  return kPrimOK;
}

int32_t VecConvert32fTo32sScaled(const float* source, int32_t* destination, int32_t length, int32_t roundMode,
                                 int32_t scaleFactor) {
  if (!source || !destination) return kPrimNullPointer;
  if (length < 1) return kPrimBadLength;
  kTo32s[PrimitiveLevel](source, destination, length, roundMode == 1 ? 1 : 0, scaleFactor);
  return kPrimOK;
}

int32_t VecConvert32fTo16sScaled(const float* source, int16_t* destination, int32_t length, int32_t roundMode,
                                 int32_t scaleFactor) {
  if (!source || !destination) return kPrimNullPointer;
  if (length < 1) return kPrimBadLength;
  kTo16s[PrimitiveLevel](source, destination, length, roundMode == 1 ? 1 : 0, scaleFactor);
  return kPrimOK;
}

int32_t VecALawTo16s(const uint8_t* source, int16_t* destination, int32_t length) {
  if (!source || !destination) return kPrimNullPointer;
  if (length < 1) return kPrimBadLength;
  kALaw[PrimitiveLevel](source, destination, length);
  return kPrimOK;
}

}  // namespace OX
