#!/usr/bin/env bash
# Sets up the machine and runs every test: the suites in a normal build, the
# same suites built for 32-bit targets, the suites built with AddressSanitizer
# and UndefinedBehaviorSanitizer, and a host project built against the
# installed library with find_package.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
jobs=$(nproc 2>/dev/null || echo 2)
"$root/scripts/setup.sh"

echo "== build and test"
"$root/scripts/build.sh" "$root/build"
ctest --test-dir "$root/build" -j"$jobs" --output-on-failure --timeout 900

echo "== build and test for 32-bit targets (g++ -m32)"
# Optional dependencies without 32-bit packages here are left out (libpng,
# CGAL), and so are the command-line program and the Python module, whose
# libraries (dxflib, Python) have no 32-bit build here; the golden images
# are still compared, read with zlib. No sanitizers. Arithmetic goes through
# SSE2 as on 64 bits: the x87 unit's extended precision would round ties and
# section values differently.
ccache_launcher=()
if command -v ccache >/dev/null; then ccache_launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
"$root/scripts/build.sh" "$root/build-32" -DCMAKE_CXX_FLAGS="-m32 -msse2 -mfpmath=sse" \
  -DCMAKE_C_FLAGS="-m32 -msse2 -mfpmath=sse" \
  -DTESSALINE_WITH_PNG=OFF -DTESSALINE_WITH_CGAL=OFF -DTESSALINE_GTEST_SOURCE=/usr/src/googletest \
  -DTESSALINE_BUILD_BENCH=OFF -DTESSALINE_BUILD_EXAMPLES=OFF -DTESSALINE_BUILD_TOOLS=OFF \
  -DTESSALINE_PYTHON=OFF "${ccache_launcher[@]}" \
  --no-warn-unused-cli
ctest --test-dir "$root/build-32" -j"$jobs" --output-on-failure --timeout 900

echo "== Python module (Debian's /usr/bin/python3, whatever comes first on PATH)"
if [ -d "$root/build/python/tessaline" ]; then
  # pytest exits 5 when it collects no test: that is a failure here too.
  TESSALINE_BUILD_DIR="$root/build" /usr/bin/python3 -m pytest -q -p no:cacheprovider \
    "$root/tests/python"
else
  echo "the Python module is not built (TESSALINE_PYTHON off): skipped"
fi

echo "== build and test with AddressSanitizer and UndefinedBehaviorSanitizer"
"$root/scripts/build.sh" "$root/build-asan" -DCMAKE_BUILD_TYPE=Debug \
  -DTESSALINE_SANITIZE=address,undefined -DTESSALINE_BUILD_BENCH=OFF -DTESSALINE_BUILD_EXAMPLES=OFF \
  "${ccache_launcher[@]}" \
  -DTESSALINE_PYTHON=OFF
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir "$root/build-asan" -j"$jobs" --output-on-failure --timeout 1800

echo "== fuzz the file readers briefly (geometry, library, bitmap, dxf)"
if command -v clang++ >/dev/null; then
  "$root/scripts/fuzz.sh" 2000
else
  echo "clang++ not found: fuzzing left out"
fi

echo "== install and build a host against it"
rm -rf "$root/build/install" "$root/build/consumer"
cmake --install "$root/build" --prefix "$root/build/install" >/dev/null
cmake -S "$root/examples/consumer" -B "$root/build/consumer" \
  -DCMAKE_PREFIX_PATH="$root/build/install" >/dev/null
cmake --build "$root/build/consumer" -- --no-print-directory >/dev/null
LD_LIBRARY_PATH="$root/build/install/lib" "$root/build/consumer/consumer"

echo "== all tests passed"
