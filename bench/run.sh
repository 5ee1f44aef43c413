#!/usr/bin/env bash
# Crawl benchmark: quillmere against wget --spider on the same static site served by nginx
# on 127.0.0.1, at N = 2,000 and 20,000 pages (or the sizes given).
#   bench/run.sh [--linkchecker] [N ...]
# Prints pages per second, their ratio, quillmere's peak memory and database size, and the
# time per page at the largest size over the time at the smallest.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
with_linkchecker=0
sizes=()
for arg in "$@"; do
  case "$arg" in
    --linkchecker) with_linkchecker=1 ;;
    *) sizes+=("$arg") ;;
  esac
done
[ ${#sizes[@]} -eq 0 ] && sizes=(2000 20000)

"$root/scripts/install-deps.sh" --bench
"$root/scripts/build.sh" release -DQUILLMERE_BUILD_TESTS=OFF >/dev/null
quillmere="$root/build/release/cli/quillmere"
source "$root/bench/lib.sh"

results=()
for n in "${sizes[@]}"; do
  site="$work/site-$n"
  python3 "$root/bench/generate_site.py" "$n" "$site" "$host"
  start_nginx "$site"

  data="$work/data-$n"
  "$quillmere" --data-dir "$data" new bench "http://$host" >/dev/null
  /usr/bin/time -f '%e %M' -o "$work/q-time" "$quillmere" --data-dir "$data" crawl bench >"$work/q-report" 2>"$work/q-progress"
  read -r q_secs q_kb < <(tail -n 1 "$work/q-time")
  q_pages=$(sed -n 's/^Pages analysed: \([0-9]*\).*/\1/p' "$work/q-report")
  q_crawl_secs=$(sed -n 's/^Duration: *\([0-9.]*\) s.*/\1/p' "$work/q-report")
  db_kb=$(( $(stat -c %s "$data/bench.sqlite") / 1024 ))

  rm -rf "$work/wget"
  /usr/bin/time -f '%e %M' -o "$work/w-time" wget --spider -r -l inf -nv -e robots=off -P "$work/wget" "http://$host/" >"$work/w-log" 2>&1 || true
  read -r w_secs w_kb < <(tail -n 1 "$work/w-time")
  w_pages=$(grep -c 'text/html\|200 OK' "$work/w-log" || true)

  q_rate=$(python3 -c "print(f'{$q_pages/$q_secs:.0f}')")
  w_rate=$(python3 -c "print(f'{$n/$w_secs:.0f}')")
  line="N=$n  quillmere: $q_pages pages in $(seconds "$q_secs") s (crawl $q_crawl_secs s) = $q_rate pages/s, peak $((q_kb / 1024)) MB, database $((db_kb / 1024)) MB | wget --spider: $(seconds "$w_secs") s = $w_rate pages/s (peak $((w_kb / 1024)) MB) | ratio quillmere/wget $(ratio "$q_rate" "$w_rate")"
  if [ "$with_linkchecker" = 1 ]; then
    # linkchecker checks local URLs only; it gets a time limit of its own.
    limit=${LINKCHECKER_TIMEOUT:-600}
    if /usr/bin/time -f '%e' -o "$work/l-time" timeout "$limit" linkchecker --no-status --no-warnings -o none \
        --ignore-url '^(?!http://127\.0\.0\.1)' "http://$host/" >/dev/null 2>&1 || [ $? -ne 124 ]; then
      l_secs=$(tail -n 1 "$work/l-time")
      line="$line | linkchecker: $(seconds "$l_secs") s = $(python3 -c "print(f'{$n/$l_secs:.0f}')") pages/s"
    else
      line="$line | linkchecker: did not finish in $limit s"
    fi
  fi
  echo "$line"
  results+=("$n $q_secs $q_pages")
  stop_nginx
  rm -rf "$site"
done

if [ ${#results[@]} -ge 2 ]; then
  python3 - "${results[@]}" <<'PY'
import sys
rows = [tuple(map(float, r.split())) for r in sys.argv[1:]]
small, large = rows[0], rows[-1]
per_small, per_large = small[1] / small[2], large[1] / large[2]
print(f"time per page: {per_small*1000:.3f} ms at N={int(small[0])}, {per_large*1000:.3f} ms at N={int(large[0])}: x{per_large/per_small:.2f}")
PY
fi
