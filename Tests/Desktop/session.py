"""A desktop as the checks drive it; each file in desktops/ says how one of them is started."""

import ctypes
import importlib
import os
import pathlib
import re
import subprocess
import time

import desktop
from desktop import Daemon, has_window_manager, run, wait_until

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def load(name):
    """The class Desktop of a file in desktops/."""
    return importlib.import_module(f"desktops.{name}").Desktop


# For `cannot`, on Wayland.
IS_THE_COMPOSITOR = dict.fromkeys(
    ("a_compositor_may_go_or_come", "and_come_or_go_again"), "the desktop is the compositor"
)


class Session:
    """What every desktop can be asked; places and sizes are in pixels of its pictures."""

    parts = ()  # The packages that make the desktop, the most telling one first.
    # What the panel shows: "docked" (a window), "label", "wide" (a picture) or "square".
    title = "square"
    panel_edge = "top"
    panel_size = 28
    panel_scales = True
    opens_by = "click"  # Or "double click", or "start": of the program a second time.
    checks = ()  # Those made on this desktop only, after the common ones.
    # Checks that cannot be made here, and why.
    cannot = {}

    def __init__(self, scale):
        self.scale = scale
        self.size = (1280 * scale, 720 * scale)

    @staticmethod
    def launcher(scale):
        """The command that gives another one a home, a bus and a display."""
        raise NotImplementedError

    @classmethod
    def version(cls):
        """The desktop's parts as installed, without what the distribution adds to a version."""
        query = "dpkg-query --show --showformat='${Package} ${Version}\\n' "
        versions = run(query + " ".join(cls.parts))
        return ", ".join(re.sub(r"( )\d+:|-[^-]*$", r"\1", line) for line in versions.splitlines())

    def start(self):
        """Returns once the panel is there."""
        raise NotImplementedError

    def stop(self):
        raise NotImplementedError

    def restart_panel(self):
        raise NotImplementedError

    def keys_go_to(self, _title):
        """Whether the window of that title gets what is typed; asked once it thinks so itself."""
        return True

    def panel(self):
        """The panel: x, y, width, height."""
        width, height = self.size
        thickness = self.panel_size * (self.scale if self.panel_scales else 1)
        return 0, 0 if self.panel_edge == "top" else height - thickness, width, thickness


class X11Session(Session):
    """A desktop of a window manager and a panel, started one by one beside Xvfb."""

    composited = False

    def __init__(self, scale):
        super().__init__(scale)
        self.manager = None
        self.panel_process = None
        self.compositor = None

    @staticmethod
    def launcher(scale):
        size = f"{1280 * scale}x{720 * scale}"
        return [
            *(ROOT / "tools/desktop", "--size", size, "--dpi", str(96 * scale)),
            *("--window-manager", "none", "--panel", "none"),
        ]

    # Command lines, and what to write before they run.
    window_manager = "openbox"
    panel_command = ""

    def write_settings(self):
        pass

    environment = {}

    def start(self):
        os.environ.update(self.environment)
        # The bus was there before the display, and starts parts of the desktop, too.
        run("dbus-update-activation-environment --all")
        self.write_settings()
        self.manager = Daemon(self.window_manager)
        wait_until(has_window_manager, "the window manager runs", 60)
        if self.composited:
            self.start_compositor()
        self.start_panel()

    def start_panel(self):
        self.panel_process = Daemon(self.panel_command)
        wait_until(self.panel_reserves_room, "the panel stands at its edge", 90)

    def panel_reserves_room(self):
        """Whether the window manager keeps other windows off the panel."""
        area = re.search(r"= ([\d, ]+)", run("xprop -root -notype _NET_WORKAREA"))[1]
        height = int(area.split(",")[3])
        return height <= self.size[1] - self.panel()[3] * 0.8

    def restart_panel(self):
        self.panel_process.stop()
        self.start_panel()

    def start_compositor(self):
        self.compositor = Daemon("picom --backend xrender --config /dev/null")
        wait_until(self.is_composited, "the compositor runs", 30)

    def stop_compositor(self):
        self.compositor.stop()
        self.compositor = None
        wait_until(lambda: not self.is_composited(), "the compositor is gone")

    def is_composited(self):
        return is_selection_owned("_NET_WM_CM_S0")

    def stop(self):
        for each in (self.panel_process, self.compositor, self.manager):
            if each:
                each.stop()

    def move(self, x, y):
        run(f"xdotool mousemove {int(x)} {int(y)}")

    def click(self, x, y, button=1):
        self.move(x, y)
        run(f"xdotool click {button}")

    def type_text(self, text):
        desktop.type_text(text)

    def press_key(self, key):
        desktop.press_key(key)

    def picture(self, path):
        run(f"import -window root {path}")

    def keyboard_owner(self):
        """Some name of what has the keyboard, to be compared only."""
        return run("xdotool getwindowfocus").strip()

    def copy(self, text):
        """Puts a text on the clipboard as another program would."""
        subprocess.run(
            ["xclip", "-selection", "clipboard", "-in"], input=text.encode(), check=True, timeout=20
        )

    def clipboard(self):
        """The clipboard's text as another program reads it."""
        return run("xclip -selection clipboard -out")

    def two_monitors(self):
        """Makes two monitors, side by side, the right one the first, and returns its middle."""
        width, height = self.size
        half = f"{width // 2}/170x{height}/190"
        run(f"xrandr --setmonitor left {half}+0+0 screen")
        run(f"xrandr --setmonitor *right {half}+{width // 2}+0 none")
        return width * 3 // 4

    def one_monitor(self):
        run("xrandr --delmonitor left")
        run("xrandr --delmonitor right")

    def resize(self, part):
        """Makes the screen that part of its first size, and returns the new one."""
        width, height = (int(each * part) for each in self.size)
        if part != 1:
            timings = f"40 {width} {width + 8} {width + 16} {width + 32}"
            timings += f" {height} {height + 1} {height + 2} {height + 8}"
            run(f"xrandr --newmode smaller {timings}")
            run("xrandr --addmode screen smaller")
        run(f"xrandr --output screen --mode {f'{width}x{height}' if part == 1 else 'smaller'}")
        return width, height


