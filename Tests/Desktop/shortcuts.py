"""The Shortcuts tab over applications, a browser and automations of a user of its own."""

import json
import os
import shutil
import unittest
import uuid

from gi.repository import Atspi

import desktop
from desktop import Corvella, has_state, press_key, screenshot, type_text, wait_until

BIN = os.path.join(os.environ["HOME"], ".local", "bin")
DATA = os.environ["XDG_DATA_HOME"]
ENTRIES = os.path.join(DATA, "applications")
AUTOMATIONS = os.path.join(DATA, "corvella", "shortcuts")
STARTED = os.path.join(os.environ["HOME"], "started")
DEFAULTS = ["Safari", "Notes", "GitHub", "Terminal"]


def write(path, text, mode=0o644):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    os.chmod(path, mode)


def program(name, more=""):
    """A program that keeps what it is started with, as a line."""
    path = os.path.join(BIN, name)
    kept = os.path.join(STARTED, name)
    write(path, f'#!/bin/sh\nprintf "%s\\n" "$*" >>{kept}\n{more}', 0o755)
    return path


def application(entry, name, lines=""):
    """An application of the desktop, by the name that a person reads."""
    path = program(entry)
    write(
        os.path.join(ENTRIES, entry + ".desktop"),
        f"[Desktop Entry]\nType=Application\nName={name}\nExec={path} %u\n{lines}",
    )


def automation(name, script):
    write(os.path.join(AUTOMATIONS, name), f"#!/bin/sh\n{script}", 0o755)


def started(name):
    """What a program was started with, each time a line."""
    path = os.path.join(STARTED, name)
    if not os.path.exists(path):
        return None
    with open(path, encoding="utf-8") as file:
        return file.read().splitlines()


def item(name, kind, target, symbol="star"):
    return {
        "id": str(uuid.uuid4()).upper(),
        "name": name,
        "kind": kind,
        "target": target,
        "symbol": symbol,
    }


