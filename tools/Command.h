// The tool's subcommands register themselves here, each from its own file, and so do the steps
// of the demo, which later capabilities extend.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace ombrix_tool {

using CommandSetup = std::function<void(CLI::App& app)>;
struct CommandRegistrar {
  explicit CommandRegistrar(CommandSetup setup);
};
std::vector<CommandSetup>& Commands();

// What the demo steps share: the test card and where to write.
struct DemoContext {
  std::string fOutputDirectory;
  int fWidth = 1920;
  int fHeight = 1080;
  std::vector<unsigned char> fCard;  // BGRA_4444_8u, bottom-up, tight rows
  int fFrameNumber = 0;
};
using DemoStep = std::function<bool(DemoContext& context)>;
struct DemoStepRegistrar {
  // Steps run in increasing `order`; a step that returns false fails the demo.
  DemoStepRegistrar(int order, std::string name, DemoStep step);
};
struct NamedDemoStep {
  int fOrder;
  std::string fName;
  DemoStep fStep;
};
std::vector<NamedDemoStep>& DemoSteps();

}  // namespace ombrix_tool
