#!/usr/bin/env python3
"""Times the exporter and `auxtool calc` as whole processes on synthetic
databases of growing size, in XML and in binary form, beside `cat FILE >
/dev/null` as the floor of reading the same bytes.

Each command runs once to warm the page cache, then --runs times. The table
shows the median wall time and the median CPU time (user and system; on a
machine that is not quiet the steadier figure), the throughput over the
database file, probands per second, SD scores per second (the non-empty
formula cells that calc prints: a visit outside a reference's ages has
none), the peak resident memory of the process in MB and in bytes per
visit, the wall time relative to the floor and its growth from the previous
size. The databases are made with `auxtool synth` (seed 1) under --data and
kept until auxtool changes.

Usage: bench/scaling.py [--build DIR] [--data DIR] [--sizes 1000,10000,100000]
                        [--runs N] [--check] [--by-cpu]
--check ends with status 1 when a target is missed; --by-cpu judges the
targets by CPU time instead of wall time, for a machine that is not quiet.
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
    """Runs argv with stdout to stdout_path; answers (seconds, CPU seconds, peak RSS bytes, exit status).

    A child's peak RSS counts the memory of the process it was forked from,
    so the command is started by /usr/bin/time, which is small, and the peak
    is the one it prints; without it the figure from wait4 stands, which
    includes this script's own memory.
    """
    actions = [(os.POSIX_SPAWN_OPEN, 1, stdout_path, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o644)]
    peak_file = None
    if os.path.exists(TIME):
        peak_file = os.path.join(os.environ.get("TMPDIR", "/tmp"), "scaling-peak-%d.txt" % os.getpid())
        argv = [TIME, "-o", peak_file, "-f", "%M %U %S"] + argv
    start = time.perf_counter()
    pid = os.posix_spawn(argv[0], argv, os.environ, file_actions=actions)
    _, status, usage = os.wait4(pid, 0)
    seconds = time.perf_counter() - start
    peak = usage.ru_maxrss * 1024
    cpu = usage.ru_utime + usage.ru_stime
    if peak_file:
        with open(peak_file) as handle:
            fields = handle.read().split()[-3:]
        peak, cpu = int(fields[0]) * 1024, float(fields[1]) + float(fields[2])
        os.unlink(peak_file)
    return seconds, cpu, peak, os.waitstatus_to_exitcode(status)


def measure(argv, runs):
    spawn_and_wait(argv)  # warms the page cache and the program's pages
    times, cpus, peaks = [], [], []
    for _ in range(runs):
        seconds, cpu, peak, code = spawn_and_wait(argv)
        if code != 0:
            sys.exit("failed with exit code %d: %s" % (code, " ".join(argv)))
        times.append(seconds)
        cpus.append(cpu)
        peaks.append(peak)
    return statistics.median(times), statistics.median(cpus), max(peaks)


def make_database(auxtool, data, size, form):
    path = os.path.join(data, "db%d.%s" % (size, form))
    if os.path.exists(path) and os.path.getmtime(path) >= os.path.getmtime(auxtool):
        return path
    argv = [auxtool, "synth", KNOWLEDGE, str(size), path, "--seed", "1", "--to", form]
    seconds, _, _, code = spawn_and_wait(argv)
    if code != 0:
        sys.exit("auxtool synth failed for %d probands (%s)" % (size, form))
    print("made %s in %.2f s" % (path, seconds), file=sys.stderr)
    return path


def count_scores(argv, data):
    """Runs calc once into a file; answers the number of SD scores it printed (non-empty formula cells)."""
    path = os.path.join(data, "calc.csv")
    spawn_and_wait(argv, path)
    scores = 0
    with open(path, "rb") as handle:
        next(handle)
        for line in handle:
            scores += sum(1 for cell in line.rstrip(b"\n").split(b",")[-len(SD_FORMULAS):] if cell)
    os.unlink(path)
    return scores


def count_visits(xml_path):
    count = 0
    with open(xml_path, "rb") as handle:
        for block in iter(lambda: handle.read(1 << 24), b""):
            count += block.count(b"<record ")
    return count


class Row:
    def __init__(self, program, form, size, path, visits, seconds, cpu, peak, floor, previous, scores=None):
        self.program, self.form, self.size, self.visits, self.scores = program, form, size, visits, scores
        self.megabytes = os.path.getsize(path) / 1e6
        self.xml_megabytes = os.path.getsize(path[: -len(form)] + "xml") / 1e6
        self.seconds, self.cpu, self.peak, self.floor = seconds, cpu, peak, floor
        self.growth = seconds / previous.seconds if previous else None
        self.cpu_growth = cpu / previous.cpu if previous and previous.cpu > 0 else None

    def sd_per_s(self):
        return self.scores / self.seconds if self.scores else None

    def cells(self):
        sd = self.sd_per_s()
        return [
            self.program, self.form, "{:,}".format(self.size).replace(",", " "), "%.1f" % self.megabytes,
            "%.3f" % self.seconds, "%.2f" % self.cpu, "%.0f" % (self.megabytes / self.seconds),
            "%.0f" % (self.megabytes / self.cpu) if self.cpu > 0 else "",
            "%.0f" % (self.size / self.seconds), "%.2f M" % (sd / 1e6) if sd else "",
            "%.0f" % (self.peak / 1e6), "%.0f" % (self.peak / self.visits),
            "%.1f" % (self.seconds / self.floor), "%.1f" % self.growth if self.growth else "",
            "%.1f" % self.cpu_growth if self.cpu_growth else "",
        ]


HEAD = ["program", "form", "probands", "file MB", "seconds", "CPU s", "MB/s", "MB/s CPU", "probands/s",
        "SD scores/s", "peak MB", "peak B/visit", "x floor", "growth", "CPU growth"]


def print_table(rows):
    print("| " + " | ".join(HEAD) + " |")
    print("|" + "|".join("---" for _ in HEAD) + "|")
    for row in rows:
        print("| " + " | ".join(row.cells()) + " |")


def check_targets(rows, by_cpu):
    """The targets missed, judged by wall time or, with by_cpu, by CPU time."""
    missed = []
    largest = max(row.size for row in rows)
    for row in rows:
        name = "%s %s %d" % (row.program, row.form, row.size)
        seconds = row.cpu if by_cpu else row.seconds
        growth = row.cpu_growth if by_cpu else row.growth
        if row.program == "exporter" and row.size == largest:
            rate = row.megabytes / seconds
            if rate < EXPORTER_MB_PER_S[row.form]:
                missed.append("%s: %.0f MB/s, target %.0f" % (name, rate, EXPORTER_MB_PER_S[row.form]))
        if row.program != "cat" and growth and growth > MAX_GROWTH:
            missed.append("%s: grows %.1f times for ten times the probands" % (name, growth))
        if row.program != "cat" and row.size == largest and row.peak > MAX_MEMORY_PER_XML_BYTE * row.xml_megabytes * 1e6:
            missed.append("%s: peak %.0f MB, over four times the XML file" % (name, row.peak / 1e6))
        if row.program == "calc" and row.size == largest and row.scores / seconds < CALC_SD_PER_S:
            missed.append("%s: %.2f M SD scores/s" % (name, row.scores / seconds / 1e6))
    return missed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=os.path.join(ROOT, "build-bench"))
    parser.add_argument("--data", default=None)
    parser.add_argument("--sizes", default="1000,10000,100000")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--by-cpu", action="store_true", help="judge the targets by CPU time, for a busy machine")
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
            floor, floor_cpu, floor_peak = measure(["/bin/cat", path], options.runs)
            commands = {
                "cat": None,
                "exporter": [exporter, KNOWLEDGE, path, result],
                "calc": [auxtool, "calc", KNOWLEDGE, path] + SD_FORMULAS + ["--today", TODAY],
            }
            for program, argv in commands.items():
                seconds, cpu, peak = (floor, floor_cpu, floor_peak) if argv is None else measure(argv, options.runs)
                scores = count_scores(argv, data) if program == "calc" else None
                row = Row(program, form, size, path, visits, seconds, cpu, peak, floor, previous.get(program), scores)
                rows.append(row)
                previous[program] = row
    print("load average after: %.2f %.2f %.2f" % os.getloadavg())
    print()
    print_table(rows)
    missed = check_targets(rows, options.by_cpu)
    print()
    judged = " (by CPU time)" if options.by_cpu else " (by wall time)"
    print(("targets missed" if missed else "all targets met") + judged + (":" if missed else ""))
    for line in missed:
        print("  " + line)
    return 1 if missed and options.check else 0


if __name__ == "__main__":
    sys.exit(main())
