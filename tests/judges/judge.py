"""Lets independent readers say whether an export changed anything in a layered image but the layer that it adds.

usage: judge.py MORVANE ROOT CORPUS WORK [REPORT.md]   (CORPUS may be the empty text)

Exports a goblin into a copy of every image of the corpus and of the examples, the way a user would, and compares what
each reader sees before and after. Ends with status 1 when a difference is not among the explained ones.
"""

import collections
import functools
import logging
import os
import shutil
import subprocess
import sys
import warnings

import departures
import readers

LAYER = "GoblinGeometry"
VERDICTS = ("same", "differs", "could not read before")
TILE = """//Maya ASCII 2018 scene
requires maya "2018";
createNode transform -n "tile";
createNode mesh -n "tileShape" -p "tile";
	setAttr -s 4 ".vt[0:3]" -2 0 4 2 0.5 4 2 1 -4 -2 0.5 -4;
	setAttr -s 4 ".ed[0:3]" 0 1 0 1 2 0 2 3 0 3 0 0;
	setAttr -ch 4 ".fc[0]" -type "polyFaces" f 4 0 1 2 3;
createNode transform -n "pebble" -p "tile";
createNode mesh -n "pebbleShape" -p "pebble";
	setAttr -s 3 ".vt[0:2]" 0 0 0 1 0 0 0 0 -1;
	setAttr -s 3 ".ed[0:2]" 0 1 0 1 2 0 2 0 0;
	setAttr -ch 3 ".fc[0]" -type "polyFaces" f 3 0 1 2;
	addAttr -ci true -sn "goblinName" -ln "goblinName" -dt "string";
	setAttr ".goblinName" -type "string" "pebble";
createNode lambert -n "ground";
createNode shadingEngine -n "groundSG";
createNode file -n "picture";
	setAttr ".ftn" -type "string" "%s";
connectAttr "picture.oc" "ground.c";
connectAttr "ground.oc" "groundSG.ss";
connectAttr "tileShape.iog" "groundSG.dsm" -na;
connectAttr "groundSG.pa" ":renderPartition.st" -na;
"""

# (start of the file's name, start of what a reader says, why that is right)
ROWS = "The rows of a TGA image are taken as stored from the bottom up, left to right, whatever its header says."
EXPLAINED = [
    ("tga/kimageformats/", "the picture is upside down", ROWS),
    ("tga/kimageformats/bottom_right", "the picture is mirrored", ROWS),
    ("tga/twelvemonkeys/FLAG_T32.TGA", "the picture is upside down", ROWS),
]


Pair = collections.namedtuple("Pair", "before after")


class Export:
    """A copy of an image in a folder of its own, before and after the export of a tile that has it as its texture."""

    def __init__(self, morvane, original, folder):
        suffix = os.path.splitext(original)[1]
        os.makedirs(folder)
        self.before, texture = os.path.join(folder, "before" + suffix), os.path.join(folder, "texture" + suffix)
        self.after = os.path.join(folder, "texture.psd") if suffix.lower() != ".psd" else texture
        shutil.copyfile(original, self.before)
        shutil.copyfile(original, texture)
        scene = os.path.join(folder, "tile.ma")
        with open(scene, "w") as out:
            out.write(TILE % os.path.basename(texture))
        there = self._files(folder)
        done = subprocess.run([morvane, "export", scene], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              errors="replace", timeout=readers.SECONDS)
        self.refused = done.returncode == 1
        self.faults = []
        refusal = "%s: |tile: " % scene
        if done.returncode not in (0, 1):
            self.faults.append("the export ended with status %d" % done.returncode)
        elif self.refused and refusal not in done.stdout:
            self.faults.append("the refusal does not name the tile")
        if self.refused and (self._files(folder) != there or _bytes(texture) != _bytes(original)):
            self.faults.append("refused, but not as it was")
        self.said = done.stdout.rpartition(refusal)[2].split("\n")[0]

    @staticmethod
    def _files(folder):
        return sorted(os.listdir(folder))


def _bytes(path):
    with open(path, "rb") as file:
        return file.read()


@functools.lru_cache(maxsize=None)
def describe(read, path):
    """(view, None), or (None, reason)."""
    try:
        return read(path), None
    except readers.Unreadable as reason:
        return None, str(reason).replace(os.path.dirname(path) + os.sep, "")


