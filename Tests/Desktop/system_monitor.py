"""The System tab beside what the machine itself says, and that it samples only while it is seen."""

import os
import re
import subprocess
import time
import unittest

import psutil
from gi.repository import Atspi

import desktop
from desktop import Corvella, has_state, press_key, run, wait_until

TITLES = ["CPU", "Memory", "Disk", "Battery", "Download", "Upload"]
CHARTS = ["CPU history", "Memory history", "Download history", "Upload history"]
TOOLS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools")
INTERVAL = 2.0  # Seconds between two samples.


def battery(*words):
    subprocess.run([os.path.join(TOOLS, "battery"), *map(str, words)], check=True, timeout=10)


def power_profile(name):
    run(
        "gdbus call --system -d net.hadess.PowerProfiles -o /net/hadess/PowerProfiles"
        " -m org.freedesktop.DBus.Properties.Set net.hadess.PowerProfiles ActiveProfile"
        f" \"<'{name}'>\""
    )


class SystemMonitor(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        battery("none")
        self.corvella = Corvella()
        self.addCleanup(self.corvella.stop)

    def open_tab(self):
        self.corvella.open_popover()
        self.corvella.press("System", "page tab")
        wait_until(lambda: self.value("Memory"), "the tab is filled")

    def shown(self, role):
        return [
            each
            for each in desktop.everything(self.corvella.popover())
            if each.get_role_name() == role and desktop.is_showing(each)
        ]

    def value(self, title):
        """What stands at the right end of a row, as it is said."""
        for each in self.shown("label"):
            each.clear_cache()
            if each.get_name().startswith(title + ": "):
                return each.get_name()[len(title) + 2 :]
        return None

    def footer(self):
        return self.value("Thermal")

    def wait_for_value(self, title, pattern):
        return wait_until(
            lambda: re.fullmatch(pattern, self.value(title)), f"{title} shows {pattern}"
        )

    def wakeups(self, seconds):
        """How often a thread of the program goes to sleep in some seconds."""

        folder = f"/proc/{self.corvella.process.pid}/task"

        def switches(thread):
            with open(f"{folder}/{thread}/status", encoding="utf-8") as file:
                found = re.search(r"^voluntary_ctxt_switches:\s+(\d+)", file.read(), re.MULTILINE)
            return int(found[1])

        before = sum(map(switches, os.listdir(folder)))
        time.sleep(seconds)
        return sum(map(switches, os.listdir(folder))) - before

    def test_every_row_says_its_title_and_value(self):
        self.open_tab()
        rows = [each.get_name() for each in self.shown("panel") if each.get_name() in TITLES]
        self.assertEqual(rows, TITLES)
        self.wait_for_value("CPU", r"\d{1,3}%")
        self.wait_for_value("Memory", r"\d+\.\d of \d+\.\d GB")
        self.wait_for_value("Disk", r"\d+ GB free of \d+ GB")
        self.wait_for_value("Battery", "No battery")
        self.wait_for_value("Download", r"\d+(\.\d)? [KMG]?B/s")
        self.wait_for_value("Upload", r"\d+(\.\d)? [KMG]?B/s")
        self.assertRegex(self.footer(), r"(Normal|Fair|Serious|Critical|Unknown) · Up \d+h")
        desktop.screenshot("system")

    def test_memory_and_disk_agree_with_other_tools(self):
        self.open_tab()
        used, total = map(float, re.findall(r"[\d.]+", self.value("Memory")))
        memory = psutil.virtual_memory()
        self.assertAlmostEqual(total, memory.total / 2**30, delta=0.051)
        self.assertAlmostEqual(used, (memory.total - memory.available) / 2**30, delta=0.3)
        free, size = map(float, re.findall(r"\d+", self.value("Disk")))
        disk = os.statvfs("/")
        self.assertAlmostEqual(size, disk.f_blocks * disk.f_frsize / 1e9, delta=0.51)
        self.assertAlmostEqual(free, disk.f_bavail * disk.f_frsize / 1e9, delta=1)

    def test_every_chart_says_its_newest_value_and_its_range(self):
        self.open_tab()
        charts = {each.get_name(): each for each in self.shown("chart")}
        self.assertEqual(list(charts), CHARTS)
        for chart in charts.values():
            self.assertRegex(
                chart.get_description(),
                r"^Newest \S+( \S+)?, lowest \S+( \S+)?, highest \S+( \S+)?, on a scale up to \S+",
            )
            self.assertEqual(chart.get_minimum_value(), 0)
        self.assertEqual(charts["CPU history"].get_maximum_value(), 100)
        memory = psutil.virtual_memory()
        self.assertAlmostEqual(
            charts["Memory history"].get_current_value(),
            (1 - memory.available / memory.total) * 100,
            delta=3,
        )

    def test_a_busy_processor_is_seen(self):
        self.open_tab()
        busy = [subprocess.Popen(["sh", "-c", "while :; do :; done"]) for _ in range(os.cpu_count())]
        for each in busy:
            self.addCleanup(each.wait)
            self.addCleanup(each.kill)
        self.wait_for_value("CPU", r"(9\d|100)%")

    def test_a_battery_that_comes_and_goes_is_told_at_once(self):
        self.open_tab()
        battery(87.0, "discharging", 185)
        self.wait_for_value("Battery", "87% · on battery · 3h 5m left")
        bar = self.corvella.find("progress bar", "Battery charge")
        self.assertEqual(bar.get_current_value(), 87)
        desktop.screenshot("system-battery")
        battery(19.6, "discharging")
        self.wait_for_value("Battery", "20% · on battery")
        desktop.screenshot("system-battery-low")
        battery(19.6, "charging")
        self.wait_for_value("Battery", "20% · charging")
        battery(100.0, "full")
        self.wait_for_value("Battery", "100% · plugged in")
        battery("none")
        self.wait_for_value("Battery", "No battery")
        wait_until(
            lambda: "Battery charge" not in [b.get_name() for b in self.shown("progress bar")],
            "the bar goes with the battery",
        )

    def test_low_power_mode_stands_in_the_footer(self):
        self.open_tab()
        self.assertNotIn("Low Power Mode", self.footer())
        power_profile("power-saver")
        self.addCleanup(power_profile, "balanced")
        wait_until(lambda: " · Low Power Mode · Up " in self.footer(), "low power mode is told")
        power_profile("balanced")
        wait_until(lambda: "Low Power" not in self.footer(), "low power mode is over")

    def test_it_samples_while_it_is_seen_and_never_else(self):
        self.open_tab()
        self.assertGreater(self.wakeups(1.2 * INTERVAL), 0)
        press_key("Escape")
        self.corvella.wait_until_closed()
        self.assert_nothing_wakes_it_up("closed")

        self.corvella.open_popover()
        self.wait_for_value("Battery", "50% · on battery")
        self.corvella.press("Settings", "check box")
        self.assert_nothing_wakes_it_up("settings")
        self.corvella.press("Settings", "check box")
        wait_until(lambda: self.value("Memory"), "the tab is back")
        self.corvella.press("Shortcuts", "page tab")
        self.assert_nothing_wakes_it_up("another tab")

    def assert_nothing_wakes_it_up(self, while_):
        wait_until(lambda: self.wakeups(0.3) == 0, "the last change has been told to everyone")
        battery(50.0, "charging")
        battery(50.0, "discharging")
        self.assertEqual(self.wakeups(2.2 * INTERVAL), 0, while_)

    def test_the_keyboard_leads_to_the_tab(self):
        self.corvella.open_popover()
        system = self.corvella.find("page tab", "System")
        for _ in range(20):
            if has_state(system, Atspi.StateType.FOCUSED):
                break
            press_key("Tab")
            time.sleep(0.05)
        press_key("space")
        wait_until(lambda: self.value("Memory"), "the tab opens")
        press_key("Tab")
        wait_until(
            lambda: has_state(
                self.corvella.find("page tab", "Shortcuts"), Atspi.StateType.FOCUSED
            ),
            "the keyboard goes on",
        )


if __name__ == "__main__":
    desktop.main()
