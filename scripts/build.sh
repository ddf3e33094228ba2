#!/usr/bin/env bash
# Configures and builds tessaline into a build folder; prints the compiler's
# output only when it has something to say (warnings, errors).
#   scripts/build.sh [BUILD_DIR] [extra cmake arguments...]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=${1:-"$root/build"}
shift || true
jobs=$(nproc 2>/dev/null || echo 2)
cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
if ! out=$(cmake --build "$dir" -j"$jobs" 2>&1); then
  echo "$out"
  echo "build failed in $dir" >&2
  exit 1
fi
echo "$out" | grep -E 'warning|error' || true
