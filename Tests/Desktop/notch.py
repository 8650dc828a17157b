"""The widget at the upper edge of the screen, as pointer, windows and monitors meet it."""

import ctypes
import os
import re
import subprocess
import time
import unittest

import desktop
from desktop import Corvella, Daemon, click, has_window_manager, run, store, wait_until

ENTER, LEAVE, CONFIGURE = 7, 8, 22


def rectangle(x, y, width, height):
    """Points from the upper left corner as pixels."""
    return tuple(round(each * desktop.scale()) for each in (x, y, width, height))


def collapsed(left=0, width=None):
    return rectangle(left + ((width or screen_points()) - 150) / 2, 0, 150, 30)


def expanded(left=0, width=None):
    return rectangle(left + ((width or screen_points()) - 320) / 2, 0, 320, 96)


def screen_points():
    return desktop.screen_width() / desktop.scale()


def move_pointer(x, y):
    run(f"xdotool mousemove {round(x)} {round(y)}")


def leave():
    move_pointer(desktop.screen_width() / 2, 400 * desktop.scale())


def windows():
    """All windows of the root that are the widget's: pairs of id and frame."""
    pattern = (
        r'^     (0x\w+) "Corvella": \("corvella" "Corvella"\)\s+(\d+)x(\d+)\S+\s+\+(-?\d+)\+(-?\d+)'
    )
    found = re.findall(pattern, run("xwininfo -root -tree"), re.MULTILINE)
    return [(window, (int(x), int(y), int(w), int(h))) for window, w, h, x, y in found]


def is_at(frame):
    return [each for _, each in windows()] == [frame]


def wait_for(frame):
    wait_until(lambda: is_at(frame), f"the widget at {frame}", 20)


def is_black(x, y):
    """Whether a pixel of the screen is."""
    pixel = run(f"import -window root -crop 1x1+{x}+{y} -depth 8 txt:-")
    return "#000000" in pixel


