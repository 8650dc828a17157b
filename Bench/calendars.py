#!/usr/bin/python3
"""Measures what calendars cost, beside two others that read the same, and prints the table."""

import argparse
import datetime
import json
import os
import subprocess
import sys
import time

import ics
from programs import BUILD, CORVELLA, REST, Figures, Program, cell, memory

EXPAND_DAY = os.path.join(BUILD, "bench", "expand-day")
EXPAND_EVENTS = os.path.join(BUILD, "libexec", "corvella", "expand-events")
ECAL_LIST = os.path.join(BUILD, "bench", "ecal-list")

DAY = datetime.date(2026, 11, 18)
SIZES = (10_000, 100_000)
FEW = SIZES[0]  # What khal can be asked to read.
TODAY = 1_000
PATIENCE = 20  # Seconds for Corvella to have read its calendars.

KHAL = """
[calendars]
[[bench]]
path = {folder}
[sqlite]
path = {cache}
[locale]
local_timezone = Europe/Berlin
default_timezone = Europe/Berlin
timeformat = %H:%M
dateformat = %Y-%m-%d
longdateformat = %Y-%m-%d
datetimeformat = %Y-%m-%d %H:%M
longdatetimeformat = %Y-%m-%d %H:%M
"""


def place(*path):
    return os.path.join(os.environ["CORVELLA_DESKTOP"], "bench", *path)


def times(day):
    """The seconds of its beginning and end, as text."""
    start = datetime.datetime.combine(day, datetime.time())
    return [str(int(each.timestamp())) for each in (start, start + ics.DAY)]


class Run:
    """A command that ran to its end: its output, the milliseconds of processor and the megabytes."""

    def __init__(self, *command):
        # Started by a small program: a process counts as its own what its parent had in memory.
        told = place("memory")
        process = subprocess.Popen(
            ["time", "--format=%M", f"--output={told}", *command],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
        )
        self.output = process.stdout.read().decode()
        _, status, used = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode:
            sys.exit(f"{command[0]} failed")
        self.cpu = (used.ru_utime + used.ru_stime) * 1000
        with open(told, encoding="ascii") as file:
            self.memory = int(file.read()) / 1024


def add(figures, name, size, events, cpu, megabytes):
    figures.add(name, f"events of the day, of {size:,}", events)
    figures.add(name, f"CPU, {size:,} events", cpu)
    figures.add(name, f"memory, {size:,} events", megabytes)


def list_day(figures, size):
    path = place(f"{size}.ics")
    if not os.path.exists(path):
        ics.write_calendar(path, size, DAY)
    told = Run(EXPAND_DAY, EXPAND_EVENTS, *times(DAY), path).output.split()
    add(figures, "corvella", size, *map(float, told))
    if os.path.exists(ECAL_LIST):
        run = Run(ECAL_LIST, *times(DAY), path)
        add(figures, "libecal", size, int(run.output), run.cpu, run.memory)


def list_day_with_khal(figures, rounds):
    """It reads everything once, into a database that it asks from then on."""
    settings = place("khal.conf")
    with open(settings, "w", encoding="utf-8") as file:
        file.write(KHAL.format(folder=place("khal"), cache=place("khal.db")))
    print("Once khal reads", FEW, "files, which takes minutes", file=sys.stderr)
    ics.write_folder(place("khal"), FEW, DAY)
    command = (
        "khal", "--config", settings, "list", "--day-format", "", "--format", "{title}",
        f"{DAY}", "1d",
    )
    for name in ("khal first", *["khal"] * rounds):
        run = Run(*command)
        events = sum(1 for line in run.output.splitlines() if line.strip())
        add(figures, name, FEW, events, run.cpu, run.memory)


def consent(is_given):
    path = os.path.join(os.environ["XDG_CONFIG_HOME"], "corvella", "defaults.json")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        json.dump({"calendarAccess": True} if is_given else {}, file)


def has_helped(program):
    """That the helper ran to its end is seen by the processor time of the program's children."""
    with open(f"/proc/{program.pid}/stat", encoding="ascii") as file:
        fields = file.read().rpartition(")")[2].split()
    return int(fields[13]) + int(fields[14]) > 0


def wait_for_events(program):
    end = time.monotonic() + PATIENCE
    while not has_helped(program):
        if time.monotonic() > end:
            sys.exit("Corvella has not read its calendars")
        time.sleep(0.05)
    time.sleep(2 * REST)


def measure_memory(figures):
    """As it comes, and then with consent and many events."""
    for name, is_given in (("without", False), ("with", True)):
        consent(is_given)
        program = Program(CORVELLA)
        if is_given:
            wait_for_events(program)
        else:
            time.sleep(2 * REST)
        for kind, megabytes in memory(program).items():
            figures.add(name, kind, megabytes)
        program.stop()


def add_growth(figures):
    for kind in ("private", "private dirty", "PSS"):
        grown = figures.median("with", kind) - figures.median("without", kind)
        figures.add("corvella", f"{kind}, {TODAY:,} events of today", grown)


NAMES = ("khal first", "khal", "libecal", "corvella")

# Measure, unit, most that is wanted.
ROWS = [
    (f"private, {TODAY:,} events of today", "MB more", 1),
    (f"private dirty, {TODAY:,} events of today", "MB more", None),
    (f"PSS, {TODAY:,} events of today", "MB more", None),
    ("events of the day, of 10,000", "", None),
    ("CPU, 10,000 events", "ms", 120),
    ("memory, 10,000 events", "MB", None),
    ("events of the day, of 100,000", "", None),
    ("CPU, 100,000 events", "ms", 800),
    ("memory, 100,000 events", "MB", 64),
]


def print_table(figures):
    print("| | unit | khal, first | khal | libecal | Corvella | of khal | of libecal | wanted | |")
    print("|---|---|---:|---:|---:|---:|---:|---:|---|---|")
    for measure, unit, most in ROWS:
        values = [figures.median(name, measure) for name in NAMES]
        own = values[-1]
        ratios = [f"{own / each:.3f}" if each else "" for each in values[1:-1]]
        wanted = "" if most is None else f"≤ {most}"
        met = most is None or own <= most
        print(
            f"| {measure} | {unit} | {' | '.join(map(cell, values))} | {' | '.join(ratios)}"
            f" | {wanted} | {'' if met else 'missed'} |"
        )


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--rounds", type=int, default=9)
    rounds = options.parse_args().rounds

    figures = Figures()
    for number in range(rounds):
        print(f"\rRound {number + 1} of {rounds}", end="", file=sys.stderr)
        for size in SIZES:
            list_day(figures, size)
    print(file=sys.stderr)
    list_day_with_khal(figures, rounds)
    today = os.path.join(os.environ["XDG_DATA_HOME"], "calendars", "today.ics")
    ics.write_today(today, TODAY, datetime.date.today())
    for _ in range(rounds):
        measure_memory(figures)
    add_growth(figures)
    print_table(figures)


if __name__ == "__main__":
    main()
