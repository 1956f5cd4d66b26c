// Start-up of the primitive layer: the level it runs at for the life of the process.
#include "frame/Globals.h"
#include "frame/Startup.h"
#include "primitives/Primitives.h"

namespace OX {

void StartPrimitiveLayer() {
  int32_t code = GetProcessorCode();
  // A processor code that asks for AVX while the library's AVX flag is off falls back to the
  // SSE4.2 code, so the layer never runs wider than the rest of the library was allowed to.
  bool replaced = false;
  if (!gHasAVX && (code & ~1) == 70) {
    code = 69;
    replaced = true;
  }
  if (code == 0 && !replaced) {
    SelectPrimitiveLevel(6);
  } else if (SelectPrimitiveLevel(code) != 0) {
    SelectPrimitiveLevel(6);
  }
}

}  // namespace OX
