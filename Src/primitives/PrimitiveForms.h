// The forms behind the primitive layer's entry functions, one set per instruction-set namespace.
// Forms take arguments the entry function has already checked (non-null, lengths of at least 1).
#pragma once

#include <cstdint>

#define OX_PRIMITIVE_FORMS                                                                           \
  void DCT8x8Forward(int16_t* block);                                                                \
  void DCT8x8Inverse(int16_t* block);                                                                \
  void DCT248Forward(int16_t* block);                                                                \
  void DCT248Inverse(int16_t* block);                                                                \
  void MulTableRoundScaled(const uint16_t* table, int16_t* block, int32_t count, int32_t scale);      \
  int32_t CountZeros64(const int16_t* block);                                                        \
  void MulConstant8uC4(const uint8_t* source, int32_t sourceRowBytes, const uint8_t* constant,        \
                       uint8_t* destination, int32_t destinationRowBytes, int32_t width, int32_t height, \
                       int32_t scaleFactor);                                                         \
  void CopyChannel8uC4(uint8_t value, uint8_t* destination, int32_t rowBytes, int32_t width,         \
                       int32_t height);                                                              \
  void CopyChannel16uC4(uint16_t value, uint16_t* destination, int32_t rowBytes, int32_t width,      \
                        int32_t height);                                                             \
  void CopyChannel32fC4(float value, float* destination, int32_t rowBytes, int32_t width,            \
                        int32_t height);                                                             \
  void FillPattern(const void* pattern16, int32_t unitBytes, void* destination, int32_t rowBytes,    \
                   int32_t width, int32_t height);                                                   \
  void Copy2D8u(const void* source, int32_t sourceRowBytes, void* destination,                       \
                int32_t destinationRowBytes, int32_t widthBytes, int32_t height);                    \
  void Convert32fTo32sScaled(const float* source, int32_t* destination, int32_t length,              \
                             int32_t roundMode, int32_t scaleFactor);                                \
  void Convert32fTo16sScaled(const float* source, int16_t* destination, int32_t length,              \
                             int32_t roundMode, int32_t scaleFactor);                                \
  void ALawTo16s(const uint8_t* source, int16_t* destination, int32_t length);

namespace OX {
namespace portable {
OX_PRIMITIVE_FORMS
}
namespace sse2 {
OX_PRIMITIVE_FORMS
}
namespace sse41 {
OX_PRIMITIVE_FORMS
}
namespace avx2 {
OX_PRIMITIVE_FORMS
}
}  // namespace OX
