#!/usr/bin/env bash
# Installs what is needed, builds and runs the whole test suite, then again under
# AddressSanitizer and UndefinedBehaviorSanitizer, then a short fuzz run where clang is present.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
jobs=$(nproc)

echo "== Release build and tests =="
# Every option the run relies on is set here: a cache left by the demo (tests off) must not win.
"$root/scripts/build.sh" build -DOMBRIX_TESTS=ON -DOMBRIX_BENCH=ON -DOMBRIX_TOOLS=ON -DOMBRIX_SANITIZE=OFF
(cd "$root/build" && ctest --output-on-failure --no-tests=error -j"$jobs")

echo "== Sanitizer build and tests =="
# -O1 without debug info: half the compile time of an optimised build, and still fast to run.
"$root/scripts/build.sh" build-asan -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1 -DCMAKE_C_FLAGS_DEBUG=-O1 \
  -DOMBRIX_SANITIZE=ON -DOMBRIX_TESTS=ON \
  -DOMBRIX_BENCH=OFF -DOMBRIX_TOOLS=OFF
(cd "$root/build-asan" && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --output-on-failure --no-tests=error -j"$jobs" -E exported_symbols)

if [ -x "$root/scripts/fuzz.sh" ] && command -v clang++ >/dev/null; then
  echo "== Short fuzz run =="
  "$root/scripts/fuzz.sh" 20
fi
