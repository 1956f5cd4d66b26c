#!/usr/bin/env bash
# Installs the Debian packages the build, tests, tool and benchmarks need, when they are missing.
set -euo pipefail
packages=(build-essential cmake pkg-config git
  libtbb-dev libboost-dev libpng-dev libcli11-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libavcodec-dev libavutil-dev libswscale-dev libyuv-dev libdv4-dev ffmpeg
  libpixman-1-dev libopencv-imgproc-dev
  clang libclang-rt-14-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
