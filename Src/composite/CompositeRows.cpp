// Runs of composite rows: converters, scratch rows and slices.
#include "composite/CompositeRows.h"

#include "frame/FloatGuard.h"
#include "frame/Scratch.h"

namespace OX {

namespace {
bool SetConversion(OX_PixelFormat from, OX_PixelFormat to, int32_t quality, bool& flag, RowConverterChain& chain) {
  flag = from != to;
  if (!flag) return true;
  chain.Build(from, to, quality);
  return !chain.Empty();
}
}  // namespace

bool CompositeRows::SetSourceConversion(OX_PixelFormat from, OX_PixelFormat to, int32_t quality) {
  return SetConversion(from, to, quality, fConvertSource, fSourceConverter);
}
bool CompositeRows::SetBackgroundConversion(OX_PixelFormat from, OX_PixelFormat to, int32_t quality) {
  return SetConversion(from, to, quality, fConvertBackground, fBackgroundConverter);
}
bool CompositeRows::SetDestinationConversion(OX_PixelFormat from, OX_PixelFormat to, int32_t quality) {
  return SetConversion(from, to, quality, fConvertDestination, fDestinationConverter);
}

bool CompositeRows::NeedsChainScratch() const {
  return (fConvertSource && fSourceConverter.Count() > 1) || (fConvertBackground && fBackgroundConverter.Count() > 1) ||
         (fConvertDestination && fDestinationConverter.Count() > 1);
}

size_t CompositeRows::ScratchBytes() const {
  const size_t row = size_t(fWidth > 0 ? fWidth : 0) * RowConverterChain::kScratchBytesPerPixel;
  return row * (size_t(fConvertSource) + size_t(fConvertBackground) + size_t(fConvertDestination) +
                (NeedsChainScratch() ? 2 : 0));
}

OX_Result CompositeRows::RunRows(int32_t first, int32_t last) const {
  if (fWidth <= 0 || first > last) return OX_Success;
  const size_t row = size_t(fWidth) * RowConverterChain::kScratchBytesPerPixel;
  ScratchBuffer scratch(ScratchBytes());
  if (scratch.Size() && !scratch.Get()) return OX_ErrNoMemory;
  uint8_t* next = scratch.Get();
  auto take = [&](bool needed) {
    if (!needed) return static_cast<uint8_t*>(nullptr);
    uint8_t* p = next;
    next += row;
    return p;
  };
  uint8_t* sourceRow = take(fConvertSource);
  uint8_t* backgroundRow = take(fConvertBackground);
  uint8_t* outputRow = take(fConvertDestination);
  uint8_t* chainA = take(NeedsChainScratch());
  uint8_t* chainB = take(NeedsChainScratch());
  for (int32_t y = first; y <= last; ++y) {
    const uint8_t* s = fSource + ptrdiff_t(y) * fSourceRowBytes;
    const uint8_t* b = fBackground + ptrdiff_t(y) * fBackgroundRowBytes;
    uint8_t* d = fDestination + ptrdiff_t(y) * fDestinationRowBytes;
    if (fConvertSource) {
      fSourceConverter.ApplyWithScratch(s, sourceRow, fWidth, chainA, chainB);
      s = sourceRow;
    }
    if (fConvertBackground) {
      fBackgroundConverter.ApplyWithScratch(b, backgroundRow, fWidth, chainA, chainB);
      b = backgroundRow;
    }
    fKernel(s, b, fConvertDestination ? outputRow : d, fWidth, fOpacity);
    if (fConvertDestination) fDestinationConverter.ApplyWithScratch(outputRow, d, fWidth, chainA, chainB);
  }
  return OX_Success;
}

void MultiThreadedComposite::RunSlice(int index) {
  // Pool threads do not carry the caller's floating-point mode: each slice sets the same one, so
  // denormals flush alike on every thread.
  FloatGuard guard;
  const int32_t band = fRows.fHeight / 4;
  const int32_t first = index * band;
  const int32_t last = index == 3 ? fRows.fHeight - 1 : first + band - 1;
  fResults[index] = fRows.RunRows(first, last);
}

OX_Result MultiThreadedComposite::Result() const {
  for (OX_Result r : fResults)
    if (r != OX_Success) return r;
  return OX_Success;
}

OX_Result RunCompositeRows(const CompositeRows& rows) {
  if (rows.fHeight <= 0 || rows.fWidth <= 0) return OX_Success;
  if (rows.fHeight <= 64) return rows.RunRows(0, rows.fHeight - 1);
  MultiThreadedComposite task(rows);
  Threading::RunTask(task);
  return task.Result();
}

}  // namespace OX
