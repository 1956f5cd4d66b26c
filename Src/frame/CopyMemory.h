// Block move kernels behind OX_CopyMemory. Each moves the head with memmove semantics of the C
// library up to the destination's vector alignment, then whole vector groups, then the tail.
// `stream` selects non-temporal stores for the vector groups.
#pragma once

#include <cstddef>
#include <cstdint>

namespace OX {
namespace sse2 {
void CopyMemory(uint8_t* destination, const uint8_t* source, size_t bytes, bool stream);
}
namespace avx {
void CopyMemory(uint8_t* destination, const uint8_t* source, size_t bytes, bool stream);
}
}  // namespace OX
