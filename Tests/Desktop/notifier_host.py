"""The status item in a panel that shows StatusNotifierItems as square pictures, at the bottom."""

import os
import re
import unittest

from gi.repository import Atspi

import desktop
from desktop import IDLE, Corvella, Daemon, click, press_key, run, wait_until

WATCHER = "org.kde.StatusNotifierWatcher"
PANEL = """[General]
__userfile__=true
panels=panel1
[panel1]
plugins=statusnotifier
position=Bottom
panelSize=32
[statusnotifier]
type=statusnotifier
alignment=Left
"""
ITEM = (16, 704)  # The panel's only picture, on a screen of 1280 x 720.


def registered():
    """The bus name of the item that the panel knows; None while it knows none."""
    answer = run(
        f"gdbus call --session -d {WATCHER} -o /StatusNotifierWatcher"
        f" -m org.freedesktop.DBus.Properties.Get {WATCHER} RegisteredStatusNotifierItems"
    )
    found = re.search(r"'([^'/]+)/StatusNotifierItem'", answer)
    return found and found[1]


def property_of(item, name):
    return run(
        f"gdbus call --session -d {item} -o /StatusNotifierItem"
        f" -m org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem {name}"
    )


class NotifierHost(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "lxqt")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "panel.conf"), "w", encoding="utf-8") as file:
            file.write(PANEL)
        self.start_panel()
        self.corvella = Corvella(is_shown=False)
        self.addCleanup(self.corvella.stop)

    def start_panel(self):
        self.panel = Daemon("lxqt-panel")
        self.addCleanup(self.panel.stop)
        run(f"gdbus wait --session --timeout 20 {WATCHER}")

    def label(self):
        answer = property_of(registered(), "XAyatanaLabel")
        return re.fullmatch(r"\(<'(.*)'>,\)", answer.strip())[1]

    def open_by_click(self):
        def opened():
            click(*ITEM)  # Again where the panel has not drawn the picture yet.
            return wait_until(self.corvella.popover, "the popover opens", 1)

        return wait_until(opened, "the item is there to be clicked")

    def test_a_click_opens_the_popover_above_the_panel_and_closes_it(self):
        wait_until(registered, "the panel knows the item")
        self.assertEqual(self.label(), IDLE)
        self.open_by_click()
        tab = self.corvella.find("page tab", "Focus").get_extents(Atspi.CoordType.SCREEN)
        self.assertLessEqual(tab.y - 8 + 500, 720 - 32)
        self.corvella.press("Start")
        wait_until(lambda: re.fullmatch("2[45]:..", self.label()), "the time is shown")
        click(*ITEM)
        self.corvella.wait_until_closed()

    def test_the_item_comes_back_with_its_panel(self):
        wait_until(registered, "the panel knows the item")
        self.panel.stop()
        self.start_panel()
        wait_until(registered, "the new panel knows the item")
        self.open_by_click()
        press_key("Escape")
        self.corvella.wait_until_closed()

    def test_the_menu_of_the_panel_quits(self):
        item = wait_until(registered, "the panel knows the item")
        menu = re.search(r"objectpath '(.*)'", property_of(item, "Menu"))[1]
        layout = run(
            f"gdbus call --session -d {item} -o {menu}"
            " -m com.canonical.dbusmenu.GetLayout -- 0 -1 \"['label']\""
        )
        entry = re.search(r"\((\d+), \{'label': <'Quit Corvella'>", layout)[1]
        run(
            f"gdbus call --session -d {item} -o {menu}"
            f" -m com.canonical.dbusmenu.Event {entry} clicked '<0>' 0"
        )
        self.assertEqual(self.corvella.process.wait(20), 0)


if __name__ == "__main__":
    desktop.main()
