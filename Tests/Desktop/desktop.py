"""Corvella as a person meets it: through the panel, the keyboard, the pointer and a screen reader."""

import base64
import json
import os
import re
import shlex
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

NAME = "org.corvella.Corvella"
IDLE = "●"


def run(command):
    """The output of a command given as one line; fails when the command does."""
    return subprocess.run(
        shlex.split(command), check=True, capture_output=True, text=True, timeout=20
    ).stdout


def wait_until(condition, what, seconds=10):
    """The first true answer of condition(), which may also raise while it is too early."""
    end = time.monotonic() + seconds
    while True:
        try:
            answer = condition()
        except Exception:  # A window, a name or an accessible that is not there yet.
            answer = None
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"never: {what}")
        time.sleep(0.02)


class Daemon:
    """A program beside the one under test, for as long as it is held."""

    def __init__(self, command, stdout=subprocess.DEVNULL):
        self.process = subprocess.Popen(
            shlex.split(command), stdout=stdout, stderr=subprocess.DEVNULL
        )

    def stop(self):
        self.process.terminate()
        self.process.wait(10)


def owner(name):
    """The process that owns a name on the session bus."""
    answer = run(
        "gdbus call --session -d org.freedesktop.DBus -o /org/freedesktop/DBus"
        f" -m org.freedesktop.DBus.GetConnectionUnixProcessID {name}"
    )
    return int(re.search(r"uint32 (\d+)", answer)[1])


def is_name_owned(name):
    """Whether a program owns that name on the session bus."""
    answer = run(
        "gdbus call --session -d org.freedesktop.DBus -o /org/freedesktop/DBus"
        f" -m org.freedesktop.DBus.NameHasOwner {name}"
    )
    return "true" in answer


def has_window_manager():
    """Whether one runs: the window that one left its name in goes with it."""
    told = re.search(r"window id # (0x\w+)", run("xprop -root _NET_SUPPORTING_WM_CHECK"))
    command = f"xprop -id {told[1]} _NET_WM_NAME" if told else "false"
    return subprocess.run(command, shell=True, capture_output=True, timeout=20).returncode == 0


def enable_accessibility():
    run(
        "gdbus call --session -d org.a11y.Bus -o /org/a11y/bus"
        " -m org.freedesktop.DBus.Properties.Set org.a11y.Status IsEnabled '<true>'"
    )


def settings_file():
    return os.path.join(os.environ["XDG_CONFIG_HOME"], "corvella", "defaults.json")


def store(**values):
    """Writes user defaults as another program would."""
    os.makedirs(os.path.dirname(settings_file()), exist_ok=True)
    new = settings_file() + ".new"
    with open(new, "w", encoding="utf-8") as file:
        json.dump(values, file)
    os.rename(new, settings_file())


def stored():
    with open(settings_file(), encoding="utf-8") as file:
        return json.load(file)


def data(text):
    """Bytes as a user default, of a text."""
    return {"data": base64.b64encode(text.encode()).decode()}


def data_in(value):
    """The text in a user default of bytes."""
    return base64.b64decode(value["data"]).decode()


