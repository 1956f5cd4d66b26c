// The `ombrix dv` group of subcommands, shared by the files that add DV commands to it.
#pragma once

#include <CLI/CLI.hpp>

namespace ombrix_tool {

// The `dv` subcommand of `app`, added on first use.
CLI::App& DVGroup(CLI::App& app);

}  // namespace ombrix_tool
