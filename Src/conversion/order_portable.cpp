// Channel order, portable form: BGR? with ?RGB reverses the four samples of each pixel (one step
// serves both directions and every alpha form); UYVY with YUYV swaps each luma with the chroma
// sample beside it, keeping the pixel order in the pair.
#include <cstdint>
#include <cstring>

#include "conversion/ConverterFamilies.h"

namespace OX::portable {
namespace {

size_t Count(int32_t n) { return n > 0 ? size_t(n) : 0; }

template <class T>
void Reverse(const void* in, void* out, int32_t width) {
  const T* s = static_cast<const T*>(in);
  T* d = static_cast<T*>(out);
  for (size_t i = 0; i < Count(width); ++i) {
    const T a = s[4 * i], b = s[4 * i + 1], c = s[4 * i + 2], e = s[4 * i + 3];
    d[4 * i] = e;
    d[4 * i + 1] = c;
    d[4 * i + 2] = b;
    d[4 * i + 3] = a;
  }
}

template <class T>
void Swap422(const void* in, void* out, int32_t width) {
  const T* s = static_cast<const T*>(in);
  T* d = static_cast<T*>(out);
  const size_t samples = 4 * Count((width + 1) / 2);
  for (size_t i = 0; i < samples; i += 2) {
    const T a = s[i], b = s[i + 1];
    d[i] = b;
    d[i + 1] = a;
  }
}

}  // namespace

const RowConverter kOrder[kOrderCount] = {&Reverse<uint8_t>, &Reverse<uint16_t>, &Reverse<uint32_t>,
                                          &Swap422<uint8_t>, &Swap422<uint32_t>};

}  // namespace OX::portable
