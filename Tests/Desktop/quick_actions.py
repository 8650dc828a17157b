"""The Actions tab over a real clipboard and a server that speaks the interface of Ollama."""

import json
import os
import shutil
import signal
import subprocess
import sys
import time
import unittest

from gi.repository import Atspi

import desktop
from desktop import Corvella, has_state, press_key, type_text, wait_until

SERVER = os.path.join(
    os.path.dirname(os.path.abspath(__file__)), "..", "Support", "model_server.py"
)
WARNING = (
    "Ollama isn't running. Start it (ollama serve) and it will be found at http://localhost:11434."
)
NO_MODELS = "Ollama is running but has no models. Try: ollama pull llama3.2"
STORY = "  so do i  ,i think.Yes\n\n\n\nThe cat sat. The cats ate. Dogs run far away from any cat. "


def clipboard(*options):
    answer = subprocess.run(
        ["xclip", "-selection", "clipboard", "-out", *options], capture_output=True, timeout=20
    )
    return answer.stdout


class ClipboardOwner:
    """A program that has put something on the clipboard and stays to hand it out."""

    def __init__(self, data, target="UTF8_STRING"):
        data = data.encode() if isinstance(data, str) else data
        self.process = subprocess.Popen(
            ["xclip", "-quiet", "-selection", "clipboard", "-in", "-target", target],
            stdin=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
        )
        self.process.stdin.write(data)
        self.process.stdin.close()
        wait_until(lambda: clipboard("-target", target) == data, "the clipboard is filled")

    def hang(self):
        self.process.send_signal(signal.SIGSTOP)

    def stop(self):
        self.process.send_signal(signal.SIGCONT)
        self.process.terminate()
        self.process.wait(10)


