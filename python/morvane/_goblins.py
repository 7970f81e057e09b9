"""Goblins, and the tiles that they are in."""

import numpy

from . import _native
from ._document import Document, _text

_VERTEX = numpy.dtype([("position", "=f4", 3), ("normal", "=f4", 3), ("uv", "=f4", 2)])


class Goblin:
    """One goblin as a mesh: all arguments by name, arrays of the n vertices and m triangles.

    Attributes, which the constructor takes:
        name, texture: str; both are empty in a tile of the tagged layout.
        positions: (n, 3) float32, in tile space: the tile is 1 long in x and z, y is up, z runs down the picture's rows.
        normals: (n, 3) float32, one long. None: the mean of the triangles around each vertex, by their areas.
        uvs: (n, 2) float32, u to the right and v up, the picture's top row at v = 0 and its bottom row at v = -1. None:
            where the vertex lies on the picture, (x, -z).
        triangles: (m, 3) int32, indices of vertices, counter-clockwise seen from outside.
        indices: (n,) int32, where each vertex is in ``tile.vertices``; None for a goblin that was made.

    Arrays are converted where they are of another type, and copied only then. Raises TypeError and ValueError with the
    name of the argument for arrays of the wrong type or shape, numbers that are not finite, and wrong indices.
    """

    __slots__ = ("name", "texture", "positions", "normals", "uvs", "triangles", "indices")

    def __init__(self, *, name="", texture="", positions, normals=None, uvs=None, triangles):
        self.name = _text(name, "name")
        self.texture = _text(texture, "texture")
        self.positions = _floats(positions, "positions", None, 3)
        count = len(self.positions)
        self.triangles = _indices(triangles, count)
        self.normals = (_mean_normals(self.positions, self.triangles) if normals is None
                        else _floats(normals, "normals", count, 3))
        self.uvs = self.positions[:, ::2] * numpy.float32([1, -1]) if uvs is None else _floats(uvs, "uvs", count, 2)
        self.indices = None

    def _tuple(self):
        """What the compiled part takes; checked again, as the attributes may be others by now."""
        checked = Goblin(name=self.name, texture=self.texture, positions=self.positions, normals=self.normals,
                         uvs=self.uvs, triangles=self.triangles)
        return (checked.name, checked.texture, checked.positions, checked.normals, checked.uvs, checked.triangles)

    def __repr__(self):
        return f"<morvane.Goblin {self.name!r} {len(self.positions)} vertices, {len(self.triangles)} triangles>"


class Tile:
    """The goblins of one tile, in the one buffer that they were stored in. A sequence of Goblin.

    ``tile[0]``, ``tile[-1]`` and ``tile["rock1"]`` (the first of that name) make a Goblin; ``"rock1" in tile`` asks.
    The goblins are the same meshes whichever layout they are stored in.

    Attributes:
        layout: ``"named"`` (by the translator) or ``"tagged"`` (by exportTile, without names).
        vertices: the vertices of all goblins as stored, without a copy: a read-only structured array with the fields
            ``position``, ``normal`` (3 float32) and ``uv`` (2 float32). In the tagged layout z is 1 - z and v is v + 1,
            in the named one v is -v. It stays good without the tile.
    """

    __slots__ = ("_native", "__weakref__")

    def __init__(self, native):
        self._native = native

    @property
    def layout(self):
        return self._native.layout

    @property
    def vertices(self):
        return self._native.pool(_VERTEX)

    def stored_triangles(self, index):
        """The triangles of ``tile[index]`` as stored: (m, 3) int32, indices into ``vertices``.

        The named layout has the corners in reverse order. Polygons are cut into fans.
        """
        return self._native.stored_triangles(self._index(index))

    def __len__(self):
        return len(self._native)

    def __getitem__(self, key):
        index = self._index(key)
        name, texture, positions, normals, uvs, triangles = self._native.mesh(index)
        goblin = Goblin.__new__(Goblin)
        goblin.name, goblin.texture = name, texture
        goblin.positions, goblin.normals, goblin.uvs, goblin.triangles = positions, normals, uvs, triangles
        goblin.indices = self._native.indices(index)
        return goblin

    def __iter__(self):
        return (self[index] for index in range(len(self)))

    def __contains__(self, name):
        return isinstance(name, str) and self._native.find(name) is not None

    def _index(self, key):
        if isinstance(key, str):
            index = self._native.find(key)
            if index is None:
                raise KeyError(key)
            return index
        index = key.__index__() if hasattr(key, "__index__") else None
        if index is None:
            raise TypeError("a goblin is asked for by an int or a str")
        index += len(self) if index < 0 else 0
        if not 0 <= index < len(self):
            raise IndexError("there is no such goblin")
        return index

    def __repr__(self):
        return f"<morvane.Tile {self.layout}, {len(self)} goblins>"


