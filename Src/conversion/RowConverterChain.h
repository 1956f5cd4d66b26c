// A chain of up to eight row converters from one raw format to another, built from the route
// chooser and run one row at a time through two scratch rows. Conversion, motion, compositing, the
// blur and planar decoding all convert their rows through it.
#pragma once

#include <cstdint>

#include "Ombrix.h"
#include "conversion/RowConverter.h"

namespace OX {

class RowConverterChain {
 public:
  static constexpr int kMaxConverters = 8;
  // Every intermediate format fits in 16 bytes a pixel, so a scratch row of width x 16 bytes
  // holds any step's output.
  static constexpr int kScratchBytesPerPixel = 16;

  RowConverterChain() = default;
  RowConverterChain(OX_PixelFormat source, OX_PixelFormat destination, int32_t quality) {
    Build(source, destination, quality);
  }

  // Follows the route chooser from `source` to `destination`. On any failure (a container, no
  // route within eight steps, a step without a converter) the count is left at 0.
  void Build(OX_PixelFormat source, OX_PixelFormat destination, int32_t quality);
  void Clear() { fCount = 0; }

  // Converts one row of `width` pixels. Scratch rows come from the stack up to 16384 pixels and
  // from a transient block above that; the second row is taken only for three or more steps.
  // The stack areas are reserved whole (up to 512 KiB), which pool threads' stacks allow.
  // Returns false, writing nothing, when the chain is empty or a wide row's scratch could not be
  // had. `input` and `output` must not overlap.
  bool Apply(const void* input, void* output, int32_t width) const;
  // The same with the caller's scratch rows, each at least width x 16 bytes (`scratchB` may be null
  // for chains of fewer than three steps); for loops that keep their scratch across rows.
  void ApplyWithScratch(const void* input, void* output, int32_t width, void* scratchA, void* scratchB) const;

  int Count() const { return fCount; }
  bool Empty() const { return fCount == 0; }
  RowConverter Converter(int i) const { return fConverters[i]; }
  // The format each step starts from (0) and lands on (1 to Count()).
  OX_PixelFormat Format(int i) const { return fFormats[i]; }

 private:
  int fCount = 0;
  RowConverter fConverters[kMaxConverters] = {};
  OX_PixelFormat fFormats[kMaxConverters + 1] = {};
};

}  // namespace OX
