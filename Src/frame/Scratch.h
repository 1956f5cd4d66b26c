// Working memory of a kernel: up to and including kScratchStackLimit bytes from the stack, aligned
// to 16; more from a transient block that is freed on every way out. Zero bytes take nothing.
// The stack area lives inside the object, so declare the object where the scratch is needed and
// it is released at the end of that scope (also inside a row loop).
#pragma once

#include <cstddef>
#include <cstdint>

#include "Ombrix.h"

namespace OX {

constexpr size_t kScratchStackLimit = 0x40000;

class ScratchBuffer {
 public:
  explicit ScratchBuffer(size_t bytes) : fBytes(bytes) {
    if (bytes == 0) return;
    if (bytes <= kScratchStackLimit) {
      fPointer = fStack;
    } else if (bytes <= 0xFFFFFFFFull) {
      fPointer = static_cast<uint8_t*>(OX_AllocateTransientMemoryBlock(uint32_t(bytes), &fBase, &fAllocated));
    }
  }
  ~ScratchBuffer() {
    if (fBase) OX_FreeTransientMemoryBlock(fBase, fAllocated);
  }
  ScratchBuffer(const ScratchBuffer&) = delete;
  ScratchBuffer& operator=(const ScratchBuffer&) = delete;

  // Null when a large request could not be allocated, or for zero bytes.
  uint8_t* Get() const { return fPointer; }
  template <class T>
  T* As() const { return reinterpret_cast<T*>(fPointer); }
  size_t Size() const { return fBytes; }
  bool FromStack() const { return fPointer == fStack; }

 private:
  alignas(16) uint8_t fStack[kScratchStackLimit];
  uint8_t* fPointer = nullptr;
  void* fBase = nullptr;
  uint32_t fAllocated = 0;
  size_t fBytes;
};

}  // namespace OX
