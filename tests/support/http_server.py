#!/usr/bin/python3
"""A server on the loopback interface that answers well and badly, as its paths say.

    http_server.py FOLDER

Makes certificates in FOLDER (ca.pem is their authority), prints its ports as one line of JSON and serves until its
standard input ends. Each request that arrives whole is a line of JSON in FOLDER/requests.
"""
import base64
import hashlib
import json
import os
import ssl
import subprocess
import sys
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlsplit

CREDENTIALS = {
    "ok": True, "account_email": "dana@example.com", "user_id": "user-1", "device_id": "device-1",
    "auth_token": "planted-auth-token", "auth_token_expires_at": 1800000000,
    "openrouter_api_key": "planted-router-key", "openrouter_key_hash": "planted-key-hash",
    "runtime_key": {"id": "key-1", "label": "Laptop", "weekly_limit_usd": 12.5, "limit_reset": "weekly",
                    "guardrail_id": "guard-1"},
}


class Server(ThreadingHTTPServer):
    daemon_threads = True
    folder = ""
    challenges = {}
    lock = threading.Lock()

    def handle_error(self, request, client_address):
        pass  # clients break off on purpose


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    timeout = 60

    def log_message(self, *arguments):
        pass

    def answer(self, status, body=b"", headers=()):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        if status != 204:
            self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        if self.command != "HEAD":
            self.wfile.write(body)

    def json(self, status, value):
        self.answer(status, json.dumps(value).encode(), [("Content-Type", "application/json")])

    def handle_request(self):
        self.body = self.rfile.read(int(self.headers.get("Content-Length", "0")))
        url = urlsplit(self.path)
        self.query = {name: values[0] for name, values in parse_qs(url.query, keep_blank_values=True).items()}
        with self.server.lock, open(os.path.join(self.server.folder, "requests"), "a") as log:
            log.write(json.dumps(self.request_record()) + "\n")
        words = url.path.strip("/").split("/")
        getattr(self, "do_" + words[0].replace("-", "_"), self.unknown)(*words[1:])

    do_GET = do_POST = do_PUT = do_HEAD = handle_request

    def request_record(self):
        return {"method": self.command, "path": self.path, "body": self.body.decode("latin-1"),
                "headers": {name.lower(): value for name, value in self.headers.items()}}

    def unknown(self, *words):
        self.json(404, {"error": "There is no such place."})

    # What a path stands for; words behind it are arguments.

    def do_echo(self, *words):
        self.json(200, self.request_record())

    def do_answer(self, status, *words):
        self.answer(int(status), bytes.fromhex(self.query.get("body", "")))

    def do_redirect(self, status, *words):
        self.answer(int(status), b"elsewhere", [("Location", self.query["to"])])

    def do_hops(self, count, *words):
        if count == "0":
            self.do_echo()
        else:
            self.answer(302, b"", [("Location", "/hops/%d" % (int(count) - 1))])

    def do_cookies(self, *words):
        self.answer(302, b"", [("Set-Cookie", "planted=cookie; Path=/"), ("Location", "/echo")])

    def do_silent(self, *words):
        threading.Event().wait(60)

    def do_drip(self, *words):
        """A byte every so often, so that nothing but a limit on the whole ends it."""
        self.send_response(200)
        self.send_header("Content-Length", "100000")
        self.end_headers()
        for _ in range(600):
            self.wfile.write(b"x")
            self.wfile.flush()
            threading.Event().wait(0.02)

    def do_cut(self, *words):
        self.send_response(200)
        self.send_header("Content-Length", "1000")
        self.end_headers()
        self.wfile.write(b'{"ok":true,')
        self.close_connection = True

    def do_hang_up(self, *words):
        self.close_connection = True

    def do_garbage(self, *words):
        self.wfile.write(b"this is no HTTP\r\n\r\n")
        self.close_connection = True

    def do_large(self, status, megabytes, *words):
        """Without a length, as chunks."""
        self.send_response(int(status))
        self.send_header("Transfer-Encoding", "chunked")
        self.end_headers()
        for _ in range(int(megabytes)):
            self.wfile.write(b"100000\r\n" + b"x" * 0x100000 + b"\r\n")
        self.wfile.write(b"0\r\n\r\n")

    # The auth service.

    def do_v1(self, auth, call, *words):
        request = json.loads(self.body)
        if call == "start":
            self.server.challenges[request["client_state"]] = request["code_challenge"]
            self.json(200, {"ok": True, "status": "sent"})
        elif call == "redeem":
            self.redeem(request)

    def redeem(self, request):
        digest = hashlib.sha256(request["code_verifier"].encode()).digest()
        challenge = base64.urlsafe_b64encode(digest).decode().rstrip("=")
        if self.server.challenges.get(request["client_state"]) != challenge:
            self.json(400, {"error": "The sign-in was started elsewhere."})
        elif request["grant"] != "planted-grant":
            self.json(401, {"error": "This link has been used."})
        else:
            self.json(200, CREDENTIALS)


def openssl(folder, *arguments):
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                    "-days", "2", *arguments], cwd=folder, check=True, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)


def make_certificates(folder):
    openssl(folder, "-keyout", "ca.key", "-out", "ca.pem", "-subj", "/CN=Vesk test authority",
            "-addext", "keyUsage=critical,keyCertSign")
    signed = ["-CA", "ca.pem", "-CAkey", "ca.key"]
    for name, alternative, signer in [("https", "IP:127.0.0.1,DNS:localhost", signed),
                                      ("wrongHost", "DNS:other.example", signed),
                                      ("untrusted", "IP:127.0.0.1", [])]:
        openssl(folder, "-keyout", name + ".key", "-out", name + ".pem", "-subj", "/CN=" + name,
                "-addext", "subjectAltName=" + alternative, "-addext", "basicConstraints=critical,CA:FALSE", *signer)


class TlsServer(Server):
    """The handshake belongs to the thread of its connection: one that fails holds up nobody."""
    context = None

    def finish_request(self, request, client_address):
        secured = self.context.wrap_socket(request, server_side=True)
        try:
            super().finish_request(secured, client_address)
        finally:
            try:
                secured.close()
            except OSError:
                pass


def serve(folder, name):
    server = (Server if name == "http" else TlsServer)(("127.0.0.1", 0), Handler)
    server.folder = folder
    if name != "http":
        server.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        server.context.load_cert_chain(os.path.join(folder, name + ".pem"), os.path.join(folder, name + ".key"))
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server.server_address[1]


def main():
    folder = sys.argv[1]
    make_certificates(folder)
    print(json.dumps({name: serve(folder, name) for name in ["http", "https", "wrongHost", "untrusted"]}), flush=True)
    sys.stdin.read()


main()
