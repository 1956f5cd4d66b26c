// ombrix: the command-line face of the library. Subcommands live in their own files.
#include <algorithm>
#include <cstdio>

#include "Command.h"
#include "Ombrix.h"

namespace ombrix_tool {

std::vector<CommandSetup>& Commands() {
  static std::vector<CommandSetup> commands;
  return commands;
}
CommandRegistrar::CommandRegistrar(CommandSetup setup) { Commands().push_back(std::move(setup)); }

std::vector<NamedDemoStep>& DemoSteps() {
  static std::vector<NamedDemoStep> steps;
  return steps;
}
DemoStepRegistrar::DemoStepRegistrar(int order, std::string name, DemoStep step) {
  DemoSteps().push_back({order, std::move(name), std::move(step)});
}

}  // namespace ombrix_tool

int main(int argc, char** argv) {
  CLI::App app{"ombrix: pixel conversion, compositing and DV for video engines"};
  app.require_subcommand(1);
  bool noAVX = false;
  app.add_flag("--no-avx", noAVX, "Run without the AVX and AVX2 kernels");
  for (auto& setup : ombrix_tool::Commands()) setup(app);
  // The host's part of start-up: AVX is only used when the host enables it.
  app.parse_complete_callback([&] {
    __builtin_cpu_init();
    if (!noAVX && __builtin_cpu_supports("avx")) OX_SetDebugFlag(8, 1);
    if (!noAVX && __builtin_cpu_supports("avx2")) OX_SetDebugFlag(9, 1);
    OX_Initialize();
  });
  int rc = 0;
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    rc = app.exit(e);
  }
  OX_Terminate();
  return rc;
}
