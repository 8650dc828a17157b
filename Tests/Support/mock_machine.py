"""A machine with mocked devices, for daemons that read /sys.

Prints the folder of the mock, where a daemon finds it that is started with UMOCKDEV_DIR and the
preloaded library. Then takes lines from standard input, their parts separated by '|', and answers
each with "done":
    add|NAME|ATTRIBUTE=VALUE|...    plugs in a power supply
    set|NAME|ATTRIBUTE=VALUE|...    changes it and tells the kernel's listeners
    remove|NAME                     unplugs it
    write|PATH|VALUE                makes a file below the mock's folder
"""
import os
import sys

import gi

gi.require_version("UMockdev", "1.0")
from gi.repository import UMockdev


def place(name):
    return "/sys/devices/" + name


def add(machine, name, *attributes):
    pairs = dict(attribute.split("=", 1) for attribute in attributes)
    flat = [part for pair in pairs.items() for part in pair]
    properties = ["POWER_SUPPLY_NAME", name, "POWER_SUPPLY_TYPE", pairs["type"]]
    machine.add_device("power_supply", name, None, flat, properties)
    machine.uevent(place(name), "add")


def change(machine, name, *attributes):
    for attribute in attributes:
        machine.set_attribute(place(name), *attribute.split("=", 1))
    machine.uevent(place(name), "change")


def remove(machine, name):
    machine.uevent(place(name), "remove")
    machine.remove_device(place(name))


def write(machine, path, value):
    file = os.path.join(machine.get_root_dir(), path)
    os.makedirs(os.path.dirname(file), exist_ok=True)
    with open(file, "w") as opened:
        opened.write(value + "\n")


COMMANDS = {"add": add, "set": change, "remove": remove, "write": write}

testbed = UMockdev.Testbed.new()
print(testbed.get_root_dir(), flush=True)
for line in sys.stdin:
    command, *parts = line.rstrip("\n").split("|")
    COMMANDS[command](testbed, *parts)
    print("done", flush=True)
