"""What the documentation shows runs."""

import re

import pytest
from conftest import ROOT
from shapes import triangles_of, volume


def test_the_program_of_the_readme():
    (code,) = re.findall(r"```python\n(.*?)```", (ROOT / "python/README.md").read_text(), re.DOTALL)
    variables: dict = {}
    exec(code, variables)
    vertices, faces = variables["vertices"], variables["faces"]
    assert volume(triangles_of(vertices, faces)) == pytest.approx(10 * 0.3 * 3 - 9 * 0.6 * 0.3)
