#!/usr/bin/env bash
# build.sh DIR [cmake options...]: configures and builds into DIR.
set -euo pipefail
dir=$1; shift
root=$(cd "$(dirname "$0")/.." && pwd)
cmake -S "$root" -B "$root/$dir" -DCMAKE_BUILD_TYPE=Release "$@" >/dev/null
cmake --build "$root/$dir" -j"$(nproc)"
