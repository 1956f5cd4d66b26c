// Channel order, SSSE3 form: one byte shuffle a 16-byte step.
#include <tmmintrin.h>

#include <cstring>

#include "conversion/ConverterFamilies.h"

#define OX_ORDER_VEC __m128i
#define OX_ORDER_LOAD(p) _mm_loadu_si128(reinterpret_cast<const __m128i*>(p))
#define OX_ORDER_STORE(p, v) _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v)
#define OX_ORDER_SHUFFLE(v, m) _mm_shuffle_epi8(v, m)
#define OX_ORDER_BYTES 16

namespace OX::ssse3 {
#include "conversion/order.inl"
}  // namespace OX::ssse3
