"""The Meetings tab over real calendars, a real sound server and programs that open links."""

import contextlib
import datetime
import os
import shlex
import shutil
import subprocess
import time
import unittest

from gi.repository import Atspi

import desktop
from desktop import Corvella, Daemon, has_state, press_key, run, wait_until

TOOLS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools")
CALENDARS = os.path.join(os.environ["XDG_DATA_HOME"], "calendars")
ZOOM = "https://zoom.us/j/123?pwd=a&b=%20ä{};"
TEAMS = "https://teams.microsoft.com/l/meetup-join/19%3ameeting"
MICROPHONE = "module-null-source source_name=mic0"
NO_MICROPHONE = "module-null-sink sink_name=out"


def put_noon_here():
    """What is early or late today is so whenever the test runs."""
    ahead = 12 - datetime.datetime.now(datetime.timezone.utc).hour
    os.environ["TZ"] = f"Etc/GMT{-ahead:+d}"
    os.environ["LC_ALL"] = "C.UTF-8"  # A day of 24 hours.
    time.tzset()


def escaped(text):
    return text.replace(",", "\\,").replace(";", "\\;")


def today(clock):
    return f"{datetime.date.today()}T{clock}"


def event(uid, title, start, end, *lines):
    """The lines of an event of today, at local times like «10:15»; of all day without them."""
    day = datetime.date.today()

    def moment(name, clock, fallback):
        if not clock:
            return f"{name};VALUE=DATE:{fallback:%Y%m%d}"
        return f"{name}:{day:%Y%m%d}T{clock.replace(':', '')}00"

    return [
        "BEGIN:VEVENT",
        f"UID:{uid}",
        "DTSTAMP:20200101T000000Z",
        moment("DTSTART", start, day),
        moment("DTEND", end, day + datetime.timedelta(days=1)),
        f"SUMMARY:{title}",
        *lines,
        "END:VEVENT",
    ]


def write_calendar(name, *events):
    """Replaces a file of the user's folder of calendars, as programs do that keep them there."""
    lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Corvella//Test//"]
    lines += [line for each in events for line in each] + ["END:VCALENDAR", ""]
    os.makedirs(CALENDARS, exist_ok=True)
    path = os.path.join(CALENDARS, name + ".ics")
    with open(path + ".new", "w", encoding="utf-8", newline="") as file:
        file.write("\r\n".join(lines))
    os.rename(path + ".new", path)


def calendar(*words):
    subprocess.run([os.path.join(TOOLS, "calendar"), *words], check=True, timeout=30)


