// Pieces shared by the levels of the subsampling family.
#pragma once

#include <cstdint>

#include "conversion/ConverterFamilies.h"

namespace OX {

// 4:2:2 8u (UYVY, or YUYV when LumaFirst) to VUYA 8u with alpha 255: even pixels take their own
// chroma, odd pixels Mean(this pair's, next pair's), the last odd pixel its own pair's.
template <bool LumaFirst, class MeanFn>
inline void UpsampleChroma8u(const uint8_t* s, uint8_t* d, int32_t width, MeanFn mean, int32_t first = 0) {
  constexpr int kU = LumaFirst ? 1 : 0, kY0 = LumaFirst ? 0 : 1, kV = LumaFirst ? 3 : 2, kY1 = LumaFirst ? 2 : 3;
  for (int32_t x = first; x < width; ++x) {
    const uint8_t* p = s + 4 * (x >> 1);
    uint8_t* o = d + 4 * x;
    if ((x & 1) == 0) {
      o[0] = p[kV];
      o[1] = p[kU];
      o[2] = p[kY0];
    } else {
      const bool next = x + 1 < width;
      o[0] = next ? uint8_t(mean(p[kV], p[kV + 4])) : p[kV];
      o[1] = next ? uint8_t(mean(p[kU], p[kU + 4])) : p[kU];
      o[2] = p[kY1];
    }
    o[3] = 255;
  }
}

// VUY? 8u to UYVY 8u for the pairs from `firstPair` on: chroma at even pixels through [1 2 1] / 4.
// The first pair replaces the left neighbour of U by 3 x U[0], and does not filter the first V
// with its right neighbour at all ((3 V[0] + V[0] + 2) >> 2 is V[0]); that asymmetry stands. An
// odd last pixel stands alone: its chroma is copied and its Y fills both luma places.
inline void DownsampleChroma8u(const uint8_t* s, uint8_t* d, int32_t width, int32_t firstPair) {
  for (int32_t k = firstPair; 2 * k + 1 < width; ++k) {
    const uint8_t* p = s + 8 * k;  // pixel e = 2k
    int u, v;
    if (k == 0) {
      u = (3 * p[1] + p[5] + 2) >> 2;
      v = p[0];
    } else {
      u = (p[-3] + 2 * p[1] + p[5] + 2) >> 2;
      v = (p[-4] + 2 * p[0] + p[4] + 2) >> 2;
    }
    uint8_t* o = d + 4 * k;
    o[0] = uint8_t(u);
    o[1] = p[2];
    o[2] = uint8_t(v);
    o[3] = p[6];
  }
  if (width > 0 && (width & 1)) {
    const uint8_t* p = s + 4 * (width - 1);
    uint8_t* o = d + 2 * (width - 1);
    o[0] = p[1];
    o[1] = p[2];
    o[2] = p[0];
    o[3] = p[2];
  }
}

// 4:2:2 8u straight to BGR? 8u: the row goes through `upsample` in chunks into a stack buffer
// and on through the 8u matrix step `matrixMember` of the current level, in one converter.
void Yuv422ToBgr8uInChunks(RowConverter upsample, int matrixMember, const void* in, void* out, int32_t width);

// The scalar forms, shared by the tables of the levels that have no form of their own.
namespace portable {
void Vuy8uToUyvy8u(const void* in, void* out, int32_t width);
void Vuy32fToUyvy32f(const void* in, void* out, int32_t width);
template <bool Filter>
void Uyvy32fToVuy32f(const void* in, void* out, int32_t width);
template <bool LumaFirst>
void Yuv422ToVuy8u(const void* in, void* out, int32_t width);
template <bool LumaFirst, int Matrix>
void Yuv422ToBgr8u(const void* in, void* out, int32_t width);
}  // namespace portable
namespace sse2 {
void Vuy8uToUyvy8u(const void* in, void* out, int32_t width);
}

}  // namespace OX
