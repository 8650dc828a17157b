"""A pointer and a keyboard for a Wayland compositor that has neither, held for as long as the
program runs: a keyboard that comes and goes would take the focus with it."""

import array
import os
import socket
import struct
import tempfile
import time

KEYMAP = (
    'xkb_keymap { xkb_keycodes { include "evdev" }; xkb_types { include "complete" };'
    ' xkb_compat { include "complete" }; xkb_symbols { include "pc+us" }; };\0'
)
# As the kernel numbers keys, row by row.
ROWS = {2: "1234567890", 16: "qwertyuiop", 30: "asdfghjkl", 44: "zxcvbnm"}
KEYS = {letter: first + i for first, row in ROWS.items() for i, letter in enumerate(row)}
KEYS |= {" ": 57, "Escape": 1, "Tab": 15, "Return": 28, "Up": 103, "Down": 108, "Control": 29}
BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}
CONTROL = 4


class WaylandClient:
    """Just enough of the protocol."""

    def __init__(self):
        path = os.path.join(os.environ["XDG_RUNTIME_DIR"], os.environ["WAYLAND_DISPLAY"])
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(path)
        self.socket.settimeout(20)
        self.received = b""
        self.last = 1
        self.start = time.monotonic()
        self.globals = {}
        self.registry = self.new()
        self.send(1, 1, self.registry)
        self.roundtrip()

    def new(self):
        self.last += 1
        return self.last

    def send(self, target, opcode, *words, text=None, after=(), descriptor=None):
        body = b"".join(struct.pack("=I", word) for word in words)
        if text is not None:
            raw = text.encode() + b"\0"
            body += struct.pack("=I", len(raw)) + raw + b"\0" * (-len(raw) % 4)
        body += b"".join(struct.pack("=I", word) for word in after)
        message = struct.pack("=II", target, len(body) + 8 << 16 | opcode) + body
        passed = []
        if descriptor is not None:
            passed = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [descriptor]))]
        self.socket.sendmsg([message], passed)

    def bind(self, interface, version):
        bound = self.new()
        name = self.globals[interface]
        self.send(self.registry, 0, name, text=interface, after=(version, bound))
        return bound

    def roundtrip(self):
        """Until the compositor has done all that it was asked for."""
        callback = self.new()
        self.send(1, 0, callback)
        while True:
            target, opcode, body = self.event()
            if target == callback:
                return
            if target == 1 and opcode == 0:
                raise OSError(f"the compositor ended the connection: {body[12:]!r}")
            if target == 2 and opcode == 0:
                name, length = struct.unpack_from("=II", body)
                self.globals[body[8 : 7 + length].decode()] = name

    def event(self):
        while len(self.received) < 8 or len(self.received) < self.size():
            part = self.socket.recv(4096)
            if not part:
                raise OSError("the compositor is gone")
            self.received += part
        target, word = struct.unpack_from("=II", self.received)
        size = word >> 16
        body, self.received = self.received[8:size], self.received[size:]
        return target, word & 0xFFFF, body

    def size(self):
        return struct.unpack_from("=I", self.received, 4)[0] >> 16

    def now(self):
        return int((time.monotonic() - self.start) * 1000)


class WaylandInput(WaylandClient):
    def __init__(self):
        super().__init__()
        seat = self.bind("wl_seat", 1)
        pointers = self.bind("zwlr_virtual_pointer_manager_v1", 1)
        keyboards = self.bind("zwp_virtual_keyboard_manager_v1", 1)
        self.pointer, self.keyboard = self.new(), self.new()
        self.send(pointers, 0, seat, self.pointer)
        self.send(keyboards, 0, seat, self.keyboard)
        with tempfile.TemporaryFile() as file:
            file.write(KEYMAP.encode())
            file.flush()
            self.send(self.keyboard, 0, 1, len(KEYMAP), descriptor=file.fileno())
            self.roundtrip()

    def move(self, x, y, layout):
        """In points of the layout, whose size is given."""
        self.send(self.pointer, 1, self.now(), round(x), round(y), *layout)
        self.send(self.pointer, 4)
        self.roundtrip()

    def button(self, button, is_down):
        self.send(self.pointer, 2, self.now(), BUTTONS[button], int(is_down))
        self.send(self.pointer, 4)
        self.roundtrip()

    def click(self, x, y, layout, button=1):
        self.move(x, y, layout)
        for is_down in (True, False):
            self.button(button, is_down)

    def key(self, name):
        for is_down in (1, 0):
            self.send(self.keyboard, 1, self.now(), KEYS[name], is_down)
            self.roundtrip()

    def with_control(self, name):
        self.send(self.keyboard, 2, CONTROL, 0, 0, 0)
        self.key(name)
        self.send(self.keyboard, 2, 0, 0, 0, 0)
        self.roundtrip()

    def type(self, text):
        for letter in text:
            self.key(letter)