class Shortcuts(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        for folder in (os.path.dirname(desktop.settings_file()), BIN, ENTRIES, AUTOMATIONS, STARTED):
            shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(STARTED)
        application("browser", "Web", "Categories=WebBrowser;\n")
        write(
            os.path.join(os.environ["XDG_CONFIG_HOME"], "mimeapps.list"),
            "[Default Applications]\nx-scheme-handler/https=browser.desktop\n",
        )
        self.corvella = None

    def tearDown(self):
        if self.corvella:
            self.corvella.stop()

    def launch(self, *items):
        if items:
            desktop.store(shortcutItems=desktop.data(json.dumps(items)))
        self.start()
        return self.corvella

    def start(self):
        # No other applications than those of the test.
        self.corvella = Corvella(environment={"XDG_DATA_DIRS": DATA})
        self.corvella.open_popover()
        self.corvella.press("Shortcuts", "page tab")

    def restart(self):
        self.corvella.stop()
        self.start()

    def stored_items(self):
        return json.loads(desktop.data_in(desktop.stored()["shortcutItems"]))

    def stored_names(self):
        try:
            return [each["name"] for each in self.stored_items()]
        except (OSError, KeyError):
            return None

    def tiles(self):
        grid = self.corvella.find("list", "Shortcuts")
        return [each.get_name() for each in desktop.children(grid)]

    def wait_for_tiles(self, *names):
        wait_until(lambda: self.tiles() == list(names), f"the tiles {names}")

    def has(self, role, name):
        return name in self.corvella.shown(role)

    def wait_for_error(self, part):
        def found():
            return [each for each in self.corvella.shown("label") if part in each]

        return wait_until(found, f"an error with «{part}»")[0]

    def fill(self, field, text):
        area = self.corvella.find("text", field)
        Atspi.EditableText.set_text_contents(area, text)

    def wait_for_start(self, name, *arguments):
        wait_until(lambda: started(name) == list(arguments), f"{name} is started: {started(name)}")

    def test_the_first_buttons_are_useful(self):
        application("terms", "Simple Console", "Categories=System;TerminalEmulator;\n")
        application("org.gnome.Notes", "Paper")
        corvella = self.launch()
        self.wait_for_tiles(*DEFAULTS)
        corvella.press("Safari")
        self.wait_for_start("browser", "")
        corvella.press("GitHub")
        self.wait_for_start("browser", "", "https://github.com")
        corvella.press("Notes")
        self.wait_for_start("org.gnome.Notes", "")
        corvella.press("Terminal")
        self.wait_for_start("terms", "")
        screenshot("shortcuts")

    def test_each_kind_is_run(self):
        application("mail", "Post Office")
        write(os.path.join(DATA, "entry with space.desktop"),
              f"[Desktop Entry]\nType=Application\nName=X\nExec={program('by-path')}\n")
        automation("Deep work", f"echo ran >{STARTED}/deep\n")
        corvella = self.launch(
            item("Mail", "App", "post office"),
            item("Path", "App", os.path.join(DATA, "entry with space.desktop")),
            item("Web", "URL", "\t example.com/a?b=c "),
            item("Work", "Shortcut", "Deep work"),
        )
        for name in ("Mail", "Path", "Web", "Work"):
            corvella.press(name)
        self.wait_for_start("mail", "")
        self.wait_for_start("by-path", "")
        self.wait_for_start("browser", "https://example.com/a?b=c")
        self.wait_for_start("deep", "ran")
        self.assertEqual([each for each in corvella.shown("label") if "Shortcuts" != each], [])

    def test_failures_are_shown_until_the_next_run(self):
        automation("Fails", "echo 'The printer is on fire' >&2\nexit 3\n")
        automation("Mute", "exit 1\n")
        automation("Killed", "kill -9 $$\n")
        automation("Good", f"echo ran >{STARTED}/good\n")
        corvella = self.launch(
            item("Fails", "Shortcut", "Fails"),
            item("Mute", "Shortcut", "Mute"),
            item("Killed", "Shortcut", "Killed"),
            item("Unknown", "Shortcut", "Nobody made me"),
            item("No app", "App", "Nonesuch Studio"),
            item("No address", "URL", "https://exa mple"),
            item("Good", "Shortcut", "Good"),
        )
        corvella.press("Fails")
        self.wait_for_error("The printer is on fire")
        screenshot("shortcuts-error")
        corvella.press("Mute")
        self.wait_for_error("Command failed")
        corvella.press("Good")
        self.wait_for_start("good", "ran")
        wait_until(lambda: not self.has("label", "Command failed"), "the error is cleared")
        corvella.press("Killed")
        self.wait_for_error("Command failed")
        corvella.press("Unknown")
        self.wait_for_error("Nobody made me")
        corvella.press("No app")
        self.wait_for_error("Unable to find an application named “Nonesuch Studio”")
        corvella.press("No address")
        self.wait_for_error("Invalid URL")

    def test_a_scheme_that_nothing_opens_changes_nothing(self):
        corvella = self.launch(item("Odd", "URL", "unheard-of://thing"))
        before = sorted(corvella.shown("label"))
        corvella.press("Odd")
        with self.assertRaises(AssertionError):
            wait_until(lambda: sorted(corvella.shown("label")) != before, "a change", 1)

    def test_what_is_started_outlives_corvella(self):
        path = program("lasting", f"echo $$ >{STARTED}/pid\nexec sleep 60\n")
        write(os.path.join(ENTRIES, "lasting.desktop"),
              f"[Desktop Entry]\nType=Application\nName=Lasting\nExec={path}\n")
        automation("Long", f"echo $$ >{STARTED}/long\nexec sleep 60\n")
        corvella = self.launch(item("A", "App", "Lasting"), item("B", "Shortcut", "Long"))
        corvella.press("A")
        corvella.press("B")
        pids = [
            int(wait_until(lambda: started(kept), f"{kept} runs")[0]) for kept in ("pid", "long")
        ]
        corvella.stop()
        self.corvella = None
        for pid in pids:
            os.kill(pid, 15)  # Fails where there is none.

    def test_a_button_is_added_edited_and_deleted_through_at_spi(self):
        corvella = self.launch()
        corvella.press("Edit")
        self.assertTrue(self.has("label", "Tap a button to edit it"))
        corvella.press("Add")
        self.assertTrue(self.has("label", "New button"))
        self.assertFalse(has_state(corvella.find("push button", "Save"), Atspi.StateType.ENABLED))
        self.fill("Label", "Timesheet")
        corvella.press("URL", "radio button")
        self.fill("https://example.com", "example.com/timesheet")
        self.fill("SF Symbol name", "calendar")
        screenshot("shortcuts-editor-new")
        corvella.press("Save")
        self.wait_for_tiles(*DEFAULTS, "Timesheet")
        added = wait_until(lambda: self.stored_names() and self.stored_items()[-1], "it is stored")
        self.assertEqual(
            (added["kind"], added["target"], added["symbol"]),
            ("URL", "example.com/timesheet", "calendar"),
        )
        corvella.press("Notes")
        self.assertTrue(self.has("label", "Edit button"))
        self.fill("Label", "Paper")
        self.fill("SF Symbol name", "no.such.symbol")
        screenshot("shortcuts-editor-edit")
        corvella.press("Save")
        self.wait_for_tiles("Safari", "Paper", "GitHub", "Terminal", "Timesheet")
        wait_until(lambda: self.stored_items()[1]["symbol"] == "star", "the star is stored")
        screenshot("shortcuts-edit-mode")
        corvella.press("GitHub")
        corvella.press("Delete")
        self.wait_for_tiles("Safari", "Paper", "Terminal", "Timesheet")
        corvella.press("Add")
        self.fill("Safari or /Applications/Notes.app", "Mail")
        corvella.press("Cancel")
        self.wait_for_tiles("Safari", "Paper", "Terminal", "Timesheet")
        corvella.press("Done")
        self.assertFalse(self.has("push button", "Add"))
        left = ["Safari", "Paper", "Terminal", "Timesheet"]
        wait_until(lambda: self.stored_names() == left, "all is stored")
        self.restart()
        self.wait_for_tiles(*left)
        corvella = self.corvella
        corvella.press("Timesheet")
        self.wait_for_start("browser", "https://example.com/timesheet")

    def test_all_is_done_by_keyboard(self):
        corvella = self.launch()
        corvella.tab_to("Edit")
        press_key("Return")
        corvella.tab_to("Add")
        press_key("space")
        wait_until(lambda: corvella.focused().get_name() == "Label", "the label has the keyboard")
        type_text("Mail")
        corvella.tab_to("Opens")
        press_key("Right")
        corvella.tab_to("https://example.com")
        type_text("example.com/mail")
        press_key("Return")
        self.wait_for_tiles(*DEFAULTS, "Mail")
        wait_until(lambda: corvella.focused().get_name() == "Mail", "the new tile has the keyboard")
        press_key("Return")
        wait_until(lambda: self.has("label", "Edit button"), "the editor opens")
        corvella.tab_to("Delete")
        press_key("space")
        self.wait_for_tiles(*DEFAULTS)
        wait_until(lambda: corvella.focused().get_name() == "Terminal", "its neighbour has it")
        press_key("Home")
        wait_until(lambda: corvella.focused().get_name() == "Safari", "the first tile has it")
        press_key("Return")
        corvella.tab_to("Cancel")
        press_key("space")
        self.wait_for_tiles(*DEFAULTS)
        corvella.tab_to("Done")

    def test_an_empty_grid_stays_empty(self):
        corvella = self.launch()
        corvella.press("Edit")
        for name in DEFAULTS:
            corvella.press(name)
            corvella.press("Delete")
        self.wait_for_tiles()
        wait_until(lambda: self.stored_names() == [], "nothing is stored")
        screenshot("shortcuts-empty")
        self.restart()
        self.wait_for_tiles()

    def test_what_another_program_stores_is_shown(self):
        self.launch()
        self.wait_for_tiles(*DEFAULTS)
        desktop.store(shortcutItems=desktop.data(json.dumps([item("Elsewhere", "App", "X")])))
        self.wait_for_tiles("Elsewhere")
        desktop.store(shortcutItems=desktop.data("[{"))
        self.corvella.press("Edit")
        self.wait_for_tiles("Elsewhere")
        self.corvella.press("Add")
        self.fill("Safari or /Applications/Notes.app", "Mail")
        self.corvella.press("Save")
        wait_until(lambda: self.stored_names() == ["Elsewhere", "Mail"], "both are stored")

    def test_a_broken_list_gives_the_first_buttons_and_stays(self):
        desktop.store(shortcutItems=desktop.data("no JSON"))
        self.launch()
        self.wait_for_tiles(*DEFAULTS)
        self.assertEqual(desktop.data_in(desktop.stored()["shortcutItems"]), "no JSON")

    def test_ten_thousand_buttons_are_no_burden(self):
        self.launch(*(item(f"Button {i}", "URL", f"example.com/{i}") for i in range(10_000)))
        self.corvella.find("push button", "Button 0")
        self.corvella.tab_to("Button 0")
        press_key("End")
        wait_until(lambda: self.corvella.focused().get_name() == "Button 9999", "the last one")
        press_key("space")
        self.wait_for_start("browser", "https://example.com/9999")


if __name__ == "__main__":
    desktop.main()
