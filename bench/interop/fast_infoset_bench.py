#!/usr/bin/env python3
"""The Fast Infoset of Java beside bare Expat on the XML form of the same orders documents, and our own roads with them.

Usage: fast_infoset_bench.py BUILD [FILTER]
  BUILD    a folder in which the benchmarks stand built in release mode, such as build/release
  FILTER   the roads of orders_bench to show besides Expat; by default all whose name has "Infoset" in it

Times are CPU times of the thread that works, Java's without the collection of its garbage. Ratios are to Expat's time:
of the fastest samples and, in brackets, of the medians. Expat and our roads are measured before Java and after it: a
slow minute shows as a difference of the two. Java is shown with the indentation of the XML kept and dropped, and with
the table limits of our writer (OurLimits). Needs the packages of scripts/setup.sh --interop-bench.
"""
import collections
import json
import pathlib
import statistics
import subprocess
import sys
import tempfile

JAR = "/usr/share/java/FastInfoset.jar"
DOCUMENTS = {"1KB": 1_000, "10MB": 10_000_000}
Samples = collections.namedtuple("Samples", "fastest median octets")


def measure_ours(program, road_filter, folder):
    """Seconds of each repetition, by document and road."""
    out = folder / "orders.json"
    documents = "|".join(DOCUMENTS)
    subprocess.run([program, f"--benchmark_filter=(^Expat|{road_filter}).*/({documents})$", f"--benchmark_out={out}"],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=1800)
    times = collections.defaultdict(list)
    unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
    for row in json.loads(out.read_text())["benchmarks"]:
        if row["run_type"] == "iteration" and "heap_per_byte" not in row:
            road, document = row["run_name"].split("/")[:2]
            times[document, road].append(row["cpu_time"] * unit[row["time_unit"]])
    return times


def measure_java(files):
    source = pathlib.Path(__file__).resolve().parent / "FastInfosetBench.java"
    result = subprocess.run(["java", "-XX:+UseSerialGC", "-Xms1g", "-Xmx2g", "-cp", JAR, source, *files], check=True,
                            stdout=subprocess.PIPE, text=True, timeout=1800)
    for line in result.stdout.splitlines():
        document, road, fastest, median, octets = line.split()
        yield (document, road), Samples(float(fastest), float(median), int(octets))


def main(build, road_filter="Infoset"):
    programs = pathlib.Path(build) / "bench"
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        files = [folder / f"{document}.xml" for document in DOCUMENTS]
        for file, size in zip(files, DOCUMENTS.values()):
            with open(file, "wb") as out:
                subprocess.run([programs / "write_orders", str(size)], check=True, stdout=out)
        sizes = {file.stem: file.stat().st_size for file in files}
        before = measure_ours(programs / "orders_bench", road_filter, folder)
        rows = dict(measure_java(files))
        after = measure_ours(programs / "orders_bench", road_filter, folder)
    for key in before:
        times = before[key] + after[key]
        rows[key] = Samples(min(times), statistics.median(times), None)
    print_rows(rows, sizes)


def print_rows(rows, sizes):
    for (document, road), samples in sorted(rows.items()):
        expat = rows[document, "Expat"]
        ratios = f"{samples.fastest / expat.fastest:.3f} ({samples.median / expat.median:.3f})"
        size = f"{samples.octets} octets, {samples.octets / sizes[document]:.3f} of the XML" if samples.octets else ""
        print(f"{document:6}{road:24}{samples.fastest * 1e6:12.2f} us  {ratios:16}{size}")
    print(*(f"{document}: {size} octets of XML" for document, size in sizes.items()), sep=", ")


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    main(*sys.argv[1:])
