"""openbox and xfce4-panel with the compositor picom."""

from desktops.openbox import Desktop as Uncomposited


class Desktop(Uncomposited):
    parts = ("openbox", "picom", "xfce4-panel")
    composited = True
