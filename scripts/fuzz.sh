#!/usr/bin/env bash
# Builds the libFuzzer target of the HTML, link and robots code with clang and the address and
# undefined-behaviour sanitizers, then runs it for a fixed number of inputs from the seed
# corpus in tests/fuzz/corpus. Exits non-zero when the fuzzer reports a crash, a sanitizer
# error, a leak or an unexpected exception.
#
#   scripts/fuzz.sh [build-dir]        build dir defaults to build/fuzz
#   FUZZ_RUNS=200000 FUZZ_MAX_LEN=4096 FUZZ_SEED=1 FUZZ_JOBS=2 override the run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-${FUZZ_BUILD_DIR:-$root/build/fuzz}}
runs=${FUZZ_RUNS:-200000}
max_len=${FUZZ_MAX_LEN:-4096}
seed=${FUZZ_SEED:-1}
jobs=${FUZZ_JOBS:-2}

generator=()
command -v ninja >/dev/null 2>&1 && generator=(-G Ninja)

# The compilers are fixed at the first configure of a build dir; it must be a clang one.
if [ -f "$build/CMakeCache.txt" ]; then
  if ! grep -q '^CMAKE_CXX_COMPILER:.*clang' "$build/CMakeCache.txt"; then
    echo "fuzz.sh: $build was configured with another compiler; use a fresh build dir" >&2
    exit 2
  fi
  cmake -S "$root" -B "$build" -DQUILLMERE_BUILD_FUZZERS=ON >/dev/null
else
  CC=clang CXX=clang++ cmake -S "$root" -B "$build" "${generator[@]}" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLMERE_BUILD_TESTS=ON -DQUILLMERE_BUILD_FUZZERS=ON >/dev/null
fi
cmake --build "$build" --target fuzz_html --parallel "$jobs" >/dev/null

fuzzer="$build/tests/fuzz/fuzz_html"
# The fuzzer writes new inputs into its corpus directory: work on a copy of the seeds.
corpus=$(mktemp -d)
trap 'rm -rf "$corpus"' EXIT
cp "$root"/tests/fuzz/corpus/* "$corpus"/

echo "fuzz_html: $runs runs, max_len $max_len, seed $seed"
log="$build/fuzz_html.log"
if ! "$fuzzer" -runs="$runs" -max_len="$max_len" -seed="$seed" -print_final_stats=1 \
  -artifact_prefix="$build/" "$corpus" >"$log" 2>&1; then
  tail -n 60 "$log" >&2
  echo "fuzz_html: FAILED (whole log in $log)" >&2
  exit 1
fi
grep -E '^stat::number_of_executed_units|^stat::peak_rss_mb' "$log" || true
echo "fuzz_html: no crash"
