"""What is installed is whole, and does without this source tree."""

import importlib.metadata
import pathlib
import re

from conftest import ROOT

import orva_acc


def test_the_libraries_are_those_of_the_wheel():
    mapped = {line.split()[-1] for line in pathlib.Path("/proc/self/maps").read_text().splitlines() if "/" in line}
    folder = pathlib.Path(orva_acc.__file__).parent / "lib"
    ours = {str(folder / name) for name in ("liborva_acc_guarded.so", "libOrva_acc.so.0", "libOrva_tidy.so.0", "libtbb.so.12")}
    assert {path for path in mapped if "rva_" in path or "libtbb." in path} == ours


def test_the_version_is_the_librarys():
    (version,) = re.findall(r"^project\(Orva_acc VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)
    assert orva_acc.__version__ == importlib.metadata.version("orva_acc") == version


def test_types_and_notices_are_there():
    files = {path.name for path in importlib.metadata.files("orva_acc")}
    assert {"py.typed", "THIRD-PARTY-NOTICES.md"} <= files
