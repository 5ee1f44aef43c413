# Shared by the benchmark scripts (sourced, not run): a work folder removed on exit, a free
# port on 127.0.0.1, nginx serving a generated site there, a delaying proxy in front of it, and
# number formatting.
#   root=... ; source "$root/bench/lib.sh"
# QUILLMERE_BENCH_PORT=N serves on that port instead of a free one (a site generated with
# absolute links for it can then be served again).
# Sets work, port, host, proxy_port, proxy_host; defines start_nginx SITE_DIR, stop_nginx,
# start_delay_proxy MS, stop_delay_proxy, free_port, seconds S, ratio A B.

work="$(mktemp -d /tmp/quillmere-bench.XXXXXX)"
nginx_pid=""
proxy_pid=""
bench_cleanup() {
  [ -n "$proxy_pid" ] && kill "$proxy_pid" 2>/dev/null || true
  [ -n "$nginx_pid" ] && kill "$nginx_pid" 2>/dev/null || true
  rm -rf "$work"
}
trap bench_cleanup EXIT

free_port() { python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])'; }
port=${QUILLMERE_BENCH_PORT:-$(free_port)}
host="127.0.0.1:$port"
proxy_port=$(free_port)
while [ "$proxy_port" = "$port" ]; do proxy_port=$(free_port); done
proxy_host="127.0.0.1:$proxy_port"

start_nginx() {  # site directory
  mkdir -p "$work/nginx/logs"
  cat > "$work/nginx/nginx.conf" <<CONF
worker_processes 1;
daemon off;
user root;
error_log $work/nginx/logs/error.log warn;
pid $work/nginx/nginx.pid;
events { worker_connections 1024; }
http {
  access_log off;
  types { text/html html; image/png png; text/plain txt; text/css css; image/svg+xml svg; }
  default_type application/octet-stream;
  keepalive_timeout 30;
  server {
    listen 127.0.0.1:$port;
    root $1;
    index index.html;
  }
}
CONF
  nginx -c "$work/nginx/nginx.conf" -p "$work/nginx" &
  nginx_pid=$!
  for _ in $(seq 50); do curl -sf -o /dev/null "http://$host/" && return 0; sleep 0.1; done
  echo "nginx did not start" >&2; exit 1
}
stop_nginx() { kill "$nginx_pid" 2>/dev/null || true; wait "$nginx_pid" 2>/dev/null || true; nginx_pid=""; }

# Answers from nginx, MS milliseconds late each, on $proxy_host (start nginx first). Once
# stopped, the last line of $work/delay_proxy.log counts the requests and connections served.
start_delay_proxy() {  # milliseconds
  python3 "$root/bench/delay_proxy.py" --listen "$proxy_port" --upstream "$host" --delay-ms "$1" \
    2>"$work/delay_proxy.log" &
  proxy_pid=$!
  # A bare connect, so that the proxy's request count is the crawler's alone.
  for _ in $(seq 50); do (exec 3<>"/dev/tcp/127.0.0.1/$proxy_port") 2>/dev/null && return 0; sleep 0.1; done
  cat "$work/delay_proxy.log" >&2
  echo "the delaying proxy did not start" >&2; exit 1
}
stop_delay_proxy() { kill "$proxy_pid" 2>/dev/null || true; wait "$proxy_pid" 2>/dev/null || true; proxy_pid=""; }

seconds() { python3 -c "import sys; print(f'{float(sys.argv[1]):.2f}')" "$1"; }
ratio() { python3 -c "import sys; a,b=map(float,sys.argv[1:]); print(f'{a/b:.2f}' if b else 'n/a')" "$1" "$2"; }
