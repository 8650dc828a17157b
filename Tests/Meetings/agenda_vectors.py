#!/usr/bin/python3
"""Makes calendars of random repeated events, and has AgendaVectors compare what it finds in them with
what dateutil's rules and Python's own time zones make of the same events.

    agenda_vectors.py PROGRAM [SEED [EVENTS]]
"""
import json
import pathlib
import random
import subprocess
import sys
import tempfile
from datetime import date, datetime, time, timedelta, timezone
from zoneinfo import ZoneInfo

from dateutil.rrule import rrulestr

# Days on which the clock is changed, and one on which it is not.
DAYS = [
    ("Europe/Berlin", "2026-03-29"),
    ("Europe/Berlin", "2026-10-25"),
    ("America/New_York", "2026-03-08"),
    ("America/New_York", "2026-11-01"),
    ("Australia/Lord_Howe", "2026-04-05"),
    ("Asia/Kathmandu", "2026-07-15"),
]
# None is wherever the reader is.
ZONES = ["Europe/Berlin", "America/New_York", "Asia/Tokyo", "America/St_Johns", "Pacific/Kiritimati", "UTC", None]
WEEKDAYS = ["MO", "TU", "WE", "TH", "FR", "SA", "SU"]
MARGIN = timedelta(days=2)


def some(values, most):
    return sorted(random.sample(list(values), random.randint(1, most)))


def joined(values):
    return ",".join(map(str, values))


def signed(values, most):
    return [value if random.random() < 0.7 else -value for value in some(values, most)]


def by_yearly():
    parts = []
    kind = random.choice(["plain", "months", "week", "yearday", "weekday"])
    if kind == "months":
        parts.append("BYMONTH=" + joined(some(range(1, 13), 6)))
        parts.append(random.choice(["BYMONTHDAY=" + joined(signed(range(1, 32), 6)), "BYDAY=" + joined(numbered(4))]))
    elif kind == "week":
        parts.append("BYWEEKNO=" + joined(signed(range(1, 54), 20)))
        parts.append("BYDAY=" + joined(some(WEEKDAYS, 3)))
    elif kind == "yearday":
        parts.append("BYYEARDAY=" + joined(signed(range(1, 367), 40)))
    elif kind == "weekday":
        parts.append("BYDAY=" + joined(numbered(4, 53)))
    return parts


def numbered(most, last=5):
    return [f"{random.choice([1, 1, -1]) * random.randint(1, last)}{day}" for day in some(WEEKDAYS, most)]


def by_monthly():
    kind = random.choice(["plain", "days", "weekday", "friday13", "setpos"])
    if kind == "days":
        return ["BYMONTHDAY=" + joined(signed(range(1, 32), 8))]
    if kind == "weekday":
        return ["BYDAY=" + joined(numbered(3))]
    if kind == "friday13":
        return ["BYDAY=" + joined(some(WEEKDAYS, 3)), "BYMONTHDAY=" + joined(some(range(1, 32), 15))]
    if kind == "setpos":
        return ["BYDAY=" + joined(some(WEEKDAYS, 7)), "BYSETPOS=" + joined(signed(range(1, 8), 4))]
    return []


def by_parts(frequency):
    if frequency == "YEARLY":
        parts = by_yearly()
    elif frequency == "MONTHLY":
        parts = by_monthly()
    elif frequency == "WEEKLY":
        # No positions: dateutil counts them in the first week from the first day on.
        parts = random.choice([[], ["BYDAY=" + joined(some(WEEKDAYS, 5))]])
    elif frequency == "DAILY":
        parts = random.choice([[], ["BYMONTH=" + joined(some(range(1, 13), 6))],
            ["BYDAY=" + joined(some(WEEKDAYS, 4))], ["BYHOUR=" + joined(some(range(24), 5))],
            ["BYHOUR=2,3", "BYMINUTE=" + joined(some(range(60), 4))]])
    else:
        parts = random.choice([[], ["BYHOUR=" + joined(some(range(24), 8))], ["BYDAY=" + joined(some(WEEKDAYS, 4))]])
    if random.random() < 0.3:
        parts.append("WKST=" + random.choice(WEEKDAYS))
    return parts


def random_rule():
    frequency = random.choice(["YEARLY", "MONTHLY", "WEEKLY", "DAILY", "HOURLY"])
    interval = {"HOURLY": 30, "YEARLY": 2}.get(frequency, 5)
    parts = [f"FREQ={frequency}"]
    if random.random() < 0.5:
        parts.append(f"INTERVAL={random.randint(1, interval)}")
    return ";".join(parts + by_parts(frequency))


