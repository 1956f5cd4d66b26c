// Thin exports over the primitive layer: any refusal of the primitive becomes -999.
#include "Ombrix.h"
#include "primitives/Primitives.h"

namespace {
OX_Result FromPrimitive(int32_t status) { return status == OX::kPrimOK ? OX_Success : OX_ErrNoRoute; }
}  // namespace

OX_Result OX_Convert_32f32sSfs(const float* source, int32_t* destination, int32_t length, int32_t roundMode,
                               int32_t scaleFactor) {
  return FromPrimitive(OX::VecConvert32fTo32sScaled(source, destination, length, roundMode == 1 ? 1 : 0, scaleFactor));
}

OX_Result OX_Convert_32f16sSfs(const float* source, int16_t* destination, int32_t length, int32_t roundMode,
                               int32_t scaleFactor) {
  return FromPrimitive(OX::VecConvert32fTo16sScaled(source, destination, length, roundMode == 1 ? 1 : 0, scaleFactor));
}

OX_Result OX_MultiplyByConstant(int32_t width, int32_t height, const void* source, int32_t sourceRowBytes,
                                void* destination, int32_t destinationRowBytes, const uint8_t* constant,
                                int32_t scaleFactor) {
  if (!constant) return OX_ErrNoRoute;
  uint8_t k[4];  // copied first: the constant may live in the destination
  for (int i = 0; i < 4; ++i) k[i] = constant[i];
  return FromPrimitive(OX::VecMulConstant8uC4(static_cast<const uint8_t*>(source), sourceRowBytes, k,
                                              static_cast<uint8_t*>(destination), destinationRowBytes, width, height,
                                              scaleFactor));
}

OX_Result OX_DecodeALawTo16Bit(const void* source, int16_t* destination, int32_t length) {
  return FromPrimitive(OX::VecALawTo16s(static_cast<const uint8_t*>(source), destination, length));
}
