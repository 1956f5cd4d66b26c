// Decode road of OX_Convert: a container source.
#include "conversion/ContainerRoads.h"

namespace OX {

OX_Result ConvertFromContainer(const void*, int32_t, OX_PixelFormat, void*, int32_t, OX_PixelFormat, int32_t,
                               int32_t, int32_t) {
  return OX_ErrUnsupported;  // no container decoder is present
}

}  // namespace OX
