"""A program that is started by a message: keeps the addresses that it is told to open, or
"activated" when it is told none.

    application.py NAME FILE [REFUSAL]

With a refusal it does neither, and says so.
"""

import os
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME, FILE = sys.argv[1:3]
REFUSAL = sys.argv[3:]


class Application(dbus.service.Object):
    @dbus.service.method("org.freedesktop.Application", in_signature="asa{sv}")
    def Open(self, addresses, platform_data):
        self.keep(addresses)

    @dbus.service.method("org.freedesktop.Application", in_signature="a{sv}")
    def Activate(self, platform_data):
        self.keep(["activated"])

    def keep(self, lines):
        GLib.idle_add(loop.quit)
        if REFUSAL:
            raise dbus.DBusException(REFUSAL[0], name="org.corvella.Refused")
        with open(FILE + ".new", "w", encoding="utf-8") as kept:
            kept.writelines(line + "\n" for line in lines)
        os.rename(FILE + ".new", FILE)


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName(NAME, bus)
application = Application(bus, "/" + NAME.replace(".", "/"))
loop = GLib.MainLoop()
loop.run()
