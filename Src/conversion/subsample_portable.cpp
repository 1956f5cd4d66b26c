// Subsampling, portable form. 4:4:4 to 4:2:2 filters chroma at even pixels with [1 2 1] / 4 (the
// first pair with its own left edge rule); 4:2:2 to 4:4:4 gives odd pixels the mean of the two
// chroma neighbours at 8u, and at 32f either repeats or interpolates with a four-tap filter by
// quality. 4:2:2 8u also goes straight to RGB 8u, the up-sampling and the matrix in one step.
#include <cstdint>
#include <cstring>

#include "conversion/ConverterFamilies.h"
#include "conversion/Subsample.h"

namespace OX::portable {

// VUYP or VUYX 8u to UYVY 8u; the alpha byte is discarded.
void Vuy8uToUyvy8u(const void* in, void* out, int32_t width) {
  DownsampleChroma8u(static_cast<const uint8_t*>(in), static_cast<uint8_t*>(out), width, 0);
}

// VUY? 32f to UYVY 32f: (a + 2 b + c) / 4 in floats; the first pair (3 c0 + c1) / 4 for both
// chroma samples.
void Vuy32fToUyvy32f(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  float* d = static_cast<float*>(out);
  for (int32_t k = 0; 2 * k + 1 < width; ++k) {
    const float* p = s + 8 * k;
    float u, v;
    if (k == 0) {
      u = (3.0f * p[1] + p[5]) * 0.25f;
      v = (3.0f * p[0] + p[4]) * 0.25f;
    } else {
      u = (p[-3] + 2.0f * p[1] + p[5]) * 0.25f;
      v = (p[-4] + 2.0f * p[0] + p[4]) * 0.25f;
    }
    float* o = d + 4 * k;
    o[0] = u;
    o[1] = p[2];
    o[2] = v;
    o[3] = p[6];
  }
  if (width > 0 && (width & 1)) {
    // The last pixel alone (and a width of 1): its chroma and luma, and 0.0 as the second luma.
    const float* p = s + 4 * (width - 1);
    float* o = d + 2 * (width - 1);
    o[0] = p[1];
    o[1] = p[2];
    o[2] = p[0];
    o[3] = 0.0f;
  }
}

// UYVY 32f to VUY? 32f. Below quality 2 odd pixels repeat the chroma of their even neighbour;
// from 2 up they take (9 (c[k] + c[k+1]) - c[k-1] - c[k+2]) / 16 over the pairs' chroma, with the
// indices held inside the row. An odd last pixel writes its V into both chroma places.
template <bool Filter>
void Uyvy32fToVuy32f(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  float* d = static_cast<float*>(out);
  if (width <= 0) return;
  const int32_t pairs = (width + 1) / 2;
  auto at = [&](int32_t k, int c) { return s[4 * (k < 0 ? 0 : k >= pairs ? pairs - 1 : k) + c]; };
  for (int32_t k = 0; k < pairs; ++k) {
    const float* p = s + 4 * k;
    float* o = d + 8 * k;
    if (2 * k + 1 >= width) {
      o[0] = p[2];
      o[1] = p[2];
      o[2] = p[1];
      o[3] = 1.0f;
      break;
    }
    o[0] = p[2];
    o[1] = p[0];
    o[2] = p[1];
    o[3] = 1.0f;
    float u = p[0], v = p[2];
    if (Filter) {
      u = (9.0f * (at(k, 0) + at(k + 1, 0)) - at(k - 1, 0) - at(k + 2, 0)) * 0.0625f;
      v = (9.0f * (at(k, 2) + at(k + 1, 2)) - at(k - 1, 2) - at(k + 2, 2)) * 0.0625f;
    }
    o[4] = v;
    o[5] = u;
    o[6] = p[3];
    o[7] = 1.0f;
  }
}

// 4:2:2 8u to VUY? 8u, the mean rounded down.
template <bool LumaFirst>
void Yuv422ToVuy8u(const void* in, void* out, int32_t width) {
  UpsampleChroma8u<LumaFirst>(static_cast<const uint8_t*>(in), static_cast<uint8_t*>(out), width,
                              [](int a, int b) { return (a + b) >> 1; });
}

template <bool LumaFirst, int Matrix>
void Yuv422ToBgr8u(const void* in, void* out, int32_t width) {
  Yuv422ToBgr8uInChunks(&Yuv422ToVuy8u<LumaFirst>, Matrix, in, out, width);
}

template void Uyvy32fToVuy32f<false>(const void*, void*, int32_t);
template void Uyvy32fToVuy32f<true>(const void*, void*, int32_t);
template void Yuv422ToVuy8u<false>(const void*, void*, int32_t);
template void Yuv422ToVuy8u<true>(const void*, void*, int32_t);
template void Yuv422ToBgr8u<false, kVuy8uToBgr8u601>(const void*, void*, int32_t);
template void Yuv422ToBgr8u<false, kVuy8uToBgr8u709>(const void*, void*, int32_t);
template void Yuv422ToBgr8u<true, kVuy8uToBgr8u601>(const void*, void*, int32_t);
template void Yuv422ToBgr8u<true, kVuy8uToBgr8u709>(const void*, void*, int32_t);

const RowConverter kSubsample[kSubsampleCount] = {
    &Vuy8uToUyvy8u,          &Vuy32fToUyvy32f,
    &Yuv422ToVuy8u<false>,   &Yuv422ToVuy8u<true>,
    &Uyvy32fToVuy32f<false>, &Uyvy32fToVuy32f<true>,
    &Yuv422ToBgr8u<false, kVuy8uToBgr8u601>, &Yuv422ToBgr8u<false, kVuy8uToBgr8u709>,
    &Yuv422ToBgr8u<true, kVuy8uToBgr8u601>,  &Yuv422ToBgr8u<true, kVuy8uToBgr8u709>};

}  // namespace OX::portable
