// Channel order, portable form: BGR? with ?RGB reverses the four samples of each pixel (one step
// serves both directions and every alpha form); UYVY with YUYV swaps each luma with the chroma
// sample beside it, keeping the pixel order in the pair.
#include <cstdint>
#include <cstring>

#include "conversion/ConverterFamilies.h"
#include "conversion/Unaligned.h"

namespace OX::portable {
namespace {

size_t Count(int32_t n) { return n > 0 ? size_t(n) : 0; }

template <class T>
void Reverse(const void* in, void* out, int32_t width) {
  for (ptrdiff_t i = 0; i < ptrdiff_t(Count(width)); ++i)
    for (int c = 0; c < 4; ++c) StoreAt(out, 4 * i + c, LoadAt<T>(in, 4 * i + 3 - c));
}

template <class T>
void Swap422(const void* in, void* out, int32_t width) {
  const ptrdiff_t samples = ptrdiff_t(4 * Count((width + 1) / 2));
  for (ptrdiff_t i = 0; i < samples; i += 2) {
    StoreAt(out, i, LoadAt<T>(in, i + 1));
    StoreAt(out, i + 1, LoadAt<T>(in, i));
  }
}

}  // namespace

const RowConverter kOrder[kOrderCount] = {&Reverse<uint8_t>, &Reverse<uint16_t>, &Reverse<uint32_t>,
                                          &Swap422<uint8_t>, &Swap422<uint32_t>};

}  // namespace OX::portable
