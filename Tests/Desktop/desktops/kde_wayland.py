"""KDE Plasma on Wayland: kwin_wayland without a screen, the items' daemon, and plasmashell."""

import os
import shlex
import shutil
import struct
import subprocess
import threading

from gi.repository import Atspi, Gio, GLib

from desktop import Daemon, children, has_state, is_name_owned, run, wait_until
from session import IS_THE_COMPOSITOR, ROOT, Session, colour
from wayland_input import BUTTONS, KEYS, WaylandClient

SCREENSHOT = "org.kde.KWin.ScreenShot2"


class FakeInput(WaylandClient):
    """A pointer and a keyboard through KWin's own protocol."""

    def __init__(self):
        super().__init__()
        self.device = self.bind("org_kde_kwin_fake_input", 4)
        reason = struct.unpack("=2I", b"test\0\0\0\0")
        self.send(self.device, 0, text="test", after=(5, *reason))

    def move(self, x, y):
        """In points of the layout."""
        self.send(self.device, 9, round(x * 256), round(y * 256))
        self.roundtrip()

    def click(self, button=1):
        for is_down in (1, 0):
            self.send(self.device, 2, BUTTONS[button], is_down)
            self.roundtrip()

    def key(self, name):
        for is_down in (1, 0):
            self.send(self.device, 10, KEYS[name], is_down)
            self.roundtrip()


def active_windows():
    """The windows that have the keyboard, by what they tell screen readers."""
    desktop = Atspi.get_desktop(0)
    programs = [each for each in children(desktop) if each]
    windows = [window for program in programs for window in children(program) if window]
    return [each.get_name() for each in windows if has_state(each, Atspi.StateType.ACTIVE)]


class Desktop(Session):
    parts = ("plasma-workspace", "kwin-wayland")
    title = "square"
    panel_edge = "bottom"
    panel_size = 44
    cannot = {
        **IS_THE_COMPOSITOR,
        "the_widget_moves_to_the_first_monitor": "kwin_wayland has one screen here",
        "the_widget_follows_the_screens_size": "kwin_wayland has one screen here",
    }
    environment = {
        "XDG_CURRENT_DESKTOP": "KDE",
        "KDE_FULL_SESSION": "true",
        "KDE_SESSION_VERSION": "5",
        # There is no graphics card here.
        "QT_QUICK_BACKEND": "software",
        "KWIN_COMPOSE": "O2",
        "KWIN_USE_BUFFER_AGE": "0",
        "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1",
        "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1",
    }

    def __init__(self, scale):
        super().__init__(scale)
        self.processes = []
        self.shell = None

    @staticmethod
    def launcher(_scale):
        return [ROOT / "tools/desktop-bare"]

    def start(self):
        os.environ.update(self.environment)
        self.write_settings()
        self.start_compositor_itself()
        run("dbus-update-activation-environment --all")
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.input = FakeInput()
        for each in ("kded5", "/usr/lib/x86_64-linux-gnu/libexec/kactivitymanagerd"):
            self.processes.append(Daemon(each))
        wait_until(lambda: is_name_owned("org.kde.StatusNotifierWatcher"), "the items' daemon", 60)
        # The clipboard has an item from its first text on, which pushes others aside.
        self.copy("first")
        self.start_panel()

    def write_settings(self):
        """Without a graphics card blurring and fading take seconds, in which nobody is answered."""
        settings = {
            "kwinrc": "[Plugins]\nblurEnabled=false\ncontrastEnabled=false\n",
            "kdeglobals": "[KDE]\nAnimationDurationFactor=0\n",
        }
        for name, text in settings.items():
            with open(os.path.join(os.environ["XDG_CONFIG_HOME"], name), "w", encoding="utf-8") as file:
                file.write(text)

    def start_compositor_itself(self):
        # A copy of it has not the capability that keeps it from reading its environment.
        copy = os.path.join(os.environ["CORVELLA_DESKTOP"], "kwin_wayland")
        shutil.copyfile("/usr/bin/kwin_wayland", copy)
        os.chmod(copy, 0o700)
        width, height = (each // self.scale for each in self.size)
        size = f"--width {width} --height {height} --scale {self.scale}"
        # Whatever it starts is told where its displays are.
        told = os.path.join(os.environ["CORVELLA_DESKTOP"], "displays")
        teller = f"sh -c 'env >{told}.new && mv {told}.new {told}'"
        command = f"{copy} --virtual {size} --xwayland --no-lockscreen {shlex.quote(teller)}"
        self.processes.append(Daemon(command))
        wait_until(lambda: os.path.exists(told), "the compositor runs", 60)
        with open(told, encoding="utf-8") as lines:
            displays = dict(line.rstrip("\n").split("=", 1) for line in lines if "=" in line)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY"):
            os.environ[name] = displays[name]

    def start_panel(self):
        self.shell = Daemon("env QT_QPA_PLATFORM=wayland plasmashell --no-respawn")
        wait_until(self.is_panel_drawn, "the panel is drawn", 90)

    def is_panel_drawn(self):
        """Whether it is there, which is light, with the widgets at its ends."""
        x, y, width, height = self.panel()
        path = os.path.join(os.environ["CORVELLA_DESKTOP"], "panel.png")
        self.picture(path)
        places = [(x + width // 2, y + height // 2), (x + width // 2, y - height)]
        panel, desktop = (colour(path, *each) for each in places)
        return min(panel) > 150 and max(desktop) > 0

    def restart_panel(self):
        self.shell.stop()
        self.start_panel()

    def stop(self):
        for each in (self.shell, *reversed(self.processes)):
            if each:
                each.stop()

    def picture(self, path):
        facts, pixels = self.capture()
        size = f"{facts['width']}x{facts['height']}"
        subprocess.run(
            ["convert", "-size", size, "-depth", "8", "bgra:-", "-alpha", "off", str(path)],
            input=pixels,
            check=True,
            timeout=60,
        )

    def capture(self):
        """All that is on the screen: what it is made of, and its bytes, which come through a pipe."""
        reader, writer = os.pipe()
        pixels = bytearray()

        def read():
            with os.fdopen(reader, "rb") as pipe:
                pixels.extend(pipe.read())

        reading = threading.Thread(target=read)
        reading.start()
        facts = self.ask_for_picture(writer)
        reading.join(60)
        return facts, bytes(pixels)

    def ask_for_picture(self, writer):
        width, height = (each // self.scale for each in self.size)
        options = {"native-resolution": GLib.Variant("b", True)}
        area = GLib.Variant("(iiuua{sv}h)", (0, 0, width, height, options, 0))
        pipes = Gio.UnixFDList.new_from_array([writer])
        answer, _ = self.bus.call_with_unix_fd_list_sync(
            *("org.kde.KWin", "/org/kde/KWin/ScreenShot2", SCREENSHOT, "CaptureArea", area),
            *(None, Gio.DBusCallFlags.NONE, 60000, pipes),
        )
        return answer.unpack()[0]

    def move(self, x, y):
        self.input.move(x / self.scale, y / self.scale)

    def click(self, x, y):
        self.move(x, y)
        self.input.click()

    def type_text(self, text):
        for letter in text:
            self.input.key(letter)

    def press_key(self, key):
        self.input.key(key)

    def keyboard_owner(self):
        """Some name of what has the keyboard, to be compared only."""
        return active_windows()

    def copy(self, text):
        """Puts a text on the clipboard as another program would."""
        subprocess.run(["wl-copy", text], check=True, timeout=20)

    def clipboard(self):
        """The clipboard's text as another program reads it."""
        return run("wl-paste --no-newline")