def ours(layer):
    """What is wrong with the topmost layer, which should be the one that the export adds."""
    wanted = {"name": LAYER, "in": "", "hidden": True}
    return ["the layer on top has %s %r" % (key, layer[key])
            for key in wanted if layer.get(key, wanted[key]) != wanted[key]]


def differences(before, after):
    faults = ["the merged image differs"] if (before.merged, before.alpha) != (after.merged, after.alpha) else []
    if not after.layers:
        return faults + ["no layer is seen"]
    faults += ours(after.layers[-1])
    others = after.layers[:-1]
    if any(layer["name"] == LAYER for layer in others):
        faults.append("the layer is there more than once")
    if before.layers:
        if len(others) != len(before.layers):
            faults.append("%d other layers, there were %d" % (len(others), len(before.layers)))
        for number, (old, new) in enumerate(zip(before.layers, others)):
            faults += ["layer %d: %s differs" % (number, key) for key in old if old[key] != new[key]]
    elif len(others) != 1 or others[0].get("hidden", False):
        faults.append("a flat image has to become one visible layer")
    elif not before.alpha and others[0]["pixels"] != before.merged:
        faults.append("the layer made of the flat image shows something else")
    return faults


def judge_psd(read, export):
    """(verdict, reason)."""
    before, reason = describe(read, export.before)
    if before is None:
        return "could not read before", reason
    after, reason = describe(read, export.after)
    if after is None:
        return "differs", "cannot be read any more: " + reason
    faults = differences(before, after)
    return ("differs", "; ".join(faults)) if faults else ("same", "")


def judge_tga(export):
    """The picture must be in its layer, as ImageMagick sees it."""
    turns = {"": [], "upside down": ["-flip"], "mirrored": ["-flop"], "turned": ["-flip", "-flop"]}
    try:
        # A fingerprint covers the transparency, which every layer has.
        pictures = {readers.imagemagick(export.before, ["-auto-orient", "-alpha", "set"] + turn).merged: how
                    for how, turn in reversed(turns.items())}
        layers = readers.imagemagick(export.after).layers
    except readers.Unreadable as reason:
        return "could not read before", str(reason)
    names = [layer["name"] for layer in layers]
    if names[1:] != ["$diffuse", LAYER] or ours(layers[-1]):
        return "differs", "the layers are %s" % ", ".join(names)
    how = pictures.get(layers[1]["pixels"], "another one")
    return ("differs", "the picture is " + how) if how else ("same", "")


def images(folder, suffixes):
    found = [os.path.join(at, name) for at, _, names in os.walk(folder) for name in names]
    return sorted(path for path in found if path.lower().endswith(suffixes))


def table(head, rows):
    lines = [head, ["---"] + ["---:"] * (len(head) - 1)] + rows
    return "".join("| %s |\n" % " | ".join(str(cell).replace("|", "\\|") for cell in line) for line in lines)


def _short(reason, length=100):
    return reason if len(reason) <= length else reason[:length].rpartition(" ")[0] + " ..."


