"""Xfce's own window manager, which composites, its desktop and its panel."""

from desktop import Daemon, run, wait_until
from desktops.openbox import Desktop as Openbox

COMPOSITING = "xfconf-query --channel xfwm4 --property /general/use_compositing --set"


class Desktop(Openbox):
    parts = ("xfwm4", "xfce4-panel", "xfdesktop4")
    window_manager = "xfwm4 --compositor=on"
    panel_command = "xfce4-panel"
    environment = {"XDG_CURRENT_DESKTOP": "XFCE"}
    composited = True
    wallpaper = None

    def start_panel(self):
        super().start_panel()
        if not self.wallpaper:
            self.wallpaper = Daemon("xfdesktop")
            wait_until(lambda: '"xfdesktop"' in run("xwininfo -root -tree"), "the desktop shows", 30)

    def stop(self):
        super().stop()
        if self.wallpaper:
            self.wallpaper.stop()

    def start_compositor(self):
        run(f"{COMPOSITING} true")
        wait_until(self.is_composited, "the window manager composites", 30)

    def stop_compositor(self):
        run(f"{COMPOSITING} false")
        wait_until(lambda: not self.is_composited(), "the window manager composites no more", 30)
