"""A settings portal: holds what its first argument says and changes it on request.

The argument and each change are Python expressions over D-Bus types, namespace to key to value.
"""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SETTINGS = "org.freedesktop.portal.Settings"


class Portal(dbus.service.Object):
    def __init__(self, bus, settings):
        name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
        super().__init__(name, "/org/freedesktop/portal/desktop")
        self.settings = settings

    @dbus.service.method(SETTINGS, in_signature="as", out_signature="a{sa{sv}}")
    def ReadAll(self, wanted):
        return {space: self.settings[space] for space in wanted if space in self.settings}

    @dbus.service.signal(SETTINGS, signature="ssv")
    def SettingChanged(self, space, key, value):
        pass

    @dbus.service.method("org.corvella.Test", in_signature="sss")
    def Change(self, space, key, expression):
        value = parsed(expression)
        self.settings.setdefault(space, {})[key] = value
        self.SettingChanged(space, key, value)


def parsed(expression):
    return eval(expression, {"u": dbus.UInt32, "s": dbus.String, "rgb": rgb})


def rgb(*parts):
    return dbus.Struct([dbus.Double(part) for part in parts], signature="ddd")


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
portal = Portal(dbus.SessionBus(), parsed(sys.argv[1]))
GLib.MainLoop().run()
