import gc
import os
import pathlib
import resource
import subprocess
import sys
import threading

import numpy
import pytest

import morvane

SOURCE = pathlib.Path(os.environ["MORVANE_SOURCE_DIR"])
CORPUS = next((at / "shared/corpus/psd" for at in SOURCE.parents if (at / "shared/corpus/psd").is_dir()), None)
HILL = SOURCE / "examples/meadow/textures/hill.psd"  # without layers
SMALL_CORPUS = sorted(file for file in CORPUS.rglob("*.psd") if file.stat().st_size < 1 << 20) if CORPUS else []


@pytest.fixture(scope="module")
def layered():
    document = morvane.Document(HILL)
    document.add_data_layer("data", bytes(range(256)) * 64)
    return document.to_bytes()


def test_a_blank_document_and_its_layers():
    document = morvane.Document(6, 4)
    assert (document.width, document.height, document.depth, document.mode) == (6, 4, 8, "RGB")
    assert document.layers == [] and document.fault is None
    document.add_data_layer("notes", b"walked on")
    base, notes = document.layers
    assert notes.name == "notes" and notes.hidden and not base.hidden
    assert notes.rect == (0, 0, 6, 4) and notes.channels == (-1, 0, 1, 2) and notes.blend == "norm"
    assert base.pixels().shape == (4, 6, 3) and not base.pixels().any()
    # The transparency plane holds the length and the bytes: it comes last in the pixels.
    assert notes.pixels()[:, :, 3].tobytes()[:13] == b"\x09\0\0\0walked on"
    assert document.merged().shape == (4, 6, 3)


@pytest.mark.parametrize("name", ["notes", "Ünïcödé", "池の石", "🪨", "a b\tc", "x" * 255])
def test_names_in_any_alphabet(name, tmp_path):
    document = morvane.Document(40, 40)
    document.add_data_layer(name, b"1")
    path = tmp_path / f"{name[:20].strip()}.psd"
    document.save(path)
    again = morvane.Document(str(path))
    assert again.layers[1].name == name
    assert again.read_data_layer(name) == b"1"
    again.remove_layer(name)
    assert again.read_data_layer(name) is None and len(again.layers) == 1


@pytest.mark.parametrize("wrap", [bytes, bytearray, memoryview, lambda data: numpy.frombuffer(data, "u1")])
def test_bytes_like_objects(wrap):
    data = HILL.read_bytes()
    document = morvane.Document(wrap(data))
    assert document.to_bytes() == data
    document.add_data_layer("n", wrap(b"\0\1"))
    assert document.read_data_layer("n") == b"\0\1"


def test_failures_are_what_python_people_expect(tmp_path):
    document = morvane.Document(4, 4)
    (tmp_path / "cut.psd").write_bytes(HILL.read_bytes()[:50])
    failures = [
        (lambda: morvane.Document(tmp_path / "none.psd"), FileNotFoundError, "none.psd"),
        (lambda: morvane.Document(tmp_path / "picture.png"), ValueError, "neither in .psd"),
        (lambda: morvane.Document(tmp_path / "cut.psd"), morvane.Error, "damaged"),
        (lambda: morvane.Document(tmp_path), ValueError, ""),
        (lambda: morvane.Document("a\0.psd"), ValueError, ""),
        (lambda: morvane.Document(b""), morvane.Error, "damaged"),
        (lambda: morvane.Document(None), TypeError, "source"),
        (lambda: morvane.Document(4), TypeError, "height"),
        (lambda: morvane.Document(0, 4), ValueError, "width"),
        (lambda: morvane.Document(4, 70000), ValueError, "height"),
        (lambda: morvane.Document(4, 4.5), TypeError, "height"),
        (lambda: document.save(tmp_path / "none/out.psd"), FileNotFoundError, "out.psd"),
        (lambda: document.save(tmp_path), morvane.Error, "not-a-file"),
        (lambda: document.add_data_layer("n", b"x" * 60), morvane.Error, "no-room"),
        (lambda: document.add_data_layer("n", "text"), TypeError, "data"),
        (lambda: document.add_data_layer("n", memoryview(b"abcd")[::2]), ValueError, "data"),
        (lambda: document.add_data_layer("a\0b", b""), ValueError, "name"),
        (lambda: document.add_data_layer("ü" * 128, b""), ValueError, "name"),
        (lambda: document.add_data_layer(b"n", b""), TypeError, "name"),
        (lambda: document.remove_layer("n"), KeyError, "n"),
    ]
    for number, (act, kind, says) in enumerate(failures):
        with pytest.raises(kind) as caught:
            act()
        assert says in str(caught.value) + getattr(caught.value, "code", ""), number
    assert document.layers == []


@pytest.mark.skipif(os.geteuid() == 0, reason="the superuser may read everything")
def test_forbidden_files(tmp_path):
    path = tmp_path / "f.psd"
    morvane.Document(2, 2).save(path)
    path.chmod(0)
    with pytest.raises(PermissionError):
        morvane.Document(path)


