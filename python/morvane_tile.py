"""Reads tiles where the compiled module morvane cannot go: one file, the standard library alone, Python 3.7 or later.

    import morvane_tile as morvane

    tile = morvane.goblins("pond.psd")        # None when there are none
    for goblin in tile:
        print(goblin.name, len(goblin.triangles), max(y for x, y, z in goblin.positions))

    doc = morvane.Document("pond.psd")
    doc.layers[1].pixels()                    # a memoryview of bytes, (rows, columns, channels)

It has what the module morvane has for reading, under the same names and with the same errors; it writes nothing. Arrays are
lists of tuples, ``Tile.vertices`` is a list of (position, normal, uv), and pixels are memoryviews, which numpy.asarray
takes as they are.
"""

import os
import struct

__all__ = ["Document", "Error", "Goblin", "Layer", "Tile", "decode_goblins", "goblins"]

_MODES = {0: "bitmap", 1: "gray", 2: "indexed", 3: "RGB", 4: "CMYK", 7: "multichannel", 8: "duotone", 9: "Lab"}
_COLOURS = {3: 3, 9: 3, 4: 4}  # planes of a colour mode; 1 for the others
_MAX_SIDE = 65535
_MAX_CHANNELS = 56
_MAX_EXPANSION = 64       # a packet of two bytes gives at most 128
_MAX_MISSING = 64 << 20   # bytes of planes that a file does not bring


class Error(Exception):
    """What is wrong with a file or its data: ``code`` is "damaged" or "unsupported"."""

    def __init__(self, text, code):
        super().__init__(text)
        self.code = code


def _damaged(text):
    return Error(text, "damaged")


class _Input:
    """Reads numbers and bytes in order; reading past the end is damage."""

    def __init__(self, data, start=0, end=None):
        self.data, self.at, self.end = data, start, len(data) if end is None else end

    def take(self, size):
        if size > self.end - self.at:
            raise _damaged("byte %d: %d bytes wanted, %d there" % (self.at, size, self.end - self.at))
        self.at += size
        return self.data[self.at - size:self.at]

    def read(self, layout):
        return struct.unpack(layout, self.take(struct.calcsize(layout)))

    def number(self, layout):
        return self.read(layout)[0]

    def part(self, size):
        """The next bytes as an input of their own."""
        self.take(size)
        return _Input(self.data, self.at - size, self.at)


class Layer:
    """One layer: name, hidden, opacity (0 to 255), blend (the key of four characters), rect (left, top, right, bottom)
    and channels (0, 1, 2... are colour planes, -1 the transparency, -2 a mask)."""

    def __init__(self, source, document):
        self._document = document
        top, left, bottom, right, count = source.read(">4iH")
        self.rect = (left, top, right, bottom)
        infos = [source.read(">hI") for _ in range(count)]
        self.channels = tuple(channel for channel, _ in infos)
        self._lengths = [length for _, length in infos]
        self._data = []  # of each channel, with its compression word
        signature, blend, self.opacity, _, flags, _, extra = source.read(">4s4s4BI")
        self.blend = blend.decode("latin-1")
        self.hidden = bool(flags & 2)
        self._read_extra(source.part(extra))

    def _read_extra(self, extra):
        extra.take(extra.number(">I"))  # the mask
        extra.take(extra.number(">I"))  # the blending ranges
        size = extra.number("B")
        self._name = bytes(extra.take(size)).split(b"\0")[0]
        extra.take(-(1 + size) % 4)
        self.name = self._name.decode("utf-8", "surrogateescape")
        if extra.end - extra.at >= 12:
            key, length = extra.read(">4x4sI")
            if key == b"luni" and length >= 4 and length <= extra.end - extra.at:
                block = extra.part(length)
                units = block.number(">I")
                if units <= (block.end - block.at) // 2:
                    self._take_unicode(bytes(block.take(2 * units)))

    def _take_unicode(self, text):
        # Names that are made by morvane repeat the bytes of the other name here.
        if text and text != self._name.decode("latin-1").encode("utf-16-be"):
            self.name = text.decode("utf-16-be", "surrogatepass").rstrip("\0")

    def _size(self):
        left, top, right, bottom = self.rect
        if not (0 <= right - left <= _MAX_SIDE and 0 <= bottom - top <= _MAX_SIDE):
            raise _damaged("layer %r: its rectangle is impossible" % self.name)
        return bottom - top, right - left

    def _plane(self, position, size=None):
        """The first `size` bytes of a channel's plane; all of them for None."""
        rows, columns = self._size()
        whole = rows * columns
        data = self._data[position]
        if len(data) <= 2:
            if whole > _MAX_MISSING:
                raise _damaged("layer %r: it brings no data" % self.name)
            return bytes(whole if size is None else min(size, whole))
        if data[:2] == b"\0\0":
            if len(data) - 2 != whole:
                raise _damaged("layer %r: its data does not fill its rectangle" % self.name)
            return bytes(data[2:] if size is None else data[2:2 + size])
        return _unpack(data[2 + 2 * rows:], whole if size is None else min(size, whole), self.name)

    def pixels(self):
        """The layer's pixels, decoded: a memoryview of bytes, (rows, columns, channels), transparency last."""
        if self._document.depth != 8:
            raise Error("pixels of %d bits a channel are not decoded" % self._document.depth, "unsupported")
        wanted = list(range(self._document._colours)) + [-1]
        positions = [self.channels.index(channel) for channel in wanted if channel in self.channels]
        if any(len(self._data[position]) > 2 and self._data[position][:2] not in (b"\0\0", b"\0\1")
               for position in positions):
            raise Error("layer %r: its compression is neither raw nor packed" % self.name, "unsupported")
        return _interleave([self._plane(position) for position in positions], *self._size())

    def __repr__(self):
        return "<morvane.Layer %r %r>" % (self.name, self.rect)


