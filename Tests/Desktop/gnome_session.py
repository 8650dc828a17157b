"""GNOME Shell without a screen, driven from inside: it runs what it is told over the session bus."""

import json
import os
import subprocess
import time

from gi.repository import Gio, GLib

from desktop import Daemon, is_name_owned, run, wait_until
from session import IS_THE_COMPOSITOR, ROOT, Session

APPINDICATOR = "ubuntu-appindicators@ubuntu.com"
WATCHER = "org.kde.StatusNotifierWatcher"
FULL, OTHER = 0, 1  # The monitors.
SMALLER = 0.8  # What the other one has of the first one's width and height.
KEYS = {"Escape": 0xFF1B, "Return": 0xFF0D, "Tab": 0xFF09, "Down": 0xFF54}


class GnomeSession(Session):
    """GNOME on Wayland; Corvella's windows come through its Xwayland."""

    parts = ("gnome-shell",)
    extensions = ()
    cannot = IS_THE_COMPOSITOR
    settings = {
        "org.gnome.desktop.interface enable-animations": "false",
        "org.gnome.shell welcome-dialog-last-shown-version": "'99'",
    }

    def __init__(self, scale):
        super().__init__(scale)
        self.processes = []
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    @staticmethod
    def launcher(_scale):
        return [ROOT / "tools/desktop-bare"]

    def start(self):
        os.environ.update(XDG_CURRENT_DESKTOP="GNOME", XDG_SESSION_DESKTOP="gnome")
        settings = {**self.settings, "org.gnome.shell enabled-extensions": str(list(self.extensions))}
        for key, value in settings.items():
            run(f'gsettings set {key} "{value}"')
        self.start_shell()
        self.set_monitors(FULL)
        # As the session does: it tells X11 programs of the scale.
        self.processes.append(Daemon("/usr/libexec/gsd-xsettings"))
        self.evaluate("Main.messageTray.bannerBlocked = true")  # GNOME misses much of a session.
        self.evaluate("Main.overview.hide()")
        wait_until(lambda: not self.evaluate("Main.overview.visible"), "the overview is gone", 60)
        # By itself the bar is as black as the widget over it.
        self.evaluate("Main.panel.style = 'background-color: #4a5568'; true")

    def start_shell(self):
        monitors = [" --virtual-monitor {}x{}".format(*self.part(each)) for each in (1, SMALLER)]
        self.processes.append(Daemon("gnome-shell --headless --wayland --unsafe-mode" + "".join(monitors)))
        wait_until(lambda: not self.evaluate("Main.layoutManager._startingUp"), "the shell runs", 120)
        for each in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY"):
            os.environ[each] = self.evaluate(f"imports.gi.GLib.getenv('{each}')")
        self.evaluate(
            "{ const { Clutter } = imports.gi; const type = Clutter.InputDeviceType;"
            " const seat = Clutter.get_default_backend().get_default_seat();"
            " globalThis.pointer = seat.create_virtual_device(type.POINTER_DEVICE);"
            " globalThis.keyboard = seat.create_virtual_device(type.KEYBOARD_DEVICE);"
            " globalThis.now = () => global.get_current_time() * 1000; true }"
        )

    def part(self, part):
        return [int(each * part) for each in self.size]

    def set_monitors(self, *wanted):
        """Leaves these on, side by side from the left; the last one is the first of all."""
        serial, monitors, _, _ = self.displays("GetCurrentState").unpack()
        logical, x = [], 0
        for index in wanted:
            connector, mode = monitors[index][0][0], monitors[index][1][0]
            is_first = index == wanted[-1]
            logical.append((x, 0, float(self.scale), 0, is_first, [(connector, mode[0], {})]))
            x += mode[1]
        change = GLib.Variant("(uua(iiduba(ssa{sv}))a{sv})", (serial, 1, logical, {}))
        self.displays("ApplyMonitorsConfig", change)

    def two_monitors(self):
        self.set_monitors(FULL, OTHER)
        return self.size[0] + self.part(SMALLER)[0] // 2

    def one_monitor(self):
        self.set_monitors(FULL)

    def resize(self, part):
        """One monitor is unplugged, another one plugged in."""
        self.set_monitors(FULL if part == 1 else OTHER)
        return self.part(part)

    def restart_panel(self):
        """The part of it that shows items."""
        for change in ("disableExtension", "enableExtension"):
            is_shown = change.startswith("enable")
            self.evaluate(f"Main.extensionManager.{change}('{APPINDICATOR}')")
            wait_until(lambda: is_name_owned(WATCHER) == is_shown, f"{change} is done", 30)

    def item(self):
        """The item in the panel; None while there is none."""
        return self.evaluate(
            "{ const found = Object.entries(Main.panel.statusArea)"
            ".find(([name]) => name.startsWith('appindicator'));"
            " found ? { label: found[1]._label?.text, isOpen: found[1].menu.isOpen,"
            " entries: found[1].menu._getMenuItems().map(each => each.label.text) } : null }"
        )

    def displays(self, method, arguments=None):
        name = "org.gnome.Mutter.DisplayConfig"
        return self.call(name, "/org/gnome/Mutter/DisplayConfig", name, method, arguments)

    def call(self, name, path, interface, method, arguments=None):
        flags = Gio.DBusCallFlags.NO_AUTO_START
        return self.bus.call_sync(name, path, interface, method, arguments, None, flags, 60000)

    def evaluate(self, script):
        """What a script gives inside the shell."""
        name = "org.gnome.Shell"
        arguments = GLib.Variant("(s)", (script,))
        is_done, answer = self.call(name, "/org/gnome/Shell", name, "Eval", arguments).unpack()
        if not is_done:
            raise AssertionError(f"{script}: {answer}")
        return json.loads(answer) if answer else None

    def stop(self):
        for each in reversed(self.processes):
            each.stop()

    def panel(self):
        x, y, width, height = self.evaluate("[Main.panel.get_transformed_position(), Main.panel.get_size()].flat()")
        return round(x), round(y), round(width), round(height)

    def pointer(self):
        return [round(each) for each in self.evaluate("global.get_pointer()")[:2]]

    def move(self, x, y):
        """By steps, as a mouse does: Xwayland misses where other devices leave a window."""
        x, y = round(x), round(y)
        at = self.pointer()
        # Two steps, so that there is a motion also inside of what the first one comes to.
        for to in ([x + 1, y + 1], [x, y]):
            step = ", ".join(str((there - here) / self.scale) for there, here in zip(to, at))
            self.evaluate(f"pointer.notify_relative_motion(now(), {step}); true")
            wait_until(lambda to=to: self.pointer() == to, "the pointer moves")
            at = to

    def click(self, x, y, presses=1):
        self.move(x, y)
        time.sleep(0.2)  # No person presses sooner, and the window for the click may be on its way.
        for _ in range(presses):
            self.evaluate("for (const down of [1, 0]) pointer.notify_button(now(), 1, down); true")

    def double_click(self, x, y):
        self.click(x, y, 2)

    def press_key(self, key):
        value = KEYS.get(key) or ord(key)
        self.evaluate(f"for (const down of [1, 0]) keyboard.notify_keyval(now(), {value}, down); true")

    def type_text(self, text):
        for each in text:
            self.press_key(each)

    def picture(self, path):
        name = "org.gnome.Shell.Screenshot"
        arguments = GLib.Variant("(bbs)", (False, False, str(path)))
        self.call(name, "/org/gnome/Shell/Screenshot", name, "Screenshot", arguments)

    def keyboard_owner(self):
        """Some name of what has the keyboard, to be compared only."""
        return self.evaluate("global.display.focus_window?.get_id() ?? 0")

    def window_with_keyboard(self):
        return self.evaluate("global.display.focus_window?.title")

    def keys_go_to(self, title):
        # Xwayland may have told its window before the shell knows of it.
        return self.window_with_keyboard() == title

    def copy(self, text):
        """Puts a text on the clipboard as a native Wayland program does."""
        subprocess.run(["wl-copy", text], check=True, timeout=20)

    def clipboard(self):
        """The clipboard's text as the shell reads it: to another program it tells only with focus."""
        self.evaluate(
            "{ const { St } = imports.gi; globalThis.copied = null;"
            " St.Clipboard.get_default().get_text(St.ClipboardType.CLIPBOARD,"
            " (_, text) => { globalThis.copied = text; }); true }"
        )
        return wait_until(lambda: self.evaluate("globalThis.copied"), "the clipboard is read")
