// The lookup from a pair of neighbouring formats to its row converter. Steps that change one
// property in a regular way (alpha form, depth, channel order) follow from the format bits; the
// matrix, subsampling, V210, linear-light and 10-bit steps are listed pair by pair.
#include <algorithm>

#include "conversion/ConverterFamilies.h"
#include "frame/PixelFormat.h"

namespace OX {
namespace {

using Chooser = const RowConverter* (*)();

struct PairEntry {
  OX_PixelFormat fFrom, fTo;
  Chooser fChoose;
  int fMember;
};


// The three alpha forms of a four-channel family share one converter: `A` is the A code.
#define OX_ALPHA3(fromA, toA, family, member)                           \
  {fromA, toA, &Choose##family, member}, {fromA + 4, toA + 4, &Choose##family, member}, \
      {fromA + 8, toA + 8, &Choose##family, member}
// The three alpha forms of a source to one destination.
#define OX_FROM_ALPHA3(fromA, to, family, member) \
  {fromA, to, &Choose##family, member}, {fromA + 4, to, &Choose##family, member}, {fromA + 8, to, &Choose##family, member}
// One source to the three alpha forms of a destination.
#define OX_TO_ALPHA3(from, toA, family, member) \
  {from, toA, &Choose##family, member}, {from, toA + 4, &Choose##family, member}, {from, toA + 8, &Choose##family, member}

const PairEntry kPairs[] = {
    // 8u matrices.
    OX_ALPHA3(OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_VUYA_4444_8u, Matrix8u, kBgr8uToVuy8u601),
    OX_ALPHA3(OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_VUYA_4444_8u_709, Matrix8u, kBgr8uToVuy8u709),
    {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_BGRA_4444_8u, &ChooseMatrix8u, kVuy8uToBgr8u601},
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_BGRP_4444_8u, &ChooseMatrix8u, kVuy8uToBgr8u601},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_BGRA_4444_8u, &ChooseMatrix8u, kVuy8uToBgr8u709},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_BGRP_4444_8u, &ChooseMatrix8u, kVuy8uToBgr8u709},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRA_4444_8u, &ChooseMatrix8u, kVuyx8uToBgr8u601},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_BGRX_4444_8u, &ChooseMatrix8u, kVuyx8uToBgr8u601},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_BGRA_4444_8u, &ChooseMatrix8u, kVuyx8uToBgr8u709},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_BGRX_4444_8u, &ChooseMatrix8u, kVuyx8uToBgr8u709},
    OX_ALPHA3(OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_BGRA_4444_32f, Matrix8u, kVuy8uToBgr32f601),
    OX_ALPHA3(OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_BGRA_4444_32f, Matrix8u, kVuy8uToBgr32f709),
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_8u, &ChooseMatrix8u, kBgr32fToVuy8u601},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_8u_709, &ChooseMatrix8u, kBgr32fToVuy8u709},
    // 32f matrices.
    OX_ALPHA3(OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_BGRA_4444_32f, Matrix32f, kYuv601ToRgb32f),
    OX_ALPHA3(OX_PixelFormat_VUYA_4444_32f_709, OX_PixelFormat_BGRA_4444_32f, Matrix32f, kYuv709ToRgb32f),
    OX_ALPHA3(OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_32f, Matrix32f, kRgbToYuv601_32f),
    OX_ALPHA3(OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_VUYA_4444_32f_709, Matrix32f, kRgbToYuv709_32f),
    OX_ALPHA3(OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_VUYA_4444_32f_709, Matrix32f, kYuv601To709_32f),
    OX_ALPHA3(OX_PixelFormat_VUYA_4444_32f_709, OX_PixelFormat_VUYA_4444_32f, Matrix32f, kYuv709To601_32f),
    // 601 with 709 at 8u.
    OX_ALPHA3(OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_VUYA_4444_8u_709, Yuv709_8u, kVuy601To709_8u),
    OX_ALPHA3(OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_VUYA_4444_8u, Yuv709_8u, kVuy709To601_8u),
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_VUYP_4444_8u_709, &ChooseYuv709_8u, kVuy601To709_8u},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_VUYP_4444_8u, &ChooseYuv709_8u, kVuy709To601_8u},
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_UYVY_422_8u_709, &ChooseYuv709_8u, kUyvy601To709_8u},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_UYVY_422_8u, &ChooseYuv709_8u, kUyvy709To601_8u},
    {OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_YUYV_422_8u_709, &ChooseYuv709_8u, kYuyv601To709_8u},
    {OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_YUYV_422_8u, &ChooseYuv709_8u, kYuyv709To601_8u},
    // Fused 8u to premultiplied 32f.
    {OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_VUYP_4444_32f, &ChooseAlpha, kVuya8uToVuyp32f},
    {OX_PixelFormat_VUYA_4444_8u_709, OX_PixelFormat_VUYP_4444_32f_709, &ChooseAlpha, kVuya8uToVuyp32f},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRP_4444_32f, &ChooseAlpha, kBgra8uToBgrp32f},
    // Subsampling.
    {OX_PixelFormat_VUYP_4444_8u, OX_PixelFormat_UYVY_422_8u, &ChooseSubsample, kVuy8uToUyvy8u},
    {OX_PixelFormat_VUYX_4444_8u, OX_PixelFormat_UYVY_422_8u, &ChooseSubsample, kVuy8uToUyvy8u},
    {OX_PixelFormat_VUYP_4444_8u_709, OX_PixelFormat_UYVY_422_8u_709, &ChooseSubsample, kVuy8uToUyvy8u},
    {OX_PixelFormat_VUYX_4444_8u_709, OX_PixelFormat_UYVY_422_8u_709, &ChooseSubsample, kVuy8uToUyvy8u},
    OX_FROM_ALPHA3(OX_PixelFormat_VUYA_4444_32f, OX_PixelFormat_UYVY_422_32f, Subsample, kVuy32fToUyvy32f),
    OX_FROM_ALPHA3(OX_PixelFormat_VUYA_4444_32f_709, OX_PixelFormat_UYVY_422_32f_709, Subsample, kVuy32fToUyvy32f),
    OX_TO_ALPHA3(OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_VUYA_4444_8u, Subsample, kUyvy8uToVuy8u),
    OX_TO_ALPHA3(OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_VUYA_4444_8u_709, Subsample, kUyvy8uToVuy8u),
    OX_TO_ALPHA3(OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_VUYA_4444_8u, Subsample, kYuyv8uToVuy8u),
    OX_TO_ALPHA3(OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_VUYA_4444_8u_709, Subsample, kYuyv8uToVuy8u),
    OX_TO_ALPHA3(OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_BGRA_4444_8u, Subsample, kUyvy8uToBgr8u601),
    OX_TO_ALPHA3(OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_BGRA_4444_8u, Subsample, kUyvy8uToBgr8u709),
    OX_TO_ALPHA3(OX_PixelFormat_YUYV_422_8u, OX_PixelFormat_BGRA_4444_8u, Subsample, kYuyv8uToBgr8u601),
    OX_TO_ALPHA3(OX_PixelFormat_YUYV_422_8u_709, OX_PixelFormat_BGRA_4444_8u, Subsample, kYuyv8uToBgr8u709),
    // OX_PixelFormat_V210_422_10u.
    {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_V210_422_10u, &ChooseV210, kUyvy8uToV210},
    {OX_PixelFormat_UYVY_422_8u_709, OX_PixelFormat_V210_422_10u_709, &ChooseV210, kUyvy8uToV210},
    {OX_PixelFormat_UYVY_422_32f, OX_PixelFormat_V210_422_10u, &ChooseV210, kUyvy32fToV210},
    {OX_PixelFormat_UYVY_422_32f_709, OX_PixelFormat_V210_422_10u_709, &ChooseV210, kUyvy32fToV210},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_UYVY_422_8u, &ChooseV210, kV210ToUyvy8u},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_UYVY_422_8u_709, &ChooseV210, kV210ToUyvy8u},
    {OX_PixelFormat_V210_422_10u, OX_PixelFormat_UYVY_422_32f, &ChooseV210, kV210ToUyvy32f},
    {OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_UYVY_422_32f_709, &ChooseV210, kV210ToUyvy32f},
    OX_TO_ALPHA3(OX_PixelFormat_V210_422_10u, OX_PixelFormat_VUYA_4444_8u, V210, kV210ToVuy8u),
    OX_TO_ALPHA3(OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYA_4444_8u_709, V210, kV210ToVuy8u),
    OX_TO_ALPHA3(OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_VUYA_4444_8u, V210, kV210_709ToVuy8u601),
    OX_TO_ALPHA3(OX_PixelFormat_V210_422_10u, OX_PixelFormat_BGRA_4444_8u, V210, kV210ToBgr8u601),
    OX_TO_ALPHA3(OX_PixelFormat_V210_422_10u_709, OX_PixelFormat_BGRA_4444_8u, V210, kV210ToBgr8u709),
    // Linear light.
    {OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRA_4444_32f, &ChooseLinear, kLinearToGamma32f},
    {OX_PixelFormat_BGRX_4444_32f_Linear, OX_PixelFormat_BGRX_4444_32f, &ChooseLinear, kLinearToGamma32f},
    {OX_PixelFormat_BGRA_4444_32f, OX_PixelFormat_BGRA_4444_32f_Linear, &ChooseLinear, kGammaToLinear32f},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_BGRX_4444_32f_Linear, &ChooseLinear, kGammaToLinear32f},
    {OX_PixelFormat_BGRA_4444_8u, OX_PixelFormat_BGRA_4444_32f_Linear, &ChooseLinear, kBgra8uToLinear32f},
    {OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRA_4444_8u, &ChooseLinear, kLinear32fToBgra8u},
    // RGB_444_10u.
    {OX_PixelFormat_BGRP_4444_8u, OX_PixelFormat_RGB_444_10u, &ChooseRgb10u, kBgrp8uTo10u},
    {OX_PixelFormat_BGRP_4444_15u, OX_PixelFormat_RGB_444_10u, &ChooseRgb10u, kBgr15uTo10u},
    {OX_PixelFormat_BGRX_4444_15u, OX_PixelFormat_RGB_444_10u, &ChooseRgb10u, kBgr15uTo10u},
    {OX_PixelFormat_BGRP_4444_32f, OX_PixelFormat_RGB_444_10u, &ChooseRgb10u, kBgr32fTo10u},
    {OX_PixelFormat_BGRX_4444_32f, OX_PixelFormat_RGB_444_10u, &ChooseRgb10u, kBgr32fTo10u},
    OX_TO_ALPHA3(OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRA_4444_8u, Rgb10u, k10uToBgr8u),
    OX_TO_ALPHA3(OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRA_4444_15u, Rgb10u, k10uToBgr15u),
    OX_TO_ALPHA3(OX_PixelFormat_RGB_444_10u, OX_PixelFormat_BGRA_4444_32f, Rgb10u, k10uToBgr32f),
};
#undef OX_ALPHA3
#undef OX_TO_ALPHA3
#undef OX_FROM_ALPHA3

