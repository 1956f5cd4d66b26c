// DV25 decoding: NTSC 4:1:1 and PAL 4:2:0 or 4:1:1 frames at full size, one field, half,
// quarter and eighth size, into BGRA-type, VUYA-type or packed 4:2:2 destinations.
#include <cmath>
#include <cstring>

#include "conversion/RowConverter.h"
#include "dv/DVDecodeTables.h"
#include "dv/DVDecoder.h"
#include "dv/DVFrame.h"
#include "dv/DVTables.h"
#include "frame/PixelFormat.h"
#include "frame/Scratch.h"
#include "primitives/DVPrimitives.h"
#include "primitives/Primitives.h"

namespace OX::dv {

void DequantiseAndTransformSD(int16_t* block, uint32_t blockInfo) {
  const int mode = (blockInfo >> 6) & 1;
  const int classNumber = (blockInfo >> 4) & 3;
  const int qno = (blockInfo >> 16) & 15;
  VecMulTableRoundScaled(gDequant[mode][kDequantRowOf[classNumber][qno]], block, 64, 14);
  if (TransformDCOnly(block, mode)) return;
  if (mode) {
    VecDCT248Inverse(block);
  } else {
    VecDCT8x8Inverse(block);
  }
}

namespace {

enum OutputKind { kOutputBGRA = 0, kOutputVUYA = 1, kOutputPacked422 = 2 };

constexpr int kBlocksPerSegment = 30;
constexpr uint8_t kBlockOffset[6] = {4, 18, 32, 46, 60, 70};

// Studio-range 601 to RGB as the write kernels compute it: float, rounded to nearest, limited.
inline uint8_t RoundToByte(float v) {
  const long r = std::lrintf(v);
  return uint8_t(r < 0 ? 0 : r > 255 ? 255 : r);
}
inline void VUYAToBGRA(const uint8_t* in, uint8_t* out, int width) {
  for (int i = 0; i < width; ++i, in += 4, out += 4) {
    const float y = float(in[2] - 16), u = float(in[1] - 128), v = float(in[0] - 128);
    out[0] = RoundToByte(1.164383f * y + 2.017231f * u);
    out[1] = RoundToByte(1.164383f * y - 0.391762f * u - 0.812969f * v);
    out[2] = RoundToByte(1.164383f * y + 1.596027f * v);
    out[3] = 255;
  }
}

// Writes one row of VUYA pixels to the destination in its own kind.
struct RowWriter {
  int fKind;
  bool fLumaFirst;       // YUYV rather than UYVY
  RowConverter fToBGRA;  // the library's VUYA to BGRA step, or null for the write kernels' own

  void Write(const uint8_t* vuya, uint8_t* out, int width) const {
    if (fKind == kOutputVUYA) {
      std::memcpy(out, vuya, size_t(width) * 4);
    } else if (fKind == kOutputBGRA) {
      if (fToBGRA) {
        fToBGRA(vuya, out, width);
      } else {
        VUYAToBGRA(vuya, out, width);
      }
    } else {
      // 4:2:2: chroma of the even pixel of each pair.
      for (int i = 0; i + 1 < width; i += 2, vuya += 8, out += 4) {
        if (fLumaFirst) {
          out[0] = vuya[2], out[1] = vuya[1], out[2] = vuya[6], out[3] = vuya[0];
        } else {
          out[0] = vuya[1], out[1] = vuya[2], out[2] = vuya[0], out[3] = vuya[6];
        }
      }
    }
  }
};

struct DV25FrameDecoder {
  const uint8_t* frame;
  bool isNTSC;
  int scaleIndex;
  uint8_t* dst;
  ptrdiff_t dstRowBytes;
  int outputKind;
  bool highQuality;
  int kind;
  int shift;
  int bytesPerPixel;
  int16_t* blockPointers[5];
  uint8_t* planes;
  int planeRowBytes;
  // Derived geometry.
  int rows;  // sequences per channel
  SDLayout layout;
  int frameHeight;
  int outWidth, outHeight;
  RowWriter writer;

