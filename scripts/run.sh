#!/usr/bin/env bash
# Sets up the machine, builds tessaline and runs its main job on the bundled
# default data: the example host files a drawn plate into a surface and
# reports on it, and the two picture examples draw a scene and a section's
# region into out/scene.png and out/surface.png, and the split picture
# example draws a section's finite-element split into out/split.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build" -DTESSALINE_BUILD_TESTS=OFF -DTESSALINE_BUILD_BENCH=OFF
mkdir -p "$root/out"
"$root/build/examples/example_host"
"$root/build/examples/scene_picture" "$root/out/scene.png"
"$root/build/examples/surface_picture" "$root/out/surface.png"
"$root/build/examples/split_picture" "$root/out/split.png"