def shows_tab(frame):
    """Whether what is seen there is a black tab: square above, round below, and nothing beyond."""
    x, y, width, height = frame
    picture = subprocess.run(
        f"import -window root -crop {width + 2}x{height + 1}+{x - 1}+{y} -depth 8 rgb:-",
        shell=True, check=True, capture_output=True, timeout=20,
    ).stdout

    def black(column, row):
        start = 3 * (row * (width + 2) + column + 1)
        return picture[start : start + 3] == b"\0\0\0"

    inside = [(0, 0), (width - 1, 0), (width // 2, height - 1), (width // 2, 0)]
    beyond = [(-1, 0), (width, 0), (width // 2, height), (0, height - 1), (width - 1, height - 1)]
    return all(black(*each) for each in inside) and not any(black(*each) for each in beyond)


class Watch:
    """What the server tells of a window: who came, who left, and that its frame or place changed."""

    def __init__(self, window):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        masks = 1 << 4 | 1 << 5 | 1 << 17  # Enter, leave, structure.
        self.window = ctypes.c_ulong(int(window, 16))
        self.x.XSelectInput(self.display, self.window, ctypes.c_long(masks))
        self.x.XSync(self.display, 0)
        self.events = []

    def seen(self):
        event = ctypes.create_string_buffer(192)
        while self.x.XPending(self.display):
            self.x.XNextEvent(self.display, event)
            self.events.append(ctypes.c_int.from_buffer(event).value)
        return self.events

    def lower(self):
        """Puts the window below all others."""
        self.x.XLowerWindow(self.display, self.window)
        self.x.XSync(self.display, 0)

    def close(self):
        self.x.XCloseDisplay(self.display)


class TestWindow:
    """A window that says in a file which buttons were pressed over it."""

    def __init__(self, x, y, width, height):
        self.log = os.path.join(os.environ["HOME"], f"events-{time.monotonic_ns()}")
        with open(self.log, "w", encoding="utf-8") as file:
            self.daemon = Daemon(f"xev -geometry {width}x{height}+{x}+{y}", stdout=file)
        pid = self.daemon.process.pid
        self.id = wait_until(lambda: self.found(), f"the window of {pid}")

    def found(self):
        """Its id stands in the first of its events."""
        wait_until(lambda: "MapNotify" in self.said(), "the window is there")
        return re.search(r"MapNotify.*?event (0x\w+)", self.said(), re.DOTALL)[1]

    def said(self):
        with open(self.log, encoding="utf-8") as file:
            return file.read()

    def presses(self):
        return self.said().count("ButtonPress")

    def make_full_screen(self):
        """It is hidden meanwhile, as managers read the wish when a window comes."""
        run(f"xdotool windowunmap --sync {self.id}")
        run(
            f"xprop -id {self.id} -f _NET_WM_STATE 32a"
            " -set _NET_WM_STATE _NET_WM_STATE_FULLSCREEN"
        )
        run(f"xdotool windowmap --sync {self.id}")
        wide = desktop.screen_width()
        wait_until(lambda: f"Width: {wide}" in run(f"xwininfo -id {self.id}"), "it fills the screen")

    def stop(self):
        self.daemon.stop()


class Part:
    """A part of the desktop, which may be started anew."""

    def __init__(self, command):
        self.command = command
        self.name = command.split()[0]

    def pid(self):
        family = subprocess.run(
            ["pgrep", "-P", str(os.getppid()), "-x", self.name], capture_output=True, text=True
        ).stdout.split()
        return int(family[0]) if family else None

    def restart(self):
        """False where the desktop has no such part."""
        pid = self.pid()
        if not pid:
            return False
        run(f"kill {pid}")
        wait_until(lambda: self.pid() is None, f"{self.name} ends")
        unittest.addModuleCleanup(Daemon(self.command).stop)
        return True


class Notch(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        store()
        leave()
        self.corvella = Corvella(is_shown=False)
        self.addCleanup(self.corvella.stop)
        wait_for(collapsed())

    def watch(self):
        watch = Watch(windows()[0][0])
        self.addCleanup(watch.close)
        return watch

    def open_window(self, *box):
        window = TestWindow(*rectangle(*box))
        self.addCleanup(window.stop)
        return window

    def sleeps_for(self, seconds):
        before = self.corvella.switches()
        time.sleep(seconds)
        return self.corvella.switches() == before

    def test_it_hangs_over_the_panel_and_grows_under_the_pointer(self):
        wait_until(lambda: shows_tab(collapsed()), "the tab is seen")
        desktop.screenshot("notch-collapsed")
        x, _, width, _ = collapsed()
        move_pointer(x + width / 2, 5)
        wait_for(expanded())
        wait_until(lambda: shows_tab(expanded()), "all of it is seen")
        desktop.screenshot("notch-expanded")
        leave()
        wait_for(collapsed())
        wait_until(lambda: shows_tab(collapsed()), "the rest is gone")

    def test_a_pointer_at_its_edges_comes_and_goes_once(self):
        watch = self.watch()
        x, _, width, height = collapsed()
        middle = x + width / 2
        for place in [(x, 0), (x + width - 1, 0), (x + width - 8, 10), (middle, height - 1)]:
            watch.events.clear()
            move_pointer(*place)
            wait_for(expanded())
            time.sleep(0.3)  # As long as it grows, and no more.
            self.assertEqual(watch.seen(), [ENTER, CONFIGURE], place)
            leave()
            wait_for(collapsed())
            self.assertEqual(watch.seen(), [ENTER, CONFIGURE, LEAVE, CONFIGURE], place)
        watch.events.clear()
        corner = height - 1
        for place in [(middle, height), (x - 1, 5), (x + width, 5), (x, corner)]:
            move_pointer(*place)
            time.sleep(0.2)
            self.assertEqual(watch.seen(), [], place)

    def test_grown_it_stays_for_a_pointer_anywhere_on_it(self):
        watch = self.watch()
        x, _, width, _ = collapsed()
        move_pointer(x + width / 2, 5)
        wait_for(expanded())
        time.sleep(0.3)  # As long as it grows.
        left, _, wide, high = expanded()
        for place in [(left, 5), (left + wide - 1, 40), (left + wide / 2, high - 1), (x - 20, 5)]:
            move_pointer(*place)
            time.sleep(0.3)  # Longer than it would take to shrink.
            self.assertEqual(watch.seen(), [ENTER, CONFIGURE], place)
        move_pointer(left, high - 1)  # In the corner it leaves free.
        wait_for(collapsed())
        self.assertEqual(watch.seen(), [ENTER, CONFIGURE, LEAVE, CONFIGURE])

    def test_clicks_beside_it_pass_and_clicks_on_it_leave_the_keyboard_alone(self):
        below = self.open_window(0, 0, int(screen_points()), 300)
        other = self.open_window(100, 400, 200, 100)
        run(f"xdotool windowactivate --sync {other.id}")
        below.make_full_screen()
        wait_until(lambda: shows_tab(collapsed()), "it is over a window that fills the screen")
        active = run("xdotool getactivewindow"), run("xdotool getwindowfocus")
        x, _, width, height = collapsed()
        click(x + width // 2, 5)
        wait_for(expanded())
        click(x + width // 2, 5)
        run("xdotool click 3")
        leave()
        wait_for(collapsed())
        self.assertEqual(below.presses(), 0)
        self.assertEqual((run("xdotool getactivewindow"), run("xdotool getwindowfocus")), active)
        click(x, height - 1)
        wait_until(lambda: below.presses() == 1, "a click beside the round corner passes")
        click(x + width // 2, height)
        wait_until(lambda: below.presses() == 2, "one just below it passes")

    def test_it_is_on_every_virtual_desktop(self):
        run("xdotool set_num_desktops 3")
        self.addCleanup(run, "xdotool set_desktop 0")
        run("xdotool set_desktop 2")
        wait_until(lambda: run("xdotool get_desktop").strip() == "2", "the third desktop")
        self.assertTrue(shows_tab(collapsed()))
        move_pointer(collapsed()[0] + 10, 5)
        wait_for(expanded())

    def test_switched_off_it_is_gone_and_wakes_nobody_up(self):
        move_pointer(collapsed()[0] + 10, 5)
        wait_for(expanded())
        store(showNotch=False)
        wait_until(lambda: not windows(), "its window is gone")
        wait_until(lambda: self.sleeps_for(3), "the program sleeps", 30)
        leave()
        store(showNotch=True)
        wait_for(collapsed())
        wait_until(lambda: self.sleeps_for(3), "the program sleeps with the widget too", 30)
        store(showNotch=False)
        wait_until(lambda: not windows(), "its window is gone again")
        store(showNotch="no")
        wait_for(collapsed())

    def test_shown_under_a_resting_pointer_it_grows(self):
        store(showNotch=False)
        wait_until(lambda: not windows(), "its window is gone")
        x, _, width, _ = collapsed()
        move_pointer(x + width - 5, 5)
        store(showNotch=True)
        wait_for(expanded())
        leave()
        wait_for(collapsed())

    def test_it_is_switched_a_hundred_times(self):
        for turn in range(100):
            store(showNotch=turn % 2 == 1)
        wait_for(collapsed())
        wait_until(lambda: shows_tab(collapsed()), "the tab is seen")

    def test_it_comes_to_the_front_again_with_the_next_setting(self):
        x, _, width, _ = collapsed()
        self.watch().lower()
        wait_until(lambda: not is_black(x + width // 2, 2), "the panel covers it")
        store(taskName="Write")
        wait_until(lambda: is_black(x + width // 2, 2), "it is in front again")

    def test_hidden_by_another_program_it_is_back_with_the_next_setting(self):
        window = windows()[0][0]
        run(f"xdotool windowunmap {window}")
        wait_until(lambda: "IsUnMapped" in run(f"xwininfo -id {window}"), "it is hidden")
        store(taskName="Write")
        wait_until(lambda: shows_tab(collapsed()), "the tab is seen")

    def test_it_follows_the_main_screen(self):
        wide, high = map(int, run("xdotool getdisplaygeometry").split())
        half, points = wide // 2, screen_points()
        self.addCleanup(run, "xrandr --delmonitor left")
        run(f"xrandr --setmonitor left {half}/170x{high}/190+0+0 screen")
        wait_for(collapsed(0, points / 2))
        self.addCleanup(run, "xrandr --delmonitor right")
        run(f"xrandr --setmonitor *right {half}/170x{high}/190+{half}+0 none")
        wait_for(collapsed(points / 2, points / 2))
        move_pointer(half + half / 2, 5)
        wait_for(expanded(points / 2, points / 2))

    def test_it_follows_the_size_of_the_screen(self):
        before = "x".join(run("xdotool getdisplaygeometry").split())
        run("xrandr --newmode smaller 49.00 1024 1072 1168 1312 600 603 613 624")
        run("xrandr --addmode screen smaller")
        self.addCleanup(run, f"xrandr --output screen --mode {before}")
        run("xrandr --output screen --mode smaller")
        wait_for(collapsed(0, 1024 / desktop.scale()))
        wait_until(lambda: shows_tab(collapsed()), "the tab is seen there")

    def test_it_outlives_panel_compositor_and_window_manager(self):
        restarted = [
            Part(command).restart()
            for command in (
                "picom --backend xrender --config /dev/null",
                "xfce4-panel --disable-wm-check",
                "openbox",
            )
        ]
        self.assertEqual(restarted[1:], [True, True])
        wait_until(has_window_manager, "a window manager")
        wait_until(self.corvella.item, "the panel is back", 30)
        self.assertTrue(is_at(collapsed()))
        wait_until(lambda: shows_tab(collapsed()), "the tab is seen")
        move_pointer(collapsed()[0] + 10, 5)
        wait_for(expanded())

    def test_assistive_technology_finds_it(self):
        def widget():
            for program in desktop.children(desktop.Atspi.get_desktop(0)):
                if program.get_process_id() == self.corvella.process.pid:
                    return next(
                        each
                        for each in desktop.children(program)
                        if each.get_name() == "Notch widget" and desktop.is_showing(each)
                    )

        described = wait_until(widget, "the widget is found").get_description()
        self.assertRegex(described, r"^Corvella, not running; No task set; Meetings: .*$")


if __name__ == "__main__":
    desktop.main()
