#!/usr/bin/env bash
# fuzz.sh SECONDS: builds the DV decode fuzz target with clang (AddressSanitizer,
# UndefinedBehaviorSanitizer, libFuzzer) in build-fuzz and runs it for SECONDS per format family.
set -euo pipefail
seconds=${1:-20}
root=$(cd "$(dirname "$0")/.." && pwd)
dir="$root/build-fuzz"
CC=clang CXX=clang++ cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1 -DOMBRIX_FUZZ=ON \
  -DOMBRIX_SANITIZE=ON -DOMBRIX_BENCH=OFF -DOMBRIX_TOOLS=OFF \
  -DCMAKE_CXX_FLAGS="-fsanitize=fuzzer-no-link" >/dev/null
cmake --build "$dir" -j"$(nproc)" --target dv_decode_fuzz
mkdir -p "$dir/corpus"
for family in dv25 dv50 dv100; do
  echo "== fuzzing $family for $seconds s =="
  mkdir -p "$dir/corpus/$family" "$dir/artifacts"
  OMBRIX_FUZZ_FAMILY=$family UBSAN_OPTIONS=halt_on_error=1 ASAN_OPTIONS=detect_leaks=1 \
    "$dir/tests/fuzz/dv_decode_fuzz" -max_total_time="$seconds" -max_len=65536 -len_control=0 -timeout=30 \
    -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix="$dir/artifacts/$family-" "$dir/corpus/$family"
done