class Program:
    """A program of the user's that keeps what it was started with."""

    def __init__(self, name, schemes=()):
        self.kept = os.path.join(os.environ["HOME"], name)
        program = self.kept + ".sh"
        with open(program, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\nprintf "%s\\n" "$*" >>{shlex.quote(self.kept)}\n')
        os.chmod(program, 0o755)
        entries = os.path.join(os.environ["XDG_DATA_HOME"], "applications")
        os.makedirs(entries, exist_ok=True)
        with open(os.path.join(entries, name + ".desktop"), "w", encoding="utf-8") as file:
            file.write(f"[Desktop Entry]\nType=Application\nName=Test\nExec={program} %u\n")
        if schemes:
            with open(
                os.path.join(os.environ["XDG_CONFIG_HOME"], "mimeapps.list"), "w", encoding="utf-8"
            ) as file:
                file.write("[Default Applications]\n")
                file.writelines(f"x-scheme-handler/{each}={name}.desktop\n" for each in schemes)

    def starts(self):
        """The arguments of every start, in their order."""
        try:
            with open(self.kept, encoding="utf-8") as file:
                return file.read().splitlines()
        except FileNotFoundError:
            return []

    def forget(self):
        with contextlib.suppress(FileNotFoundError):
            os.remove(self.kept)


class Meetings(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        put_noon_here()
        cls.browser = Program("browser", ("http", "https"))
        cls.settings = Program("xfce-settings-manager")

    def setUp(self):
        desktop.enable_accessibility()
        self.browser.forget()
        self.settings.forget()
        shutil.rmtree(os.path.dirname(desktop.settings_file()), ignore_errors=True)
        shutil.rmtree(CALENDARS, ignore_errors=True)
        self.corvella = None

    def tearDown(self):
        if self.corvella:
            self.corvella.stop()

    def start_sound(self, *modules):
        socket = os.path.join(os.environ["XDG_RUNTIME_DIR"], "pulse", "native")
        os.makedirs(os.path.dirname(socket), exist_ok=True)
        sound = Daemon(
            "pulseaudio --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disable-shm=yes -n"
            f" -L 'module-native-protocol-unix socket={socket} auth-anonymous=1'"
            + "".join(f" -L '{module}'" for module in modules)
        )
        self.addCleanup(sound.stop)
        wait_until(lambda: run("pactl info"), "the sound server answers")

    def launch(self, **environment):
        self.corvella = Corvella(environment=environment)
        self.corvella.open_popover()
        self.corvella.press("Meetings", "page tab")
        return self.corvella

    def launch_with_access(self, **environment):
        corvella = self.launch(**environment)
        corvella.press("Allow calendar access")
        return corvella

    def wait_for_rows(self, *names):
        with self.explained(lambda: self.corvella.shown("list item")):
            wait_until(lambda: self.corvella.shown("list item") == list(names), f"rows {names}", 20)

    def wait_for_starts(self, program, *arguments):
        with self.explained(program.starts):
            wait_until(lambda: program.starts() == list(arguments), f"starts with {arguments}")

    @contextlib.contextmanager
    def explained(self, state):
        try:
            yield
        except AssertionError as error:
            raise AssertionError(f"{error}, but {state()}") from None

    def write_typical_day(self):
        write_calendar(
            "work",
            event("week", "Release week", None, None),
            event("standup", "Standup", "00:15", "00:30", f"LOCATION:{TEAMS}"),
            event("lunch", "Lunch & <b>more</b>", "23:10", "23:20"),
            event("review", "Design review", "22:30", "23:15", f"LOCATION:Room\\, {escaped(ZOOM)}"),
        )

    def test_once_allowed_the_events_of_today_are_there(self):
        self.write_typical_day()
        corvella = self.launch()
        corvella.find("label", "Corvella shows today's events and finds meeting links.")
        desktop.screenshot("meetings-not-asked")
        corvella.press("Allow calendar access")
        self.wait_for_rows(
            "Release week, All day",
            "Standup, 00:15, over",
            "Design review, 22:30, next",
            "Lunch & <b>more</b>, 23:10",
        )
        corvella.find("label", "Next: Design review")
        corvella.find("label", "22:30 – 23:15")
        desktop.screenshot("meetings-list")

    def test_what_was_allowed_once_needs_no_second_word(self):
        self.write_typical_day()
        self.launch_with_access()
        wait_until(lambda: len(self.corvella.shown("list item")) == 4, "the list")
        self.corvella.stop()
        self.launch()
        wait_until(lambda: len(self.corvella.shown("list item")) == 4, "the list again")

    def test_a_file_that_changes_changes_the_list(self):
        os.makedirs(CALENDARS)
        corvella = self.launch_with_access()
        corvella.find("label", "No events today.")
        desktop.screenshot("meetings-no-events")
        write_calendar("work", event("a", "First", "22:00", "22:30"))
        self.wait_for_rows("First, 22:00, next")
        write_calendar("work", event("a", "First, moved", "23:00", "23:30"))
        self.wait_for_rows("First, moved, 23:00, next")
        os.remove(os.path.join(CALENDARS, "work.ics"))
        corvella.find("label", "No events today.")

    def test_times_are_those_of_the_users_language(self):
        self.write_typical_day()
        corvella = self.launch_with_access(LC_ALL="en_US.UTF-8")
        corvella.find("label", "10:30 PM – 11:15 PM")

    def test_joining_opens_the_link_as_it_stands(self):
        self.write_typical_day()
        corvella = self.launch_with_access()
        corvella.press("Join Zoom")
        self.wait_for_starts(self.browser, ZOOM)
        corvella.press("Teams")
        self.wait_for_starts(self.browser, ZOOM, TEAMS)

    def test_the_keyboard_alone_allows_and_joins(self):
        self.write_typical_day()
        self.start_sound(MICROPHONE)
        self.corvella = Corvella()
        self.corvella.open_popover()
        self.corvella.tab_to("Meetings")
        press_key("space")
        self.corvella.tab_to("Allow calendar access")
        press_key("Return")
        wait_until(lambda: len(self.corvella.shown("list item")) == 4, "the list")
        for name in ("Mute microphone", "Join Zoom", "Teams", "Zoom"):
            self.corvella.tab_to(name)
        press_key("Return")
        self.wait_for_starts(self.browser, ZOOM)
        self.corvella.tab_to("Teams")
        press_key("space")
        self.wait_for_starts(self.browser, ZOOM, TEAMS)

    def test_the_button_mutes_the_microphone(self):
        self.start_sound(MICROPHONE)

        def muted():
            return run("pactl get-source-mute mic0").strip()

        corvella = self.launch()
        self.assertEqual(muted(), "Mute: no")
        corvella.press("Mute microphone")
        corvella.find("push button", "Unmute microphone")
        self.assertEqual(muted(), "Mute: yes")
        desktop.screenshot("meetings-muted")
        corvella.press("Unmute microphone")
        corvella.find("push button", "Mute microphone")
        self.assertEqual(muted(), "Mute: no")

    def test_what_others_mute_is_seen_when_the_tab_is_shown(self):
        self.start_sound(MICROPHONE)
        corvella = self.launch()
        corvella.find("push button", "Mute microphone")
        press_key("Escape")
        corvella.wait_until_closed()
        run("pactl set-source-mute mic0 1")
        corvella.open_popover()
        corvella.find("push button", "Unmute microphone")

    def test_without_an_input_there_is_nothing_to_mute(self):
        self.start_sound(NO_MICROPHONE)
        corvella = self.launch()
        corvella.find("label", "Input can't be muted")
        mute = corvella.find("push button", "Mute microphone")
        self.assertFalse(has_state(mute, Atspi.StateType.ENABLED))
        desktop.screenshot("meetings-no-input")

    def test_a_meeting_that_moves_on_the_server_moves_in_the_tab(self):
        calendar("put", "sync", today("21:00"), today("21:30"), "Sync", f"LOCATION:{TEAMS}")
        self.addCleanup(calendar, "remove", "sync")
        corvella = self.launch_with_access()
        self.wait_for_rows("Sync, 21:00, next")
        corvella.find("label", "Next: Sync")
        calendar("put", "sync", today("20:15"), today("20:45"), "Sync", f"LOCATION:{escaped(ZOOM)}")
        self.wait_for_rows("Sync, 20:15, next")
        corvella.find("label", "20:15 – 20:45")
        corvella.press("Join Zoom")
        self.wait_for_starts(self.browser, ZOOM)
        calendar("put", "sync", today("00:15"), today("00:45"), "Sync")
        self.wait_for_rows("Sync, 00:15, over")
        self.assertNotIn("Join Zoom", self.corvella.shown("push button"))

    def test_where_nothing_may_be_read_the_settings_are_offered(self):
        corvella = self.launch_with_access(DBUS_SESSION_BUS_ADDRESS=self.start_sandbox())
        corvella.find(
            "label",
            "Calendar access is off. Allow it in System Settings → Privacy & Security → Calendars.",
        )
        desktop.screenshot("meetings-denied")
        corvella.press("Open Settings")
        self.wait_for_starts(self.settings, "")

    def start_sandbox(self):
        """The address of a bus with nothing but what the program cannot do without."""
        path = os.path.join(os.environ["XDG_RUNTIME_DIR"], "sandbox")
        proxy = Daemon(
            f"xdg-dbus-proxy {os.environ['DBUS_SESSION_BUS_ADDRESS']} {path} --filter"
            f" --own={desktop.NAME} --talk=org.a11y.Bus --talk=org.kde.StatusNotifierWatcher"
        )
        self.addCleanup(proxy.stop)
        wait_until(lambda: os.path.exists(path), "the bus of the sandbox")
        return f"unix:path={path}"


if __name__ == "__main__":
    desktop.main()
