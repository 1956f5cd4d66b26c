// Scaled float-to-integer conversions, SSE2 form: 2 values a step through doubles.
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "primitives/FloatToInt.h"
#include "primitives/PrimitiveForms.h"

namespace OX {
namespace sse2 {
constexpr int kVectorBytes = 16;
#include "primitives/FloatToIntKernels.inc"
}  // namespace sse2
}  // namespace OX
