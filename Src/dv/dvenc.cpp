// DV25 encoder: turns the caller's pixels into 8-bit planes at the frame's sampling, then codes
// every segment with the segment compressor and writes the DIF frame. The state made at start is
// only a marker; each encode keeps its work on its own stack and scratch, so one handle serves any
// number of threads at once.
#include "dv/dvenc.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "dv/DIFBlockWriter.h"
#include "dv/DVFrame.h"
#include "dv/SegmentCompressor.h"
#include "frame/Scratch.h"

namespace dvenc {
namespace {

constexpr unsigned kLiveMagic = 0x44564543;

struct EncoderState {
  unsigned fMagic = kLiveMagic;
};

constexpr int kWidth = 720;
constexpr int kHalfWidth = kWidth / 2;

inline int Div255(int x) { return (x + ((x + 128) >> 8) + 128) >> 8; }
inline int ScaleSigned(int v, int alpha) { return v >= 0 ? Div255(v * alpha) : -Div255(-v * alpha); }
inline uint8_t Clamp8(int v) { return uint8_t(v < 0 ? 0 : v > 255 ? 255 : v); }

// Studio-range BT.601 from 8-bit RGB, Q16 coefficients.
inline void RGBToYCbCr(int r, int g, int b, uint8_t& y, uint8_t& cb, uint8_t& cr) {
  y = Clamp8((16829 * r + 33039 * g + 6416 * b + (16 << 16) + 32768) >> 16);
  cb = Clamp8((-9714 * r - 19070 * g + 28784 * b + (128 << 16) + 32768) >> 16);
  cr = Clamp8((28784 * r - 24103 * g - 4681 * b + (128 << 16) + 32768) >> 16);
}

// Halves a row of chroma with [1 2 1] / 4 around each even sample, the ends repeated.
void HalveChroma(const uint8_t* in, int inCount, uint8_t* out) {
  for (int i = 0; i < inCount / 2; ++i) {
    const int c = 2 * i;
    const int left = in[c > 0 ? c - 1 : 0];
    const int right = in[c + 1 < inCount ? c + 1 : inCount - 1];
    out[i] = uint8_t((left + 2 * in[c] + right + 2) >> 2);
  }
}

// One source row to luma and 4:2:2 chroma at the source's width.
void ReadRow(const uint8_t* row, int width, uint32_t code, bool straightAlpha, uint8_t* y, uint8_t* cb,
             uint8_t* cr, uint8_t* cb444, uint8_t* cr444) {
  switch (code) {
    case kSourceYUYV:
      for (int i = 0; i < width / 2; ++i) {
        y[2 * i] = row[4 * i];
        cb[i] = row[4 * i + 1];
        y[2 * i + 1] = row[4 * i + 2];
        cr[i] = row[4 * i + 3];
      }
      return;
    case kSourceUYVY:
      for (int i = 0; i < width / 2; ++i) {
        cb[i] = row[4 * i];
        y[2 * i] = row[4 * i + 1];
        cr[i] = row[4 * i + 2];
        y[2 * i + 1] = row[4 * i + 3];
      }
      return;
    case kSourceVUYA:
      for (int x = 0; x < width; ++x) {
        const uint8_t* p = row + 4 * x;
        int v = p[0], u = p[1], l = p[2];
        if (straightAlpha) {
          l = 16 + ScaleSigned(l - 16, p[3]);
          u = 128 + ScaleSigned(u - 128, p[3]);
          v = 128 + ScaleSigned(v - 128, p[3]);
        }
        y[x] = Clamp8(l);
        cb444[x] = Clamp8(u);
        cr444[x] = Clamp8(v);
      }
      break;
    default:  // BGRA
      for (int x = 0; x < width; ++x) {
        const uint8_t* p = row + 4 * x;
        int b = p[0], g = p[1], r = p[2];
        if (straightAlpha) {
          b = Div255(b * p[3]);
          g = Div255(g * p[3]);
          r = Div255(r * p[3]);
        }
        RGBToYCbCr(r, g, b, y[x], cb444[x], cr444[x]);
      }
      break;
  }
  HalveChroma(cb444, width, cb);
  HalveChroma(cr444, width, cr);
}

// Doubles a row with linear interpolation between neighbours, the last sample repeated.
void DoubleRow(const uint8_t* in, int count, uint8_t* out) {
  for (int i = 0; i < count; ++i) {
    const int next = in[i + 1 < count ? i + 1 : i];
    out[2 * i] = in[i];
    out[2 * i + 1] = uint8_t((in[i] + next + 1) >> 1);
  }
}

void AverageRows(const uint8_t* a, const uint8_t* b, int count, uint8_t* out) {
  for (int i = 0; i < count; ++i) out[i] = uint8_t((a[i] + b[i] + 1) >> 1);
}

struct Planes {
  uint8_t* y;        // 720 x height
  uint8_t* cb;       // chromaWidth x chromaHeight
  uint8_t* cr;
  int chromaWidth;
  int chromaHeight;
};

void LoadBlock(int16_t* block, const uint8_t* plane, int rowBytes, int x, int y) {
  for (int r = 0; r < 8; ++r) {
    const uint8_t* p = plane + (y + r) * rowBytes + x;
    for (int c = 0; c < 8; ++c) block[8 * r + c] = int16_t(p[c] - 128);
  }
}

// 4:1:1 chroma of a 16 x 16 macroblock: four columns of sixteen rows, the lower eight rows placed
// in the right half of the block.
void LoadTallChroma(int16_t* block, const uint8_t* plane, int rowBytes, int x, int y) {
  for (int r = 0; r < 8; ++r) {
    const uint8_t* top = plane + (y + r) * rowBytes + x;
    const uint8_t* bottom = top + 8 * rowBytes;
    for (int c = 0; c < 4; ++c) {
      block[8 * r + c] = int16_t(top[c] - 128);
      block[8 * r + 4 + c] = int16_t(bottom[c] - 128);
    }
  }
}

void FillMacroblock(OX::SegmentCompressor& compressor, int mb, const Planes& planes, bool is420, int x, int y) {
  int16_t* b[6];
  for (int i = 0; i < 6; ++i) b[i] = compressor.Samples(mb, i);
  if (is420) {
    LoadBlock(b[0], planes.y, kWidth, x, y);
    LoadBlock(b[1], planes.y, kWidth, x + 8, y);
    LoadBlock(b[2], planes.y, kWidth, x, y + 8);
    LoadBlock(b[3], planes.y, kWidth, x + 8, y + 8);
    LoadBlock(b[4], planes.cr, planes.chromaWidth, x / 2, y / 2);
    LoadBlock(b[5], planes.cb, planes.chromaWidth, x / 2, y / 2);
  } else if (!OX::dv::Is411SquareColumn(x)) {
    for (int i = 0; i < 4; ++i) LoadBlock(b[i], planes.y, kWidth, x + 8 * i, y);
    LoadBlock(b[4], planes.cr, planes.chromaWidth, x / 4, y);
    LoadBlock(b[5], planes.cb, planes.chromaWidth, x / 4, y);
  } else {
    LoadBlock(b[0], planes.y, kWidth, x, y);
    LoadBlock(b[1], planes.y, kWidth, x + 8, y);
    LoadBlock(b[2], planes.y, kWidth, x, y + 8);
    LoadBlock(b[3], planes.y, kWidth, x + 8, y + 8);
    LoadTallChroma(b[4], planes.cr, planes.chromaWidth, x / 4, y);
    LoadTallChroma(b[5], planes.cb, planes.chromaWidth, x / 4, y);
  }
}

}  // namespace

Handle Create() { return new (std::nothrow) EncoderState; }

void Destroy(Handle handle) { delete static_cast<EncoderState*>(handle); }

int32_t Encode(Handle handle, const void* source, int32_t sourceRowBytes, void* destination,
               int32_t destinationBytes, int32_t width, int32_t height, int32_t, uint32_t flags,
               uint32_t sourceCode, int32_t, int32_t) {
  const auto* state = static_cast<const EncoderState*>(handle);
  if (!state || state->fMagic != kLiveMagic || !source || !destination) return 0;
  const bool half = width == kHalfWidth;
  if (width != kWidth && !half) return 0;
  const int fullHeight = half ? height * 2 : height;
  if (fullHeight != 480 && fullHeight != 576) return 0;
  const bool pal = fullHeight == 576;
  const int32_t frameBytes = pal ? 144000 : 120000;
  if (destinationBytes < frameBytes) return 0;
  if (sourceCode != kSourceYUYV && sourceCode != kSourceUYVY && sourceCode != kSourceVUYA &&
      sourceCode != kSourceBGRA)
    return 0;
  const bool dvcpro = (flags & kFlagDVCPRO) != 0;
  const bool is420 = pal && !dvcpro;
  const bool straight = (flags & kFlagStraightAlpha) != 0;

  Planes planes;
  planes.chromaWidth = is420 ? kHalfWidth : kWidth / 4;
  planes.chromaHeight = is420 ? fullHeight / 2 : fullHeight;
  const size_t lumaBytes = size_t(kWidth) * fullHeight;
  const size_t chroma422Bytes = size_t(kHalfWidth) * fullHeight;
  const size_t chromaBytes = size_t(planes.chromaWidth) * planes.chromaHeight;
  // Rows of work: luma and 4:4:4 chroma of one source row, and doubled rows for half sizes.
  const size_t rowBytes = 6 * kWidth;
  OX::ScratchBuffer scratch(lumaBytes + 2 * chroma422Bytes + 2 * chromaBytes + rowBytes);
  if (!scratch.Get()) return 0;
  uint8_t* luma = scratch.Get();
  uint8_t* cb422 = luma + lumaBytes;
  uint8_t* cr422 = cb422 + chroma422Bytes;
  planes.y = luma;
  planes.cb = cr422 + chroma422Bytes;
  planes.cr = planes.cb + chromaBytes;
  uint8_t* work = planes.cr + chromaBytes;

  // 1. Luma and 4:2:2 chroma at 720 wide.
  const auto* src = static_cast<const uint8_t*>(source);
  for (int r = 0; r < height; ++r) {
    const uint8_t* row = src + ptrdiff_t(r) * sourceRowBytes;
    if (!half) {
      ReadRow(row, kWidth, sourceCode, straight, luma + r * kWidth, cb422 + r * kHalfWidth, cr422 + r * kHalfWidth,
              work, work + kWidth);
    } else {
      uint8_t* y = work + 2 * kWidth;
      uint8_t* cb = y + kHalfWidth;
      uint8_t* cr = cb + kHalfWidth / 2;
      ReadRow(row, kHalfWidth, sourceCode, straight, y, cb, cr, work, work + kWidth);
      const int out = 2 * r;
      DoubleRow(y, kHalfWidth, luma + out * kWidth);
      DoubleRow(cb, kHalfWidth / 2, cb422 + out * kHalfWidth);
      DoubleRow(cr, kHalfWidth / 2, cr422 + out * kHalfWidth);
    }
  }
  if (half) {
    // Odd rows between their neighbours, the last one repeating the row above.
    for (int out = 1; out < fullHeight; out += 2) {
      const int below = out + 1 < fullHeight ? out + 1 : out - 1;
      AverageRows(luma + (out - 1) * kWidth, luma + below * kWidth, kWidth, luma + out * kWidth);
      AverageRows(cb422 + (out - 1) * kHalfWidth, cb422 + below * kHalfWidth, kHalfWidth, cb422 + out * kHalfWidth);
      AverageRows(cr422 + (out - 1) * kHalfWidth, cr422 + below * kHalfWidth, kHalfWidth, cr422 + out * kHalfWidth);
    }
  }

  // 2. Chroma at the frame's sampling.
  if (is420) {
    // Chroma row r stands for luma rows 4 (r / 2) + r % 2 and two below: rows of one field.
    for (int r = 0; r < planes.chromaHeight; ++r) {
      const int first = 4 * (r / 2) + r % 2;
      AverageRows(cb422 + first * kHalfWidth, cb422 + (first + 2) * kHalfWidth, kHalfWidth,
                  planes.cb + r * kHalfWidth);
      AverageRows(cr422 + first * kHalfWidth, cr422 + (first + 2) * kHalfWidth, kHalfWidth,
                  planes.cr + r * kHalfWidth);
    }
  } else {
    for (int r = 0; r < fullHeight; ++r) {
      HalveChroma(cb422 + r * kHalfWidth, kHalfWidth, planes.cb + r * planes.chromaWidth);
      HalveChroma(cr422 + r * kHalfWidth, kHalfWidth, planes.cr + r * planes.chromaWidth);
    }
  }

  // 3. Segments.
  const int sequences = pal ? 12 : 10;
  const OX_PixelFormat format = pal ? OX_PixelFormat_PALDV25 : OX_PixelFormat_NTSCDV25;
  const OX::dv::SDLayout layout = is420 ? OX::dv::SDLayout::k420 : OX::dv::SDLayout::k411;
  OX::DIFBlockWriter writer;
  writer.cursor = static_cast<uint8_t*>(destination);
  writer.APT = dvcpro ? 1 : 0;
  OX::SegmentCompressor compressor;
  compressor.Prepare();
  // Drafts take the 8-8 transform everywhere and the plain QNO search; full quality chooses the
  // transform per block and spends the budget's remainder where it saves the most distortion.
  const bool draft = (flags & kFlagDraft) != 0;
  compressor.SetModeDecision(draft ? OX::ModeDecision::kOff : OX::ModeDecision::kAbsoluteSum);
  compressor.SetRefinement(!draft);
  for (int i = 0; i < sequences; ++i) {
    uint8_t* sequenceStart = writer.cursor;
    writer.BeginSequence(sequences, format, uint8_t(i), 0, 1);
    // Source type 0 (25 Mb/s) in the source pack, as decoders expect of SD frames.
    sequenceStart[OX::kSourceTypeByte] = pal ? 0xE0 : 0xC0;
    for (int k = 0; k < 27; ++k) {
      uint8_t* first = nullptr;
      writer.BeginSegment(first);
      OX::dv::PicturePosition p[OX::dv::kMacroblocksPerSegment];
      OX::dv::PlaceMacroblocksSD(layout, sequences, 0, i, k, p);
      for (int j = 0; j < 5; ++j) FillMacroblock(compressor, j, planes, is420, p[j].x, p[j].y);
      compressor.Compress(first);
    }
  }
  compressor.Finish();
  return frameBytes;
}

}  // namespace dvenc
