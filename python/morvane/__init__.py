"""Tiles as data: layered image files, and the goblins in them.

    import morvane

    doc = morvane.Document("pond.psd")
    for layer in doc.layers:
        print(layer.name, layer.rect, layer.pixels().shape)

    tile = morvane.goblins("pond.psd")        # None when there are none
    for goblin in tile:
        print(goblin.name, goblin.positions.max(axis=0))

    doc = morvane.Document(512, 512)
    morvane.set_goblins(doc, [morvane.Goblin(name="rock", positions=points, triangles=faces)])
    doc.save("rocks.psd")

    with morvane.Scene("meadow.ma") as scene:
        for record in scene.export():
            print(record.tile, record.error or record.goblins)

What goes wrong raises FileNotFoundError, PermissionError, ValueError or TypeError where Python does, else
morvane.Error, whose ``code`` says what. Nothing is printed; what a
scene's scripts and the plug-in say goes to the logger "morvane".
"""

from ._document import Document, Layer
from ._errors import Error
from ._goblins import Goblin, Tile, decode_goblins, encode_goblins, goblins, set_goblins
from ._scene import ExportRecord, Scene, SceneTile, Warning

__all__ = ["Document", "Error", "ExportRecord", "Goblin", "Layer", "Scene", "SceneTile", "Tile", "Warning",
           "decode_goblins", "encode_goblins", "goblins", "set_goblins"]

for _public in __all__:
    globals()[_public].__module__ = __name__
del _public
