// `ombrix composite` and the blend-mode sheet of the demo: pictures layered with OX_Composite and
// OX_CompositeWithBlendMode, optionally through another pixel format.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Command.h"
#include "Ombrix.h"
#include "PngIO.h"
#include "composite/BlendModes.h"
#include "conversion/RouteTable.h"
#include "frame/PixelFormat.h"

namespace ombrix_tool {
namespace {

// A blend mode by number or by name ("Multiply", "multiply", "OX_BlendMode_Multiply"), or -1.
int ParseMode(std::string text) {
  if (!text.empty() && std::isdigit(static_cast<unsigned char>(text[0]))) return std::atoi(text.c_str());
  if (text.rfind("OX_BlendMode_", 0) == 0) text = text.substr(13);
  for (uint32_t m = 0; m < uint32_t(OX::kBlendModeCount); ++m) {
    std::string name = OX::BlendModeName(m);
    if (name.size() == text.size() &&
        std::equal(name.begin(), name.end(), text.begin(), [](char a, char b) { return std::tolower(a) == std::tolower(b); }))
      return int(m);
  }
  return -1;
}

struct Layer {
  OX_PixelFormat fFormat = OX_PixelFormat_BGRA_4444_8u;
  int fWidth = 0, fHeight = 0;
  int32_t fRowBytes = 0;
  std::vector<uint8_t> fBytes;
};

Layer Blank(OX_PixelFormat format, int width, int height) {
  Layer l;
  l.fFormat = format;
  l.fWidth = width;
  l.fHeight = height;
  l.fRowBytes = OX_PixelFormatSize(format, width, 1);
  l.fBytes.assign(size_t(std::max(OX_PixelFormatSize(format, width, height), 0)), 0);
  return l;
}

bool LoadLayer(const std::string& path, Layer& layer) {
  Image image;
  std::string error;
  if (!ReadPng(path, image, error) || image.fBitDepth != 8) {
    std::fprintf(stderr, "could not read %s as an 8-bit PNG: %s\n", path.c_str(), error.c_str());
    return false;
  }
  layer = Blank(OX_PixelFormat_BGRA_4444_8u, image.fWidth, image.fHeight);
  BGRA8BottomUpFromImage(image, layer.fBytes.data(), layer.fRowBytes);
  return true;
}

Layer Convert(const Layer& from, OX_PixelFormat to) {
  Layer l = Blank(to, from.fWidth, from.fHeight);
  OX_Convert(from.fBytes.data(), from.fRowBytes, from.fFormat, l.fBytes.data(), l.fRowBytes, to, from.fWidth,
             from.fHeight, 3);
  return l;
}

bool SaveLayer(const std::string& path, const Layer& layer) {
  const Layer bgra = layer.fFormat == OX_PixelFormat_BGRA_4444_8u ? layer : Convert(layer, OX_PixelFormat_BGRA_4444_8u);
  std::string error;
  if (!WritePng(path, ImageFromBGRA8BottomUp(bgra.fBytes.data(), bgra.fWidth, bgra.fHeight, bgra.fRowBytes), error)) {
    std::fprintf(stderr, "could not write %s: %s\n", path.c_str(), error.c_str());
    return false;
  }
  std::printf("wrote %s (%dx%d)\n", path.c_str(), bgra.fWidth, bgra.fHeight);
  return true;
}

// The formats the composite works in, as the driver derives them, for the road it prints.
std::string Road(const Layer& s, const Layer& b, OX_PixelFormat d, int mode, float opacity, bool keepLinear) {
  auto name = [](OX_PixelFormat f) { return std::string(OX::RouteFormatName(f)); };
  std::string road = name(s.fFormat) + " over " + name(b.fFormat) + " into " + name(d) + ": ";
  if (mode != OX_BlendMode_Normal) return road + "blend mode " + OX::BlendModeName(uint32_t(mode)) + " in BGRA_4444_32f";
  if (opacity < 8e-6f) return road + "opacity 0, the background converted";
  if (opacity + 8e-6f > 1.0f && OX::IsAlphaFree(s.fFormat)) return road + "opaque source at opacity 1, the source converted";
  OX_PixelFormat w;
  if (OX::SubsamplingOf(d) == OX::kSub422) {
    w = OX::DepthOf(d) ? OX_PixelFormat_VUYP_4444_32f : OX_PixelFormat_VUYP_4444_8u;
  } else {
    w = d & ~(OX::kOrderBit | OX::kSubsamplingMask);
    if (OX::DepthOf(d)) w = OX::WithDepth(w, OX::kDepth32f);
    if (OX::IsAlphaFree(d)) w = OX::WithAlpha(w, OX::kAlphaPremultiplied);
  }
  if (!keepLinear) w &= ~OX::kLinearBit;
  return road + "composited in " + name(w);
}

CommandRegistrar gComposite([](CLI::App& app) {
  auto* cmd = app.add_subcommand("composite", "Lay one picture over another (OX_Composite, OX_CompositeWithBlendMode)");
  auto* fg = new std::string, *bg = new std::string, *out = new std::string, *mode = new std::string("Normal"),
       *through = new std::string;
  auto* opacity = new float(1.0f);
  auto* keepLinear = new bool(false);
  cmd->add_option("FG", *fg, "PNG picture laid on top")->required();
  cmd->add_option("BG", *bg, "PNG picture underneath (same size)")->required();
  cmd->add_option("OUT", *out, "PNG picture")->required();
  cmd->add_option("--mode", *mode, "Blend mode by name (Multiply, Screen, ...) or number 0-26")->capture_default_str();
  cmd->add_option("--opacity", *opacity, "0 to 1")->capture_default_str();
  cmd->add_option("--through", *through, "Give the background and the result this format (e.g. UYVY_422_8u)");
  cmd->add_flag("--keep-linear", *keepLinear, "Composite in linear light when the formats are linear");
  cmd->callback([=] {
    const int m = ParseMode(*mode);
    if (m < 0 || m >= OX::kBlendModeCount) throw CLI::ValidationError("--mode", "unknown blend mode " + *mode);
    Layer s, b;
    if (!LoadLayer(*fg, s) || !LoadLayer(*bg, b)) throw CLI::RuntimeError(1);
    if (s.fWidth != b.fWidth || s.fHeight != b.fHeight) throw CLI::ValidationError("BG", "pictures differ in size");
    OX_PixelFormat format = OX_PixelFormat_BGRA_4444_8u;
    if (!through->empty()) {
      format = OX::RawFormatByName(*through);
      if (!format) throw CLI::ValidationError("--through", "unknown raw format " + *through);
      b = Convert(b, format);
    }
    Layer d = Blank(format, s.fWidth, s.fHeight);
    std::printf("%s\n", Road(s, b, format, m, *opacity, *keepLinear).c_str());
    const OX_Result r = OX_CompositeWithBlendMode(s.fBytes.data(), s.fRowBytes, s.fFormat, b.fBytes.data(), b.fRowBytes,
                                                  b.fFormat, d.fBytes.data(), d.fRowBytes, d.fFormat, s.fWidth,
                                                  s.fHeight, *opacity, OX_BlendMode(m), 3, *keepLinear);
    if (r != OX_Success) {
      std::fprintf(stderr, "composite failed: %d\n", r);
      throw CLI::RuntimeError(1);
    }
    if (!SaveLayer(*out, d)) throw CLI::RuntimeError(1);
  });
});

// A soft-edged colour wheel with an alpha ramp from left to right, BGRA_4444_8u bottom-up.
Layer ColourWheel(int size) {
  Layer l = Blank(OX_PixelFormat_BGRA_4444_8u, size, size);
  const double r0 = size * 0.45, c = size / 2.0;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const double dx = x + 0.5 - c, dy = y + 0.5 - c, r = std::sqrt(dx * dx + dy * dy);
      const double hue = (std::atan2(dy, dx) / (2 * M_PI) + 0.5) * 6.0;
      const double edge = std::clamp((r0 - r) / (size * 0.06), 0.0, 1.0);  // soft rim
      const double ramp = 0.25 + 0.75 * x / double(size - 1);
      double rgb[3];
      for (int k = 0; k < 3; ++k) {
        const double h = std::fmod(hue + 4.0 - 2.0 * k, 6.0);
        rgb[k] = std::clamp(std::fabs(h - 3.0) - 1.0, 0.0, 1.0);
      }
      uint8_t* p = l.fBytes.data() + size_t(y) * l.fRowBytes + 4 * size_t(x);
      p[0] = uint8_t(std::lround(rgb[2] * 255)), p[1] = uint8_t(std::lround(rgb[1] * 255));
      p[2] = uint8_t(std::lround(rgb[0] * 255)), p[3] = uint8_t(std::lround(edge * ramp * 255));
    }
  }
  return l;
}

