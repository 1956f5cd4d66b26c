#!/usr/bin/env bash
# Installs what is needed, builds the tool and runs the demo on the built-in test picture.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" build -DOMBRIX_TESTS=OFF -DOMBRIX_BENCH=OFF -DOMBRIX_TOOLS=ON
"$root/build/tools/ombrix" demo -o "${1:-$root/ombrix-demo}"
