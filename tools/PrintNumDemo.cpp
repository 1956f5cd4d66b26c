// Demo step: stamps the frame number on a copy of the test card with OX_PrintNum, once in
// decimal at the top left and once in hexadecimal further down, and writes the result as a PNG.
#include <cstdio>
#include <string>
#include <vector>

#include "Command.h"
#include "Ombrix.h"
#include "PngIO.h"
#include "primitives/Primitives.h"

namespace ombrix_tool {
namespace {

DemoStepRegistrar gPrintNumStep(10, "Stamp the frame number (OX_PrintNum)", [](DemoContext& ctx) {
  std::vector<unsigned char> card = ctx.fCard;
  const int rowBytes = ctx.fWidth * 4;
  const OX_Result decimal = OX_PrintNum(card.data(), rowBytes, OX_PixelFormat_BGRA_4444_8u, ctx.fWidth, ctx.fHeight,
                                        ctx.fFrameNumber, 0.04f, 0.03f, 0.05f, true);
  const OX_Result hex = OX_PrintNum(card.data(), rowBytes, OX_PixelFormat_BGRA_4444_8u, ctx.fWidth, ctx.fHeight,
                                    ctx.fFrameNumber, 0.02f, 0.03f, 0.55f, false);
  if (decimal != OX_Success || hex != OX_Success) {
    std::printf("OX_PrintNum failed: %d, %d\n", decimal, hex);
    return false;
  }
  std::printf("stamped frame %d in decimal and as %x in hexadecimal (primitive level %d)\n", ctx.fFrameNumber,
              unsigned(ctx.fFrameNumber), OX::PrimitiveLevel);
  const Image img = ImageFromBGRA8BottomUp(card.data(), ctx.fWidth, ctx.fHeight, rowBytes);
  std::string err, path = ctx.fOutputDirectory + "/printnum.png";
  if (!WritePng(path, img, err)) {
    std::printf("could not write %s: %s\n", path.c_str(), err.c_str());
    return false;
  }
  std::printf("wrote %s\n", path.c_str());
  return true;
});

}  // namespace
}  // namespace ombrix_tool
