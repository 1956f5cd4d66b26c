// Subsampling, portable form. 4:4:4 to 4:2:2 filters chroma at even pixels with [1 2 1] / 4 (the
// first pair with its own left edge rule); 4:2:2 to 4:4:4 gives odd pixels the mean of the two
// chroma neighbours at 8u, and at 32f either repeats or interpolates with a four-tap filter by
// quality. 4:2:2 8u also goes straight to RGB 8u, the up-sampling and the matrix in one step.
#include <cstdint>
#include <cstring>

#include "conversion/ConverterFamilies.h"
#include "conversion/Subsample.h"
#include "conversion/Unaligned.h"

namespace OX::portable {
namespace {

// Four floats at any byte address, one at a time (a whole-array copy would go through the stack).
inline void Store4(uint8_t* d, float a, float b, float c, float e) {
  StoreAt(d, 0, a);
  StoreAt(d, 1, b);
  StoreAt(d, 2, c);
  StoreAt(d, 3, e);
}

}  // namespace

// VUYP or VUYX 8u to UYVY 8u; the alpha byte is discarded.
void Vuy8uToUyvy8u(const void* in, void* out, int32_t width) {
  DownsampleChroma8u(static_cast<const uint8_t*>(in), static_cast<uint8_t*>(out), width, 0);
}

// VUY? 32f to UYVY 32f: (a + 2 b + c) / 4 in floats; the first pair (3 c0 + c1) / 4 for both
// chroma samples.
void Vuy32fToUyvy32f(const void* in, void* out, int32_t width) {
  auto at = [&](ptrdiff_t i) { return LoadAt<float>(in, i); };  // float i of the row
  for (int32_t k = 0; 2 * k + 1 < width; ++k) {
    const ptrdiff_t p = 8 * ptrdiff_t(k);  // pixel e = 2k
    float u, v;
    if (k == 0) {
      u = (3.0f * at(1) + at(5)) * 0.25f;
      v = (3.0f * at(0) + at(4)) * 0.25f;
    } else {
      u = (at(p - 3) + 2.0f * at(p + 1) + at(p + 5)) * 0.25f;
      v = (at(p - 4) + 2.0f * at(p) + at(p + 4)) * 0.25f;
    }
    Store4(static_cast<uint8_t*>(out) + 16 * k, u, at(p + 2), v, at(p + 6));
  }
  if (width > 0 && (width & 1)) {
    // The last pixel alone (and a width of 1): its chroma and luma, and 0.0 as the second luma.
    const ptrdiff_t p = 4 * ptrdiff_t(width - 1);
    Store4(static_cast<uint8_t*>(out) + 8 * (width - 1), at(p + 1), at(p + 2), at(p), 0.0f);
  }
}

// UYVY 32f to VUY? 32f. Below quality 2 odd pixels repeat the chroma of their even neighbour;
// from 2 up they take (9 (c[k] + c[k+1]) - c[k-1] - c[k+2]) / 16 over the pairs' chroma, with the
// indices held inside the row. An odd last pixel writes its V into both chroma places.
template <bool Filter>
void Uyvy32fToVuy32f(const void* in, void* out, int32_t width) {
  if (width <= 0) return;
  const int32_t pairs = (width + 1) / 2;
  // Pair k's four samples (U, Y0, V, Y1), k held inside the row. A window of four pairs slides
  // along: k - 1, k, k + 1, k + 2.
  auto load = [&](int32_t k, float (&p)[4]) {
    std::memcpy(p, static_cast<const uint8_t*>(in) + 16 * ptrdiff_t(k < 0 ? 0 : k >= pairs ? pairs - 1 : k), 16);
  };
  float left[4], here[4], right[4], far[4];
  load(-1, left);
  load(0, here);
  load(1, right);
  load(2, far);
  uint8_t* d = static_cast<uint8_t*>(out);
  for (int32_t k = 0; k < pairs; ++k) {
    if (2 * k + 1 >= width) {
      Store4(d + 32 * k, here[2], here[2], here[1], 1.0f);
      break;
    }
    float u = here[0], v = here[2];
    if (Filter) {
      u = (9.0f * (here[0] + right[0]) - left[0] - far[0]) * 0.0625f;
      v = (9.0f * (here[2] + right[2]) - left[2] - far[2]) * 0.0625f;
    }
    Store4(d + 32 * k, here[2], here[0], here[1], 1.0f);
    Store4(d + 32 * k + 16, v, u, here[3], 1.0f);
    std::memcpy(left, here, 16);
    std::memcpy(here, right, 16);
    std::memcpy(right, far, 16);
    load(k + 3, far);
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
