#!/usr/bin/env bash
# Sets up the machine, builds tessaline and runs its main job on the bundled
# default data.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build" -DTESSALINE_BUILD_TESTS=OFF -DTESSALINE_BUILD_BENCH=OFF
"$root/build/examples/example_host"
