// Start-up and shut-down work that belongs to other subsystems. The lifecycle calls these in a
// fixed order; each subsystem defines its own.
#pragma once

namespace OX {

// Selects the primitive layer's level from the processor code.
void StartPrimitiveLayer();
// Builds the DV dequantisation tables (and the entropy table B and the coder's run and level
// tables), then entropy table A.
void BuildDVDequantisationTables();
void BuildDVEntropyTableA();
// Builds the DV coder's run and level tables (part of the dequantisation step).
void BuildDVCoderTables();
// Frees the two entropy tables, B first.
void FreeDVEntropyTableB();
void FreeDVEntropyTableA();

}  // namespace OX
