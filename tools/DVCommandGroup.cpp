// The `ombrix dv` group of subcommands.
#include "DVCommandGroup.h"

namespace ombrix_tool {

CLI::App& DVGroup(CLI::App& app) {
  for (CLI::App* sub : app.get_subcommands([](CLI::App* s) { return s->get_name() == "dv"; })) return *sub;
  CLI::App* dv = app.add_subcommand("dv", "DV frames: decode, inspect, encode, merge");
  dv->require_subcommand(1);
  return *dv;
}

}  // namespace ombrix_tool
