// `ombrix dv decode IN.dv OUT` and `ombrix dv info IN.dv`: raw DV streams (concatenated DIF
// frames, as .dv files hold them) decoded to PNG files or a raw buffer, and described frame by
// frame.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Command.h"
#include "DVCommandGroup.h"
#include "Ombrix.h"
#include "PngIO.h"
#include "conversion/DecodeTarget.h"
#include "conversion/RouteTable.h"
#include "dv/DVFrame.h"
#include "frame/PixelFormat.h"

namespace ombrix_tool {
namespace {

using namespace OX::dv;

// The format a frame's header and VS pack tell: STYPE of the 0x60 pack in the first sequence's
// VAUX (0 DV25, 4 DV50, 0x14 DV100 1080, 0x18 DV100 720) and DSF for the rate.
OX_PixelFormat FormatFromHeader(const std::vector<uint8_t>& bytes) {
  if (bytes.size() < size_t(kDIFSequenceBytes)) return 0;
  const bool is50 = HeaderDSF(bytes.data());
  int stype = 0;
  for (int block = 3; block < 6; ++block)
    for (int pack = 0; pack < 15; ++pack) {
      const uint8_t* p = bytes.data() + block * kDIFBlockBytes + 3 + pack * 5;
      if (p[0] == 0x60) {
        stype = p[3] & 0x1F;
        block = 6;
        break;
      }
    }
  switch (stype) {
    case 0x04: return is50 ? OX_PixelFormat_PALDV50 : OX_PixelFormat_NTSCDV50;
    case 0x14: return is50 ? OX_PixelFormat_PAL_DV100_1080i : OX_PixelFormat_NTSC_DV100_1080i;
    case 0x18: return is50 ? OX_PixelFormat_PAL_DV100_720p : OX_PixelFormat_NTSC_DV100_720p;
    default: return is50 ? OX_PixelFormat_PALDV25 : OX_PixelFormat_NTSCDV25;
  }
}

OX_PixelFormat FormatByName(const std::string& name) {
  if (OX_PixelFormat raw = OX::RawFormatByName(name)) return raw;
  for (const OX::FormatNameRecord& r : OX::kFormatNameTable)
    if (r.fCode != 0 && name == r.fName) return r.fCode;
  return 0;
}

bool ReadStream(const std::string& path, const std::string& formatName, std::vector<uint8_t>& bytes,
                const DVFormatInfo*& info) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    std::fprintf(stderr, "cannot read %s\n", path.c_str());
    return false;
  }
  bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  const OX_PixelFormat format = formatName.empty() ? FormatFromHeader(bytes) : FormatByName(formatName);
  info = FindDVFormat(format);
  if (!info) {
    std::fprintf(stderr, "%s: not a DV format\n", formatName.empty() ? path.c_str() : formatName.c_str());
    return false;
  }
  if (bytes.size() < info->fFrameBytes) {
    std::fprintf(stderr, "%s: shorter than one %s frame\n", path.c_str(), OX::PixelFormatName(format));
    return false;
  }
  return true;
}

void Progress(size_t done, size_t total) {
  if (total < 2) return;
  const int width = 40, filled = int(width * done / total);
  std::fprintf(stderr, "\r[%s%s] %zu/%zu", std::string(size_t(filled), '#').c_str(),
               std::string(size_t(width - filled), ' ').c_str(), done, total);
  if (done == total) std::fprintf(stderr, "\n");
}

struct DecodeOptions {
  std::string fIn, fOut, fFormat, fSize, fTo;
  int fQuality = 4;
};

std::string NumberedPath(const std::string& out, size_t index, size_t count) {
  if (count == 1) return out;
  char number[16];
  std::snprintf(number, sizeof(number), "_%05zu", index);
  return out.substr(0, out.size() - 4) + number + ".png";
}

