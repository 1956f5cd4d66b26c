// The step chooser of a conversion chain: the rules that come ahead of the route table (the fast
// VUYX to BGRA step, alpha-only changes, depth changes, opaque alpha first), then the table.
#include <cstring>

#include "conversion/ConvertPipeline.h"
#include "conversion/RouteTable.h"
#include "frame/Globals.h"
#include "frame/PixelFormat.h"

namespace OX {
namespace {

template <int kBytesPerPixel>
void CopyPixels(const void* input, void* output, int32_t width) {
  if (width > 0) std::memcpy(output, input, size_t(width) * kBytesPerPixel);
}
// 4:2:2 rows: whole pairs, so an odd width still carries its last pair.
template <int kBytesPerPair>
void CopyPairs(const void* input, void* output, int32_t width) {
  if (width > 0) std::memcpy(output, input, (size_t(width) + 1) / 2 * kBytesPerPair);
}
// V210 rows: whole groups of six pixels in 16 bytes.
void CopyV210Groups(const void* input, void* output, int32_t width) {
  if (width > 0) std::memcpy(output, input, (size_t(width) + 5) / 6 * 16);
}

bool IsDepth8uOr15u(OX_PixelFormat f) { return DepthOf(f) == kDepth8u || DepthOf(f) == kDepth15u; }

// Steps whose converter is deliberately not the one for the pair of formats they join: on the way
// to RGB_444_10u, BGRA_4444_15u lands on BGRP_4444_15u through the 15u un-premultiply, and the
// 10u values of that route depend on it.
struct DeliberatePairing {
  OX_PixelFormat fFrom, fLandsOn, fConverterFrom, fConverterTo;
};
constexpr DeliberatePairing kDeliberatePairings[] = {
    {OX_PixelFormat_BGRA_4444_15u, OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_BGRP_4444_15u,
     OX_PixelFormat_BGRA_4444_15u},
};

RowConverter TableStepConverter(OX_PixelFormat current, OX_PixelFormat landing, int32_t quality) {
  for (const DeliberatePairing& p : kDeliberatePairings)
    if (p.fFrom == current && p.fLandsOn == landing) return FindRowConverter(p.fConverterFrom, p.fConverterTo, quality);
  return FindRowConverter(current, landing, quality);
}

}  // namespace

RowConverter RowCopyConverter(OX_PixelFormat format) {
  if (!IsRawFormat(format)) return nullptr;
  if (SubsamplingOf(format) == kSub422) {
    switch (DepthOf(format)) {
      case kDepth8u: return &CopyPairs<4>;
      case kDepth10u: return &CopyV210Groups;
      case kDepth15u:
      case kDepth32f: return &CopyPairs<16>;
      default: return nullptr;
    }
  }
  if (SubsamplingOf(format) != kSub444) return nullptr;
  switch (TightRowBytes(format, 1)) {
    case 2: return &CopyPixels<2>;
    case 4: return &CopyPixels<4>;
    case 8: return &CopyPixels<8>;
    case 16: return &CopyPixels<16>;
    default: return nullptr;
  }
}

}  // namespace OX

using namespace OX;

OX_Result OX_ChooseRowStep(OX_PixelFormat current, OX_PixelFormat destination, int32_t quality,
                           RowConverter* outConverter, OX_PixelFormat* inOutFormat) {
  if (IsContainerFormat(current)) return OX_ErrBadSourceFormat;
  if (IsContainerFormat(destination)) return OX_ErrBadDestFormat;
  *outConverter = nullptr;
  OX_PixelFormat landing = 0;
  RowConverter converter = nullptr;

  const uint32_t currentAlpha = AlphaOf(current);
  const uint32_t destinationAlpha = AlphaOf(destination);
  const bool currentAlphaFree = IsAlphaFree(current);
  const bool destinationAlphaFree = IsAlphaFree(destination);

  if ((current & ~k709Bit) == OX_PixelFormat_VUYX_4444_8u &&
      (destination & ~kAlphaPremultiplied) == OX_PixelFormat_BGRA_4444_8u && gHasSSE2) {
    // The fast step: matrix and opaque alpha in one pass, to BGRA or BGRX alike.
    landing = destination;
    converter = FindRowConverter(current, destination, quality);
  } else if (current == destination) {
    landing = destination;
    converter = RowCopyConverter(current);
  } else if (((current ^ destination) & ~kAlphaMask) == 0) {
    // Only the alpha mode differs.
    if (currentAlphaFree || (currentAlpha == kAlphaPremultiplied && destinationAlphaFree)) {
      landing = destination;  // set alpha to opaque; premultiplied colour stays as it is
    } else if (currentAlpha == kAlphaPremultiplied && destinationAlpha == kAlphaStraight) {
      landing = destination;  // un-premultiply
    } else {
      // Straight alpha: premultiply first; the step after makes it opaque where that is wanted.
      landing = destinationAlpha == kAlphaPremultiplied ? destination : WithAlpha(current, kAlphaPremultiplied);
    }
    converter = FindRowConverter(current, landing, quality);
  } else if (WithDepth(current, kDepth32f) == destination && IsDepth8uOr15u(current)) {
    landing = destination;
    converter = FindRowConverter(current, landing, quality);
  } else if (WithDepth(destination, kDepth32f) == current && IsDepth8uOr15u(destination)) {
    landing = destination;
    converter = FindRowConverter(current, landing, quality);
  } else if (IsDepth8uOr15u(current) && IsDepth8uOr15u(destination) &&
             WithDepth(current, DepthOf(destination)) == destination) {
    landing = destination;
    converter = FindRowConverter(current, landing, quality);
  } else if (((current ^ destination) & ~(kAlphaMask | kOrderBit)) != 0 && currentAlpha == kAlphaIgnored &&
             (DepthOf(current) == kDepth8u || DepthOf(current) == kDepth32f) &&
             (destinationAlpha == kAlphaStraight || destinationAlpha == kAlphaPremultiplied)) {
    // Make the ignored alpha opaque before a longer route, so later steps see a real alpha.
    landing = WithAlpha(current, destinationAlpha);
    converter = FindRowConverter(current, landing, quality);
  } else {
    landing = RouteLandsOn(current, destination);
    if (landing == 0) return RawFormatIndex(current) < 0 ? OX_ErrBadSourceFormat : OX_ErrBadDestFormat;
    converter = TableStepConverter(current, landing, quality);
  }
  *outConverter = converter;
  *inOutFormat = landing;
  return OX_Success;
}
