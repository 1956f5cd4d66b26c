// Encode road of OX_Convert: a container destination.
#include "conversion/ContainerRoads.h"

namespace OX {

OX_Result ConvertToContainer(const void*, int32_t, OX_PixelFormat, void*, int32_t, OX_PixelFormat, int32_t, int32_t,
                             int32_t) {
  return OX_ErrUnsupported;  // no container encoder is present
}

}  // namespace OX