DemoStepRegistrar gBlendSheet(50, "The 27 blend modes: a colour wheel over tiles of the card", [](DemoContext& ctx) {
  constexpr int kTile = 240, kColumns = 7, kRows = 4;
  Layer card = Blank(OX_PixelFormat_BGRA_4444_8u, ctx.fWidth, ctx.fHeight);
  card.fBytes = ctx.fCard;
  // A tile of the card: its middle, where bars, ramps and the zone plate meet.
  Layer tile = Blank(OX_PixelFormat_BGRA_4444_8u, kTile, kTile);
  for (int y = 0; y < kTile; ++y)
    std::memcpy(tile.fBytes.data() + size_t(y) * tile.fRowBytes,
                card.fBytes.data() + size_t(ctx.fHeight / 2 - kTile / 2 + y) * card.fRowBytes + 4 * size_t(ctx.fWidth / 2 - kTile / 2),
                size_t(kTile) * 4);
  const Layer wheel = ColourWheel(kTile);
  Layer sheet = Blank(OX_PixelFormat_BGRA_4444_8u, kTile * kColumns, kTile * kRows);
  for (auto& b : sheet.fBytes) b = 32;
  for (int mode = 0; mode < OX::kBlendModeCount; ++mode) {
    Layer out = Blank(OX_PixelFormat_BGRA_4444_8u, kTile, kTile);
    const OX_Result r = OX_CompositeWithBlendMode(wheel.fBytes.data(), wheel.fRowBytes, wheel.fFormat,
                                                  tile.fBytes.data(), tile.fRowBytes, tile.fFormat, out.fBytes.data(),
                                                  out.fRowBytes, out.fFormat, kTile, kTile, 1.0f, OX_BlendMode(mode), 3,
                                                  false);
    if (r != OX_Success ||
        OX_PrintNum(out.fBytes.data(), out.fRowBytes, out.fFormat, kTile, kTile, mode, 0.15f, 0.04f, 0.04f, true) != 0) {
      std::printf("mode %d failed: %d\n", mode, r);
      return false;
    }
    // Tiles run left to right from the sheet's top; the buffers are bottom-up.
    const int column = mode % kColumns, row = mode / kColumns;
    for (int y = 0; y < kTile; ++y)
      std::memcpy(sheet.fBytes.data() + size_t((kRows - 1 - row) * kTile + y) * sheet.fRowBytes + 4 * size_t(column * kTile),
                  out.fBytes.data() + size_t(y) * out.fRowBytes, size_t(kTile) * 4);
  }
  std::printf("modes 0-26 in reading order, numbered\n");
  return SaveLayer(ctx.fOutputDirectory + "/blend-modes.png", sheet);
});

}  // namespace
}  // namespace ombrix_tool
