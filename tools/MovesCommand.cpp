// `ombrix rotate`, `ombrix flip`, `ombrix transpose`, `ombrix warp` and their demo sheets: the
// whole-image moves and the warped quad on PNG pictures.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "Command.h"
#include "Ombrix.h"
#include "PngIO.h"

namespace ombrix_tool {
namespace {

// The tool's pictures: BGRA_4444_8u, bottom-up, tight rows.
struct Frame {
  int fWidth = 0, fHeight = 0;
  std::vector<uint8_t> fPixels;
  int32_t RowBytes() const { return fWidth * 4; }
  uint8_t* Row(int y) { return fPixels.data() + size_t(y) * size_t(RowBytes()); }
  // Row 0 of the picture (its top) and the row bytes that walk down the picture.
  uint8_t* Top() { return Row(fHeight - 1); }
  int32_t Down() const { return -RowBytes(); }
};

Frame MakeFrame(int width, int height) { return Frame{width, height, std::vector<uint8_t>(size_t(width) * height * 4, 0)}; }

bool Load(const std::string& path, Frame& frame) {
  Image image;
  std::string error;
  if (!ReadPng(path, image, error) || image.fBitDepth != 8) {
    std::fprintf(stderr, "could not read %s as an 8-bit PNG: %s\n", path.c_str(), error.c_str());
    return false;
  }
  frame = MakeFrame(image.fWidth, image.fHeight);
  BGRA8BottomUpFromImage(image, frame.fPixels.data(), frame.RowBytes());
  return true;
}

bool Save(const std::string& path, const Frame& frame) {
  std::string error;
  if (!WritePng(path, ImageFromBGRA8BottomUp(frame.fPixels.data(), frame.fWidth, frame.fHeight, frame.fWidth * 4),
                error)) {
    std::fprintf(stderr, "could not write %s: %s\n", path.c_str(), error.c_str());
    return false;
  }
  std::printf("wrote %s (%dx%d)\n", path.c_str(), frame.fWidth, frame.fHeight);
  return true;
}

bool Check(OX_Result r, const char* what) {
  if (r != OX_Success) std::fprintf(stderr, "%s failed: %d\n", what, r);
  return r == OX_Success;
}

bool Rotate(const Frame& in, Frame& out, int degrees) {
  const bool quarter = degrees % 180 != 0;
  out = quarter ? MakeFrame(in.fHeight, in.fWidth) : MakeFrame(in.fWidth, in.fHeight);
  return Check(OX_RotateImage(in.fPixels.data(), in.RowBytes(), out.fPixels.data(), out.RowBytes(), in.fWidth,
                              in.fHeight, OX_PixelFormat_BGRA_4444_8u, degrees),
               "OX_RotateImage");
}

// Transposed through 16-byte float pixels when `asFloat`, else 4-byte ones.
bool Transpose(const Frame& in, Frame& out, bool asFloat) {
  out = MakeFrame(in.fHeight, in.fWidth);
  if (!asFloat)
    return Check(OX_Transpose(in.fPixels.data(), in.RowBytes(), out.fPixels.data(), out.RowBytes(), in.fWidth,
                              in.fHeight, 4),
                 "OX_Transpose");
  std::vector<uint8_t> a(size_t(in.fWidth) * in.fHeight * 16), b(a.size());
  return Check(OX_Convert(in.fPixels.data(), in.RowBytes(), OX_PixelFormat_BGRA_4444_8u, a.data(), in.fWidth * 16,
                          OX_PixelFormat_BGRA_4444_32f, in.fWidth, in.fHeight, 3),
               "OX_Convert") &&
         Check(OX_Transpose(a.data(), in.fWidth * 16, b.data(), in.fHeight * 16, in.fWidth, in.fHeight, 16),
               "OX_Transpose") &&
         Check(OX_Convert(b.data(), in.fHeight * 16, OX_PixelFormat_BGRA_4444_32f, out.fPixels.data(), out.RowBytes(),
                          OX_PixelFormat_BGRA_4444_8u, out.fWidth, out.fHeight, 3),
               "OX_Convert");
}

struct WarpSettings {
  std::vector<double> fTo, fFrom;  // corners, picture terms (top-left origin, y down)
  int fQuality = 4;
  uint32_t fOpacity = 255;
  bool fOver = true, fMultiplyAlpha = false, fDirect = false, fSourceIsFrame = false;
  int fFieldMode = 0;
  float fFeather = 0;
  std::string fFormat = "BGRA";
};

// Draws `in` into `out` (both bottom-up BGRA) through the quads, walking both from their top row
// so that corners are in picture terms. VUYA draws go through the card in VUYA_4444_8u.
bool Warp(Frame& in, Frame& out, const WarpSettings& s) {
  const int32_t sourceRect[4] = {0, 0, in.fWidth, in.fHeight};
  const int32_t destRect[4] = {0, 0, out.fWidth, out.fHeight};
  std::vector<double> from = s.fFrom;
  if (from.empty()) from = {0, 0, double(in.fWidth), 0, double(in.fWidth), double(in.fHeight), 0, double(in.fHeight)};
  const bool yuv = s.fFormat == "VUYA";
  const OX_PixelFormat format = yuv ? OX_PixelFormat_VUYA_4444_8u : OX_PixelFormat_BGRA_4444_8u;
  Frame src = in, dst = out;
  if (yuv) {
    // VUYA is top-down: convert into it, and the walk from the top is the plain one.
    auto toYUV = [](Frame& f) {
      std::vector<uint8_t> y(f.fPixels.size());
      OX_Convert(f.fPixels.data(), f.RowBytes(), OX_PixelFormat_BGRA_4444_8u, y.data(), f.RowBytes(),
                 OX_PixelFormat_VUYA_4444_8u, f.fWidth, f.fHeight, 3);
      f.fPixels.swap(y);
    };
    toYUV(src);
    toYUV(dst);
  }
  uint8_t* srcTop = yuv ? src.Row(0) : src.Top();
  uint8_t* dstTop = yuv ? dst.Row(0) : dst.Top();
  const int32_t srcDown = yuv ? src.RowBytes() : src.Down(), dstDown = yuv ? dst.RowBytes() : dst.Down();
  if (!Check(OX_WarpAffineQuad(0, 0, srcTop, srcDown, sourceRect, from.data(), dstTop, dstDown, destRect, s.fTo.data(),
                               s.fQuality, s.fOpacity, s.fOver, s.fMultiplyAlpha, format, s.fFieldMode,
                               s.fSourceIsFrame, s.fDirect, s.fFeather),
             "OX_WarpAffineQuad"))
    return false;
  if (yuv) {
    return Check(OX_Convert(dst.fPixels.data(), dst.RowBytes(), OX_PixelFormat_VUYA_4444_8u, out.fPixels.data(),
                            out.RowBytes(), OX_PixelFormat_BGRA_4444_8u, out.fWidth, out.fHeight, 3),
                 "OX_Convert");
  }
  out = dst;
  return true;
}

// Copies `tile` into `sheet` with its top-left corner at picture position (x, y).
void Place(Frame& sheet, const Frame& tile, int x, int y) {
  for (int row = 0; row < tile.fHeight; ++row) {
    const int sheetRow = sheet.fHeight - 1 - (y + row);
    std::memcpy(sheet.Row(sheetRow) + size_t(x) * 4, tile.fPixels.data() + size_t(tile.fHeight - 1 - row) * tile.RowBytes(),
                size_t(tile.RowBytes()));
  }
}

std::vector<double> TiltedQuad(int width, int height, double degrees, double scale) {
  const double c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
  const double hw = width * scale / 2, hh = height * scale / 2, cx = width / 2.0, cy = height / 2.0;
  const double corners[4][2] = {{-hw, -hh}, {hw, -hh}, {hw, hh}, {-hw, hh}};
  std::vector<double> q;
  for (auto& p : corners) {
    q.push_back(cx + p[0] * c - p[1] * s);
    q.push_back(cy + p[0] * s + p[1] * c);
  }
  return q;
}

CommandRegistrar gRotate([](CLI::App& app) {
  auto* cmd = app.add_subcommand("rotate", "Turn a picture by a multiple of 90 degrees (OX_RotateImage)");
  auto* in = new std::string, *out = new std::string;
  auto* degrees = new int(90);
  cmd->add_option("IN", *in, "PNG picture")->required();
  cmd->add_option("OUT", *out, "PNG picture")->required();
  cmd->add_option("--degrees", *degrees,
                  "90, 180 or 270 (or -270, -180, -90). The tool's buffers are bottom-up, so on screen 90 turns "
                  "the picture counter-clockwise and 270 clockwise")
      ->capture_default_str();
  cmd->callback([=] {
    Frame a, b;
    if (!Load(*in, a) || !Rotate(a, b, *degrees) || !Save(*out, b)) throw CLI::RuntimeError(1);
  });
});

CommandRegistrar gFlip([](CLI::App& app) {
  auto* cmd = app.add_subcommand("flip", "Turn a picture upside down in place (OX_FlipInPlace)");
  auto* in = new std::string, *out = new std::string;
  cmd->add_option("IN", *in, "PNG picture")->required();
  cmd->add_option("OUT", *out, "PNG picture")->required();
  cmd->callback([=] {
    Frame a;
    if (!Load(*in, a) ||
        !Check(OX_FlipInPlace(a.fPixels.data(), a.RowBytes(), a.fWidth, a.fHeight, OX_PixelFormat_BGRA_4444_8u),
               "OX_FlipInPlace") ||
        !Save(*out, a))
      throw CLI::RuntimeError(1);
  });
});

CommandRegistrar gTranspose([](CLI::App& app) {
  auto* cmd = app.add_subcommand("transpose", "Swap rows and columns (OX_Transpose)");
  auto* in = new std::string, *out = new std::string;
  auto* asFloat = new bool(false);
  cmd->add_option("IN", *in, "PNG picture")->required();
  cmd->add_option("OUT", *out, "PNG picture")->required();
  cmd->add_flag("--float", *asFloat, "Move 16-byte BGRA_4444_32f pixels instead of 4-byte ones");
  cmd->callback([=] {
    Frame a, b;
    if (!Load(*in, a) || !Transpose(a, b, *asFloat) || !Save(*out, b)) throw CLI::RuntimeError(1);
  });
});

bool ParseList(const std::string& text, size_t count, std::vector<double>& out) {
  out.clear();
  std::stringstream ss(text);
  std::string item;
  while (std::getline(ss, item, ',')) out.push_back(std::atof(item.c_str()));
  return out.size() == count;
}

CommandRegistrar gWarp([](CLI::App& app) {
  auto* cmd = app.add_subcommand("warp", "Draw a picture into a four-sided area (OX_WarpAffineQuad)");
  auto* in = new std::string, *out = new std::string, *to = new std::string, *from = new std::string,
       *over = new std::string, *size = new std::string;
  auto* s = new WarpSettings;
  cmd->add_option("IN", *in, "PNG picture")->required();
  cmd->add_option("OUT", *out, "PNG picture")->required();
  cmd->add_option("--to", *to, "Destination corners x0,y0,x1,y1,x2,y2,x3,y3 in pixels, top-left origin, y down")
      ->required();
  cmd->add_option("--from", *from, "Source corners, same terms (default: the whole picture)");
  cmd->add_option("--background", *over, "PNG to draw over (default: transparent black of --size)");
  cmd->add_option("--size", *size, "Output WxH when no background is given (default: the input's size)");
  cmd->add_option("--quality", s->fQuality, "Below 3 nearest pixel, 3 and above bilinear")->capture_default_str();
  cmd->add_option("--opacity", s->fOpacity, "0-255")->capture_default_str();
  cmd->add_option("--feather", s->fFeather, "Soft edge width in pixels")->capture_default_str();
  cmd->add_option("--field-mode", s->fFieldMode, "0 all rows, 1 even rows, 2 odd rows")->capture_default_str();
  cmd->add_flag("--source-is-frame", s->fSourceIsFrame, "With a field mode, read the source as a whole frame");
  cmd->add_flag("--replace", [s](int64_t) { s->fOver = false; }, "Replace the pixels instead of blending over them");
  cmd->add_flag("--multiply-alpha", s->fMultiplyAlpha, "With --replace, keep the source alpha");
  cmd->add_flag("--direct", s->fDirect, "Mix by the corners' alpha only (bilinear) or copy pixels (nearest)");
  cmd->add_option("--format", s->fFormat, "BGRA or VUYA: the pixel format the warp works in")->capture_default_str();
  cmd->callback([=] {
    Frame a, b;
    if (!ParseList(*to, 8, s->fTo)) throw CLI::ValidationError("--to", "needs eight numbers");
    if (!from->empty() && !ParseList(*from, 8, s->fFrom)) throw CLI::ValidationError("--from", "needs eight numbers");
    if (!Load(*in, a)) throw CLI::RuntimeError(1);
    if (!over->empty()) {
      if (!Load(*over, b)) throw CLI::RuntimeError(1);
    } else {
      int w = a.fWidth, h = a.fHeight;
      if (!size->empty() && std::sscanf(size->c_str(), "%dx%d", &w, &h) != 2)
        throw CLI::ValidationError("--size", "WxH");
      b = MakeFrame(w, h);
    }
    if (!Warp(a, b, *s) || !Save(*out, b)) throw CLI::RuntimeError(1);
  });
});

// The card at 480x270 in its four turns, flipped and transposed.
DemoStepRegistrar gMovesStep(60, "Whole-image moves: four turns, a flip and a transpose", [](DemoContext& ctx) {
  Frame card = MakeFrame(ctx.fWidth, ctx.fHeight), small = MakeFrame(480, 270);
  card.fPixels = ctx.fCard;
  // The small card comes from a warp of the whole card onto 480x270 (bilinear, replacing).
  WarpSettings shrink;
  shrink.fTo = {0, 0, 480, 0, 480, 270, 0, 270};
  shrink.fOver = false;
  shrink.fMultiplyAlpha = true;
  if (!Warp(card, small, shrink)) return false;
  // Top row: 0, 90, 180 and 270 degrees; bottom row: flipped, then transposed.
  Frame sheet = MakeFrame(10 + (480 + 10 + 270 + 10) * 2, 10 + 480 + 10 + 480 + 10);
  std::fill(sheet.fPixels.begin(), sheet.fPixels.end(), uint8_t(40));
  int x = 10;
  for (int degrees : {0, 90, 180, 270}) {
    Frame turned = small;
    if (degrees && !Rotate(small, turned, degrees)) return false;
    Place(sheet, turned, x, 10);
    x += turned.fWidth + 10;
  }
  Frame flipped = small, transposed;
  if (!Check(OX_FlipInPlace(flipped.fPixels.data(), flipped.RowBytes(), 480, 270, OX_PixelFormat_BGRA_4444_8u),
             "OX_FlipInPlace") ||
      !Transpose(small, transposed, true))
    return false;
  Place(sheet, flipped, 10, 500);
  Place(sheet, transposed, 500, 500);
  return Save(ctx.fOutputDirectory + "/moves.png", sheet);
});

// The card in a quad turned by 12 degrees with a 24-pixel feather, beside the same quad at nearest quality.
DemoStepRegistrar gWarpStep(61, "Warped quad: feathered bilinear beside nearest", [](DemoContext& ctx) {
  Frame card = MakeFrame(ctx.fWidth, ctx.fHeight);
  card.fPixels = ctx.fCard;
  Frame sheet = MakeFrame(ctx.fWidth, ctx.fHeight / 2);
  for (size_t i = 0; i < sheet.fPixels.size(); i += 4) {
    sheet.fPixels[i] = 90, sheet.fPixels[i + 1] = 60, sheet.fPixels[i + 2] = 30, sheet.fPixels[i + 3] = 255;
  }
  const int half = ctx.fWidth / 2;
  for (int side = 0; side < 2; ++side) {
    WarpSettings s;
    s.fTo = TiltedQuad(half, ctx.fHeight / 2, 12, 0.7);
    for (size_t i = 0; i < 8; i += 2) s.fTo[i] += side * half;
    s.fQuality = side == 0 ? 4 : 1;
    s.fFeather = side == 0 ? 24.0f : 0.0f;
    if (!Warp(card, sheet, s)) return false;
  }
  return Save(ctx.fOutputDirectory + "/warp.png", sheet);
});

}  // namespace
}  // namespace ombrix_tool
