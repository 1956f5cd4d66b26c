// `ombrix dv encode`, `ombrix dv merge` and the DV encoding round of the demo: pictures into DV
// streams that players accept, with a per-frame PSNR of the decode against the source.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Command.h"
#include "DVCommandGroup.h"
#include "Ombrix.h"
#include "PngIO.h"
#include "dv/DVFrame.h"

namespace ombrix_tool {
namespace {

struct DVTarget {
  const char* name;
  OX_PixelFormat format;
  bool dvcpro;  // 4:1:1 PAL through the DVCPRO export
};
const DVTarget kTargets[] = {
    {"NTSCDV25", OX_PixelFormat_NTSCDV25, false},
    {"PALDV25", OX_PixelFormat_PALDV25, false},
    {"PALDVCPRO", OX_PixelFormat_PALDV25, true},
    {"NTSCDV50", OX_PixelFormat_NTSCDV50, false},
    {"PALDV50", OX_PixelFormat_PALDV50, false},
    {"NTSC_DV100_720p", OX_PixelFormat_NTSC_DV100_720p, false},
    {"PAL_DV100_720p", OX_PixelFormat_PAL_DV100_720p, false},
    {"NTSC_DV100_1080i", OX_PixelFormat_NTSC_DV100_1080i, false},
    {"PAL_DV100_1080i", OX_PixelFormat_PAL_DV100_1080i, false},
};

const DVTarget* FindTarget(const std::string& name) {
  for (const DVTarget& t : kTargets)
    if (name == t.name) return &t;
  return nullptr;
}

std::string TargetNames() {
  std::string s;
  for (const DVTarget& t : kTargets) s += std::string(s.empty() ? "" : ", ") + t.name;
  return s;
}

// A bottom-up BGRA_4444_8u picture with tight rows.
struct Frame {
  int width = 0, height = 0;
  std::vector<uint8_t> bgra;
};

// Box-filtered resize of a bottom-up BGRA picture (the tool's own, to fit a frame size).
Frame Resize(const Frame& in, int width, int height) {
  if (in.width == width && in.height == height) return in;
  Frame out{width, height, std::vector<uint8_t>(size_t(width) * height * 4)};
  for (int y = 0; y < height; ++y) {
    const int y0 = y * in.height / height, y1 = std::max(y0 + 1, (y + 1) * in.height / height);
    for (int x = 0; x < width; ++x) {
      const int x0 = x * in.width / width, x1 = std::max(x0 + 1, (x + 1) * in.width / width);
      for (int c = 0; c < 4; ++c) {
        int sum = 0;
        for (int sy = y0; sy < y1; ++sy)
          for (int sx = x0; sx < x1; ++sx) sum += in.bgra[(size_t(sy) * in.width + sx) * 4 + c];
        const int n = (y1 - y0) * (x1 - x0);
        out.bgra[(size_t(y) * width + x) * 4 + c] = uint8_t((sum + n / 2) / n);
      }
    }
  }
  return out;
}

OX_Result EncodeFrame(const DVTarget& t, const Frame& f, std::vector<uint8_t>& dv) {
  const int32_t bytes = OX_PixelFormatSize(t.format, 0, 0);
  dv.assign(size_t(bytes), 0);
  if (t.dvcpro)
    return OX_CompressDVCPROPAL25(f.bgra.data(), f.width * 4, OX_PixelFormat_BGRA_4444_8u, f.width, f.height,
                                  dv.data(), bytes, t.format, 4);
  return OX_Convert(f.bgra.data(), f.width * 4, OX_PixelFormat_BGRA_4444_8u, dv.data(), bytes, t.format, f.width,
                    f.height, 4);
}

// The picture the encoders see: straight alpha composited over black.
Frame OverBlack(const Frame& in) {
  Frame out = in;
  for (size_t i = 0; i < out.bgra.size(); i += 4) {
    for (int c = 0; c < 3; ++c) out.bgra[i + c] = uint8_t((out.bgra[i + c] * out.bgra[i + 3] + 127) / 255);
    out.bgra[i + 3] = 255;
  }
  return out;
}

// PSNR over the colour channels of the frame decoded back to BGRA against the source over black.
double DecodedPSNR(const DVTarget& t, const std::vector<uint8_t>& dv, const Frame& picture, Frame* decoded) {
  const Frame source = OverBlack(picture);
  Frame back{source.width, source.height, std::vector<uint8_t>(source.bgra.size())};
  if (OX_Convert(dv.data(), int32_t(dv.size()), t.format, back.bgra.data(), source.width * 4,
                 OX_PixelFormat_BGRA_4444_8u, source.width, source.height, 4) != OX_Success)
    return -1;
  double sum = 0;
  for (size_t i = 0; i < back.bgra.size(); ++i) {
    if (i % 4 == 3) continue;
    const double d = double(back.bgra[i]) - source.bgra[i];
    sum += d * d;
  }
  if (decoded) *decoded = std::move(back);
  const double mse = sum / (double(source.bgra.size()) * 3 / 4);
  return mse == 0 ? 99.0 : 10 * std::log10(255.0 * 255.0 / mse);
}

bool ReadPngFrame(const std::string& path, Frame& out) {
  Image image;
  std::string error;
  if (!ReadPng(path, image, error) || image.fBitDepth != 8) {
    std::fprintf(stderr, "could not read %s as an 8-bit PNG: %s\n", path.c_str(), error.c_str());
    return false;
  }
  out.width = image.fWidth;
  out.height = image.fHeight;
  out.bgra.assign(size_t(out.width) * out.height * 4, 0);
  BGRA8BottomUpFromImage(image, out.bgra.data(), out.width * 4);
  return true;
}

void Progress(int done, int total) {
  const int width = 30, filled = total ? done * width / total : width;
  std::fprintf(stderr, "\r[%s%s] %d/%d", std::string(size_t(filled), '#').c_str(),
               std::string(size_t(width - filled), ' ').c_str(), done, total);
  if (done == total) std::fprintf(stderr, "\n");
}

struct EncodeOptions {
  std::vector<std::string> paths;  // inputs then the output
  std::string format = "NTSCDV25";
  bool psnr = false;
  bool fit = false;
  std::string rawSize;  // WxH of a raw BGRA stream
};

int RunEncode(const EncodeOptions& o) {
  const DVTarget* target = FindTarget(o.format);
  if (!target) {
    std::fprintf(stderr, "unknown DV format %s (one of %s)\n", o.format.c_str(), TargetNames().c_str());
    return 2;
  }
  if (o.paths.size() < 2) {
    std::fprintf(stderr, "give at least one input and the output .dv file\n");
    return 2;
  }
  const OX::dv::DVFormatInfo& info = *OX::dv::FindDVFormat(target->format);
  std::vector<std::string> inputs(o.paths.begin(), o.paths.end() - 1);
  std::ofstream out(o.paths.back(), std::ios::binary);
  if (!out) {
    std::fprintf(stderr, "cannot write %s\n", o.paths.back().c_str());
    return 1;
  }

  // Frames come from PNG files, or from one raw stream of bottom-up BGRA frames of --raw WxH.
  std::vector<Frame> frames;
  if (!o.rawSize.empty()) {
    int w = 0, h = 0;
    if (std::sscanf(o.rawSize.c_str(), "%dx%d", &w, &h) != 2 || w <= 0 || h <= 0) {
      std::fprintf(stderr, "--raw wants WxH\n");
      return 2;
    }
    std::ifstream in(inputs[0], std::ios::binary);
    std::vector<uint8_t> all((std::istreambuf_iterator<char>(in)), {});
    const size_t frameBytes = size_t(w) * h * 4;
    for (size_t at = 0; at + frameBytes <= all.size(); at += frameBytes)
      frames.push_back({w, h, std::vector<uint8_t>(all.begin() + long(at), all.begin() + long(at + frameBytes))});
  } else {
    for (const std::string& path : inputs) {
      Frame f;
      if (!ReadPngFrame(path, f)) return 1;
      frames.push_back(std::move(f));
    }
  }
  if (frames.empty()) {
    std::fprintf(stderr, "no frames to encode\n");
    return 1;
  }

  std::vector<double> psnrs;
  for (size_t i = 0; i < frames.size(); ++i) {
    Frame f = frames[i];
    const bool halfDV25 = info.fFamily == OX::dv::Family::kDV25 && f.width == info.fWidth / 2 &&
                          f.height == info.fHeight / 2;
    if ((f.width != info.fWidth || f.height != info.fHeight) && !halfDV25) {
      if (!o.fit) {
        std::fprintf(stderr, "\nframe %zu is %dx%d; %s takes %dx%d (use --fit to resize)\n", i, f.width, f.height,
                     target->name, info.fWidth, info.fHeight);
        return 1;
      }
      f = Resize(f, info.fWidth, info.fHeight);
    }
    std::vector<uint8_t> dv;
    const OX_Result r = EncodeFrame(*target, f, dv);
    if (r != OX_Success) {
      std::fprintf(stderr, "\nframe %zu: encode failed with %d\n", i, r);
      return 1;
    }
    out.write(reinterpret_cast<const char*>(dv.data()), std::streamsize(dv.size()));
    if (o.psnr && !halfDV25) psnrs.push_back(DecodedPSNR(*target, dv, f, nullptr));
    Progress(int(i + 1), int(frames.size()));
  }
  std::printf("wrote %zu %s frames to %s\n", frames.size(), target->name, o.paths.back().c_str());
  if (o.psnr && !psnrs.empty()) {
    for (size_t i = 0; i < psnrs.size(); ++i) std::printf("  frame %zu: %.2f dB\n", i, psnrs[i]);
    double sum = 0;
    for (double p : psnrs) sum += p;
    std::printf("PSNR min %.2f dB, mean %.2f dB, max %.2f dB\n", *std::min_element(psnrs.begin(), psnrs.end()),
                sum / double(psnrs.size()), *std::max_element(psnrs.begin(), psnrs.end()));
  }
  return 0;
}

int RunMerge(const std::vector<std::string>& paths, const std::string& format) {
  const DVTarget* target = FindTarget(format);
  if (!target || paths.size() != 3) {
    std::fprintf(stderr, "usage: ombrix dv merge FIRST.dv SECOND.dv OUT.dv --format FORMAT (%s)\n",
                 TargetNames().c_str());
    return 2;
  }
  auto read = [](const std::string& p) {
    std::ifstream in(p, std::ios::binary);
    return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)), {});
  };
  const std::vector<uint8_t> first = read(paths[0]), second = read(paths[1]);
  const size_t frameBytes = size_t(OX_PixelFormatSize(target->format, 0, 0));
  const size_t count = std::min(first.size(), second.size()) / frameBytes;
  std::ofstream out(paths[2], std::ios::binary);
  std::vector<uint8_t> merged(frameBytes);
  for (size_t i = 0; i < count; ++i) {
    const uint8_t* a = first.data() + i * frameBytes;
    const uint8_t* b = second.data() + i * frameBytes;
    const OX_Result r = OX::dv::FindDVFormat(target->format)->fFamily == OX::dv::Family::kDV25 && !target->dvcpro
                            ? OX_MergeDV(a, b, merged.data(), int32_t(frameBytes), 4)
                            : OX_MergeDVCPRO(a, b, merged.data(), target->format, 4);
    if (r != OX_Success) {
      std::fprintf(stderr, "frame %zu: merge failed with %d\n", i, r);
      return 1;
    }
    out.write(reinterpret_cast<const char*>(merged.data()), std::streamsize(frameBytes));
    Progress(int(i + 1), int(count));
  }
  std::printf("merged %zu frame pairs into %s\n", count, paths[2].c_str());
  return 0;
}