  // ---- Full size and one field: the plane store, then a final pass -------------------------
  // Luma plane of 720 x outHeight, then the two chroma planes (4:1:1: 180 wide, outHeight rows;
  // 4:2:0: 360 wide, outHeight / 2 rows).
  int ChromaWidth() const { return layout == SDLayout::k420 ? 360 : 180; }
  int ChromaRows() const { return layout == SDLayout::k420 ? outHeight / 2 : outHeight; }
  size_t PlaneBytes() const { return size_t(720) * outHeight + 2 * size_t(ChromaWidth()) * ChromaRows(); }
  uint8_t* Luma() const { return planes; }
  uint8_t* Chroma(int which) const {  // 0 V, 1 U
    return planes + size_t(720) * outHeight + size_t(which) * ChromaWidth() * ChromaRows();
  }

  // Stores the rows of one transformed block that belong to the output: every row at full size,
  // rows of one parity for a field. `py` is the block's top row in picture (or chroma) rows.
  // `kColumns` samples of each row from column `colFrom` (8, or 4 for the halves of a 4:1:1
  // chroma block of the right-hand column).
  template <int kColumns = 8>
  void StoreBlock(const int16_t* block, uint8_t* plane, int stride, int px, int py, int firstRow,
                  int colFrom = 0) const {
    // Rows firstRow, firstRow + step, ... land on consecutive plane rows.
    const int step = scaleIndex == 0 ? 1 : 2;
    VecDVStoreSamples(block + firstRow * 8 + colFrom, 8 * step, plane + size_t((py + firstRow) / step) * stride + px,
                      stride, kColumns, (8 - firstRow + step - 1) / step);
  }

  void StoreMacroblockFull(int16_t* mb, PicturePosition p) {
    const int parity = scaleIndex == 5 ? 1 : 0;
    if (layout == SDLayout::k420) {
      for (int b = 0; b < 4; ++b)
        StoreBlock(mb + b * 64, Luma(), 720, p.x + (b & 1) * 8, p.y + (b >> 1) * 8, parity);
      StoreBlock(mb + 4 * 64, Chroma(0), 360, p.x / 2, p.y / 2, parity);
      StoreBlock(mb + 5 * 64, Chroma(1), 360, p.x / 2, p.y / 2, parity);
    } else if (!Is411SquareColumn(p.x)) {
      for (int b = 0; b < 4; ++b) StoreBlock(mb + b * 64, Luma(), 720, p.x + b * 8, p.y, parity);
      StoreBlock(mb + 4 * 64, Chroma(0), 180, p.x / 4, p.y, parity);
      StoreBlock(mb + 5 * 64, Chroma(1), 180, p.x / 4, p.y, parity);
    } else {
      // 16 x 16: luma in four quadrants; each chroma block holds the upper 4 x 8 samples in its
      // left half and the lower ones in its right half.
      for (int b = 0; b < 4; ++b)
        StoreBlock(mb + b * 64, Luma(), 720, p.x + (b & 1) * 8, p.y + (b >> 1) * 8, parity);
      for (int c = 0; c < 2; ++c) {
        StoreBlock<4>(mb + (4 + c) * 64, Chroma(c), 180, p.x / 4, p.y, parity, 0);
        StoreBlock<4>(mb + (4 + c) * 64, Chroma(c), 180, p.x / 4, p.y + 8, parity, 4);
      }
    }
  }