class ModelServer:
    """Serves language models where Ollama does."""

    def __init__(self, **behaviour):
        self.process = subprocess.Popen(
            [sys.executable, SERVER, "11434"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        self.wait_for(lambda news: "port" in news)
        self.set(**behaviour)

    def wait_for(self, is_it):
        for line in self.process.stdout:
            news = json.loads(line)
            if is_it(news):
                return news
        raise AssertionError("the model server ended; does another one have its port?")

    def set(self, **behaviour):
        self.process.stdin.write(json.dumps(behaviour) + "\n")
        self.process.stdin.flush()
        self.wait_for(lambda news: "set" in news)

    def asked_to_rewrite(self):
        """What it was asked, once it was."""
        news = self.wait_for(lambda news: news.get("path") == "/api/generate")
        return json.loads(news["body"])

    def stop(self):
        self.process.terminate()
        self.process.wait(10)
        self.process.stdin.close()
        self.process.stdout.close()


class QuickActions(unittest.TestCase):
    def setUp(self):
        desktop.enable_accessibility()
        shutil.rmtree(os.path.dirname(desktop.settings_file()), ignore_errors=True)
        self.corvella = None

    def tearDown(self):
        if self.corvella:
            self.corvella.stop()

    def serve(self, **behaviour):
        server = ModelServer(**behaviour)
        self.addCleanup(server.stop)
        return server

    def copy(self, data, target="UTF8_STRING"):
        owner = ClipboardOwner(data, target)
        self.addCleanup(owner.stop)
        return owner

    def launch(self):
        self.corvella = Corvella()
        self.corvella.open_popover()
        self.corvella.press("Actions", "page tab")
        return self.corvella

    def text(self, name):
        area = self.corvella.find("text", name)
        area.clear_cache()
        return Atspi.Text.get_text(area, 0, -1)

    def wait_for_text(self, name, text):
        try:
            wait_until(lambda: self.text(name) == text, name)
        except AssertionError:
            self.assertEqual(self.text(name), text)

    def is_enabled(self, name, role="push button"):
        return has_state(self.corvella.find(role, name), Atspi.StateType.ENABLED)

    def wait_for_model(self, name):
        def chosen():
            picker = self.corvella.find("push button", "Model")
            picker.clear_cache()
            return picker.get_description()

        wait_until(lambda: chosen() == name, f"model {name}")

    def test_each_tool_shows_its_result_and_copies_it(self):
        self.copy(STORY)
        corvella = self.launch()
        self.wait_for_text("Clipboard text", STORY)
        results = {
            "Summarize": "The cat sat. Dogs run far away from any cat.",
            "Fix spacing & case": "So do I, I think. Yes\n\nThe cat sat. The cats ate. "
            "Dogs run far away from any cat.",
            "Make bullets": "• so do i  ,i think.Yes\n"
            "• The cat sat. The cats ate. Dogs run far away from any cat.",
            "Count words": "18 words · 86 characters · 5 sentences · ~1 min read",
        }
        self.assertFalse(self.is_enabled("Copy"))
        for button, result in results.items():
            with self.subTest(button):
                corvella.press(button)
                self.wait_for_text("Result", result)
                corvella.press("Copy")
                corvella.find("label", "Copied to clipboard")
                self.assertEqual(clipboard().decode(), result)

    def test_what_was_copied_outlives_the_popover(self):
        self.copy("one\ntwo")
        corvella = self.launch()
        self.wait_for_text("Clipboard text", "one\ntwo")
        corvella.press("Make bullets")
        corvella.press("Copy")
        corvella.find("label", "Copied to clipboard")
        press_key("Escape")
        corvella.wait_until_closed()
        self.assertEqual(clipboard().decode(), "• one\n• two")
        corvella.open_popover()
        self.wait_for_text("Clipboard text", "• one\n• two")

    def test_an_image_is_no_text(self):
        self.copy(b"\x89PNG\r\n\x1a\n", "image/png")
        corvella = self.launch()
        corvella.find("label", "Clipboard has no text")
        self.assertEqual(self.text("Clipboard text"), "")
        for button in ("Summarize", "Fix spacing & case", "Make bullets", "Count words"):
            self.assertFalse(self.is_enabled(button))
        desktop.screenshot("actions-no-text")
        self.copy("words")
        corvella.press("Read clipboard")
        self.wait_for_text("Clipboard text", "words")
        wait_until(lambda: "Clipboard has no text" not in corvella.shown("label"), "no complaint")

    def test_a_program_that_hangs_holds_up_nothing(self):
        owner = self.copy("words")
        corvella = self.launch()
        self.wait_for_text("Clipboard text", "words")
        owner.hang()
        corvella.press("Read clipboard")
        corvella.press("Count words")
        self.wait_for_text("Result", "1 words · 5 characters · 1 sentences · ~1 min read")
        self.assertEqual(self.text("Clipboard text"), "words")
        corvella.find("label", "Clipboard has no text")

    def test_pasting_from_a_program_that_hangs_holds_up_nothing(self):
        owner = self.copy("words")
        corvella = self.launch()
        self.wait_for_text("Clipboard text", "words")
        press_key("ctrl+End")
        owner.hang()
        start = time.monotonic()
        press_key("ctrl+v")
        type_text("!")
        self.wait_for_text("Clipboard text", "words!")
        self.assertLess(time.monotonic() - start, 4)  # Qt alone would wait for longer.

    def test_text_that_its_program_took_along_is_none(self):
        self.copy("words").stop()
        self.launch().find("label", "Clipboard has no text")

    def test_long_text_is_worked_on_as_a_whole(self):
        text = "Some words that are said. " * 200000
        self.copy(text)
        corvella = self.launch()
        wait_until(lambda: self.is_enabled("Count words"), "the text arrives", 20)
        corvella.press("Count words")
        self.wait_for_text(
            "Result", "1000000 words · 5200000 characters · 200000 sentences · ~4348 min read"
        )

    def test_the_server_is_found_and_missed(self):
        self.copy("words")
        corvella = self.launch()
        corvella.find("label", WARNING)
        self.wait_for_model("No models")
        self.assertFalse(self.is_enabled("Rewrite with model"))
        self.assertFalse(self.is_enabled("Model"))
        desktop.screenshot("actions-server-down")
        server = self.serve(models=["llama3.2:latest", "mistral:7b"])
        corvella.press("Check for Ollama again")
        self.wait_for_model("llama3.2:latest")
        self.assertNotIn(WARNING, corvella.shown("label"))
        self.assertTrue(self.is_enabled("Rewrite with model"))
        desktop.screenshot("actions-models")
        server.set(models=[])
        corvella.press("Check for Ollama again")
        corvella.find("label", NO_MODELS)
        self.wait_for_model("No models")
        desktop.screenshot("actions-no-models")
        server.stop()
        corvella.press("Check for Ollama again")
        corvella.find("label", WARNING)

    def test_a_model_rewrites(self):
        self.copy("words")
        server = self.serve(response="  Better words.\n", delay=1)
        corvella = self.launch()
        self.wait_for_model("llama3.2:latest")
        corvella.press("Rewrite with model")
        self.assertFalse(self.is_enabled("Rewriting…"))
        desktop.screenshot("actions-rewriting")
        request = server.asked_to_rewrite()
        self.assertEqual(request["model"], "llama3.2:latest")
        self.assertTrue(request["prompt"].endswith("rewritten text.\n\nwords"))
        self.wait_for_text("Result", "Better words.")
        self.assertTrue(self.is_enabled("Rewrite with model"))
        self.assertEqual(clipboard().decode(), "words")
        desktop.screenshot("actions-rewritten")

    def test_what_the_server_says_is_shown(self):
        self.copy("words")
        server = self.serve()
        corvella = self.launch()
        self.wait_for_model("llama3.2:latest")
        server.set(error="model 'x' not found")
        corvella.press("Rewrite with model")
        corvella.find("label", "Rewrite failed: model 'x' not found")
        self.assertTrue(self.is_enabled("Rewrite with model"))
        desktop.screenshot("actions-rewrite-failed")

    def test_a_server_that_ends_in_a_rewrite_is_down(self):
        self.copy("words")
        server = self.serve(delay=0)
        corvella = self.launch()
        self.wait_for_model("llama3.2:latest")
        server.set(delay=60)
        corvella.press("Rewrite with model")
        server.asked_to_rewrite()
        server.stop()
        corvella.find("label", WARNING)
        self.assertFalse(self.is_enabled("Rewrite with model"))

    def test_a_rewrite_goes_on_behind_a_closed_popover(self):
        self.copy("words")
        server = self.serve()
        corvella = self.launch()
        self.wait_for_model("llama3.2:latest")
        server.set(delay=1)
        corvella.press("Rewrite with model")
        server.asked_to_rewrite()
        press_key("Escape")
        corvella.wait_until_closed()
        corvella.open_popover()
        self.wait_for_text("Result", "Better text.")

    def test_a_rewrite_that_nobody_waits_for_is_given_up(self):
        self.copy("words")
        server = self.serve()
        corvella = self.launch()
        self.wait_for_model("llama3.2:latest")
        server.set(delay=60)
        corvella.press("Rewrite with model")
        server.asked_to_rewrite()
        corvella.press("Focus", "page tab")
        server.wait_for(lambda news: "hungUp" in news)
        server.set(delay=0)
        corvella.press("Actions", "page tab")
        self.wait_for_model("llama3.2:latest")
        self.assertTrue(self.is_enabled("Rewrite with model"))
        self.assertEqual(self.text("Result"), "")

    def test_the_keyboard_alone_does_everything(self):
        self.copy("words")
        self.serve(models=["first", "second"])
        self.corvella = corvella = Corvella()
        corvella.open_popover()
        corvella.tab_to("Actions")
        press_key("space")
        self.wait_for_text("Clipboard text", "words")
        self.wait_for_model("first")
        corvella.tab_to("Read clipboard")
        corvella.tab_to("Clipboard text")
        type_text("More ")
        corvella.tab_to("Make bullets")
        press_key("space")
        self.wait_for_text("Result", "• More words")
        corvella.tab_to("Model")
        press_key("Down")
        press_key("Down")
        press_key("Return")
        self.wait_for_model("second")
        corvella.tab_to("Rewrite with model")
        press_key("Return")
        self.wait_for_text("Result", "Better text.")
        corvella.tab_to("Copy")
        press_key("space")
        wait_until(lambda: clipboard() == b"Better text.", "the text is copied")


if __name__ == "__main__":
    desktop.main()
