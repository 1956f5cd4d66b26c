// Writer of a DV frame's DIF blocks in stream order: for each sequence the header, subcode and
// VAUX blocks with the pack pair, then audio blocks (0xFF) between groups of video blocks whose
// identifiers it stamps; the compressors fill the video payloads.
#pragma once

#include <cstdint>

#include "Ombrix.h"

namespace OX {

struct DIFBlockWriter {
  uint8_t* cursor = nullptr;  // next block to write
  uint8_t videoDBN = 0;
  uint8_t audioDBN = 0;
  uint8_t Dseq = 0;
  uint8_t FSC = 0;
  uint8_t FSP = 0;
  uint8_t APT = 1;

  // Writes the six leading blocks of a sequence at `cursor` (header with DSF set for 12
  // sequences a channel, two subcode, three VAUX with the pack pair in the third) and leaves
  // `cursor` on the first audio block.
  void BeginSequence(int sequencesPerChannel, OX_PixelFormat format, uint8_t dseq, uint8_t fsc, uint8_t fsp);
  // Writes the audio block that precedes every third segment, stamps the identifiers of the next
  // five video blocks, returns the first of them and moves `cursor` past them.
  void BeginSegment(uint8_t*& firstBlock);
};

// Byte 1 of every DIF block: Dseq, FSC, FSP and two set bits.
inline uint8_t DIFIdentifierByte1(uint8_t dseq, uint8_t fsc, uint8_t fsp) {
  return uint8_t((dseq & 0x0F) << 4 | (fsc & 1) << 3 | (fsp & 1) << 2 | 0x03);
}

// Third byte of the source pack (the `X` of the pack pair) for a DV format.
uint8_t DIFSourceTypeByte(OX_PixelFormat format, bool fiftyHertz);

// Offset of the pack pair inside the third VAUX block (the sequence's sixth block).
inline constexpr int kPackPairOffset = 48;
// Byte of a sequence that holds the pack pair's source type (`X`).
inline constexpr int kSourceTypeByte = 5 * 80 + kPackPairOffset + 3;

}  // namespace OX
