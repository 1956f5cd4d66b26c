// Block move kernels behind OX_CopyMemory. Each moves the head with memmove semantics of the C
// library up to the destination's vector alignment, then whole vector groups, then the tail.
// `stream` selects non-temporal stores for the vector groups.
#pragma once

#include <cstddef>
#include <cstdint>

namespace OX {

// How OX_CopyMemory moves `bytes` under the current flags and cache size.
struct CopyPlan {
  enum Path { kBlockMove, kSSE2, kAVX } fPath;
  bool fStream;  // non-temporal stores for the vector groups
};
CopyPlan PlanCopyMemory(uint32_t bytes);

namespace sse2 {
void CopyMemory(uint8_t* destination, const uint8_t* source, size_t bytes, bool stream);
}
namespace avx {
void CopyMemory(uint8_t* destination, const uint8_t* source, size_t bytes, bool stream);
}
}  // namespace OX
