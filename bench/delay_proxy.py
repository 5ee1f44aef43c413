#!/usr/bin/env python3
"""A reverse proxy that answers every HTTP request a fixed delay late, for the crawl benchmark.

    delay_proxy.py --listen PORT --upstream HOST:PORT --delay-ms MS

It listens on 127.0.0.1:PORT and forwards each request to the upstream server (nginx), waiting
MS milliseconds after a request has arrived before it is passed on, so each answer comes that
much later, as over a slow network. A loopback server answers in microseconds, which hides
whether a crawler keeps several requests in flight; with the delay, one request at a time costs
MS per page and N in flight about MS/N.

Each client connection gets its own upstream connection, both kept alive: requests on one
connection are answered in order, as HTTP/1.1 wants, while any number of connections wait at
once. Requests and responses pass through unchanged (Content-Length or chunked bodies, bodiless
HEAD, 204 and 304 answers, interim 1xx answers); a "Connection: close" from either side ends both connections
after that exchange. On SIGTERM or SIGINT it prints how many requests it served on how many
connections. Standard library only.
"""
import argparse
import asyncio
import signal
import sys

HEADER_LIMIT = 64 * 1024
CHUNK = 64 * 1024


class BadMessage(Exception):
    pass


async def read_head(reader):
    """The start line and headers of a message, raw, or b"" at a clean end of the stream."""
    try:
        head = await reader.readuntil(b"\r\n\r\n")
    except asyncio.IncompleteReadError as e:
        if e.partial.strip():
            raise BadMessage("truncated header") from e
        return b""
    except asyncio.LimitOverrunError as e:
        raise BadMessage("header too long") from e
    # Tolerate blank lines between messages (RFC 9112, 2.2).
    return head.lstrip(b"\r\n")


def parse_headers(head):
    lines = head.split(b"\r\n")
    fields = {}
    for line in lines[1:]:
        if not line:
            continue
        name, sep, value = line.partition(b":")
        if not sep:
            raise BadMessage("bad header line")
        key = name.strip().lower()
        value = value.strip()
        fields[key] = fields[key] + b", " + value if key in fields else value
    return lines[0], fields


def wants_close(version, fields):
    tokens = {t.strip().lower() for t in fields.get(b"connection", b"").split(b",")}
    if b"close" in tokens:
        return True
    return version == b"HTTP/1.0" and b"keep-alive" not in tokens


async def copy_exactly(reader, writer, n):
    while n > 0:
        data = await reader.read(min(n, CHUNK))
        if not data:
            raise BadMessage("body cut short")
        writer.write(data)
        n -= len(data)
        await writer.drain()


async def copy_chunked(reader, writer):
    while True:
        size_line = await reader.readuntil(b"\r\n")
        writer.write(size_line)
        try:
            size = int(size_line.split(b";", 1)[0].strip(), 16)
        except ValueError as e:
            raise BadMessage("bad chunk size") from e
        if size == 0:
            # Trailer fields, then the blank line that ends the message.
            while True:
                line = await reader.readuntil(b"\r\n")
                writer.write(line)
                if line == b"\r\n":
                    await writer.drain()
                    return
        await copy_exactly(reader, writer, size + 2)


async def copy_body(reader, writer, fields, *, has_body=True, until_close=False):
    """Copies a message body framed as its headers say; True when it ran to the end of the stream."""
    if not has_body:
        return False
    if b"chunked" in fields.get(b"transfer-encoding", b"").lower():
        await copy_chunked(reader, writer)
        return False
    if b"content-length" in fields:
        try:
            length = int(fields[b"content-length"].split(b",")[0])
        except ValueError as e:
            raise BadMessage("bad Content-Length") from e
        await copy_exactly(reader, writer, length)
        return False
    if until_close:
        while data := await reader.read(CHUNK):
            writer.write(data)
            await writer.drain()
        return True
    return False


class Proxy:
    def __init__(self, upstream_host, upstream_port, delay):
        self.upstream = (upstream_host, upstream_port)
        self.delay = delay
        self.requests = 0
        self.connections = 0  # those that carried a request; a bare connect is a readiness probe

    async def handle(self, client_reader, client_writer):
        up_reader = up_writer = None
        served = 0
        try:
            while True:
                head = await read_head(client_reader)
                if not head:
                    return
                served += 1
                self.requests += 1
                if served == 1:
                    self.connections += 1
                start, fields = parse_headers(head)
                parts = start.split()
                if len(parts) != 3:
                    raise BadMessage("bad request line")
                method, version = parts[0].upper(), parts[2]
                close_after = wants_close(version, fields)

                # The delay stands for the network's round trip: the request reaches the server
                # that much later, and so does every byte of its answer.
                await asyncio.sleep(self.delay)

                if up_writer is None or up_writer.is_closing():
                    up_reader, up_writer = await asyncio.open_connection(*self.upstream, limit=HEADER_LIMIT)
                up_writer.write(head)
                await copy_body(client_reader, up_writer, fields)
                await up_writer.drain()

                # Interim answers (100 Continue and the like) come before the real one.
                while True:
                    rhead = await read_head(up_reader)
                    if not rhead:
                        raise BadMessage("upstream closed without an answer")
                    status_line, rfields = parse_headers(rhead)
                    status_parts = status_line.split(None, 2)
                    status = int(status_parts[1])
                    client_writer.write(rhead)
                    if status >= 200:
                        break
                has_body = method != b"HEAD" and status not in (204, 304) and status >= 200
                ran_to_end = await copy_body(up_reader, client_writer, rfields, has_body=has_body, until_close=True)
                await client_writer.drain()
                if ran_to_end or close_after or wants_close(status_parts[0], rfields):
                    return
        except (BadMessage, OSError, asyncio.IncompleteReadError, asyncio.LimitOverrunError, ValueError, IndexError):
            pass  # a broken exchange ends both connections; the client sees the close
        finally:
            for w in (up_writer, client_writer):
                if w is not None:
                    w.close()


async def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--listen", type=int, required=True, help="port on 127.0.0.1")
    parser.add_argument("--upstream", required=True, help="HOST:PORT of the real server")
    parser.add_argument("--delay-ms", type=float, required=True)
    args = parser.parse_args()
    host, _, port = args.upstream.rpartition(":")
    proxy = Proxy(host, int(port), args.delay_ms / 1000)
    server = await asyncio.start_server(proxy.handle, "127.0.0.1", args.listen,
                                        limit=HEADER_LIMIT, backlog=1024, reuse_address=True)
    stop = asyncio.Event()
    loop = asyncio.get_running_loop()
    for sig in (signal.SIGTERM, signal.SIGINT):
        loop.add_signal_handler(sig, stop.set)
    print(f"delay_proxy: 127.0.0.1:{args.listen} -> {args.upstream}, {args.delay_ms:g} ms a request",
          file=sys.stderr, flush=True)
    async with server:
        await stop.wait()
    # Read by the benchmark: how many round trips each crawler paid for.
    print(f"delay_proxy: served {proxy.requests} requests on {proxy.connections} connections",
          file=sys.stderr, flush=True)


if __name__ == "__main__":
    asyncio.run(main())
