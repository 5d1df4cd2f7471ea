"""Tidying as users ask for it: options checked, results in the form of the mesh, reports."""

from __future__ import annotations

import dataclasses
import math
from collections.abc import Sequence
from typing import Any

import numpy as np

from . import _meshes, _native

_MERGES = {"none": 0, "cut": 1, "all": 2}


@dataclasses.dataclass(frozen=True)
class Report:
    """What tidying found and did. Lengths and areas are in the unit of the coordinates."""

    closed: bool
    """Closed and edge-manifold by index; true for a result without faces."""
    open_edges: int
    """Edges of faces without a match."""
    largest_gap: float
    """The most that the middle of an open edge is away from the nearest other open edge."""
    loops_removed: int
    """Open loops in the plane of one face: pieces lost or given twice by the cuts."""
    loop_area: float
    """The area of all those."""
    moved_by_weld: float
    """The most that a vertex was moved onto another."""
    moved_by_zip: float
    """The most that an edge was bent to pass through a vertex."""
    moved_by_drop: float
    """The most that a dropped vertex was off the edge that is there now."""
    forced_ears: int
    """Triangles made without regard to their shape, where an outline crosses itself."""
    faces_left: int
    """Faces of the operands whose pieces were left as they were."""
    soup_triangles: int
    """Triangles that came in to be tidied."""
    pieces: int
    """Groups of faces that hang together by edges."""
    scale: float
    """What coordinates were multiplied by to compute; 1.0 where only tidied."""


@dataclasses.dataclass(frozen=True)
class Options:
    """The keywords of the functions."""

    tolerance: float = 0.0
    close_gaps: float = 0.0
    merge: str = "cut"
    scale: bool = True
    return_report: bool = False

    def checked(self) -> _native.Options:
        lengths = [_length(getattr(self, name), name) for name in ("tolerance", "close_gaps")]
        try:
            merge = _MERGES[self.merge]
        except (KeyError, TypeError):
            raise ValueError(f'merge is "none", "cut" or "all", not {self.merge!r}') from None
        return _native.Options(*lengths, merge, bool(self.scale))

    def refuse(self) -> None:
        """Where nothing is tidied, none of them would do anything."""
        for field in dataclasses.fields(self):
            if getattr(self, field.name) != field.default:
                raise ValueError(f"{field.name}: nothing is tidied here. Triangles are where tidy=True asks for it")


def _length(value: Any, name: str) -> float:
    length = float(value)
    if not (math.isfinite(length) and length >= 0):
        raise ValueError(f"{name} is a length, neither negative nor infinite; not {value!r}")
    return length


def call(operation: int, meshes: Sequence[_native.Vertices], form: _meshes.Form, options: Options) -> Any:
    """The tidied result of the operation, in that form; with its report where that is asked for."""
    vertices, faces, carried, figures = _native.tidied(operation, meshes, options.checked())
    result: Any = vertices, faces
    if not form.indexed or form.full:
        corners = vertices[faces.ravel()]
        if form.full:
            corners = np.concatenate([corners, carried], axis=1)
        if form.indexed:  # a vertex for each set of values that faces carry there
            split, faces = _meshes.weld(np.column_stack([faces.ravel(), corners]))
            result = np.ascontiguousarray(split[:, 1:]), faces
        else:
            result = corners.reshape(-1, 3, corners.shape[1])
    if not options.return_report:
        return result
    values = {field.name: getattr(figures, field.name) for field in dataclasses.fields(Report)}
    return result, Report(**values | {"closed": bool(figures.closed)})
