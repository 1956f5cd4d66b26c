// One chooser per converter family: the kernel table of the newest level that the processor
// flags allow, read at every call.
#include "conversion/ConverterFamilies.h"
#include "conversion/Subsample.h"
#include "frame/Globals.h"

namespace OX {

const RowConverter* ChooseRange8u32f() {
  if (gHasAVX2) return avx2::kRange8u32f;
  if (gHasSSE2) return sse2::kRange8u32f;
  return portable::kRange8u32f;
}
const RowConverter* ChooseDepth15u() {
  if (gHasSSE41) return sse41::kDepth15u;
  if (gHasSSE2) return sse2::kDepth15u;
  return portable::kDepth15u;
}
const RowConverter* ChooseRgb10u() { return portable::kRgb10u; }
const RowConverter* ChooseMatrix8u() {
  if (gHasAVX2) return avx2::kMatrix8u;
  if (gHasAVX) return avx::kMatrix8u;
  if (gHasSSE2) return sse2::kMatrix8u;
  return portable::kMatrix8u;
}
const RowConverter* ChooseMatrix32f() {
  if (gHasAVX2) return avx2::kMatrix32f;
  if (gHasAVX) return avx::kMatrix32f;
  if (gHasSSE2) return sse2::kMatrix32f;
  return portable::kMatrix32f;
}
const RowConverter* ChooseYuv709_8u() {
  if (gHasAVX2) return avx2::kYuv709_8u;
  if (gHasAVX) return avx::kYuv709_8u;
  if (gHasSSE2) return sse2::kYuv709_8u;
  return portable::kYuv709_8u;
}
const RowConverter* ChooseAlpha() {
  if (gHasAVX2) return avx2::kAlpha;
  if (gHasSSE2) return sse2::kAlpha;
  return portable::kAlpha;
}
const RowConverter* ChoosePremul15u() {
  if (gHasSSE41) return sse41::kPremul15u;
  if (gHasSSE2) return sse2::kPremul15u;
  return portable::kPremul15u;
}
const RowConverter* ChooseUnpremul32f() {
  if (gHasAVX) return avx::kUnpremul32f;
  return portable::kUnpremul32f;
}
const RowConverter* ChooseOrder() {
  if (gHasAVX2) return avx2::kOrder;
  if (gHasSSSE3) return ssse3::kOrder;
  return portable::kOrder;
}
const RowConverter* ChooseSubsample() {
  if (gHasAVX2) return avx2::kSubsample;
  if (gHasSSSE3) return ssse3::kSubsample;
  if (gHasSSE2) return sse2::kSubsample;
  return portable::kSubsample;
}
const RowConverter* ChooseV210() {
  if (gHasAVX2) return avx2::kV210;
  if (gHasSSSE3) return ssse3::kV210;
  return portable::kV210;
}
const RowConverter* ChooseLinear() { return portable::kLinear; }

void Yuv422ToBgr8uInChunks(RowConverter upsample, int matrixMember, const void* in, void* out, int32_t width) {
  constexpr int32_t kChunk = 256;  // pixels, even
  alignas(16) uint8_t vuya[4 * (kChunk + 1)];
  const uint8_t* s = static_cast<const uint8_t*>(in);
  uint8_t* d = static_cast<uint8_t*>(out);
  const RowConverter matrix = ChooseMatrix8u()[matrixMember];
  for (int32_t x = 0; x < width; x += kChunk) {
    const int32_t n = width - x < kChunk ? width - x : kChunk;
    // One pixel more than the chunk when the row goes on, so that the chunk's last odd pixel
    // sees the chroma of the next pair as it would in one pass.
    upsample(s + 2 * x, vuya, n + (x + n < width ? 1 : 0));
    matrix(vuya, d + 4 * x, n);
  }
}

}  // namespace OX
