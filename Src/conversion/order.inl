// Channel order with byte shuffles: 16 bytes a step at SSSE3, 32 at AVX2, the rest one pixel or
// pair at a time with the same moves. Needs OX_ORDER_VEC, OX_ORDER_LOAD, OX_ORDER_STORE,
// OX_ORDER_SHUFFLE and OX_ORDER_BYTES defined by the including file.

namespace {

size_t Count(int32_t n) { return n > 0 ? size_t(n) : 0; }

// Reverses or swaps within each unit of `unitBytes` by the byte pattern `pattern` (one 16-byte
// lane's worth), then finishes the tail with the scalar move `tail`.
template <class Tail>
void Shuffle(const uint8_t* s, uint8_t* d, size_t bytes, const int8_t (&pattern)[16], Tail tail) {
  alignas(32) int8_t idx[OX_ORDER_BYTES];
  for (int i = 0; i < OX_ORDER_BYTES; ++i) idx[i] = pattern[i % 16];
  const OX_ORDER_VEC mask = OX_ORDER_LOAD(idx);
  size_t i = 0;
  for (; i + OX_ORDER_BYTES <= bytes; i += OX_ORDER_BYTES)
    OX_ORDER_STORE(d + i, OX_ORDER_SHUFFLE(OX_ORDER_LOAD(s + i), mask));
  tail(s + i, d + i, bytes - i);
}

constexpr int8_t kReverse8[16] = {3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12};
constexpr int8_t kReverse16[16] = {6, 7, 4, 5, 2, 3, 0, 1, 14, 15, 12, 13, 10, 11, 8, 9};
constexpr int8_t kReverse32[16] = {12, 13, 14, 15, 8, 9, 10, 11, 4, 5, 6, 7, 0, 1, 2, 3};
constexpr int8_t kSwap8[16] = {1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14};
constexpr int8_t kSwap32[16] = {4, 5, 6, 7, 0, 1, 2, 3, 12, 13, 14, 15, 8, 9, 10, 11};

// Scalar moves for the tail, by the same pattern over whole units of 4 or 16 bytes.
template <size_t Unit>
void PatternTail(const int8_t (&pattern)[16], const uint8_t* s, uint8_t* d, size_t bytes) {
  for (size_t i = 0; i + Unit <= bytes; i += Unit)
    for (size_t j = 0; j < Unit; ++j) d[i + j] = s[i + size_t(pattern[j])];
}

#define OX_ORDER_STEP(name, pattern, unit, bytesOf)                                                      \
  void name(const void* in, void* out, int32_t width) {                                                  \
    Shuffle(static_cast<const uint8_t*>(in), static_cast<uint8_t*>(out), bytesOf(width), pattern,       \
            [](const uint8_t* s, uint8_t* d, size_t n) { PatternTail<unit>(pattern, s, d, n); });        \
  }
size_t Bytes8u(int32_t w) { return 4 * Count(w); }
size_t Bytes15u(int32_t w) { return 8 * Count(w); }
size_t Bytes32f(int32_t w) { return 16 * Count(w); }
size_t Bytes422_8u(int32_t w) { return 4 * Count((w + 1) / 2); }
size_t Bytes422_32f(int32_t w) { return 16 * Count((w + 1) / 2); }
OX_ORDER_STEP(Reverse8u, kReverse8, 4, Bytes8u)
OX_ORDER_STEP(Reverse15u, kReverse16, 8, Bytes15u)
OX_ORDER_STEP(Reverse32f, kReverse32, 16, Bytes32f)
OX_ORDER_STEP(Swap422_8u, kSwap8, 4, Bytes422_8u)
OX_ORDER_STEP(Swap422_32f, kSwap32, 8, Bytes422_32f)
#undef OX_ORDER_STEP

}  // namespace

const RowConverter kOrder[kOrderCount] = {&Reverse8u, &Reverse15u, &Reverse32f, &Swap422_8u, &Swap422_32f};
