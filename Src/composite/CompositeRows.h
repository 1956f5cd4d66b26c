// The row machinery every two-input pixel operation shares: the row kernel type, the run of rows
// through optional converters with scratch rows taken once per run, and the four-slice task.
// Compositing, the blend modes, transitions and motion all drive their kernels through it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Ombrix.h"
#include "conversion/RowConverterChain.h"

namespace OX {

// kernel(sourceRow, backgroundRow, outputRow, pixelCount, opacity). A count below 1 does nothing;
// the output row may be the background row itself.
using CompositeKernel = void (*)(const void* source, const void* background, void* output, int32_t count,
                                 float opacity);

// Everything one run of rows reads. Converters are used where their flag is set; otherwise the
// caller's rows go to the kernel as they are.
struct CompositeRows {
  bool fConvertSource = false, fConvertBackground = false, fConvertDestination = false;
  RowConverterChain fSourceConverter, fBackgroundConverter, fDestinationConverter;
  CompositeKernel fKernel = nullptr;
  const uint8_t* fSource = nullptr;
  int32_t fSourceRowBytes = 0;
  const uint8_t* fBackground = nullptr;
  int32_t fBackgroundRowBytes = 0;
  uint8_t* fDestination = nullptr;
  int32_t fDestinationRowBytes = 0;
  int32_t fWidth = 0, fHeight = 0;
  float fOpacity = 0;

  // Sets a converter and its flag when `from` differs from `to`. False when a needed route does
  // not exist (the call should then write nothing).
  bool SetSourceConversion(OX_PixelFormat from, OX_PixelFormat to, int32_t quality);
  bool SetBackgroundConversion(OX_PixelFormat from, OX_PixelFormat to, int32_t quality);
  bool SetDestinationConversion(OX_PixelFormat from, OX_PixelFormat to, int32_t quality);

  // Bytes of scratch a run needs: width x 16 for each converted row and, for chains of two or
  // more steps, two more rows for the chain's intermediate steps.
  size_t ScratchBytes() const;
  bool NeedsChainScratch() const;
  // Rows first..last inclusive, on the calling thread, with scratch taken once by the scratch
  // rule. Returns -16 when the scratch cannot be had (rows before that are not touched).
  OX_Result RunRows(int32_t first, int32_t last) const;
};

// Rows on the calling thread up to 64 of them; above, four slices of height / 4 rows on the pool,
// the last taking the remainder, each slice under the floating-point guard with its own scratch.
OX_Result RunCompositeRows(const CompositeRows& rows);

class MultiThreadedComposite final : public Threading::Task {
 public:
  explicit MultiThreadedComposite(const CompositeRows& rows) : fRows(rows) {}
  int SliceCount() override { return 4; }
  void RunSlice(int index) override;
  OX_Result Result() const;

 private:
  const CompositeRows& fRows;
  OX_Result fResults[4] = {};
};

}  // namespace OX
