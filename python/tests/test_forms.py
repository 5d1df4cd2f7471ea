"""What comes in decides what goes out."""

import numpy as np
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st
from shapes import box, same_bits, sphere, triangles_of, volume, with_attributes

import orva_acc
from orva_acc import _meshes

BLOCK = box((0, 0, 0), (4, 2, 1))
DRILL = box((1, 0.5, -1), (2, 1.5, 2))
PAIR, POSITIONS, FULL = BLOCK, triangles_of(*BLOCK), with_attributes(triangles_of(*BLOCK))
FULL_PAIR = (FULL.reshape(-1, 8), np.arange(36).reshape(-1, 3))
CUTTERS = [DRILL, triangles_of(*DRILL), with_attributes(triangles_of(*DRILL))]


def form(mesh):
    return ("indexed", mesh[0].shape[1]) if isinstance(mesh, tuple) else ("triangles", mesh.shape[2])


@pytest.mark.parametrize("cutter", CUTTERS, ids=form)
@pytest.mark.parametrize("base", [PAIR, FULL_PAIR, POSITIONS, FULL], ids=form)
def test_the_first_operand_decides_the_form(base, cutter):
    for result in (orva_acc.union(base, cutter), orva_acc.intersect(base, cutter), orva_acc.subtract(base, [cutter])):
        assert form(result) == form(base)
        assert len(result[0]) > 0


@pytest.mark.parametrize("base", [PAIR, FULL_PAIR, POSITIONS, FULL], ids=form)
def test_all_forms_bound_the_same_solid(base):
    assert volume(orva_acc.subtract(base, CUTTERS[:1], welded=False)) == pytest.approx(8 - 1)
    assert volume(triangles_of(*orva_acc.subtract(base, CUTTERS[:1], welded=True))) == pytest.approx(8 - 1)


def test_missing_normals_and_aux_are_zeros():
    result = orva_acc.subtract(FULL, [POSITIONS + (1, 0.5, 0.5)])
    walls = result[np.all(result[..., 3:] == 0, axis=(1, 2))]
    assert 0 < len(walls) < len(result)


def test_walls_are_turned_around():
    cutter = with_attributes(triangles_of(*box((1, 0.5, 0.25), (2, 1.5, 0.75))))
    result = orva_acc.subtract(FULL, [cutter])
    inside = result[np.all((result[..., :3] > 0) & (result[..., :3] < (4, 2, 1)), axis=(1, 2))]
    expected = cutter[:, ::-1].copy()
    expected[..., 3:6] *= -1
    assert sorted(map(str, inside.tolist())) == sorted(map(str, expected.tolist()))


def test_a_result_is_the_callers_own():
    result = orva_acc.union(FULL, FULL)
    assert result.flags.owndata or result.base.flags.owndata
    assert result.flags.writeable and result.flags.c_contiguous and result.dtype == np.float64


def test_inputs_are_left_alone():
    before = FULL.copy()
    for mesh in (FULL, FULL_PAIR):
        orva_acc.subtract(mesh, [DRILL])
    assert same_bits(FULL, before)


def test_a_contiguous_full_array_is_read_where_it_is():
    vertices, _ = _meshes.read(FULL, "a")
    assert np.shares_memory(vertices, FULL)


ROOMY = np.zeros((12, 3, 16))
ROOMY[..., ::2] = FULL
UNALIGNED = np.frombuffer(b"x" + FULL.tobytes(), np.float64, offset=1).reshape(FULL.shape)


@pytest.mark.parametrize(
    "same",
    [
        np.asfortranarray(FULL),
        FULL.astype(">f8"),
        FULL[::-1][::-1],
        ROOMY[..., ::2],
        UNALIGNED,
        FULL.astype(np.float32),
        FULL.astype(np.longdouble),
        FULL.astype(np.int16),
        FULL.astype(np.int64),
        FULL.tolist(),
        [list(map(tuple, triangle)) for triangle in FULL],
    ],
    ids=["fortran", "big-endian", "reversed", "strided", "unaligned", "f4", "longdouble", "i2", "i8", "lists", "tuples"],
)
def test_order_and_type_do_not_matter(same):
    assert same_bits(orva_acc.subtract(same, [FULL + 0.5]), orva_acc.subtract(FULL, [FULL + 0.5]))
    assert same_bits(orva_acc.union(FULL + 0.5, same), orva_acc.union(FULL + 0.5, FULL))


def test_read_only_arrays_are_fine():
    mesh = FULL.copy()
    mesh.flags.writeable = False
    assert same_bits(orva_acc.union(mesh, mesh), orva_acc.union(FULL, FULL))


@pytest.mark.parametrize("empty", [np.empty((0, 3, 3)), np.empty((0, 3, 8)), (np.empty((0, 3)), np.empty((0, 3), int))], ids=form)
def test_an_empty_operand_empties_the_result_and_keeps_the_form(empty):
    for result in (orva_acc.union(empty, FULL), orva_acc.union(FULL, empty), orva_acc.subtract(FULL, [DRILL, empty])):
        assert volume(result if isinstance(result, np.ndarray) else triangles_of(*result)) == 0
    assert form(orva_acc.union(empty, FULL)) == form(empty)


def test_cutters_come_from_any_iterable():
    expected = orva_acc.subtract(FULL, [DRILL, POSITIONS])
    assert same_bits(orva_acc.subtract(FULL, (DRILL, POSITIONS)), expected)
    assert same_bits(orva_acc.subtract(FULL, iter([DRILL, POSITIONS])), expected)
    stacked = np.stack([POSITIONS, POSITIONS + 0.5])
    assert same_bits(orva_acc.subtract(FULL, stacked), orva_acc.subtract(FULL, list(stacked)))


@settings(max_examples=100)
@given(st.integers(0, 2**32 - 1), st.integers(0, 20), st.sampled_from([3, 8]))
def test_welding_loses_nothing_and_keeps_the_order(seed, triangles, columns):
    random = np.random.default_rng(seed)
    corners = random.choice([0.0, -0.0, 1.0, np.nan, np.inf], (3 * triangles, columns), p=[0.4, 0.4, 0.1, 0.05, 0.05])
    vertices, faces = _meshes.weld(corners)
    assert np.array_equal(vertices[faces.ravel()], corners, equal_nan=True)
    assert len(set(map(str, vertices.tolist()))) == len(vertices)
    _, first_uses = np.unique(faces, return_index=True)
    assert np.all(np.diff(first_uses) > 0)


def test_a_welded_sphere_has_eulers_number_of_vertices():
    vertices, faces = orva_acc.intersect(sphere(2), sphere(2), welded=True)
    assert len(vertices) - 3 * len(faces) // 2 + len(faces) == 2
