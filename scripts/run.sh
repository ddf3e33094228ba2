#!/usr/bin/env bash
# Sets up the machine, builds tessaline and runs its main job: the tessaline
# program analyses a few standard steel shapes (exact properties, plastic
# moduli, torsion and warping to a 1e-4 bound gap on J) and draws IPE300
# into out/IPE300.png and the torsion stresses of UPN200 into
# out/UPN200_torsion.png. Then the example programs: the host files a drawn
# plate into a surface and reports on it, and the picture examples draw a
# scene, a section's region, an editing session, a finite-element split and
# the torsion shear stress of two sections into out/.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build" -DTESSALINE_BUILD_TESTS=OFF -DTESSALINE_BUILD_BENCH=OFF
mkdir -p "$root/out"
tessaline="$root/build/tools/tessaline/tessaline"
"$tessaline" analyze IPE300 HEB200 UPN200 L100x100x10 RHS200x100x8 CHS168.3x8 W14X90 --gap 1e-4
"$tessaline" analyze IPE300 --gap 1e-4 --json >"$root/out/IPE300.json"
"$tessaline" draw IPE300 -o "$root/out/IPE300.png"
"$tessaline" draw UPN200 --stress torsion -o "$root/out/UPN200_torsion.png"
echo "the picture of IPE300 is $root/out/IPE300.png, its JSON $root/out/IPE300.json"
"$root/build/examples/example_host"
"$root/build/examples/scene_picture" "$root/out/scene.png"
"$root/build/examples/surface_picture" "$root/out/surface.png"
"$root/build/examples/editing_strip" "$root/out/editing.png"
"$root/build/examples/split_picture" "$root/out/split.png"
"$root/build/examples/torsion_picture" "$root/out/torsion.png" "$root/data/shapes"