class Event:
    def __init__(self, uid, day, place):
        self.uid = uid
        self.day = day
        self.reader = ZoneInfo(place)
        self.is_whole_day = random.random() < 0.2
        self.zone = None if self.is_whole_day else random.choice(ZONES)
        self.lines = []
        self.first = None
        while not self.first:
            self.rule = random_rule()
            self.first = self.first_start()

    # A start that the rule itself gives: whether another counts as one is left open. Hours that never
    # come are an error to the rule's maker.
    def first_start(self):
        if self.is_whole_day and ("HOUR" in self.rule or "MINUTE" in self.rule):
            return None
        day = self.day - timedelta(days=random.choice([0, 1, 7, 30, 400, 900]))
        hours = [0] if self.is_whole_day else [0, 1, 2, 2, 2, 3, 9, 12, 23]
        minutes = [0] if self.is_whole_day else [0, 0, 30, 45]
        base = datetime.combine(day, time(random.choice(hours), random.choice(minutes)))
        try:
            return next(iter(rrulestr(f"{self.rule};UNTIL={self.day.year + 1}0101T000000", dtstart=base)), None)
        except ValueError:
            return None

    def utc(self, local):
        zone = self.reader if self.zone is None else ZoneInfo(self.zone)
        return int(local.replace(tzinfo=zone).timestamp())

    def stated(self, name, local):
        if self.is_whole_day:
            return f"{name};VALUE=DATE:{local:%Y%m%d}"
        if self.zone == "UTC":
            return f"{name}:{local:%Y%m%dT%H%M%S}Z"
        place = f";TZID={self.zone}" if self.zone else ""
        return f"{name}{place}:{local:%Y%m%dT%H%M%S}"

    def starts(self):
        whole = self.limited()
        until = datetime.combine(self.day, time()) + MARGIN
        found = [start for start in rrulestr(whole, dtstart=self.first).between(self.first, until, inc=True)]
        # Two hours at a gap are one point of time, and one start.
        return list({self.utc(start): start for start in reversed(sorted({self.first, *found}))}.values())[::-1]

    # UNTIL and COUNT, where they cut something off.
    def limited(self):
        self.stated_rule = self.rule
        chance = random.random()
        if chance < 0.25:
            count = random.choice([1, 2, 3, 10, 100, 1000])
            self.stated_rule += f";COUNT={count}"
            return self.stated_rule
        if chance < 0.5:
            until = datetime.combine(self.day, time(random.choice([0, 9, 12, 23]))) + timedelta(days=random.randint(-3, 3))
            if self.is_whole_day:
                until = datetime.combine(until.date(), time())
                self.stated_rule += f";UNTIL={until:%Y%m%d}"
            elif self.zone is None:
                self.stated_rule += f";UNTIL={until:%Y%m%dT%H%M%S}"
            else:
                stamp = datetime.fromtimestamp(self.utc(until), timezone.utc)
                self.stated_rule += f";UNTIL={stamp:%Y%m%dT%H%M%S}Z"
            return self.rule + f";UNTIL={until:%Y%m%dT%H%M%S}"
        return self.rule

    def length(self):
        if self.is_whole_day:
            days = random.choice([1, 1, 2, 5])
            line = random.choice([self.stated("DTEND", self.first + timedelta(days=days)), f"DURATION:P{days}D"])
            return line, lambda start: self.utc(start + timedelta(days=days))
        if random.random() < 0.3:
            days = random.choice([1, 2])
            return f"DURATION:P{days}DT30M", lambda start: self.utc(start + timedelta(days=days)) + 1800
        minutes = random.choice([0, 10, 60, 300, 1500])
        end = self.first + timedelta(minutes=minutes)
        seconds = max(self.utc(end) - self.utc(self.first), 0)
        return self.stated("DTEND", end), lambda start: self.utc(start) + seconds

    def make(self, from_utc, to_utc):
        starts = self.starts()
        end_line, end_of = self.length()
        excluded = random.sample(starts, min(len(starts), random.choice([0, 0, 1, 3]))) if random.random() < 0.5 else []
        recent = [start for start in starts if abs(start.date() - self.day) <= MARGIN]
        if recent and random.random() < 0.4:
            excluded.append(random.choice(recent))
        self.lines = ["BEGIN:VEVENT", f"UID:{self.uid}", f"SUMMARY:{self.uid}", self.stated("DTSTART", self.first),
            end_line, "RRULE:" + self.stated_rule, *[self.stated("EXDATE", start) for start in excluded], "END:VEVENT"]
        expected = []
        for start in starts:
            begin, end = self.utc(start), end_of(start)
            is_in = begin < to_utc and (end > from_utc or begin == end >= from_utc)
            if is_in and start not in excluded:
                expected.append({"uid": self.uid, "start": begin, "end": end, "allday": self.is_whole_day, "title": self.uid})
        return expected


def compare(program, folder, place, day, count):
    reader = ZoneInfo(place)
    midnight = datetime.combine(day, time(), reader)
    from_utc = int(midnight.timestamp())
    to_utc = int(datetime.combine(day + timedelta(days=1), time(), reader).timestamp())
    lines, expected = ["BEGIN:VCALENDAR"], []
    for number in range(count):
        event = Event(f"{number}", day, place)
        expected += event.make(from_utc, to_utc)
        lines += event.lines
    lines.append("END:VCALENDAR")
    calendar, answer = folder / "random.ics", folder / "random.json"
    calendar.write_text("\r\n".join(lines) + "\r\n")
    answer.write_text(json.dumps(expected))
    done = subprocess.run([program, calendar, answer, place, day.isoformat()], capture_output=True, text=True)
    print(place, day, done.stdout.splitlines()[-1:], done.stderr)
    if done.returncode:
        print(done.stdout)
        wrong = {line.split("\t")[0].split(": ")[1] for line in done.stdout.splitlines() if "\t" in line}
        texts = "\n".join(lines).split("BEGIN:VEVENT")
        print("\n".join(text for text in texts for uid in wrong if f"UID:{uid}\n" in text))
    return done.returncode == 0


def main():
    program = sys.argv[1]
    random.seed(int(sys.argv[2]) if len(sys.argv) > 2 else 1)
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 60
    with tempfile.TemporaryDirectory() as folder:
        results = [compare(program, pathlib.Path(folder), place, date.fromisoformat(day), count) for place, day in DAYS]
    return 0 if all(results) else 1


sys.exit(main())
