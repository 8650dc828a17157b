"""A program that is started by a message: keeps the addresses that it is told to open.

    application.py NAME FILE
"""

import os
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME, FILE = sys.argv[1:]


class Application(dbus.service.Object):
    @dbus.service.method("org.freedesktop.Application", in_signature="asa{sv}")
    def Open(self, addresses, platform_data):
        with open(FILE + ".new", "w", encoding="utf-8") as kept:
            kept.writelines(address + "\n" for address in addresses)
        os.rename(FILE + ".new", FILE)
        loop.quit()


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName(NAME, bus)
application = Application(bus, "/" + NAME.replace(".", "/"))
loop = GLib.MainLoop()
loop.run()
