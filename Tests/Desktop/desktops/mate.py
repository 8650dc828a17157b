"""MATE as it comes, with two panels: the notification area shows the item's label."""

from session import X11Session


class Desktop(X11Session):
    parts = ("marco", "mate-panel")
    title = "label"
    panel_size = 24
    window_manager = "marco --no-composite"
    panel_command = "mate-panel"
    environment = {"XDG_CURRENT_DESKTOP": "MATE"}
