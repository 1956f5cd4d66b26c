// V210 packing: six pixels in four little-endian 32-bit words, three ten-bit samples a word at
// bits 0, 10 and 20, in the order
//   word 0: U0 Y0 V0   word 1: Y1 U1 Y2   word 2: V1 Y3 U2   word 3: Y4 V2 Y5
#pragma once

#include <cstdint>
#include <cstring>

namespace OX {

struct V210Group {
  uint32_t y[6], u[3], v[3];
};

inline void UnpackV210(const uint32_t* words, V210Group& g) {
  uint32_t w[4];
  std::memcpy(w, words, 16);
  auto s = [&](int word, int slot) { return (w[word] >> (10 * slot)) & 0x3FF; };
  g.u[0] = s(0, 0); g.y[0] = s(0, 1); g.v[0] = s(0, 2);
  g.y[1] = s(1, 0); g.u[1] = s(1, 1); g.y[2] = s(1, 2);
  g.v[1] = s(2, 0); g.y[3] = s(2, 1); g.u[2] = s(2, 2);
  g.y[4] = s(3, 0); g.v[2] = s(3, 1); g.y[5] = s(3, 2);
}

// Samples are ORed in as they are: the caller keeps them within ten bits.
inline void PackV210(const V210Group& g, uint32_t* words) {
  uint32_t w[4];
  w[0] = g.u[0] | (g.y[0] << 10) | (g.v[0] << 20);
  w[1] = g.y[1] | (g.u[1] << 10) | (g.y[2] << 20);
  w[2] = g.v[1] | (g.y[3] << 10) | (g.u[2] << 20);
  w[3] = g.y[4] | (g.v[2] << 10) | (g.y[5] << 20);
  std::memcpy(words, w, 16);
}

}  // namespace OX
