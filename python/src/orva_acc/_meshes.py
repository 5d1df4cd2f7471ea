"""Meshes as users have them, to and from the library's list of vertices."""

from __future__ import annotations

import dataclasses
from typing import Any

import numpy as np
import numpy.typing as npt

from ._native import Vertices

_MOST_VERTICES = 2**31 - 1  # what the library can count
_EXACT_INTEGERS = 2**53  # all integers up to here are doubles


@dataclasses.dataclass(frozen=True)
class Form:
    """What a mesh came as, and what a result goes out as."""

    indexed: bool  # (vertices, faces), not one array of triangles
    full: bool  # eight values to a corner, not the position alone


def _real(values: Any, name: str) -> npt.NDArray[np.float64]:
    """The values as doubles, contiguous; the very same array where it is that already."""
    if isinstance(values, np.ma.MaskedArray):
        raise TypeError(f"{name}: masked arrays are not taken, as nothing here knows what a masked corner is")
    try:
        array = np.asarray(values)
    except ValueError as error:  # rows of different lengths
        raise ValueError(f"{name}: not an array: {error}") from None
    if array.dtype.kind not in "fiu":
        raise TypeError(f"{name}: numbers that double precision holds are needed, not {array.dtype}")
    if array.dtype.kind in "iu" and array.dtype.itemsize == 8 and array.size > 0:
        if max(int(array.max()), -int(array.min())) > _EXACT_INTEGERS:
            raise ValueError(f"{name}: an integer beyond 2**53, which double precision does not hold")
    with np.errstate(over="ignore"):
        converted = np.require(array, np.float64, ["C", "A"])
    if array.dtype.kind == "f" and array.dtype.itemsize > 8:
        if not np.array_equal(converted.astype(array.dtype), array, equal_nan=True):
            raise ValueError(f"{name}: a {array.dtype} value that double precision does not hold")
    return converted


def _indices(values: Any, name: str, count: int) -> npt.NDArray[Any]:
    array = np.asarray(values)
    if array.dtype.kind not in "iu":
        raise TypeError(f"{name}: faces are integers, not {array.dtype}")
    if array.ndim != 2 or array.shape[1] != 3:
        raise ValueError(f"{name}: faces have the shape (f, 3), not {array.shape}")
    if array.size > 0 and (int(array.min()) < 0 or int(array.max()) >= count):
        raise ValueError(f"{name}: a face names a vertex outside 0 to {count - 1}")
    return array


def read(mesh: Any, name: str) -> tuple[Vertices, Form]:
    """The mesh as the library takes it; a contiguous float64 array of full vertices is not copied."""
    if isinstance(mesh, tuple) and len(mesh) == 2:
        vertices = _real(mesh[0], f"{name}, vertices")
        if vertices.ndim != 2 or vertices.shape[1] not in (3, 8):
            raise ValueError(f"{name}: vertices have the shape (v, 3) or (v, 8), not {vertices.shape}")
        faces = _indices(mesh[1], f"{name}, faces", len(vertices))
        form, corners = Form(True, vertices.shape[1] == 8), vertices[faces.ravel()]
    else:
        triangles = _real(mesh, name)
        if triangles.ndim != 3 or triangles.shape[1:] not in ((3, 3), (3, 8)):
            raise ValueError(
                f"{name}: a mesh is an array of shape (n, 3, 3) or (n, 3, 8), or a tuple (vertices, faces); not {triangles.shape}"
            )
        form, corners = Form(False, triangles.shape[2] == 8), triangles.reshape(-1, triangles.shape[2])
    if len(corners) > _MOST_VERTICES:
        raise ValueError(f"{name}: more than 2**31 - 1 corners")
    if form.full:
        return corners, form
    full = np.zeros((len(corners), 8))
    full[:, :3] = corners
    return full, form


def write(vertices: Vertices, form: Form) -> Any:
    corners = vertices if form.full else vertices[:, :3]
    if form.indexed:
        return weld(corners)
    return np.ascontiguousarray(corners).reshape(-1, 3, corners.shape[1])


def weld(corners: npt.NDArray[np.float64]) -> tuple[npt.NDArray[np.float64], npt.NDArray[np.int64]]:
    """Corners that are equal in all values become one vertex, at the place of the first of them."""
    values = np.ascontiguousarray(corners + 0.0)  # -0.0 becomes 0.0, its equal
    keys = values.view(np.dtype((np.void, values.itemsize * values.shape[1]))).ravel()
    _, first, which = np.unique(keys, return_index=True, return_inverse=True)
    order = np.argsort(first)
    rank = np.empty(len(order), np.int64)
    rank[order] = np.arange(len(order))
    return values[first[order]], rank[which].reshape(-1, 3)