int RunDecode(const DecodeOptions& o) {
  std::vector<uint8_t> bytes;
  const DVFormatInfo* info = nullptr;
  if (!ReadStream(o.fIn, o.fFormat, bytes, info)) return 1;
  int width = info->fWidth, height = info->fHeight;
  if (!o.fSize.empty() && std::sscanf(o.fSize.c_str(), "%dx%d", &width, &height) != 2) {
    std::fprintf(stderr, "--size must be WxH\n");
    return 1;
  }
  const bool png = o.fOut.size() > 4 && o.fOut.compare(o.fOut.size() - 4, 4, ".png") == 0;
  OX_PixelFormat target = OX_PixelFormat_BGRA_4444_8u;
  if (!png) {
    OX_PixelFormat native = 0;
    int32_t w = 0, h = 0;
    // The decoder's own format at that size, unless --to names another.
    if (!o.fTo.empty()) {
      target = FormatByName(o.fTo);
    } else {
      OX_ChooseDecodeTarget(info->fFormat, width, height, OX_PixelFormat_UYVY_422_8u, width, height, o.fQuality,
                            &native, &w, &h);
      target = native;
    }
    if (!OX::IsRawFormat(target) || target == 0) {
      std::fprintf(stderr, "--to must name a raw format\n");
      return 1;
    }
  }
  const int32_t rowBytes = OX_PixelFormatSize(target, width, 1);
  std::vector<uint8_t> picture(size_t(OX_PixelFormatSize(target, width, height)) + 64);
  const size_t frames = bytes.size() / info->fFrameBytes;
  std::ofstream raw;
  if (!png) raw.open(o.fOut, std::ios::binary);
  for (size_t i = 0; i < frames; ++i) {
    const OX_Result r = OX_Convert(bytes.data() + i * info->fFrameBytes, 0, info->fFormat, picture.data(), rowBytes,
                                   target, width, height, o.fQuality);
    if (r != OX_Success) {
      std::fprintf(stderr, "\nframe %zu: OX_Convert returned %d\n", i, r);
      return 1;
    }
    if (png) {
      std::string error;
      if (!WritePng(NumberedPath(o.fOut, i, frames), ImageFromBGRA8BottomUp(picture.data(), width, height, rowBytes),
                    error)) {
        std::fprintf(stderr, "\n%s\n", error.c_str());
        return 1;
      }
    } else {
      raw.write(reinterpret_cast<const char*>(picture.data()), std::streamsize(size_t(rowBytes) * height));
    }
    Progress(i + 1, frames);
  }
  std::printf("%zu %s frame%s decoded at %dx%d into %s\n", frames, OX::PixelFormatName(info->fFormat),
              frames == 1 ? "" : "s", width, height, png ? "PNG" : OX::RouteFormatName(target));
  return 0;
}

int RunInfo(const std::string& path, const std::string& formatName) {
  std::vector<uint8_t> bytes;
  const DVFormatInfo* info = nullptr;
  if (!ReadStream(path, formatName, bytes, info)) return 1;
  const size_t frames = bytes.size() / info->fFrameBytes;
  static const char* const kKinds[] = {"NTSC 4:1:1", "PAL 4:2:0", "NTSC 4:1:1 (APT 1)", "PAL 4:1:1 (APT 1)"};
  for (size_t i = 0; i < frames; ++i) {
    const uint8_t* frame = bytes.data() + i * info->fFrameBytes;
    std::printf("frame %zu: %s, %dx%d", i, OX::PixelFormatName(info->fFormat), info->fWidth, info->fHeight);
    if (info->fFamily == Family::kDV25) {
      const int kind = DVFrameKind(frame, info->fFormat == OX_PixelFormat_NTSCDV25);
      std::printf(", kind %s", kind < 0 ? "rejected (APT/AP)" : kKinds[kind]);
    } else {
      std::printf(", DSF %d%s", HeaderDSF(frame), HeaderDSF(frame) != info->fIs50Hz ? " (disagrees: rejected)" : "");
    }
    int displayClass = -1;
    CDVFrame view(frame, int32_t(info->fFrameBytes));
    if (view.GetDisplayClass(displayClass) == 0) {
      std::printf(", display class %d\n", displayClass);
    } else {
      std::printf(", no display class\n");
    }
    // QNO of every macroblock: byte 3 of each video block.
    int histogram[16] = {};
    const int sequences = int(info->fFrameBytes / kDIFSequenceBytes);
    for (int s = 0; s < sequences; ++s)
      for (int k = 0; k < kSegmentsPerSequence; ++k)
        for (int m = 0; m < kMacroblocksPerSegment; ++m) ++histogram[frame[SegmentOffset(s, k) + m * 80 + 3] & 15];
    std::printf("  QNO:");
    for (int q = 0; q < 16; ++q) std::printf(" %d:%d", q, histogram[q]);
    std::printf("\n");
  }
  return 0;
}

CommandRegistrar gDVDecode([](CLI::App& app) {
  CLI::App& dv = DVGroup(app);
  auto o = std::make_shared<DecodeOptions>();
  auto* decode = dv.add_subcommand("decode", "Decode a raw DV stream to PNG files or a raw buffer");
  decode->add_option("IN", o->fIn, "Input: concatenated DV frames (.dv)")->required();
  decode->add_option("OUT", o->fOut, "Output: NAME.png (numbered per frame) or a raw buffer")->required();
  decode->add_option("--format", o->fFormat, "DV format name, e.g. PALDV25 (default: from the header)");
  decode->add_option("--size", o->fSize, "Decoded size, WxH (default: the frame's full size)");
  decode->add_option("--quality", o->fQuality, "Render quality number (below 3 allows the reduced sizes)");
  decode->add_option("--to", o->fTo, "Raw output format (default: the decoder's own at that size)");
  decode->callback([o] {
    if (RunDecode(*o) != 0) throw CLI::RuntimeError(1);
  });
  auto in = std::make_shared<std::string>();
  auto format = std::make_shared<std::string>();
  auto* inform = dv.add_subcommand("info", "Print each frame's format, kind, display class and QNO histogram");
  inform->add_option("IN", *in, "Input: concatenated DV frames (.dv)")->required();
  inform->add_option("--format", *format, "DV format name (default: from the header)");
  inform->callback([in, format] {
    if (RunInfo(*in, *format) != 0) throw CLI::RuntimeError(1);
  });
});

}  // namespace
}  // namespace ombrix_tool
