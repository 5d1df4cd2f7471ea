"""Cuts every part in a folder with the same tool, on a Dask cluster.

    python cut_folder.py PARTS TOOL RESULTS                          worker processes on this machine
    python cut_folder.py PARTS TOOL RESULTS --scheduler ADDRESS      those of a cluster; the folders are shared ones

PARTS is a folder of binary STL files, TOOL is one more; RESULTS gets a file for each part. Calls share nothing, so parts go to
whichever worker is free, and ten machines do ten times as many. On one machine alone that gains less than it seems, because each
call uses all processors already where a part is large.
"""

import argparse
import pathlib

import distributed
import numpy as np
import orva_acc

STL = np.dtype([("normal", "<f4", 3), ("corners", "<f4", (3, 3)), ("attribute", "<u2")])


def read_stl(path):
    return np.fromfile(path, STL, offset=84)["corners"]


def write_stl(path, triangles):
    records = np.zeros(len(triangles), STL)
    records["corners"] = triangles
    path.write_bytes(bytes(80) + np.uint32(len(triangles)).tobytes() + records.tobytes())


def cut(part, tool, results):
    """Runs on a worker: paths come in and a line goes back, meshes stay where they are needed."""
    before = read_stl(part)
    after = orva_acc.subtract(before, [read_stl(tool)])
    write_stl(results / part.name, after)
    return f"{part.name}: {len(before)} triangles, {len(after)} after the cut"


def main():
    parser = argparse.ArgumentParser(description="Cuts every part in a folder with the same tool, on a Dask cluster.")
    for name in ("parts", "tool", "results"):
        parser.add_argument(name, type=lambda text: pathlib.Path(text).resolve())
    parser.add_argument("--scheduler", help="address of a running cluster")
    arguments = parser.parse_args()
    arguments.results.mkdir(exist_ok=True)

    # A thread each: a call brings its own. And processes that are spawned, as Dask's are, not forked.
    own = {"n_workers": 2, "threads_per_worker": 1, "dashboard_address": None}
    with distributed.Client(arguments.scheduler, **({} if arguments.scheduler else own)) as client:
        parts = sorted(arguments.parts.glob("*.stl"))
        lines = client.map(cut, parts, tool=arguments.tool, results=arguments.results, pure=False)
        failed = 0
        for _, line in distributed.as_completed(lines, with_results=True, raise_errors=False):
            failed += not isinstance(line, str)
            print(line if isinstance(line, str) else f"failed: {line[1]!r}")
    raise SystemExit(1 if failed else 0)


if __name__ == "__main__":
    main()