def goblins(source):
    """The goblins in a file, or in a Document: a Tile, or None when there are none.

    Raises as Document does, and Error ("damaged") for goblins that cannot be read.
    """
    document = source if isinstance(source, Document) else Document(source)
    native = _native.read_tile(document._native)
    return None if native is None else Tile(native)


def set_goblins(document, goblins, layout="named"):
    """Puts goblins (an iterable of Goblin) into a Document, in place of those that are there.

    They become a new hidden layer on top. ``morvane import`` takes the layout "named" alone; "tagged" has no names.
    Raises ValueError with the goblin's number for one that cannot be stored, and Error: "no-room" when the image has
    too few pixels, "unsupported" when the document takes no layer. The document then stays as it was.
    """
    if not isinstance(document, Document):
        raise TypeError("document is not a morvane.Document")
    _native.set_goblins(document._native, _tuples(goblins), layout)


def decode_goblins(blob):
    """The Tile in the bytes of a layer "GoblinGeometry", as ``read_data_layer`` gives them. Raises Error ("damaged")."""
    return Tile(_native.parse_tile(blob))


def encode_goblins(goblins, layout="named"):
    """The bytes that ``set_goblins`` stores."""
    return _native.encode(_tuples(goblins), layout)


def _tuples(goblins):
    tuples = []
    for number, goblin in enumerate(goblins):
        if not isinstance(goblin, Goblin):
            raise TypeError(f"goblins[{number}] is not a morvane.Goblin")
        try:
            tuples.append(goblin._tuple())
        except (TypeError, ValueError) as error:
            raise type(error)(f"goblins[{number}] {goblin.name!r}: {error}") from None
    return tuples


def _floats(values, argument, count, width):
    try:
        array = numpy.asarray(values)
        if array.dtype.kind not in "fiu":
            raise TypeError
        with numpy.errstate(over="ignore"):
            array = numpy.ascontiguousarray(array, numpy.float32)
    except (TypeError, ValueError):
        raise TypeError(f"{argument} is not an array of numbers") from None
    if array.size == 0:
        array = array.reshape(0, width)
    if array.ndim != 2 or array.shape[1] != width or (count is not None and len(array) != count):
        raise ValueError(f"{argument} has the shape {array.shape}, not ({'n' if count is None else count}, {width})")
    if not numpy.isfinite(array).all():
        raise ValueError(f"{argument} has a number that is not finite")
    return array


def _indices(values, count):
    array = numpy.asarray(values)
    if array.size == 0:
        return numpy.empty((0, 3), numpy.int32)
    if array.dtype.kind not in "iu":
        raise TypeError("triangles is not an array of integers")
    if array.ndim != 2 or array.shape[1] != 3:
        raise ValueError(f"triangles has the shape {array.shape}, not (m, 3)")
    if array.min() < 0 or array.max() >= count:
        raise ValueError(f"triangles has an index that is not from 0 to {count - 1}")
    return numpy.ascontiguousarray(array, numpy.int32)


def _mean_normals(positions, triangles):
    corners = positions.astype(numpy.float64)[triangles]
    faces = numpy.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0])
    sums = numpy.zeros((len(positions), 3))
    for corner in range(3):
        numpy.add.at(sums, triangles[:, corner], faces)
    lengths = numpy.linalg.norm(sums, axis=1, keepdims=True)
    return numpy.where(lengths > 0, sums / numpy.where(lengths > 0, lengths, 1), [0, 1, 0]).astype(numpy.float32)
