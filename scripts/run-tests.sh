#!/usr/bin/env bash
# Installs what is missing (the desktop program's packages included), builds the debug tree
# with the desktop program and runs every test suite: the fuzz target, then ctest. The desktop
# program's tests run headless (QT_QPA_PLATFORM=offscreen unless a platform is set).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
"$root/scripts/install-deps.sh" --gui
"$root/scripts/build.sh" debug -DQUILLMERE_BUILD_APP=ON
status=0
if [ -x "$root/scripts/fuzz.sh" ]; then
  "$root/scripts/fuzz.sh" || status=$?
fi
cd "$root/build/debug"
ctest -j "$(nproc)" --output-on-failure --timeout 600 || status=$?
exit $status