  // Forms the destination from the plane store.
  void FinalPass() {
    alignas(16) uint8_t vuya[720 * 4];
    alignas(16) uint8_t chroma[2][720];
    const int chromaWidth = ChromaWidth();
    for (int oy = 0; oy < outHeight; ++oy) {
      int chromaRow = oy;
      if (layout == SDLayout::k420) {
        // Chroma rows alternate between the fields: row r serves picture rows
        // 4 (r / 2) + r % 2 and the row two below it.
        chromaRow = scaleIndex == 0 ? 2 * (oy / 4) + oy % 2 : oy / 2;
      }
      const uint8_t* luma = Luma() + size_t(oy) * 720;
      const int expanded = outputKind == kOutputPacked422 ? 360 : 720;
      for (int c = 0; c < 2; ++c) {
        const uint8_t* in = Chroma(c) + size_t(chromaRow) * chromaWidth;
        uint8_t* out = chroma[c];
        if (layout == SDLayout::k420) {
          if (expanded == 360) {
            std::memcpy(out, in, 360);
          } else {
            for (int i = 0; i < 360; ++i) out[2 * i] = out[2 * i + 1] = in[i];
          }
        } else if (expanded == 360) {
          for (int i = 0; i < 179; ++i) {
            out[2 * i] = in[i];
            out[2 * i + 1] = uint8_t((in[i] + in[i + 1] + 1) >> 1);
          }
          out[358] = out[359] = in[179];
        } else {
          for (int i = 0; i < 179; ++i)
            for (int k = 0; k < 4; ++k) out[4 * i + k] = uint8_t(((4 - k) * in[i] + k * in[i + 1]) >> 2);
          for (int k = 0; k < 4; ++k) out[716 + k] = in[179];
        }
      }
      uint8_t* outRow = dst + ptrdiff_t(oy) * dstRowBytes;
      if (outputKind == kOutputPacked422) {
        if (writer.fLumaFirst) {
          for (int i = 0; i < 360; ++i, outRow += 4)
            outRow[0] = luma[2 * i], outRow[1] = chroma[1][i], outRow[2] = luma[2 * i + 1], outRow[3] = chroma[0][i];
        } else {
          for (int i = 0; i < 360; ++i, outRow += 4)
            outRow[0] = chroma[1][i], outRow[1] = luma[2 * i], outRow[2] = chroma[0][i], outRow[3] = luma[2 * i + 1];
        }
        continue;
      }
      for (int i = 0; i < 720; ++i) {
        vuya[4 * i + 0] = chroma[0][i];
        vuya[4 * i + 1] = chroma[1][i];
        vuya[4 * i + 2] = luma[i];
        vuya[4 * i + 3] = 255;
      }
      writer.Write(vuya, outRow, 720);
    }
  }

  // ---- Half, quarter and eighth size: a VUYA canvas, then the row writer --------------------
  uint8_t* canvas;  // outWidth x outHeight VUYA pixels, top-down

  void PutPixel(int x, int y, int luma, int u, int v) {
    uint8_t* o = canvas + (size_t(y) * outWidth + x) * 4;
    o[0] = SampleToByte(v);
    o[1] = SampleToByte(u);
    o[2] = SampleToByte(luma);
    o[3] = 255;
  }

  // Samples of a reduced luma block: `n` x `n` (4 at half size, 2 at quarter size).
  static int ReducedLuma(const int16_t* block, int n, int x, int y) {
    if (n == 4) return block[y * 4 + x];
    const int16_t* s = block + y * 8 + x * 2;  // 2 x 2 mean of the 4 x 4 result
    return (s[0] + s[1] + s[4] + s[5] + 2) >> 2;
  }

  void WriteMacroblockReduced(int16_t* mb, PicturePosition p) {
    const int n = scaleIndex == 1 ? 4 : 2;        // luma samples a block side
    const int factor = scaleIndex == 1 ? 2 : 4;   // picture pixels an output pixel
    const int ox = p.x / factor, oy = p.y / factor;
    const bool square = layout == SDLayout::k420 || Is411SquareColumn(p.x);
    const int mbWidth = (square ? 16 : 32) / factor, mbHeight = (square ? 16 : 8) / factor;
    for (int y = 0; y < mbHeight; ++y) {
      for (int x = 0; x < mbWidth; ++x) {
        int block, bx = x, by = y;
        if (square) {
          block = (x >= n ? 1 : 0) + (y >= n ? 2 : 0);
          bx = x % n, by = y % n;
        } else {
          block = x / n;
          bx = x % n;
        }
        const int luma = ReducedLuma(mb + block * 64, n, bx, by);
        // Chroma at the picture position of the output pixel.
        const int px = x * factor, py = y * factor;
        int cx, cy;
        if (layout == SDLayout::k420) {
          cx = px / 2, cy = py / 2;
        } else if (!square) {
          cx = px / 4, cy = py;
        } else {
          cx = px / 4 + (py >= 8 ? 4 : 0), cy = py % 8;
        }
        PutPixel(ox + x, oy + y, luma, mb[5 * 64 + cy * 8 + cx], mb[4 * 64 + cy * 8 + cx]);
      }
    }
  }