def test_arrays_outlive_what_they_come_from(layered):
    document = morvane.Document(layered)
    layer = document.layers[0]
    pixels, merged = layer.pixels(), document.merged()
    kept = pixels.copy(), merged.copy()
    del document, layer
    gc.collect()
    numpy.random.bytes(1 << 22)
    assert (pixels == kept[0]).all() and (merged == kept[1]).all()
    pixels[:] = 0  # they are the caller's own
    assert (morvane.Document(layered).layers[0].pixels() == kept[0]).all()


def test_a_layer_of_before_a_change_is_stale():
    document = morvane.Document(8, 8)
    document.add_data_layer("a", b"")
    old = document.layers[1]
    document.remove_layer("a")
    assert old.name == "a"
    with pytest.raises(morvane.Error) as caught:
        old.pixels()
    assert caught.value.code == "stale"


def test_two_threads_raise_and_do_not_crash():
    document = morvane.Document(2000, 2000)
    for number in range(6):
        document.add_data_layer(f"l{number}", os.urandom(1 << 20))
    codes, done = [], []

    def work():
        for _ in range(12):
            try:
                done.append(len(document.to_bytes()))
                document.layers[1].pixels()
            except morvane.Error as error:
                codes.append(error.code)

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert set(codes) == {"busy"} and len(set(done)) == 1


def test_ten_thousand_documents_take_no_more_memory_than_one():
    small = morvane.Document(64, 64)
    small.add_data_layer("data", bytes(range(256)) * 60)
    data = small.to_bytes()

    def use(times):
        for _ in range(times):
            document = morvane.Document(data)
            document.layers[1].pixels()[0, 0, 0] = 1
            with pytest.raises(morvane.Error):
                morvane.Document(data[:90])
        gc.collect()
        return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss

    first = use(500)
    assert use(9500) - first < 4096  # KiB; a document and its pixels are more than 50


def test_the_lock_is_free_while_files_are_read():
    data = morvane.Document(4000, 4000).to_bytes()
    counted = [0]
    stop = threading.Event()

    def count():
        while not stop.is_set():
            counted[0] += 1

    thread = threading.Thread(target=count)
    thread.start()
    before = counted[0]
    document = morvane.Document(data)
    document.merged()
    stop.set()
    thread.join()
    assert counted[0] > before


@pytest.mark.skipif(not SMALL_CORPUS, reason="no corpus beside the project")
def test_files_of_other_programs():
    opened = 0
    for file in SMALL_CORPUS:
        try:
            document = morvane.Document(file)
        except morvane.Error as error:
            assert error.code == "damaged", file
            continue
        opened += 1
        assert document.to_bytes() == file.read_bytes(), file
        for layer in document.layers:
            try:
                left, top, right, bottom = layer.rect
                assert layer.pixels().shape[:2] == (bottom - top, right - left), file
            except morvane.Error as error:
                assert error.code in ("damaged", "unsupported"), file
    assert opened > len(SMALL_CORPUS) / 2


@pytest.mark.skipif(not SMALL_CORPUS, reason="no corpus beside the project")
def test_pixels_are_those_that_another_reader_sees():
    psd_tools = pytest.importorskip("psd_tools")
    compared = 0
    for file in SMALL_CORPUS:
        try:
            document = morvane.Document(file)
            record = psd_tools.PSDImage.open(file)._record
            merged = record.image_data.get_data(record.header)
            theirs = [{channel.id: data.get_data(layer.width, layer.height, 8)
                       for channel, data in zip(layer.channel_info, channels) if channel.id >= -1}
                      for layer, channels in zip(record.layer_and_mask_information.layer_info.layer_records,
                                                 record.layer_and_mask_information.layer_info.channel_image_data)]
        except Exception:  # what one of the two does not read is not compared
            continue
        if document.depth != 8 or document.mode != "RGB" or len(theirs) != len(document.layers):
            continue
        same_pixels(document.merged(), dict(enumerate(merged)), range(len(merged)), file)
        for layer, planes in zip(document.layers, theirs):
            if file.name == "rgba.psd":  # of a compression that is not decoded
                continue
            same_pixels(layer.pixels(), planes, sorted(planes, key=lambda channel: channel % 99), file)
        compared += 1
    assert compared > 5


def same_pixels(pixels, planes, order, file):
    for position, channel in enumerate(order):
        assert pixels[:, :, position].tobytes() == bytes(planes[channel]), (file, channel)


def test_help_and_silence():
    done = subprocess.run([sys.executable, "-c", "import morvane; help(morvane); help(morvane.Document)"],
                          capture_output=True, text=True, check=True)
    for said in "(rows, columns, channels)", "in tile space", "morvane.Error", "at most 4 * width * height - 5":
        assert said in done.stdout
    assert "pybind" not in done.stdout
    done = subprocess.run([sys.executable, "-c", f"import morvane; morvane.goblins({str(HILL)!r})"],
                          capture_output=True, text=True, check=True)
    assert done.stdout == "" and done.stderr == ""
