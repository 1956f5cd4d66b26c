// Scaled float-to-integer conversions, AVX2 form: 4 values a step through doubles.
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "primitives/FloatToInt.h"
#include "primitives/PrimitiveForms.h"

namespace OX {
namespace avx2 {
constexpr int kVectorBytes = 32;
#include "primitives/FloatToIntKernels.inc"
}  // namespace avx2
}  // namespace OX