  void WriteMacroblockEighth(const uint8_t* segment, int j, PicturePosition p) {
    const uint8_t* dif = segment + j * kDIFBlockBytes;
    // The top eight bits of each 9-bit DC: the block's mean around 128.
    auto dc = [&](int b) { return int(int8_t(dif[kBlockOffset[b]])); };
    const int ox = p.x / 8, oy = p.y / 8;
    const int u = dc(5), v = dc(4);
    if (layout == SDLayout::k420 || Is411SquareColumn(p.x)) {
      for (int b = 0; b < 4; ++b) PutPixel(ox + (b & 1), oy + (b >> 1), dc(b), u, v);
    } else {
      for (int b = 0; b < 4; ++b) PutPixel(ox + b, oy, dc(b), u, v);
    }
  }

  OX_Result Run() {
    alignas(16) int16_t coefficients[kBlocksPerSegment * 64];
    uint32_t info[kBlocksPerSegment];
    const uint8_t* orders = kScanPair;
    const void* table = DV25DecodeTable();
    if (!table && scaleIndex != 3) return OX_ErrNoRoute;

    const size_t canvasBytes = scaleIndex >= 1 && scaleIndex <= 3 ? size_t(outWidth) * outHeight * 4 : 0;
    const size_t planeBytes = scaleIndex == 0 || scaleIndex >= 4 ? PlaneBytes() : 0;
    ScratchBuffer store(canvasBytes + planeBytes);
    if (!store.Get()) return OX_ErrNoMemory;
    canvas = store.Get();
    planes = store.Get();

    for (int i = 0; i < rows; ++i) {
      for (int k = 0; k < kSegmentsPerSequence; ++k) {
        const uint8_t* segment = frame + SegmentOffset(i, k);
        PicturePosition p[kMacroblocksPerSegment];
        PlaceMacroblocksSD(layout, rows, 0, i, k, p);
        if (scaleIndex == 3) {
          for (int j = 0; j < kMacroblocksPerSegment; ++j) WriteMacroblockEighth(segment, j, p[j]);
          continue;
        }
        std::memset(coefficients, 0, sizeof(coefficients));
        VecDVDecodeSegment(segment, orders, table, coefficients, info);
        for (int b = 0; b < kBlocksPerSegment; ++b) {
          int16_t* block = coefficients + b * 64;
          if ((scaleIndex == 1 || scaleIndex == 2) && b % 6 < 4) {
            ReducedTransform(block, info[b]);
          } else {
            DequantiseAndTransformSD(block, info[b]);
          }
        }
        for (int j = 0; j < kMacroblocksPerSegment; ++j) {
          int16_t* mb = coefficients + j * 6 * 64;
          if (scaleIndex == 1 || scaleIndex == 2) {
            WriteMacroblockReduced(mb, p[j]);
          } else {
            StoreMacroblockFull(mb, p[j]);
          }
        }
      }
    }
    if (scaleIndex >= 1 && scaleIndex <= 3) {
      for (int y = 0; y < outHeight; ++y)
        writer.Write(canvas + size_t(y) * outWidth * 4, dst + ptrdiff_t(y) * dstRowBytes, outWidth);
    } else {
      FinalPass();
    }
    return OX_Success;
  }

