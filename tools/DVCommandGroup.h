// The shared `dv` subcommand group: each DV command file adds its subcommands under it.
#pragma once

#include <CLI/CLI.hpp>

namespace ombrix_tool {

// The existing "dv" subcommand of `app`, or a new one.
inline CLI::App& DVGroup(CLI::App& app) {
  for (CLI::App* sub : app.get_subcommands([](CLI::App* s) { return s->get_name() == "dv"; })) return *sub;
  CLI::App* dv = app.add_subcommand("dv", "Encode, decode and merge DV streams");
  dv->require_subcommand(1);
  return *dv;
}

}  // namespace ombrix_tool
