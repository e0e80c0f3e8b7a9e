#!/usr/bin/env python3
"""The vendor's download host for the delivery tests, on loopback only.

Serves the files of its own folder (the add-on kit) to WinINet, which reaches
it as the prefix's proxy: requests arrive with the absolute URI. Routes:
  /kit/NAME          the file, with its length
  /status399/NAME    the file under status 399
  /status400/NAME    status 400
  /nolength/NAME     the file with no Content-Length, then close
  /half/NAME         the full length announced, half the bytes sent, then close
  /quit              stops the server
It writes the port it got to --port-file and stops by itself after --lifetime seconds.
"""
import argparse
import http.server
import os
import threading
import urllib.parse

HERE = os.path.dirname(os.path.abspath(__file__))


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.0"

    def log_message(self, *args):
        pass

    def body_of(self, name):
        path = os.path.join(HERE, os.path.basename(name))
        if not os.path.isfile(path):
            return None
        with open(path, "rb") as f:
            return f.read()

    def do_GET(self):
        parts = urllib.parse.urlsplit(self.path).path.strip("/").split("/", 1)
        route, name = parts[0], parts[1] if len(parts) > 1 else ""
        if route == "quit":
            self.send_response(200)
            self.send_header("Content-Length", "0")
            self.end_headers()
            threading.Thread(target=self.server.shutdown, daemon=True).start()
            return
        body = self.body_of(name)
        if body is None or route not in ("kit", "status399", "status400", "nolength", "half"):
            self.send_response(404)
            self.send_header("Content-Length", "0")
            self.end_headers()
            return
        status = {"status399": 399, "status400": 400}.get(route, 200)
        self.send_response(status)
        if route != "nolength":
            self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body[: len(body) // 2] if route == "half" else body)
        self.wfile.flush()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--port-file", required=True)
    parser.add_argument("--lifetime", type=float, default=120)
    args = parser.parse_args()
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    threading.Timer(args.lifetime, server.shutdown).start()
    with open(args.port_file + ".tmp", "w") as f:
        f.write(str(server.server_address[1]))
    os.replace(args.port_file + ".tmp", args.port_file)
    try:
        server.serve_forever()
    finally:
        server.server_close()
        os._exit(0)


if __name__ == "__main__":
    main()
