#!/usr/bin/env python3
"""Times the exporter and `auxtool calc` as whole processes on synthetic
databases of growing size, in XML and in binary form, beside `cat FILE >
/dev/null` as the floor of reading the same bytes.

Each command runs once to warm the page cache, then --runs times; the table
shows the median wall time, the throughput over the database file, probands
and SD scores per second, the peak resident memory of the process (from
wait4) in MB and in bytes per visit, the time relative to the floor and the
growth of the time from the previous size. The databases are made with
`auxtool synth` (seed 1) under --data and kept until auxtool changes.

Usage: bench/scaling.py [--build DIR] [--data DIR] [--sizes 1000,10000,100000]
                        [--runs N] [--check]
--check ends with status 1 when a target is missed.
"""

import argparse
import os
import statistics
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
KNOWLEDGE = os.path.join(ROOT, "samples", "knowledge.xml")
SD_FORMULAS = ["HEIGHT:SD", "WEIGHT:SD", "BMI:SD", "FOH:SD"]
TODAY = "1.1.2026"

# Targets: MB/s of the exporter per form at the largest size, the largest
# growth of time for ten times the probands, the peak memory as a multiple of
# the XML file, and SD scores per second of calc.
EXPORTER_MB_PER_S = {"xml": 150.0, "bin": 300.0}
MAX_GROWTH = 12.0
MAX_MEMORY_PER_XML_BYTE = 4.0
CALC_SD_PER_S = 1e6


TIME = "/usr/bin/time"


def spawn_and_wait(argv, stdout_path="/dev/null"):
    """Runs argv with stdout to stdout_path; answers (seconds, peak RSS bytes, exit status).

    A child's peak RSS counts the memory of the process it was forked from,
    so the command is started by /usr/bin/time, which is small, and the peak
    is the one it prints; without it the figure from wait4 stands, which
    includes this script's own memory.
    """
    actions = [(os.POSIX_SPAWN_OPEN, 1, stdout_path, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o644)]
    peak_file = None
    if os.path.exists(TIME):
        peak_file = os.path.join(os.environ.get("TMPDIR", "/tmp"), "scaling-peak-%d.txt" % os.getpid())
        argv = [TIME, "-o", peak_file, "-f", "%M"] + argv
    start = time.perf_counter()
    pid = os.posix_spawn(argv[0], argv, os.environ, file_actions=actions)
    _, status, usage = os.wait4(pid, 0)
    seconds = time.perf_counter() - start
    peak = usage.ru_maxrss * 1024
    if peak_file:
        with open(peak_file) as handle:
            peak = int(handle.read().split()[-1]) * 1024
        os.unlink(peak_file)
    return seconds, peak, os.waitstatus_to_exitcode(status)


def measure(argv, runs):
    spawn_and_wait(argv)  # warms the page cache and the program's pages
    times, peaks = [], []
    for _ in range(runs):
        seconds, peak, code = spawn_and_wait(argv)
        if code != 0:
            sys.exit("failed with exit code %d: %s" % (code, " ".join(argv)))
        times.append(seconds)
        peaks.append(peak)
    return statistics.median(times), max(peaks)


def make_database(auxtool, data, size, form):
    path = os.path.join(data, "db%d.%s" % (size, form))
    if os.path.exists(path) and os.path.getmtime(path) >= os.path.getmtime(auxtool):
        return path
    argv = [auxtool, "synth", KNOWLEDGE, str(size), path, "--seed", "1", "--to", form]
    seconds, _, code = spawn_and_wait(argv)
    if code != 0:
        sys.exit("auxtool synth failed for %d probands (%s)" % (size, form))
    print("made %s in %.2f s" % (path, seconds), file=sys.stderr)
    return path


def count_visits(xml_path):
    count = 0
    with open(xml_path, "rb") as handle:
        for block in iter(lambda: handle.read(1 << 24), b""):
            count += block.count(b"<record ")
    return count


