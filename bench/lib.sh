# Shared by the benchmark scripts (sourced, not run): a work folder removed on exit, a free
# port on 127.0.0.1, nginx serving a generated site there, and number formatting.
#   root=... ; source "$root/bench/lib.sh"
# Sets work, port, host; defines start_nginx SITE_DIR, stop_nginx, seconds S, ratio A B.

work="$(mktemp -d /tmp/quillmere-bench.XXXXXX)"
nginx_pid=""
bench_cleanup() {
  [ -n "$nginx_pid" ] && kill "$nginx_pid" 2>/dev/null || true
  rm -rf "$work"
}
trap bench_cleanup EXIT

port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])')
host="127.0.0.1:$port"

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
  types { text/html html; image/png png; text/plain txt; }
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

seconds() { python3 -c "import sys; print(f'{float(sys.argv[1]):.2f}')" "$1"; }
ratio() { python3 -c "import sys; a,b=map(float,sys.argv[1:]); print(f'{a/b:.2f}' if b else 'n/a')" "$1" "$2"; }
