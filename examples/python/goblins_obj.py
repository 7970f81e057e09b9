#!/usr/bin/env python3
"""Converts the goblins of a tile file to a Wavefront OBJ file, and the objects of an OBJ file to goblins.

usage: goblins_obj.py TILE.psd OUT.obj             an object for each goblin
       goblins_obj.py IN.obj TILE.psd [OUT.psd]    the objects become the tile's goblins

Positions are in tile space: the tile is 1 long in x and z, and y is up.
"""
import sys

import numpy

import morvane


def to_obj(tile):
    lines, first = [], 1
    for number, goblin in enumerate(tile):
        lines.append(f"o {goblin.name or f'goblin{number}'}")
        for keyword, rows in ("v", goblin.positions), ("vt", goblin.uvs), ("vn", goblin.normals):
            lines += [f"{keyword} " + " ".join(f"{value:.9g}" for value in row) for row in rows]
        lines += ["f " + " ".join(f"{i}/{i}/{i}" for i in triangle + first) for triangle in goblin.triangles]
        first += len(goblin.positions)
    return "\n".join(lines) + "\n"


class ObjReader:
    """Reads objects, whose corners become vertices of their own where they differ in anything."""

    def __init__(self):
        self.tables = {"v": [], "vt": [], "vn": []}
        self.objects = []  # name, corners -> vertex, triangles

    def read(self, lines):
        for line in lines:
            keyword, *words = line.split("#")[0].split() or [""]
            if keyword in self.tables:
                self.tables[keyword].append([float(word) for word in words[:3]])
            elif keyword in ("o", "g"):
                self.objects.append((" ".join(words), {}, []))
            elif keyword == "f":
                self.face(words)
        return [self.goblin(*each) for each in self.objects if each[2]]

    def face(self, words):
        if not self.objects:
            self.objects.append(("object", {}, []))
        _, vertices, triangles = self.objects[-1]
        numbers = [vertices.setdefault(self.corner(word), len(vertices)) for word in words]
        triangles += [[numbers[0], numbers[i - 1], numbers[i]] for i in range(2, len(numbers))]

    def corner(self, word):
        parts = (word.split("/") + ["", ""])[:3]
        return tuple(None if not part else int(part) - 1 if int(part) > 0 else len(table) + int(part)
                     for part, table in zip(parts, self.tables.values()))

    def goblin(self, name, vertices, triangles):
        columns = list(zip(*vertices))
        arrays = [None if None in column else numpy.float32([table[i] for i in column])
                  for column, table in zip(columns, self.tables.values())]
        positions, uvs, normals = arrays
        uvs = None if uvs is None else uvs[:, :2]
        return morvane.Goblin(name=name, positions=positions, uvs=uvs, normals=normals, triangles=triangles)


def main(source, target, output=None):
    if target.endswith(".obj"):
        tile = morvane.goblins(source)
        if tile is None:
            sys.exit(f"{source}: it has no goblins")
        with open(target, "w", encoding="utf-8") as file:
            file.write(to_obj(tile))
        print(f"{target}: {len(tile)} objects")
        return
    with open(source, encoding="utf-8") as file:
        goblins = ObjReader().read(file)
    document = morvane.Document(target)
    morvane.set_goblins(document, goblins)
    document.save(output or target)
    print(f"{output or target}: {len(goblins)} goblins")


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    try:
        main(*sys.argv[1:])
    except (OSError, ValueError, IndexError, morvane.Error) as failure:
        sys.exit(f"{sys.argv[1]}: {failure}")
