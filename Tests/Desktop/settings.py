"""The settings pane by screen reader and by keyboard alone, and what its switches change."""

import os
import shutil
import subprocess
import unittest

from gi.repository import Atspi

import desktop
from desktop import Corvella, has_state, press_key, run, store, stored, wait_until

AUTOSTART = os.path.join(os.environ["XDG_CONFIG_HOME"], "autostart")
ENTRY = os.path.join(AUTOSTART, "org.corvella.Corvella.desktop")
GENERATOR = "/usr/lib/systemd/user-generators/systemd-xdg-autostart-generator"
FAILURE = "Couldn't change login item (run Corvella as an app bundle): "


def remove(path):
    if os.path.isdir(path) and not os.path.islink(path):
        shutil.rmtree(path)
    elif os.path.lexists(path):
        os.remove(path)


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def started_at_login():
    """The command that systemd would run at login; None where it would run none."""
    units = os.path.join(os.environ["XDG_RUNTIME_DIR"], "units")
    shutil.rmtree(units, ignore_errors=True)
    os.makedirs(units)
    subprocess.run([GENERATOR, units, units, units], check=True, capture_output=True, timeout=20)
    unit = os.path.join(units, "app-org.corvella.Corvella@autostart.service")
    if not os.path.exists(unit):
        return None
    with open(unit, encoding="utf-8") as file:
        return next(line for line in file if line.startswith("ExecStart=")).strip()