bool IsKnownRaw(OX_PixelFormat f) { return std::find(kRawFormats, kRawFormats + kRawFormatCount, f) != kRawFormats + kRawFormatCount; }

RowConverter Member(Chooser choose, int member) { return choose()[member]; }

// Alpha-only steps between two four-channel formats of one depth, model and order.
RowConverter AlphaStep(OX_PixelFormat from, OX_PixelFormat to) {
  const uint32_t fa = AlphaOf(from), ta = AlphaOf(to), depth = DepthOf(from);
  const bool first = (from & kOrderBit) != 0;  // alpha first: ARGB order
  const bool yuv = IsYUV(from);
  if (fa == kAlphaIgnored || fa == kAlphaNone || (fa == kAlphaPremultiplied && IsAlphaFree(to))) {
    switch (depth) {
      case kDepth8u: return Member(&ChooseAlpha, first ? kOpaque8uFirst : kOpaque8uLast);
      case kDepth15u: return Member(&ChooseAlpha, first ? kOpaque15uFirst : kOpaque15uLast);
      case kDepth32f: return Member(&ChooseAlpha, first ? kOpaque32fFirst : kOpaque32fLast);
      default: return nullptr;
    }
  }
  if (fa == kAlphaPremultiplied && ta == kAlphaStraight) {
    switch (depth) {
      case kDepth8u:
        return Member(&ChooseAlpha, yuv ? kUnpremul8uYuv : first ? kUnpremul8uRgbFirst : kUnpremul8uRgbLast);
      case kDepth15u: return Member(&ChooseAlpha, first ? kUnpremul15uFirst : kUnpremul15uLast);
      case kDepth32f: return Member(&ChooseUnpremul32f, first ? kUnpremul32fDiv : kUnpremul32fRcp);
      default: return nullptr;
    }
  }
  if (fa == kAlphaStraight && ta == kAlphaPremultiplied) {
    switch (depth) {
      case kDepth8u: return Member(&ChooseAlpha, yuv ? kPremul8uYuv : first ? kPremul8uRgbFirst : kPremul8uRgbLast);
      case kDepth15u: return Member(&ChoosePremul15u, first ? kPremul15uFirst : kPremul15uLast);
      case kDepth32f: return Member(&ChooseAlpha, first ? kPremul32fFirst : kPremul32fLast);
      default: return nullptr;
    }
  }
  return nullptr;
}

