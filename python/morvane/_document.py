"""Documents and their layers."""

import os

from . import _native

_MODES = {0: "bitmap", 1: "gray", 2: "indexed", 3: "RGB", 4: "CMYK", 7: "multichannel", 8: "duotone", 9: "Lab"}


class Layer:
    """One layer as it was when ``Document.layers`` was asked for; a later change of the document does not show in it.

    Attributes:
        name: the layer's name (str).
        hidden: whether the layer is switched off (bool).
        opacity: 0 (invisible) to 255 (int).
        blend: the blend mode's key of four characters, as in the file: ``"norm"``, ``"mul "`` (str).
        rect: the layer's rectangle, ``(left, top, right, bottom)`` in the image's pixels (ints).
        channels: ids in the file's order: 0, 1, 2... are the colour planes, -1 the transparency, -2 a mask (ints).
    """

    __slots__ = ("_entry", "name", "hidden", "opacity", "blend", "rect", "channels")

    def __init__(self, entry):
        self._entry = entry
        for attribute in self.__slots__[1:]:
            setattr(self, attribute, getattr(entry, attribute))

    def pixels(self):
        """The layer's pixels: a new array of uint8, (rows, columns, channels), decoded.

        The array covers the layer's own rectangle. The colour planes come first, and the transparency (255: opaque)
        last where the layer has one; masks are left out. Raises Error: "unsupported" for a depth other than 8 bits
        or a compression other than raw and packed, "damaged", or "stale" when layers came or went since.
        """
        return self._entry.pixels()

    def __repr__(self):
        return f"<morvane.Layer {self.name!r} {self.rect}>"


class Document:
    """A layered image file (PSD) in memory; everything in it is kept that is not changed.

    Document(path): reads a PSD file, or makes a document of an uncompressed TGA image of 24 or 32 bits.
    Document(data): reads a PSD file from a bytes-like object, which is copied.
    Document(width, height): a black RGB document of 8 bits, without layers; sides are 1 to 65535 pixels.

    Raises FileNotFoundError, PermissionError, ValueError for a name that ends neither in .psd nor in .tga, TypeError,
    and Error for a file that is damaged or cannot be read. The interpreter's lock is released while files are read and
    written; a document that another thread is using meanwhile raises Error ("busy").
    """

    __slots__ = ("_native", "path", "__weakref__")

    def __init__(self, source, height=None):
        self.path = None
        if height is not None:
            self._native = _native.make_blank(_side(source, "width"), _side(height, "height"))
        elif isinstance(source, (str, os.PathLike)):
            self.path = os.fspath(source)
            self._native = _native.open_file(self.path)
        elif isinstance(source, int):
            raise TypeError("height is missing")
        else:
            self._native = _native.open_bytes(source)

    @property
    def width(self):
        """Columns, in pixels (int)."""
        return self._native.width

    @property
    def height(self):
        """Rows, in pixels (int)."""
        return self._native.height

    @property
    def depth(self):
        """Bits a channel (int); pixels are decoded for 8."""
        return self._native.depth

    @property
    def mode(self):
        """The colour mode: "RGB", "gray", "indexed", "CMYK", "Lab", ... (str)."""
        return _MODES.get(self._native.mode, str(self._native.mode))

    @property
    def fault(self):
        """What is wrong with a document that was read all the same, such as a merged image cut off; None if nothing."""
        return self._native.fault

    @property
    def layers(self):
        """The layers, bottom first: a new list of Layer."""
        return [Layer(entry) for entry in self._native.layers]

    def merged(self):
        """The merged image: a new array of uint8, (rows, columns, channels), decoded.

        Channels behind the colours are transparency or saved selections. Raises Error: "unsupported" for a depth other
        than 8 bits or an unknown compression, "damaged" when it is cut off.
        """
        return self._native.merged()

    def add_data_layer(self, name, data):
        """Appends a hidden layer that carries bytes in its planes, at most 4 * width * height - 5 of them.

        ``name`` is at most 255 bytes of UTF-8; ``data`` is bytes-like. A document without layers first gets one of its
        merged image. Raises Error: "no-room", or "unsupported" for a document that takes no layer (not RGB or not of
        8 bits).
        """
        self._native.add_data_layer(_text(name, "name"), data)

    def read_data_layer(self, name):
        """The bytes that ``add_data_layer`` stored in the first layer of that name; None when there are none."""
        return self._native.read_data_layer(_text(name, "name"))

    def remove_layer(self, name):
        """Removes the first layer of that name. Raises KeyError when there is none, ValueError for the bottom layer."""
        self._native.remove_layer(_text(name, "name"))

    def save(self, path):
        """Writes the document as a PSD file, whatever the name ends in.

        Whenever the process or the machine stops, the path holds the old file or the new one whole. Raises
        FileNotFoundError for a folder that does not exist, PermissionError, or Error ("cannot-write").
        """
        self._native.save(os.fspath(path))

    def to_bytes(self):
        """The bytes that ``save`` writes."""
        return self._native.to_bytes()

    def __repr__(self):
        return f"<morvane.Document {self.path or ''} {self.width} x {self.height}>"


def _side(value, argument):
    if isinstance(value, bool) or not isinstance(value, int):
        raise TypeError(f"{argument} is not an int")
    if not 1 <= value <= 65535:
        raise ValueError(f"{argument} is not from 1 to 65535")
    return value


def _text(value, argument):
    if not isinstance(value, str):
        raise TypeError(f"{argument} is not a str")
    return value
