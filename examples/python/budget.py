#!/usr/bin/env python3
"""Checks tile files against a budget: a CSV row a file on standard output, and status 1 when one is over or unreadable.

usage: budget.py [--goblins N] [--vertices N] [--triangles N] [--megabytes N] FILE|FOLDER...
"""
import argparse
import csv
import pathlib
import sys

import morvane

LIMITS = ("goblins", "vertices", "triangles", "megabytes")


def files_of(names):
    for name in map(pathlib.Path, names):
        yield from sorted(name.rglob("*.psd")) if name.is_dir() else [name]


def measure(path):
    document = morvane.Document(path)
    tile = morvane.goblins(document)
    return {
        "file": path, "width": document.width, "height": document.height, "goblins": len(tile) if tile else 0,
        "vertices": len(tile.vertices) if tile else 0,
        "triangles": sum(len(goblin.triangles) for goblin in tile or ()),
        "megabytes": round(path.stat().st_size / 1e6, 2), "problem": document.fault or "",
    }


def main():
    parser = argparse.ArgumentParser(description="Checks tile files against a budget.")
    parser.add_argument("names", nargs="+", metavar="FILE|FOLDER")
    for limit in LIMITS:
        parser.add_argument(f"--{limit}", type=float, default=float("inf"))
    options = parser.parse_args()
    rows = csv.DictWriter(sys.stdout, ["file", "width", "height", *LIMITS, "over", "problem"], lineterminator="\n")
    rows.writeheader()
    status = 0
    for path in files_of(options.names):
        try:
            row = measure(path)
        except (OSError, ValueError, morvane.Error) as error:
            row = {"file": path, "problem": str(error)}
        row["over"] = " ".join(limit for limit in LIMITS if row.get(limit, 0) > getattr(options, limit))
        rows.writerow(row)
        status = status or int(bool(row["over"] or row["problem"]))
    return status


if __name__ == "__main__":
    sys.exit(main())
