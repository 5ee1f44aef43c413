#!/usr/bin/env bash
# Installs what is missing, builds the debug tree and runs every test suite.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" debug
status=0
if [ -x "$root/scripts/fuzz.sh" ]; then
  "$root/scripts/fuzz.sh" || status=$?
fi
cd "$root/build/debug"
ctest -j "$(nproc)" --output-on-failure --timeout 600 || status=$?
exit $status
