#!/usr/bin/env bash
# Installs the Debian packages tessaline needs to build, test and benchmark.
# Idempotent: installs only what is missing and says nothing when all is there.
set -euo pipefail

# The 32-bit build (scripts/test.sh) needs only multilib packages of this
# machine's own architecture: g++-multilib, 32-bit zlib for reading golden
# images, and GoogleTest compiled from the sources libgtest-dev ships.
packages=(
  g++ make cmake pkg-config ccache
  libgtest-dev libgmock-dev libbenchmark-dev
  libpng-dev
  libcli11-dev nlohmann-json3-dev
  libeigen3-dev

  clang libclang-rt-14-dev
  libcgal-dev libgmp-dev libmpfr-dev
  g++-multilib lib32z1-dev
  libdxflib-dev python3-ezdxf
  pybind11-dev python3-pybind11 python3-dev python3-numpy python3-pytest
  python3-dask python3-distributed
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
