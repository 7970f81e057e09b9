"""Writers for the two kinds of picture that a tile's texture may be."""

import struct


def _clamp(value):
    return 0 if value < 0 else 255 if value > 255 else int(value + 0.5)


def paint(size, west, north, span, colour):
    """`size` rows from the north, of `size` tuples, each component a byte."""
    pixel = span / size
    return [[tuple(_clamp(c) for c in colour(west + (i + 0.5) * pixel, north + (j + 0.5) * pixel))
             for i in range(size)] for j in range(size)]


def write_tga(path, rows):
    """Uncompressed true colour, 24 or 32 bit as the pixels have three or four parts; bottom row first."""
    depth = 8 * len(rows[0][0])
    header = struct.pack("<BBBHHBHHHHBB", 0, 0, 2, 0, 0, 0, 0, 0, len(rows[0]), len(rows), depth, depth - 24)
    with open(path, "wb") as out:
        out.write(header)
        for row in reversed(rows):
            out.write(b"".join(bytes((p[2], p[1], p[0]) + p[3:]) for p in row))


def pack_bits(row):
    out, i = bytearray(), 0
    while i < len(row):
        run = 1
        while run < 128 and i + run < len(row) and row[i + run] == row[i]:
            run += 1
        if run >= 3:
            out += bytes((257 - run, row[i]))
            i += run
            continue
        end = i
        while end < len(row) and end - i < 128 and not (end + 2 < len(row) and row[end] == row[end + 1] == row[end + 2]):
            end += 1
        out.append(end - i - 1)
        out += row[i:end]
        i = end
    return bytes(out)


def _planes(rows):
    return [[bytes(p[c] for p in row) for row in rows] for c in range(len(rows[0][0]))]


def _packed(planes):
    """A compression word, one table of row lengths for all planes, and the packed rows."""
    packed = [pack_bits(row) for plane in planes for row in plane]
    return struct.pack(">H", 1) + b"".join(struct.pack(">H", len(p)) for p in packed) + b"".join(packed)


def _resource(number, data):
    return b"8BIM" + struct.pack(">HHI", number, 0, len(data)) + data + b"\0" * (len(data) & 1)


def _block(key, data):
    return b"8BIM" + key + struct.pack(">I", len(data)) + data


class Layer:
    """One layer: pixels of four parts (red, green, blue, opacity), or three for the background."""

    def __init__(self, name, rows, left=0, top=0, blend=b"norm", opacity=255, hidden=False):
        self.name, self.rows, self.left, self.top = name, rows, left, top
        self.blend, self.opacity, self.hidden = blend, opacity, hidden

    def _channels(self):
        planes = _planes(self.rows)
        numbered = list(zip((0, 1, 2), planes))
        if len(planes) == 4:
            numbered.insert(0, (0xFFFF, planes[3]))
        return [(number, _packed([plane])) for number, plane in numbered]

    def encode(self, number):
        """The layer's record and its channel data."""
        channels = self._channels()
        wide = self.name.encode("utf-16-be")
        units = len(wide) // 2
        pascal = bytes((len(self.name),)) + self.name.encode("ascii")
        pascal += b"\0" * (-len(pascal) % 4)
        ranges = struct.pack(">I", 0x0000FFFF) * (2 + 2 * len(channels))
        extra = struct.pack(">I", 0) + struct.pack(">I", len(ranges)) + ranges + pascal
        extra += _block(b"luni", struct.pack(">I", units) + wide + b"\0\0" * (units & 1))
        extra += _block(b"lyid", struct.pack(">I", number))
        height, width = len(self.rows), len(self.rows[0])
        record = struct.pack(">iiiiH", self.top, self.left, self.top + height, self.left + width, len(channels))
        record += b"".join(struct.pack(">HI", number, len(data)) for number, data in channels)
        flags = 8 | (2 if self.hidden else 0) | (1 if len(channels) == 3 else 0)
        record += b"8BIM" + self.blend + struct.pack(">BBBBI", self.opacity, 0, flags, 0, len(extra)) + extra
        return record, b"".join(data for _, data in channels)


def write_psd(path, merged, layers=()):
    """8-bit RGB; `merged` is the finished picture, `layers` come bottom first."""
    resolution = struct.pack(">IHHIHH", 72 << 16, 1, 1, 72 << 16, 1, 1)
    resources = _resource(1005, resolution)
    section = b""
    if layers:
        resources += _resource(1024, struct.pack(">H", 0)) + _resource(1026, b"\0\0" * len(layers))
        resources += _resource(1044, struct.pack(">I", len(layers) + 1))
        encoded = [layer.encode(i + 1) for i, layer in enumerate(layers)]
        info = struct.pack(">h", len(layers)) + b"".join(r for r, _ in encoded) + b"".join(d for _, d in encoded)
        info += b"\0" * (len(info) & 1)
        section = struct.pack(">I", len(info)) + info + struct.pack(">I", 0)
    with open(path, "wb") as out:
        out.write(b"8BPS" + struct.pack(">H6xHIIHH", 1, 3, len(merged), len(merged[0]), 8, 3))
        out.write(struct.pack(">I", 0))
        out.write(struct.pack(">I", len(resources)) + resources)
        out.write(struct.pack(">I", len(section)) + section)
        out.write(_packed(_planes(merged)))