CommandRegistrar gDVEncode([](CLI::App& app) {
  CLI::App& dv = DVGroup(app);
  auto* options = new EncodeOptions;
  auto* encode = dv.add_subcommand("encode", "Encode PNG pictures (or a raw BGRA stream) into a DV stream");
  encode->add_option("paths", options->paths, "IN... OUT.dv")->required();
  encode->add_option("--format", options->format, "DV format: " + TargetNames())->capture_default_str();
  encode->add_flag("--psnr", options->psnr, "Decode every frame back and report its PSNR");
  encode->add_flag("--fit", options->fit, "Resize pictures of another size to the frame size");
  encode->add_option("--raw", options->rawSize, "Read IN as bottom-up BGRA frames of WxH");
  encode->callback([options] {
    if (int rc = RunEncode(*options)) throw CLI::RuntimeError(rc);
  });

  auto* paths = new std::vector<std::string>;
  auto* format = new std::string("NTSCDV25");
  auto* merge = dv.add_subcommand("merge", "Weave two DV streams frame by frame, one field from each");
  merge->add_option("paths", *paths, "FIRST.dv SECOND.dv OUT.dv")->required();
  merge->add_option("--format", *format, "DV format of the streams")->capture_default_str();
  merge->callback([paths, format] {
    if (int rc = RunMerge(*paths, *format)) throw CLI::RuntimeError(rc);
  });
});

