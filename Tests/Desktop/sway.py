"""Corvella on Wayland: the popover and the widget in sway's layers, the item in waybar."""

import json
import os
import re
import subprocess
import time
import unittest

from gi.repository import Atspi

import desktop
from desktop import Corvella, Daemon, everything, has_state, is_showing, run, store, wait_until
from wayland_input import WaylandInput

WATCHER = "org.kde.StatusNotifierWatcher"
FIELD = "What are you working on?"
PATIENCE = 30  # Seconds, for machines that have much else to do.


def eventually(condition, what):
    return wait_until(condition, what, PATIENCE)


def sway(*command, socket="SWAYSOCK"):
    environment = {**os.environ, "SWAYSOCK": os.environ[socket]}
    answer = subprocess.run(
        ["swaymsg", "--raw", *command], capture_output=True, text=True, env=environment, timeout=20
    )
    return json.loads(answer.stdout) if answer.stdout else None


def outputs():
    """Each output's place in points, by name."""
    return {each["name"]: each["rect"] for each in sway("-t", "get_outputs")}


def unplug(name):
    sway(f'[title="wlroots - {name}"] kill', socket="OUTER_SWAYSOCK")
    eventually(lambda: name not in outputs(), f"{name} is gone")


def plug():
    """The name of a new output."""
    before = outputs()
    sway("create_output")
    eventually(lambda: len(outputs()) > len(before), "there is another output")
    return next(name for name in outputs() if name not in before)


def copy(text):
    """Puts a text on the clipboard as another program."""
    subprocess.run(["wl-copy", text], check=True, stdout=subprocess.DEVNULL, timeout=20)


def pasted():
    return run("wl-paste --no-newline")


class Picture:
    """What is on all outputs, in pixels."""

    def __init__(self):
        data = subprocess.run(["grim", "-t", "ppm", "-"], check=True, capture_output=True).stdout
        header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
        self.width, self.height = int(header[1]), int(header[2])
        self.pixels = data[header.end() :]

    def at(self, x, y):
        start = (y * self.width + x) * 3
        return tuple(self.pixels[start : start + 3])

    def is_black(self, x, y):
        return self.at(x, y) == (0, 0, 0)

    def shows_menu(self, x, y):
        """Whether the task's menu stands at that corner: it reaches below the popover."""
        return min(self.at(x + 40, y + 183)) > 240

    def shows_item(self):
        """Whether something bright stands at the right end of the first panel."""
        right = next(iter(outputs().values()))["width"]
        return any(min(self.at(x, y)) > 200 for x in range(right - 60, right) for y in range(28))


class OnSway(Corvella):
    def widgets(self):
        programs = Atspi.get_desktop(0)
        for index in range(programs.get_child_count()):
            program = programs.get_child_at_index(index)
            if program and program.get_process_id() == self.process.pid:
                yield from everything(program)

    def find(self, role, name):
        """A showing widget of any window, by role and name."""

        def found():
            return next(
                each
                for each in self.widgets()
                if each.get_role_name() == role and each.get_name() == name and is_showing(each)
            )

        return eventually(found, f"{role} «{name}»")

    def is_active(self):
        """Whether any of its windows has the keyboard."""
        return any(has_state(each, Atspi.StateType.ACTIVE) for each in self.widgets())


