#!/usr/bin/python3
"""Sends to an address as a person's machine does, quiet with bursts: talk.py ADDRESS MOST_KB_A_SECOND"""

import math
import socket
import sys
import time

STEP = 0.05  # Seconds.
DATAGRAM = bytes(1400)


def share(seconds):
    """Of the most: two bursts of different lengths that meet now and then."""
    slow = max(0, math.sin(seconds / 7)) ** 6
    fast = max(0, math.sin(seconds / 2.6 + 1)) ** 4
    return 0.01 + 0.7 * slow + 0.25 * fast


def main():
    address, most = sys.argv[1], float(sys.argv[2]) * 1024
    line = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    owed = 0.0
    while True:
        owed += most * STEP * share(time.monotonic())
        while owed >= len(DATAGRAM):
            line.sendto(DATAGRAM, (address, 9))
            owed -= len(DATAGRAM)
        time.sleep(STEP)


main()
