#!/usr/bin/env bash
# Soak benchmark: one long crawl of a generated site of N pages (100,000 by default) served by
# nginx on 127.0.0.1, watched while it runs (bench/soak_monitor.py): RSS every quarter of a
# second and the progress lines' page counts.
#   bench/soak.sh [N]
# Prints, for every 10,000 pages, the RSS then and the time per page over those 10,000 pages;
# then RSS at the vacuum's end and the peak (VmHWM at exit, the final report included) against
# RSS at 10,000 pages (target for the peak <= 1.2), and the last slice's time per page against
# the first's (target: flat). Exit status 1 when memory misses its target.
# QUILLMERE=path/to/quillmere skips the build and crawls with that program;
# QUILLMERE_BUILD_LOCK=FILE builds under flock FILE (for machines where builds share a tree).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
n="${1:-100000}"

"$root/scripts/install-deps.sh" --bench
if [ -z "${QUILLMERE:-}" ]; then
  build=("$root/scripts/build.sh" release -DQUILLMERE_BUILD_TESTS=OFF)
  [ -n "${QUILLMERE_BUILD_LOCK:-}" ] && build=(flock "$QUILLMERE_BUILD_LOCK" "${build[@]}")
  if ! out=$("${build[@]}" 2>&1); then
    printf '%s\n' "$out" | tail -n 40 >&2
    echo "soak.sh: the release build failed" >&2
    exit 1
  fi
fi
quillmere="${QUILLMERE:-$root/build/release/cli/quillmere}"
source "$root/bench/lib.sh"

site="$work/site"
echo "generating $n pages..." >&2
python3 "$root/bench/generate_site.py" "$n" "$site" "$host"
start_nginx "$site"

data="$work/data"
"$quillmere" --data-dir "$data" new soak "http://$host" >/dev/null
echo "crawling..." >&2
status=0
python3 "$root/bench/soak_monitor.py" --slice 10000 --work "$work" -- \
  "$quillmere" --data-dir "$data" crawl soak || status=$?
stop_nginx

if [ -s "$work/report" ]; then
  pages=$(sed -n 's/^Pages analysed: \([0-9]*\).*/\1/p' "$work/report")
  duration=$(sed -n 's/^Duration: *\(.*\)$/\1/p' "$work/report")
  echo "N=$n: quillmere crawl analysed $pages pages, crawl $duration; database $(( $(stat -c %s "$data/soak.sqlite") / 1048576 )) MB"
fi
exit "$status"
