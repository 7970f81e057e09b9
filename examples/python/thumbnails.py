#!/usr/bin/env python3
"""Draws a sheet of small pictures of tile files, with their goblins in red, as one PNG file.

usage: thumbnails.py [--size PIXELS] [--columns N] [--plain] FILE... -o SHEET.png
"""
import argparse
import struct
import sys
import zlib

import numpy

import morvane

GAP = 8  # pixels between the pictures


def picture(document):
    """The picture as artists left it, (rows, columns, 3) uint8: the merged image, or the topmost visible layer where
    that is all of one colour (as in a file that was made of a TGA image)."""
    merged = document.merged()[:, :, :3]
    if (merged != merged[:1, :1]).any():
        return merged
    whole = (0, 0, document.width, document.height)
    for layer in reversed(document.layers):
        if not layer.hidden and layer.rect == whole and len(layer.channels) >= 3:
            return layer.pixels()[:, :, :3]
    return merged


def thumbnail(path, size, plain):
    document = morvane.Document(path)
    image = picture(document)
    rows, columns = (numpy.arange(size) * side // size for side in image.shape[:2])
    small = image[rows][:, columns].repeat(3 // image.shape[2], axis=2)
    tile = None if plain else morvane.goblins(document)
    for goblin in tile or ():
        # Tile space is the picture: x runs to the right, z down.
        at = goblin.positions[:, [2, 0]]
        at = (at[(at >= 0).all(1) & (at <= 1).all(1)] * (size - 1)).round().astype(int)
        small[at[:, 0], at[:, 1]] = [220, 30, 30]
    return small


def write_png(path, image):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows, columns, _ = image.shape
    lines = numpy.zeros((rows, 1 + 3 * columns), numpy.uint8)  # a byte for the filter before each line: none
    lines[:, 1:] = image.reshape(rows, -1)
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", columns, rows, 8, 2, 0, 0, 0)) +
                   chunk(b"IDAT", zlib.compress(lines.tobytes(), 9)) + chunk(b"IEND", b""))


def main():
    parser = argparse.ArgumentParser(description="Draws a sheet of small pictures of tile files.")
    parser.add_argument("files", nargs="+")
    parser.add_argument("-o", "--output", required=True)
    parser.add_argument("--size", type=int, default=160, help="of each picture, in pixels")
    parser.add_argument("--columns", type=int, default=4)
    parser.add_argument("--plain", action="store_true", help="without the goblins")
    options = parser.parse_args()
    columns = min(options.columns, len(options.files))
    rows = -(-len(options.files) // columns)
    step = options.size + GAP
    sheet = numpy.full((rows * step + GAP, columns * step + GAP, 3), 255, numpy.uint8)
    status = 0
    for number, path in enumerate(options.files):
        top, left = GAP + number // columns * step, GAP + number % columns * step
        try:
            sheet[top:top + options.size, left:left + options.size] = thumbnail(path, options.size, options.plain)
        except (OSError, ValueError, morvane.Error) as error:
            print(f"{path}: {error}", file=sys.stderr)
            status = 1
    write_png(options.output, sheet)
    return status


if __name__ == "__main__":
    sys.exit(main())