DemoStepRegistrar gDVEncodeStep(40, "Encode the test card in every DV format", [](DemoContext& ctx) {
  const Frame card{ctx.fWidth, ctx.fHeight, ctx.fCard};
  bool ok = true;
  for (const DVTarget& t : kTargets) {
    const OX::dv::DVFormatInfo& info = *OX::dv::FindDVFormat(t.format);
    const Frame picture = Resize(card, info.fWidth, info.fHeight);

    std::vector<uint8_t> dv;
    const OX_Result r = EncodeFrame(t, picture, dv);
    if (r != OX_Success) {
      std::printf("%-18s encode failed with %d\n", t.name, r);
      ok = false;
      continue;
    }
    Frame decoded;
    const double psnr = DecodedPSNR(t, dv, picture, &decoded);
    const std::string base = ctx.fOutputDirectory + "/card_" + t.name;
    std::ofstream(base + ".dv", std::ios::binary).write(reinterpret_cast<const char*>(dv.data()),
                                                       std::streamsize(dv.size()));
    std::string error;
    if (psnr >= 0)
      WritePng(base + ".png", ImageFromBGRA8BottomUp(decoded.bgra.data(), decoded.width, decoded.height,
                                                     decoded.width * 4),
               error);
    std::printf("%-18s %dx%d, %zu bytes, decoded back at %.2f dB (%s.dv)\n", t.name, info.fWidth, info.fHeight,
                dv.size(), psnr, base.c_str());
    ok = ok && psnr > 25;
  }
  return ok;
});

}  // namespace
}  // namespace ombrix_tool