class Report:
    def __init__(self):
        self.text, self.failed = "", 0

    def add(self, text):
        self.text += text
        print(text, end="", flush=True)

    def section(self, title, exports, verdicts):
        """`verdicts`: for each reader, for each of the exports that were not refused, (verdict, reason)."""
        refused = [(name, export) for name, export in exports if export.refused]
        rows = [[reader] + [sum(v == verdict for v, _ in given.values()) for verdict in VERDICTS] + [len(refused)]
                for reader, given in verdicts.items()]
        self.add("\n## %s\n\n%d files.\n\n" % (title, len(exports)) + table(["reader", *VERDICTS, "refused"], rows))
        self._differing(verdicts)
        if refused:
            self.add("\nRefused, and untouched byte for byte:\n\n" + "".join(
                "- `%s`: %s\n" % (name, export.said) for name, export in refused))
        for name, export in exports:
            for fault in export.faults:
                self.failed += 1
                self.add("- WRONG: `%s`: %s\n" % (name, fault))

    def _differing(self, verdicts):
        if any(verdict == "differs" for given in verdicts.values() for verdict, _ in given.values()):
            self.add("\n")
        for reader, given in verdicts.items():
            for name, (verdict, reason) in given.items():
                if verdict != "differs":
                    continue
                why = [why for file, said, why in EXPLAINED if name.startswith(file) and reason.startswith(said)]
                self.failed += not why
                self.add("- %s`%s`, %s: %s%s\n" % ("" if why else "WRONG: ", name, reader, _short(reason),
                                                   ". " + why[0] if why else ""))

    def departure(self, title, patch, exports, readers_used):
        """Judges the files that the simpler way would have written, where they are others than ours."""
        rows, examples = [], []
        changed = [(name, export) for name, export in exports if patch(_bytes(export.after)) != _bytes(export.after)]
        suffix = "." + patch.__name__ + ".psd"
        for _, export in changed:
            with open(export.after + suffix, "wb") as out:
                out.write(patch(_bytes(export.after)))
        for reader, read in readers_used.items():
            seen = [(name, export) for name, export in changed if judge_psd(read, export)[0] == "same"]
            verdicts = {name: judge_psd(read, Pair(export.before, export.after + suffix))
                        for name, export in seen}
            damaged = {name: reason for name, (verdict, reason) in verdicts.items() if verdict == "differs"}
            unreadable = sum(reason.startswith("cannot be read") for reason in damaged.values())
            rows.append([reader, len(seen), len(damaged), unreadable])
            examples += ["- `%s`, %s: %s\n" % (name, reader, _short(reason)) for name, reason in damaged.items()]
        self.add("\n### %s\n\n%d files come out otherwise.\n\n" % (title, len(changed)))
        self.add(table(["reader", "same with our rule", "damaged by the simpler one", "of these unreadable"], rows))
        if examples:
            self.add("\n" + "".join(examples))
        return len(examples)


INTRODUCTION = """# What other programs see in our files

`scripts/judge` makes this page. It exports a goblin into a copy of every image, with `morvane export`, and asks
programs that other people wrote what they see before and after:
%s. The images are the corpus of real files from other
programs, and the examples.

*Same* means: the merged image is identical; every other layer has its name, place, pixels, visibility, opacity, blend
mode and groups, as far as the reader tells them; and one layer more is there, on top, outside every group, hidden,
called `GoblinGeometry`. An image without layers has become one visible layer with its picture. *Could not read before*
means that the reader refuses the original too, and so has no opinion. *Refused* means that the export did not take the
image, said why, and left every byte as it was.
"""

SIMPLER = """
## Two rules that are not the simplest ones

A new layer takes over from the layer below only what describes no content, and the sign of the layer count is kept (see
[psd-files.md](psd-files.md)). Here the readers say what the simpler ways would do to the same files. Counted are the
files that a reader finds the same with our rule.
"""


def main(morvane, root, corpus, work, report_file=None):
    logging.disable(logging.CRITICAL)
    warnings.simplefilter("ignore")
    judges, missing = readers.available()
    for name in missing:
        print("skipped: %s is not installed" % name)
    if not corpus:
        print("skipped: the corpus is not here; only the examples are judged")
    report = Report()
    report.add(INTRODUCTION % ", ".join(judges))
    layered, flat = [], []
    for folder, prefix in [(corpus, "")] * bool(corpus) + [(os.path.join(root, "examples"), "examples/")]:
        for path in images(folder, (".psd", ".psb", ".tga")):
            kind = flat if path.lower().endswith(".tga") else layered
            place = os.path.join(work, "%d" % (len(layered) + len(flat)))
            kind.append((prefix + os.path.relpath(path, folder), Export(morvane, path, place)))
    taken = [(name, export) for name, export in layered if not export.refused]
    report.section("Layered images", layered, {
        reader: {name: judge_psd(read, export) for name, export in taken} for reader, read in judges.items()})
    if "ImageMagick" in judges:
        report.section("TGA images", flat, {
            "ImageMagick": {name: judge_tga(export) for name, export in flat if not export.refused}})
    report.add(SIMPLER)
    for title, patch in (("Everything of the layer below taken over", departures.trailing_data_whole),
                         ("The layer count written without its sign", departures.count_without_sign)):
        damaged = report.departure(title, patch, taken, judges)
        if corpus and damaged == 0:
            report.failed += 1
            report.add("WRONG: no reader sees any damage, so these readers prove nothing\n")
    if report_file and corpus and not missing:
        with open(report_file, "w") as out:
            out.write(report.text)
    print("\n%d unexplained" % report.failed)
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
