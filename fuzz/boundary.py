"""Calls the module morvane with what one input of PythonFuzz says."""

import morvane
import numpy

ANSWERS = (morvane.Error, ValueError, TypeError, KeyError, IndexError, OverflowError, FileNotFoundError)
TYPES = ("f4", "f8", "i4", "i8", "u1", ">f4", "?", "c8", "U3", "O", "V5", "M8[s]")
SHAPES = ((0,), (3,), (3, 3), (4, 3), (3, 2), (4, 2), (0, 3), (1, 3), (2, 2, 3), (), (5, 4, 3), (5, 4, 4))
TEXTS = ("", "rock", "a\0b", "\udcff", "\udfff", "ä", "x" * 300, "GoblinGeometry", "$diffuse")
NUMBERS = (0, 1, -1, 5, 65535, 65536, 2**31, -(2**63), 2**64, 2**200, 1.5, float("nan"), None, True)


class Bytes:
    """Takes an input apart from its front."""

    def __init__(self, data):
        self.data = data

    def byte(self):
        first, self.data = self.data[:1], self.data[1:]
        return first[0] if first else 0

    def of(self, choices):
        return choices[self.byte() % len(choices)]

    def array(self):
        kind, shape, form = self.of(TYPES), self.of(SHAPES), self.byte()
        count = int(numpy.prod(shape))
        plain = numpy.frombuffer(self.data[:count].ljust(count, b"\1"), "u1").reshape(shape)
        self.data = self.data[count:]
        if kind[0] in "UOVM":
            return numpy.zeros(shape, kind)
        made = numpy.asarray((plain % 7).astype(kind))
        if form & 1 and made.ndim:
            made = made[::-1]
        if form & 2:
            made = numpy.asfortranarray(made)
        if form & 4:
            made = made.T
        if form & 8:
            made = numpy.broadcast_to(made, (3, *made.shape))
        if form & 16:
            made.flags.writeable = False
        if form & 32 and made.dtype.kind == "f" and made.size and made.flags.writeable:
            made.flat[0] = numpy.nan
        return made

    def anything(self):
        return self.of((self.array, lambda: self.of(TEXTS), lambda: self.of(NUMBERS), lambda: self.data,
                        lambda: memoryview(self.data)[::2], lambda: [self.of(NUMBERS)], lambda: self.array))()


def good_goblin(source):
    points = numpy.float32([[0, 0, 0], [0, 0, 1], [1, 0, source.byte() / 255]])
    return morvane.Goblin(name=source.of(TEXTS[:2]), positions=points, triangles=[[0, 1, 2]])


def any_goblin(source):
    goblin = good_goblin(source)
    for name in ("positions", "normals", "uvs", "triangles", "name", "texture"):
        if source.byte() & 3 == 0:
            setattr(goblin, name, source.anything())
    return goblin


def read(document):
    for layer in document.layers[:4]:
        attempt(layer.pixels)
    attempt(document.merged)
    tile = attempt(morvane.goblins, document)
    if tile is not None:
        read_tile(tile)


def read_tile(tile):
    vertices = tile.vertices
    for index in range(min(len(tile), 4)):
        goblin = tile[index]
        assert goblin.triangles.size == 0 or goblin.triangles.max() < len(goblin.positions), "a corner of nothing"
        assert goblin.indices.size == 0 or goblin.indices.max() < len(vertices), "a vertex of nothing"
        tile.stored_triangles(index)
    count = len(vertices)
    del tile
    assert vertices["position"].sum() is not None and len(vertices) == count


def attempt(call, *arguments, **named):
    try:
        return call(*arguments, **named)
    except ANSWERS:
        return None


def change(document, source):
    choice = source.byte() % 6
    if choice == 0:
        attempt(morvane.encode_goblins, [any_goblin(source)], source.of(("named", "tagged", "odd", 3)))
    elif choice == 1:
        attempt(document.add_data_layer, source.anything(), source.anything())
    elif choice == 2:
        attempt(document.remove_layer, source.anything())
    elif choice == 3:
        attempt(document.read_data_layer, source.anything())
    elif choice == 4:
        attempt(morvane.set_goblins, document, [any_goblin(source)], source.of(("named", "tagged", "odd", 3)))
    else:
        attempt(morvane.set_goblins, document, source.anything())


def call(data):
    source = Bytes(data)
    if data[:4] == b"8BPS":
        document = attempt(morvane.Document, data)
    elif source.byte() & 1:
        document = attempt(morvane.Document, source.of(NUMBERS[:4]), source.of(NUMBERS[:4]))
    else:
        document = attempt(morvane.Document, source.anything())
        tile = attempt(morvane.decode_goblins, source.data)
        if tile is not None:
            read_tile(tile)
    if document is None:
        return
    read(document)
    layers = document.layers
    for _ in range(3):
        change(document, source)
    for layer in layers[:2]:
        attempt(layer.pixels)
    read(document)
    written = attempt(document.to_bytes)
    if written is not None:
        assert morvane.Document(written).to_bytes() == written, "what was written reads as another document"
