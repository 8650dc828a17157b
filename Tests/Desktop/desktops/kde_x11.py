"""KDE Plasma on X11 as it comes: kwin_x11, the daemon that knows the items, and plasmashell."""

from desktop import Daemon, run
from session import X11Session


class Desktop(X11Session):
    parts = ("plasma-workspace", "kwin-x11")
    title = "square"
    panel_edge = "bottom"
    panel_size = 44
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

    def start_panel(self):
        if not self.others:
            self.others = [Daemon("kded5"), Daemon("/usr/lib/x86_64-linux-gnu/libexec/kactivitymanagerd")]
            run("gdbus wait --session --timeout 60 org.kde.StatusNotifierWatcher")
        super().start_panel()

    def stop(self):
        super().stop()
        for each in self.others:
            each.stop()
