"""A server of language models that speaks Ollama's interface: model_server.py [PORT [ADDRESS]]

On its standard output it tells its port, {"port": 1234}, and then, line by line, each request and
each client that went before its reply was whole, {"hungUp": true}. Each line on its standard
input is a JSON object that sets fields of Behaviour, or all of them anew where it is empty, and is
answered by {"set": true}.
"""

import hashlib
import http.server
import json
import select
import socket
import socketserver
import struct
import sys
import threading

LONGEST = 65536  # Bytes of a request that are told.


class Behaviour:
    def __init__(self):
        self.models = ["llama3.2:latest", "mistral:7b"]
        self.response = "Better text."
        self.error = None  # In place of every reply.
        self.delay = 0  # Seconds before every reply.
        self.redirections = {}  # From a path to a status and a location.
        self.parts = None  # All that is sent instead: Latin 1 texts, and how often each.
        self.interval = 0  # Seconds before each byte of them.
        self.then = "close"  # After them; or "reset" the connection, or "hold" it.

    def changed(self, fields):
        behaviour = Behaviour()
        vars(behaviour).update(vars(self) | fields)
        return behaviour


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True
    request_queue_size = 50

    def __init__(self, address, port, tell):
        self.address_family = socket.AF_INET6 if ":" in address else socket.AF_INET
        self.behaviour = Behaviour()
        self.tell = tell
        super().__init__((address, port), Handler)

    def handle_error(self, request, client_address):
        if isinstance(sys.exc_info()[1], OSError):
            self.tell(hungUp=True)
        else:
            super().handle_error(request, client_address)


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        self.answer()

    def do_POST(self):
        self.answer()

    def answer(self):
        behaviour = self.server.behaviour
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        self.server.tell(
            method=self.command,
            path=self.path,
            headers=self.headers.items(),
            body=body[:LONGEST].decode("utf-8", "replace"),
            hash=hashlib.sha256(body).hexdigest(),
        )
        self.wait(behaviour.delay)
        if self.path in behaviour.redirections:
            self.redirect(*behaviour.redirections[self.path])
        elif behaviour.parts is not None:
            self.misbehave(behaviour)
        elif behaviour.error is not None:
            self.reply(500, {"error": behaviour.error})
        elif (self.command, self.path) == ("GET", "/api/tags"):
            self.reply(200, {"models": [described(name) for name in behaviour.models]})
        elif (self.command, self.path) == ("POST", "/api/generate"):
            self.generate(behaviour, json.loads(body))
        else:
            self.reply(404)

    def generate(self, behaviour, request):
        name = request["model"]
        if name not in behaviour.models:
            self.reply(404, {"error": f"model '{name}' not found"})
        elif request.get("stream", True):
            words = [generated(name, word, False) for word in behaviour.response.split()]
            self.reply(200, *words, generated(name, "", True))
        else:
            self.reply(200, generated(name, behaviour.response, True))

    def redirect(self, status, location):
        self.send_response(status)
        self.send_header("Location", location)
        self.send_header("Content-Length", "0")
        self.end_headers()

    def reply(self, status, *objects):
        kind = "application/json" if len(objects) == 1 else "application/x-ndjson"
        body = b"\n".join(json.dumps(it).encode() for it in objects)
        self.send_response(status)
        self.send_header("Content-Type", f"{kind}; charset=utf-8")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def misbehave(self, behaviour):
        self.close_connection = True
        for text, times in behaviour.parts:
            self.send(text.encode("latin-1") * times, behaviour.interval)
        if behaviour.then == "hold":
            self.wait(None)
        if behaviour.then == "reset":
            lingering = struct.pack("ii", 1, 0)
            self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, lingering)
            self.connection.close()

    def send(self, data, interval):
        if not interval:
            self.connection.sendall(data)
            return
        for byte in data:
            self.wait(interval)
            self.connection.sendall(bytes([byte]))

    def wait(self, seconds):
        """Not any longer than the client does."""
        if seconds == 0:
            return
        if select.select([self.connection], [], [], seconds)[0] and not self.rfile.peek(1):
            raise ConnectionAbortedError

    def log_message(self, *_):
        pass


def described(name):
    return {
        "name": name,
        "model": name,
        "modified_at": "2026-03-01T10:20:30.123456789+01:00",
        "size": 2019393189,
        "digest": "a80c4f17acd55265feec403c7aef86be0c25983ab279d83f3bcd3abbcb5b8b72",
        "details": {
            "parent_model": "",
            "format": "gguf",
            "family": "llama",
            "families": ["llama"],
            "parameter_size": "3.2B",
            "quantization_level": "Q4_K_M",
        },
    }


def generated(name, text, is_last):
    reply = {
        "model": name,
        "created_at": "2026-03-01T10:20:30.123456789Z",
        "response": text,
        "done": is_last,
    }
    if is_last:
        reply |= {"done_reason": "stop", "context": [128006, 9125], "total_duration": 4935886791}
    return reply


class Output:
    def __init__(self):
        self.lock = threading.Lock()

    def tell(self, **news):
        with self.lock:
            print(json.dumps(news), flush=True)


def main():
    port = int(sys.argv[1]) if len(sys.argv) > 1 else 0
    address = sys.argv[2] if len(sys.argv) > 2 else "127.0.0.1"
    output = Output()
    server = Server(address, port, output.tell)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    output.tell(port=server.server_address[1])
    for line in sys.stdin:
        fields = json.loads(line)
        server.behaviour = server.behaviour.changed(fields) if fields else Behaviour()
        output.tell(set=True)


main()
