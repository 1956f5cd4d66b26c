// Linear light, portable form. At 32f the colour samples go through sign(c) x pow(|c|, e) with
// e = 0.45 toward gamma-coded and 2.2222223 toward linear, alpha (every fourth sample) copied.
// BGRA 8u to linear 32f reads a table of 256 powers; linear 32f to BGRA 8u counts the boundaries
// pow((i + 0.5) / 255, 2.2222223), i = 0..254, at or below the sample with a bucket table.
#define OX_PIXELVEC_PORTABLE
#include <cmath>

#include "conversion/Linear.h"
#include "conversion/PixelVecIsa.h"
#include "conversion/Unaligned.h"

namespace OX {

const LinearTables& GetLinearTables() {
  static const LinearTables tables = [] {
    LinearTables t;
    for (int i = 0; i < 256; ++i) {
      t.fToLinear[i] = std::pow(float(i) / 255.0f, kToLinearExponent);
      t.fAlpha[i] = float(i) / 255.0f;
    }
    for (int i = 0; i < 255; ++i) t.fBoundary[i] = std::pow((float(i) + 0.5f) / 255.0f, kToLinearExponent);
    int n = 0;
    for (int k = 0; k < kLinearBuckets; ++k) {
      const float edge = float(k) / float(kLinearBuckets);
      while (n < 255 && t.fBoundary[n] <= edge) ++n;
      t.fBucketStart[k] = uint8_t(n);
    }
    return t;
  }();
  return tables;
}
// Built at load, before any converter runs.
static const LinearTables& gLinearTablesAtLoad = GetLinearTables();

}  // namespace OX

namespace OX::portable {
#include "conversion/PixelVec.inl"

namespace {

template <int ExponentId>
void Power32f(const void* in, void* out, int32_t width) {
  const float e = ExponentId == 0 ? kToGammaExponent : kToLinearExponent;
  for (ptrdiff_t i = 0; i < width; ++i) {
    for (int c = 0; c < 3; ++c) StoreAt(out, 4 * i + c, SignedPow(LoadAt<float>(in, 4 * i + c), e));
    StoreAt(out, 4 * i + 3, LoadAt<float>(in, 4 * i + 3));
  }
}

void Bgra8uToLinear32f(const void* in, void* out, int32_t width) {
  const LinearTables& t = GetLinearTables();
  const uint8_t* s = static_cast<const uint8_t*>(in);
  for (ptrdiff_t i = 0; i < 4 * ptrdiff_t(width); i += 4) {
    StoreAt(out, i, t.fToLinear[s[i]]);
    StoreAt(out, i + 1, t.fToLinear[s[i + 1]]);
    StoreAt(out, i + 2, t.fToLinear[s[i + 2]]);
    StoreAt(out, i + 3, t.fAlpha[s[i + 3]]);
  }
}

void Linear32fToBgra8u(const void* in, void* out, int32_t width) {
  const LinearTables& t = GetLinearTables();
  uint8_t* d = static_cast<uint8_t*>(out);
  for (ptrdiff_t i = 0; i < width; ++i) {
    for (int c = 0; c < 3; ++c) d[4 * i + c] = CountBoundaries(t, LoadAt<float>(in, 4 * i + c));
    // Alpha: round(255 a), clamped; NaN becomes 0.
    d[4 * i + 3] = uint8_t(RoundF(Clamp(Mul(Set1P(LoadAt<float>(in, 4 * i + 3)), Set1P(255.0f)), 0.0f, 255.0f)).v[0]);
  }
}

}  // namespace

const RowConverter kLinear[kLinearCount] = {&Power32f<0>, &Power32f<1>, &Bgra8uToLinear32f, &Linear32fToBgra8u};

}  // namespace OX::portable
