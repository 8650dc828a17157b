"""Every way to quit, also while those hang whom Corvella has asked something."""

import ctypes
import os
import select
import shutil
import signal
import stat
import subprocess
import sys
import time
import unittest

import psutil
from gi.repository import Atspi

import desktop
import meetings
import quick_actions
from desktop import Corvella, has_state, press_key, run, store, stored, wait_until

CALENDAR_SERVICES = ("Calendar8", "Sources5")
HELPERS = ("expand-events", "open", "play-sound", "send-request", "shortcuts")
PR_SET_CHILD_SUBREAPER = 36
GOAL = 0.2  # Seconds from the press to the end, on a machine that has time for it.
LONGEST = 1.0  # And on one that is busy with other things.


def adopt_orphans():
    """What Corvella leaves behind becomes a child of this test, and so is found."""
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)


def helpers(process):
    """The names of Corvella's helpers among the descendants of a process."""
    found = []
    for each in psutil.Process(process).children(recursive=True):
        try:
            if each.name() in HELPERS and each.status() != psutil.STATUS_ZOMBIE:
                found.append(each.name())
        except psutil.NoSuchProcess:
            pass
    return found


class Quitting(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        adopt_orphans()

    def setUp(self):
        desktop.enable_accessibility()
        for folder in (os.path.dirname(desktop.settings_file()), meetings.CALENDARS):
            shutil.rmtree(folder, ignore_errors=True)
        self.corvella = None

    def tearDown(self):
        if self.corvella:
            self.corvella.stop()
        wait_until(lambda: not helpers(os.getpid()), "no helper is left behind", 20)

    def launch(self):
        self.corvella = Corvella()
        self.corvella.open_popover()
        return self.corvella

    def quit(self, *keys):
        """Ends Corvella by its button, after what the keys do first; says how long it took."""
        corvella = self.corvella
        if "Quit Corvella" not in corvella.shown("push button"):
            corvella.press("Settings", "check box")
        corvella.tab_to("Show notch widget" if keys else "Quit Corvella")
        self.end_by("xdotool key " + " ".join([*keys, "space"]))

    def end_by(self, command):
        process = self.corvella.process
        self.assertNotIn(psutil.STATUS_ZOMBIE, self.states_of_children())
        end = select.poll()
        descriptor = os.pidfd_open(process.pid)
        self.addCleanup(os.close, descriptor)
        end.register(descriptor, select.POLLIN)
        start = time.monotonic()
        run(command)
        self.assertTrue(end.poll(20000), "it ends")
        taken = time.monotonic() - start
        self.assertEqual(process.wait(), 0)
        print(f"{taken * 1000:.0f} ms ", end="", file=sys.stderr, flush=True)
        if taken > GOAL:
            print(f"(more than {GOAL * 1000:.0f}) ", end="", file=sys.stderr, flush=True)
        self.assertLess(taken, LONGEST)

    def states_of_children(self):
        return [each.status() for each in psutil.Process(self.corvella.process.pid).children()]

    def stop_for_good(self, pid):
        """It hangs until the test is over, so whoever waits for its answer does so too."""
        os.kill(pid, signal.SIGSTOP)
        self.addCleanup(os.kill, pid, signal.SIGCONT)

    def start_sound(self):
        socket = os.path.join(os.environ["XDG_RUNTIME_DIR"], "pulse", "native")
        os.makedirs(os.path.dirname(socket), exist_ok=True)
        sound = desktop.Daemon(
            "pulseaudio --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disable-shm=yes -n"
            f" -L 'module-native-protocol-unix socket={socket} auth-anonymous=1'"
            f" -L '{meetings.MICROPHONE}' -L '{meetings.NO_MICROPHONE}'"
        )
        self.addCleanup(sound.stop)
        wait_until(lambda: run("pactl info"), "the sound server answers")
        return sound

    def test_at_once_when_there_is_nothing_to_show_itself_on(self):
        def said(*arguments):
            environment = {
                name: value
                for name, value in os.environ.items()
                if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")
            }
            return subprocess.run(
                [Corvella.program, *arguments],
                capture_output=True, text=True, timeout=20, env=environment,
            )

        self.assertRegex(said("--version").stdout, r"^corvella \d+\.\d+\.\d+\n$")
        self.assertIn("corvella(1)", said("--help").stdout)
        refusal = said()
        self.assertEqual(refusal.returncode, 1)
        self.assertRegex(refusal.stderr, r"^corvella: there is no display: .*\n$")

    def test_with_nothing_under_way(self):
        self.launch()
        self.quit()

    def test_what_was_switched_last_is_on_disk(self):
        self.launch()
        self.quit("space", "Tab", "Tab")
        self.assertIs(stored()["showNotch"], False)

    def test_in_a_rewrite_that_is_never_answered(self):
        self.addCleanup(quick_actions.ClipboardOwner("words").stop)
        server = quick_actions.ModelServer()
        self.addCleanup(server.stop)
        corvella = self.launch()
        corvella.press("Actions", "page tab")
        wait_until(
            lambda: has_state(
                corvella.find("push button", "Rewrite with model"), Atspi.StateType.ENABLED
            ),
            "there is a model",
        )
        server.set(parts=[], then="hold")
        corvella.press("Rewrite with model")
        server.asked_to_rewrite()
        self.assertEqual(helpers(corvella.process.pid), ["send-request"])
        # To leave the tab would give the rewrite up; to close the popover does not.
        press_key("Escape")
        corvella.wait_until_closed()
        self.assertEqual(helpers(corvella.process.pid), ["send-request"])
        self.end_by_menu()

    def test_while_the_calendar_service_hangs(self):
        store(calendarAccess=True)
        for name in CALENDAR_SERVICES:
            run(f"gdbus wait --activate org.gnome.evolution.dataserver.{name}"
                f" --session --timeout 20 org.gnome.evolution.dataserver.{name}")
            self.stop_for_good(desktop.owner(f"org.gnome.evolution.dataserver.{name}"))
        self.launch().press("Meetings", "page tab")
        self.quit()

    def test_beside_a_calendar_that_is_never_read_to_its_end(self):
        store(calendarAccess=True)
        os.makedirs(meetings.CALENDARS)
        os.mkfifo(os.path.join(meetings.CALENDARS, "endless.ics"))
        self.launch().press("Meetings", "page tab")
        self.quit()

    def test_while_a_sound_is_played(self):
        self.start_sound()
        self.ring()
        self.quit()

    def test_while_the_sound_server_hangs(self):
        sound = self.start_sound()
        self.stop_for_good(sound.process.pid)
        self.ring()
        self.quit()

    def test_while_the_microphone_does_not_answer(self):
        sound = self.start_sound()
        corvella = self.launch()
        self.stop_for_good(sound.process.pid)
        corvella.press("Meetings", "page tab")
        corvella.find("label", "Input can't be muted")
        self.quit()

    def test_from_the_menu_of_the_item(self):
        self.corvella = Corvella()
        self.end_by_menu()

    def test_with_a_disk_that_takes_nothing_more(self):
        folder = os.path.dirname(desktop.settings_file())
        store(showNotch=True)
        Corvella.program, program = self.on_full_disk(folder), Corvella.program
        self.addCleanup(setattr, Corvella, "program", program)
        self.launch()
        room = os.statvfs(f"/proc/{self.corvella.process.pid}/root{folder}").f_bavail
        self.assertEqual(room, 0)
        self.quit("space", "Tab", "Tab")

    def on_full_disk(self, folder):
        """A script that runs Corvella where that folder is on a disk without room."""
        unshare = "unshare --mount"
        if os.geteuid() != 0:
            unshare += " --user --map-current-user --keep-caps"
        mounting = (
            "import ctypes, os, sys; "
            "failed = ctypes.CDLL(None, use_errno=True).mount"
            "(b'tmpfs', os.fsencode(sys.argv[1]), b'tmpfs', 0, b'size=64k'); "
            "failed and os._exit(77); "
            "os.system(f'head -c 1M /dev/zero 2>/dev/null >{sys.argv[1]}/filling'); "
            "len(sys.argv) > 2 and os.execv(sys.argv[2], sys.argv[2:])"
        )
        command = f'{unshare} /usr/bin/python3 -c "{mounting}" {folder}'
        if subprocess.run(command, shell=True, capture_output=True, check=False).returncode != 0:
            self.skipTest("No mount namespaces here: the full disk was not tried")
        script = os.path.join(os.environ["HOME"], "on-full-disk")
        with open(script, "w", encoding="utf-8") as file:
            file.write(f"#!/bin/sh\nexec {command} {Corvella.program}\n")
        os.chmod(script, stat.S_IRWXU)
        return script

    def ring(self):
        """The end of a phase, which is heard."""
        store(focusMinutes=0)
        corvella = self.launch()
        corvella.press("Start")
        corvella.find("label", "Short break")

    def end_by_menu(self):
        x, y, width, height = wait_until(self.corvella.settled_item, "the item stands in the tray")
        desktop.click(x + width // 2, y + height // 2, 3)
        press_key("Up")
        self.end_by("xdotool key Return")


if __name__ == "__main__":
    desktop.main()
