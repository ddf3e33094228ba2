"""Batch analysis on a local Dask cluster of two workers."""
import math
import os
import subprocess

import pytest

pytest.importorskip("dask.distributed")

import tessaline  # noqa: E402
from tessaline.batch import analyze_many, analyze_one  # noqa: E402
from conftest import PROGRAM  # noqa: E402
from helpers import KillsItsWorkerOnce  # noqa: E402


def eu_i_shapes():
    out = subprocess.run([PROGRAM, "shape", "--list", "eu_i"], check=True, capture_output=True,
                         text=True).stdout
    names = [line.split()[0] for line in out.splitlines() if line.strip()]
    assert len(names) > 20, out
    return names


def same_rows(a, b):
    assert [r["name"] for r in a] == [r["name"] for r in b]
    for x, y in zip(a, b):
        for k in x:
            assert x[k] == y[k] or (isinstance(x[k], float) and math.isnan(x[k])
                                    and math.isnan(y[k])), (x["name"], k)


@pytest.fixture(scope="module")
def client():
    from dask.distributed import Client, LocalCluster
    cluster = LocalCluster(n_workers=2, threads_per_worker=1, processes=True,
                           dashboard_address=None)
    c = Client(cluster)
    yield c
    c.close()
    cluster.close()


def test_eu_i_table_on_two_workers_equals_a_serial_run_and_bad_sections_give_rows(client):
    sources = eu_i_shapes()
    sources.insert(3, "IPE301")
    sources.append({"name": "open", "outline": [[0, 0], [1, 0]]})
    rows = analyze_many(sources, client=client, torsion=False)
    serial = [analyze_one(s, torsion=False) for s in sources]
    same_rows(rows, serial)
    assert rows[3]["error"].startswith("IPE301: unknown designation")
    assert rows[-1]["name"] == "open" and "at least 3 points" in rows[-1]["error"]
    assert all(r["error"] is None for i, r in enumerate(rows) if i not in (3, len(rows) - 1))
    assert rows[0]["area"] == tessaline.analyze(tessaline.section(sources[0]),
                                                torsion=False).area


def test_a_killed_workers_tasks_are_retried(client, tmp_path):
    marker = str(tmp_path / "killed-once")
    sources = ["IPE200", {"name": "crash", "outline": KillsItsWorkerOnce(marker)}, "IPE300"]
    rows = analyze_many(sources, client=client, torsion=False, chunk_size=1)
    assert os.path.exists(marker)  # a worker did die
    assert [r["error"] for r in rows] == [None, None, None]
    assert rows[1]["area"] == 100
