#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ with clang (-fsanitize=fuzzer,
# address,undefined) and runs each for a number of executions, starting
# from its committed corpus and the fixture files in tests/data.
#   scripts/fuzz.sh [RUNS] [TARGET...]     targets: geometry library bitmap dxf
# Each target checks after every input that the blocks and graphics objects
# it made are gone. LeakSanitizer's own check after every input (libFuzzer's
# -detect_leaks) costs a hundred times the input itself here, so it is on
# for runs of up to 10^4 executions and off beyond; the sanitizers' checks
# at exit stay on.
# An input that runs over a minute counts as a hang and fails the run.
# New inputs found go to a scratch copy of the corpus; the committed corpus
# only changes when a run is merged into it on purpose (-merge=1).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
runs=${1:-100000}
shift || true
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(geometry library bitmap dxf)
dir=${TESSALINE_FUZZ_BUILD:-"$root/build-fuzz"}
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S "$root" -B "$dir" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DTESSALINE_BUILD_FUZZ=ON -DTESSALINE_SANITIZE=address,undefined -DTESSALINE_WITH_CGAL=OFF \
  -DTESSALINE_BUILD_TESTS=OFF -DTESSALINE_BUILD_BENCH=OFF -DTESSALINE_BUILD_EXAMPLES=OFF \
  "${launcher[@]}" >/dev/null
cmake --build "$dir" -j"$(nproc 2>/dev/null || echo 2)" \
  --target "${targets[@]/#/fuzz_}" 2>&1 | grep -E 'warning|error' || true

# Seeds below tests/data; the DXF fixtures (an independent writer's, with
# its full header) are up to 18 KB.
declare -A seeds=([geometry]=files/section.wgf [library]=files/compact.slb [bitmap]=files/preview.bmp
  [dxf]='dxf/*.dxf')
declare -A max_len=([geometry]=4096 [library]=8192 [bitmap]=6144 [dxf]=20480)
for t in "${targets[@]}"; do
  work=$(mktemp -d)
  cp "$root/fuzz/corpus/$t/"* "$work/" 2>/dev/null || true
  # shellcheck disable=SC2086 # the seed may be a pattern
  cp "$root"/tests/data/${seeds[$t]} "$work/"
  echo "== fuzz_$t: $runs runs"
  log=$(mktemp)
  status=0
  ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    "$dir/fuzz/fuzz_$t" -runs="$runs" -timeout=60 -detect_leaks=$([ "$runs" -le 10000 ] && echo 1 || echo 0) \
    -max_len="${max_len[$t]}" -print_final_stats=1 -artifact_prefix="$dir/" "$work" >"$log" 2>&1 ||
    status=$?
  grep -E '^(Done|stat::number_of_executed_units|stat::peak_rss_mb)|#[0-9]+.*DONE' "$log" || true
  if [ "$status" -ne 0 ]; then
    grep -E 'ERROR|SUMMARY|#[0-9]+ 0x' "$log" | head -30 >&2
    echo "fuzz_$t failed; the input is in $dir/" >&2
    rm -rf "$work"
    exit 1
  fi
  rm -rf "$work" "$log"
done
