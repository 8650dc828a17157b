"""A window that fills the screen, of a program that speaks Wayland: native_window.py [full]."""

import sys

import gi

gi.require_version("Gtk", "4.0")
from gi.repository import GLib, Gtk  # noqa: E402

window = Gtk.Window(title="Native", child=Gtk.Label(label="Native"))
window.maximize()
if "full" in sys.argv:
    window.fullscreen()
window.present()
GLib.MainLoop().run()
