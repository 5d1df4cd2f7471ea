"""What is wrong is said, by name, before anything is computed."""

import numpy as np
import pytest
from shapes import box

import orva_acc

VERTICES, FACES = BOX = box((0, 0, 0), (1, 1, 1))
TRIANGLES = VERTICES[FACES]


@pytest.mark.parametrize(
    ("mesh", "error", "text"),
    [
        (TRIANGLES[0], ValueError, r"\(n, 3, 3\)"),
        (TRIANGLES[:, :2], ValueError, "shape"),
        (TRIANGLES[..., :2], ValueError, "shape"),
        (np.zeros((4, 3, 6)), ValueError, "shape"),
        (TRIANGLES.reshape(-1), ValueError, "shape"),
        (TRIANGLES[None], ValueError, "shape"),
        (1.0, ValueError, "shape"),
        ([], ValueError, "shape"),
        ([[1, 2], [3]], ValueError, "not an array"),
        (None, TypeError, "object"),
        ("mesh", TypeError, "<U4"),
        ({"vertices": VERTICES}, TypeError, "object"),
        (TRIANGLES.astype(complex), TypeError, "complex128"),
        (TRIANGLES.astype(bool), TypeError, "bool"),
        (TRIANGLES.astype(object), TypeError, "object"),
        (TRIANGLES.astype("datetime64[s]"), TypeError, "datetime64"),
        (np.ma.masked_array(TRIANGLES, TRIANGLES > 0.5), TypeError, "masked"),
        (np.full((1, 3, 3), 2**53 + 1), ValueError, r"2\*\*53"),
        (np.full((1, 3, 3), -(2**53) - 1), ValueError, r"2\*\*53"),
        (np.full((1, 3, 3), -(2**63)), ValueError, r"2\*\*53"),
        (np.full((1, 3, 3), 2**64 - 1, np.uint64), ValueError, r"2\*\*53"),
        (np.full((1, 3, 3), 1 + np.finfo(np.longdouble).eps), ValueError, "does not hold"),
        (np.full((1, 3, 3), np.finfo(np.longdouble).max), ValueError, "does not hold"),
        ((VERTICES, FACES.astype(float)), TypeError, "faces are integers"),
        ((VERTICES, FACES[:, :2]), ValueError, r"\(f, 3\)"),
        ((VERTICES, FACES.ravel()), ValueError, r"\(f, 3\)"),
        ((VERTICES, FACES + 1), ValueError, "outside 0 to 7"),
        ((VERTICES, FACES - 1), ValueError, "outside 0 to 7"),
        ((VERTICES, FACES.astype(np.uint64) + 2**63), ValueError, "outside"),
        ((TRIANGLES, FACES), ValueError, r"\(v, 3\)"),
        ((np.zeros((8, 4)), FACES), ValueError, r"\(v, 3\)"),
        ((VERTICES.astype(complex), FACES), TypeError, "complex128"),
        ((VERTICES, FACES, FACES), ValueError, "not an array"),
    ],
)
def test_wrong_meshes(mesh, error, text):
    for call, name in [
        (lambda: orva_acc.union(mesh, BOX), "a"),
        (lambda: orva_acc.union(BOX, mesh), "b"),
        (lambda: orva_acc.intersect(BOX, mesh), "b"),
        (lambda: orva_acc.subtract(mesh, [BOX]), "base"),
        (lambda: orva_acc.subtract(BOX, [BOX, mesh]), r"cutters\[1\]"),
    ]:
        with pytest.raises(error, match=f"^{name}.*{text}"):
            call()


@pytest.mark.parametrize("cutters", [TRIANGLES, BOX], ids=["triangles", "pair"])
def test_a_cutter_without_a_list(cutters):
    with pytest.raises(ValueError, match="^cutters"):
        orva_acc.subtract(BOX, cutters)


def test_no_cutters():
    with pytest.raises(ValueError, match="^cutters: none"):
        orva_acc.subtract(BOX, [])


def test_cutters_that_are_no_list():
    with pytest.raises(TypeError, match="iterable"):
        orva_acc.subtract(BOX, None)


@pytest.mark.parametrize("mode", ["Union", None, 1, []])
def test_an_unknown_mode(mode):
    with pytest.raises(ValueError, match="mode"):
        orva_acc.subtract(BOX, [BOX], mode)


def test_integers_at_the_limit_are_taken():
    mesh = np.array([[[-(2**53), 0, 0], [0, 1, 0], [0, 0, 2**53]]])
    orva_acc.union(mesh, mesh)


def test_nan_and_infinity_go_through():
    for value in (np.nan, np.inf):
        orva_acc.union(np.where(TRIANGLES > 0.5, value, TRIANGLES), BOX)
