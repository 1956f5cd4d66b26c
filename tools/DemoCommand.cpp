// `ombrix demo`: draws the test card and runs every registered demo step on it.
#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "Command.h"
#include "PngIO.h"
#include "TestCard.h"

namespace ombrix_tool {
namespace {

int RunDemo(const std::string& outDir, int frame) {
  DemoContext ctx;
  ctx.fOutputDirectory = outDir;
  ctx.fFrameNumber = frame;
  std::filesystem::create_directories(outDir);
  ctx.fCard = DrawTestCard(ctx.fWidth, ctx.fHeight);
  std::printf("Drew the %dx%d test card (colour bars, ramps, alpha strip, zone plate).\n", ctx.fWidth, ctx.fHeight);
  auto steps = DemoSteps();
  std::stable_sort(steps.begin(), steps.end(), [](auto& a, auto& b) { return a.fOrder < b.fOrder; });
  int failed = 0;
  for (auto& step : steps) {
    std::printf("\n== %s ==\n", step.fName.c_str());
    if (!step.fStep(ctx)) {
      std::printf("FAILED: %s\n", step.fName.c_str());
      ++failed;
    }
  }
  std::printf("\nDemo finished: %zu steps, %d failed. Output in %s\n", steps.size(), failed, outDir.c_str());
  return failed ? 1 : 0;
}

DemoStepRegistrar gCardStep(0, "Write the test card", [](DemoContext& ctx) {
  Image img = ImageFromBGRA8BottomUp(ctx.fCard.data(), ctx.fWidth, ctx.fHeight, ctx.fWidth * 4);
  std::string err, path = ctx.fOutputDirectory + "/testcard.png";
  if (!WritePng(path, img, err)) {
    std::printf("could not write %s: %s\n", path.c_str(), err.c_str());
    return false;
  }
  std::printf("wrote %s\n", path.c_str());
  return true;
});

CommandRegistrar gDemo([](CLI::App& app) {
  auto* cmd = app.add_subcommand("demo", "Run the library's capabilities on a built-in test picture");
  auto* out = new std::string("ombrix-demo");
  auto* frame = new int(1);
  cmd->add_option("-o,--output", *out, "Output directory")->capture_default_str();
  cmd->add_option("--frame", *frame, "Frame number stamped on the picture")->capture_default_str();
  cmd->callback([out, frame] {
    int rc = RunDemo(*out, *frame);
    if (rc) throw CLI::RuntimeError(rc);
  });
});

}  // namespace
}  // namespace ombrix_tool
