#!/usr/bin/python3
"""Measures the System tab beside three monitors on the desktop it is started on, and prints the table."""

import argparse
import os
import socket
import subprocess
import sys
import time

from programs import (
    BUILD, CORVELLA, REST, Figures, Program, Threads, cell, output, place_of_item, press,
)

SAMPLE_COST = os.path.join(BUILD, "bench", "sample-cost")

SAMPLES_A_MINUTE = 30
HISTORY = 120  # Seconds until the charts of the tab are full.
CARET = 11  # Seconds until a caret that nobody moves blinks no more.
FOCUS_TAB, SYSTEM_TAB = (44, 30), (252, 30)  # Places in the popover.
BESIDE = (760, 650)  # Where the pointer is out of everybody's way.

# What each shows is the nearest to the System tab: no list of processes.
GKRELLM = "update_HZ 1\n"
BTOP = 'update_ms = 2000\nshown_boxes = "cpu mem net"\n'
CONKY = """
conky.config = {{
    update_interval = 2, double_buffer = true, own_window = true, own_window_type = 'normal',
    alignment = 'top_left', gap_x = 160, gap_y = 40, minimum_width = 260,
    use_xft = true, font = 'Inter:size=10',
}}
conky.text = [[
CPU ${{alignr}}${{cpu}}%
${{cpugraph 34}}
Memory ${{alignr}}${{mem}} of ${{memmax}}
${{memgraph 34}}
Disk ${{alignr}}${{fs_free /}} free of ${{fs_size /}}
${{fs_bar /}}
Download ${{alignr}}${{downspeed {network}}}
${{downspeedgraph {network} 34}}
Upload ${{alignr}}${{upspeed {network}}}
${{upspeedgraph {network} 34}}
]]
"""


def wait_until(condition, what, seconds=10):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            sys.exit(f"never: {what}")
        time.sleep(0.05)


class Monitor(Threads):
    """Another program that shows the same, once its window is there."""

    def __init__(self, title, *command):
        self.process = subprocess.Popen(
            command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env=os.environ | {"LANG": "C.UTF-8"},
        )
        super().__init__(self.process.pid)
        self.pid = self.process.pid
        output("xdotool", "search", "--sync", "--onlyvisible", "--name", title)

    def stop(self):
        self.process.terminate()
        self.process.wait(10)


def write(text, *path):
    path = os.path.join(*path)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    return path


def network():
    """An interface for the one that must be told which."""
    names = [name for _, name in socket.if_nameindex()]
    return next((name for name in names if name != "lo"), "lo")


def child(process):
    with open(f"/proc/{process}/task/{process}/children", encoding="ascii") as file:
        return int(file.read().split()[0])


def start_monitors():
    """Side by side, clear of the popover: what is to be stopped, and what is to be measured."""
    write(GKRELLM, os.environ["HOME"], ".gkrellm2", "user-config")
    write(BTOP, os.environ["XDG_CONFIG_HOME"], "btop", "btop.conf")
    conky = write(CONKY.format(network=network()), os.environ["HOME"], "conky.conf")
    gkrellm = Monitor("gkrellm", "gkrellm", "--geometry", "+20+40")
    conky = Monitor("conky", "conky", "--config", conky)
    xterm = Monitor("btop", "xterm", "-u8", "-geometry", "80x24+150+380", "-e", "btop")
    btop = child(xterm.pid)
    measured = {
        "gkrellm": gkrellm, "conky": conky, "btop": Threads(btop),
        "btop and xterm": Threads(btop, xterm.pid),
    }
    return (gkrellm, conky, xterm), measured


def click(x, y):
    output("xdotool", "mousemove", str(x), str(y), "click", "1")


def popover():
    """Its window, in a list that is empty while it is not on the screen."""
    found = subprocess.run(
        ["xdotool", "search", "--onlyvisible", "--name", "^Corvella$"],
        capture_output=True, text=True, timeout=30,
    )
    return found.stdout.split()


def open_popover():
    click(*place_of_item())
    wait_until(popover, "the popover opens")
    time.sleep(REST)


def close_popover():
    press("Escape")
    wait_until(lambda: not popover(), "the popover closes")
    time.sleep(REST)


def choose(tab):
    output("xdotool", "mousemove", "--window", popover()[0], *map(str, tab), "click", "1")
    time.sleep(REST)
    output("xdotool", "mousemove", *map(str, BESIDE))
    time.sleep(REST)


