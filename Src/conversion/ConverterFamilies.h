// The row converter families: each is a numbered set of members with one kernel table per
// processor level, and one chooser that picks the table for the current flags, newest first.
// FindRowConverter maps a pair of formats to a family and a member.
#pragma once

#include <cstdint>

#include "conversion/RowConverter.h"

namespace OX {

// Range and depth between 8u and 32f, same model (4:4:4 and 4:2:2). AVX2, SSE2, portable.
enum Range8u32fMember {
  kVuy8uTo32f, kVuy32fTo8u, kUyvy8uTo32f, kUyvy32fTo8u, kYuyv8uTo32f, kYuyv32fTo8u, kRgb8uTo32f, kRgb32fTo8u,
  kRange8u32fCount
};
// 15u with 8u and 32f, every sample alike. SSE4.1, SSE2, portable.
enum Depth15uMember { k8uTo15u, k15uTo8u, k15uTo32f, k32fTo15u, kDepth15uCount };
// RGB_444_10u with the BGR? forms. One form.
enum Rgb10uMember { kBgrp8uTo10u, kBgr15uTo10u, kBgr32fTo10u, k10uToBgr8u, k10uToBgr15u, k10uToBgr32f, kRgb10uCount };
// Matrix steps between RGB and YUV at 8u. AVX2, AVX, SSE2, portable.
enum Matrix8uMember {
  kBgr8uToVuy8u601, kBgr8uToVuy8u709,
  kVuy8uToBgr8u601, kVuy8uToBgr8u709,
  kVuyx8uToBgr8u601, kVuyx8uToBgr8u709,  // the fast step: alpha of the result is opaque
  kVuy8uToBgr32f601, kVuy8uToBgr32f709,
  kBgr32fToVuy8u601, kBgr32fToVuy8u709,
  kMatrix8uCount
};
// Matrix steps at 32f. AVX2, AVX, SSE2, portable.
enum Matrix32fMember { kYuv601ToRgb32f, kYuv709ToRgb32f, kRgbToYuv601_32f, kRgbToYuv709_32f, kYuv601To709_32f, kYuv709To601_32f, kMatrix32fCount };
// 601 with 709 at 8u, without rescaling the code values. AVX2, AVX, SSE2, portable.
enum Yuv709_8uMember { kVuy601To709_8u, kVuy709To601_8u, kUyvy601To709_8u, kUyvy709To601_8u, kYuyv601To709_8u, kYuyv709To601_8u, kYuv709_8uCount };
// Alpha forms: premultiply and un-premultiply at 8u, 32f premultiply, 15u
// un-premultiply, opaque alpha at every depth, the fused 8u to 32f premultiplied steps. AVX2,
// SSE2, portable (for speed on the 8u hot paths; every level gives the same bytes).
enum AlphaMember {
  kPremul8uRgbLast, kPremul8uRgbFirst, kPremul8uYuv,
  kUnpremul8uRgbLast, kUnpremul8uRgbFirst, kUnpremul8uYuv,
  kUnpremul15uLast, kUnpremul15uFirst,
  kPremul32fLast, kPremul32fFirst,
  kOpaque8uLast, kOpaque8uFirst, kOpaque15uLast, kOpaque15uFirst, kOpaque32fLast, kOpaque32fFirst,
  kVuya8uToVuyp32f, kBgra8uToBgrp32f,
  kAlphaCount
};
// Premultiply at 15u. SSE4.1, SSE2, portable.
enum Premul15uMember { kPremul15uLast, kPremul15uFirst, kPremul15uCount };
// Un-premultiply at 32f: approximate reciprocal (BGR and VUY order), true division (ARGB order).
// AVX, portable (scalar).
enum Unpremul32fMember { kUnpremul32fRcp, kUnpremul32fDiv, kUnpremul32fCount };
// Channel order: reversed four-sample pixels at 8u, 15u, 32f; swapped luma and chroma at 4:2:2.
// AVX2, SSSE3, portable.
enum OrderMember { kReverse8u, kReverse15u, kReverse32f, kSwap422_8u, kSwap422_32f, kOrderCount };
// Subsampling both ways, and 4:2:2 8u straight to RGB 8u. AVX2, SSSE3 (the rounded-up chroma
// mean), SSE2, portable.
enum SubsampleMember {
  kVuy8uToUyvy8u, kVuy32fToUyvy32f,
  kUyvy8uToVuy8u, kYuyv8uToVuy8u,
  kUyvy32fToVuy32fRepeat, kUyvy32fToVuy32fFilter,
  kUyvy8uToBgr8u601, kUyvy8uToBgr8u709, kYuyv8uToBgr8u601, kYuyv8uToBgr8u709,
  kSubsampleCount
};
// V210 both ways. AVX2, SSSE3, portable.
enum V210Member {
  kUyvy8uToV210, kUyvy32fToV210, kV210ToUyvy8u, kV210ToUyvy32f,
  kV210ToVuy8u, kV210_709ToVuy8u601, kV210ToBgr8u601, kV210ToBgr8u709,
  kV210Count
};
// Linear light at 32f (pow both ways) and between 8u and 32f Linear (table, boundary count).
// One form: the C library's pow per sample is the work, and a vector form would not be faster.
enum LinearMember { kLinearToGamma32f, kGammaToLinear32f, kBgra8uToLinear32f, kLinear32fToBgra8u, kLinearCount };

#define OX_CONVERTER_FAMILIES(X)                \
  X(Range8u32f, kRange8u32fCount)               \
  X(Depth15u, kDepth15uCount)                   \
  X(Rgb10u, kRgb10uCount)                       \
  X(Matrix8u, kMatrix8uCount)                   \
  X(Matrix32f, kMatrix32fCount)                 \
  X(Yuv709_8u, kYuv709_8uCount)                 \
  X(Alpha, kAlphaCount)                         \
  X(Premul15u, kPremul15uCount)                 \
  X(Unpremul32f, kUnpremul32fCount)             \
  X(Order, kOrderCount)                         \
  X(Subsample, kSubsampleCount)                 \
  X(V210, kV210Count)                           \
  X(Linear, kLinearCount)

// Kernel tables by level. A level that has no form of a family does not declare its table.
namespace portable {
#define OX_DECLARE_TABLE(name, count) extern const RowConverter k##name[count];
OX_CONVERTER_FAMILIES(OX_DECLARE_TABLE)
}  // namespace portable
namespace sse2 {
OX_DECLARE_TABLE(Range8u32f, kRange8u32fCount)
OX_DECLARE_TABLE(Depth15u, kDepth15uCount)
OX_DECLARE_TABLE(Matrix8u, kMatrix8uCount)
OX_DECLARE_TABLE(Matrix32f, kMatrix32fCount)
OX_DECLARE_TABLE(Yuv709_8u, kYuv709_8uCount)
OX_DECLARE_TABLE(Premul15u, kPremul15uCount)
OX_DECLARE_TABLE(Alpha, kAlphaCount)
OX_DECLARE_TABLE(Subsample, kSubsampleCount)
}  // namespace sse2
namespace ssse3 {
OX_DECLARE_TABLE(Order, kOrderCount)
OX_DECLARE_TABLE(Subsample, kSubsampleCount)
OX_DECLARE_TABLE(V210, kV210Count)
}  // namespace ssse3
namespace sse41 {
OX_DECLARE_TABLE(Depth15u, kDepth15uCount)
OX_DECLARE_TABLE(Premul15u, kPremul15uCount)
}  // namespace sse41
namespace avx {
OX_DECLARE_TABLE(Matrix8u, kMatrix8uCount)
OX_DECLARE_TABLE(Matrix32f, kMatrix32fCount)
OX_DECLARE_TABLE(Yuv709_8u, kYuv709_8uCount)
OX_DECLARE_TABLE(Unpremul32f, kUnpremul32fCount)
}  // namespace avx
namespace avx2 {
OX_DECLARE_TABLE(Range8u32f, kRange8u32fCount)
OX_DECLARE_TABLE(Matrix8u, kMatrix8uCount)
OX_DECLARE_TABLE(Matrix32f, kMatrix32fCount)
OX_DECLARE_TABLE(Yuv709_8u, kYuv709_8uCount)
OX_DECLARE_TABLE(Order, kOrderCount)
OX_DECLARE_TABLE(V210, kV210Count)
OX_DECLARE_TABLE(Alpha, kAlphaCount)
OX_DECLARE_TABLE(Subsample, kSubsampleCount)
}  // namespace avx2
#undef OX_DECLARE_TABLE

// One chooser per family: the table of the newest level the flags allow.
#define OX_DECLARE_CHOOSER(name, count) const RowConverter* Choose##name();
OX_CONVERTER_FAMILIES(OX_DECLARE_CHOOSER)
#undef OX_DECLARE_CHOOSER

}  // namespace OX

