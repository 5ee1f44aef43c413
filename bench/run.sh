#!/usr/bin/env bash
# Crawl benchmark: quillmere against wget --spider on the same sites, served by nginx on 127.0.0.1.
#   bench/run.sh [--runs K] [--latency MS] [--latency-pages N] [--docs] [--parallel N]
#                [--linkchecker] [SITE ...]
# Sites (all five by default, else those named):
#   N        a generated site of N pages on disk (2000 and 20000 by default)
#   N@MS     a generated site of N pages behind a proxy that answers each request MS ms late
#            (--latency MS adds one of --latency-pages pages, 650 by default; default 650@20)
#   docs     the PostgreSQL manual Debian ships (postgresql-doc-15), a real HTML tree (--docs)
#   python   the Python 3.11 documentation Debian ships (python3.11-doc), its canonical links
#            taken out: each page names its file:// address as canonical, where a crawl stops
# Each site is crawled K times by each tool (3 by default), the two taking turns and swapping
# which goes first from one round to the next. Each crawl prints pages/s, CPU time (user+sys)
# and wall time per page, peak RSS; each site the median and range over the rounds of the
# quillmere/wget ratios of pages/s and of CPU per page (ratios taken within a round, on the
# same machine load); the end the time per page at the largest generated size on disk over the
# smallest, then a markdown table of it all.
# --parallel N is passed to `quillmere crawl` when given (else the crawler's default applies).
# --linkchecker also times linkchecker once a site.
# QUILLMERE=path/to/quillmere skips the build and crawls with that program;
# QUILLMERE_BUILD_LOCK=FILE builds under flock FILE (for machines where builds share a tree).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
docs_dir=/usr/share/doc/postgresql-doc-15/html

usage() { sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2; }
runs=3
parallel=""
with_linkchecker=0
latency_pages=650
latencies=()
sites=()
while [ $# -gt 0 ]; do
  case "$1" in
    --runs) runs="${2:?--runs needs a count}"; shift ;;
    --latency) latencies+=("${2:?--latency needs milliseconds}"); shift ;;
    --latency-pages) latency_pages="${2:?--latency-pages needs a count}"; shift ;;
    --docs) sites+=(docs) ;;
    --parallel) parallel="${2:?--parallel needs a count}"; shift ;;
    --linkchecker) with_linkchecker=1 ;;
    -h|--help) usage ;;
    docs|python|[0-9]*) sites+=("$1") ;;
    *) echo "run.sh: unknown argument $1" >&2; usage ;;
  esac
  shift