  // Dequantises the 16 lowest coefficients and transforms them to 4 x 4 samples of the block's
  // mean over 2 x 2 pixels. The basis has 12 fractional bits; its 1/sqrt(2) per direction turns
  // the 8-point scale into the 4-point one.
  static void ReducedTransform(int16_t* block, uint32_t blockInfo) {
    static const int32_t* const basis = [] {
      static int32_t b[16];
      for (int i = 0; i < 4; ++i)
        for (int u = 0; u < 4; ++u) {
          const double cu = u == 0 ? 0.5 : std::sqrt(0.5);
          b[i * 4 + u] = int32_t(std::lround(4096.0 * cu * std::cos((2 * i + 1) * u * M_PI / 8) / std::sqrt(2.0)));
        }
      return b;
    }();
    const int mode = (blockInfo >> 6) & 1;
    const int classNumber = (blockInfo >> 4) & 3;
    const int qno = (blockInfo >> 16) & 15;
    // In the 2-4-8 mode the low vertical frequencies are the field sums of rows 0-3.
    VecMulTableRoundScaled(gDequant[mode][kDequantRowOf[classNumber][qno]], block, 64, 14);
    int64_t columns[4][4];  // [sample row][horizontal frequency], 12 fractional bits
    for (int y = 0; y < 4; ++y)
      for (int h = 0; h < 4; ++h) {
        int64_t s = 0;
        for (int v = 0; v < 4; ++v) s += int64_t(basis[y * 4 + v]) * block[v * 8 + h];
        columns[y][h] = s;
      }
    int16_t out[16];
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 4; ++x) {
        int64_t s = 0;
        for (int h = 0; h < 4; ++h) s += int64_t(basis[x * 4 + h]) * columns[y][h];
        s = (s + (int64_t(1) << 23)) >> 24;
        out[y * 4 + x] = int16_t(s < -32768 ? -32768 : s > 32767 ? 32767 : s);
      }
    std::memcpy(block, out, sizeof(out));
  }
};

int ScaleIndexOf(int width, int height, int frameHeight, int field) {
  if (width == 720 && height == frameHeight) return 0;
  if (width == 360 && height == frameHeight / 2) return 1;
  if (width == 180 && height == frameHeight / 4) return 2;
  if (width == 90 && height == frameHeight / 8) return 3;
  if (width == 720 && height == frameHeight / 2) return field == 2 ? 5 : 4;
  return -1;
}

}  // namespace

OX_Result DecodeDV25(const uint8_t* frame, OX_PixelFormat format, void* destination, int32_t destinationRowBytes,
                     OX_PixelFormat destinationFormat, int32_t width, int32_t height, int32_t field,
                     int32_t quality) {
  if (format != OX_PixelFormat_NTSCDV25 && format != OX_PixelFormat_PALDV25) return OX_ErrBadSourceFormat;
  int outputKind;
  if ((destinationFormat | 12) == 12) {
    outputKind = kOutputBGRA;
  } else if ((destinationFormat | 12) == 0x80D) {
    outputKind = kOutputVUYA;
  } else if (destinationFormat == OX_PixelFormat_UYVY_422_8u || destinationFormat == OX_PixelFormat_YUYV_422_8u) {
    outputKind = kOutputPacked422;
  } else {
    return OX_ErrBadDestFormat;
  }
  if (!frame) return OX_ErrNullSource;
  if (!destination) return OX_ErrNullDest;
  const bool isNTSC = format == OX_PixelFormat_NTSCDV25;
  const int frameHeight = isNTSC ? 480 : 576;
  const int scaleIndex = ScaleIndexOf(width, height, frameHeight, field);
  if (scaleIndex < 0) return OX_ErrSizeMismatch;
  const int kind = DVFrameKind(frame, isNTSC);
  if (kind < 0) return OX_ErrDVFrameMismatch;

  try {
    DV25FrameDecoder d{};
    d.frame = frame;
    d.isNTSC = isNTSC;
    d.scaleIndex = scaleIndex;
    d.outputKind = outputKind;
    d.highQuality = scaleIndex == 0 || scaleIndex >= 4 || quality >= 3;
    d.kind = kind;
    d.shift = scaleIndex >= 1 && scaleIndex <= 3 ? scaleIndex : 0;
    d.bytesPerPixel = outputKind == kOutputPacked422 ? 2 : 4;
    d.rows = kind == 0 || kind == 2 ? 10 : 12;
    d.layout = IsKind420(kind) ? SDLayout::k420 : SDLayout::k411;
    d.frameHeight = frameHeight;
    d.outWidth = width;
    d.outHeight = height;
    d.planeRowBytes = d.layout == SDLayout::k420 ? 736 : 1104;
    const OutputRows rows = TopDownRows(destination, destinationRowBytes, destinationFormat, height);
    d.dst = rows.fFirst;
    d.dstRowBytes = rows.fRowBytes;
    d.writer.fKind = outputKind;
    d.writer.fLumaFirst = (destinationFormat & kOrderBit) != 0;
    d.writer.fToBGRA = outputKind == kOutputBGRA && d.highQuality && (scaleIndex == 0 || scaleIndex >= 4)
                           ? FindRowConverter(OX_PixelFormat_VUYA_4444_8u, OX_PixelFormat_BGRA_4444_8u, quality)
                           : nullptr;
    return d.Run();
  } catch (...) {
    return OX_ErrDVFrameMismatch;
  }
}

}  // namespace OX::dv
