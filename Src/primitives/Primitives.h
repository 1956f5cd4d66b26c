// The primitive layer: block operations reached through one entry function each, which indexes a
// constant seven-slot table of forms by PrimitiveLevel. The level is chosen once, at start-up.
//
// Every operation returns a status: 0 on success, kPrimNullPointer (-8) for a null pointer and
// kPrimBadLength (-6) for a length, width, height or count below 1. Null pointers are checked first.
// All forms of an operation give the same bits; they differ only in the instruction set used.
#pragma once

#include <cstdint>

namespace OX {

constexpr int32_t kPrimOK = 0;
constexpr int32_t kPrimNullPointer = -8;
constexpr int32_t kPrimBadLength = -6;

// Slots of the dispatch tables: 0 base (portable), 1 SSE2, 2 SSSE3, 3 SSSE3 with MOVBE, 4 SSE4.1,
// 5 AVX with operating-system support, 6 AVX2 with FMA, BMI1 and BMI2.
constexpr int kPrimitiveLevels = 7;

// The level every entry function dispatches on: 0 before start-up, written once by it (and by
// tests and benchmarks that force a level).
extern int32_t PrimitiveLevel;

// Turns the processor's identification into a request code for SelectPrimitiveLevel (0 without
// CPUID).
int32_t GetProcessorCode();
// Sets PrimitiveLevel from a request: -1 probes the feature bits and takes the highest level the
// processor supports; other values are processor codes. Returns 0, or 36 (codes 16, 17) or 21
// (unknown code), in which case the level is left unchanged.
int32_t SelectPrimitiveLevel(int32_t request);
// Highest level this processor can run (what request -1 selects); for tests and benchmarks.
int32_t HighestSupportedPrimitiveLevel();
// Feature bits gathered once from CPUID: 0 MMX, 1 SSE, 2 SSE2, 3 SSE3, 4 SSSE3, 5 MOVBE,
// 6 SSE4.1, 7 SSE4.2, 8 AVX, 9 OS support for the wide registers, 10 AES, 11 PCLMULQDQ,
// 13 RDRAND, 14 F16C, 15 AVX2 together with FMA, BMI1 and BMI2.
uint32_t PrimitiveFeatureBits();

// ---- Transforms: in place on 64 signed 16-bit values in raster order. -----------------------

// Forward 8 x 8 DCT with orthonormal scaling: F(u,v) = 1/4 C(u) C(v) sum f(x,y) cos cos, with
// C(0) = 1/sqrt(2), rounded and saturated to 16 bits. Exact for samples within +-2048.
int32_t VecDCT8x8Forward(int16_t* block);
// Inverse of the above: a block holding only d at position 0 gives d / 8 everywhere. Exact for
// coefficients within +-2048.
int32_t VecDCT8x8Inverse(int16_t* block);
// Forward 2-4-8 DCT: rows 2n and 2n + 1 enter a 4-point vertical DCT as sum and difference
// (outputs rows 0-3 and 4-7); horizontally an 8-point DCT; orthonormal scaling as above.
int32_t VecDCT248Forward(int16_t* block);
int32_t VecDCT248Inverse(int16_t* block);

// ---- Block operations ----------------------------------------------------------------------

// block[i] = scaled(table[i] * block[i]) for i < count. The product is exact in 32 bits; scale 0
// saturates it, 1..30 shift right rounding to nearest with ties to even, 31 and more give 0,
// -1..-15 shift left between two 16-bit clamps, below -15 give the sign as +-32767/-32768.
int32_t VecMulTableRoundScaled(const uint16_t* table, int16_t* block, int32_t count, int32_t scale);
// Number of zero entries among the 64 values of `block`.
int32_t VecCountZeros64(const int16_t* block, int32_t* count);

// Sets one sample of every pixel of a four-sample-a-pixel image: `destination` points at that
// sample of the first pixel; pixels are 4 samples apart, rows `rowBytes` apart.
int32_t VecCopyChannel8uC4(uint8_t value, uint8_t* destination, int32_t rowBytes, int32_t width, int32_t height);
int32_t VecCopyChannel16uC4(uint16_t value, uint16_t* destination, int32_t rowBytes, int32_t width,
                            int32_t height);
int32_t VecCopyChannel32fC4(float value, float* destination, int32_t rowBytes, int32_t width, int32_t height);

// Fills `width` units on each of `height` rows `rowBytes` apart. A unit is one 8-, 16- or 32-bit
// value, or a pattern of four such values (4, 8 or 16 bytes) copied bit for bit.
int32_t VecFill8u(uint8_t value, void* destination, int32_t rowBytes, int32_t width, int32_t height);
int32_t VecFill16u(uint16_t value, void* destination, int32_t rowBytes, int32_t width, int32_t height);
int32_t VecFill32u(uint32_t value, void* destination, int32_t rowBytes, int32_t width, int32_t height);
int32_t VecFill8uC4(const uint8_t* pattern, void* destination, int32_t rowBytes, int32_t width, int32_t height);
int32_t VecFill16uC4(const uint16_t* pattern, void* destination, int32_t rowBytes, int32_t width,
                     int32_t height);
int32_t VecFill32fC4(const float* pattern, void* destination, int32_t rowBytes, int32_t width, int32_t height);

// Two-dimensional byte copy: `widthBytes` bytes of each of `height` rows. Row bytes may be
// negative. Source and destination must not overlap.
int32_t VecCopy2D8u(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
                    int32_t widthBytes, int32_t height);

// dst[c] = limit(src[c] * constant[c], scaled) for the four byte channels of `width` pixels on
// each of `height` rows: scale 0 the product; negative shifts left (below -7 any non-zero product
// is 255); positive shifts right rounding to nearest with ties to even (above 16 all zero);
// limited to 0..255.
int32_t VecMulConstant8uC4(const uint8_t* source, int32_t sourceRowBytes, const uint8_t* constant,
                           uint8_t* destination, int32_t destinationRowBytes, int32_t width, int32_t height,
                           int32_t scaleFactor);

// dst[i] = src[i] * 2^-scaleFactor to integer. roundMode 1 rounds to nearest with ties to even,
// any other value truncates toward zero. 32-bit: 2147483520.0 and above give 0x7FFFFFFF and
// values at or below -2147483648.0 give 0x80000000. 16-bit: limited to -32768.0..32767.0 first.
// A NaN gives 0.
int32_t VecConvert32fTo32sScaled(const float* source, int32_t* destination, int32_t length, int32_t roundMode,
                                 int32_t scaleFactor);
int32_t VecConvert32fTo16sScaled(const float* source, int16_t* destination, int32_t length, int32_t roundMode,
                                 int32_t scaleFactor);

// G.711 A-law bytes to linear 16-bit samples.
int32_t VecALawTo16s(const uint8_t* source, int16_t* destination, int32_t length);

}  // namespace OX
