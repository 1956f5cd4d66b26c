// OX_Composite, OX_CompositeWithBlendMode and OX_IsOpacityNOP: argument checks, the shortcuts,
// the working formats and kernel, and the run of rows.
#include <cstdint>

#include "Ombrix.h"
#include "composite/BlendModes.h"
#include "composite/CompositeCommon.h"
#include "composite/CompositeKernels.h"
#include "composite/CompositeRows.h"
#include "frame/FloatGuard.h"
#include "frame/PixelFormat.h"
#include "platform/CRand.h"

namespace OX {
namespace {

constexpr OX_PixelFormat kWorking422Deep = 2313;  // VUYP_4444_32f
constexpr OX_PixelFormat kWorking4228u = 2057;    // VUYP_4444_8u

struct Buffers {
  const void* fSource;
  int32_t fSourceRowBytes;
  OX_PixelFormat fSourceFormat;
  const void* fBackground;
  int32_t fBackgroundRowBytes;
  OX_PixelFormat fBackgroundFormat;
  void* fDestination;
  int32_t fDestinationRowBytes;
  OX_PixelFormat fDestinationFormat;
  int32_t fWidth, fHeight;
};

// Checks shared by both entries, after the container tests: 1 to go on, else the code (0 for an
// empty picture).
OX_Result CheckSizes(const Buffers& b, bool& empty) {
  empty = false;
  if (b.fWidth < 0) return OX_ErrBadWidth;
  if (b.fWidth == 0 || b.fHeight <= 0) {
    empty = true;
    return OX_Success;
  }
  if (!b.fSource || !b.fBackground) return OX_ErrNullSource;
  if (!b.fDestination) return OX_ErrNullDest;
  return OX_Success;
}

// Rows are paired by picture: a source or background whose origin differs from the
// destination's is walked from its last row, as a conversion between them would.
void FillRows(const Buffers& b, CompositeRows& rows) {
  const bool destinationBottomUp = OX_IsOriginBottomLeft(b.fDestinationFormat);
  auto place = [&](const void* p, int32_t rowBytes, OX_PixelFormat f, const uint8_t*& out, int32_t& outRowBytes) {
    out = static_cast<const uint8_t*>(p);
    outRowBytes = rowBytes;
    if (OX_IsOriginBottomLeft(f) != destinationBottomUp) {
      out += ptrdiff_t(b.fHeight - 1) * rowBytes;
      outRowBytes = -rowBytes;
    }
  };
  place(b.fSource, b.fSourceRowBytes, b.fSourceFormat, rows.fSource, rows.fSourceRowBytes);
  place(b.fBackground, b.fBackgroundRowBytes, b.fBackgroundFormat, rows.fBackground, rows.fBackgroundRowBytes);
  rows.fDestination = static_cast<uint8_t*>(b.fDestination);
  rows.fDestinationRowBytes = b.fDestinationRowBytes;
  rows.fWidth = b.fWidth;
  rows.fHeight = b.fHeight;
}

OX_Result Run(const Buffers& b, CompositeKernel kernel, OX_PixelFormat workingSource, OX_PixelFormat workingBackground,
              OX_PixelFormat workingDestination, float opacity, int32_t quality) {
  CompositeRows rows;
  FillRows(b, rows);
  rows.fKernel = kernel;
  rows.fOpacity = opacity;
  // A missing route leaves the destination as it stood rather than running on unwritten rows.
  if (!rows.SetSourceConversion(b.fSourceFormat, workingSource, quality) ||
      !rows.SetBackgroundConversion(b.fBackgroundFormat, workingBackground, quality) ||
      !rows.SetDestinationConversion(workingDestination, b.fDestinationFormat, quality))
    return OX_ErrNoRoute;
  return RunCompositeRows(rows);
}

OX_Result CompositeBody(const Buffers& b, float opacity, int32_t quality, bool keepLinear) {
  FloatGuard guard;
  if (IsContainerFormat(b.fSourceFormat) || IsContainerFormat(b.fBackgroundFormat)) return OX_ErrBadSourceFormat;
  if (IsContainerFormat(b.fDestinationFormat)) return OX_ErrBadDestFormat;
  if (b.fWidth < 0) return OX_ErrBadWidth;
  if (b.fWidth == 0 || b.fHeight <= 0) return OX_Success;

  const bool opaqueSource = IsOpaqueFormat(b.fSourceFormat), opaqueBackground = IsOpaqueFormat(b.fBackgroundFormat);
  if (IsNearZero(opacity))
    return OX_Convert(b.fBackground, b.fBackgroundRowBytes, b.fBackgroundFormat, b.fDestination, b.fDestinationRowBytes,
                      b.fDestinationFormat, b.fWidth, b.fHeight, quality);
  if (IsNearOne(opacity) && opaqueSource)
    return OX_Convert(b.fSource, b.fSourceRowBytes, b.fSourceFormat, b.fDestination, b.fDestinationRowBytes,
                      b.fDestinationFormat, b.fWidth, b.fHeight, quality);

  // Past the shortcuts (opacity 0 never reads the source, so it may be null there).
  bool empty;
  if (OX_Result r = CheckSizes(b, empty); r != OX_Success || empty) return r;

  const OX_PixelFormat d = b.fDestinationFormat;
  OX_PixelFormat w;
  if (Is422Format(d)) {
    // 4:2:2 composites in premultiplied 4:4:4 YUV; the final conversion drops the alpha.
    w = IsDeepFormat(d) ? kWorking422Deep : kWorking4228u;
  } else {
    w = d & ~(kOrderBit | kSubsamplingMask);
    if (IsDeepFormat(d)) w = WithDepth(w, kDepth32f);
    if (IsOpaqueFormat(d)) w = WithAlpha(w, kAlphaPremultiplied);
  }
  OX_PixelFormat ws = opaqueSource ? WithAlpha(w, kAlphaIgnored) : w;
  OX_PixelFormat wb = opaqueBackground ? WithAlpha(w, kAlphaIgnored) : w;
  OX_PixelFormat wd = w;
  if (!keepLinear) {
    // After the opaque forcing, on purpose: the rows are converted to W itself, while the kernel
    // stays the one for an opaque source or background.
    ws = wb = wd = w & ~kLinearBit;
  }
  const int index = (IsYUV(d) ? 8 : 0) | (AlphaOf(Is422Format(d) ? w : d) != kAlphaStraight ? 4 : 0) |
                    (opaqueSource ? 2 : 0) | (opaqueBackground ? 1 : 0);
  const CompositeKernel kernel =
      IsDeepFormat(w) ? CompositeFloatKernel(index & 7) : ChooseComposite8uKernel(index);
  return Run(b, kernel, ws, wb, wd, opacity, quality);
}

}  // namespace
}  // namespace OX

