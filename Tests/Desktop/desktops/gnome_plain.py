"""GNOME as it comes: nobody shows items, and a second start opens the popover."""

from gnome_checks import NATIVE_CHECKS
from gnome_session import GnomeSession


class Desktop(GnomeSession):
    opens_by = "start"
    checks = NATIVE_CHECKS
    cannot = {
        **GnomeSession.cannot,
        "the_item_shows_its_title": "GNOME shows no items without the extension",
        "the_item_comes_back_with_its_panel": "GNOME shows no items without the extension",
    }
