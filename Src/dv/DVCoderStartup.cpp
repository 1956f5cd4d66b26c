// Start-up of the DV coder's run and level tables.
#include "frame/Startup.h"

namespace OX {

void BuildDVCoderTables() {}

}  // namespace OX
