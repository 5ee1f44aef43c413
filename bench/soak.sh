#!/usr/bin/env bash
# Soak benchmark: one long crawl of a generated site of N pages (100,000 by default) served by
# nginx on 127.0.0.1, watched while it runs (bench/soak_monitor.py): RSS every quarter of a
# second and the progress lines' page counts; then the commands a user runs on the result.
#   bench/soak.sh [N]            e.g. bench/soak.sh 1000000
# Prints, for every tenth of the pages (every 10,000 below 100,000 pages), the RSS then and the
# time per page over that slice; RSS at the vacuum's end and the peak (VmHWM at exit, the final
# report included), with its target: 200 MB from 1,000,000 pages up (QUILLMERE_SOAK_PEAK_MB
# changes it), else 1.2 times RSS at the first slice; the last slice's time per page against
# the first's (target <= 1.3). Then the database's bytes per page, and the time and peak memory
# of `pages --format csv` (with the time to its first row: it streams), `links` to the home
# page (linked from every page), `broken`, `redirects`, `sitemap`, `show` and `check`.
# Exit status 1 when a target is missed or a command fails.
# QUILLMERE=path/to/quillmere skips the build and crawls with that program;
# QUILLMERE_SOAK_SITE=DIR generates the site there once and reuses it (with the same
# QUILLMERE_BENCH_PORT: the pages hold absolute links);
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

# QUILLMERE_SOAK_SITE=DIR keeps the generated site there for the next run of the same size
# (a million pages take minutes to write).
site="${QUILLMERE_SOAK_SITE:-$work/site}"
if [ -f "$site/.generated-$n-$host" ]; then
  echo "reusing the $n pages in $site" >&2
else
  echo "generating $n pages..." >&2
  rm -rf "$site"
  python3 "$root/bench/generate_site.py" "$n" "$site" "$host"
  touch "$site/.generated-$n-$host"
fi
start_nginx "$site"

data="$work/data"
"$quillmere" --data-dir "$data" new soak "http://$host" >/dev/null
slice=10000
monitor=()
if [ "$n" -ge 100000 ]; then slice=$((n / 10)); fi
if [ "$n" -ge 1000000 ] || [ -n "${QUILLMERE_SOAK_PEAK_MB:-}" ]; then
  monitor+=(--peak-mb "${QUILLMERE_SOAK_PEAK_MB:-200}")
fi
echo "crawling..." >&2
status=0
python3 "$root/bench/soak_monitor.py" --slice "$slice" "${monitor[@]}" --work "$work" -- \
  "$quillmere" --data-dir "$data" crawl soak || status=$?
stop_nginx

if [ -s "$work/report" ]; then
  pages=$(sed -n 's/^Pages analysed: \([0-9]*\).*/\1/p' "$work/report")
  duration=$(sed -n 's/^Duration: *\(.*\)$/\1/p' "$work/report")
  bytes=$(stat -c %s "$data/soak.sqlite")
  echo "N=$n: quillmere crawl analysed $pages pages, crawl $duration; database $((bytes / 1048576)) MB," \
       "$((bytes / (pages > 0 ? pages : 1))) bytes a page"
fi

# The commands a user runs on the result: wall time and peak memory of each.
timed() {  # label, then the command; its output is counted, not kept
  local label=$1; shift
  local lines rc=0
  lines=$(/usr/bin/time -o "$work/time" -f '%e %M' "$@" 2>"$work/stderr" | wc -l) || rc=$?
  if [ "$rc" != 0 ] || grep -q "exit status" "$work/time"; then
    echo "$label: FAILED: $(head -n 3 "$work/stderr" "$work/time")"; status=1; return
  fi
  read -r seconds kb < <(tail -n 1 "$work/time")
  printf '%-24s %8s s  %6s MB peak  %10s lines\n' "$label" "$seconds" "$((kb / 1024))" "$lines"
}
q=("$quillmere" --data-dir "$data")
first_row=$( { /usr/bin/time -f '%e' sh -c '"$@" | head -n 2 >/dev/null' sh "${q[@]}" pages soak --format csv; } 2>&1 | tail -n 1)
echo "pages --format csv: first rows after $first_row s"
timed "pages --format csv" "${q[@]}" pages soak --format csv
timed "links (home page)" "${q[@]}" links soak "http://$host/" --format csv
timed "broken --format csv" "${q[@]}" broken soak --format csv
timed "redirects --format csv" "${q[@]}" redirects soak --format csv
timed "sitemap" "${q[@]}" sitemap soak -o "$work/sitemap.xml"
timed "show" "${q[@]}" show soak
timed "check" "${q[@]}" check soak
exit "$status"
