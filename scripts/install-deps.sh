#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running Quillmere need.
# Idempotent: when every package is already present it only checks and returns.
#   scripts/install-deps.sh            core, command line, tests (with the PostgreSQL manual, a real
#                                      HTML tree a test crawls), demo
#   scripts/install-deps.sh --gui      also the desktop program's packages: Qt Widgets, WebEngine and Charts,
#                                      Qt's own French texts, a virtual X server for headless
#                                      screenshots, and a font
#   scripts/install-deps.sh --bench    also the benchmark's peers (nginx, wget, linkchecker) and a
#                                      real documentation trees to crawl (the PostgreSQL, Python and
#                                      SQLite manuals)
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-l10n-tools
  libsqlite3-dev libxml2-dev libcurl4-openssl-dev zlib1g-dev
  libcpp-httplib-dev libgtest-dev libxml2-utils
  clang libclang-rt-14-dev
  python3 postgresql-doc-15
)
for arg in "$@"; do
  case "$arg" in
    --gui) packages+=(qt6-tools-dev qt6-webengine-dev qt6-charts-dev libgl-dev qt6-translations-l10n
                      xvfb xauth fonts-dejavu-core) ;;
    --bench) packages+=(nginx wget linkchecker valgrind time python3 curl
                     python3-doc sqlite3-doc) ;;
    *) echo "install-deps.sh: unknown option $arg" >&2; exit 2 ;;
  esac
done

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}" >&2
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO=sudo
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
