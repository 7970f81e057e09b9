#!/usr/bin/env python3
"""python_bench.py BUILD: measures the Python module beside the C++ library, the program's JSON, and psd-tools, and prints
a Markdown table. Medians of several rounds, each of ours between two of the peer's."""

import ctypes
import json
import os
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile
import time

build = pathlib.Path(sys.argv[1]).resolve()
sys.path.insert(0, str(build / "python"))

import numpy  # noqa: E402
import psd_tools  # noqa: E402

import morvane  # noqa: E402

libc = ctypes.CDLL(None)
SIDE = 4096
GOBLINS = 2000


def make_tile(path):
    """A picture of noise that packs as pictures do, and 2000 goblins of 10 MB together."""
    random = numpy.random.default_rng(1)
    document = morvane.Document(SIDE, SIDE)
    # A data layer's planes are the pixels of an image layer: the first three hold noise in runs.
    noise = numpy.repeat(random.integers(0, 256, SIDE * SIDE // 4, numpy.uint8), 12)
    document.add_data_layer("picture", noise)
    vertices, triangles = 100, 110
    goblins = []
    for number in range(GOBLINS):
        goblins.append(morvane.Goblin(name=f"goblin{number}", positions=random.random((vertices, 3)),
                                      normals=numpy.tile([0., 1., 0.], (vertices, 1)),
                                      triangles=random.integers(0, vertices, (triangles, 3))))
    morvane.set_goblins(document, goblins)
    document.save(path)


def used():
    """Seconds of processor time, those of programs that have ended included."""
    children = resource.getrusage(resource.RUSAGE_CHILDREN)
    return time.process_time() + children.ru_utime + children.ru_stime


def clock(work):
    libc.malloc_trim(0)  # so that memory is as fresh as in a new process
    start = used()
    work()
    return used() - start


def median(work, rounds):
    return statistics.median(clock(work) for _ in range(rounds))


def beside(ours, peer, rounds):
    """The medians of both, taken in turns."""
    times = [(clock(peer), clock(ours)) for _ in range(rounds)]
    return statistics.median(o for _, o in times), statistics.median(p for p, _ in times)


def row(work, ours, peer_name, peer, target, met):
    print(f"| {work} | {ours * 1e3:.3g} ms | {peer_name}: {peer * 1e3:.3g} ms | {peer / ours:.3g}× as fast | {target} | "
          f"{'met' if met else 'MISSED' if target else ''} |")


def read_json(path):
    text = subprocess.run([build / "bin/morvane", "goblins", path, "--json", "--full"], check=True,
                          capture_output=True).stdout
    return json.loads(text)


def main():
    with tempfile.TemporaryDirectory(dir="/dev/shm" if os.path.isdir("/dev/shm") else None) as folder:
        path = os.path.join(folder, "tile.psd")
        make_tile(path)
        blob = len(morvane.Document(path).read_data_layer("GoblinGeometry"))
        print("# Performance of the Python module\n\nMeasured by `scripts/bench`, in memory-backed files, in processor time. " +
              f"{os.cpu_count()} processors, Python {sys.version.split()[0]}, NumPy {numpy.__version__}. "
              f"The load was {os.getloadavg()[0]:.1f} when it began.\n")
        print(f"A tile of {SIDE}² with {GOBLINS} goblins, {blob / 1e6:.1f} MB of geometry, in a file of "
              f"{os.path.getsize(path) / 1e6:.0f} MB.\n")
        print("| work | morvane for Python | beside | | target | |\n| --- | --- | --- | --- | --- | --- |")
        rounds = 9
        program = [build / "bin/goblin-read-time", path, str(rounds)]
        library, meshes = map(float, subprocess.run(program, check=True, capture_output=True).stdout.split())
        ours = median(lambda: morvane.goblins(path), rounds)
        row("`goblins(path)`", ours, "the C++ library", library, "≤ 1.5× its time", ours <= 1.5 * library)
        tile = morvane.goblins(path)
        row("a mesh of every goblin", median(lambda: list(tile), 5), "the C++ library", meshes, "", True)
        ours, peer = beside(lambda: morvane.goblins(path), lambda: read_json(path), 3)
        row("`goblins(path)`", ours, "`goblins --json --full` and `json.loads`", peer, "≥ 20×", peer >= 20 * ours)

        copy = os.path.join(folder, "copy.psd")
        document, other = morvane.Document(path), psd_tools.PSDImage.open(path)
        works = [
            ("open the file", lambda: morvane.Document(path), lambda: psd_tools.PSDImage.open(path)),
            ("pixels of one layer", lambda: document.layers[1].pixels(), lambda: other[1].numpy()),
            ("save the file", lambda: document.save(copy), lambda: other.save(copy)),
        ]
        for name, ours_work, peer_work in works:
            ours, peer = beside(ours_work, peer_work, 5)
            row(name, ours, "psd-tools", peer, "", True)


main()
