#!/usr/bin/python3
"""The stream server as one would write it in an afternoon: the peer that ours is compared with.

    bench/naive_stream_server.py

Speaks the same protocol on the same ports, with what Python brings along: a thread for each connection, and in each of them
the capture command for every frame that is not fresh. Nobody waits for anybody: viewers share a frame only if it is there
already. It prints nothing and runs until it is killed.
"""
import json
import os
import subprocess
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlsplit

PORTS = 8999, 9000, 9001, 8088
PORT_FILE = "/tmp/orvalen_port.txt"
REUSE_INTERVAL = 0.10
FAILURE_BACK_OFF = 1.5
FRAME_PAUSE = 0.08
EMPTY_PAUSE = 1.0

PAGE = """<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>Live screen</title></head>
<body style="margin: 0; background: #000"><img src="/stream.mjpg?d=1" alt="Live screen" style="max-width: 100%"></body></html>
""".encode()

frames = {}
begun_at = {}


def newest_frame(display):
    now = time.time()
    if display in frames and now - begun_at.get(display, 0) < REUSE_INTERVAL:
        return frames[display]
    file = f"/tmp/ov_disp_{display}.jpg"
    which = ["-D", str(display)] if display > 1 else []
    try:
        failed = subprocess.run(["screencapture", "-x", "-t", "jpg", *which, file]).returncode != 0
    except OSError:
        failed = True
    if failed:
        time.sleep(FAILURE_BACK_OFF)
        return frames.get(display) or frames.get(1) or b""
    if os.path.exists(file) and os.path.getsize(file) > 0:
        with open(file, "rb") as opened:
            frames[display] = opened.read()
        begun_at[display] = now
    elif display > 1 and 1 in frames:
        return frames[1]
    return frames.get(display, b"")


class Connection(BaseHTTPRequestHandler):
    def do_GET(self):
        target = urlsplit(self.path)
        if target.path == "/":
            self.answer("text/html; charset=utf-8", PAGE)
        elif target.path == "/api/status":
            self.answer("application/json", json.dumps({"status": "online", "time": time.time()}).encode())
        elif target.path == "/favicon.ico":
            self.send_response(204)
            self.end_headers()
        elif target.path == "/stream.mjpg":
            try:
                display = int(parse_qs(target.query).get("d", ["1"])[0])
            except ValueError:
                display = 1
            self.stream(display)
        else:
            self.send_error(404)

    def do_HEAD(self):
        self.send_response(200)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.end_headers()

    def answer(self, kind, body):
        self.send_response(200)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def stream(self, display):
        self.send_response(200)
        self.send_header("Age", "0")
        self.send_header("Cache-Control", "no-cache, private, no-store, must-revalidate")
        self.send_header("Pragma", "no-cache")
        self.send_header("Content-Type", "multipart/x-mixed-replace; boundary=FRAME")
        self.end_headers()
        try:
            while True:
                frame = newest_frame(display)
                if not frame:
                    time.sleep(EMPTY_PAUSE)
                    continue
                head = f"--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: {len(frame)}\r\n\r\n"
                self.wfile.write(head.encode())
                self.wfile.write(frame)
                self.wfile.write(b"\r\n")
                self.wfile.flush()
                time.sleep(FRAME_PAUSE)
        except Exception:  # whatever it was, this viewer has seen enough
            pass

    def log_message(self, *_):
        pass


class Server(ThreadingHTTPServer):
    def handle_error(self, *_):
        pass


def main():
    for port in PORTS:
        try:
            server = Server(("0.0.0.0", port), Connection)
            with open(PORT_FILE, "w") as file:
                file.write(str(port))
            server.serve_forever()
        except OSError:
            continue


if __name__ == "__main__":
    main()
