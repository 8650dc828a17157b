#!/usr/bin/python3
"""Measures the three programs on the desktop it is started on, and prints the table."""

import argparse
import json
import os
import subprocess
import sys
import time

from programs import (
    BUILD, CORVELLA, REST, Figures, Program, cell, memory, output, place_of_item, press,
)

FLOOR = os.path.join(BUILD, "bench", "floor")
NEIGHBOUR = os.path.join(BUILD, "bench", "neighbour")
TIMER = "/usr/bin/kteatime"
CLICK_WATCH = os.path.join(BUILD, "bench", "click-watch")

BAND = 250  # A height of the screen that the popover crosses.
TICKS_A_MINUTE = 120


def click_item():
    x, y = place_of_item()
    return float(output(CLICK_WATCH, str(x), str(y), str(BAND)))


def add_memory(figures, name, when, program):
    for kind, megabytes in memory(program).items():
        figures.add(name, f"{kind}, {when}", megabytes)


def measure_launch(figures, name, *command):
    program = Program(*command)
    figures.add(name, "exec to item", program.launch)
    figures.add(name, "CPU to item", program.cpu_to_item)
    add_memory(figures, name, "at rest", program)
    return program


def measure_round(figures):
    measure_launch(figures, "floor", FLOOR).stop()
    measure_launch(figures, "kteatime", TIMER).stop()
    corvella = measure_launch(figures, "corvella", CORVELLA)
    figures.add("corvella", "first click to paint", click_item())
    add_memory(figures, "corvella", "popover open", corvella)
    press("Escape")
    figures.add("corvella", "later click to paint", click_item())
    press("Escape")
    add_memory(figures, "corvella", "popover closed again", corvella)
    corvella.stop()


def measure_beside_neighbour(figures):
    """At rest while another Qt program has in memory what all of them share."""
    neighbour = subprocess.Popen([NEIGHBOUR], stderr=subprocess.DEVNULL)
    output("xdotool", "search", "--sync", "--onlyvisible", "--name", "^Neighbour$")
    for name, command in (("floor", FLOOR), ("corvella", CORVELLA)):
        program = Program(command)
        add_memory(figures, name, "beside another", program)
        program.stop()
    neighbour.terminate()
    neighbour.wait(10)


def give_consent():
    """To a calendar with an event; the next start reads it."""
    calendar = os.path.join(os.environ["XDG_DATA_HOME"], "calendars", "day.ics")
    settings = os.path.join(os.environ["XDG_CONFIG_HOME"], "corvella", "defaults.json")
    for path in (calendar, settings):
        os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(calendar, "w", encoding="ascii", newline="\r\n") as file:
        print("BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Corvella//Bench//", "BEGIN:VEVENT",
              "UID:daily", "DTSTAMP:20200101T000000Z", "DTSTART:20200101T233000Z",
              "DTEND:20200101T234500Z", "RRULE:FREQ=DAILY", "SUMMARY:Daily", "END:VEVENT",
              "END:VCALENDAR", sep="\n", file=file)
    with open(settings, "w", encoding="utf-8") as file:
        json.dump({"calendarAccess": True}, file)


def measure_with_consent(figures, seconds):
    give_consent()
    corvella = Program(CORVELLA)
    time.sleep(5 * REST)  # Calendars are read.
    add_memory(figures, "corvella", "with calendars", corvella)
    count_wakeups(
        figures, 5 * seconds, "wakeups a minute, with calendars", {"corvella": corvella})
    corvella.stop()


def count_wakeups(figures, seconds, measure, programs):
    before = {name: program.switches() for name, program in programs.items()}
    time.sleep(seconds)
    for name, program in programs.items():
        figures.add(name, measure, program.switches_since(before[name]) * 60 / seconds)


def measure_wakeups(figures, seconds):
    corvella = Program(CORVELLA)
    resting = {"floor": Program(FLOOR), "kteatime": Program(TIMER), "corvella": corvella}
    count_wakeups(figures, seconds, "wakeups a minute, idle", resting)
    resting["floor"].stop()
    resting["kteatime"].stop()
    time.sleep(REST)  # Items move up to fill the gap.

    click_item()
    press("Escape")
    time.sleep(REST)
    opened = {"corvella": corvella}
    count_wakeups(figures, seconds, "wakeups a minute, idle after use", opened)

    click_item()
    press("Return")
    press("Escape")
    running = {"corvella": corvella, "kteatime": Program(TIMER, "--time", "600")}
    time.sleep(REST)
    count_wakeups(figures, seconds, "wakeups a minute, running", running)
    a_minute = figures.median("corvella", "wakeups a minute, running")
    figures.add("corvella", "switches a tick, running", a_minute / TICKS_A_MINUTE)
    for program in running.values():
        program.stop()


# Measure, the measure of the floor that it is told beside, unit, most that is wanted: a factor of
# the floor, or the figure itself.
ROWS = [
    ("private, at rest", "private, at rest", "MB", 1.8, None),
    ("private, popover open", "private, at rest", "MB", 1.8, None),
    ("private, popover closed again", "private, at rest", "MB", None, None),
    ("private, beside another", "private, beside another", "MB", None, 4.5),
    ("private, with calendars", "private, at rest", "MB", None, None),
    ("private dirty, at rest", "private dirty, at rest", "MB", None, None),
    ("private dirty, popover open", "private dirty, at rest", "MB", None, None),
    ("PSS, at rest", "PSS, at rest", "MB", 1.35, None),
    ("PSS, popover open", "PSS, at rest", "MB", 1.3, None),
    ("PSS, popover closed again", "PSS, at rest", "MB", None, None),
    ("exec to item", "exec to item", "ms", None, None),
    ("CPU to item", "CPU to item", "ms", None, None),
    ("first click to paint", None, "ms", None, 40),
    ("later click to paint", None, "ms", None, 16),
    ("wakeups a minute, idle", "wakeups a minute, idle", "", None, 0),
    ("wakeups a minute, idle after use", "wakeups a minute, idle", "", None, 0),
    ("wakeups a minute, with calendars", "wakeups a minute, idle", "", None, 1.2),
    ("wakeups a minute, running", None, "", None, None),
    ("switches a tick, running", None, "", None, 4),
]


def print_table(figures):
    print("| | unit | floor | kteatime | Corvella | of the floor | wanted | |")
    print("|---|---|---:|---:|---:|---:|---|---|")
    for measure, beside, unit, factor, most in ROWS:
        own = figures.median("corvella", measure)
        floor = figures.median("floor", beside)
        ratio = own / floor if floor else None
        wanted = f"≤ {factor} × floor" if factor else "" if most is None else f"≤ {most}"
        met = ratio <= factor if factor else most is None or own <= most
        print(
            f"| {measure} | {unit} | {cell(floor)} | {cell(figures.median('kteatime', measure))}"
            f" | {cell(own)} | {'' if ratio is None else f'{ratio:.2f}'}"
            f" | {wanted} | {'' if met else 'missed'} |"
        )


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--rounds", type=int, default=15)
    options.add_argument("--seconds", type=int, default=60)
    wanted = options.parse_args()

    figures = Figures()
    for number in range(wanted.rounds):
        print(f"\rRound {number + 1} of {wanted.rounds}", end="", file=sys.stderr)
        measure_round(figures)
        measure_beside_neighbour(figures)
    print("\rEight times", wanted.seconds, "seconds of wakeups", file=sys.stderr)
    if wanted.seconds:
        measure_wakeups(figures, wanted.seconds)
        measure_with_consent(figures, wanted.seconds)
    print_table(figures)


if __name__ == "__main__":
    main()
