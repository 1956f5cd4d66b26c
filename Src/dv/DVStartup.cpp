// Start-up and shut-down of the DV tables.
#include "frame/Globals.h"
#include "frame/Startup.h"

namespace OX {

void BuildDVDequantisationTables() {}
void BuildDVEntropyTableA() {}
void FreeDVEntropyTableB() { gDVEntropyTableB = nullptr; }
void FreeDVEntropyTableA() { gDVEntropyTableA = nullptr; }

}  // namespace OX
