"""Calendars to measure with: as many events as wanted, the same ones each time."""

import datetime
import os

DAY = datetime.timedelta(days=1)
WEEKDAYS = ("MO", "TU", "WE", "TH", "FR", "SA", "SU")

HEAD = """BEGIN:VCALENDAR
VERSION:2.0
PRODID:-//Corvella//Bench//EN
BEGIN:VTIMEZONE
TZID:Europe/Berlin
BEGIN:DAYLIGHT
DTSTART:19810329T020000
RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU
TZOFFSETFROM:+0100
TZOFFSETTO:+0200
TZNAME:CEST
END:DAYLIGHT
BEGIN:STANDARD
DTSTART:19961027T030000
RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU
TZOFFSETFROM:+0200
TZOFFSETTO:+0100
TZNAME:CET
END:STANDARD
END:VTIMEZONE
"""
FOOT = "END:VCALENDAR\n"
NOTES = (
    "DESCRIPTION:Agenda: what was done\\, what is next\\, what is in the way.\\nDial in\n"
    "  at https://us02web.zoom.us/j/{number}?pwd=abcdefghijklmnopqrstuvwxyz and bring c\n"
    " offee.\n"
)
PEOPLE = (
    "ORGANIZER;CN=Ann Example:mailto:ann@example.org\n"
    "ATTENDEE;CN=Bob Example;PARTSTAT=ACCEPTED;ROLE=REQ-PARTICIPANT;RSVP=TRUE:mailt\n"
    " o:bob@example.org\n"
)


def when(start):
    """Half an hour from then."""
    end = start + datetime.timedelta(minutes=30)
    return (
        f"DTSTART;TZID=Europe/Berlin:{start:%Y%m%dT%H%M%S}\n"
        f"DTEND;TZID=Europe/Berlin:{end:%Y%m%dT%H%M%S}\n"
    )


def weekly(start, has_exception):
    """On the weekday that it begins on."""
    excluded = start + 14 * DAY
    text = f"RRULE:FREQ=WEEKLY;BYDAY={WEEKDAYS[start.weekday()]}\n"
    return text + f"EXDATE;TZID=Europe/Berlin:{excluded:%Y%m%dT%H%M%S}\n" if has_exception else text


def event(number, day):
    """One in twenty is of every week, one in twenty lasts all day; all others stand in ten years."""
    hour = datetime.time(8 + number % 9)
    other = day + (number * 37 % 3650 - 1825) * DAY
    text = f"BEGIN:VEVENT\nUID:{number}@bench.example\nDTSTAMP:20260101T000000Z\n"
    if number % 20 == 0:
        start = datetime.datetime.combine(day - (730 - number // 20 % 7) * DAY, hour)
        text += when(start) + weekly(start, number % 3)
    elif number % 20 == 1:
        text += f"DTSTART;VALUE=DATE:{other:%Y%m%d}\nDTEND;VALUE=DATE:{other + DAY:%Y%m%d}\n"
    else:
        text += when(datetime.datetime.combine(other, hour))
    text += f"SUMMARY:Meeting number {number}\nLOCATION:Room {number % 40}\n"
    if number % 3 == 0:
        text += NOTES.format(number=number)
    if number % 2:
        text += PEOPLE
    return text + "END:VEVENT\n"


def event_of(day, number):
    hour = datetime.time(number * 7 % 23, number % 60)
    return (
        f"BEGIN:VEVENT\nUID:{number}@today.example\nDTSTAMP:20260101T000000Z\n"
        + when(datetime.datetime.combine(day, hour))
        + f"SUMMARY:Meeting number {number}\nLOCATION:Room {number % 40}\n"
        + NOTES.format(number=number) + "END:VEVENT\n"
    )


def write(path, events):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8", newline="") as file:
        for text in (HEAD, *events, FOOT):
            file.write(text.replace("\n", "\r\n"))


def write_calendar(path, count, day):
    """All in one file."""
    write(path, (event(number, day) for number in range(count)))


def write_today(path, count, day):
    """All of them on that day."""
    write(path, (event_of(day, number) for number in range(count)))


def write_folder(folder, count, day):
    """Each in a file of its own."""
    for number in range(count):
        write(os.path.join(folder, f"{number}.ics"), [event(number, day)])
