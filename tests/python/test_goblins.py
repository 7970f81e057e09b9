import gc
import os
import pathlib
import shutil
import struct
import subprocess

import numpy
import pytest

import morvane

SOURCE = pathlib.Path(os.environ["MORVANE_SOURCE_DIR"])

# The tile of docs/goblin-geometry.md, written out by hand: one triangle in each layout.
POOL = struct.pack("<24f", .25, .375, .25, 0, 1, 0, .25, .25, .25, .375, .75, 0, 1, 0, .25, .75,
                   .5, .375, .25, 0, 1, 0, .5, .25)
MIRRORED = struct.pack("<24f", .25, .375, .75, 0, 1, 0, .25, .75, .25, .375, .25, 0, 1, 0, .25, .25,
                       .5, .375, .75, 0, 1, 0, .5, .75)
NAMED = struct.pack("<I", 3) + POOL + struct.pack("<II2sII4I", 1, 2, b"g1", 0, 1, 3, 2, 1, 0)
TAGGED = struct.pack("<II", 1, 3) + MIRRORED + struct.pack("<II4I", 1, 1, 3, 0, 1, 2)

CORNERS = [[.25, .375, .25], [.25, .375, .75], [.5, .375, .25]]
TRIANGLE = {"positions": CORNERS, "triangles": [[0, 1, 2]]}


def run(*arguments):
    return subprocess.run([os.environ["MORVANE"], *map(str, arguments)], check=True, capture_output=True, text=True)


@pytest.fixture
def meadow(tmp_path):
    shutil.copytree(SOURCE / "examples/meadow", tmp_path, dirs_exist_ok=True)
    return tmp_path


def test_vertices_are_the_buffer_and_keep_it():
    tile = morvane.decode_goblins(NAMED * 1)
    vertices = tile.vertices
    assert numpy.shares_memory(vertices, tile.vertices) and not vertices.flags.writeable
    del tile
    gc.collect()
    numpy.random.bytes(1 << 20)
    assert vertices["position"].tolist() == CORNERS
    with pytest.raises(ValueError):
        vertices["position"] = 0


def test_arrays_of_any_make():
    points = numpy.zeros((3, 8), "f8")
    points[:, ::3] = CORNERS
    frozen = numpy.array([[0, 1, 2]], ">i8")
    frozen.flags.writeable = False
    tight = morvane.Goblin(**TRIANGLE)
    for positions in points[:, ::3], numpy.array(CORNERS, ">f4"), numpy.asfortranarray(CORNERS), tuple(CORNERS):
        goblin = morvane.Goblin(positions=positions, triangles=frozen)
        assert morvane.encode_goblins([goblin]) == morvane.encode_goblins([tight])
    empty = morvane.Goblin(positions=[], triangles=[])
    assert empty.positions.shape == (0, 3) and len(morvane.decode_goblins(morvane.encode_goblins([empty]))) == 1


@pytest.mark.parametrize("wrong, kind", [
    ({"positions": [[1, 2]]}, ValueError), ({"positions": [1, 2, 3]}, ValueError), ({"positions": "abc"}, TypeError),
    ({"positions": [[0, 0, float("nan")]] * 3}, ValueError), ({"positions": [[1, 2], [3]]}, TypeError),
    ({"positions": [[1e39, 0, 0]] * 3}, ValueError), ({"normals": [[0, 1, 0]]}, ValueError),
    ({"uvs": [[0, 1, 0]] * 3}, ValueError), ({"triangles": [[0, 1]]}, ValueError),
    ({"triangles": [[0, 1, 3]]}, ValueError), ({"triangles": [[0, 1, -1]]}, ValueError),
    ({"triangles": [[0., 1., 2.]]}, TypeError), ({"triangles": [[0, 1, 2 ** 32]]}, ValueError),
    ({"name": b"g"}, TypeError), ({"texture": 5}, TypeError)])
def test_wrong_arguments_are_named(wrong, kind):
    (argument,) = wrong
    with pytest.raises(kind, match=argument):
        morvane.Goblin(**{**TRIANGLE, **wrong})
    good = morvane.Goblin(**TRIANGLE)
    setattr(good, argument, wrong[argument])
    with pytest.raises(kind, match=rf"goblins\[1\].*{argument}"):
        morvane.encode_goblins([morvane.Goblin(**TRIANGLE), good])


def test_what_cannot_be_stored_leaves_the_document():
    document = morvane.Document(8, 8)
    assert morvane.goblins(document) is None
    morvane.set_goblins(document, [morvane.Goblin(name="one", **TRIANGLE)])
    before = document.to_bytes()
    for goblins, layout, kind in ([morvane.Goblin(**TRIANGLE)] * 9, "named", morvane.Error), ([], "other", ValueError), (
            ["text"], "named", TypeError), ([morvane.Goblin(name="a\0", **TRIANGLE)], "named", ValueError):
        with pytest.raises(kind):
            morvane.set_goblins(document, goblins, layout)
    assert document.to_bytes() == before and morvane.goblins(document)[0].name == "one"


def test_goblins_go_through_the_translator_and_back(meadow):
    run("export", meadow / "meadow.ma")
    goblins = list(morvane.goblins(meadow / "textures/pond.psd"))
    for number, goblin in enumerate(goblins):
        goblin.name = f"stone{number}"
    document = morvane.Document(320, 320)
    morvane.set_goblins(document, goblins)
    document.save(meadow / "made.psd")
    run("import", meadow / "meadow.ma", "fieldTile", meadow / "made.psd", "-o", meadow / "built.ma")
    run("export", meadow / "built.ma", "fieldTile", "--to", meadow / "again.psd")
    again = morvane.goblins(meadow / "again.psd")
    for goblin in goblins:
        other = again[goblin.name]
        # The import takes the corners as they are stored, and the export turns them round again.
        turned = other.triangles[:, ::-1]
        assert turned.shape == goblin.triangles.shape
        numpy.testing.assert_allclose(other.positions[turned], goblin.positions[goblin.triangles], atol=2e-6)
        numpy.testing.assert_allclose(other.normals[turned], goblin.normals[goblin.triangles], atol=2e-5)
