"""What reads tiles, over the module morvane and over the one file that stands in for it."""

import os
import pathlib
import subprocess

import numpy
import pytest

import morvane
import morvane_tile
from test_documents import HILL, SMALL_CORPUS
from test_goblins import CORNERS, NAMED, TAGGED, TRIANGLE, meadow, run  # noqa: F401


@pytest.fixture(params=[morvane, morvane_tile], ids=["compiled", "one file"])
def module(request):
    return request.param


@pytest.mark.parametrize("blob, layout, name", [(NAMED, "named", "g1"), (TAGGED, "tagged", "")])
def test_both_layouts_are_the_same_mesh(module, blob, layout, name):
    tile = module.decode_goblins(blob)
    assert tile.layout == layout and len(tile) == 1
    (goblin,) = tile
    assert (goblin.name, goblin.texture) == (name, "")
    assert numpy.asarray(goblin.positions).tolist() == CORNERS
    assert numpy.asarray(goblin.uvs).tolist() == [[.25, -.25], [.25, -.75], [.5, -.25]]
    assert numpy.asarray(goblin.triangles).tolist() == [[0, 1, 2]]
    position, normal, uv = tile.vertices[goblin.indices[0]]
    assert list(position) == ([.25, .375, .25] if layout == "named" else [.25, .375, .75])
    assert list(normal) == [0, 1, 0] and list(uv) == list(position)[::2]
    stored = numpy.asarray(tile.stored_triangles(0)).tolist()
    assert stored == ([[2, 1, 0]] if layout == "named" else [[0, 1, 2]])
    # Made anew, with the normals and coordinates that are worked out: the bytes from which it came.
    assert morvane.encode_goblins([morvane.Goblin(name="g1", **TRIANGLE)], layout) == blob


def test_a_tile_is_a_sequence_with_names(module):
    names = ["rock1", "池", "rock1", ""]
    tile = module.decode_goblins(morvane.encode_goblins(
        morvane.Goblin(name=name, texture=f"{number}.tga", **TRIANGLE) for number, name in enumerate(names)))
    assert [goblin.name for goblin in tile] == names
    assert tile["rock1"].texture == "0.tga" and tile["池"].texture == tile[1].texture == tile[-3].texture == "1.tga"
    assert "池" in tile and "沼" not in tile and 1 not in tile
    for key, kind in ("沼", KeyError), (4, IndexError), (-5, IndexError), (1.5, TypeError), (2 ** 80, IndexError):
        with pytest.raises(kind):
            tile[key]


def test_damage_is_refused(module):
    for sound in NAMED, TAGGED:
        for size in range(len(sound)):
            with pytest.raises(module.Error) as caught:
                module.decode_goblins(sound[:size])
            assert caught.value.code == "damaged"


def test_exported_goblins_are_those_of_the_report(module, meadow):
    run("export", meadow / "meadow.ma")
    tile = module.goblins(meadow / "textures/pond.psd")
    obj = meadow / "pond.obj"
    run("goblins", meadow / "textures/pond.psd", "--obj", obj)
    lines = [line.split() for line in obj.read_text().splitlines()]
    points = numpy.float32([line[1:] for line in lines if line[0] == "v"])[4:]
    faces = [[int(corner.split("/")[0]) - 5 for corner in line[1:]] for line in lines if line[0] == "f"][1:]
    ours = [[goblin.positions[corner] for corner in corners] for goblin in tile for corners in goblin.triangles]
    assert len(ours) == len(faces) > 100
    assert numpy.array_equal(numpy.float32(ours), points[faces])


def seen(module, source):
    """All that a module sees in a file, or the code of the error."""
    try:
        document = module.Document(source)
    except module.Error as error:
        return error.code
    layers = [(layer.name, layer.hidden, layer.opacity, layer.blend, layer.rect, layer.channels, pixels(module, layer.pixels))
              for layer in document.layers]
    return document.width, document.height, document.depth, document.mode, layers, pixels(module, document.merged)


def pixels(module, read):
    try:
        array = numpy.asarray(read())
    except module.Error as error:
        return error.code
    return array.size and array.shape, array.tobytes()


@pytest.mark.skipif(not SMALL_CORPUS, reason="no corpus beside the project")
def test_both_see_the_same_in_files_of_other_programs():
    for file in SMALL_CORPUS:
        compiled = seen(morvane, file)
        if compiled != "damaged":  # the one file does not look into what it steps over
            assert compiled == seen(morvane_tile, file), file


def test_both_refuse_files_that_are_cut_off_anywhere():
    document = morvane.Document(6, 5)
    morvane.set_goblins(document, [])
    data = document.to_bytes()
    for size in range(len(data)):
        assert seen(morvane, data[:size]) == seen(morvane_tile, data[:size]), size


def test_failures_of_the_one_file(tmp_path):
    for source, kind in (tmp_path / "none.psd", FileNotFoundError), ("a.png", ValueError), (5, TypeError):
        with pytest.raises(kind):
            morvane_tile.Document(source)
    assert morvane_tile.goblins(HILL) is None


def test_the_one_file_needs_nothing_else():
    alone = pathlib.Path(morvane_tile.__file__)
    code = f"import sys; sys.path.insert(0, {str(alone.parent)!r}); import morvane_tile; print(morvane_tile.goblins({str(HILL)!r}))"
    done = subprocess.run(["/usr/bin/env", "python3", "-S", "-I", "-c", code], capture_output=True, text=True, check=True)
    assert done.stdout == "None\n"
