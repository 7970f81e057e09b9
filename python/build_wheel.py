"""Builds the wheel of the package morvane with CMake: what `pip install .` calls, by pyproject.toml.

It needs nothing but the standard library, so that pip has nothing to fetch.
"""

import base64
import hashlib
import os
import pathlib
import re
import subprocess
import sys
import sysconfig
import tarfile
import tempfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
VERSION = re.search(r"project\(morvane VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text())[1]
INFO = f"morvane-{VERSION}.dist-info"
METADATA = f"""Metadata-Version: 2.1
Name: morvane
Version: {VERSION}
Summary: Tiles as data: layered image files, and the goblins in them
Requires-Python: >=3.9
Requires-Dist: numpy
"""


def _run(*command):
    subprocess.run(command, check=True)


def _build(folder, build_type):
    """The package's folder, built for the interpreter that runs this."""
    _run("cmake", "-S", str(ROOT), "-B", folder, f"-DCMAKE_BUILD_TYPE={build_type}", "-DMORVANE_PYTHON=ON",
         "-DMORVANE_TESTS=OFF", f"-DPython_EXECUTABLE={sys.executable}")
    _run("cmake", "--build", folder, "--target", "morvane_python", "--parallel", str(os.cpu_count() or 2))
    return pathlib.Path(folder) / "python/morvane"


def _digest(data):
    return "sha256=" + base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    platform = re.sub(r"[-.]", "_", sysconfig.get_platform())
    name = f"morvane-{VERSION}-{python}-{python}-{platform}.whl"
    tags = f"Wheel-Version: 1.0\nGenerator: morvane\nRoot-Is-Purelib: false\nTag: {python}-{python}-{platform}\n"
    with tempfile.TemporaryDirectory() as folder:
        package = _build(folder, (config_settings or {}).get("build-type", "Release"))
        files = {f"morvane/{file.relative_to(package)}": file.read_bytes()
                 for file in sorted(package.rglob("*")) if file.is_file() and "__pycache__" not in file.parts}
    files[f"{INFO}/METADATA"] = METADATA.encode()
    files[f"{INFO}/WHEEL"] = tags.encode()
    record = "".join(f"{path},{_digest(data)},{len(data)}\n" for path, data in files.items())
    files[f"{INFO}/RECORD"] = (record + f"{INFO}/RECORD,,\n").encode()
    with zipfile.ZipFile(os.path.join(wheel_directory, name), "w", zipfile.ZIP_DEFLATED) as wheel:
        for path, data in files.items():
            wheel.writestr(path, data)
    return name


def build_sdist(sdist_directory, config_settings=None):
    base = f"morvane-{VERSION}"
    tracked = subprocess.run(["git", "-C", str(ROOT), "ls-files", "-z"], check=True, capture_output=True).stdout
    with tempfile.TemporaryDirectory() as folder:
        info = os.path.join(folder, "PKG-INFO")
        pathlib.Path(info).write_text(METADATA)
        with tarfile.open(os.path.join(sdist_directory, f"{base}.tar.gz"), "w:gz") as archive:
            archive.add(info, f"{base}/PKG-INFO")
            for path in filter(None, tracked.decode().split("\0")):
                archive.add(ROOT / path, f"{base}/{path}", recursive=False)
    return f"{base}.tar.gz"
