"""KDE Plasma on X11 as it comes: kwin_x11, the daemon that knows the items, and plasmashell."""

from desktop import Daemon, run, wait_until
from session import X11Session


COMPOSITING = "gdbus call --session -d org.kde.KWin -o /Compositor -m org.kde.kwin.Compositing."


class Desktop(X11Session):
    parts = ("plasma-workspace", "kwin-x11")
    title = "square"
    panel_edge = "bottom"
    panel_size = 44
    composited = True
    cannot = {
        "and_come_or_go_again": "without a graphics card kwin, told to composite again, draws"
        " nothing but the bare screen",
    }
    window_manager = "kwin_x11"
    panel_command = "plasmashell --no-respawn"
    environment = {
        "XDG_CURRENT_DESKTOP": "KDE",
        "KDE_FULL_SESSION": "true",
        "KDE_SESSION_VERSION": "5",
        # There is no graphics card here.
        "QT_QUICK_BACKEND": "software",
    }

    def __init__(self, scale):
        super().__init__(scale)
        self.others = []

    def start_compositor(self):
        run(COMPOSITING + "resume")
        wait_until(self.is_composited, "the window manager composites", 60)

    def stop_compositor(self):
        run(COMPOSITING + "suspend")
        wait_until(lambda: not self.is_composited(), "the window manager composites no more", 30)

    def start_panel(self):
        if not self.others:
            run(
                "gdbus call --session -d org.freedesktop.DBus -o /org/freedesktop/DBus"
                " -m org.freedesktop.DBus.StartServiceByName org.kde.ActivityManager 0"
            )
            self.others = [Daemon("kded5")]
            run("gdbus wait --session --timeout 60 org.kde.StatusNotifierWatcher")
        super().start_panel()

    def stop(self):
        super().stop()
        for each in self.others:
            each.stop()
