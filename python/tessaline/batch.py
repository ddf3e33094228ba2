"""Many sections at once on Dask: a local cluster by default, any Dask
scheduler through its client, so that a study moves from a laptop to a
cluster without a change to its code::

    from tessaline.batch import analyze_many
    rows = analyze_many(["IPE200", "IPE300", "HEB300"])            # local cluster
    rows = analyze_many(sources, client=Client("tcp://scheduler:8786"))

A section is named as the program names it (a designation, a geometry file,
a library entry, ``"drawing.dxf:N"``) or given as a dict of
:func:`tessaline.from_coordinates` arguments (``outline``, ``holes``,
``name``). Each comes back as one row, in the order given: the fields of
:class:`tessaline.Result` and ``error`` (None), or, for a section that fails,
its ``name`` and the ``error`` message with the result fields NaN. A batch is
never lost to one bad section, and the tasks of a worker that dies are run
again on another.
"""
from __future__ import annotations

import math
from typing import Any, Iterable, List, Optional

import tessaline

__all__ = ["analyze_many", "analyze_one", "to_dataframe"]


def _name_of(source: Any) -> str:
    if isinstance(source, dict):
        return str(source.get("name", "section"))
    return str(source)


def analyze_one(source: Any, torsion: bool = True, gap: float = 1e-6) -> dict:
    """The row of one section; never raises for a section that fails."""
    try:
        if isinstance(source, dict):
            s = tessaline.from_coordinates(source["outline"], source.get("holes", ()),
                                           source.get("name", "section"))
        else:
            s = tessaline.section(source)
        row = tessaline.analyze(s, torsion=torsion, gap=gap).as_dict()
        row["error"] = None
    except Exception as e:  # one bad section makes an error row
        row = {f: math.nan for f in tessaline.RESULT_FIELDS}
        row["name"] = _name_of(source)
        row["error"] = str(e) or type(e).__name__
    return row


def _analyze_chunk(sources: list, torsion: bool, gap: float) -> List[dict]:
    return [analyze_one(s, torsion, gap) for s in sources]


def to_dataframe(rows: List[dict]):
    """The rows as a pandas DataFrame (pandas must be installed)."""
    import pandas
    return pandas.DataFrame(rows)


def analyze_many(sections: Iterable[Any], client=None, torsion: bool = True, gap: float = 1e-6,
                 chunk_size: int = 8, retries: int = 3, workers: int = 2,
                 dataframe: bool = False):
    """Analyses every section on Dask and returns one row per section, in
    order: a list of dicts, or a pandas DataFrame with ``dataframe=True``.

    Without ``client`` a local cluster of ``workers`` processes (one thread
    each) is started for the call and closed after it. Sections go to the
    workers ``chunk_size`` at a time; a chunk whose worker dies is retried
    up to ``retries`` times, and a chunk that still fails gives error rows.
    """
    from dask.distributed import Client, LocalCluster

    sources = list(sections)
    own = None
    if client is None:
        cluster = LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                               dashboard_address=None)
        client = own = Client(cluster)
    try:
        chunks = [sources[i:i + chunk_size] for i in range(0, len(sources), max(1, chunk_size))]
        futures = [client.submit(_analyze_chunk, c, torsion, gap, pure=False, retries=retries)
                   for c in chunks]
        rows: List[dict] = []
        for chunk, future in zip(chunks, futures):
            try:
                rows.extend(future.result())
            except Exception as e:  # the chunk's worker kept dying
                for source in chunk:
                    row = {f: math.nan for f in tessaline.RESULT_FIELDS}
                    row.update(name=_name_of(source), error=f"{type(e).__name__}: {e}")
                    rows.append(row)
    finally:
        if own is not None:
            cluster = own.cluster
            own.close()
            cluster.close()
    return to_dataframe(rows) if dataframe else rows
