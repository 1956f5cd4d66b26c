// DIF block writer: sequence preamble, audio fill and video identifiers.
#include "dv/DIFBlockWriter.h"

#include <cstring>

namespace OX {

namespace {
constexpr uint8_t kHeaderType = 0x1F;
constexpr uint8_t kSubcodeType = 0x3F;
constexpr uint8_t kVAUXType = 0x5F;
constexpr uint8_t kAudioType = 0x7F;
constexpr uint8_t kVideoType = 0x9F;

void Stamp(uint8_t* block, uint8_t type, uint8_t byte1, uint8_t dbn) {
  block[0] = type;
  block[1] = byte1;
  block[2] = dbn;
}
}  // namespace

uint8_t DIFSourceTypeByte(OX_PixelFormat format, bool fiftyHertz) {
  switch (format >> 24) {
    case 5:
    case 6:
      return fiftyHertz ? 0xF4 : 0xD4;  // DV100 1080
    case 3:
    case 4:
      return fiftyHertz ? 0xF8 : 0xD8;  // DV100 720
    case 7:
    case 8:
      return fiftyHertz ? 0xE4 : 0xC4;  // DV50
    default:
      return fiftyHertz ? 0xFF : 0xDF;
  }
}

void DIFBlockWriter::BeginSequence(int sequencesPerChannel, OX_PixelFormat format, uint8_t dseq, uint8_t fsc,
                                   uint8_t fsp) {
  videoDBN = 0;
  audioDBN = 0;
  Dseq = dseq;
  FSC = fsc;
  FSP = fsp;
  const uint8_t id = DIFIdentifierByte1(dseq, fsc, fsp);
  const bool fiftyHertz = sequencesPerChannel == 12;
  std::memset(cursor, 0xFF, 6 * 80);

  uint8_t* header = cursor;
  Stamp(header, kHeaderType, id, 0);
  header[3] = fiftyHertz ? 0xFF : 0x7F;  // DSF in bit 7
  const uint8_t apt = APT & 7;
  header[4] = uint8_t(0xF8 | apt);
  header[5] = uint8_t(0xF8 | apt);
  header[6] = uint8_t(0x78 | apt);
  header[7] = uint8_t(0xF8 | apt);

  Stamp(cursor + 80, kSubcodeType, id, 0);
  Stamp(cursor + 160, kSubcodeType, id, 1);
  for (uint8_t v = 0; v < 3; ++v) Stamp(cursor + 240 + 80 * v, kVAUXType, id, v);

  // Source pack (0x60) and source control pack (0x61) in the third VAUX block.
  uint8_t* pair = cursor + 400 + kPackPairOffset;
  const uint8_t packs[10] = {0x60, 0xFF, 0xFF, DIFSourceTypeByte(format, fiftyHertz), 0x7F,
                             0x61, 0x3F, 0xCA, 0xFC, 0xFF};
  std::memcpy(pair, packs, sizeof(packs));
  cursor += 6 * 80;
}

void DIFBlockWriter::BeginSegment(uint8_t*& firstBlock) {
  const uint8_t id = DIFIdentifierByte1(Dseq, FSC, FSP);
  if (videoDBN % 15 == 0) {
    std::memset(cursor, 0xFF, 80);
    Stamp(cursor, kAudioType, id, audioDBN);
    cursor += 80;
    ++audioDBN;
  }
  for (int i = 0; i < 5; ++i) Stamp(cursor + 80 * i, kVideoType, id, videoDBN++);
  firstBlock = cursor;
  cursor += 400;
}

}  // namespace OX
