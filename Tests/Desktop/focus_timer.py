"""Whole phases of the focus timer, from the panel to the notification and back."""

import json
import os
import shutil
import signal
import struct
import subprocess
import tempfile
import time
import unittest
import unittest.mock

from gi.repository import Atspi

import desktop
from desktop import (
    IDLE,
    Corvella,
    Daemon,
    click,
    has_state,
    press_key,
    run,
    store,
    stored,
    type_text,
    wait_until,
)

CUP = "\u2615\ufe0e "


def notifications():
    """What the notification daemon has shown: pairs of title and body, newest first."""
    history = json.loads(run("dunstctl history"))["data"][0]
    return [(each["summary"]["data"], each["body"]["data"]) for each in history]


class FocusTimer(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        shutil.rmtree(os.path.dirname(desktop.settings_file()), ignore_errors=True)
        self.corvella = None

    def tearDown(self):
        if self.corvella:
            self.corvella.stop()

    def launch(self, **values):
        if values:
            store(**values)
        self.corvella = Corvella()
        return self.corvella

    def test_the_bar_shows_the_circle_and_the_popover_its_tabs(self):
        corvella = self.launch()
        self.assertEqual(corvella.title(), IDLE)
        corvella.open_popover()
        tabs = [
            each.get_name()
            for each in desktop.everything(corvella.popover())
            if each.get_role_name() == "page tab"
        ]
        self.assertEqual(tabs, ["Focus", "Actions", "Meetings", "System", "Shortcuts"])
        self.assertTrue(has_state(corvella.find("page tab", "Focus"), Atspi.StateType.SELECTED))
        desktop.screenshot("popover")

    def test_the_popover_hangs_under_its_item_inside_the_screen(self):
        corvella = self.launch()
        popover = corvella.open_popover()
        tab = corvella.find("page tab", "Focus").get_extents(Atspi.CoordType.SCREEN)
        left, top = tab.x - 8, tab.y - 8
        self.assertGreaterEqual(left, 0)
        # The program speaks of points, the item is found in pixels.
        scale = desktop.scale()
        self.assertLessEqual(left + 400, desktop.screen_width() / scale)
        _, y, _, height = corvella.item()
        self.assertGreaterEqual(top, (y + height) / scale)
        self.assertTrue(popover)

    def test_a_click_elsewhere_escape_and_the_item_close_the_popover(self):
        corvella = self.launch()
        corvella.open_popover()
        click(200, 600)
        corvella.wait_until_closed()
        corvella.open_popover()
        press_key("Escape")
        corvella.wait_until_closed()
        corvella.open_popover()
        corvella.click_item()
        corvella.wait_until_closed()
        corvella.open_popover()

    def test_closed_by_the_window_manager_it_gives_the_desktop_back(self):
        corvella = self.launch()
        corvella.open_popover()
        press_key("alt+F4")
        corvella.wait_until_closed()
        corvella.open_popover()

    def test_tab_and_settings_survive_closing(self):
        corvella = self.launch()
        corvella.open_popover()
        corvella.press("System", "page tab")
        press_key("Escape")
        corvella.wait_until_closed()
        corvella.open_popover()
        system = corvella.find("page tab", "System")
        self.assertTrue(has_state(system, Atspi.StateType.SELECTED))
        corvella.press("Settings", "check box")
        self.assertFalse(has_state(system, Atspi.StateType.SELECTED))
        corvella.press("System", "page tab")
        wait_until(lambda: has_state(system, Atspi.StateType.SELECTED), "the tab is back")

    def test_keystrokes_reach_the_task_at_once_and_return_starts(self):
        corvella = self.launch()
        corvella.open_popover()
        type_text('Say "hi" \\ <b>')
        wait_until(lambda: stored()["taskName"] == 'Say "hi" \\ <b>', "the task is stored")
        press_key("Return")
        corvella.wait_for_title("2[45]:..")
        corvella.find("push button", "Pause")
        press_key("Return")
        corvella.find("push button", "Start")

    def own(self, selection):
        """Another program that hands out the selection's name as its text."""
        file = tempfile.NamedTemporaryFile("w")  # For as long as the program may read it.
        self.addCleanup(file.close)
        file.write(selection)
        file.flush()
        program = Daemon(f"xclip -selection {selection} -quiet {file.name}")
        self.addCleanup(program.process.wait)
        self.addCleanup(program.process.kill)
        return program.process

    def test_it_pastes_what_others_hold_and_never_waits_for_them(self):
        corvella = self.launch()
        corvella.open_popover()
        owners = [self.own(each) for each in ("clipboard", "primary")]
        box = corvella.find("text", "What are you working on?").get_extents(Atspi.CoordType.SCREEN)
        points = box.x + box.width - 30, box.y + box.height // 2
        end = [round(each * desktop.scale()) for each in points]

        def pasted():
            press_key("ctrl+a")
            press_key("ctrl+v")
            return stored()["taskName"] == "clipboard"

        wait_until(pasted, "what was copied is pasted")
        click(*end, 2)
        wait_until(lambda: stored()["taskName"] == "clipboardprimary", "what is selected, too")
        for each in owners:
            each.send_signal(signal.SIGSTOP)
        press_key("ctrl+v")
        click(*end, 2)
        click(*end, 3)
        press_key("Escape")
        type_text("!")
        wait_until(lambda: stored()["taskName"] == "clipboardprimary!", "it goes on", 8)

    def test_pausing_keeps_the_time_and_resetting_brings_the_circle_back(self):
        corvella = self.launch()
        corvella.open_popover()
        corvella.press("Start")
        corvella.wait_for_title("24:5.")
        corvella.press("Pause")
        corvella.find("push button", "Start")
        shown = corvella.title()
        time.sleep(1.2)  # A timer that still ran would have gone on by now.
        self.assertEqual(corvella.title(), shown)
        corvella.press("Reset")
        corvella.wait_for_title(IDLE)

    def test_the_item_leaves_nothing_behind(self):
        corvella = self.launch()

        def corners_are_the_panels():
            x, y, width, height = corvella.settled_item()
            left = 4  # Pixels of the panel beside it.
            picture = subprocess.run(
                f"import -window root -crop {left + width}x{height}+{x - left}+{y} -depth 8 rgb:-",
                shell=True, check=True, capture_output=True, timeout=20,
            ).stdout
            rows = [picture[3 * row * (left + width) :][: 3 * (left + width)] for row in range(height)]
            outer = rows[: height // 5] + rows[-(height // 5) :]

            def is_panel(row, column):
                shade = 12  # The popover's shadow may fall on it.
                return abs(row[3 * column] - row[0]) < shade

            return all(is_panel(row, left) and is_panel(row, left + width - 1) for row in outer)

        wait_until(corners_are_the_panels, "the circle stands on the panel")
        time.sleep(0.5)
        corvella.open_popover()
        for button, title in [("Start", "2[45]:.."), ("Reset", IDLE)] * 2:
            corvella.press(button)
            corvella.wait_for_title(title)
            time.sleep(0.5)  # Whatever is left there stays.
            wait_until(corners_are_the_panels, f"{title} stands on the panel")

    def test_skipping_leads_to_a_break_with_the_cup(self):
        corvella = self.launch()
        corvella.open_popover()
        corvella.press("Skip")
        corvella.find("label", "Short break")
        corvella.find("label", "0 sessions")
        corvella.wait_for_title(IDLE)
        corvella.press("Start")
        corvella.wait_for_title(CUP + "0[45]:..")

    def test_the_end_of_a_phase_is_heard_notified_and_counted(self):
        socket = os.path.join(os.environ["XDG_RUNTIME_DIR"], "pulse", "native")
        os.makedirs(os.path.dirname(socket), exist_ok=True)
        sound = Daemon(
            "pulseaudio --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disable-shm=yes -n"
            f" -L 'module-native-protocol-unix socket={socket} auth-anonymous=1'"
            " -L 'module-null-sink sink_name=out'"
        )
        self.addCleanup(sound.stop)
        wait_until(lambda: run("pactl list short sinks"), "the sound server answers")
        heard = tempfile.TemporaryFile()
        self.addCleanup(heard.close)
        recorder = Daemon(
            "parec -d out.monitor --format=s16le --rate=44100 --channels=1 --latency-msec=50",
            stdout=heard,
        )
        self.addCleanup(recorder.stop)
        dunst = Daemon("dunst")
        self.addCleanup(dunst.stop)
        run("gdbus wait --session --timeout 10 org.freedesktop.Notifications")

        corvella = self.launch(focusMinutes=0, taskName='the "C:\\" <i>mess</i>')
        corvella.open_popover()
        corvella.press("Start")
        corvella.find("label", "Short break")
        corvella.find("label", "1 sessions")
        corvella.wait_for_title(IDLE)
        wait_until(lambda: run("dunstctl count displayed").strip() == "1", "the notification")
        run("dunstctl close-all")
        expected = (
            "Focus session complete",
            "Nice work on “the \"C:\\\" &lt;i&gt;mess&lt;/i&gt;”. Time for a break.",
        )
        self.assertEqual(wait_until(notifications, "the history"), [expected])

        def loudest():
            heard.seek(0)
            return max((abs(each) for each, in struct.iter_unpack("<h", heard.read())), default=0)

        wait_until(lambda: loudest() > 500, "the sound is heard")

    def test_the_item_comes_back_when_the_panel_restarts(self):
        corvella = self.launch()
        wait_until(corvella.item, "the item stands in the tray")
        os.kill(desktop.owner("org.xfce.Panel"), signal.SIGKILL)
        wait_until(lambda: not corvella.item(), "the item goes with its panel")
        Daemon("xfce4-panel --disable-wm-check")  # Stays for the tests that follow.
        corvella.open_popover()

    def test_a_second_start_shows_the_popover_and_ends(self):
        corvella = self.launch()
        self.assertEqual(corvella.start_again(), 0)
        wait_until(corvella.popover, "the popover of the first opens")
        self.assertEqual(corvella.start_again(), 0)
        self.assertTrue(corvella.popover())

    def test_lengths_and_task_are_kept_over_a_restart(self):
        corvella = self.launch()
        corvella.open_popover()
        corvella.find("spin button", "Focus").do_action(0)
        corvella.find("spin button", "Short").set_current_value(7)
        corvella.find("text", "What are you working on?").set_text_contents("Write")
        wait_until(
            lambda: stored() == {"focusMinutes": 26, "shortMinutes": 7, "taskName": "Write"},
            "all three are stored",
        )
        corvella.stop()
        corvella = self.launch()
        corvella.open_popover()
        self.assertEqual(corvella.find("spin button", "Focus").get_current_value(), 26)
        self.assertEqual(corvella.find("spin button", "Short").get_current_value(), 7)
        task = corvella.find("text", "What are you working on?")
        self.assertEqual(task.get_text(0, -1), "Write")

    def test_what_was_typed_last_outlives_the_end_of_the_session(self):
        for ending in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            corvella = self.launch()
            corvella.open_popover()
            task = corvella.find("text", "What are you working on?")
            task.set_text_contents(ending.name)
            corvella.process.send_signal(ending)
            self.assertEqual(corvella.process.wait(10), 0)
            self.assertEqual(stored()["taskName"], ending.name)

    def hung_bus(self):
        """The address of a bus that takes every question and answers none."""
        bus = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--print-address"],
            stdout=subprocess.PIPE,
            text=True,
        )
        self.addCleanup(bus.wait)
        self.addCleanup(bus.kill)
        address = bus.stdout.readline().strip()
        bus.send_signal(signal.SIGSTOP)
        return address

    def test_a_system_bus_that_hangs_holds_up_neither_start_nor_end(self):
        with unittest.mock.patch.dict(os.environ, DBUS_SYSTEM_BUS_ADDRESS=self.hung_bus()):
            self.launch()
        self.corvella.stop()

    def test_a_session_bus_that_hangs_holds_up_neither_start_nor_end(self):
        environment = {**os.environ, "DBUS_SESSION_BUS_ADDRESS": self.hung_bus()}
        corvella = subprocess.Popen([Corvella.program], env=environment)
        self.addCleanup(corvella.kill)
        wait_until(lambda: f'"Corvella {IDLE}"' in run("xwininfo -root -tree"), "the item is there")
        corvella.terminate()
        self.assertEqual(corvella.wait(10), 0)

    def test_everything_is_reached_and_used_by_keyboard_alone(self):
        corvella = self.launch()
        corvella.open_popover()
        seen = []
        for _ in range(14):
            focused = wait_until(self.focused, "something has the keyboard")
            seen.append((focused.get_role_name(), focused.get_name()))
            press_key("Tab")
            wait_until(lambda: self.focused() != focused, "the keyboard moves on")
        self.assertEqual(len(set(seen)), 13, seen)
        self.assertEqual(seen[0], seen[13])

    def focused(self):
        return next(
            each
            for each in desktop.everything(self.corvella.popover())
            if has_state(each, Atspi.StateType.FOCUSED)
            and has_state(each, Atspi.StateType.FOCUSABLE)
        )


if __name__ == "__main__":
    desktop.main()
