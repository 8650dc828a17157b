"""What the benchmarks share: running programs and what they cost, the item, the popover, the figures."""

import os
import re
import statistics
import subprocess
import sys
import time

BUILD = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "build", "release")
CORVELLA = os.path.join(BUILD, "bin", "corvella")
LAUNCH_WATCH = os.path.join(BUILD, "bench", "launch-watch")

REST = 1.0  # Seconds for a program to come to rest.
MEMORY = {
    "private": ("Private_Clean", "Private_Dirty"),
    "private dirty": ("Private_Dirty",),
    "PSS": ("Pss",),
}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=30).stdout


class Threads:
    """The threads of running processes and what they have used since they began."""

    def __init__(self, *processes):
        self.processes = processes

    def each(self, name):
        """The text of a file of each thread, by thread; without those that end meanwhile."""
        texts = {}
        for process in self.processes:
            for thread in os.listdir(f"/proc/{process}/task"):
                try:
                    with open(f"/proc/{process}/task/{thread}/{name}", encoding="utf-8") as file:
                        texts[thread] = file.read()
                except (FileNotFoundError, ProcessLookupError):
                    continue
        return texts

    def switches(self):
        """How often each went to sleep."""
        pattern = re.compile(r"^voluntary_ctxt_switches:\s+(\d+)", re.MULTILINE)
        return {
            thread: int(pattern.search(text)[1]) for thread, text in self.each("status").items()
        }

    def switches_since(self, before):
        """A thread that ended in between woke up at least for that."""
        now = self.switches()
        ended = len(before.keys() - now.keys())
        return ended + sum(count - before.get(thread, 0) for thread, count in now.items())

    def cpu(self):
        """Milliseconds of each on a processor: counted by the nanosecond, not by the tick."""
        return {
            thread: int(text.split()[0]) / 1e6 for thread, text in self.each("schedstat").items()
        }

    def cpu_since(self, before):
        """Without what a thread used that ended in between."""
        return sum(used - before.get(thread, 0) for thread, used in self.cpu().items())


class Program(Threads):
    """A running program whose launch was watched."""

    def __init__(self, *command):
        self.watch = subprocess.Popen(
            [LAUNCH_WATCH, *command], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True,
        )
        pid, taken, used = self.watch.stdout.readline().split()
        super().__init__(pid)
        self.pid, self.launch, self.cpu_to_item = pid, float(taken), float(used)
        time.sleep(REST)

    def stop(self):
        self.watch.stdin.close()
        self.watch.wait(10)


def memory(program):
    """Megabytes by name."""
    with open(f"/proc/{program.pid}/smaps_rollup", encoding="ascii") as file:
        sizes = dict(re.findall(r"^(\w+): +(\d+) kB", file.read(), re.MULTILINE))
    return {name: sum(int(sizes[each]) for each in of) / 1024 for name, of in MEMORY.items()}


def place_of_item():
    for line in output("xwininfo", "-root", "-tree").splitlines():
        found = re.search(
            r'"Corvella [^"]*": \("corvella" "Corvella"\)\s+(\d+)x(\d+)\S+\s+\+(-?\d+)\+(-?\d+)', line
        )
        if found and int(found[2]) < 60:
            width, height, x, y = map(int, found.groups())
            return x + width // 2, y + height // 2
    sys.exit("Corvella has no item in the tray")


def press(key):
    output("xdotool", "key", key)
    time.sleep(0.3)


class Figures:
    """Values by program and measure."""

    def __init__(self):
        self.values = {}

    def add(self, program, measure, value):
        self.values.setdefault((program, measure), []).append(value)

    def median(self, program, measure):
        values = self.values.get((program, measure))
        return statistics.median(values) if values else None


def cell(value):
    return "" if value is None else f"{value:.1f}"