done
for ms in "${latencies[@]}"; do sites+=("$latency_pages@$ms"); done
[ ${#sites[@]} -eq 0 ] && sites=(2000 20000 650@20 docs python)
for s in "${sites[@]}"; do
  [[ "$s" =~ ^(docs|python|[0-9]+|[0-9]+@[0-9]+(\.[0-9]+)?)$ ]] || { echo "run.sh: bad site '$s'" >&2; usage; }
done
[[ "$runs" =~ ^[1-9][0-9]*$ ]] || { echo "run.sh: --runs wants a positive count" >&2; exit 2; }

"$root/scripts/install-deps.sh" --bench
if [ -z "${QUILLMERE:-}" ]; then
  build=("$root/scripts/build.sh" release -DQUILLMERE_BUILD_TESTS=OFF)
  [ -n "${QUILLMERE_BUILD_LOCK:-}" ] && build=(flock "$QUILLMERE_BUILD_LOCK" "${build[@]}")
  if ! out=$("${build[@]}" 2>&1); then
    printf '%s\n' "$out" | tail -n 40 >&2
    echo "run.sh: the release build failed" >&2
    exit 1
  fi
fi
quillmere="${QUILLMERE:-$root/build/release/cli/quillmere}"
crawl_options=()
if [ -n "$parallel" ]; then
  if ! "$quillmere" crawl --help 2>&1 | grep -q -- '--parallel'; then
    echo "run.sh: this quillmere has no crawl --parallel option" >&2
    exit 2
  fi
  crawl_options=(--parallel "$parallel")
fi
source "$root/bench/lib.sh"
records="$work/records.tsv"
thousands() { sed ':a; s/\B[0-9]\{3\}\>/,&/; ta' <<<"$1"; }
: >"$records"

# One crawl under /usr/bin/time: wall, user, system seconds and peak RSS in kB.
timed() {  # output file, command...
  local out="$1"; shift
  local status=0
  /usr/bin/time -f '%e %U %S %M' -o "$out" "$@" || status=$?
  tail -n 1 "$out" >"$out.last"
  return "$status"
}

record() {  # tool pages html wall user sys peak crawl db (and $requests)
  local tool="$1" pages="$2" html="$3"; shift 3
  printf '%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\n' \
    "$site_id" "$site_label" "$site_kind" "$site_size" "$round" "$tool" "$pages" "$html" "$requests" "$@" >>"$records"
}

# Behind the proxy, each crawl gets a fresh one, whose count of requests is that crawl's.
before_crawl() { requests=-; [ "$site_kind" != latency ] || start_delay_proxy "$delay_ms"; }
after_crawl() {
  [ "$site_kind" = latency ] || return 0
  stop_delay_proxy
  requests=$(sed -n 's/.* served \([0-9]*\) requests.*/\1/p' "$work/delay_proxy.log" | tail -n 1)
  requests=${requests:--}
}

run_quillmere() {
  local data="$work/data"
  rm -rf "$data"
  "$quillmere" --data-dir "$data" new bench "$start_url" >/dev/null
  before_crawl
  if ! timed "$work/q-time" "$quillmere" --data-dir "$data" crawl bench "${crawl_options[@]}" \
      >"$work/q-report" 2>"$work/q-progress"; then
    tail -n 20 "$work/q-progress" >&2
    echo "run.sh: quillmere crawl failed on $site_label" >&2
    exit 1
  fi
  after_crawl
  local wall user sys kb pages crawl_secs
  read -r wall user sys kb <"$work/q-time.last"
  pages=$(sed -n 's/^Pages analysed: *\([0-9]*\).*/\1/p' "$work/q-report")
  crawl_secs=$(sed -n 's/^Duration: *\([0-9.]*\) s.*/\1/p' "$work/q-report")
  if [ -z "$pages" ]; then
    head -n 5 "$work/q-report" >&2
    echo "run.sh: no 'Pages analysed: N' line in quillmere's report" >&2
    exit 1
  fi
  # The database with its journal files, should any remain.
  record quillmere "$pages" - "$wall" "$user" "$sys" "$kb" "${crawl_secs:--}" \
    $(( $(cat "$data"/bench.sqlite* | wc -c) / 1024 ))
}

run_wget() {
  rm -rf "$work/wget"
  before_crawl
  # wget exits 8 when it met a broken link, which every site here has.
  timed "$work/w-time" wget --spider -r -l inf -nv -e robots=off -P "$work/wget" "$start_url" \
    >"$work/w-log" 2>&1 || true
  after_crawl
  local wall user sys kb pages html
  read -r wall user sys kb <"$work/w-time.last"
  # Every URL it asked for, as quillmere's page count has images and broken links too.
  read -r pages html < <(python3 "$root/bench/run_report.py" wget-log "$work/w-log")
  record wget "$pages" "$html" "$wall" "$user" "$sys" "$kb" - -
}

run_linkchecker() {
  # linkchecker checks local URLs only; it gets a time limit of its own.
  local limit=${LINKCHECKER_TIMEOUT:-600}
  before_crawl
  if /usr/bin/time -f '%e' -o "$work/l-time" timeout "$limit" linkchecker --no-status --no-warnings -o none \
      --ignore-url '^(?!http://127\.0\.0\.1)' "$start_url" >/dev/null 2>&1 || [ $? -ne 124 ]; then
    echo "  linkchecker: $(seconds "$(tail -n 1 "$work/l-time")") s"
  else
    echo "  linkchecker: did not finish in $limit s"
  fi
  after_crawl
}

for site_id in "${sites[@]}"; do
  site_dir=""
  case "$site_id" in
    docs)
      site_kind=docs; site_size=-
      if [ ! -f "$docs_dir/index.html" ]; then
        echo "run.sh: $docs_dir/index.html is missing (package postgresql-doc-15)" >&2; exit 1
      fi
      start_nginx "$docs_dir"
      # Its start page is index.html, which nginx serves for "/": the project names the site.
      start_url="http://$host/"
      site_label="PostgreSQL 15 manual ($(find "$docs_dir" -name '*.html' | wc -l) HTML files), disk"
      ;;
    python)
      site_kind=docs; site_size=-
      python_dir=/usr/share/doc/python3.11/html
      if [ ! -f "$python_dir/index.html" ]; then
        echo "run.sh: $python_dir/index.html is missing (package python3.11-doc)" >&2; exit 1
      fi
      site_dir="$work/python"
      cp -rL "$python_dir" "$site_dir"
      find "$site_dir" -name '*.html' -exec sed -i 's|<link rel="canonical"[^>]*>||g' {} +
      start_nginx "$site_dir"
      start_url="http://$host/"
      site_label="Python 3.11 documentation ($(find "$site_dir" -name '*.html' | wc -l) HTML files, canonical links removed), disk"
      ;;
    *@*)
      site_kind=latency; site_size="${site_id%@*}"; delay_ms="${site_id#*@}"
      site_dir="$work/site"
      # Its absolute links must name the proxy, the only address the crawlers are given.
      python3 "$root/bench/generate_site.py" "$site_size" "$site_dir" "$proxy_host"
      start_nginx "$site_dir"
      start_url="http://$proxy_host/"
      site_label="generated $(thousands "$site_size") pages, $delay_ms ms a request"
      ;;
    *)
      site_kind=disk; site_size="$site_id"
      site_dir="$work/site"
      python3 "$root/bench/generate_site.py" "$site_size" "$site_dir" "$host"
      start_nginx "$site_dir"
      start_url="http://$host/"
      site_label="generated $(thousands "$site_size") pages, disk"
      ;;
  esac
  echo "$site_label: $start_url"
  for round in $(seq "$runs"); do
    if [ $((round % 2)) -eq 1 ]; then run_quillmere; run_wget; else run_wget; run_quillmere; fi
    python3 "$root/bench/run_report.py" run "$records" "$site_id" "$round"
  done
  python3 "$root/bench/run_report.py" site "$records" "$site_id"
  [ "$with_linkchecker" = 1 ] && run_linkchecker
  stop_nginx
  [ -n "$site_dir" ] && rm -rf "$site_dir"
  echo
done

commit=$(git -C "$root" rev-parse --short HEAD 2>/dev/null || echo unknown)
[ -n "$(git -C "$root" status --porcelain --untracked-files=no 2>/dev/null)" ] && commit="$commit + uncommitted changes"
python3 "$root/bench/run_report.py" summary "$records" \
  "quillmere at $commit, crawl ${crawl_options[*]:-(default options)}; wget --spider -r; $runs run(s) a site, medians (ranges); $(nproc) cores."
