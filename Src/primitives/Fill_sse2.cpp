// The store family, SSE2 form: 16 bytes a step.
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "frame/CopyMemory.h"
#include "frame/Globals.h"
#include "primitives/PrimitiveForms.h"

namespace OX {
namespace sse2 {
constexpr int kVectorBytes = 16;
constexpr auto kBlockMove = &sse2::CopyMemory;
#include "primitives/StoreKernels.inc"
}  // namespace sse2
}  // namespace OX
