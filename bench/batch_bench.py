#!/usr/bin/python3
"""Batch throughput of tessaline.batch.analyze_many on a local Dask cluster
of one and of two workers, against the program analysing the same sections
serially (and on two threads) in the same run, and the Python call time of
tessaline.analyze. Prints a Markdown table ready for bench/RESULTS.md.

    /usr/bin/python3 bench/batch_bench.py [--build build] [--table eu_i]
                                          [--no-torsion] [--repeat 3]

Each figure is the best of --repeat runs. The Dask figures are for a cluster
already started (its start is given apart), its workers warmed by a small
batch first, so that they measure the analysis and the scheduling only.
"""
import argparse
import os
import subprocess
import sys
import time


def best_of(repeat, run):
    times = []
    for _ in range(repeat):
        start = time.perf_counter()
        run()
        times.append(time.perf_counter() - start)
    return min(times)


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--build", default=os.path.join(root, "build"), help="build folder")
    parser.add_argument("--table", default="eu_i", help="shape table to analyse")
    parser.add_argument("--no-torsion", action="store_true", help="properties only")
    parser.add_argument("--repeat", type=int, default=3, help="runs per figure (best kept)")
    args = parser.parse_args()

    build = os.path.abspath(args.build)
    package = os.path.join(build, "python")
    program = os.path.join(build, "tools", "tessaline", "tessaline")
    # This process and the Dask workers it starts import the build's package.
    sys.path.insert(0, package)
    os.environ["PYTHONPATH"] = os.pathsep.join(
        [package] + [p for p in os.environ.get("PYTHONPATH", "").split(os.pathsep) if p])
    import tessaline
    from tessaline.batch import analyze_many
    from dask.distributed import Client, LocalCluster

    listing = subprocess.run([program, "shape", "--list", args.table], check=True,
                             capture_output=True, text=True).stdout
    names = [line.split()[0] for line in listing.splitlines() if line.strip()]
    torsion = not args.no_torsion
    flags = [] if torsion else ["--no-torsion"]
    n = len(names)
    rows = []

    def program_run(jobs):
        subprocess.run([program, "analyze", "--json", "--jobs", str(jobs), *flags, *names],
                       check=True, stdout=subprocess.DEVNULL)

    for jobs in (1, 2):
        t = best_of(args.repeat, lambda: program_run(jobs))
        rows.append((f"`tessaline analyze --json --jobs {jobs}` (start-up included)", t))

    t = best_of(args.repeat,
                lambda: [tessaline.analyze(tessaline.section(s), torsion=torsion) for s in names])
    rows.append(("`tessaline.analyze` in a loop, one Python process", t))

    starts = {}
    for workers in (1, 2):
        start = time.perf_counter()
        cluster = LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                               dashboard_address=None)
        client = Client(cluster)
        starts[workers] = time.perf_counter() - start
        try:
            analyze_many(names[:4 * workers], client=client, torsion=torsion, chunk_size=1)
            failed = []

            def batch():
                out = analyze_many(names, client=client, torsion=torsion)
                failed.extend(r["name"] for r in out if r["error"] is not None)

            t = best_of(args.repeat, batch)
            if failed:
                sys.exit(f"error rows: {sorted(set(failed))}")
            rows.append((f"`analyze_many`, local Dask cluster of {workers} worker"
                         f"{'s' if workers > 1 else ''}", t))
        finally:
            client.close()
            cluster.close()

    ipe = tessaline.section("IPE300")
    calls = 2000
    per_call = best_of(args.repeat, lambda: [tessaline.analyze(ipe, torsion=False)
                                             for _ in range(calls)]) / calls

    what = "with torsion (J to 1e-6, Cw, shear centre)" if torsion else "properties only"
    print(f"{args.table} table, {n} sections, {what}; best of {args.repeat} runs\n")
    print("| what | wall time | sections/s |")
    print("|---|---|---|")
    for label, t in rows:
        print(f"| {label} | {t:.2f} s | {n / t:.1f} |")
    print(f"\nLocal cluster start: {starts[1]:.1f} s (1 worker), {starts[2]:.1f} s (2 workers), "
          f"not in the figures above.")
    print(f"Python `tessaline.analyze(IPE300, torsion=False)`: {per_call * 1e6:.0f} us per call.")


if __name__ == "__main__":
    main()
