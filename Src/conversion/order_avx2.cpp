// Channel order, AVX2 form: one byte shuffle a 32-byte step (each 16-byte lane alike).
#include <immintrin.h>

#include <cstring>

#include "conversion/ConverterFamilies.h"

#define OX_ORDER_VEC __m256i
#define OX_ORDER_LOAD(p) _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))
#define OX_ORDER_STORE(p, v) _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v)
#define OX_ORDER_SHUFFLE(v, m) _mm256_shuffle_epi8(v, m)
#define OX_ORDER_BYTES 32

namespace OX::avx2 {
#include "conversion/order.inl"
}  // namespace OX::avx2
