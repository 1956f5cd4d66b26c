// Headers that every converter body needs before PixelVec.inl is included inside the namespace
// of one instruction set.
#pragma once

// Multiplications and additions stay separate operations at every level (no fused multiply-add),
// so that the vector forms give the portable form's bits.
#pragma GCC optimize("fp-contract=off")

#include <cstdint>
#include <cstring>

#include <immintrin.h>

// Vector types as template arguments lose their alignment attribute; the bodies never rely on it.
#pragma GCC diagnostic ignored "-Wignored-attributes"

#include "conversion/ConverterFamilies.h"