// Depth-only steps: 8u and 15u with 32f, 8u with 15u.
RowConverter DepthStep(OX_PixelFormat from, OX_PixelFormat to) {
  const uint32_t fd = DepthOf(from), td = DepthOf(to);
  if (IsYUV(from)) {
    if (!((fd == kDepth8u && td == kDepth32f) || (fd == kDepth32f && td == kDepth8u))) return nullptr;
    const bool up = fd == kDepth8u;
    if (SubsamplingOf(from) == kSub444) return Member(&ChooseRange8u32f, up ? kVuy8uTo32f : kVuy32fTo8u);
    if (from & kOrderBit) return Member(&ChooseRange8u32f, up ? kYuyv8uTo32f : kYuyv32fTo8u);
    return Member(&ChooseRange8u32f, up ? kUyvy8uTo32f : kUyvy32fTo8u);
  }
  if (fd == kDepth8u && td == kDepth32f) return Member(&ChooseRange8u32f, kRgb8uTo32f);
  if (fd == kDepth32f && td == kDepth8u) return Member(&ChooseRange8u32f, kRgb32fTo8u);
  if (fd == kDepth8u && td == kDepth15u) return Member(&ChooseDepth15u, k8uTo15u);
  if (fd == kDepth15u && td == kDepth8u) return Member(&ChooseDepth15u, k15uTo8u);
  if (fd == kDepth15u && td == kDepth32f) return Member(&ChooseDepth15u, k15uTo32f);
  if (fd == kDepth32f && td == kDepth15u) return Member(&ChooseDepth15u, k32fTo15u);
  return nullptr;
}

