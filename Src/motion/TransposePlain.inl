// The plain item-by-item transpose of a block of columns x0..x1 and rows y0..y1, for the edges of
// the vector forms. Included inside one instruction set's namespace.
template <uint32_t kItem>
void Plain(const uint8_t* source, ptrdiff_t srb, uint8_t* destination, ptrdiff_t drb, int32_t x0, int32_t x1,
           int32_t y0, int32_t y1) {
  for (int32_t x = x0; x < x1; ++x) {
    uint8_t* d = destination + x * drb + ptrdiff_t(y0) * kItem;
    const uint8_t* s = source + y0 * srb + ptrdiff_t(x) * kItem;
    for (int32_t y = y0; y < y1; ++y, s += srb, d += kItem) std::memcpy(d, s, kItem);
  }
}
