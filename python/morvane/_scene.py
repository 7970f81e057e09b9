"""Scenes, by the program morvane in a process of its own."""

import dataclasses
import json
import logging
import os
import pathlib
import shutil
import subprocess
import threading
from typing import List, Optional

from ._errors import Error

_log = logging.getLogger("morvane")


@dataclasses.dataclass(frozen=True)
class SceneTile:
    """A tile of a scene: ``name`` (DAG path), ``texture`` (as the scene names it), ``goblins`` (how many), and
    ``problem``, why it cannot be exported as things stand (None when it can)."""

    name: str
    texture: str
    goblins: int
    problem: Optional[str]


@dataclasses.dataclass(frozen=True)
class Warning:
    """What was noticed, and how often; of a scene also ``kind`` ("notice" or "damage"), ``file`` and ``line``; of goblins
    that reach out of a tile also ``goblins``, which and how far, farthest first: a list of dict, with "goblin" (DAG path)
    and "distance" (a share of the tile's side)."""

    text: str
    count: int = 1
    kind: Optional[str] = None
    file: Optional[str] = None
    line: Optional[int] = None
    goblins: Optional[List[dict]] = None


@dataclasses.dataclass(frozen=True)
class ExportRecord:
    """What became of one tile: the fields of ``morvane export --json``. ``tile`` is None for the scene as a whole,
    ``texture`` the file that holds the goblins now, ``error`` None for a success, and ``status`` 0 then; ``tiles`` is
    how many were to be exported, ``action`` "written" for a success."""

    scene: str
    tile: Optional[str]
    texture: Optional[str]
    goblins: Optional[int]
    vertices: Optional[int]
    warnings: List[Warning]
    error: Optional[str]
    status: int
    milliseconds: float
    tiles: Optional[int] = None
    action: Optional[str] = None


class Scene:
    """A scene, opened as the program opens it; changes stay in memory until ``save``.

    Each Scene is a process of the program ``morvane``, so that several can be open, and neither the working folder nor
    the output of this process is touched. What scripts and the plug-in print goes to the logger "morvane", a record a
    line. ``maps`` are pairs (FROM, TO) of folders, for scenes made on other machines; ``project`` is the folder of the
    project, where it is not the nearest one above the scene. Close a Scene, or use it in a ``with`` statement.

    The program is the one of the module's own installation, else the first on the PATH; the environment variable
    MORVANE_PROGRAM names another. Raises FileNotFoundError and PermissionError, and Error ("cannot-read") for what is
    no scene.

    Attributes:
        path: the scene file's absolute path (str).
        warnings: what was noticed while it was opened (list of Warning).
        damage: those of the warnings that tell of damage.
    """

    def __init__(self, path, maps=(), project=None):
        self.path = os.path.abspath(os.fspath(path))
        self._lock = threading.Lock()
        with open(self.path, "rb"):  # Python's own errors for a file that is not there
            pass
        options = [word for source, target in maps for word in ("--map", f"{source}={target}")]
        if project is not None:
            options += ["--project", os.path.abspath(os.fspath(project))]
        self._process = subprocess.Popen([_program(), "serve", self.path, *options], stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self._listener = threading.Thread(target=_pass_on, args=(self._process.stderr,), daemon=True)
        self._listener.start()
        try:
            answers = self._answers("cannot-read")
        except BaseException:
            self.close()
            raise
        self.warnings = [Warning(**warning) for answer in answers for warning in answer["warnings"]]
        self.damage = [warning for warning in self.warnings if warning.kind == "damage"]

    def tiles(self):
        """The scene's tiles, in its order: a list of SceneTile."""
        return [SceneTile(tile["tile"], tile["texture"], tile["goblins"], tile["error"])
                for tile in self._ask({"do": "tiles"}, "failed")[0]["tiles"]]

    def export(self, tiles=None):
        """Exports the goblins of tiles into their textures: a list of ExportRecord, one a tile.

        ``tiles`` is an iterable of names or patterns, or of SceneTile; None: every tile. A tile that fails has a record
        with an error; what keeps the whole from beginning raises Error.
        """
        names = [getattr(tile, "name", tile) for tile in tiles or ()]
        if isinstance(tiles, str) or not all(isinstance(name, str) for name in names):
            raise TypeError("tiles is not an iterable of str")
        if tiles is not None and not names:
            return []
        records = [ExportRecord(**{**record, "warnings": [Warning(**warning) for warning in record["warnings"]]})
                   for record in self._ask({"do": "export", "tiles": names}, None)]
        for record in records:
            if record.tile is None and record.error:
                raise Error(record.error, "failed")
        return records

    def mel(self, text):
        """Runs commands; the result of the last: None, an int, a float, a str, or a list of them.

        Raises Error ("failed") for a command that fails, with what the host says of it.
        """
        if not isinstance(text, str):
            raise TypeError("text is not a str")
        answer = self._ask({"do": "mel", "text": text}, "failed")[0]
        if answer["array"]:
            return answer["values"]
        return answer["values"][0] if answer["values"] else None

    def save(self, path):
        """Writes the scene as a file. Raises Error ("cannot-write")."""
        self._ask({"do": "save", "file": os.path.abspath(os.fspath(path))}, "cannot-write")

    def close(self):
        """Ends the process; unsaved changes are lost. A second call does nothing."""
        if self._process.poll() is None:
            self._process.stdin.close()
            try:
                self._process.wait(5)
            except subprocess.TimeoutExpired:
                self._process.kill()
        self._process.wait()
        self._listener.join()
        for pipe in self._process.stdin, self._process.stdout, self._process.stderr:
            try:
                pipe.close()
            except BrokenPipeError:
                pass

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __del__(self):
        if hasattr(self, "_listener"):
            self.close()

    def __repr__(self):
        return f"<morvane.Scene {self.path}>"

    def _ask(self, request, code):
        if not self._lock.acquire(blocking=False):
            raise Error("another thread is using the scene", "busy")
        try:
            self._process.stdin.write(json.dumps(request).encode() + b"\n")
            self._process.stdin.flush()
            return self._answers(code)
        except (BrokenPipeError, ValueError):
            raise Error("the scene is closed", "closed") from None
        finally:
            self._lock.release()

    def _answers(self, code):
        """Everything up to the end of the answer. A failure raises Error with `code`, or does not for None."""
        answers = []
        for line in self._process.stdout:
            answer = json.loads(line)
            if "done" not in answer:
                answers.append(answer)
            elif answer["done"] and (code or not answers):
                raise Error(answer["error"] or "what the logger \"morvane\" was told", code or "failed")
            else:
                return answers
        raise Error("the program ended before it answered", "failed")


def _pass_on(stream):
    for line in stream:
        text = line.decode("utf-8", "backslashreplace").rstrip("\r\n")
        _log.log(logging.WARNING if text.startswith(("Error", "Warning", "morvane:")) else logging.INFO, "%s", text)


def _program():
    name = "morvane.exe" if os.name == "nt" else "morvane"
    home = pathlib.Path(__file__).resolve().parent
    places = [os.environ.get("MORVANE_PROGRAM"), *(home.parents[up] / "bin" / name for up in (1, 3)), shutil.which(name)]
    for place in places:
        if place and os.path.isfile(place):
            return str(place)
    raise FileNotFoundError(2, "the program morvane is neither beside the module nor on the PATH", name)
