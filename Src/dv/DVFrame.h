// The DV frame model: the geometry of the eight DV formats, the DIF layout of a frame buffer
// (blocks, sequences, video segments), the header fields the codec reads, the frame kind, the
// display-class vote and the placement of a segment's macroblocks in the picture.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Ombrix.h"

namespace OX::dv {

constexpr int kDIFBlockBytes = 80;
constexpr int kDIFSequenceBytes = 12000;
constexpr int kBlocksPerSequence = 150;
constexpr int kSegmentsPerSequence = 27;
constexpr int kMacroblocksPerSegment = 5;
constexpr int kFirstVideoBlockOffset = 560;  // 1 header, 2 subcode, 3 VAUX and 1 audio block

enum class Family : uint8_t { kDV25, kDV50, kDV100_720, kDV100_1080 };

// Geometry of a DV format. fFrameBytes is the buffer a caller hands over: for 720p that is one
// picture (two channels), which the header's FSP places in channels 0-1 or 2-3 of the full
// four-channel frame.
struct DVFormatInfo {
  OX_PixelFormat fFormat;
  Family fFamily;
  uint32_t fFrameBytes;
  int fWidth, fHeight;
  int fChannels;             // channels held by fFrameBytes
  int fSequencesPerChannel;  // 10 at 60 Hz, 12 at 50 Hz
  bool fIs50Hz;
  bool fIsDV100() const { return fFamily == Family::kDV100_720 || fFamily == Family::kDV100_1080; }
};
// The format's geometry, or null for anything that is not one of the eight DV codes.
const DVFormatInfo* FindDVFormat(OX_PixelFormat format);
extern const DVFormatInfo kDVFormats[8];

// Byte offset of video segment `segment` (0-26) of sequence `sequence`, counted over the whole
// buffer: five video blocks a segment, and one audio block before every third segment.
constexpr size_t SegmentOffset(int sequence, int segment) {
  return size_t(150 * sequence + 5 * segment + segment / 3) * kDIFBlockBytes + kFirstVideoBlockOffset;
}
// Whether a (channel, sequence) of the format carries picture: 1080 lines at 50 Hz leave
// sequence 11 of channels 1-3 empty; 720p at 50 Hz leaves sequences 10 and 11 of each channel.
bool IsSequenceUsed(const DVFormatInfo& format, int channel, int sequence);

// ---- Header block ---------------------------------------------------------------------------
inline bool HeaderDSF(const uint8_t* frame) { return (frame[3] & 0x80) != 0; }
// Sequences of an SD frame as its header tells: 10 at 60 Hz, 12 at 50 Hz.
inline int HeaderSequenceCount(const uint8_t* frame) { return ((frame[3] & 0x80) >> 6) + 10; }
struct ApplicationIDs {
  int fAPT, fAP1, fAP2, fAP3;
};
inline ApplicationIDs ReadApplicationIDs(const uint8_t* frame) {
  return {frame[4] & 7, frame[5] & 7, frame[6] & 7, frame[7] & 7};
}
// FSP of the frame's first block: 1 for channels 0-1 of a 720p frame, 0 for channels 2-3.
// Returns the channel offset that the macroblock placement counts with: 2 or 0.
inline int ChannelOffsetOf720p(const uint8_t* frame) { return ((frame[1] >> 2) & 1) == 0 ? 2 : 0; }

// Frame kind of a DV25 frame: 0 NTSC (APT 0), 1 PAL 4:2:0 (APT 0), 2 NTSC and 3 PAL 4:1:1
// (APT 1); or -14 when AP1-AP3 are mixed or APT is above 1.
int DVFrameKind(const uint8_t* frame, bool isNTSC);
constexpr bool IsKind420(int kind) { return kind == 1; }

// ---- Display class ----------------------------------------------------------------------------
// A read-only view of a caller's frame. `size` 0 means the header tells the sequence count.
class CDVFrame {
 public:
  CDVFrame(const uint8_t* frame, int32_t size) : fFrame(frame), fSize(size) {}
  virtual ~CDVFrame();
  // Votes over the VSC packs of all sequences; 0 with the winning class, or -1 (and the output
  // untouched) when no pack was usable.
  int GetDisplayClass(int& displayClass) const;
  const uint8_t* Frame() const { return fFrame; }
  int32_t Size() const { return fSize; }

 private:
  const uint8_t* fFrame;
  int32_t fSize;
};
// Byte of the VSC pack inside a sequence: the second VAUX pack on odd sequences, the pack at
// 453 on even ones.
constexpr int VSCPackOffset(int sequence) { return (sequence & 1) ? 248 : 453; }
// DisplayClass of a (BCS, DISP) pair, -1 when not counted.
int DisplayClassOf(int bcs, int disp);

// ---- Macroblock placement ----------------------------------------------------------------------
struct PicturePosition {
  int x, y;
};
enum class SDLayout : uint8_t { k420, k411, kDV50 };
// Picture position (top-left, unscaled) of the five macroblocks of a segment of an SD frame.
// `sequence` counts inside the channel, `rows` is the sequences per channel. 4:2:0 macroblocks
// are 16 x 16, 4:1:1 ones 32 x 8 except at x 704 and beyond (16 x 16), DV50 ones 16 x 8.
void PlaceMacroblocksSD(SDLayout layout, int rows, int channel, int sequence, int segment,
                        PicturePosition out[kMacroblocksPerSegment]);
// A 4:1:1 macroblock at this position is 16 x 16 rather than 32 x 8.
constexpr bool Is411SquareColumn(int x) { return x >= 704; }

// DV100: each macroblock is two 8-line halves of 16 pixels (the bottom strip of a 1080 frame
// puts them side by side). `channel` is counted with the 720p channel offset; `sequence` counts
// inside the channel. Only call it for sequences that IsSequenceUsed accepts.
struct DV100Placement {
  PicturePosition fHalf[2];
};
void PlaceMacroblocksDV100(const DVFormatInfo& format, int channel, int sequence, int segment,
                           DV100Placement out[kMacroblocksPerSegment]);

// The generic form: byte addresses of the five macroblocks of a segment after shifting the
// picture position right by `shiftX`, `shiftY` (SD layouts only).
void PlaceMacroblocks(SDLayout layout, int rows, int channel, int sequence, int segment, uint8_t* base,
                      ptrdiff_t rowBytes, int bytesPerPixel, int shiftX, int shiftY,
                      uint8_t* out[kMacroblocksPerSegment]);

}  // namespace OX::dv
