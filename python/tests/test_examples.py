"""What the documentation shows runs."""

import re
import runpy
import subprocess
import sys

import numpy as np
import pytest
from conftest import ROOT
from shapes import box, sphere, triangles_of, volume

import orva_acc


def test_the_program_of_the_readme():
    variables: dict = {}
    programs = re.findall(r"```python\n(.*?)```", (ROOT / "python/README.md").read_text(), re.DOTALL)
    more = re.findall(r"```python\n(.*?)```", (ROOT / "docs/start/python.md").read_text(), re.DOTALL)
    assert (len(programs), len(more)) == (2, 1)
    for code in programs + more:
        exec(code, variables)
    vertices, faces = variables["vertices"], variables["faces"]
    assert len(faces) == 192  # as docs/start/python.md says
    assert volume(triangles_of(vertices, faces)) == pytest.approx(10 * 0.3 * 3 - 9 * 0.6 * 0.3)


def cut_folder(*arguments):
    example = ROOT / "python/examples/cut_folder.py"
    return subprocess.run([sys.executable, example, *arguments], capture_output=True, text=True, timeout=120)


def test_a_folder_of_parts_on_a_dask_cluster(tmp_path):
    example = runpy.run_path(str(ROOT / "python/examples/cut_folder.py"))
    parts, results, tool = tmp_path / "parts", tmp_path / "results", tmp_path / "tool.stl"
    parts.mkdir()
    drill = triangles_of(*box((0.25, 0.25, -2), (0.5, 0.5, 2)))
    example["write_stl"](tool, drill)
    for number in range(6):
        example["write_stl"](parts / f"{number}.stl", sphere(number % 3, radius=number + 1))

    run = cut_folder(parts, tool, results)
    assert run.returncode == 0, run.stderr
    assert len(run.stdout.splitlines()) == 6
    for number in range(6):
        expected = orva_acc.subtract(example["read_stl"](parts / f"{number}.stl"), [drill])
        assert np.array_equal(example["read_stl"](results / f"{number}.stl"), expected.astype(np.float32))
        assert volume(expected) < volume(sphere(number % 3, radius=number + 1))

    (parts / "3.stl").write_bytes(b"no part")
    run = cut_folder(parts, tool, results)
    assert run.returncode == 1
    assert run.stdout.count("failed") == 1 and len(run.stdout.splitlines()) == 6
