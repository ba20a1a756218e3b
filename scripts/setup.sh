#!/usr/bin/env bash
# Installs the Debian packages Tessel needs to build, test and run. Quiet when all are there.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config            # build
  libgdiplus libgtk-3-dev fonts-liberation    # platform: flat API, host control and dialogs, "Arial"
  python3-gi gir1.2-gtk-3.0                   # the host control from Python's GTK
  xvfb xauth xdotool                          # the on-screen tests: a display of their own, real input
  pybind11-dev python3-dev python3-pytest     # the Python module and its tests
  python3-numpy python3-pil                   # the tests of images shared in place with numpy and PIL
  libgtest-dev libgmock-dev libbenchmark-dev  # C++ tests and benchmarks
  clang libclang-rt-14-dev                    # the fuzz targets (libFuzzer)
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
