"""The status item on trays that come late, go and come again, and on a desktop without any."""

import unittest

import desktop
from desktop import Corvella, Daemon, press_key, wait_until

TRAYER = "trayer --edge top --align right --widthtype request --height 28"


class Trays(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        self.corvella = Corvella(is_shown=False)
        self.addCleanup(self.corvella.stop)

    def test_without_a_tray_a_second_start_opens_the_popover(self):
        self.corvella.start_again()
        wait_until(self.corvella.popover, "the popover opens")
        self.assertIsNone(self.corvella.item())
        press_key("Escape")
        self.corvella.wait_until_closed()

    def test_a_late_and_a_restarted_tray_take_the_item(self):
        for _ in range(2):
            tray = Daemon(TRAYER)
            self.corvella.open_popover()
            press_key("Escape")
            self.corvella.wait_until_closed()
            tray.stop()
            wait_until(lambda: not self.corvella.item(), "the item goes with its tray")


if __name__ == "__main__":
    desktop.main()
