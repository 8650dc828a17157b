#!/usr/bin/python3
"""Measures the three programs on the desktop it is started on, and prints the table."""

import argparse
import os
import re
import statistics
import subprocess
import sys
import time

BUILD = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "build", "release")
CORVELLA = os.path.join(BUILD, "bin", "corvella")
FLOOR = os.path.join(BUILD, "bench", "floor")
TIMER = "/usr/bin/kteatime"
LAUNCH_WATCH = os.path.join(BUILD, "bench", "launch-watch")
CLICK_WATCH = os.path.join(BUILD, "bench", "click-watch")

REST = 1.0  # Seconds for a program to come to rest.
BAND = 250  # A height of the screen that the popover crosses.
TICKS_A_MINUTE = 120
MEMORY = {
    "private": ("Private_Clean", "Private_Dirty"),
    "private dirty": ("Private_Dirty",),
    "PSS": ("Pss",),
}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=30).stdout


class Program:
    """A running program whose launch was watched."""

    def __init__(self, *command):
        self.watch = subprocess.Popen(
            [LAUNCH_WATCH, *command], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True,
        )
        pid, taken, cpu = self.watch.stdout.readline().split()
        self.pid, self.launch, self.cpu = int(pid), float(taken), float(cpu)
        time.sleep(REST)

    def stop(self):
        self.watch.stdin.close()
        self.watch.wait(10)

    def memory(self):
        """Megabytes by name."""
        with open(f"/proc/{self.pid}/smaps_rollup", encoding="ascii") as file:
            sizes = dict(re.findall(r"^(\w+): +(\d+) kB", file.read(), re.MULTILINE))
        return {name: sum(int(sizes[each]) for each in of) / 1024 for name, of in MEMORY.items()}

    def switches(self):
        """How often each of the program's threads went to sleep since it began."""
        counts = {}
        for thread in os.listdir(f"/proc/{self.pid}/task"):
            with open(f"/proc/{self.pid}/task/{thread}/status", encoding="utf-8") as file:
                found = re.search(r"^voluntary_ctxt_switches:\s+(\d+)", file.read(), re.MULTILINE)
            counts[thread] = int(found[1])
        return counts

    def switches_since(self, before):
        """A thread that ended in between woke up at least for that."""
        now = self.switches()
        ended = len(before.keys() - now.keys())
        return ended + sum(count - before.get(thread, 0) for thread, count in now.items())


def place_of_item():
    for line in output("xwininfo", "-root", "-tree").splitlines():
        found = re.search(
            r'"Corvella [^"]*": \("corvella" "Corvella"\)\s+(\d+)x(\d+)\S+\s+\+(-?\d+)\+(-?\d+)', line
        )
        if found and int(found[2]) < 60:
            width, height, x, y = map(int, found.groups())
            return x + width // 2, y + height // 2
    sys.exit("Corvella has no item in the tray")


def click_item():
    x, y = place_of_item()
    return float(output(CLICK_WATCH, str(x), str(y), str(BAND)))


def press(key):
    output("xdotool", "key", key)
    time.sleep(0.3)


class Figures:
    """Values by program and measure."""

    def __init__(self):
        self.values = {}

    def add(self, program, measure, value):
        self.values.setdefault((program, measure), []).append(value)

    def add_memory(self, program, when, running):
        for name, megabytes in running.memory().items():
            self.add(program, f"{name}, {when}", megabytes)

    def median(self, program, measure):
        values = self.values.get((program, measure))
        return statistics.median(values) if values else None


def measure_launch(figures, name, *command):
    program = Program(*command)
    figures.add(name, "exec to item", program.launch)
    figures.add(name, "CPU to item", program.cpu)
    figures.add_memory(name, "at rest", program)
    return program


def measure_round(figures):
    measure_launch(figures, "floor", FLOOR).stop()
    measure_launch(figures, "kteatime", TIMER).stop()
    corvella = measure_launch(figures, "corvella", CORVELLA)
    figures.add("corvella", "first click to paint", click_item())
    figures.add_memory("corvella", "popover open", corvella)
    press("Escape")
    figures.add("corvella", "later click to paint", click_item())
    press("Escape")
    figures.add_memory("corvella", "popover closed again", corvella)
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
    ("private dirty, at rest", "private dirty, at rest", "MB", None, None),
    ("private dirty, popover open", "private dirty, at rest", "MB", None, None),
    ("PSS, at rest", "PSS, at rest", "MB", 1.3, None),
    ("PSS, popover open", "PSS, at rest", "MB", 1.3, None),
    ("PSS, popover closed again", "PSS, at rest", "MB", None, None),
    ("exec to item", "exec to item", "ms", None, None),
    ("CPU to item", "CPU to item", "ms", None, None),
    ("first click to paint", None, "ms", None, 40),
    ("later click to paint", None, "ms", None, 16),
    ("wakeups a minute, idle", "wakeups a minute, idle", "", None, 0),
    ("wakeups a minute, idle after use", "wakeups a minute, idle", "", None, 0),
    ("wakeups a minute, running", None, "", None, None),
    ("switches a tick, running", None, "", None, 4),
]


def cell(value):
    return "" if value is None else f"{value:.1f}"


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
    print("\rThree times", wanted.seconds, "seconds of wakeups", file=sys.stderr)
    if wanted.seconds:
        measure_wakeups(figures, wanted.seconds)
    print_table(figures)


if __name__ == "__main__":
    main()