class Settings(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        remove(os.path.dirname(desktop.settings_file()))
        remove(AUTOSTART)
        self.corvella = None

    def tearDown(self):
        if self.corvella:
            self.corvella.stop()

    def open_settings(self, **environment):
        self.corvella = Corvella(environment=environment)
        self.corvella.open_popover()
        self.corvella.press("Settings", "check box")
        self.corvella.find("check box", "Launch at login")
        return self.corvella

    def is_on(self, name):
        return has_state(self.corvella.find("check box", name), Atspi.StateType.CHECKED)

    def wait_until_on(self, name, is_on=True):
        wait_until(lambda: self.is_on(name) == is_on, f"{name} is {'on' if is_on else 'off'}")

    def widget(self):
        """Width and height in points of the widget's window; None while it is not shown."""
        for line in run("xwininfo -root -children").splitlines():
            words = line.split()
            if '"Corvella": ("corvella"' in line and "IsViewable" in run(f"xwininfo -id {words[0]}"):
                size = next(word for word in words if "+" in word).split("+")[0]
                return tuple(round(int(side) / desktop.scale()) for side in size.split("x"))
        return None

    def test_the_widget_goes_and_comes_with_its_switch(self):
        corvella = self.open_settings()
        wait_until(lambda: self.widget() == (150, 30), "the widget is shown")
        self.assertTrue(self.is_on("Show notch widget"))
        corvella.press("Show notch widget", "check box")
        wait_until(lambda: not self.widget(), "the widget is gone")
        wait_until(lambda: stored()["showNotch"] is False, "that is stored")
        self.wait_until_on("Show notch widget", False)
        corvella.press("Show notch widget", "check box")
        wait_until(lambda: self.widget() == (150, 30), "the widget is back, collapsed")
        wait_until(lambda: stored()["showNotch"] is True, "that is stored too")

    def test_a_widget_that_was_switched_off_stays_off(self):
        store(showNotch=False)
        self.open_settings()
        self.assertFalse(self.is_on("Show notch widget"))
        self.assertIsNone(self.widget())
        store(showNotch=True)
        wait_until(lambda: self.widget() == (150, 30), "an edit of the file brings it back")
        self.wait_until_on("Show notch widget")

    def test_launching_at_login_is_what_the_session_is_told(self):
        if not os.path.exists(GENERATOR):
            self.skipTest("systemd is not installed: what it makes of the entry was not tried")
        corvella = self.open_settings()
        self.assertFalse(self.is_on("Launch at login"))
        self.assertIsNone(started_at_login())
        corvella.press("Launch at login", "check box")
        self.wait_until_on("Launch at login")
        self.assertIn(os.path.realpath(Corvella.program), started_at_login())
        corvella.press("Launch at login", "check box")
        self.wait_until_on("Launch at login", False)
        self.assertIsNone(started_at_login())
        self.assertFalse(os.path.exists(ENTRY))

    def test_what_is_changed_elsewhere_shows_at_the_next_opening(self):
        corvella = self.open_settings()
        press_key("Escape")
        corvella.wait_until_closed()
        program = os.path.realpath(Corvella.program)
        write(ENTRY, f"[Desktop Entry]\nType=Application\nName=Corvella\nExec={program}\n")
        corvella.open_popover()
        self.wait_until_on("Launch at login")
        corvella.press("Focus", "page tab")
        os.remove(ENTRY)
        corvella.press("Settings", "check box")
        self.wait_until_on("Launch at login", False)

    def test_what_stands_in_the_way_is_said_until_it_is_gone(self):
        corvella = self.open_settings()
        ways = {
            "a file in the way": lambda: write(AUTOSTART, ""),
            "a folder where nothing can be made": lambda: os.symlink("/proc/sys", AUTOSTART),
            "a folder of that name": lambda: os.makedirs(os.path.join(ENTRY, "x")),
        }
        if os.geteuid() != 0:
            ways["a read-only folder"] = lambda: os.makedirs(AUTOSTART, 0o500)
        for name, block in ways.items():
            with self.subTest(name):
                block()
                corvella.press("Launch at login", "check box")
                self.assertGreater(len(self.wait_for_failure()), len(FAILURE))
                self.wait_until_on("Launch at login", False)
                desktop.screenshot("settings-error")
                remove(AUTOSTART)
                corvella.press("Launch at login", "check box")
                self.wait_until_on("Launch at login")
                wait_until(lambda: not self.failures(), "nothing is in the way any more")
                remove(AUTOSTART)
                self.open_anew()

    def test_without_a_home_the_item_cannot_be_changed(self):
        # With a home of its own even the root user would find a place to write to.
        environment = {"HOME": "/proc/self/nowhere", "XDG_CONFIG_HOME": ""}
        corvella = self.open_settings(**environment)
        corvella.press("Launch at login", "check box")
        self.assertIn(FAILURE, self.wait_for_failure())
        self.assertFalse(self.is_on("Launch at login"))

    def test_a_config_folder_that_is_not_absolute_is_ignored(self):
        entry = os.path.join(os.environ["HOME"], ".config", "autostart", os.path.basename(ENTRY))
        corvella = self.open_settings(XDG_CONFIG_HOME="relative")
        corvella.press("Launch at login", "check box")
        wait_until(lambda: os.path.exists(entry), "the entry is in the usual place")
        os.remove(entry)
        self.assertFalse(os.path.exists("relative"))

    def test_the_keyboard_alone_does_everything(self):
        self.corvella = corvella = Corvella()
        corvella.open_popover()
        corvella.tab_to("Settings")
        press_key("space")
        corvella.find("check box", "Launch at login")
        order = ["Show notch widget", "Launch at login", "Quit Corvella", "Focus"]
        for name in order:
            press_key("Tab")
            wait_until(lambda: corvella.focused().get_name() == name, f"{name} has the keyboard")
        for name in reversed(order[:3]):
            press_key("shift+Tab")
            wait_until(lambda: corvella.focused().get_name() == name, f"{name} has it again")
        desktop.screenshot("settings-keyboard")
        press_key("space")
        wait_until(lambda: not self.widget(), "the widget is gone")
        press_key("Tab")
        press_key("space")
        self.wait_until_on("Launch at login")
        press_key("Tab")
        press_key("Return")
        self.assertEqual(corvella.process.wait(20), 0)

    def failures(self):
        return [name for name in self.corvella.shown("label") if name.startswith(FAILURE)]

    def wait_for_failure(self):
        return wait_until(self.failures, "the message")[0]

    def open_anew(self):
        self.corvella.press("Focus", "page tab")
        self.corvella.press("Settings", "check box")
        self.wait_until_on("Launch at login", False)


if __name__ == "__main__":
    desktop.main()