OX_Result OX_Composite(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat, const void* background,
                       int32_t backgroundRowBytes, OX_PixelFormat backgroundFormat, void* destination,
                       int32_t destinationRowBytes, OX_PixelFormat destinationFormat, int32_t width, int32_t height,
                       float opacity, int32_t quality, bool keepLinear) {
  const OX::Buffers b{source,      sourceRowBytes,      sourceFormat,      background, backgroundRowBytes,
                      backgroundFormat, destination, destinationRowBytes, destinationFormat, width, height};
  return OX::CompositeBody(b, opacity, quality, keepLinear);
}

OX_Result OX_CompositeWithBlendMode(const void* source, int32_t sourceRowBytes, OX_PixelFormat sourceFormat,
                                    const void* background, int32_t backgroundRowBytes,
                                    OX_PixelFormat backgroundFormat, void* destination, int32_t destinationRowBytes,
                                    OX_PixelFormat destinationFormat, int32_t width, int32_t height, float opacity,
                                    OX_BlendMode blendMode, int32_t quality, bool keepLinear) {
  using namespace OX;
  const Buffers b{source,      sourceRowBytes,      sourceFormat,      background, backgroundRowBytes,
                  backgroundFormat, destination, destinationRowBytes, destinationFormat, width, height};
  if (blendMode == OX_BlendMode_Normal) return CompositeBody(b, opacity, quality, keepLinear);
  if (blendMode == OX_BlendMode_Dissolve && height > 1) crt::SRand(1);
  FloatGuard guard;
  if (IsContainerFormat(sourceFormat) || IsContainerFormat(backgroundFormat)) return OX_ErrBadSourceFormat;
  if (IsContainerFormat(destinationFormat)) return OX_ErrBadDestFormat;
  const CompositeKernel kernel = BlendModeKernel(blendMode);
  if (!kernel) return OX_ErrUnsupported;
  bool empty;
  if (OX_Result r = CheckSizes(b, empty); r != OX_Success || empty) return r;
  return Run(b, kernel, kBlendWorkingFormat, kBlendWorkingFormat, kBlendWorkingFormat, opacity, quality);
}

bool OX_IsOpacityNOP(OX_BlendMode blendMode, float opacity) {
  if (blendMode != OX_BlendMode_Normal && blendMode != OX_BlendMode_Dissolve) return false;
  const float difference = opacity - 1.0f;
  return (difference < 0 ? -difference : difference) < OX::kTolerance;
}
