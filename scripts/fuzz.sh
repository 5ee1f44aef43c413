#!/usr/bin/env bash
# Builds the libFuzzer targets of the parsers of network input (HTML, links, the web rules'
# link reader, robots.txt rules, percent-escapes and Mac OS Roman, response headers,
# redirect resolution, Retry-After) with clang and the address and undefined-behaviour
# sanitizers, then runs each for a fixed number of inputs from its seed corpus in
# tests/fuzz/corpus/<target>/, with a fixed seed (and tests/fuzz/dict/<target>.dict where
# there is one). Exits non-zero when a fuzzer reports a crash, a sanitizer error, a leak or
# an unexpected exception, naming the target and the file that reproduces it.
#
#   scripts/fuzz.sh [build-dir] [target...]   build dir defaults to build/fuzz; all targets
#   FUZZ_RUNS=100000 FUZZ_MAX_LEN=4096 FUZZ_SEED=1 FUZZ_JOBS=2 override the run.
#
# FUZZ_JOBS targets run side by side (and as many compile jobs build them).
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-${FUZZ_BUILD_DIR:-$root/build/fuzz}}
[ $# -gt 0 ] && shift
case "$build" in /*) ;; *) build="$PWD/$build" ;; esac
runs=${FUZZ_RUNS:-100000}
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

if [ $# -gt 0 ]; then
  targets=("$@")
else
  mapfile -t targets <"$build/tests/fuzz/fuzzers.txt"
fi
cmake --build "$build" --target "${targets[@]}" --parallel "$jobs" >/dev/null

# One target on a copy of its seeds (the fuzzer adds what it finds to its corpus directory).
# A finding leaves the reproducer as $build/fuzz-findings/<target>-crash-<sha1> (or leak-,
# timeout-, oom-).
run_one() {
  local target=$1
  local fuzzer="$build/tests/fuzz/$target"
  local seeds="$root/tests/fuzz/corpus/$target"
  local log="$build/$target.log"
  local findings="$build/fuzz-findings"
  local corpus
  corpus=$(mktemp -d)
  mkdir -p "$findings"
  [ -d "$seeds" ] && cp "$seeds"/* "$corpus"/
  # Targets whose parsing happens in uninstrumented Qt code get a dictionary of its tokens.
  local dict=()
  [ -f "$root/tests/fuzz/dict/$target.dict" ] && dict=(-dict="$root/tests/fuzz/dict/$target.dict")
  local start=$SECONDS status=0
  "$fuzzer" -runs="$runs" -max_len="$max_len" -seed="$seed" -print_final_stats=1 "${dict[@]}" \
    -artifact_prefix="$findings/$target-" "$corpus" >"$log" 2>&1 || status=$?
  rm -rf "$corpus"
  if [ "$status" != 0 ]; then
    tail -n 40 "$log" >&2
    # The broken invariant, as the target words it.
    grep -E "^$target: " "$log" >&2 || true
    local reproducer
    reproducer=$(sed -n 's/.*Test unit written to \(.*\)$/\1/p' "$log" | tail -n 1)
    echo "$target: FAILED; reproducer: ${reproducer:-none written}; rerun: $fuzzer ${reproducer:-}; whole log: $log" >&2
    return 1
  fi
  local executed
  executed=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  echo "$target: no finding ($executed inputs, $((SECONDS - start)) s)"
}

echo "fuzz: ${#targets[@]} targets, $runs runs each, max_len $max_len, seed $seed, $jobs at a time"
status=0
running=0
for target in "${targets[@]}"; do
  run_one "$target" &
  running=$((running + 1))
  if [ "$running" -ge "$jobs" ]; then
    wait -n || status=1
    running=$((running - 1))
  fi
done
while [ "$running" -gt 0 ]; do
  wait -n || status=1
  running=$((running - 1))
done
if [ "$status" != 0 ]; then
  echo "fuzz: FAILED (see the lines above)" >&2
  exit 1
fi
echo "fuzz: no finding"