class SwayTest(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        self.input = WaylandInput()
        self.addCleanup(self.input.socket.close)
        store()
        self.corvella = OnSway(is_shown=False)
        self.addCleanup(self.end)
        eventually(lambda: Picture().shows_item(), "the item stands in waybar")

    def end(self):
        self.corvella.process.terminate()
        self.assertEqual(self.corvella.process.wait(PATIENCE), 0)

    def layout(self):
        all_outputs = outputs().values()
        return (
            max(each["x"] + each["width"] for each in all_outputs),
            max(each["y"] + each["height"] for each in all_outputs),
        )

    def move(self, x, y):
        self.input.move(x, y, self.layout())

    def click(self, x, y, button=1):
        self.input.click(x, y, self.layout(), button)

    def click_item(self, output=None):
        place = outputs()[output] if output else next(iter(outputs().values()))
        self.click(place["x"] + place["width"] - 20, place["y"] + 14)

    def open_popover(self, output=None):
        def opened():
            if not self.corvella.popover():
                self.click_item(output)
            wait_until(self.corvella.popover, "the popover opens", 3)
            return wait_until(self.corvella.focused, "it has the keyboard", 3)

        return eventually(opened, "the popover has the keyboard")

    def wait_until_closed(self):
        eventually(lambda: not self.corvella.popover(), "the popover closes")

    def middle(self, role, name):
        box = self.corvella.find(role, name).get_extents(Atspi.CoordType.SCREEN)
        return box.x + box.width // 2, box.y + box.height // 2

    def open_menu(self):
        """The upper left corner of the menu of the task's field."""
        x, y = self.middle("text", FIELD)
        self.wait_for_picture(lambda picture: not picture.shows_menu(x, y), "no menu is there")
        self.click(x, y, button=3)
        self.wait_for_picture(lambda picture: picture.shows_menu(x, y), "the menu opens")
        return x, y

    def select_all_by_menu(self):
        x, y = self.open_menu()
        self.click(x + 40, y + 178)

    def wait_for_picture(self, condition, what):
        eventually(lambda: condition(Picture()), what)


class Popover(SwayTest):
    def test_what_is_typed_goes_to_the_task(self):
        self.assertEqual(self.open_popover().get_name(), FIELD)
        self.input.type("write letters")
        eventually(lambda: desktop.stored()["taskName"] == "write letters", "the task is stored")
        self.input.key("Escape")
        self.wait_until_closed()

    def test_it_stands_below_the_panel_and_a_click_elsewhere_closes_it(self):
        self.open_popover()
        box = self.corvella.popover().get_extents(Atspi.CoordType.SCREEN)
        self.assertGreaterEqual(box.y + 32, 28)  # Its shadow hangs over.
        self.click(box.x + box.width // 2, box.y + 60)
        self.click(300, 600)
        self.wait_until_closed()
        self.wait_for_picture(lambda picture: picture.at(1000, 400) == (128,) * 3, "nothing is left")

    def test_a_click_on_the_item_closes_it_for_good(self):
        self.open_popover()
        self.click_item()
        self.wait_until_closed()
        with self.assertRaises(AssertionError):
            wait_until(self.corvella.popover, "it opens again", 0.5)
        self.open_popover()

    def test_menus_stand_on_it(self):
        self.open_popover()
        self.input.type("old")
        self.select_all_by_menu()
        self.input.type("newer")
        eventually(lambda: desktop.stored()["taskName"] == "newer", "the old text was replaced")
        self.open_menu()
        for key in ("Up", "Return"):  # The last entry, again.
            self.input.key(key)
        self.open_menu()
        self.input.key("Escape")
        self.input.type("newest")
        eventually(lambda: desktop.stored()["taskName"] == "newest", "it was replaced again")
        self.assertTrue(self.corvella.popover())

    def test_the_clipboard_is_read_and_written(self):
        copy("so do i  ,i think")
        self.open_popover()
        self.click(*self.middle("page tab", "Actions"))
        self.click(*self.middle("push button", "Read clipboard"))
        eventually(
            lambda: self.corvella.find("text", "Clipboard text").get_text(0, -1)
            == "so do i  ,i think",
            "the clipboard's text is there",
        )
        self.click(*self.middle("push button", "Fix spacing & case"))
        eventually(
            lambda: has_state(self.corvella.find("push button", "Copy"), Atspi.StateType.ENABLED),
            "there is a result",
        )
        self.click(*self.middle("push button", "Copy"))
        eventually(lambda: pasted() == "So do I, I think", "the result is on the clipboard")


class Widget(SwayTest):
    def test_it_hangs_over_the_panel_and_wakes_nobody(self):
        self.wait_for_picture(
            lambda picture: picture.is_black(568, 2)
            and picture.is_black(711, 2)
            and not picture.is_black(560, 2)
            and not picture.is_black(640, 31),
            "the widget hangs in the middle",
        )
        before = eventually(self.settled, "it rests")
        time.sleep(5)
        self.assertEqual(self.corvella.switches(), before)

    def test_it_grows_under_the_pointer_without_the_keyboard(self):
        self.move(640, 29)
        self.wait_for_picture(lambda picture: picture.is_black(490, 70), "it grows")
        self.click(640, 20)
        eventually(self.settled, "it has grown")
        self.assertFalse(self.corvella.is_active())
        for edge in ((640, 95), (481, 40), (798, 40)):
            self.move(*edge)
            wait_until(self.settled, f"it keeps still with the pointer at {edge}", 5)
            self.assertTrue(Picture().is_black(490, 70), f"large with the pointer at {edge}")
        self.move(640, 300)
        self.wait_for_picture(lambda picture: not picture.is_black(640, 31), "it shrinks")

    def settled(self):
        """How often it has gone to sleep, once it does so no more."""
        before = self.corvella.switches()
        time.sleep(0.7)
        return before if self.corvella.switches() == before else None

    def test_it_comes_and_goes_with_the_setting(self):
        for shows in [False, True] * 20:
            store(showNotch=shows)
            time.sleep(0.02)
        self.wait_for_picture(lambda picture: picture.is_black(568, 2), "the widget is there")
        store(showNotch=False)
        self.wait_for_picture(lambda picture: not picture.is_black(568, 2), "the widget is gone")
        self.assertIsNone(self.corvella.process.poll())


class Surroundings(SwayTest):
    def test_waybar_is_started_again(self):
        self.open_popover()
        self.input.key("Escape")
        self.wait_until_closed()
        before = int(run("pgrep -x waybar -P " + str(os.getppid())))
        os.kill(before, 15)
        self.wait_for_picture(lambda picture: not picture.shows_item(), "waybar is gone")
        Daemon("waybar")  # For the tests to come, too.
        self.wait_for_picture(lambda picture: picture.shows_item(), "the item is back")
        self.open_popover()

    def test_everything_is_twice_as_large_at_scale_2(self):
        name = next(iter(outputs()))
        sway("output", name, "scale", "2")
        self.addCleanup(sway, "output", name, "scale", "1")
        self.wait_for_picture(
            lambda picture: picture.is_black(496, 4)
            and picture.is_black(782, 4)
            and not picture.is_black(480, 4)
            and not picture.is_black(640, 62),
            "the widget is twice as large",
        )
        self.open_popover()
        sway("output", name, "scale", "1")
        self.wait_until_closed()  # It would stand outside.

    def test_the_popover_opens_on_the_output_of_the_click(self):
        second = plug()
        left = outputs()[second]["x"]
        self.addCleanup(unplug, second)
        self.open_popover(second)
        self.assertGreaterEqual(self.middle("text", FIELD)[0], left)
        self.input.type("old")
        self.select_all_by_menu()
        self.input.type("new")
        eventually(lambda: desktop.stored()["taskName"] == "new", "the old text was replaced")
        self.click(300, 300)
        self.wait_until_closed()

    def test_outputs_come_and_go(self):
        first, second = next(iter(outputs())), plug()
        self.open_popover(second)
        unplug(second)
        self.wait_until_closed()
        third = plug()
        unplug(first)
        self.wait_for_picture(lambda picture: picture.is_black(568, 2), "the widget moves")
        self.open_popover(third)
        unplug(third)
        self.wait_until_closed()
        plug()
        self.wait_for_picture(lambda picture: picture.is_black(568, 2), "the widget is back")


    def test_the_widget_comes_back_small_when_its_output_goes(self):
        first = next(iter(outputs()))
        plug()
        self.move(640, 20)
        self.wait_for_picture(lambda picture: picture.is_black(490, 70), "it grows")
        unplug(first)
        self.move(300, 600)
        self.wait_for_picture(
            lambda picture: picture.is_black(568, 2) and not picture.is_black(490, 70),
            "it is small on the other output",
        )


class WithoutCompositor(SwayTest):
    """The last of all, as the compositor does not come back."""

    def end(self):
        self.assertGreaterEqual(self.corvella.process.wait(PATIENCE), 0)

    def test_what_was_typed_outlives_the_compositor(self):
        self.open_popover()
        field = self.corvella.find("text", FIELD)
        self.input.type("kept")
        eventually(lambda: field.get_text(0, -1) == "kept", "it is typed")
        sway("exit")
        self.end()
        self.assertEqual(desktop.stored()["taskName"], "kept")


if __name__ == "__main__":
    desktop.main()
