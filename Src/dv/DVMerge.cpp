// DV merge: one field from each of two frames, through a 4:2:2 decode, a field copy and a
// re-encode, with the first frame's display class restored in the output.
#include "dv/DVMerge.h"

#include "Ombrix.h"
#include "dv/DVFrame.h"

namespace OX {

void RewriteVSCPacks(uint8_t* frame, int displayClass) {
  const bool fiftyHertz = dv::HeaderDSF(frame);
  int disp = 0, bcs = 0;
  switch (displayClass) {
    case 0: disp = 0; bcs = fiftyHertz ? 1 : 0; break;
    case 1: disp = 1; bcs = 0; break;
    case 2: disp = fiftyHertz ? 7 : 2; bcs = fiftyHertz ? 1 : 0; break;
    case 3: disp = 1; bcs = 1; break;
    case 4: disp = 6; bcs = 1; break;
    default: return;
  }
  const int sequences = dv::HeaderSequenceCount(frame);
  for (int i = 0; i < sequences; ++i) {
    uint8_t* pack = frame + size_t(i) * dv::kDIFSequenceBytes + dv::VSCPackOffset(i);
    if (pack[0] != 0x61) continue;
    pack[2] = uint8_t((pack[2] & ~7) | disp);
    pack[3] = uint8_t((pack[3] & ~3) | bcs);
  }
}

}  // namespace OX

using namespace OX;

OX_Result OX_MergeDV(const void* firstFrame, const void* secondFrame, void* outFrame, int32_t frameBytes,
                     int32_t quality) {
  const bool ntsc = frameBytes == 120000;
  const OX_PixelFormat format = ntsc ? OX_PixelFormat_NTSCDV25 : OX_PixelFormat_PALDV25;
  const int32_t width = 720, height = ntsc ? 480 : 576;
  void* base = nullptr;
  void* pixels = nullptr;
  int32_t rowBytes = 0;
  uint32_t allocated = 0;
  const OX_Result allocatedResult = OX_AllocatePixelBuffer(OX_PixelFormat_YUYV_422_8u, width, 2 * height, &base,
                                                           &pixels, &rowBytes, &allocated);
  if (allocatedResult != OX_Success) return allocatedResult;
  auto* upper = static_cast<uint8_t*>(pixels);
  uint8_t* lower = upper + ptrdiff_t(height) * rowBytes;

  // Decode and encode results are deliberately not checked here.
  OX_Convert(firstFrame, frameBytes, format, upper, rowBytes, OX_PixelFormat_YUYV_422_8u, width, height, quality);
  OX_Convert(secondFrame, frameBytes, format, lower, rowBytes, OX_PixelFormat_YUYV_422_8u, width, height, quality);

  int displayClass = -1;
  dv::CDVFrame(static_cast<const uint8_t*>(firstFrame), 0).GetDisplayClass(displayClass);
  int unused = -1;
  dv::CDVFrame(static_cast<const uint8_t*>(secondFrame), 0).GetDisplayClass(unused);

  OX_Convert(upper + rowBytes, 2 * rowBytes, OX_PixelFormat_YUYV_422_8u, lower + rowBytes, 2 * rowBytes,
             OX_PixelFormat_YUYV_422_8u, width, height / 2, quality);
  OX_Convert(lower, rowBytes, OX_PixelFormat_YUYV_422_8u, outFrame, frameBytes, format, width, height, quality);
  if (displayClass >= 0 && displayClass <= 4) RewriteVSCPacks(static_cast<uint8_t*>(outFrame), displayClass);
  return OX_FreePixelBuffer(OX_PixelFormat_YUYV_422_8u, base, allocated);
}

OX_Result OX_MergeDVCPRO(const void* firstFrame, const void* secondFrame, void* outFrame, OX_PixelFormat format,
                         int32_t quality) {
  const dv::DVFormatInfo* info = dv::FindDVFormat(format);
  if (!info) return OX_ErrBadSourceFormat;
  const int32_t width = info->fWidth, height = info->fHeight;
  const int32_t frameBytes = int32_t(info->fFrameBytes);
  const int32_t rowBytes = 2 * width;
  void* base = nullptr;
  uint32_t allocated = 0;
  auto* upper = static_cast<uint8_t*>(OX_AllocateTransientMemoryBlock(uint32_t(height) * 4 * uint32_t(width), &base,
                                                                      &allocated));
  if (!upper) return OX_ErrNoMemory;
  uint8_t* lower = upper + ptrdiff_t(height) * rowBytes;
  auto release = [&](OX_Result r) {
    OX_FreeTransientMemoryBlock(base, allocated);
    return r;
  };

  OX_Result r = OX_Convert(firstFrame, frameBytes, format, upper, rowBytes, OX_PixelFormat_YUYV_422_8u, width,
                           height, quality);
  if (r != OX_Success) return release(r);
  r = OX_Convert(secondFrame, frameBytes, format, lower, rowBytes, OX_PixelFormat_YUYV_422_8u, width, height,
                 quality);
  if (r != OX_Success) return release(r);

  int displayClass = -1;
  dv::CDVFrame(static_cast<const uint8_t*>(firstFrame), 0).GetDisplayClass(displayClass);
  int unused = -1;
  dv::CDVFrame(static_cast<const uint8_t*>(secondFrame), 0).GetDisplayClass(unused);

  // DV25 and DV50 take the odd rows from the first frame, DV100 the even rows (row 0 first).
  const int firstRow = info->fIsDV100() ? 0 : 1;
  const bool is720 = info->fFamily == dv::Family::kDV100_720;
  const uint8_t byte8 = static_cast<const uint8_t*>(secondFrame)[8];
  r = OX_Convert(upper + firstRow * rowBytes, 2 * rowBytes, OX_PixelFormat_YUYV_422_8u, lower + firstRow * rowBytes,
                 2 * rowBytes, OX_PixelFormat_YUYV_422_8u, width, (height - firstRow + 1) / 2, quality);
  if (r != OX_Success) return release(r);
  auto* out = static_cast<uint8_t*>(outFrame);
  if (is720) out[8] = byte8;
  r = OX_Convert(lower, rowBytes, OX_PixelFormat_YUYV_422_8u, out, frameBytes, format, width, height, quality);
  if (r != OX_Success) return release(r);
  // The encoder rewrites the header, so the byte is put back after it as well.
  if (is720) out[8] = byte8;
  if (displayClass >= 0 && displayClass <= 4) RewriteVSCPacks(out, displayClass);
  return release(OX_Success);
}
