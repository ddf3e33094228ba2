#!/bin/sh
# Accepts new golden images on purpose: copies <build>/golden/<name>.out.png,
# written by a test whose rendering differed from its golden image, over
# tests/data/golden/<name>.png. Look at the .out.png and .diff.png first.
#
#   scripts/accept-golden.sh [build-dir] [name ...]
#
# Without names every .out.png of the build directory is accepted.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-"$root/build"}
[ $# -gt 0 ] && shift
out_dir="$build/golden"
gold_dir="$root/tests/data/golden"
mkdir -p "$gold_dir"
if [ $# -eq 0 ]; then
  set -- $(cd "$out_dir" 2>/dev/null && ls *.out.png 2>/dev/null | sed 's/\.out\.png$//')
fi
if [ $# -eq 0 ]; then
  echo "no .out.png files in $out_dir" >&2
  exit 1
fi
for name in "$@"; do
  src="$out_dir/$name.out.png"
  if [ ! -f "$src" ]; then
    echo "missing $src" >&2
    exit 1
  fi
  cp "$src" "$gold_dir/$name.png"
  rm -f "$src" "$out_dir/$name.diff.png"
  echo "accepted $name"
done