def is_selection_owned(name):
    """Whether a program owns that selection of the display."""
    x = ctypes.CDLL("libX11.so.6")
    x.XOpenDisplay.restype = ctypes.c_void_p
    for function in (x.XInternAtom, x.XGetSelectionOwner):
        function.restype = ctypes.c_ulong
    display = ctypes.c_void_p(x.XOpenDisplay(None))
    atom = ctypes.c_ulong(x.XInternAtom(display, name.encode(), 0))
    owner = x.XGetSelectionOwner(display, atom)
    x.XCloseDisplay(display)
    return bool(owner)


def settled(picture, folder, seconds=30):
    """A picture of the screen once it changes no more, as a path."""
    end = time.monotonic() + seconds
    before, now = os.path.join(folder, "before.png"), os.path.join(folder, "now.png")
    picture(now)
    while time.monotonic() < end:
        os.replace(now, before)
        time.sleep(0.5)
        picture(now)
        if not difference(before, now):
            return now
    return now


def difference(one, other, area=None):
    """The box of what differs between two pictures: x, y, width, height; None where nothing does."""
    crop = ["-crop", "%dx%d+%d+%d" % (area[2], area[3], area[0], area[1]), "+repage"] if area else []
    box = subprocess.run(
        ["convert", one, other, "-compose", "difference", "-composite", *crop]
        + ["-colorspace", "gray", "-threshold", "8%", "-format", "%@ %[fx:maxima]", "info:"],
        check=True,
        capture_output=True,
        text=True,
        timeout=60,
    ).stdout
    found = re.match(r"(\d+)x(\d+)\+(\d+)\+(\d+) (\S+)", box)
    if not found or float(found[5]) == 0:
        return None
    width, height, x, y = map(int, found.groups()[:4])
    return x + (area[0] if area else 0), y + (area[1] if area else 0), width, height


def place_of(picture, box, other, area):
    """Where an area of another picture looks like a box of the first: x, y; None where nowhere."""
    parts = [
        "( %s -crop %dx%d+%d+%d +repage )" % (path, part[2], part[3], part[0], part[1])
        for path, part in ((other, area), (picture, box))
    ]
    command = ["compare", "-metric", "RMSE", "-subimage-search", "-colorspace", "gray"]
    answer = subprocess.run(
        [*command, *" ".join(parts).split(), "null:"], capture_output=True, text=True, timeout=120
    ).stderr
    found = re.search(r"\(([\d.e-]+)\) @ (\d+),(\d+)", answer)
    if not found or float(found[1]) > 0.1:
        return None
    return int(found[2]) + area[0], int(found[3]) + area[1]


def common(one, other):
    """The part that two boxes share; None where they do not touch."""
    if not one or not other:
        return None
    x, y = max(one[0], other[0]), max(one[1], other[1])
    width = min(one[0] + one[2], other[0] + other[2]) - x
    height = min(one[1] + one[3], other[1] + other[3]) - y
    return (x, y, width, height) if width > 0 and height > 0 else None


def crop(picture, box, path):
    x, y, width, height = (int(each) for each in box)
    run(f"convert {picture} -crop {width}x{height}+{max(x, 0)}+{max(y, 0)} +repage {path}")


def colour(picture, x, y):
    """Red, green and blue of a pixel, from 0 to 255."""
    text = run(f"convert {picture} -format '%[pixel:p{{{int(x)},{int(y)}}}]' info:")
    if "black" in text:
        return 0, 0, 0
    return tuple(int(float(each)) for each in re.findall(r"[\d.]+", text)[:3])
