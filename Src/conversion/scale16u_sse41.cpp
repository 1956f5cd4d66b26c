// 16u to 15u in place, sse41 form.
#include <immintrin.h>

#include "conversion/SideConversions.h"

namespace OX::sse41 {
#include "conversion/scale16u.inl"
}  // namespace OX::sse41
