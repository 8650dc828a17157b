"""GNOME with the AppIndicator extension: the item is a label, and a double click opens it."""

from desktop import IDLE, wait_until
from gnome_checks import NATIVE_CHECKS
from gnome_session import APPINDICATOR, GnomeSession


def a_click_opens_the_menu(scene):
    stage = scene.stage
    wait_until(lambda: stage.item()["label"] == IDLE, "the label is the title")
    x, y, width, height = scene.item
    stage.click(x + width // 2, y + height // 2)
    wait_until(lambda: stage.item()["isOpen"], "the menu opens")
    scene.settled("menu")
    if stage.item()["entries"] != ["Corvella", "Quit Corvella"]:
        raise AssertionError(f"its entries are {stage.item()['entries']}")
    stage.press_key("Down")
    stage.press_key("Return")
    scene.wait_for_keyboard()
    scene.picture("popover-by-menu")
    left, _, width, _ = scene.popover()
    if left + width < stage.size[0] - scene.points(14):
        raise AssertionError(f"it stands at {left}, not at the panel's end")
    scene.close()


class Desktop(GnomeSession):
    parts = ("gnome-shell", "gnome-shell-extension-appindicator")
    title = "label"
    opens_by = "double click"
    extensions = (APPINDICATOR,)
    checks = (a_click_opens_the_menu, *NATIVE_CHECKS)
