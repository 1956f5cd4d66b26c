// The DV frame model (see DVFrame.h).
#include "dv/DVFrame.h"

#include "dv/DVTables.h"

namespace OX::dv {

const DVFormatInfo kDVFormats[8] = {
    {OX_PixelFormat_NTSCDV25, Family::kDV25, 120000, 720, 480, 1, 10, false},
    {OX_PixelFormat_PALDV25, Family::kDV25, 144000, 720, 576, 1, 12, true},
    {OX_PixelFormat_NTSC_DV100_720p, Family::kDV100_720, 240000, 960, 720, 2, 10, false},
    {OX_PixelFormat_PAL_DV100_720p, Family::kDV100_720, 288000, 960, 720, 2, 12, true},
    {OX_PixelFormat_NTSC_DV100_1080i, Family::kDV100_1080, 480000, 1280, 1080, 4, 10, false},
    {OX_PixelFormat_PAL_DV100_1080i, Family::kDV100_1080, 576000, 1440, 1080, 4, 12, true},
    {OX_PixelFormat_NTSCDV50, Family::kDV50, 240000, 720, 480, 2, 10, false},
    {OX_PixelFormat_PALDV50, Family::kDV50, 288000, 720, 576, 2, 12, true},
};

const DVFormatInfo* FindDVFormat(OX_PixelFormat format) {
  const uint32_t container = format >> 24;
  if (container < 1 || container > 8) return nullptr;
  const DVFormatInfo& info = kDVFormats[container - 1];
  return info.fFormat == format ? &info : nullptr;
}

bool IsSequenceUsed(const DVFormatInfo& format, int channel, int sequence) {
  if (!format.fIs50Hz) return true;
  if (format.fFamily == Family::kDV100_1080) return !(sequence == 11 && channel != 0);
  if (format.fFamily == Family::kDV100_720) return sequence < 10;
  return true;
}

int DVFrameKind(const uint8_t* frame, bool isNTSC) {
  const ApplicationIDs ids = ReadApplicationIDs(frame);
  const bool allZero = ids.fAP1 == 0 && ids.fAP2 == 0 && ids.fAP3 == 0;
  const bool allOne = ids.fAP1 == 1 && ids.fAP2 == 1 && ids.fAP3 == 1;
  if (!(allZero || allOne) || ids.fAPT > 1) return OX_ErrDVFrameMismatch;
  return (ids.fAPT == 0 ? 0 : 2) + (isNTSC ? 0 : 1);
}

CDVFrame::~CDVFrame() = default;

int DisplayClassOf(int bcs, int disp) { return kDisplayClassOf[bcs & 3][disp & 7]; }

int CDVFrame::GetDisplayClass(int& displayClass) const {
  int sequences = 0;
  if (fSize == 0) {
    sequences = HeaderSequenceCount(fFrame);
  } else if (fSize >= kDIFSequenceBytes) {
    sequences = fSize / kDIFSequenceBytes;
  }
  int counts[5] = {};
  for (int i = 0; i < sequences; ++i) {
    const uint8_t* pack = fFrame + size_t(i) * kDIFSequenceBytes + VSCPackOffset(i);
    if (pack[0] != 0x61) continue;
    const int c = DisplayClassOf(pack[3] & 3, pack[2] & 7);  // BCS in PC3, DISP in PC2
    if (c >= 0) ++counts[c];
  }
  // Class order decides ties: a later class must have strictly more votes.
  int best = counts[0];
  int chosen = best >= 1 ? 0 : -1;
  for (int c = 1; c < 5; ++c) {
    if (counts[c] > 0 && counts[c] > best) chosen = c;
    if (counts[c] > best) best = counts[c];
  }
  if (chosen < 0) return -1;
  displayClass = chosen;
  return 0;
}

void PlaceMacroblocksSD(SDLayout layout, int rows, int channel, int sequence, int segment,
                        PicturePosition out[kMacroblocksPerSegment]) {
  const int k = segment;
  for (int j = 0; j < kMacroblocksPerSegment; ++j) {
    const int a = (sequence + kSuperblockRowOffset[j]) % rows;
    if (layout == SDLayout::k411) {
      // Macroblocks 1 and 2 start half a superblock further on.
      const int q = (j == 1 || j == 2) ? k + 3 : k;
      const int m = ((q / 6) & 1) ? 5 - q % 6 : q % 6;
      int y = a * 48 + m * 8;
      // Rightmost column: segments 24-26 hold 16 x 16 macroblocks stacked down the superblock.
      if (j == 4 && k >= 24) y += (k - 24) * 8;
      out[j] = {(q / 6) * 32 + kColumnX411[j], y};
    } else {
      const int m = ((k / 3) & 1) ? 2 - k % 3 : k % 3;
      const int x = (k / 3) * 16 + kColumnX420[j];
      out[j] = layout == SDLayout::k420 ? PicturePosition{x, a * 48 + m * 16}
                                        : PicturePosition{x, a * 48 + channel * 24 + m * 8};
    }
  }
}

namespace {

// 1080 lines at 60 Hz: 80 columns by 60 rows of macroblock positions, the 80 columns that are
// left after the right-hand side is folded back into the top rows, the middle band and the
// bottom strip.
void Place1080At60(int c, int i, int k, DV100Placement out[kMacroblocksPerSegment]) {
  const int t = k + (i % 5) * 27;
  const int n = t / 5;
  const int col0 = n % 9 + ((c & 1) ? 9 : 0);
  const int row0 = c / 2 + n / 9 * 2;
  const int s = i / 5 + 4 * c + (t % 5) * 2;
  for (int j = 0; j < kMacroblocksPerSegment; ++j) {
    const int C = col0 + kDV100ColumnOffset[j];
    const int R = row0 + ((s + kSuperblockRowOffset[j]) % 10) * 6;
    PicturePosition p;
    if (C < 80) {
      p = {C * 16, R * 16 + 64};
    } else if (R < 32) {
      p = {(C + (R / 4) * 10) * 16 - 1280, (R % 4) * 16};
    } else if (R >= 56) {
      const int x = (C + R * 10) * 32 - 20480;
      out[j] = {{{x, 1072}, {x + 16, 1072}}};
      continue;
    } else {
      const int u = R - 32;
      p = {(C + (u / 3) * 10) * 16 - 1280, (u % 3) * 16 + 1024};
    }
    out[j] = {{p, {p.x, p.y + 8}}};
  }
}

// 1080 lines at 50 Hz: sequences 0-10 of each channel cover macroblock rows 1-66 with
// divisions by 11 and 9; sequence 11 of channel 0 carries the top row and the bottom strip.
void Place1080At50(int c, int i, int k, DV100Placement out[kMacroblocksPerSegment]) {
  if (i == 11) {
    for (int j = 0; j < kMacroblocksPerSegment; ++j) {
      const int v = j * 27 + k;
      if (v < 90) {
        out[j] = {{{v * 16, 0}, {v * 16, 8}}};
      } else {
        const int x = (v - 90) * 32;
        out[j] = {{{x, 1072}, {x + 16, 1072}}};
      }
    }
    return;
  }
  const int t = i * 27 + k;
  const int n = t / 11;
  for (int j = 0; j < kMacroblocksPerSegment; ++j) {
    const int a = (4 * c + t % 11 + kSuperblockRowOffset[j]) % 11;
    const int C = kDV100ColumnOffset[j] + ((c & 1) ? 9 : 0) + n % 9;
    const int R = (a * 3 + n / 9) * 2 + c / 2 + 1;
    out[j] = {{{C * 16, R * 16}, {C * 16, R * 16 + 8}}};
  }
}

// 720 lines: five bands of 192 pixels, odd and even superblock rows interleaved in 144-line
// strips; channels with an even number take the left 96 pixels of a band.
void Place720(int c, int i, int k, DV100Placement out[kMacroblocksPerSegment]) {
  const int t = k + (i % 5) * 27;
  const int q = t / 5;
  const int s = i / 5 + 4 * c + (t % 5) * 2;
  for (int j = 0; j < kMacroblocksPerSegment; ++j) {
    const int a = (s + kSuperblockRowOffset[j]) % 10;
    const int band = kDV100BandOf720[j] * 192 + (c % 2) * 96;
    PicturePosition p;
    if ((a & 1) == 0) {
      p = {band + (q % 6) * 16, (a / 2) * 144 + (q / 6) * 16};
    } else {
      p = {band + ((q + 3) % 6) * 16, (a / 2) * 144 + 64 + ((q + 3) / 6) * 16};
    }
    out[j] = {{p, {p.x, p.y + 8}}};
  }
}

}  // namespace

void PlaceMacroblocksDV100(const DVFormatInfo& format, int channel, int sequence, int segment,
                           DV100Placement out[kMacroblocksPerSegment]) {
  if (format.fFamily == Family::kDV100_720) {
    Place720(channel, sequence, segment, out);
  } else if (format.fIs50Hz) {
    Place1080At50(channel, sequence, segment, out);
  } else {
    Place1080At60(channel, sequence, segment, out);
  }
}

void PlaceMacroblocks(SDLayout layout, int rows, int channel, int sequence, int segment, uint8_t* base,
                      ptrdiff_t rowBytes, int bytesPerPixel, int shiftX, int shiftY,
                      uint8_t* out[kMacroblocksPerSegment]) {
  PicturePosition p[kMacroblocksPerSegment];
  PlaceMacroblocksSD(layout, rows, channel, sequence, segment, p);
  for (int j = 0; j < kMacroblocksPerSegment; ++j) {
    out[j] = base + ptrdiff_t(p[j].y >> shiftY) * rowBytes + ptrdiff_t(p[j].x >> shiftX) * bytesPerPixel;
  }
}

}  // namespace OX::dv
