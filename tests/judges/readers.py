"""What independent programs see in a layered image file.

Each reader is a function of a file's path. It gives a View, or raises Unreadable with the program's reason. Views of
one reader can be compared with each other, and only those: what a reader does not tell is left out of its layers.
"""

import dataclasses
import hashlib
import json
import os
import re
import shutil
import signal
import subprocess

HERE = os.path.dirname(os.path.abspath(__file__))
SECONDS = 20  # for one program and one file


class Unreadable(Exception):
    pass


@dataclasses.dataclass
class View:
    merged: str     # size and fingerprint of the merged image; empty where the file has none for this reader
    alpha: bool     # whether the merged image has transparency
    layers: list    # bottom first, each a dict with "name" and "pixels" and, where told, "in" (the groups around
                    # it), "hidden", "opacity", "blend" and "place"


def output(*command, folder=None):
    """What the program says. A program that complains does not count as one that can read the file."""
    try:
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=SECONDS, cwd=folder,
                              errors="replace")
    except subprocess.TimeoutExpired:
        raise Unreadable("gives no answer in %d seconds" % SECONDS)
    if done.returncode != 0 or done.stderr:
        lines = [line for line in done.stderr.splitlines() if "Error" in line] or done.stderr.splitlines() or [""]
        raise Unreadable(lines[0].strip() or "ends with status %d" % done.returncode)
    return done.stdout


def ag_psd(path):
    return View(**json.loads(output("node", os.path.join(HERE, "describe-psd.mjs"), path)))


# The merged image is scene 0. A hidden layer takes no part in the composition.
def imagemagick(path, options=()):
    form = "%w x %h %#|%A|%[compose]|%X%Y|%l\n"
    text = output("convert-im6.q16", path, *options, "-format", form, "info:")
    scenes = [line.split("|", 4) for line in text.splitlines()]
    layers = [{"name": name, "hidden": compose == "None", "blend": compose, "place": place, "pixels": pixels}
              for pixels, _, compose, place, name in scenes[1:]]
    return View(scenes[0][0], scenes[0][1] != "False", layers)


# The merged image is subimage 0. The program hangs on some names of files, whatever is in them, so it is given the one
# without the folder, which is the same in every run. Whether a layer is hidden is not told.
def openimageio(path):
    text = output("oiiotool", "--info", "-v", "-a", "--hash", os.path.basename(path), folder=os.path.dirname(path))
    parts = re.split(r"^ *subimage +\d+: +", text, flags=re.M)
    images = []
    for part in parts[1:] if len(parts) > 1 else parts:
        size = re.search(r"(\d+) x +(\d+), (\d+ channel, \w+)", part)
        place = re.search(r"pixel data origin: (.*)", part)
        name = re.search(r'oiio:subimagename: "(.*)"', part)
        images.append({"name": name.group(1) if name else "", "place": place.group(1) if place else "",
                       "pixels": " ".join(size.groups()) + " " + re.search(r"SHA-1: (\w+)", part).group(1),
                       "channels": size.group(3)})
    channels = [image.pop("channels") for image in images]
    return View(images[0]["pixels"], channels[0].startswith(("2 ", "4 ")), images[1:])


def picture(image):
    return "%s %s %s" % (image.mode, image.size, hashlib.sha256(image.tobytes()).hexdigest()) if image else None


def flatten(layers, group, found):
    for layer in layers:
        if layer.is_group():
            flatten(layer, group + layer.name + "/", found)
        found.append({"name": layer.name, "in": group, "hidden": not layer.visible, "opacity": layer.opacity,
                      "blend": str(layer.blend_mode), "place": layer.bbox,
                      "pixels": None if layer.is_group() or not layer.has_pixels() else picture(layer.topil())})
    return found


def psd_tools(path):
    from psd_tools import PSDImage

    def late(*_):
        raise TimeoutError("gives no answer in %d seconds" % SECONDS)

    signal.signal(signal.SIGALRM, late)
    signal.alarm(SECONDS)
    try:
        psd = PSDImage.open(path)
        merged = psd.topil()
        return View(picture(merged), bool(merged) and merged.mode.endswith("A"), flatten(psd, "", []))
    except Exception as error:  # it has no exception of its own for a file that it cannot read
        raise Unreadable("%s: %s" % (type(error).__name__, " ".join(str(error).split()) or "no reason given"))
    finally:
        signal.alarm(0)


def available():
    """The readers that are installed, by name, and the names of those that are not."""
    there = {
        "ag-psd": (ag_psd, shutil.which("node") and os.path.isdir(os.path.join(HERE, "node_modules", "ag-psd"))),
        "ImageMagick": (imagemagick, shutil.which("convert-im6.q16")),
        "OpenImageIO": (openimageio, shutil.which("oiiotool")),
        "psd-tools": (psd_tools, _has_psd_tools()),
    }
    return {name: read for name, (read, ok) in there.items() if ok}, [name for name, (_, ok) in there.items() if not ok]


def _has_psd_tools():
    try:
        import psd_tools  # noqa: F401
    except ImportError:
        return False
    return True
