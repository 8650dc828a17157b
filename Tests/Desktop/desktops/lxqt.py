"""LXQt's panel as it comes, with openbox."""

from session import X11Session


class Desktop(X11Session):
    parts = ("lxqt-panel", "openbox")
    title = "square"
    panel_edge = "bottom"
    panel_size = 32
    panel_scales = False
    panel_command = "lxqt-panel"
    # As its session sets it: that is where its own settings are.
    environment = {
        "XDG_CURRENT_DESKTOP": "LXQt",
        "XDG_CONFIG_DIRS": "/etc:/etc/xdg:/usr/share",
    }
