#!/usr/bin/env bash
# Installs what is missing (the desktop program's packages included) and runs every test, the
# desktop program's included, in two trees:
#   1. debug (debug trace on): the fuzz targets, then ctest;
#   2. optimised as for a release (NDEBUG, the debug trace compiled out) and built with
#      AddressSanitizer and UndefinedBehaviorSanitizer: ctest.
# `--release` runs the suite in a plain Release tree instead of the second one; `--quick`
# runs the first tree only. The desktop program's tests run headless
# (QT_QPA_PLATFORM=offscreen unless a platform is set).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
quick=0
release=0
for arg in "$@"; do
  case "$arg" in
    --quick) quick=1 ;;
    --release) release=1 ;;
    *) echo "run-tests.sh: unknown option $arg (--quick or --release)" >&2; exit 2 ;;
  esac
done
"$root/scripts/install-deps.sh" --gui
jobs="$(nproc)"
status=0

# ctest in a build tree; a failure is remembered, the other trees still run.
run_ctest() {
  local dir="$1" label="$2"
  echo "== tests: $label ($dir)"
  (cd "$dir" && ctest -j "$jobs" --output-on-failure --timeout 600) || status=1
}

# A tree of its own, configured once, built with every test.
build_tree() {
  local dir="$1"
  shift
  cmake -S "$root" -B "$dir" -G Ninja -DQUILLMERE_BUILD_APP=ON "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
}

"$root/scripts/build.sh" debug -DQUILLMERE_BUILD_APP=ON
if [ -x "$root/scripts/fuzz.sh" ]; then
  "$root/scripts/fuzz.sh" || status=1
fi
run_ctest "$root/build/debug" "debug"
[ "$quick" = 1 ] && exit $status

if [ "$release" = 1 ]; then
  build_tree "$root/build/release-tests" -DCMAKE_BUILD_TYPE=Release -DQUILLMERE_BUILD_BENCH=OFF
  run_ctest "$root/build/release-tests" "release"
  exit $status
fi

# Leaks are reported for our own code; Qt and Chromium keep some allocations to the end of
# the process on purpose, which the suppressions list names. Chromium (inside Qt WebEngine,
# not built with the sanitizer) frees some objects through a base of another size, which
# new_delete_type_mismatch would report as ours.
build_tree "$root/build/sanitize" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLMERE_SANITIZE=ON -DQUILLMERE_BUILD_BENCH=OFF
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:detect_stack_use_after_return=0:new_delete_type_mismatch=0}"
export LSAN_OPTIONS="${LSAN_OPTIONS:-suppressions=$root/tests/sanitizer-suppressions.txt:print_suppressions=0}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
run_ctest "$root/build/sanitize" "optimised, with the address and undefined-behaviour sanitizers"
exit $status
