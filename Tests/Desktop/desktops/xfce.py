"""Xfce's own window manager, which composites, and its panel."""

from desktop import run, wait_until
from desktops.openbox import Desktop as Openbox

COMPOSITING = "xfconf-query --channel xfwm4 --property /general/use_compositing --set"


class Desktop(Openbox):
    parts = ("xfwm4", "xfce4-panel")
    window_manager = "xfwm4 --compositor=on"
    panel_command = "xfce4-panel"
    environment = {"XDG_CURRENT_DESKTOP": "XFCE"}
    composited = True

    def start_compositor(self):
        run(f"{COMPOSITING} true")
        wait_until(self.is_composited, "the window manager composites", 30)

    def stop_compositor(self):
        run(f"{COMPOSITING} false")
        wait_until(lambda: not self.is_composited(), "the window manager composites no more", 30)
