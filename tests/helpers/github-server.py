#!/usr/bin/env python3
"""Answers what `gh` asks GitHub about lists, over TLS on a port of its own on loopback.

    github-server.py CERTIFICATE KEY FOLDER ROLE

Prints its port and serves until it is killed. FOLDER holds `issues.json` and `pullRequests.json`,
the nodes of the repository owner/repo, newest first. ROLE is `lists` for the server as it should
be; the other ones play its faults.
"""
import http.server
import json
import pathlib
import ssl
import sys
import threading

certificate, key, folder, role = sys.argv[1:]


def listed(connection, limit):
    nodes = json.loads((pathlib.Path(folder) / f"{connection}.json").read_text())
    return {
        "totalCount": len(nodes),
        "nodes": nodes[:limit],
        "pageInfo": {"hasNextPage": len(nodes) > limit, "endCursor": "cursor"},
    }


def answer_to(question):
    """The answer that GitHub gives to one of the questions that gh asks."""
    query, variables = question["query"], question["variables"]
    if (variables["owner"], variables["repo"]) != ("owner", "repo"):
        name = f"{variables['owner']}/{variables['repo']}"
        words = f"Could not resolve to a Repository with the name '{name}'."
        return {"data": {"repository": None},
                "errors": [{"type": "NOT_FOUND", "path": ["repository"], "message": words}]}
    if "IssueList" in query:
        repository = {"hasIssuesEnabled": role != "issues-off"}
        repository["issues"] = listed("issues", variables["limit"])
    else:
        repository = {"pullRequests": listed("pullRequests", variables["limit"])}
    return {"data": {"repository": repository}}


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_POST(self):
        question = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
        if role == "silent":
            threading.Event().wait()
        elif "__type" in question["query"]:  # asked of hosts other than github.com only
            self.reply(200, json.dumps({"data": {}}))
        elif role == "unauthorized":
            self.reply(401, json.dumps({"message": "Bad credentials"}))
        elif role == "forbidden":
            self.reply(403, json.dumps({"message": "API rate limit exceeded"}))
        elif role == "html":
            self.reply(200, "<html><body>Sign in to the network</body></html>", "text/html")
        elif role == "cut-off":
            self.reply(200, json.dumps(answer_to(question)), missing=10)
        else:
            self.reply(200, json.dumps(answer_to(question)))

    def reply(self, status, text, kind="application/json", missing=0):
        body = text.encode()
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


context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(certificate, key)
server = Server(("127.0.0.1", 0), Handler)
server.socket = context.wrap_socket(server.socket, server_side=True, do_handshake_on_connect=False)
print(server.server_address[1], flush=True)
server.serve_forever()
