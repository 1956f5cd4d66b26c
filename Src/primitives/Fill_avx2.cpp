// The store family, AVX2 form: 32 bytes a step.
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "frame/CopyMemory.h"
#include "frame/Globals.h"
#include "primitives/PrimitiveForms.h"

namespace OX {
namespace avx2 {
constexpr int kVectorBytes = 32;
constexpr auto kBlockMove = &avx::CopyMemory;
#include "primitives/StoreKernels.inc"
}  // namespace avx2
}  // namespace OX
