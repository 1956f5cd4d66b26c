// Transforms, portable form: the shared fixed-point formula over eight plain 32-bit lanes.
#include <cstdint>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace portable {
namespace {

struct V {
  int32_t l[8];
};
// Modulo 2^32 throughout, as the vector forms compute.
inline int32_t Wrap(uint32_t x) { return int32_t(x); }
inline V Add(V a, V b) {
  for (int i = 0; i < 8; ++i) a.l[i] = Wrap(uint32_t(a.l[i]) + uint32_t(b.l[i]));
  return a;
}
inline V Sub(V a, V b) {
  for (int i = 0; i < 8; ++i) a.l[i] = Wrap(uint32_t(a.l[i]) - uint32_t(b.l[i]));
  return a;
}
inline V MulK(V a, int32_t k) {
  for (int i = 0; i < 8; ++i) a.l[i] = Wrap(uint32_t(a.l[i]) * uint32_t(k));
  return a;
}
template <int n>
inline V Sra(V a) {
  for (int i = 0; i < 8; ++i) a.l[i] >>= n;
  return a;
}
template <int n>
inline V Sll(V a) {
  for (int i = 0; i < 8; ++i) a.l[i] = Wrap(uint32_t(a.l[i]) << n);
  return a;
}
inline V Splat(int32_t x) {
  V v;
  for (int i = 0; i < 8; ++i) v.l[i] = x;
  return v;
}
inline V LoadRow(const int16_t* p) {
  V v;
  for (int i = 0; i < 8; ++i) v.l[i] = p[i];
  return v;
}
inline void StoreRowSat(int16_t* p, V v) {
  for (int i = 0; i < 8; ++i) p[i] = int16_t(v.l[i] > 32767 ? 32767 : v.l[i] < -32768 ? -32768 : v.l[i]);
}
struct P {
  const int16_t* x;
  const int16_t* y;
};
inline P MakePair(const int16_t* x, const int16_t* y) { return {x, y}; }
inline V MulPair(const P& p, int32_t kx, int32_t ky) {
  V v;
  for (int i = 0; i < 8; ++i) v.l[i] = Wrap(uint32_t(p.x[i]) * uint32_t(kx) + uint32_t(p.y[i]) * uint32_t(ky));
  return v;
}
inline void Transpose8x8(V* v) {
  for (int r = 0; r < 8; ++r)
    for (int c = r + 1; c < 8; ++c) {
      const int32_t t = v[r].l[c];
      v[r].l[c] = v[c].l[r];
      v[c].l[r] = t;
    }
}

#include "primitives/DCTCore.inc"

}  // namespace

#include "primitives/DCTForms.inc"

}  // namespace portable
}  // namespace OX
