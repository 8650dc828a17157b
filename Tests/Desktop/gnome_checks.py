"""Corvella, which comes through Xwayland, beside windows of programs that speak Wayland."""

import contextlib
import pathlib

from desktop import Daemon, wait_until

NATIVE = pathlib.Path(__file__).with_name("native_window.py")


@contextlib.contextmanager
def native_window(stage, size=""):
    program = Daemon(f"/usr/bin/python3 {NATIVE} {size}")
    try:
        wait_until(lambda: stage.window_with_keyboard() == "Native", "the window is there", 30)
        yield
    finally:
        program.stop()


def a_click_on_a_native_window_closes_the_popover(scene):
    stage = scene.stage
    with native_window(stage):
        scene.open_by_item()
        scene.picture("popover-over-native-window")
        stage.click(stage.size[0] // 4, stage.size[1] // 2)
        scene.corvella.wait_until_closed()
        wait_until(lambda: stage.window_with_keyboard() == "Native", "it has the keyboard again")


def a_click_on_the_top_bar_closes_the_popover(scene):
    scene.open_by_item()
    scene.stage.click(scene.stage.size[0] // 4, scene.points(4))
    scene.corvella.wait_until_closed()


def the_widget_lies_over_a_full_screen(scene):
    scene.stage.move(40, scene.stage.size[1] // 2)
    with native_window(scene.stage, "full"):
        scene.settled("full-screen")
        scene.wait_for_widget("the widget lies over it")


NATIVE_CHECKS = (
    a_click_on_a_native_window_closes_the_popover,
    a_click_on_the_top_bar_closes_the_popover,
    the_widget_lies_over_a_full_screen,
)
