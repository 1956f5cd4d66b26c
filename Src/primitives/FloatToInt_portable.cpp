// Scaled float-to-integer conversions, portable form. Rounding to nearest follows the current
// rounding mode, which the library leaves at nearest-even, as the vector forms do.
#include "primitives/FloatToInt.h"
#include "primitives/PrimitiveForms.h"

namespace OX {
namespace portable {

void Convert32fTo32sScaled(const float* source, int32_t* destination, int32_t length, int32_t roundMode,
                           int32_t scaleFactor) {
  const double factor = ConversionFactor(scaleFactor);
  const bool round = roundMode == 1;
  for (int32_t i = 0; i < length; ++i) destination[i] = ConvertTo32s(source[i], factor, round);
}

void Convert32fTo16sScaled(const float* source, int16_t* destination, int32_t length, int32_t roundMode,
                           int32_t scaleFactor) {
  const double factor = ConversionFactor(scaleFactor);
  const bool round = roundMode == 1;
  for (int32_t i = 0; i < length; ++i) destination[i] = ConvertTo16s(source[i], factor, round);
}

}  // namespace portable
}  // namespace OX