def require_samples(corvella):
    """That the tab is shown is seen from the outside by the program's waking up for it."""
    before = corvella.switches()
    time.sleep(5)
    if corvella.switches_since(before) < 2:
        sys.exit("Corvella does not sample: its System tab is not shown")


def measure(figures, seconds, when, programs):
    begun = time.monotonic()
    before = {name: (each.cpu(), each.switches()) for name, each in programs.items()}
    time.sleep(seconds)
    a_minute = 60 / (time.monotonic() - begun)
    for name, each in programs.items():
        cpu, switches = before[name]
        figures.add(name, f"CPU a minute, {when}", each.cpu_since(cpu) * a_minute)
        figures.add(name, f"wakeups a minute, {when}", each.switches_since(switches) * a_minute)


def measure_desktop(figures, rounds, seconds, history):
    monitors, others = start_monitors()
    corvella = Program(CORVELLA)
    own = {"corvella": corvella}
    open_popover()
    choose(SYSTEM_TAB)
    require_samples(corvella)
    time.sleep(history)
    for number in range(rounds):
        print(f"\rRound {number + 1} of {rounds}", end="", file=sys.stderr)
        measure(figures, seconds, "tab shown", others | own)
    print("\nTwice", seconds, "seconds of not showing it", file=sys.stderr)
    choose(FOCUS_TAB)
    time.sleep(CARET)
    measure(figures, seconds, "Focus shown", own)
    choose(SYSTEM_TAB)
    require_samples(corvella)
    close_popover()
    measure(figures, seconds, "closed again", own)
    corvella.stop()
    for each in monitors:
        each.stop()


def measure_sample(figures):
    """One program times all three in turns, and tells the least and the median of each."""
    told = {}
    for line in output(SAMPLE_COST).splitlines():
        way, *times = line.split()
        told[way] = list(map(float, times))
    least, median = told["corvella"]
    reopened = told["reopened"][1]
    figures.add("corvella", "whole sample, median", median)
    figures.add("corvella", "whole sample, least", least)
    figures.add("corvella", "asking the kernel alone, median", told["kept"][1])
    figures.add("corvella", "asking it anew each time, median", reopened)
    figures.add("corvella", "whole sample of asking anew", 100 * median / reopened)


OTHERS = ("gkrellm", "conky", "btop", "btop and xterm")
LESS = "less than each"

# Measure, unit, most that is wanted.
ROWS = [
    ("CPU a minute, tab shown", "ms", LESS),
    ("CPU a sample, tab shown", "ms", None),
    ("wakeups a minute, tab shown", "", None),
    ("CPU a minute, Focus shown", "ms", None),
    ("wakeups a minute, Focus shown", "", 0),
    ("CPU a minute, closed again", "ms", None),
    ("wakeups a minute, closed again", "", 0),
    ("whole sample, median", "µs", 30),
    ("whole sample, least", "µs", None),
    ("asking the kernel alone, median", "µs", None),
    ("asking it anew each time, median", "µs", None),
    ("whole sample of asking anew", "%", None),
]


def is_met(own, others, most):
    if most == LESS:
        return own < min(others)
    return most is None or own <= most


def print_table(figures):
    print(f"| | unit | {' | '.join(OTHERS)} | Corvella | wanted | |")
    print(f"|---|---|{'---:|' * len(OTHERS)}---:|---|---|")
    for measure, unit, most in ROWS:
        own = figures.median("corvella", measure)
        others = [figures.median(name, measure) for name in OTHERS]
        wanted = {None: "", LESS: LESS}.get(most, f"≤ {most}")
        print(
            f"| {measure} | {unit} | {' | '.join(map(cell, others))} | {cell(own)} | {wanted}"
            f" | {'' if is_met(own, others, most) else 'missed'} |"
        )


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--rounds", type=int, default=3)
    options.add_argument("--seconds", type=int, default=60)
    options.add_argument("--history", type=int, default=HISTORY)
    wanted = options.parse_args()

    figures = Figures()
    measure_sample(figures)
    measure_desktop(figures, wanted.rounds, wanted.seconds, wanted.history)
    shown = figures.median("corvella", "CPU a minute, tab shown")
    figures.add("corvella", "CPU a sample, tab shown", shown / SAMPLES_A_MINUTE)
    print_table(figures)


if __name__ == "__main__":
    main()