class Row:
    def __init__(self, program, form, size, path, visits, seconds, peak, floor, previous):
        self.program, self.form, self.size, self.visits = program, form, size, visits
        self.megabytes = os.path.getsize(path) / 1e6
        self.xml_megabytes = os.path.getsize(path[: -len(form)] + "xml") / 1e6
        self.seconds, self.peak, self.floor = seconds, peak, floor
        self.growth = seconds / previous.seconds if previous else None

    def sd_per_s(self):
        return self.visits * len(SD_FORMULAS) / self.seconds if self.program == "calc" else None

    def cells(self):
        sd = self.sd_per_s()
        return [
            self.program, self.form, "{:,}".format(self.size).replace(",", " "), "%.1f" % self.megabytes,
            "%.3f" % self.seconds, "%.0f" % (self.megabytes / self.seconds),
            "%.0f" % (self.size / self.seconds), "%.2f M" % (sd / 1e6) if sd else "",
            "%.0f" % (self.peak / 1e6), "%.0f" % (self.peak / self.visits),
            "%.1f" % (self.seconds / self.floor), "%.1f" % self.growth if self.growth else "",
        ]


HEAD = ["program", "form", "probands", "file MB", "seconds", "MB/s", "probands/s", "SD scores/s",
        "peak MB", "peak B/visit", "x floor", "growth"]


def print_table(rows):
    print("| " + " | ".join(HEAD) + " |")
    print("|" + "|".join("---" for _ in HEAD) + "|")
    for row in rows:
        print("| " + " | ".join(row.cells()) + " |")


def check_targets(rows):
    missed = []
    largest = max(row.size for row in rows)
    for row in rows:
        name = "%s %s %d" % (row.program, row.form, row.size)
        if row.program == "exporter" and row.size == largest:
            rate = row.megabytes / row.seconds
            if rate < EXPORTER_MB_PER_S[row.form]:
                missed.append("%s: %.0f MB/s, target %.0f" % (name, rate, EXPORTER_MB_PER_S[row.form]))
        if row.program != "cat" and row.growth and row.growth > MAX_GROWTH:
            missed.append("%s: grows %.1f times for ten times the probands" % (name, row.growth))
        if row.program != "cat" and row.size == largest and row.peak > MAX_MEMORY_PER_XML_BYTE * row.xml_megabytes * 1e6:
            missed.append("%s: peak %.0f MB, over four times the XML file" % (name, row.peak / 1e6))
        if row.program == "calc" and row.size == largest and row.sd_per_s() < CALC_SD_PER_S:
            missed.append("%s: %.2f M SD scores/s" % (name, row.sd_per_s() / 1e6))
    return missed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=os.path.join(ROOT, "build-bench"))
    parser.add_argument("--data", default=None)
    parser.add_argument("--sizes", default="1000,10000,100000")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    exporter = os.path.join(options.build, "bin", "exporter")
    auxtool = os.path.join(options.build, "bin", "auxtool")
    data = options.data or os.path.join(options.build, "data")
    os.makedirs(data, exist_ok=True)
    sizes = [int(size) for size in options.sizes.split(",")]
    result = os.path.join(data, "result.txt")

    print("load average before: %.2f %.2f %.2f" % os.getloadavg())
    rows = []
    for form in ("xml", "bin"):
        previous = {}
        for size in sizes:
            make_database(auxtool, data, size, "xml")
            path = make_database(auxtool, data, size, form)
            visits = count_visits(os.path.join(data, "db%d.xml" % size))
            floor, floor_peak = measure(["/bin/cat", path], options.runs)
            commands = {
                "cat": None,
                "exporter": [exporter, KNOWLEDGE, path, result],
                "calc": [auxtool, "calc", KNOWLEDGE, path] + SD_FORMULAS + ["--today", TODAY],
            }
            for program, argv in commands.items():
                seconds, peak = (floor, floor_peak) if argv is None else measure(argv, options.runs)
                row = Row(program, form, size, path, visits, seconds, peak, floor, previous.get(program))
                rows.append(row)
                previous[program] = row
    print("load average after: %.2f %.2f %.2f" % os.getloadavg())
    print()
    print_table(rows)
    missed = check_targets(rows)
    print()
    print("targets missed:" if missed else "all targets met")
    for line in missed:
        print("  " + line)
    return 1 if missed and options.check else 0


if __name__ == "__main__":
    sys.exit(main())