class Document:
    """A layered image file, read from a path or from a bytes-like object: path, width, height, depth (bits), mode,
    fault (None, or what is wrong with its header) and layers (bottom first). Raises FileNotFoundError and the like, ValueError for a name that does not end in .psd, and
    Error."""

    def __init__(self, source):
        self.path = None
        if isinstance(source, (str, os.PathLike)):
            self.path = os.fspath(source)
            if not self.path.lower().endswith(".psd"):
                raise ValueError("the file name ends neither in .psd nor in .PSD")
            with open(self.path, "rb") as file:
                source = file.read()
        try:
            data = memoryview(source).cast("B")
        except TypeError:
            raise TypeError("source is neither a path nor bytes-like") from None
        self._read(_Input(data))

    def _read(self, source):
        signature, version, self._channels, self.height, self.width, self.depth, mode = source.read(">4sH6x H2I2H")
        # What is not, but reads like one, is read all the same.
        self.fault = None if signature == b"8BPS" and version == 1 else "not a PSD file of version 1"
        self.mode = _MODES.get(mode, str(mode))
        self._colours = min(self._channels, _MAX_CHANNELS) if mode == 7 else _COLOURS.get(mode, 1)
        source.take(source.number(">I"))  # colour mode data
        source.take(source.number(">I"))  # image resources
        self.layers = []
        section = source.number(">I")
        if section != 0:
            self._read_layers(source.part(section))
        self._compression = source.number(">H")
        self._merged = source.take(source.end - source.at)

    def _read_layers(self, section):
        if section.number(">I") == 0:
            return
        for _ in range(abs(section.number(">h"))):
            self.layers.append(Layer(section, self))
        for layer in self.layers:
            layer._data = [section.take(length) for length in layer._lengths]

    def merged(self):
        """The merged image, decoded: a memoryview of bytes, (rows, columns, channels)."""
        if self.depth != 8 or self._compression > 1:
            raise Error("a merged image of this depth or compression is not decoded", "unsupported")
        if self._channels > _MAX_CHANNELS or self.height > _MAX_SIDE or self.width > _MAX_SIDE:
            raise _damaged("the merged image is cut off")
        plane = self.width * self.height
        size = plane * self._channels
        if self._compression:
            planes = _unpack(self._merged[2 * self.height * self._channels:], size, "the merged image")
        elif len(self._merged) >= size:
            planes = bytes(self._merged[:size])
        else:
            raise _damaged("the merged image is cut off")
        return _interleave([planes[at:at + plane] for at in range(0, size, plane)], self.height, self.width)

    def read_data_layer(self, name):
        """The bytes that are stored in the first layer of that name; None when there are none."""
        stored = name.encode("utf-8", "surrogateescape")
        layer = next((layer for layer in self.layers if layer._name == stored), None) or next(
            (layer for layer in self.layers if layer.name == name), None)
        if layer is None:
            return None
        try:
            return self._content(layer)
        except Error:
            return None

    def _content(self, layer):
        plane = self.width * self.height
        length, = struct.unpack("<I", self._planes(layer, plane, 4))
        return self._planes(layer, plane, 4 + length)[4:]

    @staticmethod
    def _planes(layer, plane, size):
        """The first bytes of all the planes behind one another."""
        content = b""
        for position in range(len(layer.channels)):
            if len(content) == size:
                break
            part = min(size - len(content), plane)
            content += layer._plane(position, part)
            if len(content) % max(plane, 1) and len(content) != size:
                break
        if len(content) != size:
            raise _damaged("layer %r: it does not hold what it says" % layer.name)
        return content

    def __repr__(self):
        return "<morvane.Document %s %d x %d>" % (self.path or "", self.width, self.height)


def _unpack(packed, size, what):
    """Unpacks packets until `size` bytes are there."""
    if size > len(packed) * _MAX_EXPANSION:
        raise _damaged("%s: its data is cut off" % what)
    parts, there, at, end = [], 0, 0, len(packed)
    while there < size:
        if at >= end:
            raise _damaged("%s: its data is cut off" % what)
        head = packed[at]
        if head < 128:
            part = bytes(packed[at + 1:at + 2 + head])
            at += 2 + head
        elif head > 128:
            part = bytes(packed[at + 1:at + 2]) * (257 - head)
            at += 2
        else:
            part = b""
            at += 1
        parts.append(part)
        there += len(part)
    return b"".join(parts)[:size]


