// Rewriting of the display information of a DV frame after a merge.
#pragma once

#include <cstdint>

namespace OX {

// Sets DISP and BCS of every VSC pack of the sequences that `frame`'s header counts (10 or 12,
// whatever the family) to the pair that stands for `displayClass` (0 to 4) at the frame's rate.
void RewriteVSCPacks(uint8_t* frame, int displayClass);

}  // namespace OX
