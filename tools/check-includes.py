#!/usr/bin/env python3
"""Fails when a file includes a folder that its own folder may not know."""
import pathlib
import re
import sys

UNITS = ["Focus", "Meetings", "Notch", "QuickActions", "Shortcuts", "System"]
MAY = {
    "Core": [],
    "Platform": ["Core"],
    "Platform/Linux": ["Core", "Platform"],
    "Platform/Linux/Calendar/Text": ["Platform", "Platform/Linux"],
    "Ui": ["Core"],
    "QuickActions/Text": ["Core"],
    "Helpers": ["Core", "Platform/Linux", "Platform/Linux/Calendar/Text"],
}
MAY |= {unit: ["Core", "Platform", "Ui"] for unit in UNITS}
MAY["QuickActions"] += ["QuickActions/Text"]
MAY["Notch"] += ["Focus", "Meetings"]
MAY[""] = ["", "Core", "Platform", "Ui", *UNITS]  # the shell
EVERYTHING = {"App/main.cpp", "App/Wiring.cpp"}  # the composition root


# The deepest folder above path that has a rule of its own.
def folder(path):
    own = "/".join(path.split("/")[1:-1])
    while own not in MAY:
        own = own.rpartition("/")[0]
    return own


def main():
    bad = 0
    for source in sorted(pathlib.Path("App").rglob("*.[ch]*")):
        name, own = source.as_posix(), folder(source.as_posix())
        for line, text in enumerate(source.read_text().splitlines(), 1):
            found = re.match(r'\s*#\s*include "(.+)"', text)
            if not found:
                continue
            target = found[1]
            if target.endswith(".moc"):
                continue
            if not target.startswith("App/"):
                print(f"{name}:{line}: write own includes from the root, not {target}")
                bad = 1
            elif name not in EVERYTHING and folder(target) not in (own, *MAY.get(own, [])):
                print(f"{name}:{line}: {own or 'App'} may not include {target}")
                bad = 1
    return bad


sys.exit(main())
