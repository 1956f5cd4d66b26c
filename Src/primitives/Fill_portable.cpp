// The store family, portable form: channel set, pattern fill and two-dimensional byte copy.
#include <cstring>

#include "primitives/PrimitiveForms.h"

namespace OX {
namespace portable {

void CopyChannel8uC4(uint8_t value, uint8_t* destination, int32_t rowBytes, int32_t width, int32_t height) {
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = destination + int64_t(y) * rowBytes;
    for (int32_t x = 0; x < width; ++x) d[4 * x] = value;
  }
}

void CopyChannel16uC4(uint16_t value, uint16_t* destination, int32_t rowBytes, int32_t width, int32_t height) {
  for (int32_t y = 0; y < height; ++y) {
    auto* d = reinterpret_cast<uint16_t*>(reinterpret_cast<uint8_t*>(destination) + int64_t(y) * rowBytes);
    for (int32_t x = 0; x < width; ++x) d[4 * x] = value;
  }
}

void CopyChannel32fC4(float value, float* destination, int32_t rowBytes, int32_t width, int32_t height) {
  uint32_t bits;
  std::memcpy(&bits, &value, 4);
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = reinterpret_cast<uint8_t*>(destination) + int64_t(y) * rowBytes;
    for (int32_t x = 0; x < width; ++x) std::memcpy(d + 16 * int64_t(x), &bits, 4);
  }
}

void FillPattern(const void* pattern16, int32_t unitBytes, void* destination, int32_t rowBytes, int32_t width,
                 int32_t height) {
  const int64_t rowLength = int64_t(width) * unitBytes;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* d = static_cast<uint8_t*>(destination) + int64_t(y) * rowBytes;
    int64_t i = 0;
    for (; i + 16 <= rowLength; i += 16) std::memcpy(d + i, pattern16, 16);
    std::memcpy(d + i, pattern16, size_t(rowLength - i));
  }
}

void Copy2D8u(const void* source, int32_t sourceRowBytes, void* destination, int32_t destinationRowBytes,
              int32_t widthBytes, int32_t height) {
  for (int32_t y = 0; y < height; ++y)
    std::memcpy(static_cast<uint8_t*>(destination) + int64_t(y) * destinationRowBytes,
                static_cast<const uint8_t*>(source) + int64_t(y) * sourceRowBytes, size_t(widthBytes));
}

}  // namespace portable
}  // namespace OX
