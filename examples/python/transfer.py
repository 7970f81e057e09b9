#!/usr/bin/env python3
"""Copies goblins from one tile file into another, beside those that are there.

usage: transfer.py FROM.psd TO.psd [NAME_OR_NUMBER...]    none named: all of them

A goblin of the same name is replaced. Goblins without names, as exportTile stores them, are named by their number in
the file that they come from, counted from 0. TO.psd becomes a file that the translator imports.
"""
import sys

import morvane


def pick(tile, wanted):
    numbers = [int(word) if word.isdigit() and word not in tile else word for word in wanted] or range(len(tile))
    picked = []
    for number in numbers:
        goblin = tile[number]
        goblin.name = goblin.name or f"goblin{number}"
        picked.append(goblin)
    return picked


def main(source, target, *wanted):
    tile = morvane.goblins(source)
    if tile is None:
        sys.exit(f"{source}: it has no goblins")
    try:
        moving = pick(tile, wanted)
    except (KeyError, IndexError) as error:
        sys.exit(f"{source}: there is no goblin {error}")
    document = morvane.Document(target)
    names = {goblin.name for goblin in moving}
    staying = [goblin for goblin in morvane.goblins(document) or () if goblin.name not in names]
    morvane.set_goblins(document, staying + moving)
    document.save(target)
    print(f"{target}: {len(staying)} goblins stay, {len(moving)} come")


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    try:
        main(*sys.argv[1:])
    except (OSError, ValueError, morvane.Error) as failure:
        sys.exit(str(failure))
