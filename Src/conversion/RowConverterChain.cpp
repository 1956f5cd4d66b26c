// Building a chain from the step chooser, and running it over one row through scratch rows.
#include "conversion/RowConverterChain.h"

#include "conversion/ConvertPipeline.h"
#include "frame/PixelFormat.h"
#include "frame/Scratch.h"

namespace OX {

void RowConverterChain::Build(OX_PixelFormat source, OX_PixelFormat destination, int32_t quality) {
  fCount = 0;
  fFormats[0] = source;
  OX_PixelFormat format = source;
  for (int step = 0; step < kMaxConverters; ++step) {
    RowConverter converter = nullptr;
    OX_Result status = OX_ChooseRowStep(format, destination, quality, &converter, &format);
    if (!converter) status = OX_ErrNoRoute;  // a step without a converter ends the route
    if (status != OX_Success) return;
    fConverters[step] = converter;
    fFormats[step + 1] = format;
    if (format == destination) {
      fCount = step + 1;
      return;
    }
  }
  // Eight steps did not reach the destination: no route.
}

void RowConverterChain::ApplyWithScratch(const void* input, void* output, int32_t width, void* scratchA,
                                         void* scratchB) const {
  if (fCount == 1) {
    fConverters[0](input, output, width);
    return;
  }
  // The first step writes A, the middle ones alternate A -> B -> A ..., the last writes `output`.
  void* rows[2] = {scratchA, scratchB};
  const void* from = input;
  for (int i = 0; i < fCount; ++i) {
    void* to = i == fCount - 1 ? output : rows[i & 1];
    fConverters[i](from, to, width);
    from = to;
  }
}

bool RowConverterChain::Apply(const void* input, void* output, int32_t width) const {
  if (fCount == 0) return false;
  if (fCount == 1) {
    fConverters[0](input, output, width);
    return true;
  }
  const size_t rowBytes = width > 0 ? size_t(width) * kScratchBytesPerPixel : 0;
  ScratchBuffer scratchA(rowBytes);
  if (rowBytes && !scratchA.Get()) return false;
  if (fCount == 2) {
    ApplyWithScratch(input, output, width, scratchA.Get(), nullptr);
    return true;
  }
  ScratchBuffer scratchB(rowBytes);
  if (rowBytes && !scratchB.Get()) return false;
  ApplyWithScratch(input, output, width, scratchA.Get(), scratchB.Get());
  return true;
}

}  // namespace OX