class Corvella:
    """A running Corvella; the program's path is this test's first argument."""

    program = None

    def __init__(self, is_shown=True, environment=None):
        self.process = subprocess.Popen([self.program], env={**os.environ, **(environment or {})})
        run(f"gdbus wait --session --timeout 10 {NAME}")
        if is_shown:
            wait_until(self.title, "the item has a title")

    def start_again(self):
        """Starts the program a second time and returns that one's exit status."""
        return subprocess.run([self.program], timeout=10).returncode

    def stop(self):
        self.process.terminate()
        self.process.wait(10)

    def switches(self):
        """How often its threads have gone to sleep so far."""
        tasks = f"/proc/{self.process.pid}/task"
        total = 0
        for task in os.listdir(tasks):
            try:
                with open(f"{tasks}/{task}/status", encoding="utf-8") as file:
                    status = file.read()
            except FileNotFoundError:  # It ended meanwhile.
                continue
            total += int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status, re.MULTILINE)[1])
        return total

    def docked(self):
        """The item's window in the tray: its id, name, x, y, width, height. None while there is none."""
        for line in run("xwininfo -root -tree").splitlines():
            found = re.search(
                r'(0x\w+) "Corvella (.*)": \("corvella" "Corvella"\)'
                r"\s+(\d+)x(\d+)\S+\s+\+(-?\d+)\+(-?\d+)",
                line,
            )
            if found:
                width, height, x, y = map(int, found.groups()[2:])
                return found[1], found[2], x, y, width, height
        return None

    def title(self):
        """The item's text, as tools that read windows find it."""
        window = self.docked()[0]
        name = run(f"xprop -id {window} -notype _NET_WM_NAME")
        return re.fullmatch(r'_NET_WM_NAME = "Corvella (.*)"', name.strip())[1]

    def wait_for_title(self, pattern, seconds=10):
        return wait_until(lambda: re.fullmatch(pattern, self.title()), f"title {pattern}", seconds)

    def item(self):
        """Where the item stands in the tray: x, y, width, height. None while it does not."""
        found = self.docked()
        return found[2:] if found and min(found[2:4]) >= 0 else None

    def settled_item(self):
        """The item's place once the panel moves it no more."""
        before = self.item()
        time.sleep(0.2)
        return before if before == self.item() else None

    def click_item(self):
        x, y, width, height = wait_until(self.settled_item, "the item stands in the tray")
        click(x + width // 2, y + height // 2)

    def open_popover(self):
        self.click_item()
        return wait_until(self.popover, "the popover opens")

    def wait_until_closed(self):
        wait_until(lambda: not self.popover(), "the popover closes")

    def popover(self):
        """The accessible root of the popover; None while it is closed."""
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            program = desktop.get_child_at_index(index)
            if program and program.get_process_id() == self.process.pid:
                for window in children(program):
                    # In a compositor's layers it is a part of a window.
                    for each in (window, *children(window)):
                        if each.get_role_name() == "dialog" and is_showing(each):
                            return each
        return None

    def find(self, role, name):
        """A showing widget of the popover by role and name."""

        def found():
            return next(
                each
                for each in everything(self.popover())
                if each.get_role_name() == role and each.get_name() == name and is_showing(each)
            )

        return wait_until(found, f"{role} «{name}»")

    def press(self, name, role="push button"):
        self.find(role, name).do_action(0)

    def shown(self, role):
        """The names of all showing widgets of a role."""
        names = []
        for each in everything(self.popover()):
            each.clear_cache()
            if each.get_role_name() == role and is_showing(each):
                names.append(each.get_name())
        return names

    def focused(self):
        """The widget that has the keyboard; None while it is the tab as a whole."""
        for each in everything(self.popover()):
            if has_state(each, Atspi.StateType.FOCUSED) and has_state(
                each, Atspi.StateType.FOCUSABLE
            ):
                return each
        return None

    def tab_to(self, name):
        """Lets the keyboard go on until it comes to a widget of that name."""
        for _ in range(20):
            before = self.focused()
            if before and before.get_name() == name:
                return
            press_key("Tab")
            wait_until(lambda: self.focused() not in (None, before), "the keyboard moves on")
        raise AssertionError(f"the keyboard never reaches {name}")


def children(accessible):
    return [accessible.get_child_at_index(i) for i in range(accessible.get_child_count())]


def everything(accessible):
    yield accessible
    for child in children(accessible):
        yield from everything(child)


def has_state(accessible, state):
    accessible.clear_cache()
    return accessible.get_state_set().contains(state)


def is_showing(accessible):
    return has_state(accessible, Atspi.StateType.SHOWING)


def click(x, y, button=1):
    run(f"xdotool mousemove {x} {y}")
    run(f"xdotool click {button}")


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "5", text], check=True, timeout=20)


def press_key(key):
    run(f"xdotool key {key}")


def scale():
    """Pixels a point."""
    return int(re.search(r"Xft.dpi:\s*(\d+)", run("xrdb -query"))[1]) / 96


def screen_width():
    """In pixels."""
    return int(run("xdotool getdisplaygeometry").split()[0])


def screenshot(name):
    """Keeps a picture of the screen where whoever runs the test asked for one."""
    folder = os.environ.get("CORVELLA_PICTURES")
    if folder:
        os.makedirs(folder, exist_ok=True)
        run(f"import -window root {folder}/{name}.png")


def main():
    import unittest

    Corvella.program = sys.argv.pop(1)
    unittest.main(verbosity=2)
