#!/usr/bin/env python3
"""A registry of packages for npm and pnpm, on a port of its own on loopback.

    npm-registry.py FOLDER

Prints its port and serves until it is killed. FOLDER holds `packages.json`, from each name to its
versions, the last of which is the latest one (or the one that stands under "latest" in an object
{"versions": […], "latest": …}), and may hold `faults.json`, from names, or "*" for all, to what
goes wrong: "missing" (404), "error" (500), "silent" or "cut-off". Both are read for each request.
"""
import base64
import hashlib
import http.server
import io
import json
import pathlib
import sys
import tarfile
import threading
import urllib.parse

folder = pathlib.Path(sys.argv[1])
LONG_AGO = "2020-01-01T00:00:00.000Z"  # versions of today are passed over by careful managers


def read(name):
    path = folder / name
    return json.loads(path.read_text()) if path.exists() else {}


def tarball(name, version):
    files = {"package.json": json.dumps({"name": name, "version": version}), "index.js": ""}
    packed = io.BytesIO()
    with tarfile.open(fileobj=packed, mode="w:gz", compresslevel=1) as archive:
        for file, text in files.items():
            entry = tarfile.TarInfo(f"package/{file}")
            entry.size = len(text)
            archive.addfile(entry, io.BytesIO(text.encode()))
    # The stamp of the compression would make each one another file.
    content = bytearray(packed.getvalue())
    content[4:8] = bytes(4)
    return bytes(content)


def integrity(content):
    return "sha512-" + base64.b64encode(hashlib.sha512(content).digest()).decode()


def packument(name, entry, base):
    versions = entry["versions"] if isinstance(entry, dict) else entry
    latest = entry["latest"] if isinstance(entry, dict) else versions[-1]
    return {
        "name": name,
        "dist-tags": {"latest": latest},
        "modified": LONG_AGO,
        "time": {"created": LONG_AGO, "modified": LONG_AGO} | {each: LONG_AGO for each in versions},
        "versions": {
            each: {
                "name": name,
                "version": each,
                "dist": {
                    "tarball": f"{base}/{name}/-/{name.split('/')[-1]}-{each}.tgz",
                    "integrity": integrity(tarball(name, each)),
                    "shasum": hashlib.sha1(tarball(name, each)).hexdigest(),
                },
            }
            for each in versions
        },
    }


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        path = urllib.parse.unquote(self.path.split("?")[0]).strip("/")
        name, _, file = path.partition("/-/")
        packages, faults = read("packages.json"), read("faults.json")
        fault = faults.get(name, faults.get("*"))
        if fault == "silent":
            threading.Event().wait()
        elif fault == "error":
            self.reply(500, b'{"error": "out of order"}')
        elif fault == "missing" or name not in packages:
            self.reply(404, b'{"error": "Not found"}')
        elif file:
            version = file.removeprefix(name.split("/")[-1] + "-").removesuffix(".tgz")
            self.reply(200, tarball(name, version), "application/octet-stream")
        else:
            base = f"http://127.0.0.1:{self.server.server_address[1]}"
            content = json.dumps(packument(name, packages[name], base)).encode()
            self.reply(200, content, missing=20 if fault == "cut-off" else 0)

    def reply(self, status, body, kind="application/json", missing=0):
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body[: len(body) - missing])
        self.close_connection = missing > 0

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_):  # who hangs up is no concern of the test
        pass


server = Server(("127.0.0.1", 0), Handler)
print(server.server_address[1], flush=True)
server.serve_forever()
