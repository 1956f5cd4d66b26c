// Sample access at any byte address. Rows reach the converters at any offset (a 15u or 32f row
// may start on an odd byte inside a caller's buffer), so the scalar forms read and write their
// samples through these rather than through typed pointers; the compiler makes plain moves of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace OX {

template <class T>
inline T LoadAt(const void* base, ptrdiff_t index) {
  T v;
  std::memcpy(&v, static_cast<const uint8_t*>(base) + index * ptrdiff_t(sizeof(T)), sizeof(T));
  return v;
}
template <class T>
inline void StoreAt(void* base, ptrdiff_t index, T v) {
  std::memcpy(static_cast<uint8_t*>(base) + index * ptrdiff_t(sizeof(T)), &v, sizeof(T));
}

}  // namespace OX
