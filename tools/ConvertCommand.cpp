// `ombrix convert`, `ombrix route` and the conversion round of the demo: pictures through
// OX_Convert, and the chain of steps that joins two formats.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Command.h"
#include "Ombrix.h"
#include "PngIO.h"
#include "conversion/RouteTable.h"
#include "conversion/RowConverterChain.h"
#include "frame/PixelFormat.h"

namespace ombrix_tool {
namespace {

using OX::IsRawFormat;

std::string FormatName(OX_PixelFormat f) { return OX::RouteFormatName(f); }

// A format by name (raw or container), or 0.
OX_PixelFormat ParseFormat(const std::string& name) {
  if (OX_PixelFormat raw = OX::RawFormatByName(name)) return raw;
  for (const OX::FormatNameRecord& r : OX::kFormatNameTable)
    if (r.fCode != 0 && name == r.fName) return r.fCode;
  return 0;
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

struct Picture {
  OX_PixelFormat fFormat = 0;
  int fWidth = 0, fHeight = 0;
  int32_t fRowBytes = 0;
  std::vector<uint8_t> fBytes;
};

Picture Allocate(OX_PixelFormat format, int width, int height) {
  Picture p;
  p.fFormat = format;
  p.fWidth = width;
  p.fHeight = height;
  p.fRowBytes = IsRawFormat(format) ? OX_PixelFormatSize(format, width, 1) : 0;
  p.fBytes.assign(size_t(std::max(OX_PixelFormatSize(format, width, height), 0)) + 64, 0);
  return p;
}

OX_Result ConvertPicture(const Picture& from, Picture& to) {
  return OX_Convert(from.fBytes.data(), from.fRowBytes, from.fFormat, to.fBytes.data(), to.fRowBytes, to.fFormat,
                    from.fWidth, from.fHeight, 3);
}

// 8-bit PNGs become BGRA_4444_8u; 16-bit ones, which come out of the reader linear and
// premultiplied, become BGRP_4444_32f_Linear. Both are bottom-up.
bool PictureFromPng(const std::string& path, Picture& out) {
  Image img;
  std::string error;
  if (!ReadPng(path, img, error)) {
    std::fprintf(stderr, "could not read %s: %s\n", path.c_str(), error.c_str());
    return false;
  }
  if (img.fBitDepth == 8) {
    out = Allocate(OX_PixelFormat_BGRA_4444_8u, img.fWidth, img.fHeight);
    BGRA8BottomUpFromImage(img, out.fBytes.data(), out.fRowBytes);
    return true;
  }
  out = Allocate(OX_PixelFormat_BGRP_4444_32f_Linear, img.fWidth, img.fHeight);
  const uint16_t* s = reinterpret_cast<const uint16_t*>(img.fPixels.data());
  for (int y = 0; y < img.fHeight; ++y) {
    float* d = reinterpret_cast<float*>(out.fBytes.data() + size_t(img.fHeight - 1 - y) * out.fRowBytes);
    for (int x = 0; x < img.fWidth; ++x) {
      const uint16_t* p = s + (size_t(y) * img.fWidth + x) * 4;
      const int order[4] = {2, 1, 0, 3};
      for (int c = 0; c < 4; ++c) d[x * 4 + c] = float(p[order[c]]) / 65535.0f;
    }
  }
  return true;
}

bool WritePicturePng(const Picture& picture, const std::string& path) {
  Picture display = Allocate(OX_PixelFormat_BGRA_4444_8u, picture.fWidth, picture.fHeight);
  const OX_Result r = picture.fFormat == display.fFormat
                          ? (display.fBytes = picture.fBytes, 0)
                          : ConvertPicture(picture, display);
  if (r != 0) {
    std::fprintf(stderr, "could not convert %s to BGRA_4444_8u for display: %d\n", FormatName(picture.fFormat).c_str(),
                 r);
    return false;
  }
  Image img = ImageFromBGRA8BottomUp(display.fBytes.data(), display.fWidth, display.fHeight, display.fRowBytes);
  std::string error;
  if (!WritePng(path, img, error)) {
    std::fprintf(stderr, "could not write %s: %s\n", path.c_str(), error.c_str());
    return false;
  }
  return true;
}

struct ConvertOptions {
  std::string fIn, fOut, fTo, fFrom, fSize;
};

int RunConvert(const ConvertOptions& o) {
  const OX_PixelFormat to = ParseFormat(o.fTo);
  if (!to) {
    std::fprintf(stderr, "unknown format %s\n", o.fTo.c_str());
    return 2;
  }
  Picture source;
  if (o.fFrom.empty()) {
    if (!PictureFromPng(o.fIn, source)) return 1;
  } else {
    const OX_PixelFormat from = ParseFormat(o.fFrom);
    int w = 0, h = 0;
    if (!from || std::sscanf(o.fSize.c_str(), "%dx%d", &w, &h) != 2 || w <= 0 || h <= 0) {
      std::fprintf(stderr, "a raw input needs a known --from format and --size WxH\n");
      return 2;
    }
    std::ifstream file(o.fIn, std::ios::binary);
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    source = Allocate(from, w, h);
    const size_t padded = size_t(std::max(OX_PixelFormatSize(from, w, h), 0));
    const size_t tight = IsRawFormat(from) ? size_t(OX::TightRowBytes(from, w)) * h : padded;
    if (bytes.size() == padded) {
      std::memcpy(source.fBytes.data(), bytes.data(), padded);
    } else if (bytes.size() == tight && IsRawFormat(from)) {
      source.fRowBytes = OX::TightRowBytes(from, w);
      std::memcpy(source.fBytes.data(), bytes.data(), tight);
    } else {
      std::fprintf(stderr, "%s holds %zu bytes; %s at %dx%d takes %zu (padded rows) or %zu (tight rows)\n",
                   o.fIn.c_str(), bytes.size(), o.fFrom.c_str(), w, h, padded, tight);
      return 1;
    }
  }
  Picture result = Allocate(to, source.fWidth, source.fHeight);
  const OX_Result r = ConvertPicture(source, result);
  std::printf("%s %dx%d -> %s: result %d\n", FormatName(source.fFormat).c_str(), source.fWidth, source.fHeight,
              FormatName(to).c_str(), r);
  if (r != 0) return 1;
  if (EndsWith(o.fOut, ".png")) {
    if (!WritePicturePng(result, o.fOut)) return 1;
  } else {
    std::ofstream out(o.fOut, std::ios::binary);
    out.write(reinterpret_cast<const char*>(result.fBytes.data()),
              std::streamsize(std::max(OX_PixelFormatSize(to, result.fWidth, result.fHeight), 0)));
    if (!out) {
      std::fprintf(stderr, "could not write %s\n", o.fOut.c_str());
      return 1;
    }
  }
  std::printf("wrote %s\n", o.fOut.c_str());
  return 0;
}

int RunRoute(const std::string& fromName, const std::string& toName) {
  const OX_PixelFormat from = ParseFormat(fromName), to = ParseFormat(toName);
  if (!from || !to) {
    std::fprintf(stderr, "unknown format %s\n", (!from ? fromName : toName).c_str());
    return 2;
  }
  if (from == to) {
    std::printf("%s to itself: a plain copy, no chain\n", fromName.c_str());
    return 0;
  }
  const OX::RowConverterChain chain(from, to, 3);
  if (chain.Empty()) {
    std::printf("no route from %s to %s (containers go through their decode and encode roads)\n", fromName.c_str(),
                toName.c_str());
    return 1;
  }
  std::printf("%s -> %s: %d step%s\n", fromName.c_str(), toName.c_str(), chain.Count(), chain.Count() > 1 ? "s" : "");
  for (int i = 0; i < chain.Count(); ++i) {
    const OX_PixelFormat a = chain.Format(i), b = chain.Format(i + 1);
    // Name the converter by the pair it serves; the one deliberate pairing shows its own pair.
    const char* note = "";
    if (chain.Converter(i) != OX::FindRowConverter(a, b, 3) && chain.Converter(i) == OX::FindRowConverter(b, a, 3))
      note = "  (the converter of the reverse step, kept deliberately)";
    std::printf("  %d. %-22s -> %-22s converter %p%s\n", i + 1, FormatName(a).c_str(), FormatName(b).c_str(),
                reinterpret_cast<void*>(chain.Converter(i)), note);
  }
  return 0;
}

CommandRegistrar gConvert([](CLI::App& app) {
  auto* o = new ConvertOptions;
  auto* cmd = app.add_subcommand("convert", "Convert a PNG or raw picture to another pixel format");
  cmd->add_option("IN", o->fIn, "Input: a PNG (8 or 16 bits) or a raw buffer with --from and --size")->required();
  cmd->add_option("OUT", o->fOut, "Output: a raw buffer, or a .png converted back for display")->required();
  cmd->add_option("--to", o->fTo, "Destination format name, e.g. UYVY_422_8u")->required();
  cmd->add_option("--from", o->fFrom, "Format of a raw input");
  cmd->add_option("--size", o->fSize, "Size of a raw input, WxH");
  cmd->callback([o] {
    if (int rc = RunConvert(*o)) throw CLI::RuntimeError(rc);
  });
  auto* from = new std::string, *to = new std::string;
  auto* route = app.add_subcommand("route", "Print the chain of formats and converters between two formats");
  route->add_option("FROM", *from, "Source format name")->required();
  route->add_option("TO", *to, "Destination format name")->required();
  route->callback([from, to] {
    if (int rc = RunRoute(*from, *to)) throw CLI::RuntimeError(rc);
  });
});

// The card through 4:2:2, V210 and linear light and back to 8 bits; 4:2:2 drops alpha, so the
// difference is measured on the colour of the opaque pixels.
DemoStepRegistrar gConversionRound(20, "Conversion round: 8u -> 4:2:2 -> V210 -> 32f linear -> 8u",
                                   [](DemoContext& ctx) {
  Picture card = Allocate(OX_PixelFormat_BGRA_4444_8u, ctx.fWidth, ctx.fHeight);
  for (int y = 0; y < ctx.fHeight; ++y)
    std::memcpy(card.fBytes.data() + size_t(y) * card.fRowBytes, ctx.fCard.data() + size_t(y) * ctx.fWidth * 4,
                size_t(ctx.fWidth) * 4);
  const OX_PixelFormat steps[] = {OX_PixelFormat_UYVY_422_8u, OX_PixelFormat_V210_422_10u,
                                  OX_PixelFormat_BGRA_4444_32f_Linear, OX_PixelFormat_BGRA_4444_8u};
  Picture current = card;
  for (OX_PixelFormat f : steps) {
    Picture next = Allocate(f, ctx.fWidth, ctx.fHeight);
    const OX::RowConverterChain chain(current.fFormat, f, 3);
    const OX_Result r = ConvertPicture(current, next);
    std::printf("%-22s -> %-22s %d step%s, result %d\n", FormatName(current.fFormat).c_str(), FormatName(f).c_str(),
                chain.Count(), chain.Count() == 1 ? "" : "s", r);
    if (r != 0) return false;
    current = std::move(next);
  }
  int maxDifference = 0;
  long long opaque = 0;
  for (int y = 0; y < ctx.fHeight; ++y)
    for (int x = 0; x < ctx.fWidth; ++x) {
      const uint8_t* a = card.fBytes.data() + size_t(y) * card.fRowBytes + x * 4;
      const uint8_t* b = current.fBytes.data() + size_t(y) * current.fRowBytes + x * 4;
      if (a[3] != 255) continue;
      ++opaque;
      for (int c = 0; c < 3; ++c) maxDifference = std::max(maxDifference, std::abs(a[c] - b[c]));
    }
  const std::string path = ctx.fOutputDirectory + "/conversion-round.png";
  if (!WritePicturePng(current, path)) return false;
  std::printf("max difference on %lld opaque pixels: %d levels (4:2:2 chroma filtering at colour edges)\n", opaque,
              maxDifference);
  std::printf("wrote %s\n", path.c_str());
  return true;
});

}  // namespace
}  // namespace ombrix_tool
