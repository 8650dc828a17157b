#!/usr/bin/python3
"""Tries the script that makes the table of lemmas, on WordNet and on a dictionary of a few words.

    lemma_table.py SCRIPT WORDNET
"""
import importlib.util
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
SCRIPT, WORDNET = map(pathlib.Path, sys.argv[1:3])
SMALL = {
    "index.noun": "  1 A notice.\nhouse n 1 0 1 1 1\nleaf n 1 0 1 1 1\ntwo_words n 1 0 1 1 1\n",
    "index.verb": "leave v 1 0 1 1 1\n",
    "index.adj": "big a 1 0 1 1 1\n",
    "index.adv": "",
    "cntlist.rev": "leaf%1:20:00:: 1 20\nleave%2:38:00:: 1 9\nhouse%1:06:00:: 1 4\n",
    "noun.exc": "leaves leaf\n",
    "verb.exc": "left leave\n",
    "adj.exc": "",
    "adv.exc": "",
}


def load_script():
    specification = importlib.util.spec_from_file_location("lemma_table", SCRIPT)
    script = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(script)
    return script


def start(wordnet, output, seed="1"):
    return subprocess.Popen(
        [SCRIPT, wordnet, output],
        stderr=subprocess.PIPE,
        text=True,
        env={**os.environ, "PYTHONHASHSEED": seed},
    )


def run(wordnet, output):
    process = start(wordnet, output)
    return process.communicate()[1], process.returncode


def arrays(source):
    """What the program reads: the marks, the targets and the endings."""
    marks, targets, endings = re.findall(r"\[\] = \{\n(.*?)\n\};", source, re.DOTALL)
    numbers = ([int(number) for number in text.split(",")] for text in (marks, targets))
    return *numbers, re.findall(r'\{ (\d+), "(.*?)" \}', endings)


def words(source):
    """Each word in the table with its lemma."""
    marks, targets, endings = arrays(source)
    found = {}

    def walk(state, word):
        for label in range(28):
            slot = state + label
            if marks[slot] & 31 != label:
                continue
            target = marks[slot] >> 5 << 16 | targets[slot]
            if label:
                walk(target, word + ("'" if label == 27 else chr(ord("a") + label - 1)))
            else:
                cut, added = endings[target]
                found[word] = word[: len(word) - int(cut)] + added

    walk(0, "")
    return found


class LemmaTable(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.output = self.folder / "Table.cpp"

    def write_small(self):
        for name, text in SMALL.items():
            (self.folder / name).write_text(text)

    def test_a_few_words(self):
        self.write_small()
        self.assertEqual(run(self.folder, self.output), ("", 0))
        own = load_script().LEMMAS
        found = words(self.output.read_text())
        self.assertEqual(
            {form: lemma for form, lemma in found.items() if form not in own},
            {
                "houses": "house",
                "leaves": "leaf",
                "leafs": "leaf",
                "left": "leave",
                "leaved": "leave",
                "leaving": "leave",
                "bigger": "big",
                "biggest": "big",
            },
        )

    def test_it_holds_what_was_chosen_and_nothing_else(self):
        script = load_script()
        outputs = [self.folder / name for name in ("1.cpp", "2.cpp")]
        runs = [start(WORDNET, output, seed) for output, seed in zip(outputs, "12")]
        found = script.candidates(script.read_counts(WORDNET), script.read_irregular(WORDNET))
        chosen = script.choose(found)
        self.assertEqual([(run.communicate()[1], run.returncode) for run in runs], [("", 0)] * 2)
        sources = [output.read_text() for output in outputs]
        self.assertTrue(sources[0] == sources[1], "Two runs differ")
        self.assertTrue(words(sources[0]) == chosen, "The table is not what was chosen")
        self.assertGreater(len(chosen), 75000)
        marks, targets, endings = arrays(sources[0])
        self.assertLess(len(marks) + 2 * len(targets) + 16 * len(endings), 320 * 1024)
        self.assertLess(max(len(added) for _, added in endings), 15)

    def test_a_missing_dictionary_is_told(self):
        complaint, status = run(self.folder / "nowhere", self.output)
        self.assertEqual(status, 1)
        self.assertIn("nowhere/index.noun: No such file", complaint)
        self.assertIn("wordnet-base", complaint)
        self.assertFalse(self.output.exists())

    def test_a_part_of_a_dictionary_is_told(self):
        self.write_small()
        (self.folder / "verb.exc").unlink()
        complaint, status = run(self.folder, self.output)
        self.assertEqual(status, 1)
        self.assertIn("verb.exc: No such file", complaint)
        self.assertFalse(self.output.exists())


unittest.main(argv=sys.argv[:1])
