import logging
import os
import threading

import pytest

import morvane
from test_goblins import meadow, run  # noqa: F401

NOWHERE = '//Maya ASCII 8.0 scene\nrequires maya "8.0";\ncreateNode transform -n "a";\n  setAttr ".t" -type "double3" 1 2'


@pytest.fixture
def scene(meadow):  # noqa: F811
    with morvane.Scene(meadow / "meadow.ma") as opened:
        yield opened


def test_tiles_and_an_export(scene, meadow, caplog, capfd):  # noqa: F811
    caplog.set_level(logging.INFO, "morvane")
    folder = os.getcwd()
    tiles = scene.tiles()
    assert {tile.name for tile in tiles} == {"|hillTile", "|pathTile", "|pondTile", "|fieldTile"}
    assert all(tile.problem is None for tile in tiles) and scene.damage == []
    record, = scene.export(["pond*"])
    assert (record.tile, record.status, record.error, record.goblins) == ("|pondTile", 0, None, 13)
    assert len(morvane.goblins(meadow / record.texture)) == 13
    assert [record.tile for record in scene.export(tiles[:2])] == [tile.name for tile in tiles[:2]]
    assert len(scene.export()) == 4 and scene.export([]) == []
    assert os.getcwd() == folder and capfd.readouterr() == ("", "")
    assert any("Exporting tile |pondTile" in message for message in caplog.messages)


@pytest.mark.parametrize("text, result", [
    ("ls -type mesh pondTileShape", ["pondTileShape"]), ("ls nothing*", []), ("int $i; $i = 40 + 2", 42), ("int $i = 5", None),
    ("$f = 1.0 / 3", 1 / 3), ('string $s; $s = "a\\"b\\n池"', 'a"b\n池'), ("float $v[]; $v = {1, 2.5}", [1.0, 2.5]),
    ("int $n[]; $n = {3, 4}", [3, 4]), ('select -cl', None), ("", None)])
def test_results_of_commands(scene, text, result):
    got = scene.mel(text)
    assert got == result and type(got) is type(result)


def test_changes_stay_and_are_exported(scene, meadow):  # noqa: F811
    scene.mel('rename pondTile "lake"')
    goblin = scene.mel("listRelatives -type transform lake")[0]
    scene.mel(f"delete {goblin}")
    record, = scene.export(["lake"])
    assert record.goblins == 12
    scene.save(meadow / "lake.ma")
    with morvane.Scene(meadow / "lake.ma") as other:
        assert "|lake" in {tile.name for tile in other.tiles()}


def test_a_tile_that_fails_and_one_that_is_not_there(scene, meadow):  # noqa: F811
    (meadow / "textures/path.psd").write_bytes(b"no picture")
    problems = {tile.name: tile.problem for tile in scene.tiles()}
    assert problems["|pathTile"] and not problems["|hillTile"]
    record, = scene.export(["pathTile"])
    assert record.status == 1 and record.error
    for failing, code in (lambda: scene.mel("select nothing"), "failed"), (lambda: scene.mel("garble("), "failed"), (
            lambda: scene.export(["nothing"]), "failed"), (
            lambda: scene.save(meadow / "none/out.ma"), "cannot-write"):
        with pytest.raises(morvane.Error) as caught:
            failing()
        assert caught.value.code == code and str(caught.value)
    with pytest.raises(TypeError, match="tiles"):
        scene.export("pondTile")
    assert scene.mel("1 + 1") == 2


def test_what_is_no_scene_or_not_whole(tmp_path):
    for name, text, kind in ("none.ma", None, FileNotFoundError), ("a.ma", "no scene", morvane.Error):
        if text is not None:
            (tmp_path / name).write_text(text)
        with pytest.raises(kind):
            morvane.Scene(tmp_path / name)
    (tmp_path / "cut.ma").write_text(NOWHERE)
    with morvane.Scene(tmp_path / "cut.ma") as cut:
        assert cut.damage and cut.damage[0].line and cut.tiles() == []


def test_threads_and_closing(scene):
    results = []

    def ask():
        try:
            results.append(scene.mel("int $i; for ($i = 0; $i < 100000; $i++) {} $i = 7"))
        except morvane.Error as error:
            results.append(error.code)

    threads = [threading.Thread(target=ask) for _ in range(6)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert set(results) == {7, "busy"}
    scene.close()
    scene.close()
    with pytest.raises(morvane.Error) as caught:
        scene.tiles()
    assert caught.value.code == "closed"


def test_the_project_may_be_named(tmp_path):
    (tmp_path / "a.ma").write_text("//Maya ASCII 2018 scene\n")
    project = tmp_path / "elsewhere"
    project.mkdir()
    (project / "workspace.mel").write_text('workspace -fr "sourceImages" "pictures";\n')
    with morvane.Scene(tmp_path / "a.ma", project=project) as scene:
        assert scene.mel("workspace -q -rd") == f"{project}/"
        assert scene.mel('workspace -fre "sourceImages"') == "pictures"
