"""GNOME with the AppIndicator extension: the item is a label, and a double click opens it."""

from gnome_session import APPINDICATOR, GnomeSession


class Desktop(GnomeSession):
    title = "label"
    opens_by = "double click"
    extensions = (APPINDICATOR,)
