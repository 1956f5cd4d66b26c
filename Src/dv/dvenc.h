// The DV25 encoder behind its three calls: create (at start), destroy (at end) and encode.
//
// Encode takes 720 x 480 or 360 x 240 (NTSC, 4:1:1) and 720 x 576 or 360 x 288 (PAL: 4:2:0, or
// 4:1:1 with the DVCPRO flag) from YUYV, UYVY, VUYA or BGRA 8-bit pixels, and writes one complete
// DIF frame. Half-size pictures are doubled with linear interpolation first. Chroma is brought to
// the frame's sampling with the [1 2 1] / 4 low-pass on each halving step (co-sited with the
// even luma sample), so a 4:4:4 source is filtered twice horizontally on the way to 4:1:1; the
// 4:2:0 rows average the two rows of the same field that each chroma row stands for.
#pragma once

#include <cstdint>

namespace dvenc {

using Handle = void*;

// Flags of Encode.
constexpr uint32_t kFlagBase = 0x10000;           // always set
constexpr uint32_t kFlagDVCPRO = 0x8;             // PAL 4:1:1 frame (APT 1)
constexpr uint32_t kFlagDraft = 0x2;              // 8-8 transform only and no bit refinement
constexpr uint32_t kFlagStraightAlpha = 0x100000;  // composite the source over black first

// Source codes: the four bytes of the pixel order, little-endian.
constexpr uint32_t kSourceYUYV = 0x76597559;
constexpr uint32_t kSourceUYVY = 0x79567955;
constexpr uint32_t kSourceVUYA = 0x41595556;
constexpr uint32_t kSourceBGRA = 0x41524742;

// Creates the encoder's long-lived state; null if it cannot be made.
Handle Create();
// Releases what Create made; a null handle does nothing.
void Destroy(Handle handle);

// Encodes one picture into `destination` and returns the number of bytes written (120000 or
// 144000), or 0 when the handle, size, source code or destination size is not usable. The three
// reserved arguments are ignored. Rows are `sourceRowBytes` apart (negative walks upward).
int32_t Encode(Handle handle, const void* source, int32_t sourceRowBytes, void* destination,
               int32_t destinationBytes, int32_t width, int32_t height, int32_t reserved0, uint32_t flags,
               uint32_t sourceCode, int32_t reserved1, int32_t reserved2);

}  // namespace dvenc
