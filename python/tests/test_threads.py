"""Threads and processes. No test here looks at a clock, but a process that has to end is given a minute for it."""

import subprocess
import sys
import threading
from concurrent.futures import ThreadPoolExecutor

from shapes import box, same_bits, sphere, with_attributes

import orva_acc

A, B = with_attributes(sphere(4)), with_attributes(sphere(4, (0.31, 0.17, 0.23), 0.9))
BOX = box((0, 0, 0), (1, 1, 1))


def test_the_gil_is_free_during_a_call():
    """While a long call runs in one thread, a short one begins and ends in another.

    A thread gives up the GIL of its own accord alone, as the interval is endless, and the long call does so nowhere but in the
    library: its operands are read where they are, and its result is empty.
    """
    far = with_attributes(sphere(5))
    near = far + (10, 0, 0, 0, 0, 0, 0, 0)
    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)
    try:
        for _ in range(20):  # on a busy machine this thread may wake too late
            begun, ended = threading.Event(), threading.Event()

            def long_call():
                begun.set()
                assert len(orva_acc.intersect(far, near)) == 0
                ended.set()

            thread = threading.Thread(target=long_call)
            thread.start()
            begun.wait()
            before = ended.is_set()
            orva_acc.union(BOX, BOX)
            after = ended.is_set()
            thread.join()
            if not before and not after:
                return
    finally:
        sys.setswitchinterval(interval)
    raise AssertionError("no call ever ran beside another")


def test_many_threads_get_the_same_bits():
    expected = orva_acc.subtract(A, [B])
    with ThreadPoolExecutor(8) as threads:
        results = list(threads.map(lambda _: orva_acc.subtract(A, [B]), range(24)))
    assert all(same_bits(result, expected) for result in results)


def python(code):
    """Runs it in a process of its own."""
    run = subprocess.run([sys.executable, "-c", code], cwd=__file__.rpartition("/")[0], capture_output=True, text=True, timeout=60)
    assert run.returncode == 0, run.stderr
    return run.stdout


CALLS = """
import numpy as np
from shapes import box, same_bits, triangles_of
import orva_acc
wall = triangles_of(*box((0, 0, 0), (10, 0.3, 3)))
windows = [triangles_of(*box((i + 0.7, -1, 1), (i + 1.3, 1, 2))) for i in range(9)]
def parallel_returns():
    parallel, union = (orva_acc.subtract(wall, windows, mode) for mode in ("parallel", "union"))
    return len(union) > 0 and same_bits(parallel, union)
"""


def test_the_parallel_mode_returns_on_one_processor():
    assert python(
        f"import os; os.sched_setaffinity(0, {{min(os.sched_getaffinity(0))}})\n{CALLS}print(parallel_returns())"
    ) == "True\n"


def test_calls_return_in_a_forked_process():
    assert python(
        f"{CALLS}\n"
        "import multiprocessing\n"
        "orva_acc.subtract(wall, windows, 'parallel')\n"  # from here on there are threads for a fork to leave behind
        "with multiprocessing.get_context('fork').Pool(1) as pool: print(pool.apply(parallel_returns))"
    ) == "True\n"
