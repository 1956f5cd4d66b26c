// V210 both ways, portable form. A width that is not a multiple of 6 ends in a partial group: it
// is expanded as a whole group of six and only the pixels in use are written; going into V210 the
// samples past the row are zero.
#define OX_PIXELVEC_PORTABLE
#include "conversion/PixelVecIsa.h"
#include "conversion/V210.h"

namespace OX::portable {
#include "conversion/PixelVec.inl"

namespace {

int32_t Groups(int32_t width) { return width > 0 ? (width + 5) / 6 : 0; }
int32_t Pairs(int32_t width) { return width > 0 ? (width + 1) / 2 : 0; }

// Runs fn(group, pairInGroup j, pair index k) over the pairs of the row, one unpacked group at a time.
template <class Fn>
void ForEachPairFromV210(const void* in, int32_t width, Fn fn) {
  const uint32_t* s = static_cast<const uint32_t*>(in);
  const int32_t pairs = Pairs(width);
  V210Group g;
  for (int32_t k = 0; k < pairs; ++k) {
    if (k % 3 == 0) UnpackV210(s + 4 * (k / 3), g);
    fn(g, k % 3, k);
  }
}

void V210ToUyvy8u(const void* in, void* out, int32_t width) {
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachPairFromV210(in, width, [&](const V210Group& g, int j, int32_t k) {
    d[4 * k] = uint8_t(g.u[j] >> 2);
    d[4 * k + 1] = uint8_t(g.y[2 * j] >> 2);
    d[4 * k + 2] = uint8_t(g.v[j] >> 2);
    d[4 * k + 3] = uint8_t(g.y[2 * j + 1] >> 2);
  });
}

// Chroma (c - 512) x 0.0011160715 (1/896), luma (y - 64) x 0.0011415525 (1/876).
void V210ToUyvy32f(const void* in, void* out, int32_t width) {
  float* d = static_cast<float*>(out);
  ForEachPairFromV210(in, width, [&](const V210Group& g, int j, int32_t k) {
    d[4 * k] = (float(g.u[j]) - 512.0f) * 0.0011160715f;
    d[4 * k + 1] = (float(g.y[2 * j]) - 64.0f) * 0.0011415525f;
    d[4 * k + 2] = (float(g.v[j]) - 512.0f) * 0.0011160715f;
    d[4 * k + 3] = (float(g.y[2 * j + 1]) - 64.0f) * 0.0011415525f;
  });
}

// Into V210 from pairs given by `sample(k, i)` (i: 0 U, 1 Y0, 2 V, 3 Y1) as ten-bit codes.
template <class SampleFn>
void PackRow(void* out, int32_t width, SampleFn sample) {
  uint32_t* d = static_cast<uint32_t*>(out);
  for (int32_t gi = 0; gi < Groups(width); ++gi) {
    V210Group g = {};
    for (int j = 0; j < 3; ++j) {
      const int32_t k = 3 * gi + j;
      const int32_t x = 2 * k;
      if (x >= width) break;
      g.u[j] = sample(k, 0);
      g.y[2 * j] = sample(k, 1);
      g.v[j] = sample(k, 2);
      if (x + 1 < width) g.y[2 * j + 1] = sample(k, 3);
    }
    PackV210(g, d + 4 * gi);
  }
}

void Uyvy8uToV210(const void* in, void* out, int32_t width) {
  const uint8_t* s = static_cast<const uint8_t*>(in);
  PackRow(out, width, [&](int32_t k, int i) { return uint32_t(s[4 * k + i]) * 4; });
}

// Chroma c x 896 + 512.5, luma y x 876 + 64.5, truncated; out-of-range values saturate to the
// ten-bit range.
void Uyvy32fToV210(const void* in, void* out, int32_t width) {
  const float* s = static_cast<const float*>(in);
  PackRow(out, width, [&](int32_t k, int i) {
    const bool luma = i & 1;
    const P x = Add(Mul(Set1P(s[4 * k + i]), Set1P(luma ? 876.0f : 896.0f)), Set1P(luma ? 64.5f : 512.5f));
    return uint32_t(TruncF(Clamp(x, 0.0f, 1023.0f)).v[0]);
  });
}

// Runs fn(x, y, u, v) over the pixels of a V210 row with every pixel's own ten-bit chroma: odd
// pixels take the mean of the two neighbouring pairs, rounded down, or their own pair's at the end.
template <int Shift, class Fn>
void ForEachPixelFromV210(const void* in, int32_t width, Fn fn) {
  const uint32_t* s = static_cast<const uint32_t*>(in);
  V210Group g, next;
  for (int32_t x = 0; x < width; ++x) {
    const int32_t gi = x / 6, p = x % 6, j = p / 2;
    if (p == 0) UnpackV210(s + 4 * gi, g);
    const uint32_t y = g.y[p] >> Shift;
    uint32_t u = g.u[j] >> Shift, v = g.v[j] >> Shift;
    if ((p & 1) && x + 1 < width) {
      uint32_t un, vn;
      if (j < 2) {
        un = g.u[j + 1] >> Shift;
        vn = g.v[j + 1] >> Shift;
      } else {
        UnpackV210(s + 4 * (gi + 1), next);
        un = next.u[0] >> Shift;
        vn = next.v[0] >> Shift;
      }
      u = (u + un) >> 1;
      v = (v + vn) >> 1;
    }
    fn(x, y, u, v);
  }
}

// To VUY? 8u: samples shifted right by 2, then the chroma mean; alpha 255.
void V210ToVuy8u(const void* in, void* out, int32_t width) {
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachPixelFromV210<2>(in, width, [&](int32_t x, uint32_t y, uint32_t u, uint32_t v) {
    d[4 * x] = uint8_t(v);
    d[4 * x + 1] = uint8_t(u);
    d[4 * x + 2] = uint8_t(y);
    d[4 * x + 3] = 255;
  });
}

// V210 709 to VUY? 8u 601: the same expansion, then the 709 to 601 step at 8u, in chunks.
void V210_709ToVuy8u601(const void* in, void* out, int32_t width) {
  V210ToVuy8u(in, out, width);
  // The matrix step reads and writes four bytes a pixel in place, one pixel at a time in order.
  uint8_t* d = static_cast<uint8_t*>(out);
  alignas(16) uint8_t chunk[4 * 256];
  for (int32_t x = 0; x < width; x += 256) {
    const int32_t n = width - x < 256 ? width - x : 256;
    std::memcpy(chunk, d + 4 * x, 4 * size_t(n));
    ChooseYuv709_8u()[kVuy709To601_8u](chunk, d + 4 * x, n);
  }
}

// To BGR? 8u on ten-bit values; rounded, clamped to 255; alpha 255.
struct TenBitMatrix {
  float fY, fUB, fUG, fVG, fVR;
};
constexpr TenBitMatrix k601 = {0.2910957f, 0.5043076f, -0.0979404f, -0.2032422f, 0.3990068f};
constexpr TenBitMatrix k709 = {0.2910957f, 0.5281004f, -0.0533122f, -0.1332273f, 0.4481853f};

template <const TenBitMatrix& M>
void V210ToBgr8u(const void* in, void* out, int32_t width) {
  uint8_t* d = static_cast<uint8_t*>(out);
  ForEachPixelFromV210<0>(in, width, [&](int32_t x, uint32_t y10, uint32_t u10, uint32_t v10) {
    const P y = Set1P(float(y10) - 64.0f), u = Set1P(float(u10) - 512.0f), v = Set1P(float(v10) - 512.0f);
    const P rgb = Add(Add(Mul(y, SetP(M.fY, M.fY, M.fY, 0)), Mul(u, SetP(M.fUB, M.fUG, 0, 0))),
                      Mul(v, SetP(0, M.fVG, M.fVR, 0)));
    StoreU8(d + 4 * x, Select(LaneMaskP(false, false, false, true), RoundF(Clamp(rgb, 0.0f, 255.0f)), Set1P(255.0f)));
  });
}

}  // namespace

const RowConverter kV210[kV210Count] = {&Uyvy8uToV210, &Uyvy32fToV210,     &V210ToUyvy8u,      &V210ToUyvy32f,
                                        &V210ToVuy8u,  &V210_709ToVuy8u601, &V210ToBgr8u<k601>, &V210ToBgr8u<k709>};

}  // namespace OX::portable
