// 16u to 15u in place, ssse3 form.
#include <immintrin.h>

#include "conversion/SideConversions.h"

namespace OX::ssse3 {
#include "conversion/scale16u.inl"
}  // namespace OX::ssse3