def _interleave(planes, rows, columns):
    pixels = bytearray(rows * columns * len(planes))
    for position, plane in enumerate(planes):
        pixels[position::len(planes)] = plane
    if not pixels:  # a memoryview has no shape with a zero in it
        return memoryview(pixels)
    return memoryview(pixels).cast("B", (rows, columns, len(planes)))


class Goblin:
    """One goblin as a mesh: name, texture, positions (n tuples of x, y, z in tile space), normals (n), uvs (n tuples of
    u, v), triangles (m tuples of three indices, counter-clockwise), and indices (n: each vertex in Tile.vertices)."""

    def __init__(self, **fields):
        self.__dict__.update(fields)

    def __repr__(self):
        return "<morvane.Goblin %r %d vertices, %d triangles>" % (self.name, len(self.positions), len(self.triangles))


class Tile:
    """The goblins of one tile: a sequence of Goblin, also by name; layout is "named" or "tagged"."""

    def __init__(self, blob):
        blob = memoryview(blob).cast("B")
        for self.layout in "named", "tagged":
            source = _Input(blob)
            try:
                self._read(source)
            except Error as error:
                failure = error
                continue
            if source.at == source.end:
                return
            failure = _damaged("bytes are left after the last goblin")
        raise _damaged("the goblin geometry is damaged: %s" % failure)

    def _read(self, source):
        if self.layout == "tagged" and source.number("<I") != 1:
            raise _damaged("the tag is missing")
        self._pool = list(struct.iter_unpack("<8f", source.take(32 * source.number("<I"))))
        self._goblins = [self._read_goblin(source) for _ in self._counted(source, 4)]

    @staticmethod
    def _counted(source, size):
        """As many turns as the next word says; a count of things of `size` bytes that are not all there is damage."""
        count = source.number("<I")
        if count * size > source.end - source.at:
            raise _damaged("byte %d: a count of %d does not fit" % (source.at, count))
        return range(count)

    def _read_goblin(self, source):
        texts = [bytes(source.take(source.number("<I"))).decode("utf-8", "surrogateescape")
                 if self.layout == "named" else "" for _ in range(2)]
        faces = []
        for _ in self._counted(source, 4):
            corners = source.number("<I")
            face = struct.unpack("<%dI" % corners, source.take(4 * corners))
            if corners and max(face) >= len(self._pool):
                raise _damaged("byte %d: an index outside the pool" % source.at)
            faces.append(face)
        return texts[0], texts[1], faces

    @property
    def vertices(self):
        return [(vertex[:3], vertex[3:6], vertex[6:]) for vertex in self._pool]

    def stored_triangles(self, index):
        faces = self._goblins[self._index(index)][2]
        return [(face[0], face[i - 1], face[i]) for face in faces for i in range(2, len(face))]

    def __len__(self):
        return len(self._goblins)

    def __getitem__(self, key):
        index = self._index(key)
        name, texture, faces = self._goblins[index]
        used = sorted({corner for face in faces for corner in face})
        number = {vertex: i for i, vertex in enumerate(used)}
        tagged = self.layout == "tagged"
        pool = [self._pool[vertex] for vertex in used]
        turn = 1 if tagged else -1
        return Goblin(name=name, texture=texture, indices=used,
                      positions=[(x, y, _single(1 - z) if tagged else z) for x, y, z, *_ in pool],
                      normals=[vertex[3:6] for vertex in pool],
                      uvs=[(u, _single(v - 1) if tagged else -v) for *_, u, v in pool],
                      triangles=[tuple(number[corner] for corner in triangle)[::turn]
                                 for triangle in self.stored_triangles(index)])

    def __iter__(self):
        return (self[index] for index in range(len(self)))

    def __contains__(self, name):
        return any(goblin[0] == name for goblin in self._goblins)

    def _index(self, key):
        if isinstance(key, str):
            for index, goblin in enumerate(self._goblins):
                if goblin[0] == key:
                    return index
            raise KeyError(key)
        if not hasattr(key, "__index__"):
            raise TypeError("a goblin is asked for by an int or a str")
        index = key.__index__()
        index += len(self) if index < 0 else 0
        if not 0 <= index < len(self):
            raise IndexError("there is no such goblin")
        return index

    def __repr__(self):
        return "<morvane.Tile %s, %d goblins>" % (self.layout, len(self))


def _single(value):
    """The nearest single float, as the stored numbers are."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def goblins(source):
    """The goblins in a file, in bytes or in a Document: a Tile, or None when there are none."""
    document = source if isinstance(source, Document) else Document(source)
    if not any(layer._name == b"GoblinGeometry" for layer in document.layers):
        return None
    blob = document.read_data_layer("GoblinGeometry")
    if blob is None:
        raise _damaged("the goblin geometry is damaged: the layer does not hold as many bytes as it says")
    return Tile(blob)


def decode_goblins(blob):
    """The Tile in the bytes of a layer "GoblinGeometry", as Document.read_data_layer gives them."""
    return Tile(blob)
