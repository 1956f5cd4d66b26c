// `ombrix info`: version, processor flags, cache, and the format table.
#include <cstdio>

#include "Command.h"
#include "Ombrix.h"
#include "frame/Globals.h"
#include "frame/Lifecycle.h"
#include "frame/PixelFormat.h"

namespace ombrix_tool {
namespace {

void PrintInfo() {
  using namespace OX;
  std::printf("Ombrix %s\n\n", "0.1.0");
  std::printf("Processor flags: SSE %d  SSE2 %d  SSE3 %d  SSSE3 %d  SSE4.1 %d  SSE4.2 %d  AVX %d  AVX2 %d\n",
              gHasSSE, gHasSSE2, gHasSSE3, gHasSSSE3, gHasSSE41, gHasSSE42, gHasAVX, gHasAVX2);
  const char* top = gHasAVX2 ? "AVX2" : gHasAVX ? "AVX" : gHasSSE41 ? "SSE4.1" : gHasSSSE3 ? "SSSE3"
                    : gHasSSE2 ? "SSE2" : "portable";
  std::printf("Kernel level in use: %s (each family takes the highest it has at or below this)\n", top);
  std::printf("Cache: level %u, %u bytes (copy streams from %u bytes)\n\n", gCacheLevel, OX_GetCacheBytes(),
              OX_GetCacheBytes() / 2);
  std::printf("%-36s %-10s %-6s %-7s %s\n", "format", "code", "bytes", "origin", "row bytes at 1920");
  for (const FormatNameRecord& r : kFormatNameTable) {
    if (r.fCode == 0) continue;
    const bool raw = IsRawFormat(r.fCode);
    const int bpp = raw ? (SubsamplingOf(r.fCode) ? TightRowBytes(r.fCode, 2) / 2 : TightRowBytes(r.fCode, 1)) : 0;
    std::printf("%-36s 0x%-8X %-6d %-7s %d\n", r.fName, r.fCode, bpp,
                OX_IsOriginTopLeft(r.fCode) ? "top" : "bottom",
                raw ? PaddedRowBytes(r.fCode, 1920) : OX_PixelFormatSize(r.fCode, 1920, 1080));
  }
  std::printf("%-36s 0x%-8X %-6d %-7s %d\n", "RGB_444_10u", 0x40u, 4, OX_IsOriginTopLeft(0x40) ? "top" : "bottom",
              PaddedRowBytes(0x40, 1920));
  std::printf("\n(container formats show their frame or planar size at 1920x1080 in the last column)\n");
}

CommandRegistrar gInfo([](CLI::App& app) {
  auto* cmd = app.add_subcommand("info", "Print the version, processor flags, cache and format table");
  cmd->callback(PrintInfo);
});

}  // namespace
}  // namespace ombrix_tool
