"""What Corvella has to do on every desktop: checks.py PROGRAM DESKTOP SCALE RESULTS."""

import json
import os
import re
import sys
import time
import traceback

from gi.repository import Atspi

import desktop
import session
from desktop import Corvella, stored, wait_until

BLACK = 24  # What a picture's compression and a panel's blending may add.
GAP = 14  # Points; between the panel and the popover there are fewer.


class Scene:
    """A desktop with Corvella on it, and where its item stands."""

    def __init__(self, stage, folder):
        self.stage = stage
        self.folder = folder
        self.corvella = None
        self.item = None  # x, y, width, height
        self.first = None  # Where it was in the picture "idle".

    def picture(self, name):
        path = os.path.join(self.folder, f"{name}.png")
        self.stage.picture(path)
        return path

    def settled(self, name, is_ticking=False):
        """A picture of the screen once it stands still, but for the seconds."""
        path = os.path.join(self.folder, f"{name}.png")
        os.replace(session.settled(self.stage.picture, self.folder, 3 if is_ticking else 30), path)

    def crop(self, name, box):
        x, y, width, height = box
        around = x - 24, y - 12, width + 48, height + 24
        picture = os.path.join(self.folder, f"{name}.png")
        session.crop(picture, around, os.path.join(self.folder, f"item-{name}.png"))

    def launch(self):
        self.settled("empty")
        self.corvella = Corvella(is_shown=False)

    def points(self, length):
        return length * self.stage.scale

    def open_by_start(self):
        if not self.corvella.popover():
            self.corvella.start_again()
        self.wait_for_keyboard()

    def open_by_item(self):
        """Opens it as a person would, by the item, where it is closed."""
        if self.corvella.popover():
            return
        if self.stage.opens_by == "start":
            self.open_by_start()
            return
        self.wait_for_item()
        x, y, width, height = self.item
        is_double = self.stage.opens_by == "double click"
        press = self.stage.double_click if is_double else self.stage.click
        press(x + width // 2, y + height // 2)
        self.wait_for_keyboard()

    def wait_for_keyboard(self):
        def has_keyboard():
            # Itself or, where it is a part of one, its window.
            each = self.corvella.popover()
            while each and not desktop.has_state(each, Atspi.StateType.ACTIVE):
                each = each.get_parent()
            return each and self.stage.keys_go_to("Corvella")

        wait_until(has_keyboard, "the popover opens and has the keyboard", 30)

    def close(self):
        if self.corvella.popover():
            self.stage.press_key("Escape")
            self.corvella.wait_until_closed()

    def popover(self):
        """The popover's body in pixels: x, y, width, height. It opens on the tab that was chosen."""
        tab = self.corvella.find("page tab", "Focus").get_extents(Atspi.CoordType.SCREEN)
        return tuple(self.points(each) for each in (tab.x - 8, tab.y - 8, 400, 500))

    def is_black(self, picture, middle, *places):
        """Whether all places are, given in points from a pixel of the screen's upper edge."""
        return all(
            max(session.colour(picture, middle + self.points(x), self.points(y))) <= BLACK
            for x, y in places
        )

    def widget_is(self, width, height, middle=None):
        """Whether the widget has that size, by what is black and what is not."""
        middle = middle or self.stage.size[0] // 2
        picture = self.picture("widget")
        side = width // 2
        inside = [(0, 3), (8 - side, 3), (side - 8, 3), (0, height - 3)]
        outside = [(-side - 12, height + 6), (0, height + 6), (2 - side, height - 2)]
        return self.is_black(picture, middle, *inside) and not any(
            self.is_black(picture, middle, each) for each in outside
        )

    def wait_for_widget(self, what, width=150, height=30, middle=None, seconds=20):
        wait_until(lambda: self.widget_is(width, height, middle), what, seconds)

    def keep(self, picture, name):
        old, new = (os.path.join(self.folder, f"{each}.png") for each in (picture, name))
        os.replace(old, new)

    def find_item(self):
        """Where the item stands by now, while the timer is off: others may have pushed it aside."""
        self.stage.move(40, self.stage.size[1] // 2)  # It may look different under the pointer.
        idle, now = os.path.join(self.folder, "idle.png"), self.picture("now")
        if not session.difference(idle, now, self.first):
            return self.first
        x, y, width, height = self.first
        more = self.stage.scale * 3
        wide = x - more, y - more, width + 2 * more, height + 2 * more
        found = session.place_of(idle, wide, now, self.stage.panel())
        return found and (found[0] + more, found[1] + more, width, height)

    def wait_for_item(self, seconds=90):
        if self.stage.opens_by == "start":
            return
        if not self.first:
            raise AssertionError("nobody knows where the item is")

        def stands_still():
            self.item = self.find_item()
            return self.item and self.item == self.find_item()

        wait_until(stands_still, "the item is in the panel", seconds)


def the_item_shows_its_title(scene):
    minute = None
    while minute != time.localtime().tm_min:  # Else a clock has changed beside the item.
        minute = time.localtime().tm_min
        ran = find_title(scene)
    is_wide = ran[2] > scene.stage.panel()[3]
    if is_wide != (scene.stage.title != "square"):
        raise AssertionError(f"the item is {ran[2]} x {ran[3]}, expected {scene.stage.title}")


def find_title(scene):
    """Finds the item, and returns the box that it covers while the timer runs."""
    scene.settled("idle")
    scene.open_by_start()
    scene.corvella.press("Focus", "page tab")
    scene.corvella.press("Start")
    scene.close()
    wait_until(lambda: changed(scene, "idle", "running"), "the item changes with the timer", 20)
    scene.settled("running", is_ticking=True)
    ran = changed(scene, "idle", "running")
    scene.open_by_start()
    scene.corvella.press("Reset")
    scene.close()
    # What the timer changes and what was not there before is the item, not what it pushed aside.
    scene.first = session.common(ran, changed(scene, "empty", "idle")) or ran
    scene.crop("idle", scene.first)
    scene.crop("running", ran)
    return ran


def changed(scene, before, after):
    """What differs in the panel; the widget, which shows the timer too, is left out."""
    if after == "running":
        scene.picture(after)
    one, other = (os.path.join(scene.folder, f"{each}.png") for each in (before, after))
    x, y, width, height = scene.stage.panel()
    middle, half = x + width // 2, scene.points(170)
    right = session.difference(one, other, (middle + half, y, width - half - middle, height))
    return right or session.difference(one, other, (x, y, middle - half - x, height))


def the_item_opens_the_popover_beside_the_panel(scene):
    scene.open_by_item()
    try:
        # A window that is put into its frame takes its place in the frame for that on the screen.
        wait_until(lambda: not fault_of_place(scene), "the popover stands beside the panel")
    except AssertionError as error:
        raise AssertionError(fault_of_place(scene)) from error
    scene.picture("popover")
    scene.close()


def fault_of_place(scene):
    """What is wrong with where the popover stands; None where nothing is."""
    left, top, width, height = scene.popover()
    _, panel_top, screen_width, thickness = scene.stage.panel()
    is_above = scene.stage.panel_edge == "top"
    gap = top - (panel_top + thickness) if is_above else panel_top - (top + height)
    if not -1 <= gap <= scene.points(GAP):
        return f"{gap} pixels between the panel and the popover"
    if left < 0 or left + width > screen_width:
        return "it hangs over the screen's edge"
    # Without an item it stands where items would be.
    item = scene.item or (screen_width, 0, 0, 0)
    middle = item[0] + item[2] / 2
    wanted = min(max(middle - width / 2, 0), screen_width - width)
    if abs(left - wanted) > scene.points(GAP) + item[2]:
        return f"it stands at {left}, the item's middle is {middle}"
    return None


def keys_reach_the_popover_at_once(scene):
    scene.open_by_item()
    scene.corvella.press("Focus", "page tab")
    scene.close()
    scene.open_by_item()
    scene.stage.type_text("plan")
    wait_until(lambda: stored().get("taskName") == "plan", "the text is stored", 20)
    scene.close()


def a_click_elsewhere_closes_the_popover(scene):
    scene.open_by_item()
    width, height = scene.stage.size
    scene.stage.click(width // 4, height // 2)
    scene.corvella.wait_until_closed()


def escape_and_the_item_close_the_popover(scene):
    scene.open_by_item()
    scene.stage.press_key("Escape")
    scene.corvella.wait_until_closed()
    if scene.item:
        scene.open_by_item()
        x, y, width, height = scene.item
        scene.stage.click(x + width // 2, y + height // 2)
        scene.corvella.wait_until_closed()


def the_clipboard_is_read_and_written(scene):
    text = "so do i  ,i think.Yes"
    scene.stage.copy(text)
    scene.open_by_item()
    corvella = scene.corvella
    corvella.press("Actions", "page tab")
    area = corvella.find("text", "Clipboard text")
    wait_until(lambda: text_of(area) == text, "the text is pasted", 20)
    corvella.press("Fix spacing & case")
    corvella.press("Copy")
    wait_until(lambda: scene.stage.clipboard() == "So do I, I think. Yes", "it is copied", 20)
    corvella.press("Focus", "page tab")
    scene.close()


def text_of(area):
    area.clear_cache()
    return Atspi.Text.get_text(area, 0, -1)


def the_widget_lies_over_the_panel(scene):
    scene.stage.move(40, scene.stage.size[1] // 2)
    scene.wait_for_widget("the widget is at the top, 150 x 30")
    scene.keep("widget", "widget-collapsed")


def the_pointer_grows_the_widget(scene):
    keyboard = scene.stage.keyboard_owner()
    scene.stage.move(scene.stage.size[0] // 2, scene.points(12))
    scene.wait_for_widget("the widget grows to 320 x 96", 320, 96)
    scene.keep("widget", "widget-expanded")
    scene.stage.click(scene.stage.size[0] // 2, scene.points(12))
    scene.stage.move(40, scene.stage.size[1] // 2)
    scene.wait_for_widget("the widget shrinks again")
    if scene.stage.keyboard_owner() != keyboard:
        raise AssertionError("it took the keyboard")


def a_compositor_may_go_or_come(scene):
    try_composited(scene, not scene.stage.composited)


def and_come_or_go_again(scene):
    try_composited(scene, scene.stage.composited)


def try_composited(scene, is_composited):
    name = "with" if is_composited else "without"
    (scene.stage.start_compositor if is_composited else scene.stage.stop_compositor)()
    scene.wait_for_widget(f"the widget has its shape {name} a compositor")
    scene.open_by_item()
    scene.picture(f"popover-{name}-compositor")
    scene.close()


def the_item_comes_back_with_its_panel(scene):
    scene.stage.restart_panel()
    scene.wait_for_item()
    scene.wait_for_widget("the widget lies over the new panel")
    scene.open_by_item()
    scene.close()


def the_widget_moves_to_the_first_monitor(scene):
    stage = scene.stage
    middle = stage.two_monitors()
    try:
        scene.wait_for_widget("the widget is on the right monitor", middle=middle)
        scene.keep("widget", "two-monitors")
    finally:
        stage.one_monitor()
    scene.wait_for_widget("the widget is in the middle again")


def the_widget_follows_the_screens_size(scene):
    stage = scene.stage
    width, height = stage.resize(0.8)
    try:
        scene.wait_for_widget("the widget is in the smaller screen's middle", middle=width // 2)
        scene.open_by_start()
        left, top, *_ = scene.popover()
        if left + scene.points(400) > width or top + scene.points(500) > height:
            raise AssertionError(f"the popover at {left}, {top} hangs over {width} x {height}")
        scene.keep("widget", "smaller-screen")
        scene.close()
    finally:
        stage.resize(1)
    scene.wait_for_widget("the widget is in the middle again")
    scene.wait_for_item()
    scene.open_by_item()
    scene.close()


CHECKS = [
    the_item_shows_its_title,
    the_item_opens_the_popover_beside_the_panel,
    keys_reach_the_popover_at_once,
    a_click_elsewhere_closes_the_popover,
    escape_and_the_item_close_the_popover,
    the_clipboard_is_read_and_written,
    the_widget_lies_over_the_panel,
    the_pointer_grows_the_widget,
    a_compositor_may_go_or_come,
    and_come_or_go_again,
    the_item_comes_back_with_its_panel,
    the_widget_moves_to_the_first_monitor,
    the_widget_follows_the_screens_size,
]


def sentence(check):
    return check.__name__.replace("_", " ")


def attempt(check, scene):
    """Why a check failed; None when it passed."""
    try:
        check(scene)
        return None
    except Exception as error:  # Whatever it is, the others are still tried.
        traceback.print_exc()
        try:
            scene.picture("failed-" + check.__name__)
            scene.close()
        except Exception:
            pass
        return str(error) or type(error).__name__


def try_all(stage, scene):
    outcome = {"version": "", "passed": [], "failed": {}, "not_tried": []}
    checks = [*CHECKS, *stage.checks]
    if nameless := set(stage.cannot) - {each.__name__ for each in checks}:
        raise AssertionError(f"there are no checks named {nameless}")
    for check in checks:
        why_not = stage.cannot.get(check.__name__)
        if why_not:
            outcome["not_tried"].append(f"{sentence(check)} ({why_not})")
            continue
        began = time.monotonic()
        failure = attempt(check, scene)
        print(sentence(check), "passed" if failure is None else failure, file=sys.stderr, end=", ")
        print(f"{time.monotonic() - began:.1f} s", file=sys.stderr, flush=True)
        if failure is None:
            outcome["passed"].append(sentence(check))
        else:
            outcome["failed"][sentence(check)] = re.sub(r"\s+", " ", failure)
    return outcome


def main():
    Corvella.program, name, scale, results = sys.argv[1:]
    stage = session.load(name)(int(scale))
    scene = Scene(stage, os.path.dirname(results))
    outcome = {"version": "", "passed": [], "failed": {}, "not_tried": []}
    try:
        outcome["version"] = stage.version()
        stage.start()
        desktop.enable_accessibility()
        scene.launch()
        outcome = {**try_all(stage, scene), "version": outcome["version"]}
    except Exception as error:
        traceback.print_exc()
        outcome["failed"]["starts"] = str(error) or type(error).__name__
    finally:
        if scene.corvella:
            scene.corvella.stop()
        stage.stop()
    with open(results, "w", encoding="utf-8") as file:
        json.dump(outcome, file)


if __name__ == "__main__":
    main()
