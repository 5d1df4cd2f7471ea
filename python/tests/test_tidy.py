"""Results that are closed by index: by default where meshes are (vertices, faces)."""

import numpy as np
import pytest
from shapes import box, same_bits, sphere, triangles_of, volume, with_attributes

import orva_acc

BLOCK = box((0, 0, 0), (4, 2, 1))
DRILL = box((1, 0.5, -1), (2, 1.5, 2))
TRIANGLES = triangles_of(*BLOCK)
FULL = with_attributes(TRIANGLES)
OPERATIONS = [orva_acc.union, orva_acc.intersect, lambda a, b, **options: orva_acc.subtract(a, [b], **options)]


def is_closed(faces):
    """Each directed edge once, and once in the opposite direction."""
    edges = np.concatenate([faces[:, [0, 1]], faces[:, [1, 2]], faces[:, [2, 0]]])
    there = set(map(tuple, edges.tolist()))
    return len(there) == len(edges) and all((b, a) in there for a, b in there)


@pytest.mark.parametrize("operation", OPERATIONS)
def test_indexed_meshes_give_closed_results(operation):
    (vertices, faces), report = operation(BLOCK, DRILL, return_report=True)
    assert vertices.dtype == np.float64 and faces.dtype == np.int64
    assert is_closed(faces) and report.closed and report.open_edges == 0
    assert len(operation(BLOCK, DRILL, tidy=False)[1]) == report.soup_triangles > len(faces)
    assert volume(vertices[faces]) == pytest.approx(volume(operation(TRIANGLES, DRILL)))


def test_a_drilled_block_has_as_few_triangles_as_it_needs():
    vertices, faces = orva_acc.subtract(BLOCK, [DRILL])
    assert len(vertices) == 16 and len(faces) == 32
    assert set(map(tuple, vertices.tolist())) >= set(map(tuple, BLOCK[0].tolist()))


@pytest.mark.parametrize("mode", ["sequential", "union", "parallel"])
def test_every_mode_is_tidied(mode):
    windows = [box((i + 0.7, -1, 1), (i + 1.3, 1, 2)) for i in range(9)]
    vertices, faces = orva_acc.subtract(box((0, 0, 0), (10, 0.3, 3)), windows, mode)
    assert is_closed(faces)
    assert volume(vertices[faces]) == pytest.approx(10 * 0.3 * 3 - 9 * 0.6 * 0.3)


def test_triangles_are_tidied_where_that_is_asked_for():
    soup = orva_acc.subtract(TRIANGLES, [DRILL])
    tidied = orva_acc.subtract(TRIANGLES, [DRILL], tidy=True)
    vertices, faces = orva_acc.subtract(BLOCK, [DRILL])
    assert len(tidied) < len(soup)
    assert same_bits(tidied, vertices[faces])
    assert same_bits(orva_acc.subtract(BLOCK, [DRILL], tidy=False, welded=False), soup)
    assert same_bits(orva_acc.subtract(BLOCK, [DRILL], welded=False), tidied)


def test_what_corners_carry_goes_along():
    drill = with_attributes(triangles_of(*DRILL))
    triangles = orva_acc.subtract(FULL, [drill], tidy=True)
    given = {tuple(corner) for corner in FULL.reshape(-1, 8).tolist()}
    corners = {tuple(corner) for corner in triangles.reshape(-1, 8).tolist()}
    assert len(given & corners) > 0, "corners of the block are there bit for bit"

    # A vertex for each set of values, and not one less: together they are what the triangles say.
    vertices, faces = orva_acc.subtract(FULL, [drill], tidy=True, welded=True)
    assert np.array_equal(vertices[faces], triangles)
    assert len({tuple(vertex) for vertex in vertices.tolist()}) == len(vertices)


def test_a_soup_becomes_a_solid():
    soup = orva_acc.subtract(TRIANGLES, [DRILL])
    (vertices, faces), report = orva_acc.tidy(soup, return_report=True)
    assert is_closed(faces) and report.closed and report.soup_triangles == len(soup)
    assert volume(vertices[faces]) == pytest.approx(7)
    again, faces_again = orva_acc.tidy((vertices, faces))
    assert same_bits(again, vertices) and np.array_equal(faces_again, faces)
    assert same_bits(orva_acc.tidy(soup, welded=False), vertices[faces])


def test_what_is_open_is_counted():
    (vertices, faces), report = orva_acc.tidy(TRIANGLES[:-1], return_report=True)
    assert len(faces) == 11 and not is_closed(faces)
    assert not report.closed and report.open_edges == 3


def test_a_gap_is_closed_up_to_its_width():
    torn = TRIANGLES.copy()
    torn[0, 0] += 0.01
    assert not orva_acc.tidy(torn, return_report=True)[1].closed
    (vertices, faces), report = orva_acc.tidy(torn, close_gaps=0.1, return_report=True)
    assert is_closed(faces) and report.closed and 0 < max(report.moved_by_weld, report.moved_by_zip) < 0.1


def test_faces_that_were_not_cut_are_merged_where_that_is_asked_for():
    a, b, c = TRIANGLES.swapaxes(0, 1)
    middle = (a + b + c) / 3
    divided = np.concatenate([np.stack(t, 1) for t in ((a, b, middle), (b, c, middle), (c, a, middle))])
    for merge, count in (("none", 36), ("all", 12)):
        assert len(orva_acc.union(orva_acc.tidy(divided, merge="none"), BLOCK, merge=merge)[1]) <= count


@pytest.mark.parametrize("empty", [(np.empty((0, 3)), np.empty((0, 3), int)), (np.empty((0, 8)), np.empty((0, 3), int))])
def test_nothing_is_closed(empty):
    (vertices, faces), report = orva_acc.tidy(empty, return_report=True)
    assert vertices.shape == empty[0].shape and faces.shape == (0, 3) and report.closed


@pytest.mark.parametrize(
    ("options", "error", "text"),
    [
        ({"tolerance": -1.0}, ValueError, "^tolerance"),
        ({"tolerance": np.nan}, ValueError, "^tolerance"),
        ({"close_gaps": np.inf}, ValueError, "^close_gaps"),
        ({"close_gaps": "wide"}, ValueError, "wide"),
        ({"tolerance": None}, TypeError, "None"),
        ({"merge": "some"}, ValueError, "^merge"),
        ({"merge": 1}, ValueError, "^merge"),
        ({"merge": []}, ValueError, "^merge"),
    ],
)
def test_options_that_are_none(options, error, text):
    for call in (lambda: orva_acc.tidy(BLOCK, **options), lambda: orva_acc.union(BLOCK, DRILL, **options)):
        with pytest.raises(error, match=text):
            call()


@pytest.mark.parametrize("options", [{"tolerance": 1e-3}, {"close_gaps": 1}, {"merge": "all"}, {"scale": False}, {"return_report": True}])
def test_options_where_nothing_is_tidied(options):
    for call in (
        lambda: orva_acc.union(TRIANGLES, DRILL, **options),
        lambda: orva_acc.subtract(BLOCK, [DRILL], tidy=False, **options),
    ):
        with pytest.raises(ValueError, match=f"^{next(iter(options))}.*tidy=True"):
            call()
