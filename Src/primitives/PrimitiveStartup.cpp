// Start-up of the primitive layer: the level it runs at for the life of the process.
#include "frame/Startup.h"

namespace OX {

void StartPrimitiveLayer() {}

}  // namespace OX