// Channel-order steps: BGR? with ?RGB at any depth, UYVY with YUYV at 8u and 32f.
RowConverter OrderStep(OX_PixelFormat from) {
  const uint32_t depth = DepthOf(from);
  if (SubsamplingOf(from) == kSub422) {
    if (depth == kDepth8u) return Member(&ChooseOrder, kSwap422_8u);
    if (depth == kDepth32f) return Member(&ChooseOrder, kSwap422_32f);
    return nullptr;
  }
  switch (depth) {
    case kDepth8u: return Member(&ChooseOrder, kReverse8u);
    case kDepth15u: return Member(&ChooseOrder, kReverse15u);
    case kDepth32f: return Member(&ChooseOrder, kReverse32f);
    default: return nullptr;
  }
}

}  // namespace

RowConverter FindRowConverter(OX_PixelFormat from, OX_PixelFormat to, int32_t quality) {
  if (from == to || !IsKnownRaw(from) || !IsKnownRaw(to)) return nullptr;
  if (from == OX_PixelFormat_UYVY_422_32f || from == OX_PixelFormat_UYVY_422_32f_709) {
    // The 32f chroma up-sampling depends on quality: repeat below 2, filter from 2 up.
    const bool sameMatrix = (from & k709Bit) == (to & k709Bit);
    if (sameMatrix && IsYUV(to) && SubsamplingOf(to) == kSub444 && DepthOf(to) == kDepth32f)
      return Member(&ChooseSubsample, quality < 2 ? kUyvy32fToVuy32fRepeat : kUyvy32fToVuy32fFilter);
  }
  for (const PairEntry& e : kPairs)
    if (e.fFrom == from && e.fTo == to) return Member(e.fChoose, e.fMember);
  const uint32_t diff = from ^ to;
  if ((diff & ~kAlphaMask) == 0 && SubsamplingOf(from) == kSub444) return AlphaStep(from, to);
  if ((diff & ~kDepthMask) == 0) return DepthStep(from, to);
  if (diff == kOrderBit) return OrderStep(from);
  return nullptr;
}

}  // namespace OX
