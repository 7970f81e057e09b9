"""Counter-examples: what a saved file would be if a new layer were added in a simpler way.

Each function takes the bytes of a file whose last layer our program added, and gives the bytes that the simpler way
would have written.
"""

import struct


def _u32(data, at):
    return struct.unpack_from(">I", data, at)[0]


class Places:
    """Where in a version-1 file the parts stand that a new layer changes; docs/psd-files.md says what they are."""

    def __init__(self, data):
        self.resources = 30 + _u32(data, 26) + 4
        self.section = self.resources + _u32(data, self.resources - 4)  # its length, a word
        self.info = self.section + 4                                    # likewise
        self.count = self.info + 4
        self.layers = struct.unpack_from(">h", data, self.count)[0]
        at = self.count + 2
        for _ in range(abs(self.layers)):
            at += 18 + 6 * struct.unpack_from(">H", data, at + 16)[0] + 12
            self.extra, self.below = at, getattr(self, "trailing", None)
            self.trailing = self._trailing(data, at)
            at = self.trailing[1]

    @staticmethod
    def _trailing(data, extra):
        """Start and end of the tagged blocks behind the layer's names."""
        at, end = extra + 4, extra + 4 + _u32(data, extra)
        for _ in ("mask", "blending ranges"):
            at += 4 + _u32(data, at)
        at += (data[at] + 4) & ~3
        if data[at + 4:at + 8] == b"luni":
            at += 12 + _u32(data, at + 8)
        return at, end


def count_without_sign(data):
    places = Places(data)
    return data[:places.count] + struct.pack(">h", abs(places.layers)) + data[places.count + 2:]


def _seed_byte(data, places):
    at = places.resources
    while at + 12 <= places.section:
        name = 1 + data[at + 6]
        start = at + 6 + name + (name & 1) + 4
        size = _u32(data, start - 4)
        if struct.unpack_from(">H", data, at + 4)[0] == 1044 and size >= 4:
            return data[start + 3]
        at = start + size + (size & 1)
    return None


def trailing_data_whole(data):
    places = Places(data)
    start, end = places.trailing
    copied = bytearray(data[slice(*places.below)])
    seed = _seed_byte(data, places)
    if seed is not None and len(copied) > 15:
        copied[15] = seed
    result = bytearray(data[:start] + copied + data[end:])
    for length in (places.section, places.info, places.extra):
        struct.pack_into(">I", result, length, _u32(data, length) + len(copied) - (end - start))
    return bytes(result)
