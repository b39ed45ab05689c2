#!/usr/bin/env python3
"""A Python package index of our own, on a port of its own on loopback.

    package-index.py FOLDER [CERTIFICATE KEY]

Prints its port and serves until it is killed; over TLS where a certificate is given. The packages
stand in FOLDER/packages.json, an object from name to

    {"releases": {"1.0": ["other<2", ...], ...}, "fault": "...", "delay": 100, "among": 10}

with what each release requires, the latest one last; a delay in milliseconds before each answer;
and a fault: "silent" never answers, "500" and "404" are such answers, "garbage" is no JSON, and a
text with "://" sends the client to that server. With "among", the first
requests wait until there are so many of them; how many there were (half a second later, too) stands
in FOLDER/at-the-gate.txt. Each request is noted in FOLDER/requests.txt, and its headers in
FOLDER/headers.txt.
"""
import hashlib
import html
import http.server
import io
import json
import pathlib
import re
import ssl
import sys
import threading
import time
import urllib.parse
import zipfile

folder = pathlib.Path(sys.argv[1])
requests = threading.Lock()


def normalized(name):
    return re.sub(r"[-_.]+", "-", name).lower()


def wheel(name, version, requires):
    """The file of a release: a package that holds nothing."""
    stem = re.sub(r"[^A-Za-z0-9]+", "_", name)
    info = f"{stem}-{version}.dist-info"
    metadata = [f"Metadata-Version: 2.1\nName: {name}\nVersion: {version}\nProvides-Extra: x"]
    metadata += [f"Requires-Dist: {requirement}" for requirement in requires]
    files = {
        f"{info}/METADATA": "\n".join(metadata) + "\n",
        f"{info}/WHEEL": "Wheel-Version: 1.0\nRoot-Is-Purelib: true\nTag: py3-none-any\n",
    }
    files[f"{info}/RECORD"] = "".join(f"{file},,\n" for file in [*files, f"{info}/RECORD"])
    content = io.BytesIO()
    with zipfile.ZipFile(content, "w") as archive:
        for file, text in files.items():
            archive.writestr(zipfile.ZipInfo(file), text)
    return f"{stem}-{version}-py3-none-any.whl", content.getvalue()


def link(file):
    name, content = file
    digest = hashlib.sha256(content).hexdigest()
    return f'<a href="/wheels/{html.escape(name)}#sha256={digest}">{html.escape(name)}</a>'


class Index:
    def __init__(self):
        self.packages = {}
        self.wheels = {}
        for name, package in json.loads((folder / "packages.json").read_text()).items():
            releases = package.get("releases", {})
            files = [wheel(name, *release) for release in releases.items()]
            self.wheels.update(files)
            self.packages[normalized(name)] = {**package, "files": files}

    def answer(self, path):
        """The kind and the content of a page, or None."""
        kind, name = urllib.parse.unquote(path).strip("/").split("/")[:2]
        package = self.packages.get(normalized(name))
        if kind == "wheels" and name in self.wheels:
            return "application/octet-stream", self.wheels[name]
        if kind == "simple" and package:
            links = "".join(map(link, package["files"]))
            return "text/html", f"<!DOCTYPE html><html><body>{links}</body></html>".encode()
        if kind == "pypi" and package:
            latest = list(package["releases"])[-1]
            return "application/json", json.dumps({"info": {"version": latest}}).encode()
        return None

    def behaviour(self, path):
        name = urllib.parse.unquote(path).strip("/").split("/")[1]
        return self.packages.get(normalized(name), {})


class Gate:
    """Opens for good once enough requests stand before it, and counts them."""

    def __init__(self):
        self.changed = threading.Condition()
        self.waiting = 0
        self.open = False

    def enter(self, enough):
        with self.changed:
            if self.open:
                return
            self.waiting += 1
            (folder / "at-the-gate.txt").write_text(str(self.waiting))
            self.changed.notify_all()
            self.changed.wait_for(lambda: self.waiting >= enough)
            # That nobody else comes can only be told by waiting for it.
            self.changed.wait_for(lambda: self.waiting > enough, timeout=0.5)
            self.open = True


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        with requests, open(folder / "requests.txt", "a") as file:
            file.write(f"{self.path} {self.headers['Accept']}\n")
            with open(folder / "headers.txt", "a") as headers:
                headers.writelines(f"{name}: {value}\n" for name, value in self.headers.items())
        behaviour = index.behaviour(self.path)
        if "among" in behaviour:
            gate.enter(behaviour["among"])
        time.sleep(behaviour.get("delay", 0) / 1000)
        fault = behaviour.get("fault")
        if fault == "silent":
            threading.Event().wait()
        elif fault == "garbage":
            self.reply(200, "application/json", b"<html>")
        elif fault and "://" in fault:
            self.reply(301, "text/plain", b"", fault + self.path)
        elif fault:
            self.reply(int(fault), "text/plain", b"")
        else:
            answer = index.answer(self.path)
            self.reply(200, *answer) if answer else self.reply(404, "text/plain", b"")

    def reply(self, status, kind, body, location=None):
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        if location:
            self.send_header("Location", location)
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 128

    def handle_error(self, *_):  # who hangs up is no concern of the test
        pass


index = Index()
gate = Gate()
server = Server(("127.0.0.1", 0), Handler)
if len(sys.argv) > 2:
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(*sys.argv[2:])
    server.socket = context.wrap_socket(
        server.socket, server_side=True, do_handshake_on_connect=False
    )
print(server.server_address[1], flush=True)
server.serve_forever()
