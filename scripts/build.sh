#!/usr/bin/env bash
# Configures and builds Quillmere with CMake and Ninja.
#   scripts/build.sh [release|debug] [extra cmake arguments...]
# Release goes to build/release, debug (with the debug trace) to build/debug.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
kind="${1:-release}"
[ $# -gt 0 ] && shift
case "$kind" in
  release) type=Release ;;
  debug) type=Debug ;;
  *) echo "build.sh: the build kind is release or debug, not '$kind'" >&2; exit 2 ;;
esac
dir="$root/build/$kind"
cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE="$type" "$@" >/dev/null
cmake --build "$dir" -j "$(nproc)"
