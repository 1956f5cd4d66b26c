// What compositing, transitions, fills, geometry and filtering share: the one float tolerance,
// the rounded division by 255, and the format tests they all make.
#pragma once

#include <cstdint>

#include "frame/PixelFormat.h"

namespace OX {

// Comparisons of weights and opacities against 0 and 1 use this one value as a 32-bit float:
// a weight below it counts as 0, a weight that comes within it of 1 counts as 1.
constexpr float kTolerance = 8e-6f;

inline bool IsNearZero(float weight) { return weight < kTolerance; }
inline bool IsNearOne(float weight) { return weight + kTolerance > 1.0f; }

// x / 255 rounded to nearest for 0 <= x <= 65535 + 255 * 255 (exact for every product of two
// bytes): the carry of (x + 128) >> 8 corrects the plain shift by 256 to a division by 255.
constexpr int32_t DivideBy255(int32_t x) { return (x + ((x + 128) >> 8) + 128) >> 8; }
// The product of two bytes, divided by 255 and rounded.
constexpr int32_t Mul255(int32_t a, int32_t b) { return DivideBy255(a * b); }

// Alpha modes 0 (none) and 12 (ignored) are opaque: such a pixel's alpha byte is never read.
constexpr bool IsOpaqueFormat(OX_PixelFormat f) { return AlphaOf(f) == kAlphaNone || AlphaOf(f) == kAlphaIgnored; }
constexpr bool IsPremultipliedFormat(OX_PixelFormat f) { return AlphaOf(f) == kAlphaPremultiplied; }
constexpr bool IsStraightFormat(OX_PixelFormat f) { return AlphaOf(f) == kAlphaStraight; }
// Any depth other than 8 bits (10u, 15u, 32f) counts as deep.
constexpr bool IsDeepFormat(OX_PixelFormat f) { return DepthOf(f) != kDepth8u; }
constexpr bool Is422Format(OX_PixelFormat f) { return SubsamplingOf(f) == kSub422; }
constexpr bool IsAlphaFirst(OX_PixelFormat f) { return (f & kOrderBit) != 0; }
constexpr bool IsLinearFormat(OX_PixelFormat f) { return (f & kLinearBit) != 0; }

}  // namespace OX
